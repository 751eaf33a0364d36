#include "preview/TextDecoder.hpp"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

TEST(TextDecoder, readsUtf8WithAndWithoutAMark)
{
    EXPECT_EQ(decodeText("Gr\xC3\xBC\xC3\x9F"_ba, false), u"Grüß"_s);
    EXPECT_EQ(decodeText("\xEF\xBB\xBFGr\xC3\xBC\xC3\x9F"_ba, false), u"Grüß"_s);
    EXPECT_EQ(decodeText(""_ba, false), u""_s);
}

TEST(TextDecoder, readsUtf16WithAndWithoutAMark)
{
    EXPECT_EQ(decodeText("\xFF\xFEH\0i\0"_ba, false), u"Hi"_s);
    EXPECT_EQ(decodeText("\xFE\xFF\0H\0i"_ba, false), u"Hi"_s);
    EXPECT_EQ(decodeText("H\0i\0!\0"_ba, false), u"Hi!"_s);
    EXPECT_EQ(decodeText("\0H\0i\0!"_ba, false), u"Hi!"_s);
}

TEST(TextDecoder, takesOtherTextsForLatin1)
{
    EXPECT_EQ(decodeText("Gr\xFC\xDF"_ba, false), u"Grüß"_s);
}

TEST(TextDecoder, dropsACharacterThatTheCutHasSplit)
{
    EXPECT_EQ(decodeText("a\xE2\x82"_ba, true), u"a"_s);
    EXPECT_EQ(decodeText("a\xF0\x9F\x98"_ba, true), u"a"_s);
    EXPECT_EQ(decodeText("a\xE2\x82\xAC"_ba, true), u"a€"_s);
    EXPECT_EQ(decodeText("\xFF\xFEH\0i\0!"_ba, true), u"H"_s); // whole characters only
}

TEST(TextDecoder, makesLineEndsAlike)
{
    EXPECT_EQ(decodeText("a\r\nb\rc\nd"_ba, false), u"a\nb\nc\nd"_s);
}

TEST(TextDecoder, refusesBytesThatAreNoText)
{
    EXPECT_EQ(decodeText("\x7F"
                         "ELF\x02\x01\x01\0\0\0\0\0\0\0\0\0"_ba,
                         false),
              std::nullopt);
    EXPECT_EQ(decodeText(QByteArray(1000, '\0'), true), std::nullopt);
    EXPECT_EQ(decodeText("a\x01z"_ba, false), std::nullopt);
}

} // namespace
} // namespace tessaly
