#include "engine/archive/Result.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace tessaly::archive {

TEST(Result, holdsAValueOrAnError)
{
    const Result<int, std::string> value = 7;
    const Result<int, std::string> error = std::string("no");

    ASSERT_TRUE(value);
    EXPECT_EQ(value.value(), 7);
    ASSERT_FALSE(error);
    EXPECT_EQ(error.error(), "no");
}

TEST(Result, aValueCanBeMovedOut)
{
    Result<std::unique_ptr<int>, std::string> result = std::make_unique<int>(7);
    const std::unique_ptr<int> taken = std::move(result.value());

    EXPECT_EQ(*taken, 7);
    EXPECT_EQ(result.value(), nullptr);
}

} // namespace tessaly::archive
