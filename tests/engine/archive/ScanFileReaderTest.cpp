#include "engine/archive/ScanFileReader.hpp"

#include "cli/TreeDump.hpp"
#include "engine/tree/TreeWalk.hpp"
#include "tests/engine/archive/ArchiveVectors.hpp"
#include "tests/engine/archive/PlistBuilder.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/engine/tree/TreeLines.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <sstream>

namespace tessaly::archive {

namespace {

using Kind = ArchiveError::Kind;
using Reference = PlistBuilder::Reference;
using TreeOrError = Result<std::shared_ptr<tree::ScanTree>, ArchiveError>;

std::string outcomeOf(const TreeOrError &result)
{
    return result ? "read" : kindName(result.error().kind);
}

std::string messageOf(const TreeOrError &result)
{
    return result ? "read" : result.error().text();
}

/// The dump of what a file holds, details and all; or the error.
std::string fullDumpOf(std::span<const std::byte> archive)
{
    ScanFileDetails details;
    const auto tree = readScanArchive(archive, &details);
    std::ostringstream out;
    if (tree) {
        dumpTree(out, tree.value()->root(), details);
    }
    return tree ? out.str() : tree.error().text();
}

/// Reads hostile bytes and does with the tree, if there is one, what a program would.
void useArchive(const Bytes &bytes)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): so that it has no spare room
    const Bytes exactly(bytes); // in memory of just this size: the sanitizer sees a step past it
    const auto tree = readScanArchive(exactly);
    if (tree) {
        (void)tree.value()->root().valueOfSubitems();
        (void)tree.value()->root().description();
        EXPECT_NE(fullDumpOf(exactly), "");
    } else {
        EXPECT_NE(tree.error().message, "");
    }
}

class ScanFileVector : public testing::TestWithParam<ArchiveVector> {};

/// The vectors small enough to be tried byte by byte.
class SmallScanFileVector : public testing::TestWithParam<std::string> {};

/// Makes scan archives that no writer would write.
class ScanArchiveBuilder {
public:
    ScanArchiveBuilder()
        : m_item(m_archive.classNamed("LUMFileItem", {"LUMFileItem", "NSObject"})),
          m_container(m_archive.classNamed("LUMFileContainer",
                                           {"LUMFileContainer", "LUMFileItem", "NSObject"}))
    {
    }

    [[nodiscard]] ArchiveBuilder &archive() { return m_archive; }
    [[nodiscard]] PlistBuilder &plist() { return m_archive.plist(); }

    Reference item(const ArchiveBuilder::Fields &fields = {})
    {
        return m_archive.instance(m_item, fields);
    }
    Reference item(Reference name) { return item({{"itemName", name}}); }
    Reference folder(const std::vector<Reference> &children, ArchiveBuilder::Fields fields = {})
    {
        fields.emplace_back("subitems", m_archive.list(children));
        return m_archive.instance(m_container, fields);
    }
    Reference escapedName(std::string_view name) { return m_archive.archived(plist().ascii(name)); }

    [[nodiscard]] Bytes build(Reference root) const { return m_archive.build(root, m_frame); }
    /// An archive of a root with these children.
    [[nodiscard]] Bytes buildRootOf(const std::vector<Reference> &children)
    {
        return build(folder(children));
    }

private:
    ArchiveBuilder m_archive;
    ArchiveBuilder::Frame m_frame{.widths = {.offset = 4, .reference = 4}};
    Reference m_item;
    Reference m_container;
};

/// The distinct places in memory where the names of a root's children lie.
std::set<const char *> namePlaces(const tree::LUMFileContainer &root)
{
    std::set<const char *> places;
    for (const tree::LUMFileItem &child : root.subitems()) {
        places.insert(child.itemName().data());
    }
    return places;
}

} // namespace

