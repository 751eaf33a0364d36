#include "engine/archive/ScanFileReader.hpp"

#include "engine/archive/KeyedArchiveReader.hpp"
#include "engine/archive/MappedFile.hpp"
#include "engine/tree/EscapedName.hpp"

#include <stdexcept>
#include <utility>
#include <vector>

namespace tessaly::archive {

namespace {

using Kind = ArchiveError::Kind;
using Uid = KeyedArchiveReader::Uid;
using Type = KeyedArchiveReader::Type;

enum NodeKey : std::size_t { classKey, nameKey, sizeKey, subitemsKey, parentKey };
enum NodeClass : std::size_t { itemClass, containerClass, unknownClass };

class ScanArchiveReader {
public:
    ScanArchiveReader(std::span<const std::byte> file, ScanFileDetails *details)
        : m_archive(file), m_details(details), m_longNameBudget(2 * file.size()),
          m_isListed(static_cast<std::size_t>(m_archive.objectCount()))
    {
    }

    std::shared_ptr<tree::ScanTree> read()
    {
        auto tree = std::make_shared<tree::ScanTree>();
        const tree::ScanTree::ArenaLease arena = tree->leaseArena();
        m_arena = arena.get();
        readRoot(tree->root());
        readBelow();
        return tree;
    }

private:
    /// A folder whose children are being read.
    struct Level {
        tree::LUMFileContainer *folder;
        Uid uid;
        KeyedArchiveReader::Object children;
        std::uint64_t next = 0;
    };

    void readRoot(tree::LUMFileContainer &root)
    {
        const Uid uid = m_archive.root();
        const Instance instance = readInstance(uid);
        if (instance.nodeClass != containerClass) {
            m_archive.fail(Kind::damaged, "the root is not a folder", instance.object);
        }
        const tree::NodeArena::StoredName name = readName(instance);
        // The tree's root exists already, so it is filled and not made.
        root.setStoredName(name);
        root.setItemSize(readSize(instance));
        recordDetails(root, instance, 0);
        open(root, uid, instance);
    }

    void readBelow()
    {
        while (!m_levels.empty()) {
            // Invalid after open(), which may move the levels: it comes last.
            Level &level = m_levels.back();
            if (level.next == level.children.count) {
                m_levels.pop_back();
                continue;
            }
            const Uid uid = m_archive.elementUid(level.children, level.next++);
            const Instance instance = readInstance(uid);
            const tree::NodeArena::StoredName name = readName(instance);
            const std::uint64_t size = readSize(instance);
            if (instance.nodeClass == itemClass) {
                auto &item = m_arena->make<tree::LUMFileItem>(name, size);
                level.folder->subitems().append(item);
                recordDetails(item, instance, level.uid);
            } else {
                auto &folder = m_arena->make<tree::LUMFileContainer>(name, size);
                level.folder->subitems().append(folder);
                recordDetails(folder, instance, level.uid);
                open(folder, uid, instance);
            }
        }
    }

    struct Instance {
        KeyedArchiveReader::Object object;
        KeyedArchiveReader::Fields fields;
        NodeClass nodeClass = unknownClass;
    };

    Instance readInstance(Uid uid)
    {
        const KeyedArchiveReader::Object object = m_archive.object(uid);
        // An array may hold "$null" in other archives. Here it would be a node without name and
        // size.
        if (object.type == Type::null) {
            m_archive.fail(Kind::damaged, "there is nothing where a node should be", object);
        }
        if (object.type != Type::dictionary) {
            m_archive.fail(Kind::damaged, "a node is not an instance of a class", object);
        }
        // Refuses folders that contain themselves, and trees that are far larger than their file.
        if (m_isListed[uid]) {
            m_archive.fail(Kind::damaged, "a node is listed twice", object);
        }
        m_isListed[uid] = true;

        Instance instance{object, m_archive.fields(object, m_keys)};
        const auto classValue = instance.fields[classKey];
        if (!classValue) {
            m_archive.fail(Kind::damaged, "a node without \"$class\"", object);
        }
        instance.nodeClass = static_cast<NodeClass>(m_archive.classIndex(*classValue, m_classes));
        if (instance.nodeClass == unknownClass) {
            // Not skipped: a tree with nodes left out would have wrong totals.
            m_archive.fail(Kind::unsupported, "unknown class " + m_archive.className(*classValue),
                           object);
        }
        return instance;
    }

    tree::NodeArena::StoredName readName(const Instance &instance)
    {
        const auto value = instance.fields[nameKey];
        // Archivers leave out values that are nil, so a missing name is a node without one.
        if (!value) {
            return nullptr;
        }
        const KeyedArchiveReader::Object string = m_archive.string(*value, "\"itemName\"");
        if (string.type == Type::null) {
            return nullptr;
        }
        // Short names are cheap to copy, and the arena finds recent ones itself.
        if (string.count > longName) {
            return readLongName(string);
        }
        // Nearly all names: from the mapped file into the arena, without a string in between.
        if (string.type == Type::asciiString) {
            return m_arena->storeName(m_archive.propertyList().ascii(string));
        }
        return m_arena->storeName(m_archive.name(string));
    }

