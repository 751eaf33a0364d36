#include "preview/DecoderSession.hpp"

#include "preview/DecoderProcess.hpp"
#include "preview/FilePreview.hpp"
#include "preview/PreviewFile.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/LoggedWarnings.hpp"
#include "tests/platform/linux/ScopedVariable.hpp"
#include "tests/preview/DecoderProcesses.hpp"
#include "tests/preview/HostileFiles.hpp"
#include "tests/preview/PreviewFiles.hpp"

#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <optional>
#include <sstream>
#include <variant>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

constexpr QSize imageBounds(800, 600);

class DecoderSessionTest : public testing::Test {
protected:
    std::unique_ptr<DecoderSession> session(const std::string &name, const QByteArray &bytes,
                                            const std::stop_token &stop = {})
    {
        writeFile(m_folder.path(name), bytes);
        std::shared_ptr<PreviewFile> file =
            std::move(PreviewFile::openPath(m_folder.path(name), stop).value());
        return std::make_unique<DecoderSession>(m_decoders, std::move(file), stop);
    }

    /// A JPEG file that takes for ever.
    [[nodiscard]] QByteArray endlessImage() const
    {
        const auto files = hostileFiles(m_folder.path("pipe"));
        return std::find_if(files.begin(), files.end(),
                            [](const HostileFile &file) { return file.name == "scans.jpg"; })
            ->bytes;
    }

    QString messageWith(const std::string &program)
    {
        writeFile(m_folder.path("a.png"), imageBytes("png", {9, 9}, Qt::red));
        const auto decoders = std::make_shared<DecoderProcess>(program);
        QString message;
        for (int i = 0; i < 2; ++i) {
            const auto read = readPreview(m_folder.path("a.png"), imageBounds, decoders, {});
            const auto *card = std::get_if<PreviewCard>(&read.preview.content);
            message = card != nullptr ? card->message : u"(no card)"_s;
        }
        return message;
    }

    const TemporaryFolder m_folder;
    const std::shared_ptr<DecoderProcess> m_decoders = std::make_shared<DecoderProcess>();
};

TEST_F(DecoderSessionTest, theUsualProgramLiesBesideThisOne)
{
    EXPECT_TRUE(DecoderProcess::usualProgramPath().ends_with("/preview-decoder"));
}

TEST_F(DecoderSessionTest, theProgramHasTheEnvironmentFromWhenItsProcessWasMade)
{
    const std::string program = m_folder.path("program");
    writeFile(program, "#!/bin/sh\necho \"$LANGUAGE\" > \"$0.part\"; mv \"$0.part\" \"$0.out\"\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    std::optional<DecoderProcess> process;
    {
        const ScopedVariable language("LANGUAGE", "before");
        process.emplace(program);
    }
    const ScopedVariable language("LANGUAGE", "after");
    process->start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(program + ".out"); }, 60'000));
    std::stringstream written;
    written << std::ifstream(program + ".out").rdbuf();
    EXPECT_EQ(written.str(), "before\n");
}

TEST_F(DecoderSessionTest, eachFileHasADecoderOfItsOwnUntilTheSessionEnds)
{
    auto image = session("a.png", imageBytes("png", {40, 30}, Qt::red));
    auto document = session("a.pdf", pdfBytes(1));
    EXPECT_EQ(image->image(imageBounds, false)->image.fullSize, QSize(40, 30));
    EXPECT_EQ(document->document()->document.pageCount, 1);
    EXPECT_EQ(decoderServers().size(), 1U);
    EXPECT_EQ(decoders().size(), 2U);
    image.reset();
    waitUntilDecoding(1);
    EXPECT_FALSE(document->page(0, {30, 20}).isNull());
    document.reset();
    waitUntilDecoding(0);
}

