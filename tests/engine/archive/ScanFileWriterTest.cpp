#include "engine/archive/ScanFileWriter.hpp"

#include "cli/TreeDump.hpp"
#include "engine/archive/KeyedArchiveReader.hpp"
#include "engine/archive/ScanFileReader.hpp"
#include "tests/engine/archive/ArchiveVectors.hpp"
#include "tests/engine/archive/PlistBuilder.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/engine/tree/TreeLines.hpp"
#include "tests/fakes/MemorySink.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>

namespace tessaly::archive {

namespace {

using Type = BinaryPlistReader::Type;

Bytes archiveOf(const tree::ScanTree &tree)
{
    MemorySink sink;
    const auto written = writeScanArchive(tree.root(), sink);
    EXPECT_TRUE(written) << written.error().text();
    return sink.bytes();
}

/// Writes the tree, reads it and expects the same. Also expects the file to say just what our own
/// files say.
void expectRoundTrip(const tree::ScanTree &tree)
{
    ScanFileDetails details;
    const auto read = readScanArchive(archiveOf(tree), &details);
    ASSERT_TRUE(read) << read.error().text();
    EXPECT_TRUE(dumpOf(*read.value()) == dumpOf(tree));
    EXPECT_TRUE(details.isEmpty());
}

/// The tree after a round trip.
std::shared_ptr<tree::ScanTree> readBack(const tree::ScanTree &tree)
{
    const auto read = readScanArchive(archiveOf(tree));
    EXPECT_TRUE(read);
    return read.value();
}

/// The objects of "$objects" in order, each as a text: any writer's and ours can be compared.
class ObjectTexts {
public:
    explicit ObjectTexts(const Bytes &file) : m_reader(file)
    {
        const BinaryPlistReader &plist = m_reader.propertyList();
        const auto top = plist.object(plist.topObject());
        for (std::uint64_t i = 0; i < top.count; ++i) {
            if (!plist.isString(plist.object(plist.key(top, i)), "$objects")) {
                continue;
            }
            const auto objects = plist.object(plist.value(top, i));
            for (std::uint64_t uid = 0; uid < objects.count; ++uid) {
                m_texts.push_back(textOf(plist.element(objects, uid)));
            }
        }
    }

    [[nodiscard]] const std::vector<std::string> &texts() const { return m_texts; }
    [[nodiscard]] std::ptrdiff_t count(const std::string &text) const
    {
        return std::count(m_texts.begin(), m_texts.end(), text);
    }

private:
    std::string textOf(BinaryPlistReader::Reference reference) const
    {
        const BinaryPlistReader &plist = m_reader.propertyList();
        const auto object = plist.object(reference);
        switch (object.type) {
        case Type::integer:
            return std::to_string(plist.integer(object).bits);
        case Type::uid:
            return '#' + std::to_string(plist.uidAt(reference).value());
        case Type::asciiString:
            return '"' + std::string(plist.bytes(object)) + '"';
        case Type::utf16String:
            return 'u' + jsonString(plist.utf16(object));
        case Type::array: {
            std::string text = "[";
            for (std::uint64_t i = 0; i < object.count; ++i) {
                text += ' ' + textOf(plist.element(object, i));
            }
            return text + " ]";
        }
        case Type::dictionary: { // the order of its keys means nothing
            std::set<std::string> pairs;
            for (std::uint64_t i = 0; i < object.count; ++i) {
                pairs.insert(textOf(plist.key(object, i)) + ": " + textOf(plist.value(object, i)));
            }
            std::string text = "{";
            for (const std::string &pair : pairs) {
                text += ' ' + pair;
            }
            return text + " }";
        }
        default:
            return "?";
        }
    }

