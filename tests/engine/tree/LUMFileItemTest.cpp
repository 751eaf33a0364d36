#include "engine/tree/LUMFileItem.hpp"

#include "engine/tree/LUMFileContainer.hpp"

#include <gtest/gtest.h>

namespace tessaly::tree {

namespace {

class LUMFileItemTest : public testing::Test {
protected:
    NodeArena m_arena;
};

} // namespace

TEST_F(LUMFileItemTest, aDefaultItemIsEmpty)
{
    const auto &item = m_arena.make<LUMFileItem>();

    EXPECT_EQ(item.itemName(), "Empty Item");
    EXPECT_EQ(item.itemSize(), 0U);
    EXPECT_FALSE(item.isContainer());
    EXPECT_EQ(item.asContainer(), nullptr);
}

TEST_F(LUMFileItemTest, nameAndSizeAreTheOnesGiven)
{
    const auto &item = m_arena.make<LUMFileItem>("a", UINT64_MAX);

    EXPECT_EQ(item.itemName(), "a");
    EXPECT_EQ(item.itemSize(), UINT64_MAX);
}

TEST_F(LUMFileItemTest, nameAndSizeCanBeSet)
{
    auto &item = m_arena.make<LUMFileItem>("a", std::uint64_t{1});
    const std::string_view before = item.itemName();
    item.setItemName(m_arena, "b");
    item.setItemSize(2);

    EXPECT_EQ(item.itemName(), "b");
    EXPECT_EQ(item.itemSize(), 2U);
    EXPECT_EQ(before, "a");
}

TEST_F(LUMFileItemTest, anEmptyNameIsNotAMissingOne)
{
    auto &item = m_arena.make<LUMFileItem>("", std::uint64_t{0});
    EXPECT_TRUE(item.hasItemName());

    item.setStoredName(nullptr);
    EXPECT_FALSE(item.hasItemName());
    EXPECT_EQ(item.itemName(), "");
}

TEST_F(LUMFileItemTest, aFolderIsAnItemOfItsOwnKind)
{
    LUMFileItem &item = m_arena.make<LUMFileContainer>("f", std::uint64_t{0});

    EXPECT_TRUE(item.isContainer());
    EXPECT_EQ(static_cast<LUMFileItem *>(item.asContainer()), &item);
}

TEST_F(LUMFileItemTest, aSizeTextIsAPlaceholderWhenTheLow32BitsAreAllOnes)
{
    EXPECT_EQ(LUMFileItem::buildString(4'294'967'295), "--");
    EXPECT_EQ(LUMFileItem::buildString(0x5FFFFFFFF), "--");
    EXPECT_EQ(LUMFileItem::buildString(UINT64_MAX), "--");
}

TEST_F(LUMFileItemTest, sizesNextToAPlaceholderReadAsSizes)
{
    EXPECT_EQ(LUMFileItem::buildString(4'294'967'294), "4.29 GB");
    EXPECT_EQ(LUMFileItem::buildString(4'294'967'296), "4.29 GB");
    EXPECT_EQ(LUMFileItem::buildString(UINT64_MAX - 1), "18446744.07 TB");
}

TEST_F(LUMFileItemTest, describesItselfByNameAndSize)
{
    EXPECT_EQ(m_arena.make<LUMFileItem>("a", std::uint64_t{1500}).description(),
              "ITEM a size:1.50 KB");
    EXPECT_EQ(m_arena.make<LUMFileItem>("a", std::uint64_t{4'294'967'295}).description(),
              "ITEM a size:--");
}

TEST_F(LUMFileItemTest, describesAMissingNameAsNull)
{
    auto &item = m_arena.make<LUMFileItem>("a", std::uint64_t{0});
    item.setStoredName(nullptr);

    EXPECT_EQ(item.description(), "ITEM (null) size:0.00 KB");
}

TEST_F(LUMFileItemTest, describesAFolderAsTheFolderDoes)
{
    const LUMFileItem &item = m_arena.make<LUMFileContainer>("f", std::uint64_t{0});

    EXPECT_EQ(item.description(), "ITEM f size:0, total: 0.00 KB\n");
}

TEST_F(LUMFileItemTest, minus1AloneIsAPlaceholder)
{
    EXPECT_EQ(LUMFileItem::buildString(-1), "--");
    EXPECT_EQ(LUMFileItem::buildString(-2), "-0.00 KB");
}

} // namespace tessaly::tree