TEST_F(DecoderSessionTest, decodersAreLimited)
{
    if (isSanitized) {
        GTEST_SKIP() << "a sanitizer needs more than the limits";
    }
    const auto document = session("a.pdf", pdfBytes(1));
    ASSERT_TRUE(document->document());
    ASSERT_EQ(decoders().size(), 1U);
    const std::string process = "/proc/" + std::to_string(decoders().front());
    std::stringstream limits;
    limits << std::ifstream(process + "/limits").rdbuf();
    EXPECT_NE(limits.str().find("Max cpu time              20                   20"),
              std::string::npos)
        << limits.str();
    EXPECT_NE(limits.str().find("Max address space         536870912            536870912"),
              std::string::npos)
        << limits.str();
    std::stringstream status;
    status << std::ifstream(process + "/status").rdbuf();
    EXPECT_NE(status.str().find("NoNewPrivs:\t1"), std::string::npos);
    EXPECT_NE(status.str().find("Seccomp:\t2"), std::string::npos);
}

TEST_F(DecoderSessionTest, aStopKillsTheDecoder)
{
    std::stop_source stop;
    const auto endless = session("a.jpg", endlessImage(), stop.get_token());
    auto decoding =
        std::async(std::launch::async, [&] { return endless->image(imageBounds, false); });
    waitUntilDecoding(1);
    stop.request_stop();
    EXPECT_FALSE(decoding.get());
    EXPECT_FALSE(endless->hasFailed()) << "it was stopped";
    waitUntilDecoding(0);
    EXPECT_FALSE(endless->image(imageBounds, false)) << "it stays stopped";
}

TEST_F(DecoderSessionTest, aDecoderThatCrashesIsReplacedOnlyIfItAnsweredBefore)
{
    const auto document = session("a.pdf", pdfBytes(2));
    ASSERT_TRUE(document->document());
    for (int crash = 0; crash < 2; ++crash) {
        kill(decoders().at(0), SIGSEGV);
        waitUntilDecoding(0);
        EXPECT_TRUE(document->page(0, {30, 20}).isNull());
        EXPECT_TRUE(document->hasFailed());
        EXPECT_FALSE(document->page(1, {30, 20}).isNull()) << "by another decoder";
        EXPECT_FALSE(document->hasFailed());
    }

    const auto endless = session("a.jpg", endlessImage());
    auto decoding =
        std::async(std::launch::async, [&] { return endless->image(imageBounds, false); });
    waitUntilDecoding(2);
    kill(std::max(decoders()[0], decoders()[1]), SIGSEGV);
    EXPECT_FALSE(decoding.get());
    EXPECT_TRUE(endless->hasFailed());
    EXPECT_FALSE(endless->image(imageBounds, false));
    EXPECT_EQ(decoders().size(), 1U) << "no further one";
}

TEST_F(DecoderSessionTest, aServerThatHasEndedIsStartedAgain)
{
    EXPECT_TRUE(session("a.png", imageBytes("png", {9, 9}, Qt::red))->image(imageBounds, false));
    const pid_t server = decoderServers().at(0);
    kill(server, SIGKILL);
    while (!decoderServers().empty()) {
        waitUntilDecoding(0);
    }
    EXPECT_TRUE(session("a.png", imageBytes("png", {9, 9}, Qt::red))->image(imageBounds, false));
    EXPECT_NE(decoderServers().at(0), server);
}

TEST_F(DecoderSessionTest, theProgramEndsWithTheProcess)
{
    {
        DecoderProcess process;
        process.start();
        EXPECT_EQ(decoderServers().size(), 1U);
    }
    EXPECT_TRUE(decoderServers().empty());
}

TEST_F(DecoderSessionTest, aFileWhoseDecoderCrashesCannotBeShown)
{
    writeFile(m_folder.path("crash"), "#!/bin/sh\nkill -SEGV $$\n");
    std::filesystem::permissions(m_folder.path("crash"), std::filesystem::perms::owner_all);
    EXPECT_EQ(messageWith(m_folder.path("crash")), u"This file cannot be shown."_s);
}

TEST_F(DecoderSessionTest, withoutItsProgramAFileCannotBeShownAndOneLineSaysWhy)
{
    const LoggedWarnings log;
    EXPECT_EQ(messageWith(m_folder.path("missing")), u"This file cannot be shown."_s);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0], "tessaly.preview: There are no previews of images and documents: " +
                                  m_folder.path("missing") + ": No such file or directory");
}

} // namespace
} // namespace tessaly
