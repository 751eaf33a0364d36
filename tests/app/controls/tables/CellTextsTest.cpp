#include "app/controls/tables/CellTexts.hpp"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

TEST(CellTexts, percentsAreWholeAndTwoCharactersWide)
{
    struct {
        float share;
        const char *text;
    } const cases[]{
        {0.0F, " 0%"},    {0.07F, " 7%"}, {0.094F, " 9%"},  {0.5F, "50%"},
        {0.999F, "100%"}, {1.0F, "100%"}, {10.0F, "1000%"},
    };
    for (const auto &[share, text] : cases) {
        EXPECT_EQ(percentText(share).toStdString(), text) << share;
    }
}

TEST(CellTexts, whatIsNotANumberHasNoSign)
{
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(percentText(nan), u"nan%"_s);
    EXPECT_EQ(percentText(-nan), u"nan%"_s);
    EXPECT_EQ(percentText(std::numeric_limits<float>::infinity()), u"inf%"_s);
}

TEST(CellTexts, longNamesAloneHaveATooltip)
{
    EXPECT_EQ(nameToolTip(QString(20, u'a')), QString());
    EXPECT_EQ(nameToolTip(QString(21, u'a')), QString(21, u'a'));
    EXPECT_EQ(nameToolTip(u"<b>a name like markup</b>"_s),
              u"&lt;b&gt;a name like markup&lt;/b&gt;"_s);
    EXPECT_EQ(nameToolTip(u"a name over\ntwo lines, long"_s), u"a name over?two lines, long"_s);
}

} // namespace
} // namespace tessaly
