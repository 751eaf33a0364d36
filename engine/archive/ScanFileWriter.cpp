#include "engine/archive/ScanFileWriter.hpp"

#include "engine/archive/ArchiveFrame.hpp"
#include "engine/archive/ArchivePlaces.hpp"
#include "engine/archive/AtomicFile.hpp"
#include "engine/archive/BinaryPlistWriter.hpp"
#include "engine/tree/TreeWalk.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace tessaly::archive {

namespace {

using Uid = ArchivePlaces::Uid;

/// The property list's objects are numbered in four runs: the fixed ones, which are the frame's and
/// those below; the archived objects in the order of "$objects"; the UIDs by value, since all
/// references to an object share one UID; and the child lists of the folders. So every number can
/// be computed from sums, and the only tables in memory are those of the offsets.
enum FixedObject : std::uint64_t {
    itemChain = ArchiveFrame::objectCount,
    containerChain,
    arrayChain,
    stringChain,
    // The rest are the strings below, in the same order.
    itemNameKey,
    itemSizeKey,
    subitemsKey,
    parentKey,
    itemClassName,
    containerClassName,
    objectClassName,
    mutableArrayClassName,
    arrayClassName,
    mutableStringClassName,
    stringClassName,
    fixedObjectCount,
};
constexpr std::uint64_t firstString = itemNameKey;

constexpr std::array<std::string_view, fixedObjectCount - firstString> fixedStrings{
    "itemName", "itemSize",       "subitems", "parentContainer", "LUMFileItem", "LUMFileContainer",
    "NSObject", "NSMutableArray", "NSArray",  "NSMutableString", "NSString"};
static_assert(!fixedStrings.back().empty());

/// The first of two walks: finds out what has to be known before the first byte is written. The
/// width of references depends on the number of objects and stands in the first dictionary already;
/// and a sink cannot go back.
struct Counter {
    // The same class assigns the places in both walks, so the two cannot differ.
    ArchivePlaces order;
    std::uint64_t folderCount = 0;
    std::uint64_t nameByteCount = 0;
    std::uint64_t nodeCount = 0;

    void file(const tree::LUMFileItem &item)
    {
        count(item);
        order.file(item);
    }
    void enter(const tree::LUMFileContainer &folder)
    {
        count(folder);
        ++folderCount;
        order.enter(folder);
    }
    // A folder's end takes places, too: those of the classes that follow the first folder.
    void leave(const tree::LUMFileContainer & /*folder*/) { order.leave(); }

    [[nodiscard]] std::uint64_t objectCount() const noexcept
    {
        // Twice the places: each archived object, and the UID by which others refer to it.
        return fixedObjectCount + 2 * std::uint64_t{order.count()} + folderCount;
    }

    /// An upper bound for the file's size up to the offset table, from which the width of offsets
    /// follows. A bound is enough: one byte too many for each offset in a few files of unlucky size
    /// is cheaper than a walk that encodes every name twice.
    [[nodiscard]] std::uint64_t maxSize(unsigned referenceWidth) const noexcept
    {
        // Room for the header, the frame and the fixed strings.
        constexpr std::uint64_t fixed = 1024;
        constexpr std::uint64_t maxCounterBytes = 9;
        constexpr std::uint64_t maxSizeObjectBytes = 17;
        constexpr std::uint64_t maxUidBytes = 5;
        // A node's dictionary with its references, the counters of its name, and its size.
        const std::uint64_t node =
            1 + 6 * referenceWidth + 2 * maxCounterBytes + maxSizeObjectBytes + referenceWidth;
        const std::uint64_t folder = 4 * referenceWidth + 2 + 4 * referenceWidth + maxCounterBytes;
        // Twice the bytes of names: each byte becomes at most one unit of UTF-16.
        return fixed + nodeCount * node + folderCount * folder + 2 * nameByteCount +
               order.count() * (maxUidBytes + referenceWidth);
    }

private:
    void count(const tree::LUMFileItem &node)
    {
        ++nodeCount;
        nameByteCount += node.itemName().size();
    }
};

/// The second walk: writes each object as it is met.
class Emitter {
public:
    Emitter(const Counter &counted, ByteSink &sink)
        : m_classes(counted.order), m_uidCount(counted.order.count()),
          m_firstUid(firstObject + m_uidCount), m_firstList(m_firstUid + m_uidCount),
          m_objectCount(counted.objectCount()),
          m_offsetWidth(BinaryPlistWriter::widthFor(
              counted.maxSize(BinaryPlistWriter::widthFor(m_objectCount)))),
          // The offset table comes last in a file, and the sink takes no holes. So the offsets are
          // kept in memory, as narrow as they will be written.
          m_fixedOffsets(fixedObjectCount, m_offsetWidth),
          m_objectOffsets(m_uidCount, m_offsetWidth),
          m_listOffsets(counted.folderCount, m_offsetWidth),
          m_plist(sink, BinaryPlistWriter::widthFor(m_objectCount))
    {
    }

