#include "engine/tree/SizeNumber.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace tessaly::tree {

TEST(SizeNumber, readsIntegersAsTheirLow32Bits)
{
    EXPECT_EQ(SizeNumber(0).asInt32(), 0);
    EXPECT_EQ(SizeNumber(-1).asInt32(), -1);
    EXPECT_EQ(SizeNumber(-2).asInt32(), -2);
    EXPECT_EQ(SizeNumber(0x7FFFFFFFU).asInt32(), 2147483647);
    EXPECT_EQ(SizeNumber(0x80000000U).asInt32(), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(SizeNumber(std::uint64_t{0xFFFFFFFF}).asInt32(), -1);
    EXPECT_EQ(SizeNumber(std::uint64_t{0x5FFFFFFFE}).asInt32(), -2);
    EXPECT_EQ(SizeNumber(std::int64_t{0x500000000}).asInt32(), 0);
    EXPECT_EQ(SizeNumber(std::numeric_limits<std::uint64_t>::max()).asInt32(), -1);
}

TEST(SizeNumber, cutsRealsTowardsZeroAndHoldsThemInRange)
{
    EXPECT_EQ(SizeNumber(-1.0).asInt32(), -1);
    EXPECT_EQ(SizeNumber(-1.9).asInt32(), -1);
    EXPECT_EQ(SizeNumber(-0.9).asInt32(), 0);
    EXPECT_EQ(SizeNumber(-2.5F).asInt32(), -2);
    EXPECT_EQ(SizeNumber(2147483646.9).asInt32(), 2147483646);
    EXPECT_EQ(SizeNumber(4294967295.0).asInt32(), 2147483647);
    EXPECT_EQ(SizeNumber(1e300).asInt32(), 2147483647);
    EXPECT_EQ(SizeNumber(-1e300).asInt32(), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(SizeNumber(std::numeric_limits<double>::infinity()).asInt32(), 2147483647);
    EXPECT_EQ(SizeNumber(std::nan("")).asInt32(), 0);
}

TEST(SizeNumber, keepsTheValueAsAReal)
{
    EXPECT_EQ(SizeNumber(-2).value(), -2.0);
    EXPECT_EQ(SizeNumber(std::uint64_t{5'000'000'000}).value(), 5e9);
    EXPECT_EQ(SizeNumber(std::numeric_limits<std::uint64_t>::max()).value(), 0x1p64);
    EXPECT_EQ(SizeNumber(0.5).value(), 0.5);
    EXPECT_TRUE(std::isnan(SizeNumber(std::nan("")).value()));
}

} // namespace tessaly::tree