TEST_P(ScanFileVector, hasTheExpectedOutcome)
{
    ScanFileDetails details;
    const auto plain = readScanFile(vectorPath(GetParam().file));
    const auto detailed = readScanFile(vectorPath(GetParam().file), &details);

    EXPECT_EQ(outcomeOf(plain), GetParam().outcome) << messageOf(plain);
    EXPECT_EQ(messageOf(detailed), messageOf(plain));
    if (GetParam().dump != "-") {
        EXPECT_TRUE(fullDumpOf(vectorBytes(GetParam().file)) ==
                    fileText(vectorPath(GetParam().dump)));
    }
}

std::string testNameOf(const testing::TestParamInfo<ArchiveVector> &info)
{
    const std::string &file = info.param.file;
    const std::size_t start = file.find('/') + 1;
    return file.substr(start, file.rfind('.') - start);
}

INSTANTIATE_TEST_SUITE_P(Vectors, ScanFileVector, testing::ValuesIn(archiveVectors("tree")),
                         testNameOf);

TEST_P(SmallScanFileVector, cutAnywhereIsAnError)
{
    const Bytes whole = vectorBytes(GetParam());
    ASSERT_TRUE(readScanArchive(whole));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Bytes start(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(outcomeOf(readScanArchive(start)), size == 0 ? "notAnArchive" : "truncated");
    }
}

TEST_P(SmallScanFileVector, withItsStartMissingIsAnError)
{
    const Bytes whole = vectorBytes(GetParam());
    for (std::size_t start = 1; start < whole.size(); ++start) {
        const Bytes end(whole.begin() + static_cast<std::ptrdiff_t>(start), whole.end());
        EXPECT_EQ(outcomeOf(readScanArchive(end)), "notAnArchive");
    }
}

TEST_P(SmallScanFileVector, withAByteChangedIsATreeOrAnError)
{
    Bytes bytes = vectorBytes(GetParam());
    for (std::byte &byte : bytes) {
        const std::byte original = byte;
        for (const unsigned change : {0x01U, 0x02U, 0x0FU, 0x10U, 0x70U, 0x80U, 0xFFU}) {
            byte = original ^ static_cast<std::byte>(change);
            useArchive(bytes);
        }
        byte = original;
    }
}

INSTANTIATE_TEST_SUITE_P(Vectors, SmallScanFileVector,
                         testing::Values("valid/basic.bplist", "valid/basic_wide8.bplist",
                                         "valid/basic_mutablestring.bplist", "valid/sizes.bplist",
                                         "valid/name_null_wrapped.bplist",
                                         "valid/unicode_names.bplist"));

TEST(ScanFileReader, messagesSayWhatIsWrongAndWhere)
{
    const auto message = [](const std::string &file) {
        return messageOf(readScanFile(vectorPath("malformed/" + file)));
    };
    EXPECT_EQ(message("zero_length.bplist"), "not an archive: the file is empty");
    EXPECT_EQ(message("trunc_header.bplist"), "byte 8: the file is truncated");
    EXPECT_EQ(message("trunc_last_byte.bplist"),
              "byte 554: the file is truncated or damaged: it does not end in a trailer");
    EXPECT_EQ(message("class_unknown.bplist"), "byte 199: unknown class LUMFileWeird");
    EXPECT_EQ(message("cycle_self.bplist"), "byte 113: a node is listed twice");
    EXPECT_EQ(message("top_is_array.bplist"), "byte 9: a property list, but not an archive");
}

TEST(ScanFileReader, aMissingFileIsUnreadable)
{
    EXPECT_EQ(outcomeOf(readScanFile("/nonexistent/file")), "unreadable");
}

TEST(ScanFileReader, parentsAreTakenFromTheChildLists)
{
    for (const std::string name :
         {"valid/basic", "valid/missing_parent", "malformed/parent_wrong"}) {
        const auto tree = readScanFile(vectorPath(name + ".bplist"));
        ASSERT_TRUE(tree) << messageOf(tree);
        const tree::LUMFileContainer &root = tree.value()->root();
        EXPECT_EQ(root.parentContainer(), nullptr);
        EXPECT_EQ(childNamed(root, "s")->asContainer()->parentContainer(), &root);
    }
}

