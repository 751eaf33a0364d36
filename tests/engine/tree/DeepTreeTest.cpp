// Trees far deeper than any stack: everything that is done with a tree is done here on a thread
// whose stack has no room for a frame a level.

#include "engine/archive/ScanFileReader.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/fakes/MemorySink.hpp"

#include <gtest/gtest.h>

#include <functional>

#include <pthread.h>

namespace tessaly::tree {

namespace {

constexpr std::size_t depth = 100'000;
constexpr std::size_t smallStack = std::size_t{256} << 10U;

void runOnSmallStack(std::function<void()> work)
{
    pthread_attr_t attributes;
    pthread_t thread;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, smallStack), 0);
    const auto run = [](void *function) -> void * {
        (*static_cast<std::function<void()> *>(function))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    EXPECT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

} // namespace

TEST(DeepTree, isTotalled)
{
    runOnSmallStack([] { EXPECT_EQ(makeDeepTree(depth, 7)->root().valueOfSubitems(), 7U); });
}

TEST(DeepTree, isDescribed)
{
    runOnSmallStack([] {
        const std::string text = makeDeepTree(depth, 1000)->root().description();
        EXPECT_TRUE(text.starts_with("ITEM Empty Item size:0, total: 1.00 KB\n"
                                     "subitem: ITEM d size:0, total: 1.00 KB\n"));
        EXPECT_TRUE(text.ends_with("subitem: ITEM leaf size:1.00 KB\n" + std::string(depth, '\n')));
    });
}

TEST(DeepTree, isArchivedAndReadBack)
{
    runOnSmallStack([] {
        const auto tree = makeDeepTree(depth);
        MemorySink sink;
        ASSERT_TRUE(archive::writeScanArchive(tree->root(), sink));
        const auto read = archive::readScanArchive(sink.bytes());
        ASSERT_TRUE(read) << read.error().text();
        EXPECT_TRUE(dumpOf(*read.value()) == dumpOf(*tree));
    });
}

TEST(DeepTree, isFreed)
{
    std::weak_ptr<ScanTree> watch;
    runOnSmallStack([&] { watch = makeDeepTree(depth); });

    EXPECT_TRUE(watch.expired());
}

} // namespace tessaly::tree
