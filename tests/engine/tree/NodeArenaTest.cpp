#include "engine/tree/NodeArena.hpp"

#include "engine/tree/LUMFileContainer.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/mman.h>

namespace tessaly::tree {

namespace {

std::string nameOfLength(std::size_t length)
{
    std::string name(length, 'x');
    for (std::size_t i = 0; i < length; ++i) {
        name[i] = static_cast<char>('a' + i % 26);
    }
    return name;
}

class NodeArenaNameLength : public testing::TestWithParam<std::size_t> {};

} // namespace

TEST_P(NodeArenaNameLength, isStoredWhole)
{
    NodeArena arena;
    const std::string name = nameOfLength(GetParam());

    const NodeArena::StoredName stored = arena.storeName(name);
    arena.storeName("the next name must not touch it");

    EXPECT_EQ(NodeArena::nameBytes(stored), name);
}

INSTANTIATE_TEST_SUITE_P(Lengths, NodeArenaNameLength,
                         testing::Values(0, 1, 7, 8, 9, 127, 128, 129, 255, 16383, 16384, 70000,
                                         2097151, 2097152));

TEST(NodeArena, noNameIsEmpty)
{
    EXPECT_EQ(NodeArena::nameBytes(nullptr), "");
}

TEST(NodeArena, anEmptyNameIsAName)
{
    NodeArena arena;

    EXPECT_NE(arena.storeName(""), nullptr);
}

TEST(NodeArena, aNameMayHoldAnyByte)
{
    NodeArena arena;
    std::string name;
    for (int byte = 0; byte < 256; ++byte) {
        name += static_cast<char>(byte);
    }

    EXPECT_EQ(NodeArena::nameBytes(arena.storeName(name)), name);
    EXPECT_EQ(NodeArena::nameBytes(arena.storeName({"a\0b", 3})), std::string_view("a\0b", 3));
    EXPECT_EQ(NodeArena::nameBytes(arena.storeName({"\0\0", 2})), std::string_view("\0\0", 2));
    EXPECT_EQ(NodeArena::nameBytes(arena.storeName({"\0", 1})), std::string_view("\0", 1));
}

TEST(NodeArena, namesMetAgainAreStoredOnce)
{
    NodeArena arena;
    const NodeArena::StoredName first = arena.storeName("Makefile");
    arena.storeName("README");

    EXPECT_EQ(arena.storeName("Makefile"), first);
}

TEST(NodeArena, namesThatAreForgottenStay)
{
    NodeArena arena;
    const NodeArena::StoredName first = arena.storeName("Makefile");
    arena.forgetRecentNames();
    const NodeArena::StoredName second = arena.storeName("Makefile");

    EXPECT_NE(second, first);
    EXPECT_EQ(NodeArena::nameBytes(first), "Makefile");
    EXPECT_EQ(NodeArena::nameBytes(second), "Makefile");
}

TEST(NodeArena, namesThatDifferOnlyInTheMiddleAreKeptApart)
{
    NodeArena arena;
    const NodeArena::StoredName a = arena.storeName("beginningAending--");
    const NodeArena::StoredName b = arena.storeName("beginningBending--");

    EXPECT_EQ(NodeArena::nameBytes(a), "beginningAending--");
    EXPECT_EQ(NodeArena::nameBytes(b), "beginningBending--");
}

TEST(NodeArena, manyNamesKeepTheirContent)
{
    NodeArena arena;
    std::vector<NodeArena::StoredName> stored;
    for (int i = 0; i < 100'000; ++i) {
        stored.push_back(arena.storeName("name " + std::to_string(i)));
    }

    for (int i = 0; i < 100'000; ++i) {
        ASSERT_EQ(NodeArena::nameBytes(stored[static_cast<std::size_t>(i)]),
                  "name " + std::to_string(i));
    }
}

TEST(NodeArena, aNameLargerThanAnyChunkFits)
{
    NodeArena arena;
    const std::string large(std::size_t{20} << 20U, 'L');
    const NodeArena::StoredName small = arena.storeName("small");

    EXPECT_EQ(NodeArena::nameBytes(arena.storeName(large)), large);
    EXPECT_EQ(NodeArena::nameBytes(arena.storeName("after")), "after");
    EXPECT_EQ(NodeArena::nameBytes(small), "small");
}

TEST(NodeArena, aNameOfFourGibibytesIsRefused)
{
    constexpr std::size_t tooLong = std::size_t{1} << 32U;
    void *memory =
        mmap(nullptr, tooLong, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    NodeArena arena;

    EXPECT_THROW(arena.storeName({static_cast<const char *>(memory), tooLong}), std::length_error);
    EXPECT_EQ(NodeArena::nameBytes(arena.storeName("next")), "next");
    munmap(memory, tooLong);
}

TEST(NodeArena, nodesAreAlignedAndKeepTheirContent)
{
    NodeArena arena;
    std::vector<const LUMFileItem *> nodes;
    for (std::uint64_t i = 0; i < 300'000; ++i) { // several chunks, of two kinds
        if (i % 3 == 0) {
            nodes.push_back(&arena.make<LUMFileContainer>("folder", i));
        } else {
            nodes.push_back(&arena.make<LUMFileItem>("file", i));
        }
    }

    for (std::uint64_t i = 0; i < nodes.size(); ++i) {
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(nodes[i]) % alignof(LUMFileContainer), 0U);
        ASSERT_EQ(nodes[i]->itemSize(), i);
        ASSERT_EQ(nodes[i]->isContainer(), i % 3 == 0);
    }
}

} // namespace tessaly::tree
