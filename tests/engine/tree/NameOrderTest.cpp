#include "engine/tree/NameOrder.hpp"

#include "engine/tree/EscapedName.hpp"

#include <gtest/gtest.h>

#include <array>
#include <compare>
#include <random>
#include <string>
#include <string_view>

using namespace std::string_literals;

namespace tessaly::tree {
namespace {

constexpr auto before = std::strong_ordering::less;
constexpr auto same = std::strong_ordering::equal;

TEST(NameOrder, upperCaseComesBeforeLowerCase)
{
    EXPECT_EQ(compareByCodeUnits("Zebra", "apple"), before);
    EXPECT_EQ(compareByCodeUnits("a", "a"), same);
    EXPECT_EQ(compareByCodeUnits("a10", "a9"), before);
}

TEST(NameOrder, aNameComesBeforeItsContinuation)
{
    EXPECT_EQ(compareByCodeUnits("", "a"), before);
    EXPECT_EQ(compareByCodeUnits("a", "a\0"s), before);
    EXPECT_EQ(compareByCodeUnits("a", "a\xC3\xA9"), before);
}

TEST(NameOrder, codeUnitsDecideAndNotCodePoints)
{
    // U+1F600 is D83D DE00, which lies below U+FF5E; in UTF-8 it is the other way round.
    EXPECT_EQ(compareByCodeUnits("\xF0\x9F\x98\x80", "\xEF\xBD\x9E"), before);
    EXPECT_EQ(compareByCodeUnits("x\xF0\x9F\x98\x80", "x\xEF\xBD\x9E"), before);
}

TEST(NameOrder, accentsComeAfterAllPlainLetters)
{
    EXPECT_EQ(compareByCodeUnits("z", "\xC3\xA9"), before);
}

TEST(NameOrder, bytesThatAreNoTextStandWhereTheirArchivedTextDoes)
{
    // A cut character is archived beyond U+EF00, the whole one is U+00E9.
    EXPECT_EQ(compareByCodeUnits("\xC3\xA9", "\xC3"), before);
    EXPECT_EQ(compareByCodeUnits("\xC3\xA9", "\xC3x"), before);
}

TEST(NameOrder, isThatOfTheArchivedTextsForAnyBytes)
{
    constexpr std::array<std::string_view, 17> pieces{
        "a",    "b",    "\xC3\xA9", "\xC3", "\xA9", "\xE2\x82\xAC", "\xE2\x82",         "\xE2",
        "\x82", "\xAC", "\xF0\x9F", "\x98", "\x80", "\xEF\xBE\x80", "\xF0\x9F\x98\x80", "\xFF",
        "\xF4"};
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same names each time
    const auto name = [&](std::string start) {
        for (auto count = random() % 5; count > 0; --count) {
            start += pieces[random() % pieces.size()];
        }
        return start;
    };
    for (int i = 0; i < 200'000; ++i) {
        const std::string start = name("");
        const std::string a = name(start);
        const std::string b = name(start);
        ASSERT_EQ(compareByCodeUnits(a, b), escapedName(a) <=> escapedName(b))
            << testing::PrintToString(a) << " and " << testing::PrintToString(b);
    }
}

} // namespace
} // namespace tessaly::tree
