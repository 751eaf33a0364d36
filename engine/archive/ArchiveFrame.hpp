#pragma once

#include "engine/archive/BinaryPlistWriter.hpp"

#include <array>
#include <cstdint>
#include <string_view>

namespace tessaly::archive {

/// What every keyed archive has around its objects (see KeyedArchiveReader for the format), and the
/// keys that most archives use. Their objects have the first numbers of the property list.
class ArchiveFrame {
public:
    enum Object : std::uint64_t {
        topDictionary,
        archiveVersion,
        roots,
        objectList,
        // The rest are strings.
        versionKey,
        archiverKey,
        topKey,
        objectsKey,
        archiverName,
        rootKey,
        classKey,
        classNameKey,
        classChainKey,
        elementsKey,
        stringKey,
        objectCount,
    };

    /// The first entry of "$objects", which stands for none.
    static constexpr std::string_view nullMarker = "$null";

    /// Where the objects have been written, by their numbers.
    using Offsets = std::array<std::uint64_t, objectCount>;

    /// Writes all but the list of objects, which writeObjectList() adds at the end. `rootUid`: a
    /// reference to the UID of the root.
    [[nodiscard]] static Offsets write(BinaryPlistWriter &plist, std::uint64_t rootUid);

    /// Writes "$objects": `count` objects, numbered on from `firstObject`.
    static void writeObjectList(BinaryPlistWriter &plist, std::uint64_t firstObject,
                                std::uint64_t count);

    /// Writes the record of a class. `name` and `chain`: references to its name, and to the array
    /// of the names of it and its superclasses.
    static void writeClass(BinaryPlistWriter &plist, std::uint64_t name, std::uint64_t chain);
};

} // namespace tessaly::archive
