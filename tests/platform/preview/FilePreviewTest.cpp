#include "platform/preview/FilePreview.hpp"

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/preview/PreviewFiles.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <variant>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

class FilePreviewTest : public testing::Test {
protected:
    LoadedPreview preview(const std::string &name, const QByteArray &bytes)
    {
        writeFile(m_folder.path(name), bytes);
        return preview(name);
    }
    LoadedPreview preview(const std::string &name)
    {
        return readPreview(m_folder.path(name), {800, 600}, {});
    }

    const TemporaryFolder m_folder;
};

template <typename Content>
bool is(const LoadedPreview &preview)
{
    return std::holds_alternative<Content>(preview.content);
}

QString message(const LoadedPreview &preview)
{
    const auto *card = std::get_if<PreviewCard>(&preview.content);
    return card != nullptr ? card->message : u"(no card)"_s;
}

TEST_F(FilePreviewTest, tellsFilesByTheirContent)
{
    EXPECT_TRUE(is<PreviewImage>(preview("a", imageBytes("png", {9, 9}, Qt::red))));
    EXPECT_TRUE(is<PreviewImage>(
        preview("b", "<?xml version=\"1.0\"?><svg xmlns=\"http://www.w3.org/2000/svg\"/>")));
    EXPECT_TRUE(is<PreviewText>(preview("c", "Hello")));
    EXPECT_TRUE(is<PreviewText>(preview("c.cpp", "int main() {}")));
    EXPECT_TRUE(is<PreviewPdf>(preview("d", pdfBytes(1))));
    EXPECT_TRUE(is<PreviewMedia>(preview("e", wavBytes())));
    EXPECT_TRUE(is<PreviewMedia>(preview("f", aviBytes({16, 16}, Qt::red, 1))));
    EXPECT_TRUE(is<PreviewCard>(preview("g", QByteArray("\0\1\2\3\xFF", 5))));
    EXPECT_TRUE(is<PreviewCard>(preview("h", "")));
    EXPECT_TRUE(is<PreviewText>(preview("i.txt", "")));
}

TEST_F(FilePreviewTest, describesAnyFile)
{
    const LoadedPreview card = preview("data.bin", QByteArray(1000, '\0'));
    EXPECT_EQ(card.info.name, u"data.bin"_s);
    EXPECT_EQ(card.info.status.byteCount, 1000U);
    EXPECT_FALSE(card.info.type.isEmpty());
    EXPECT_TRUE(card.info.status.modified.isValid());
    EXPECT_EQ(message(card), QString());
}

TEST_F(FilePreviewTest, showsNamesOfAnyBytes)
{
    EXPECT_EQ(preview("\xFF\n\xC3\xA9", "text").info.name, u"??é"_s);
}

TEST_F(FilePreviewTest, readsTheStartOfALargeText)
{
    const LoadedPreview whole = preview("a.txt", "line\n");
    EXPECT_EQ(std::get<PreviewText>(whole.content).cut, PreviewText::Cut::none);

    writeFile(m_folder.path("b.txt"), QByteArray(300'000, 'x'));
    ASSERT_EQ(truncate(m_folder.path("b.txt").c_str(), 4L << 30), 0);
    const LoadedPreview large = preview("b.txt");
    ASSERT_TRUE(is<PreviewText>(large));
    EXPECT_EQ(std::get<PreviewText>(large.content).cut, PreviewText::Cut::bytes);
    EXPECT_EQ(std::get<PreviewText>(large.content).text.size(), previewTextByteCount);
    EXPECT_EQ(large.info.status.byteCount, std::uint64_t{4} << 30U);
}

TEST_F(FilePreviewTest, readsTheFirstOfVeryManyLines)
{
    const QByteArray lines = QByteArray("a\n").repeated(previewTextLineCount);
    EXPECT_EQ(std::get<PreviewText>(preview("a.txt", lines).content).cut, PreviewText::Cut::none);
    const LoadedPreview cut = preview("b.txt", lines + "b");
    EXPECT_EQ(std::get<PreviewText>(cut.content).cut, PreviewText::Cut::lines);
    EXPECT_EQ(std::get<PreviewText>(cut.content).text.count(u'\n'), previewTextLineCount - 1);
}

TEST_F(FilePreviewTest, aTextThatTurnsBinaryIsNone)
{
    EXPECT_TRUE(is<PreviewCard>(preview("a.txt", QByteArray(20'000, 'x') + QByteArray(9, '\0'))));
    m_folder.file("zeros.txt", std::uint64_t{4} << 30U);
    EXPECT_TRUE(is<PreviewCard>(preview("zeros.txt")));
}

TEST_F(FilePreviewTest, playsNoListsOfAddresses)
{
    EXPECT_TRUE(is<PreviewText>(preview("a.m3u8", "#EXTM3U\nhttp://example.org/a.ts\n")));
    EXPECT_FALSE(
        is<PreviewMedia>(preview("a.mp4", QByteArray("#EXTM3U\nhttp://example.org/a.ts\n\0", 33))));
    EXPECT_FALSE(is<PreviewMedia>(preview("b.mp4", "ffconcat version 1.0\nfile /dev/zero")));
    EXPECT_FALSE(is<PreviewMedia>(preview("c.m3u", QByteArray("\1http://example.org", 19))));
}

TEST_F(FilePreviewTest, hasACardForAllThatIsNoFile)
{
    m_folder.folder("folder");
    ASSERT_EQ(mkfifo(m_folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(message(preview("folder")), u"Only files have a preview."_s);
    EXPECT_EQ(message(preview("pipe")), u"Only files have a preview."_s);
    EXPECT_EQ(message(preview("gone")), u"This file is no longer there."_s);
    EXPECT_EQ(message(readPreview("/dev/zero", {9, 9}, {})), u"Only files have a preview."_s);
}

TEST_F(FilePreviewTest, readsFilesThatLieAboutTheirSize)
{
    const LoadedPreview version = readPreview("/proc/version", {9, 9}, {});
    ASSERT_TRUE(is<PreviewText>(version));
    EXPECT_FALSE(std::get<PreviewText>(version.content).text.isEmpty());
}

TEST_F(FilePreviewTest, saysWhatIsWrong)
{
    EXPECT_EQ(message(preview("a.png", imageBytes("png", {99, 99}, Qt::red).first(60))),
              u"This image cannot be read. It may be damaged."_s);
    EXPECT_EQ(message(preview("b.png", greyPng(20'000, 20'000))),
              u"This image is too large to preview."_s);
    EXPECT_EQ(message(preview("c.svg", "<svg xmlns=\"http://www.w3.org/2000/svg\"><g>")),
              u"This drawing is damaged, or too large to preview."_s);
}

} // namespace
} // namespace tessaly
