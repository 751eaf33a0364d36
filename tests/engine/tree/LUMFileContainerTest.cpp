#include "engine/tree/LUMFileContainer.hpp"

#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/engine/tree/TreeLines.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tessaly::tree {

TEST(LUMFileContainer, aDefaultFolderIsEmptyAndWithoutParent)
{
    NodeArena arena;
    const auto &folder = arena.make<LUMFileContainer>();

    EXPECT_EQ(folder.itemName(), "Empty Item");
    EXPECT_EQ(folder.itemSize(), 0U);
    EXPECT_TRUE(folder.subitems().empty());
    EXPECT_EQ(folder.subitems().size(), 0U);
    EXPECT_EQ(folder.subitems().begin(), folder.subitems().end());
    EXPECT_EQ(folder.parentContainer(), nullptr);
}

TEST(LUMFileContainer, childrenKeepTheirOrder)
{
    const auto tree = makeTree("root", {file("b"), folder("a"), file("c"), file("b")});

    EXPECT_EQ(childNames(tree->root()), (std::vector<std::string>{"b", "a", "c", "b"}));
    EXPECT_EQ(tree->root().subitems().size(), 4U);
    EXPECT_FALSE(tree->root().subitems().empty());
}

TEST(LUMFileContainer, childrenCanBeChangedThroughTheView)
{
    const auto tree = makeTree("root", {file("a", 1), file("b", 2)});
    for (LUMFileItem &child : tree->root().subitems()) {
        child.setItemSize(child.itemSize() * 10);
    }

    EXPECT_EQ(tree->root().valueOfSubitems(), 30U);
}

TEST(LUMFileContainer, theViewWorksWithAlgorithms)
{
    const auto tree = makeTree("root", {file("a", 1), file("b", 2), file("c", 3)});
    const auto children = std::as_const(*tree).root().subitems();

    const auto found = std::find_if(children.begin(), children.end(),
                                    [](const LUMFileItem &item) { return item.itemSize() == 2; });

    EXPECT_EQ(found->itemName(), "b");
    EXPECT_EQ(std::distance(found, children.end()), 2);
}

TEST(LUMFileContainer, appendingGivesFoldersTheirParent)
{
    const auto tree = makeTree("root", {folder("s", {folder("t")})});
    LUMFileContainer *s = tree->root().subitems().begin()->asContainer();
    LUMFileContainer *t = s->subitems().begin()->asContainer();

    EXPECT_EQ(tree->root().parentContainer(), nullptr);
    EXPECT_EQ(s->parentContainer(), &tree->root());
    EXPECT_EQ(t->parentContainer(), s);
}

TEST(LUMFileContainer, theParentCanBeSet)
{
    NodeArena arena;
    auto &parent = arena.make<LUMFileContainer>();
    auto &child = arena.make<LUMFileContainer>();
    child.setParentContainer(&parent);

    EXPECT_EQ(child.parentContainer(), &parent);
    EXPECT_TRUE(parent.subitems().empty());
}

TEST(LUMFileContainer, childrenAddedLaterAreSeenThroughAnEarlierView)
{
    NodeArena arena;
    auto &parent = arena.make<LUMFileContainer>();
    auto view = parent.subitems();
    view.append(arena.make<LUMFileItem>("a", std::uint64_t{1}));
    parent.subitems().append(arena.make<LUMFileItem>("b", std::uint64_t{2}));

    EXPECT_EQ(view.size(), 2U);
}

TEST(LUMFileContainer, theTotalOfAnEmptyFolderIsItsOwnSize)
{
    EXPECT_EQ(makeTree(folder("root"))->root().valueOfSubitems(), 0U);
    EXPECT_EQ(makeTree(folder("root", {}, 7))->root().valueOfSubitems(), 7U);
}

TEST(LUMFileContainer, totalCountsFilesAtEveryDepth)
{
    const auto tree = makeTree("root", {file("a", 10), folder("s", {file("c", 5)})});

    EXPECT_EQ(tree->root().valueOfSubitems(), 15U);
}

TEST(LUMFileContainer, totalCountsTheSizesOfFoldersToo)
{
    const auto tree = makeTree(folder("root", {folder("s", {file("c", 5)}, 20)}, 100));

    EXPECT_EQ(tree->root().valueOfSubitems(), 125U);
}

TEST(LUMFileContainer, totalFollowsEveryChange)
{
    const auto tree = makeTree("root", {file("a", 10)});
    EXPECT_EQ(tree->root().valueOfSubitems(), 10U);

    tree->root().subitems().append(tree->leaseArena()->make<LUMFileItem>("b", std::uint64_t{1}));
    EXPECT_EQ(tree->root().valueOfSubitems(), 11U);
}

TEST(LUMFileContainer, totalWrapsAroundAt64Bits)
{
    const auto tree = makeTree("root", {file("a", UINT64_MAX), folder("s", {file("c", 5)})});

    EXPECT_EQ(tree->root().valueOfSubitems(), 4U);
}

TEST(LUMFileContainer, describesItselfAndItsChildren)
{
    const auto tree = makeTree("root", {file("a", 1500), file("b", 4'294'967'295)});

    EXPECT_EQ(tree->root().description(), "ITEM root size:0, total: 4.29 GB\n"
                                          "subitem: ITEM a size:1.50 KB\n"
                                          "subitem: ITEM b size:--\n");
}

TEST(LUMFileContainer, aBlankLineFollowsTheDescriptionOfAnInnerFolder)
{
    const auto tree =
        makeTree("root", {folder("s", {file("c", 5000), folder("t")}), file("a", 10'000)});

    EXPECT_EQ(tree->root().description(), "ITEM root size:0, total: 15.00 KB\n"
                                          "subitem: ITEM s size:0, total: 5.00 KB\n"
                                          "subitem: ITEM c size:5.00 KB\n"
                                          "subitem: ITEM t size:0, total: 0.00 KB\n"
                                          "\n"
                                          "\n"
                                          "subitem: ITEM a size:10.00 KB\n");
}

TEST(LUMFileContainer, describesItsOwnSizeAsANumber)
{
    EXPECT_EQ(makeTree(folder("f", {}, UINT64_MAX))->root().description(),
              "ITEM f size:18446744073709551615, total: --\n");
}

TEST(LUMFileContainer, describesAMissingNameAsNull)
{
    const auto tree = makeTree(noName, {file(noName, 1000), folder(noName)});

    EXPECT_EQ(tree->root().description(), "ITEM (null) size:0, total: 1.00 KB\n"
                                          "subitem: ITEM (null) size:1.00 KB\n"
                                          "subitem: ITEM (null) size:0, total: 0.00 KB\n"
                                          "\n");
}

TEST(LUMFileContainer, anInnerFolderDescribesOnlyItself)
{
    const auto tree = makeTree("root", {file("a", 1), folder("s", {file("c", 5000)})});

    EXPECT_EQ(childNamed(tree->root(), "s")->description(), "ITEM s size:0, total: 5.00 KB\n"
                                                            "subitem: ITEM c size:5.00 KB\n");
}

} // namespace tessaly::tree
