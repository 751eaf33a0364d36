#include "engine/tree/ScanTree.hpp"

#include "tests/engine/tree/TreeBuilder.hpp"

#include <gtest/gtest.h>

#include <barrier>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace tessaly::tree {

namespace {

constexpr int threadCount = 8;

/// Runs `work(0)` … `work(threadCount - 1)` at the same time.
template <typename Work>
void onThreads(Work work)
{
    std::vector<std::jthread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([=] { work(i); });
    }
}

} // namespace

TEST(ScanTree, aNewTreeIsOneDefaultFolder)
{
    const ScanTree tree;

    EXPECT_EQ(tree.root().itemName(), "Empty Item");
    EXPECT_TRUE(tree.root().subitems().empty());
    EXPECT_EQ(tree.root().parentContainer(), nullptr);
}

TEST(ScanTree, livesAsLongAsTheLastHandleToANode)
{
    std::shared_ptr<ScanTree> tree = makeTree("root", {folder("s", {file("c", 5)})});
    const std::weak_ptr<ScanTree> watch = tree;
    std::shared_ptr<const LUMFileItem> handle(tree, &*tree->root().subitems().begin());
    tree.reset();

    ASSERT_FALSE(watch.expired());
    EXPECT_EQ(handle->itemName(), "s");
    EXPECT_EQ(handle->asContainer()->parentContainer()->itemName(), "root");

    handle.reset();
    EXPECT_TRUE(watch.expired());
}

TEST(ScanTree, leasesAtTheSameTimeAreOfDifferentArenas)
{
    ScanTree tree;
    const ScanTree::ArenaLease first = tree.leaseArena();
    const ScanTree::ArenaLease second = tree.leaseArena();

    EXPECT_NE(first.get(), second.get());
}

TEST(ScanTree, anArenaThatCameBackIsLeasedAgain)
{
    ScanTree tree;
    const NodeArena *arena = tree.leaseArena().get();

    EXPECT_EQ(tree.leaseArena().get(), arena);
}

TEST(ScanTree, threadsLeaseDifferentArenasAndReuseThem)
{
    ScanTree tree;
    std::barrier everyoneLeased(threadCount);
    std::vector<const NodeArena *> leased(threadCount);
    const auto leaseAll = [&] {
        onThreads([&](int i) {
            const ScanTree::ArenaLease arena = tree.leaseArena();
            leased[static_cast<std::size_t>(i)] = arena.get();
            everyoneLeased.arrive_and_wait();
        });
        return std::set(leased.begin(), leased.end());
    };

    const std::set<const NodeArena *> first = leaseAll();
    EXPECT_EQ(first.size(), static_cast<std::size_t>(threadCount));
    EXPECT_EQ(leaseAll(), first);
}

TEST(ScanTree, threadsBuildTheirOwnSubtrees)
{
    constexpr std::uint64_t filesEach = 10'000;
    ScanTree tree;
    std::vector<LUMFileContainer *> folders;
    for (int i = 0; i < threadCount; ++i) {
        folders.push_back(&tree.leaseArena()->make<LUMFileContainer>());
        tree.root().subitems().append(*folders.back());
    }

    onThreads([&](int i) {
        const ScanTree::ArenaLease arena = tree.leaseArena();
        for (std::uint64_t n = 1; n <= filesEach; ++n) {
            folders[static_cast<std::size_t>(i)]->subitems().append(
                arena->make<LUMFileItem>(std::to_string(n), n));
        }
    });

    EXPECT_EQ(tree.root().valueOfSubitems(), threadCount * filesEach * (filesEach + 1) / 2);
}

} // namespace tessaly::tree
