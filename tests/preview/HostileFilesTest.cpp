#include "tests/preview/HostileFiles.hpp"

#include "preview/DecoderProcess.hpp"
#include "preview/PreviewLoader.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/preview/DecoderProcesses.hpp"
#include "tests/preview/PreviewFiles.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <variant>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

constexpr QSize previewBounds(1920, 1080);
constexpr QSize pageSize(800, 533);

class HostileFilesTest : public testing::Test {
protected:
    HostileFilesTest()
    {
        const std::string pipe = m_folder.path("pipe");
        if (mkfifo(pipe.c_str(), 0600) != 0) {
            throw std::runtime_error("cannot make a pipe");
        }
        m_files = hostileFiles(pipe);
        for (const HostileFile &file : m_files) {
            writeFile(m_folder.path(file.name), file.bytes);
        }
        writeFile(m_folder.path("good.png"), imageBytes("png", {40, 30}, Qt::red));
        writeFile(m_folder.path("good.pdf"), pdfBytes(1));
        QObject::connect(&m_loader, &PreviewLoader::loaded, &m_loader,
                         [this](const LoadedPreview &preview) { m_shown = preview; });
        QObject::connect(&m_loader, &PreviewLoader::pageDrawn, &m_loader,
                         [this](int, const QImage &image) {
                             m_hasPage = true;
                             m_page = image;
                         });
    }

    void load(const std::string &name)
    {
        m_shown.reset();
        m_hasPage = false;
        m_loader.load(m_folder.path(name), previewBounds);
    }

    /// Waits until the file is shown, of documents the first page, or it is said why it is not.
    void show(const std::string &name)
    {
        load(name);
        waitUntil([this] { return m_shown.has_value(); });
        if (std::holds_alternative<PreviewPdf>(m_shown->content)) {
            m_loader.drawPage(0, pageSize);
            waitUntil([this] {
                return m_hasPage || std::holds_alternative<PreviewCard>(m_shown->content);
            });
        }
    }

    void expectGoodFilesAreShown(const std::string &after)
    {
        show("good.png");
        const auto *image = std::get_if<PreviewImage>(&m_shown->content);
        ASSERT_NE(image, nullptr) << after;
        EXPECT_EQ(image->fullSize, QSize(40, 30)) << after;
        show("good.pdf");
        ASSERT_TRUE(std::holds_alternative<PreviewPdf>(m_shown->content)) << after;
        EXPECT_EQ(m_page.size(), pageSize) << after;
    }

    [[nodiscard]] QString message() const
    {
        const auto *card = std::get_if<PreviewCard>(&m_shown->content);
        return card != nullptr ? card->message : u"(no card)"_s;
    }

    const TemporaryFolder m_folder;
    std::vector<HostileFile> m_files;
    PreviewLoader m_loader;
    std::optional<LoadedPreview> m_shown;
    bool m_hasPage = false;
    QImage m_page;
};

TEST_F(HostileFilesTest, areShownOrRefusedInLittleMemoryAndTheNextFileIsShown)
{
    for (const HostileFile &file : m_files) {
        if (file.isEndless) {
            continue;
        }
        SCOPED_TRACE(file.name);
        resetPeakMemory();
        show(file.name);
        if (!isSanitized) {
            EXPECT_LT(peakMegabytes(), 250) << file.name;
        }
        expectGoodFilesAreShown(file.name);
    }
}

TEST_F(HostileFilesTest, areLeftForTheNextFileAtOnceAndTheirDecodersAreKilled)
{
    for (const HostileFile &file : m_files) {
        SCOPED_TRACE(file.name);
        load(file.name);
        if (file.isEndless) {
            waitUntilDecoding(1); // is in the midst of it
        }
        expectGoodFilesAreShown(file.name);
        m_loader.cancel();
        waitUntilDecoding(0);
    }
}

TEST_F(HostileFilesTest, aDocumentWhoseDecoderEndsCannotBeShown)
{
    if (isSanitized) {
        GTEST_SKIP() << "needs the limit of memory";
    }
    show("content.pdf");
    EXPECT_EQ(message(), u"This file cannot be shown."_s);
}

TEST_F(HostileFilesTest, drawingsThatLeadToAPipeAreDrawnWithoutIt)
{
    for (const char *name : {"pipe.svg", "pipe.png", "pipe.svgz", "packed_pipe.png"}) {
        show(name);
        EXPECT_TRUE(std::holds_alternative<PreviewImage>(m_shown->content))
            << name << message().toStdString();
    }
}

} // namespace
} // namespace tessaly