TEST(ScanFileReader, aSumOfMoreThan64BitsWrapsAround)
{
    const auto tree = readScanFile(vectorPath("malformed/sum_overflow.bplist"));
    ASSERT_TRUE(tree);
    std::uint64_t sum = 0;
    for (const tree::LUMFileItem &child : tree.value()->root().subitems()) {
        sum += child.itemSize();
    }

    EXPECT_EQ(tree.value()->root().valueOfSubitems(), sum);
}

TEST(ScanFileReader, anEmptyNameAndAMissingOneAreToldApart)
{
    const auto empty = readScanFile(vectorPath("valid/empty_root_noname.bplist"));
    const auto missing = readScanFile(vectorPath("valid/missing_all.bplist"));

    EXPECT_TRUE(empty.value()->root().hasItemName());
    EXPECT_FALSE(missing.value()->root().hasItemName());
}

TEST(ScanFileReader, damageInParentsHarmsNobody)
{
    ScanArchiveBuilder builder;
    PlistBuilder &plist = builder.plist();
    const std::vector<Reference> parents{plist.uid(60'000, 4), plist.uid(UINT64_MAX, 8),
                                         plist.integer(1, 1), plist.raw(bytesOf("\xF7")), 999'999};
    std::vector<Reference> children;
    for (const Reference parent : parents) {
        children.push_back(builder.item({{"parentContainer", parent}}));
    }
    const Bytes bytes = builder.buildRootOf(children);

    EXPECT_EQ(fullDumpOf(bytes), "0\tC\t-\t-\t-\n"
                                 "1\tF\t-\tx\t-\n1\tF\t-\tx\t-\n1\tF\t-\tx\t-\n"
                                 "1\tF\t-\tx\t-\n1\tF\t-\tx\t-\n");
    EXPECT_TRUE(readScanArchive(bytes));
}

TEST(ScanFileReader, detailsAreKeptForUnusualNodesOnly)
{
    ScanFileDetails details;
    const auto tree = readScanFile(vectorPath("valid/missing_size.bplist"), &details);
    ASSERT_TRUE(tree);
    const tree::LUMFileContainer &root = tree.value()->root();

    EXPECT_EQ(details.of(root).parent, ScanFileDetails::Parent::none);
    bool hasUnusual = !details.of(root).hasSize;
    for (const tree::LUMFileItem &child : root.subitems()) {
        hasUnusual = hasUnusual || !details.of(child).hasSize;
        EXPECT_TRUE(ScanFileDetails::usual(child).hasSize);
    }
    EXPECT_TRUE(hasUnusual);
}

TEST(ScanFileReader, detailsTellNamesThatAreOursInAnotherForm)
{
    ScanArchiveBuilder builder;
    // Two escapes that together are valid: our own archive would say U+00E9.
    const auto name = builder.archive().archived(builder.plist().utf16(u"\xEFC3\xEFA9"));
    const Bytes bytes = builder.buildRootOf({builder.item(name)});
    ScanFileDetails details;
    const auto tree = readScanArchive(bytes, &details);
    ASSERT_TRUE(tree);
    const tree::LUMFileItem &child = *tree.value()->root().subitems().begin();

    EXPECT_EQ(child.itemName(), "\u00E9");
    EXPECT_EQ(details.of(child).name, u"\xEFC3\xEFA9");
}

TEST(ScanFileReader, childrenMayBeSubclasses)
{
    ScanArchiveBuilder builder;
    const auto fancy = builder.archive().classNamed(
        "FancyFolder", {"FancyFolder", "LUMFileContainer", "LUMFileItem", "NSObject"});
    const auto folder =
        builder.archive().instance(fancy, {{"subitems", builder.archive().list({builder.item()})}});
    const auto tree = readScanArchive(builder.buildRootOf({folder}));
    ASSERT_TRUE(tree) << messageOf(tree);
    const tree::LUMFileItem &child = *tree.value()->root().subitems().begin();

    ASSERT_TRUE(child.isContainer());
    EXPECT_EQ(child.asContainer()->subitems().size(), 1U);
}

TEST(ScanFileReader, aFileMayCarryAChildList)
{
    ScanArchiveBuilder builder;
    const auto item = builder.item({{"subitems", builder.archive().list({builder.item()})}});
    const auto tree = readScanArchive(builder.buildRootOf({item}));
    ASSERT_TRUE(tree) << messageOf(tree);

    EXPECT_FALSE(tree.value()->root().subitems().begin()->isContainer());
}

TEST(ScanFileReader, aNodeListedTwiceIsAnErrorWhereverItIs)
{
    ScanArchiveBuilder builder;
    const auto item = builder.item();
    const Bytes sameList = builder.buildRootOf({item, item});
    const Bytes twoLists = builder.buildRootOf({item, builder.folder({item})});

    EXPECT_EQ(outcomeOf(readScanArchive(sameList)), "damaged");
    EXPECT_EQ(outcomeOf(readScanArchive(twoLists)), "damaged");
}

TEST(ScanFileReader, aLongNameThatManyShareIsStoredOnce)
{
    ScanArchiveBuilder builder;
    const std::string longName(100'000, 'n');
    const auto name = builder.escapedName(longName);
    std::vector<Reference> children;
    for (int i = 0; i < 1000; ++i) {
        children.push_back(builder.item(name));
    }
    const auto tree = readScanArchive(builder.buildRootOf(children));
    ASSERT_TRUE(tree) << messageOf(tree);

    EXPECT_EQ(namePlaces(tree.value()->root()).size(), 1U);
    EXPECT_EQ(tree.value()->root().subitems().begin()->itemName(), longName);
}

TEST(ScanFileReader, longNamesThatOverlapAreRefused)
{
    ScanArchiveBuilder builder;
    const std::string marker("_\x12\0\1\0\0", 6); // a string of 65,536 characters, itself ASCII
    std::string many;
    for (int i = 0; i < 20'000; ++i) {
        many += marker;
    }
    const auto host = builder.plist().raw(bytesOf(many));
    std::vector<Reference> children;
    for (std::size_t i = 0; i < 5'000; ++i) {
        const auto name = builder.plist().ascii("");
        builder.plist().placeInside(name, host, i * marker.size());
        children.push_back(builder.item(builder.archive().archived(name)));
    }

    EXPECT_EQ(messageOf(readScanArchive(builder.buildRootOf(children))).substr(0, 5), "byte ");
    EXPECT_EQ(outcomeOf(readScanArchive(builder.buildRootOf(children))), "damaged");
}

TEST(ScanFileReader, nodesThatAreAllOneHugeDictionaryAreRefused)
{
    ScanArchiveBuilder builder;
    const PlistBuilder::Pairs pairs(50'000, {builder.archive().null(), builder.archive().null()});
    const auto huge = builder.plist().dictionary(pairs);
    std::vector<Reference> children;
    for (int i = 0; i < 10'000; ++i) {
        children.push_back(builder.archive().archived(huge));
    }

    EXPECT_EQ(outcomeOf(readScanArchive(builder.buildRootOf(children))), "damaged");
}

TEST(ScanFileReader, nodesThatShareOneDictionaryAreNodesOfTheirOwn)
{
    ScanArchiveBuilder builder;
    const auto name = builder.escapedName("twin");
    const auto twin = builder.archive().dictionary(
        {{"itemName", name}, {"$class", builder.archive().classNamed("LUMFileItem")}});
    const auto tree = readScanArchive(
        builder.buildRootOf({builder.archive().archived(twin), builder.archive().archived(twin)}));

    ASSERT_TRUE(tree) << messageOf(tree);
    EXPECT_EQ(childNames(tree.value()->root()), (std::vector<std::string>{"twin", "twin"}));
}

TEST(ScanFileReader, aWideTreeOfOneListIsRead)
{
    ScanArchiveBuilder builder;
    std::vector<Reference> children;
    for (int i = 0; i < 70'000; ++i) {
        children.push_back(builder.item());
    }
    const auto tree = readScanArchive(builder.buildRootOf(children));

    ASSERT_TRUE(tree) << messageOf(tree);
    EXPECT_EQ(tree.value()->root().subitems().size(), 70'000U);
}

} // namespace tessaly::archive
