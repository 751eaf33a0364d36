#include "engine/tree/SizeText.hpp"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <string>

namespace tessaly::tree {

namespace {

/// A numbers' facet such as German has it.
struct CommaDecimals final : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// Restores the locale of the C library when it is destroyed.
class LocaleGuard {
public:
    LocaleGuard() : m_before(std::setlocale(LC_ALL, nullptr)) {}
    ~LocaleGuard()
    {
        std::locale::global(m_beforeCpp);
        std::setlocale(LC_ALL, m_before.c_str());
    }
    LocaleGuard(const LocaleGuard &) = delete;
    LocaleGuard &operator=(const LocaleGuard &) = delete;

private:
    std::string m_before;
    std::locale m_beforeCpp;
};

bool setCommaLocale()
{
    for (const char *name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "de_DE"}) {
        if (std::setlocale(LC_ALL, name) != nullptr) {
            return true;
        }
    }
    return false;
}

} // namespace

TEST(SizeText, smallSizesAreKilobytes)
{
    EXPECT_EQ(sizeText(0), "0.00 KB");
    EXPECT_EQ(sizeText(1), "0.00 KB");
    EXPECT_EQ(sizeText(999), "1.00 KB");
    EXPECT_EQ(sizeText(1000), "1.00 KB");
    EXPECT_EQ(sizeText(1500), "1.50 KB");
}

TEST(SizeText, theUnitIsChosenBeforeRounding)
{
    EXPECT_EQ(sizeText(999'994), "999.99 KB");
    EXPECT_EQ(sizeText(999'999), "1000.00 KB");
    EXPECT_EQ(sizeText(999'999'999), "1000.00 MB");
    EXPECT_EQ(sizeText(999'999'999'999), "1000.00 GB");
}

TEST(SizeText, eachUnitBeginsAtAThousandOfTheOneBefore)
{
    EXPECT_EQ(sizeText(1e6), "1.00 MB");
    EXPECT_EQ(sizeText(1e9), "1.00 GB");
    EXPECT_EQ(sizeText(1e12), "1.00 TB");
    EXPECT_EQ(sizeText(1e15), "1000.00 TB");
}

TEST(SizeText, theEdgeOfAUnitIsExact)
{
    EXPECT_EQ(sizeText(std::nextafter(1e6, 0)), "1000.00 KB");
    EXPECT_EQ(sizeText(std::nextafter(1e6, 2e6)), "1.00 MB");
    EXPECT_EQ(sizeText(std::nextafter(1e9, 0)), "1000.00 MB");
    EXPECT_EQ(sizeText(std::nextafter(1e12, 0)), "1000.00 GB");
}

TEST(SizeText, halvesFollowTheBinaryValue)
{
    EXPECT_EQ(sizeText(125), "0.12 KB"); // 0.125 lies exactly between: to even
    EXPECT_EQ(sizeText(375), "0.38 KB");
    EXPECT_EQ(sizeText(1005), "1.00 KB"); // 1.005 has no exact double and lies below
}

TEST(SizeText, thereIsNoUnitAboveTheTerabyte)
{
    EXPECT_EQ(sizeText(18'446'744'073'709'551'615.0), "18446744.07 TB");
    const std::string huge = sizeText(1e300);
    EXPECT_EQ(huge.size(), std::string("1.00 TB").size() + 288);
    EXPECT_TRUE(huge.ends_with(".00 TB"));
}

TEST(SizeText, negativeNumbersAreKilobytes)
{
    EXPECT_EQ(sizeText(-1500), "-1.50 KB");
    EXPECT_EQ(sizeText(-5e9), "-5000000.00 KB");
    EXPECT_TRUE(sizeText(std::numeric_limits<double>::lowest()).ends_with(".00 KB"));
}

TEST(SizeText, whatIsNotANumberIsTerabytes)
{
    EXPECT_EQ(sizeText(std::numeric_limits<double>::quiet_NaN()), "nan TB");
    EXPECT_EQ(sizeText(std::numeric_limits<double>::infinity()), "inf TB");
}

TEST(SizeText, theDecimalSignIsAPointInEveryCppLocale)
{
    const LocaleGuard guard;
    std::locale::global(std::locale(std::locale::classic(), new CommaDecimals));

    EXPECT_EQ(sizeText(1'234'567), "1.23 MB");
}

TEST(SizeText, theDecimalSignIsAPointInEveryCLocale)
{
    const LocaleGuard guard;
    if (!setCommaLocale()) {
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    }

    EXPECT_EQ(sizeText(1'234'567), "1.23 MB");
}

} // namespace tessaly::tree
