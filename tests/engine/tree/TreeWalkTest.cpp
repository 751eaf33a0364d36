#include "engine/tree/TreeWalk.hpp"

#include "tests/engine/tree/TreeBuilder.hpp"

#include <gtest/gtest.h>

#include <string>

namespace tessaly::tree {

namespace {

/// The visits in order: "(" and ")" around a folder, names of files between.
struct Trace {
    std::string text;

    void file(const LUMFileItem &item) { text += item.itemName(); }
    void enter(const LUMFileContainer &folder) { text += std::string(folder.itemName()) + '('; }
    void leave(const LUMFileContainer &folder) { text += ')' + std::string(folder.itemName()); }
};

std::string traceOf(const LUMFileContainer &top)
{
    Trace trace;
    walkTree(top, trace);
    return trace.text;
}

} // namespace

TEST(TreeWalk, anEmptyFolderIsEnteredAndLeft)
{
    EXPECT_EQ(traceOf(makeTree("r")->root()), "r()r");
}

TEST(TreeWalk, goesDepthFirstInOrder)
{
    const auto tree = makeTree("r", {file("a"), folder("s", {folder("t", {file("b")}), file("c")}),
                                     folder("u"), file("d")});

    EXPECT_EQ(traceOf(tree->root()), "r(as(t(b)tc)su()ud)r");
}

TEST(TreeWalk, staysBelowTheFolderItStartsFrom)
{
    const auto tree = makeTree("r", {folder("s", {file("a")}), file("b")});

    EXPECT_EQ(traceOf(*tree->root().subitems().begin()->asContainer()), "s(a)s");
}

} // namespace tessaly::tree
