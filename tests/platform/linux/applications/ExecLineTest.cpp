#include "platform/linux/applications/ExecLine.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tessaly {
namespace {

using Words = std::vector<std::string>;

struct Case {
    const char *line;
    Words words;
};

const ExecFields fields{"A name", "an-icon", "/the/path.desktop"};

TEST(ExecLine, isSplitByItsRules)
{
    const Case cases[] = {
        {"files", {"files"}},
        {" files  --new-window ", {"files", "--new-window"}},
        {"/opt/x/files -a=b", {"/opt/x/files", "-a=b"}},
        {R"("/opt/my files/run" "")", {"/opt/my files/run", ""}},
        {R"(run "a \"b\" \`c\` \$d \\e" f)", {"run", R"(a "b" `c` $d \e)", "f"}},
        {R"(run "a\b")", {"run", R"(a\b)"}},
        {R"(run "a;b & c|d")", {"run", "a;b & c|d"}},
        {R"(run pre"in quotes"post)", {"run", "prein quotespost"}},
    };
    for (const Case &test : cases) {
        EXPECT_EQ(wordsOfExecLine(test.line, fields), test.words) << test.line;
    }
}

TEST(ExecLine, leavesOutTheCodesForFiles)
{
    const Case cases[] = {
        {"files %U", {"files"}},
        {"files %f %F %u -x", {"files", "-x"}},
        {"files %d %D %n %N %v %m", {"files"}},
        {"files --open=%u", {"files", "--open="}},
        {R"(files "%u")", {"files", ""}},
    };
    for (const Case &test : cases) {
        EXPECT_EQ(wordsOfExecLine(test.line, fields), test.words) << test.line;
    }
}

TEST(ExecLine, hasTheOtherCodesReplaced)
{
    const Case cases[] = {
        {"run 100%%", {"run", "100%"}},
        {"run %i -x", {"run", "--icon", "an-icon", "-x"}},
        {"run -caption %c %k", {"run", "-caption", "A name", "/the/path.desktop"}},
        {R"(run "%c")", {"run", "A name"}},
    };
    for (const Case &test : cases) {
        EXPECT_EQ(wordsOfExecLine(test.line, fields), test.words) << test.line;
    }
    EXPECT_EQ(wordsOfExecLine("run %i -x", {"A name", "", ""}), (Words{"run", "-x"}));
}

TEST(ExecLine, isRefusedWhenItBreaksItsRules)
{
    for (const char *line :
         {"",        " ",       "%U",       "run %",   "run %x",    "run \"a",
          "run 'a'", "run a;b", "run a|b",  "run a&",  "run $HOME", "run ~/a",
          "run `a`", "run (a)", "run a\\b", "run a>b", "run a<b",   "run *",
          "run a?",  "run #",   "run\tx",   "run\nx",  "A=b run",   "run \"a\\\""}) {
        EXPECT_EQ(wordsOfExecLine(line, fields), Words()) << line;
    }
}

} // namespace
} // namespace tessaly