    void begin()
    {
        writeFixedObjects();
        // Place 0 is "$null". Readers take the UID 0 for "no object".
        beginObject(0);
        m_plist.name(ArchiveFrame::nullMarker);
    }

    void file(const tree::LUMFileItem &item)
    {
        // The class is referred to before its own place has been met: that is why m_classes knows
        // all places from the first walk.
        const ArchivePlaces::OfNode places = m_order.file(item);
        m_children.push_back(places.node);
        beginObject(places.node);
        // In a property list all keys of a dictionary come first, then all values in the same
        // order.
        m_plist.dictionary(3);
        m_plist.reference(itemNameKey);
        m_plist.reference(itemSizeKey);
        m_plist.reference(ArchiveFrame::classKey);
        uidReference(places.name);
        uidReference(places.size);
        uidReference(m_classes.itemClass());
        writeValues(item, places);
        if (places.addsItemClass) {
            writeClass(m_classes.itemClass(), itemClassName, itemChain);
        }
    }

    void enter(const tree::LUMFileContainer &folder)
    {
        const ArchivePlaces::OfNode places = m_order.enter(folder);
        // Of the root it is "$null".
        const Uid parent = m_open.empty() ? 0 : m_open.back().node;
        m_children.push_back(places.node);
        beginObject(places.node);
        m_plist.dictionary(5);
        m_plist.reference(itemNameKey);
        m_plist.reference(itemSizeKey);
        m_plist.reference(subitemsKey);
        m_plist.reference(parentKey);
        m_plist.reference(ArchiveFrame::classKey);
        uidReference(places.name);
        uidReference(places.size);
        uidReference(places.subitems);
        uidReference(parent);
        uidReference(m_classes.containerClass());
        writeValues(folder, places);

        // The list itself is written when the folder ends and its children's places are known; only
        // its number is needed here, and that is a sum.
        beginObject(places.subitems);
        m_plist.dictionary(2);
        m_plist.reference(ArchiveFrame::elementsKey);
        m_plist.reference(ArchiveFrame::classKey);
        m_plist.reference(m_firstList + m_listCount);
        uidReference(m_classes.arrayClass());
        // All open folders share m_children: the children of an inner folder lie behind those of
        // the outer ones, and are removed when it ends. A vector for each folder would be a million
        // allocations.
        m_open.push_back({places.node, m_listCount++, m_children.size()});
    }

    void leave(const tree::LUMFileContainer & /*folder*/)
    {
        // The list has no place in "$objects". It is a value inside of the archived array.
        const OpenFolder folder = m_open.back();
        m_open.pop_back();
        m_listOffsets.set(folder.list, m_plist.position());
        m_plist.array(m_children.size() - folder.firstChild);
        for (std::size_t i = folder.firstChild; i < m_children.size(); ++i) {
            uidReference(m_children[i]);
        }
        m_children.resize(folder.firstChild);
        // A class follows the contents of its first instance. The first folder to end is also the
        // first array to be complete.
        if (m_order.leave()) {
            writeClass(m_classes.arrayClass(), mutableArrayClassName, arrayChain);
            writeClass(m_classes.containerClass(), containerClassName, containerChain);
        }
    }

    void end()
    {
        // The UIDs follow one another, so their offsets are computed and kept in no table.
        const std::uint64_t firstUidOffset = m_plist.position();
        for (Uid uid = 0; uid < m_uidCount; ++uid) {
            m_plist.uid(uid);
        }
        m_fixedOffsets.set(ArchiveFrame::objectList, m_plist.position());
        // "$objects" itself, after all UIDs: its references are consecutive numbers and need no
        // table.
        ArchiveFrame::writeObjectList(m_plist, firstObject, m_uidCount);

        // The four runs in the order of their numbers.
        const std::uint64_t tableOffset = m_plist.position();
        m_plist.offsets(m_fixedOffsets.packed());
        m_plist.offsets(m_objectOffsets.packed());
        std::uint64_t uidOffset = firstUidOffset;
        for (Uid uid = 0; uid < m_uidCount; ++uid) {
            m_plist.offset(uidOffset, m_offsetWidth);
            uidOffset += BinaryPlistWriter::uidByteCount(uid);
        }
        m_plist.offsets(m_listOffsets.packed());
        m_plist.finish(m_objectCount, ArchiveFrame::topDictionary, tableOffset, m_offsetWidth);
    }

private:
    static constexpr std::uint64_t firstObject = fixedObjectCount;