    KeyedArchiveReader m_reader;
    std::vector<std::string> m_texts;
};

struct TrailerFacts {
    std::uint64_t objectCount;
    unsigned referenceWidth;
};

TrailerFacts trailerOf(const Bytes &file)
{
    return {BinaryPlistReader(file).objectCount(),
            std::to_integer<unsigned>(file[file.size() - 32 + 7])};
}

/// A root with so many files that take the fewest objects, two each.
std::shared_ptr<tree::ScanTree> treeOfPlainFiles(std::size_t count,
                                                 std::vector<PlannedNode> more = {})
{
    more.insert(more.end(), count, file(noName));
    return makeTree("root", std::move(more));
}

/// Expects round trips, and references of the width that fits, of trees that have from a few
/// objects fewer than `edge` to a few more.
void expectWidthsAround(std::uint64_t edge, unsigned widthBelow, unsigned widthFrom)
{
    std::set<std::uint64_t> counts;
    for (const std::vector<PlannedNode> &more :
         {std::vector<PlannedNode>{}, std::vector<PlannedNode>{folder(noName)}}) {
        const std::uint64_t base = trailerOf(archiveOf(*treeOfPlainFiles(1, more))).objectCount - 2;
        const std::size_t middle = (edge - base) / 2;
        for (std::size_t count = middle - 2; count <= middle + 2; ++count) {
            const auto tree = treeOfPlainFiles(count, more);
            const TrailerFacts facts = trailerOf(archiveOf(*tree));
            counts.insert(facts.objectCount);
            EXPECT_EQ(facts.referenceWidth, facts.objectCount < edge ? widthBelow : widthFrom);
            expectRoundTrip(*tree);
        }
    }
    for (std::uint64_t count = edge - 2; count <= edge + 2; ++count) {
        EXPECT_TRUE(counts.contains(count)) << count;
    }
}

/// A random tree of about so many nodes.
std::shared_ptr<tree::ScanTree> randomTree(std::mt19937_64 &random, std::size_t nodeCount)
{
    auto tree = std::make_shared<tree::ScanTree>();
    const tree::ScanTree::ArenaLease arena = tree->leaseArena();
    std::vector<tree::LUMFileContainer *> folders{&tree->root()};
    for (std::size_t i = 0; i < nodeCount; ++i) {
        std::string name(random() % 20, '\0');
        const std::uint64_t alphabet = random() % 2 == 0 ? 256 : 128;
        std::generate(name.begin(), name.end(),
                      [&] { return static_cast<char>(random() % alphabet); });
        const std::uint64_t size = random() % 3 == 0 ? 0 : random() >> random() % 64;
        tree::LUMFileContainer &parent = *folders[random() % folders.size()];
        if (random() % 5 == 0) {
            folders.push_back(&arena->make<tree::LUMFileContainer>(name, size));
            parent.subitems().append(*folders.back());
        } else {
            parent.subitems().append(arena->make<tree::LUMFileItem>(name, size));
        }
    }
    return tree;
}

} // namespace

TEST(ScanFileWriter, namesSizesOrderKindsAndParentsComeBack)
{
    const auto tree = makeTree(
        "/home/me", {file("b", 10), folder("s", {file("c", 5), folder("t")}), file("a", 20)});
    expectRoundTrip(*tree);

    const auto read = readBack(*tree);
    const tree::LUMFileItem *s = childNamed(read->root(), "s");
    EXPECT_EQ(childNames(read->root()), (std::vector<std::string>{"b", "s", "a"}));
    EXPECT_EQ(read->root().parentContainer(), nullptr);
    ASSERT_TRUE(s->isContainer());
    EXPECT_EQ(s->asContainer()->parentContainer(), &read->root());
    EXPECT_EQ(read->root().valueOfSubitems(), 35U);
}

TEST(ScanFileWriter, sizesOfAnyWidthComeBack)
{
    std::vector<PlannedNode> files;
    for (const std::uint64_t size :
         {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{255}, std::uint64_t{256},
          std::uint64_t{65'535}, std::uint64_t{65'536}, (std::uint64_t{1} << 31U) - 1,
          std::uint64_t{1} << 31U, (std::uint64_t{1} << 32U) - 1, std::uint64_t{1} << 32U,
          std::uint64_t{5'000'000'000}, (std::uint64_t{1} << 63U) - 1, std::uint64_t{1} << 63U,
          UINT64_MAX}) {
        files.push_back(file(std::to_string(size), size));
    }
    const auto read = readBack(*makeTree("root", files));

    for (const tree::LUMFileItem &child : read->root().subitems()) {
        EXPECT_EQ(std::to_string(child.itemSize()), child.itemName());
    }
    EXPECT_EQ(read->root().subitems().size(), files.size());
}

TEST(ScanFileWriter, foldersKeepSizesOfTheirOwn)
{
    expectRoundTrip(*makeTree(folder("root", {folder("s", {}, 7)}, UINT64_MAX)));
}

TEST(ScanFileWriter, namesOfAnyBytesComeBack)
{
    std::string everyByte;
    for (int byte = 0; byte < 256; ++byte) {
        everyByte += static_cast<char>(byte);
    }
    std::vector<PlannedNode> files{file(""),
                                   file(noName),
                                   file("$null"),
                                   file("a\nb"),
                                   file(std::string("a\0b", 3)),
                                   file("\u00E9\U0001F600"),
                                   file("\xFF\xFE"),
                                   file("\xEE\xBE\x80"),
                                   file(everyByte)};
    for (const std::size_t length :
         {14U, 15U, 127U, 128U, 255U, 256U, 65'535U, 65'536U, 300'000U}) {
        files.push_back(file(std::string(length, 'n')));
        files.push_back(file(std::string(length, '\xFF')));
    }
    expectRoundTrip(*makeTree("root", files));
}

TEST(ScanFileWriter, anEmptyNameAndNoneAreKeptApart)
{
    const auto read = readBack(*makeTree(noName, {file(""), file(noName)}));
    const tree::LUMFileItem &first = *read->root().subitems().begin();
    const tree::LUMFileItem &second = *++read->root().subitems().begin();

    EXPECT_FALSE(read->root().hasItemName());
    EXPECT_TRUE(first.hasItemName());
    EXPECT_FALSE(second.hasItemName());
}

TEST(ScanFileWriter, aFileCalledNullIsWrapped)
{
    const ObjectTexts objects(archiveOf(*makeTree("$null", {file("$null"), file("$null")})));

    EXPECT_EQ(objects.count(R"({ "$class": #3 "NS.string": "$null" })"), 3);
    EXPECT_EQ(objects.texts()[3], R"({ "$classes": [ "NSMutableString" "NSString" "NSObject" ])"
                                  R"( "$classname": "NSMutableString" })");
}

TEST(ScanFileWriter, objectsStandInTheOrderInWhichTheyAreMet)
{
    for (const std::string file :
         {"valid/basic.bplist", "valid/empty_root.bplist", "valid/empty_root_noname.bplist",
          "valid/name_null_wrapped.bplist", "valid/deep_5000.bplist"}) {
        const Bytes theirs = vectorBytes(file);
        const auto tree = readScanArchive(theirs);
        ASSERT_TRUE(tree);
        EXPECT_TRUE(ObjectTexts(archiveOf(*tree.value())).texts() == ObjectTexts(theirs).texts())
            << file;
    }
}

TEST(ScanFileWriter, classesAreRecordedWithTheirSuperclasses)
{
    const ObjectTexts objects(archiveOf(*makeTree("root", {file("a", 1)})));

    EXPECT_EQ(objects.count(R"({ "$classes": [ "LUMFileItem" "NSObject" ])"
                            R"( "$classname": "LUMFileItem" })"),
              1);
    EXPECT_EQ(objects.count(R"({ "$classes": [ "LUMFileContainer" "LUMFileItem" "NSObject" ])"
                            R"( "$classname": "LUMFileContainer" })"),
              1);
}

TEST(ScanFileWriter, nodesHaveTheirKeysAndNoOthers)
{
    const ObjectTexts objects(archiveOf(*makeTree("root", {file("a", 1)})));

    EXPECT_EQ(objects.texts()[1], R"({ "$class": #10 "itemName": #2 "itemSize": #3)"
                                  R"( "parentContainer": #0 "subitems": #4 })");
    EXPECT_EQ(objects.texts()[5], R"({ "$class": #8 "itemName": #6 "itemSize": #7 })");
}

TEST(ScanFileWriter, zeroSizesShareOneObject)
{
    const ObjectTexts objects(archiveOf(
        *makeTree("root", {file("a"), folder("s", {file("b"), file("c", 7)}), file("d", 7)})));

    EXPECT_EQ(objects.count("0"), 1);
    EXPECT_EQ(objects.count("7"), 2);
}

TEST(ScanFileWriter, aSizeAfterTheFirstZeroIsItsOwn)
{
    expectRoundTrip(
        *makeTree(folder("root", {file("a", 7), file("b"), file("c", 9), file("d")}, 5)));
}

TEST(ScanFileWriter, referencesWidenAt256Objects)
{
    expectWidthsAround(256, 1, 2);
}

TEST(ScanFileWriter, referencesWidenAt65536Objects)
{
    expectWidthsAround(65'536, 2, 4);
}

TEST(ScanFileWriter, offsetsWidenWithTheFile)
{
    for (std::size_t length = 64'000; length < 66'500; length += 50) {
        expectRoundTrip(*makeTree("root", {file(std::string(length, 'n')), file("b", 1)}));
    }
}

TEST(ScanFileWriter, aLargeTreeComesBack)
{
    std::mt19937_64 random(1); // NOLINT(cert-msc51-cpp): the same tree in every run
    expectRoundTrip(*randomTree(random, 200'000));
}

TEST(ScanFileWriter, treesOfAnyShapeComeBack)
{
    std::mt19937_64 random(2); // NOLINT(cert-msc51-cpp): likewise
    for (std::size_t i = 0; i < 300; ++i) {
        expectRoundTrip(*randomTree(random, i));
    }
}

TEST(ScanFileWriter, aTreeThatWasReadCanBeWritten)
{
    for (const ArchiveVector &vector : archiveVectors("tree")) {
        if (vector.outcome == "read") {
            const auto tree = readScanFile(vectorPath(vector.file));
            ASSERT_TRUE(tree);
            const auto again = readScanArchive(archiveOf(*tree.value()));
            ASSERT_TRUE(again) << vector.file;
            EXPECT_TRUE(dumpOf(*again.value()) == dumpOf(*tree.value())) << vector.file;
        }
    }
}

TEST(ScanFileWriter, theSameTreeGivesTheSameBytes)
{
    const auto tree = makeTree("root", {file("a", 1), folder("s", {file("c", 5)})});

    EXPECT_TRUE(archiveOf(*tree) == archiveOf(*tree));
    EXPECT_TRUE(archiveOf(*readBack(*tree)) == archiveOf(*tree));
}

TEST(ScanFileWriter, aFullSinkIsAnErrorAndTheEnd)
{
    const auto tree = makeDeepTree(5'000);
    const std::size_t size = archiveOf(*tree).size();
    ASSERT_GT(size, std::size_t{256} << 10U); // more than one write
    for (std::size_t room = 0; room < size; room += 997) {
        MemorySink sink(room);
        const auto written = writeScanArchive(tree->root(), sink);
        ASSERT_FALSE(written) << room;
        EXPECT_EQ(written.error().message, "the sink is full");
        EXPECT_EQ(sink.writesAfterFailure(), 0);
    }
    MemorySink justEnough(size);
    EXPECT_TRUE(writeScanArchive(tree->root(), justEnough));
}

TEST(ScanFileWriter, aSubfolderIsWrittenAsATreeOfItsOwn)
{
    const auto tree = makeTree("root", {folder("s", {file("c", 5)})});
    MemorySink sink;
    ASSERT_TRUE(writeScanArchive(*tree->root().subitems().begin()->asContainer(), sink));
    const auto read = readScanArchive(sink.bytes());
    ASSERT_TRUE(read);

    EXPECT_EQ(dumpOf(*read.value()), "0\tC\t0\t0\t\"s\"\n1\tF\t5\t-\t\"c\"\n");
}

} // namespace tessaly::archive
