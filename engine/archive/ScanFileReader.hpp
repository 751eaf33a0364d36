#pragma once

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/Result.hpp"
#include "engine/tree/ScanTree.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>

namespace tessaly::archive {

/// What a scan file says of its nodes beyond what the tree keeps. Tools that show a file as it is
/// ask for it; it holds an entry only for nodes that differ from what our own files say.
class ScanFileDetails {
public:
    enum class Parent : std::uint8_t {
        missing,   ///< no such key
        none,      ///< "$null"
        enclosing, ///< the folder that lists the node
        other,
    };
    struct Node {
        bool hasSize = true;
        Parent parent = Parent::missing;
        /// The name as it stands in the file, if archiving the node's name would give another.
        std::optional<std::u16string> name;
    };

    /// What the file says of a node of the tree that was read with these details.
    [[nodiscard]] Node of(const tree::LUMFileItem &node) const;
    /// What our own files say of such a node.
    [[nodiscard]] static Node usual(const tree::LUMFileItem &node);

    /// Whether the file says of every node what our own files say.
    [[nodiscard]] bool isEmpty() const noexcept { return m_unusual.empty(); }

    void record(const tree::LUMFileItem &node, Node said);

private:
    std::unordered_map<const tree::LUMFileItem *, Node> m_unusual;
};

/// Reads the scan tree that a scan file holds: a keyed archive (see KeyedArchiveReader) of
/// LUMFileContainer and LUMFileItem instances.
///
/// Keys:    "itemName" (string; missing: no name), "itemSize" (number; missing: 0), and of folders
///          "subitems" (array; missing: no children). Parents are derived from "subitems";
///          "parentContainer" may be missing or wrong. Subclasses read as the class known.
/// Refused: a node that is listed twice or that lists its ancestor, values of the wrong type,
///          classes unknown throughout.
/// Memory:  the tree, and little beside it: the file is mapped, nothing is expanded, and a hostile
///          file cannot make the tree larger than a small multiple of itself. Any depth.
/// Threads: any; calls are independent.
[[nodiscard]] Result<std::shared_ptr<tree::ScanTree>, ArchiveError>
readScanFile(const std::string &path, ScanFileDetails *details = nullptr);

/// The same from bytes in memory.
[[nodiscard]] Result<std::shared_ptr<tree::ScanTree>, ArchiveError>
readScanArchive(std::span<const std::byte> archive, ScanFileDetails *details = nullptr);

} // namespace tessaly::archive