    struct OpenFolder {
        Uid node;
        std::uint64_t list;
        std::size_t firstChild; ///< in m_children
    };

    void beginObject(Uid place) { m_objectOffsets.set(place, m_plist.position()); }
    void beginFixed(std::uint64_t object) { m_fixedOffsets.set(object, m_plist.position()); }
    void uidReference(Uid uid) { m_plist.reference(m_firstUid + uid); }

    void writeValues(const tree::LUMFileItem &node, const ArchivePlaces::OfNode &places)
    {
        // A plain string "$null" would read as no name, so such a name is an instance of its own.
        if (places.wrapsName) {
            beginObject(places.name);
            m_plist.dictionary(2);
            m_plist.reference(ArchiveFrame::stringKey);
            m_plist.reference(ArchiveFrame::classKey);
            m_plist.reference(firstObject + 0); // the string "$null" itself
            uidReference(m_classes.stringClass());
        } else if (places.name != 0) {
            beginObject(places.name);
            m_plist.name(node.itemName());
        }
        // Between the name and the size, where the first walk has given it its place.
        if (places.addsStringClass) {
            writeClass(m_classes.stringClass(), mutableStringClassName, stringChain);
        }
        // A size of 0 is one shared object, written with the first node that has it.
        if (places.addsSize) {
            beginObject(places.size);
            m_plist.integer(node.itemSize());
        }
    }

    void writeClass(Uid place, std::uint64_t name, std::uint64_t chain)
    {
        beginObject(place);
        ArchiveFrame::writeClass(m_plist, name, chain);
    }

    void writeFixedObjects()
    {
        // The root is visited first, right after "$null".
        constexpr Uid rootPlace = 1;
        const ArchiveFrame::Offsets offsets = ArchiveFrame::write(m_plist, m_firstUid + rootPlace);
        for (std::size_t i = 0; i < offsets.size(); ++i) {
            m_fixedOffsets.set(i, offsets[i]);
        }
        // The chains let other readers fall back on a superclass that they know.
        writeChain(itemChain, {itemClassName, objectClassName});
        writeChain(containerChain, {containerClassName, itemClassName, objectClassName});
        writeChain(arrayChain, {mutableArrayClassName, arrayClassName, objectClassName});
        writeChain(stringChain, {mutableStringClassName, stringClassName, objectClassName});
        for (std::size_t i = 0; i < fixedStrings.size(); ++i) {
            beginFixed(firstString + i);
            m_plist.name(fixedStrings[i]);
        }
    }

    void writeChain(std::uint64_t chain, std::initializer_list<FixedObject> names)
    {
        beginFixed(chain);
        m_plist.array(names.size());
        for (const FixedObject name : names) {
            m_plist.reference(name);
        }
    }

    ArchivePlaces m_order;
    ArchivePlaces m_classes; ///< as the first walk left it: the places of all classes
    std::uint64_t m_uidCount;
    std::uint64_t m_firstUid;
    std::uint64_t m_firstList;
    std::uint64_t m_objectCount;
    unsigned m_offsetWidth;
    PlistOffsets m_fixedOffsets;
    PlistOffsets m_objectOffsets;
    PlistOffsets m_listOffsets;
    BinaryPlistWriter m_plist;
    std::uint64_t m_listCount = 0;
    std::vector<OpenFolder> m_open;
    std::vector<Uid> m_children; ///< of the open folders, so far
};

} // namespace

Result<Done, ArchiveError> writeScanArchive(const tree::LUMFileContainer &root, ByteSink &sink)
{
    return resultOf<Done>("not enough memory to write the scan", [&] {
        // Two walks take less than a list of all objects in memory would, and the tree cannot
        // change in between: it is finished.
        Counter counter;
        tree::walkTree(root, counter);
        Emitter emitter(counter, sink);
        emitter.begin();
        tree::walkTree(root, emitter);
        emitter.end();
        return Done{};
    });
}

Result<Done, ArchiveError> writeScanFile(const tree::LUMFileContainer &root,
                                         const std::string &path, FileCalls &calls)
{
    // The tree goes to the file in pieces of a quarter megabyte: beside the offsets nothing is
    // kept.
    AtomicFile file(path, calls);
    if (auto opened = file.open(); !opened) {
        return opened;
    }
    // After an error the destructor removes the temporary file, and the target stays as it was.
    if (auto written = writeScanArchive(root, file); !written) {
        return written;
    }
    return file.commit();
}

} // namespace tessaly::archive
