#include "engine/tree/EscapedName.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace tessaly::tree {

namespace {

/// Checks both ways between a file's name and its archived text.
void expectBoth(const std::string &name, const std::u16string &text)
{
    EXPECT_EQ(escapedName(name), text);
    EXPECT_EQ(nameFromEscaped(text), name);
}

char16_t escapeOf(char byte)
{
    return static_cast<char16_t>(0xEF80 + (static_cast<unsigned char>(byte) - 0x80));
}

/// A text in which each byte stands for itself, escaped.
std::u16string escaped(std::string_view bytes)
{
    std::u16string text(bytes.size(), u'\0');
    std::transform(bytes.begin(), bytes.end(), text.begin(), escapeOf);
    return text;
}

bool isHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char16_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

bool hasLoneSurrogate(const std::u16string &text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isLowSurrogate(text[i])) {
            return true;
        }
        if (isHighSurrogate(text[i]) && (++i == text.size() || !isLowSurrogate(text[i]))) {
            return true;
        }
    }
    return false;
}

/// Bytes that make every branch of a decoder likely: ASCII, leads, continuations.
std::string randomName(std::mt19937 &random)
{
    static const std::string likely = "a/\x80\xBF\xC2\xE0\xA0\xED\x9F\xEE\xBE\xEF\xF0\x90\xF4\x8F";
    std::string name(random() % 24, '\0');
    for (char &c : name) {
        c = random() % 2 == 0 ? likely[random() % likely.size()] : static_cast<char>(random());
    }
    return name;
}

} // namespace

TEST(EscapedName, validUtf8StandsForItself)
{
    expectBoth("", u"");
    expectBoth(std::string(1, '\0'), std::u16string(1, u'\0'));
    expectBoth("\x7F", u"\x7F");
    expectBoth("\xC2\x80", u"\x80");
    expectBoth("\xDF\xBF", u"\x7FF");
    expectBoth("\xE0\xA0\x80", u"\x800");
    expectBoth("\xED\x9F\xBF", u"\xD7FF");
    expectBoth("\xEE\x80\x80", u"\xE000");
    expectBoth("\xEF\xBF\xBD", u"\xFFFD");
    expectBoth("\xEF\xBF\xBF", u"\xFFFF");
}

TEST(EscapedName, everyPlaneIsReached)
{
    expectBoth("\xF0\x90\x80\x80", u"\U00010000");
    expectBoth("\xF0\x9F\x98\x80", u"\U0001F600");
    expectBoth("\xF0\x9F\xBF\xBF", u"\U0001FFFF");
    expectBoth("\xF3\xBF\xBF\xBF", u"\U000FFFFF");
    expectBoth("\xF4\x80\x80\x80", u"\U00100000");
    expectBoth("\xF4\x8F\xBF\xBF", u"\U0010FFFF");
}

TEST(EscapedName, aLoneByteIsEscaped)
{
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        const std::string name(1, static_cast<char>(byte));
        expectBoth(name, escaped(name));
        expectBoth('a' + name + 'b', u'a' + escaped(name) + u'b');
    }
}

TEST(EscapedName, overlongFormsAreEscaped)
{
    for (const std::string name : {"\xC0\xAF", "\xC1\xBF", "\xE0\x80\xAF", "\xE0\x9F\xBF",
                                   "\xF0\x80\x80\xAF", "\xF0\x8F\xBF\xBF"}) {
        expectBoth(name, escaped(name));
    }
}

TEST(EscapedName, surrogatesInUtf8AreEscaped)
{
    for (const std::string name : {"\xED\xA0\x80", "\xED\xAF\xBF", "\xED\xB0\x80", "\xED\xBF\xBF",
                                   "\xED\xA0\xBD\xED\xB8\x80"}) {
        expectBoth(name, escaped(name));
    }
}

TEST(EscapedName, whatLiesPastTheLastPlaneIsEscaped)
{
    for (const std::string name : {"\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80",
                                   "\xFC\x84\x80\x80\x80\x80"}) {
        expectBoth(name, escaped(name));
    }
}

TEST(EscapedName, sequencesCutShortAreEscaped)
{
    for (const std::string name :
         {"\xC3", "\xE2", "\xE2\x82", "\xF0", "\xF0\x9F", "\xF0\x9F\x98"}) {
        expectBoth(name, escaped(name));
        expectBoth(name + "z", escaped(name) + u"z");
        expectBoth(name + "\xC3\xA9", escaped(name) + u"\u00E9");
    }
}

TEST(EscapedName, theEscapesThemselvesAreEscapedByteByByte)
{
    for (const std::string name :
         {"\xEE\xBE\x80", "\xEE\xBE\xBF", "\xEE\xBF\x80", "\xEE\xBF\xBF"}) {
        expectBoth(name, escaped(name));
    }
}

TEST(EscapedName, theNeighboursOfTheEscapesStandForThemselves)
{
    expectBoth("\xEE\xBD\xBF", u"\xEF7F");
    expectBoth("\xEF\x80\x80", u"\xF000");
}

TEST(EscapedName, loneSurrogatesBecomeThreeBytes)
{
    EXPECT_EQ(nameFromEscaped(u"\xD800"), "\xED\xA0\x80");
    EXPECT_EQ(nameFromEscaped(u"\xDFFF"), "\xED\xBF\xBF");
    EXPECT_EQ(nameFromEscaped(u"\xD83D!"), "\xED\xA0\xBD!");
    EXPECT_EQ(nameFromEscaped(u"\xDE00\xD83D"), "\xED\xB8\x80\xED\xA0\xBD");
    EXPECT_EQ(nameFromEscaped(u"\xD83D\xD83D\xDE00"), "\xED\xA0\xBD\xF0\x9F\x98\x80");
}

TEST(EscapedName, anyBytesComeBackFromValidUtf16)
{
    std::mt19937 random(20'230'811); // NOLINT(cert-msc51-cpp): the same names in every run
    for (int i = 0; i < 200'000; ++i) {
        const std::string name = randomName(random);
        const std::u16string text = escapedName(name);
        ASSERT_FALSE(hasLoneSurrogate(text)) << testing::PrintToString(name);
        ASSERT_EQ(nameFromEscaped(text), name);
    }
}

TEST(EscapedName, asciiIsRecognisedAtEveryLengthAndPlace)
{
    const std::string ascii(64, '\x7F');
    for (std::size_t start = 0; start < 8; ++start) {
        for (std::size_t length = 0; length <= 40; ++length) {
            EXPECT_TRUE(isAscii(std::string_view(ascii).substr(start, length)));
        }
    }
}

TEST(EscapedName, oneOtherByteIsFoundAtEveryLengthAndPlace)
{
    for (std::size_t length = 1; length <= 40; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            std::string name(8 + length, 'a');
            name[7] = '\xFF'; // just outside
            name[8 + place] = '\x80';
            EXPECT_FALSE(isAscii(std::string_view(name).substr(8)));
        }
    }
}

} // namespace tessaly::tree