    /// Long names that nodes share are stored once, and their total is limited: a hostile file of a
    /// megabyte could otherwise give a million nodes the same name of half a megabyte.
    tree::NodeArena::StoredName readLongName(const KeyedArchiveReader::Object &string)
    {
        LongName &known = m_longNames[string.content];
        if (known.stored == nullptr || known.count != string.count) {
            const std::uint64_t byteCount =
                string.count * (string.type == Type::utf16String ? 2 : 1);
            if (byteCount > m_longNameBudget) {
                m_archive.fail(Kind::damaged, "the archive's names overlap", string);
            }
            m_longNameBudget -= byteCount;
            known = {string.count, m_arena->storeName(m_archive.name(string))};
        }
        return known.stored;
    }

    std::uint64_t readSize(const Instance &instance)
    {
        const auto value = instance.fields[sizeKey];
        // Without a value the size is 0, which keyed unarchivers answer for a missing number.
        return value ? m_archive.unsignedNumber(*value, "\"itemSize\"").value_or(0) : 0;
    }

    void open(tree::LUMFileContainer &folder, Uid uid, const Instance &instance)
    {
        const auto value = instance.fields[subitemsKey];
        const auto children = value ? m_archive.array(*value, "\"subitems\"") : std::nullopt;
        // A folder without children needs no level.
        if (children && children->count > 0) {
            m_levels.push_back({&folder, uid, *children});
        }
    }

    void recordDetails(const tree::LUMFileItem &node, const Instance &instance, Uid enclosing)
    {
        if (m_details == nullptr) {
            return;
        }
        ScanFileDetails::Node said;
        said.hasSize = instance.fields[sizeKey].has_value();
        if (const auto parent = instance.fields[parentKey]) {
            // The tree has the parents that follow from the lists. What the file says is only kept
            // for checking tools.
            said.parent = parentSaid(*parent, enclosing);
        }
        if (const auto value = instance.fields[nameKey]; value && node.hasItemName()) {
            std::u16string text = m_archive.text(m_archive.string(*value, "\"itemName\""));
            if (text != tree::escapedName(node.itemName())) {
                said.name = std::move(text);
            }
        }
        m_details->record(node, std::move(said));
    }

    ScanFileDetails::Parent parentSaid(KeyedArchiveReader::Reference parent, Uid enclosing) const
    {
        using Parent = ScanFileDetails::Parent;
        try {
            if (m_archive.resolved(parent).type == Type::null) {
                return Parent::none;
            }
            const bool isEnclosing =
                enclosing != 0 && m_archive.uid(parent, "a parent") == enclosing;
            return isEnclosing ? Parent::enclosing : Parent::other;
        } catch (const ArchiveFailure &) {
            return Parent::other; // parents are derived, so a damaged one is no failure
        }
    }

    static constexpr std::uint64_t longName = 64; ///< bytes, or UTF-16 code units

    struct LongName {
        std::uint64_t count = 0;
        tree::NodeArena::StoredName stored = nullptr;
    };

    KeyedArchiveReader m_archive;
    KeyedArchiveReader::NameMatcher m_keys{"$class", "itemName", "itemSize", "subitems",
                                           "parentContainer"};
    KeyedArchiveReader::NameMatcher m_classes{"LUMFileItem", "LUMFileContainer"};
    ScanFileDetails *m_details;
    tree::NodeArena *m_arena = nullptr;
    std::uint64_t m_longNameBudget;
    std::vector<bool> m_isListed;                                    ///< by UID
    std::unordered_map<const unsigned char *, LongName> m_longNames; ///< by place in the file
    std::vector<Level> m_levels;
};

} // namespace

ScanFileDetails::Node ScanFileDetails::of(const tree::LUMFileItem &node) const
{
    const auto found = m_unusual.find(&node);
    return found == m_unusual.end() ? usual(node) : found->second;
}

ScanFileDetails::Node ScanFileDetails::usual(const tree::LUMFileItem &node)
{
    Node usual;
    if (const tree::LUMFileContainer *folder = node.asContainer()) {
        usual.parent = folder->parentContainer() == nullptr ? Parent::none : Parent::enclosing;
    }
    return usual;
}

void ScanFileDetails::record(const tree::LUMFileItem &node, Node said)
{
    if (!said.hasSize || said.name || said.parent != usual(node).parent) {
        // Only what differs is stored: in a file of ours that is nothing, of a million nodes.
        m_unusual.insert_or_assign(&node, std::move(said));
    }
}

Result<std::shared_ptr<tree::ScanTree>, ArchiveError>
readScanArchive(std::span<const std::byte> archive, ScanFileDetails *details)
{
    try {
        return resultOf<std::shared_ptr<tree::ScanTree>>("not enough memory for this scan", [&] {
            return ScanArchiveReader(archive, details).read();
        });
    } catch (const std::length_error &) {
        // Thrown by the arena, which stores a name's length in 32 bits.
        return ArchiveError{Kind::unsupported, "a name of 4 GiB or more", {}};
    }
}

Result<std::shared_ptr<tree::ScanTree>, ArchiveError> readScanFile(const std::string &path,
                                                                   ScanFileDetails *details)
{
    // Mapped: a file of a gigabyte needs no memory of its own, and no copy before it can be read.
    const auto file = MappedFile::open(path);
    if (!file) {
        return file.error();
    }
    // Asked after the reading: zeros in place of a missing part may even make a valid tree.
    auto tree = readScanArchive(file.value().bytes(), details);
    if (file.value().wasTruncated()) {
        return ArchiveError{Kind::truncated, "the file was cut while it was read", {}};
    }
    return tree;
}

} // namespace tessaly::archive
