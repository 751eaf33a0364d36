#include "engine/tree/PrintableText.hpp"

#include <gtest/gtest.h>

namespace tessaly::tree {

TEST(PrintableText, leavesTextsOfAnyScriptAlone)
{
    for (const char *text :
         {"", "plain name.txt", "caf\u00e9", "\u65e5\u672c\u8a9e", "\U0001F600"}) {
        EXPECT_EQ(printableText(text), text);
    }
}

TEST(PrintableText, keepsALineALineAndATerminalQuiet)
{
    EXPECT_EQ(printableText("a\nb\rc\td"), "a?b?c?d");
    EXPECT_EQ(printableText("\x1b[2J\x7f"), "?[2J?");
    EXPECT_EQ(printableText("\u009b1m"), "?1m");
    EXPECT_EQ(printableText("a\u2028b\u2029c"), "a?b?c");
}

TEST(PrintableText, doesNotTurnTheDirection)
{
    // NOLINTNEXTLINE(misc-misleading-bidirectional): it is what is meant
    EXPECT_EQ(printableText("a\u202etxt.exe\u2066b\u200f"), "a?txt.exe?b?");
}

TEST(PrintableText, showsBytesThatAreNoTextAsQuestionMarks)
{
    EXPECT_EQ(printableText("a\x9b\xff"
                            "b\xc3"),
              "a??b?");
}

} // namespace tessaly::tree
