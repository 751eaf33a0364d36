#include "preview/FilePreview.hpp"

#include "preview/DecoderProcess.hpp"
#include "preview/DecoderSession.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/preview/PreviewFiles.hpp"

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
    LoadedPreview preview(const std::string &name) { return previewOf(m_folder.path(name)); }
    LoadedPreview previewOf(const std::string &path)
    {
        return readPreview(path, {800, 600}, m_decoders, {}).preview;
    }

    const TemporaryFolder m_folder;
    const std::shared_ptr<DecoderProcess> m_decoders = std::make_shared<DecoderProcess>();
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

TEST_F(FilePreviewTest, showsDrawingsUnderAnyNameAndCompressed)
{
    const QByteArray drawing =
        R"(<svg xmlns="http://www.w3.org/2000/svg" width="20" height="10"/>)";
    for (const char *name : {"a.svg", "a.png", "a.jpg", "a.gif", "a.tiff", "a"}) {
        const LoadedPreview shown = preview(name, drawing);
        ASSERT_TRUE(is<PreviewImage>(shown)) << name << message(shown).toStdString();
        EXPECT_TRUE(std::get<PreviewImage>(shown.content).mayGrow) << name;
        EXPECT_EQ(std::get<PreviewImage>(shown.content).fullSize, QSize(20, 10)) << name;
    }
    EXPECT_TRUE(is<PreviewImage>(preview("a.svgz", gzipBytes(drawing))));
}

TEST_F(FilePreviewTest, keepsADecoderForWhatIsStillToBeDecoded)
{
    writeFile(m_folder.path("a.png"), imageBytes("png", {9, 9}, Qt::red));
    writeFile(m_folder.path("a.gif"), movingGif());
    writeFile(m_folder.path("a.pdf"), pdfBytes(2));
    EXPECT_EQ(readPreview(m_folder.path("a.png"), {9, 9}, m_decoders, {}).session, nullptr);
    const auto movie = readPreview(m_folder.path("a.gif"), {9, 9}, m_decoders, {}).session;
    ASSERT_NE(movie, nullptr);
    EXPECT_EQ(movie->nextFrame({1, 1}).image.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(movie->nextFrame({1, 1}).image.pixelColor(0, 0), QColor(Qt::blue));
    const auto document = readPreview(m_folder.path("a.pdf"), {9, 9}, m_decoders, {}).session;
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->page(1, {300, 200}).size(), QSize(300, 200));
    EXPECT_EQ(document->page(1, {300, 200}).pixelColor(50, 130), QColor(Qt::blue));
    EXPECT_TRUE(document->page(7, {300, 200}).isNull());
    EXPECT_FALSE(document->hasFailed());
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
    EXPECT_EQ(message(previewOf("/dev/zero")), u"Only files have a preview."_s);
}

TEST_F(FilePreviewTest, readsFilesThatLieAboutTheirSize)
{
    const LoadedPreview version = previewOf("/proc/version");
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
