#include "platform/linux/applications/KeyFile.hpp"

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <sys/stat.h>

namespace tessaly {
namespace {

using Texts = std::vector<std::string>;

TEST(KeyFile, hasValuesByGroupAndKey)
{
    const KeyFile file = KeyFile::parse("# a comment\n"
                                        "[One]\n"
                                        "Name=first\n"
                                        "Name[de]=erster\n"
                                        "\n"
                                        "[Two]\n"
                                        "Name = second \r\n"
                                        "#Name=comment\n"
                                        "Last=end");
    EXPECT_EQ(file.text("One", "Name"), "first");
    EXPECT_EQ(file.text("One", "Name[de]"), "erster");
    EXPECT_EQ(file.text("Two", "Name"), "second");
    EXPECT_EQ(file.text("Two", "Last"), "end");
    EXPECT_EQ(file.text("Two", "Missing"), "");
    EXPECT_EQ(file.text("Three", "Name"), "");
}

TEST(KeyFile, ignoresMalformedLines)
{
    const KeyFile file =
        KeyFile::parse("Early=1\n[\n]\n[One\nno value\n=\n\n[One]\nA=1=2\nA=3=4\n");
    EXPECT_EQ(file.text("One", "A"), "3=4");
    EXPECT_EQ(file.text("", "Early"), "");
    for (const char *nothing : {"", "\n", "[", "]", "=", "\xFF", "[]\n=x"}) {
        EXPECT_EQ(KeyFile::parse(nothing).text("One", "A"), "") << nothing;
    }
}

TEST(KeyFile, replacesEscapes)
{
    const KeyFile file = KeyFile::parse("[G]\nA=\\sx\\ty\\nz\\r\\\\s\nB=\\d\\\nC=\\\"\n");
    EXPECT_EQ(file.text("G", "A"), " x\ty\nz\r\\s");
    EXPECT_EQ(file.text("G", "B"), "\\d\\");
    EXPECT_EQ(file.text("G", "C"), "\\\"");
}

TEST(KeyFile, splitsLists)
{
    const KeyFile file = KeyFile::parse("[G]\nA=a;b c;;d\\;e;\nB=one\nC=;\nD=\n");
    EXPECT_EQ(file.list("G", "A"), (Texts{"a", "b c", "d;e"}));
    EXPECT_EQ(file.list("G", "B"), Texts{"one"});
    EXPECT_EQ(file.list("G", "C"), Texts());
    EXPECT_EQ(file.list("G", "D"), Texts());
    EXPECT_EQ(file.list("G", "E"), Texts());
}

TEST(KeyFile, readsOnlyTheWordTrueAsTrue)
{
    const KeyFile file = KeyFile::parse("[G]\nA=true\nB=false\nC=True\nD=1\n");
    EXPECT_TRUE(file.flag("G", "A"));
    for (const char *key : {"B", "C", "D", "E"}) {
        EXPECT_FALSE(file.flag("G", key)) << key;
    }
}

TEST(KeyFile, isReadFromRegularFilesOfSomeSize)
{
    const TemporaryFolder folder;
    writeFile(folder.path("file"), "[G]\nA=1\n");
    folder.link("link", "file");
    folder.link("broken", "nowhere");
    folder.folder("folder");
    folder.file("huge", std::uint64_t{100} << 20U);
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);

    for (const char *name : {"file", "link"}) {
        const auto file = KeyFile::read(folder.path(name));
        ASSERT_TRUE(file) << name;
        EXPECT_EQ(file->text("G", "A"), "1");
    }
    for (const char *name : {"missing", "broken", "folder", "huge", "pipe"}) {
        EXPECT_FALSE(KeyFile::read(folder.path(name))) << name;
    }
}

} // namespace
} // namespace tessaly
