#include "engine/archive/ArchivePlaces.hpp"

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/ArchiveFrame.hpp"

#include <limits>

namespace tessaly::archive {

ArchivePlaces::OfNode ArchivePlaces::file(const tree::LUMFileItem &item)
{
    OfNode places = nodeAndValues(item);
    places.addsItemClass = takeIfNew(m_itemClass);
    return places;
}

ArchivePlaces::OfNode ArchivePlaces::enter(const tree::LUMFileContainer &folder)
{
    OfNode places = nodeAndValues(folder);
    // Before the children: an archiver numbers an array before it visits the elements.
    places.subitems = take();
    return places;
}

bool ArchivePlaces::leave()
{
    // The array is complete before its folder is, so its class comes first.
    const bool isFirst = takeIfNew(m_arrayClass);
    takeIfNew(m_containerClass);
    return isFirst;
}

ArchivePlaces::OfNode ArchivePlaces::nodeAndValues(const tree::LUMFileItem &node)
{
    OfNode places;
    places.node = take();
    if (node.hasItemName()) {
        places.name = take();
        // A file may have this name, and as a plain string it would read as no name at all.
        places.wrapsName = node.itemName() == ArchiveFrame::nullMarker;
        places.addsStringClass = places.wrapsName && takeIfNew(m_stringClass);
    }
    // Folders have size 0, so zeros share one object, which saves an object and its UID for each.
    // Other sizes rarely repeat, and a table of them would cost more than it saves.
    places.addsSize = node.itemSize() != 0 || m_zero == 0;
    places.size = places.addsSize ? take() : m_zero;
    if (node.itemSize() == 0) {
        m_zero = places.size;
    }
    return places;
}

ArchivePlaces::Uid ArchivePlaces::take()
{
    // UIDs of 32 bits are what other readers of the format accept.
    if (m_next == std::numeric_limits<Uid>::max()) {
        throw ArchiveFailure(ArchiveError::Kind::unsupported,
                             "the scan has too many items for a scan file");
    }
    return m_next++;
}

bool ArchivePlaces::takeIfNew(Uid &place)
{
    if (place != 0) {
        return false;
    }
    place = take();
    return true;
}

} // namespace tessaly::archive
