#pragma once

#include "engine/tree/LUMFileContainer.hpp"

#include <cstdint>

namespace tessaly::archive {

/// Assigns the places in a scan file's "$objects", in the order in which a keyed archiver visits
/// the objects: a node, its name, its size, its child list, its children; a class after the
/// contents of its first instance. The same calls in the same order give the same places: a first
/// walk over the tree counts, a second one writes.
///
/// Errors: ArchiveFailure when a tree has more nodes than a file can hold.
class ArchivePlaces {
public:
    /// A place in "$objects". 0 is "$null" and stands for none.
    using Uid = std::uint32_t;

    /// The places of one node and of what it holds.
    struct OfNode {
        Uid node = 0;
        Uid name = 0; ///< 0: no name
        Uid size = 0;
        Uid subitems = 0;
        bool wrapsName = false; ///< the name is an NSMutableString, not a plain string
        bool addsSize = false;  ///< the size is an object of its own, not one met before
        bool addsStringClass = false;
        bool addsItemClass = false;
    };

    /// Number of places assigned, "$null" included.
    [[nodiscard]] Uid count() const noexcept { return m_next; }

    // The places of the classes; 0 before their first instance.
    [[nodiscard]] Uid stringClass() const noexcept { return m_stringClass; }
    [[nodiscard]] Uid itemClass() const noexcept { return m_itemClass; }
    [[nodiscard]] Uid arrayClass() const noexcept { return m_arrayClass; }
    [[nodiscard]] Uid containerClass() const noexcept { return m_containerClass; }

    OfNode file(const tree::LUMFileItem &item);
    OfNode enter(const tree::LUMFileContainer &folder);
    /// Whether the classes of arrays and of folders follow: after the first folder to end.
    bool leave();

private:
    OfNode nodeAndValues(const tree::LUMFileItem &node);
    Uid take();
    bool takeIfNew(Uid &place);

    Uid m_next = 1;
    Uid m_zero = 0; ///< the number 0, once there is one
    Uid m_stringClass = 0;
    Uid m_itemClass = 0;
    Uid m_arrayClass = 0;
    Uid m_containerClass = 0;
};

} // namespace tessaly::archive
