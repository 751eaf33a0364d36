// Volumes that are really mounted and stop answering.

#include "platform/linux/volumes/LinuxVolumeService.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"
#include "tests/platform/linux/HangingVolume.hpp"
#include "tests/platform/linux/LogLines.hpp"
#include "tests/platform/linux/ScopedVariable.hpp"
#include "tests/platform/linux/WaitUntil.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace tessaly {

namespace {

constexpr std::chrono::milliseconds briefTimeout(50);
constexpr VolumeFigures usualFigures{409600, 163840};

class LinuxVolumeServiceHangingTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (const auto missing = HangingVolume::missingRequirement()) {
            GTEST_SKIP() << "needs " << *missing;
        }
        m_volume = std::make_unique<HangingVolume>(m_folder.path(),
                                                   std::vector<std::string>{"statfs", "getattr"});
        // What FUSE's program is told, of which there is one more in the path.
        writeFile(m_programs.path("fusermount3"),
                  "#!/bin/sh\necho \"$*\" >> '" + m_programs.path("calls") +
                      "'\nPATH=\"${PATH#*:}\" exec fusermount3 \"$@\"\n");
        chmod(m_programs.path("fusermount3").c_str(), S_IRWXU);
        makeService(LinuxVolumeService::usualTimeout);
    }

    void makeService(std::chrono::milliseconds timeout)
    {
        VolumeSources sources;
        sources.probe = TESSALY_PROBE;
        m_service =
            std::make_unique<LinuxVolumeService>(sources, VolumeFiguresReader::Source(), timeout);
        m_service->setRefusalListener(
            [this](const std::string &path) { m_refused.push_back(path); });
    }

    [[nodiscard]] VolumeInformation information()
    {
        std::optional<VolumeInformation> information;
        m_service->readInformation(
            {m_folder.path()},
            [&](const std::vector<VolumeInformation> &answers) { information = answers.at(0); },
            [this](std::size_t, const std::optional<VolumeFigures> &figures) { m_late = figures; });
        waitUntil([&] { return information.has_value(); });
        return *information;
    }

    [[nodiscard]] bool isMounted()
    {
        const auto enumerator = m_service->enumerator();
        while (const auto name = enumerator->next()) {
            enumerator->skipDescendants();
            if (m_service->pathOf(*name) == m_folder.path()) {
                return true;
            }
        }
        return false;
    }

    void unmount()
    {
        std::thread([this] { m_service->unmount(m_folder.path()); }).join();
    }

    TemporaryFolder m_folder;
    TemporaryFolder m_programs;
    const ScopedVariable m_path{"PATH", m_programs.path() + ':' + std::getenv("PATH")};
    std::unique_ptr<HangingVolume> m_volume;
    std::unique_ptr<LinuxVolumeService> m_service;
    std::vector<std::string> m_refused;
    std::optional<VolumeFigures> m_late;
};

TEST_F(LinuxVolumeServiceHangingTest, keepsTheFiguresThatWereKnownAndTakesLateOnes)
{
    makeService(briefTimeout);
    while (information().figures != usualFigures || information().areFiguresOld) {}
    m_volume->hang();
    const VolumeInformation known = information();
    EXPECT_EQ(known.figures, usualFigures);
    EXPECT_TRUE(known.areFiguresOld);
    EXPECT_EQ(m_late, std::nullopt);
    m_volume->answer();
    waitUntil([this] { return m_late.has_value(); });
    EXPECT_EQ(m_late, usualFigures);
}

TEST_F(LinuxVolumeServiceHangingTest, keepsTheFiguresOfAVolumeWhoseProgramHasDied)
{
    while (information().figures != usualFigures || information().areFiguresOld) {}
    m_volume->kill();
    const VolumeInformation known = information();
    EXPECT_EQ(known.figures, usualFigures);
    EXPECT_TRUE(known.areFiguresOld);
    EXPECT_TRUE(isMounted());
}

TEST_F(LinuxVolumeServiceHangingTest, unmountsAVolumeThatKeepsItsQuestions)
{
    makeService(briefTimeout);
    m_volume->hang();
    EXPECT_EQ(information().figures, std::nullopt);
    m_volume->waitUntilHeld("statfs");
    unmount();
    EXPECT_FALSE(isMounted());
    EXPECT_EQ(m_refused, std::vector<std::string>{});
    EXPECT_EQ(textOfFile(m_programs.path("calls")),
              "-u -- " + m_folder.path() + "\n-u -z -- " + m_folder.path() + '\n');
}

TEST_F(LinuxVolumeServiceHangingTest, unmountsAVolumeWhoseProgramStandsStill)
{
    m_volume->freeze();
    bool isAnswered = false;
    m_service->readInformation({m_folder.path()}, [&](const auto &) { isAnswered = true; }, {});
    // The child may ask by now, or may be about to: neither keeps the volume.
    unmount();
    EXPECT_FALSE(isMounted());
    EXPECT_EQ(textOfFile(m_programs.path("calls")), "-u -- " + m_folder.path() + '\n');
    EXPECT_FALSE(isAnswered);
}

TEST_F(LinuxVolumeServiceHangingTest, leavesAVolumeInUseThatAnswers)
{
    const scan::FileDescriptor use(
        open(m_folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const LogLines log("tessaly.platform.volumes");
    unmount();
    EXPECT_TRUE(isMounted());
    waitUntil([this] { return !m_refused.empty(); });
    EXPECT_EQ(m_refused, std::vector<std::string>{m_folder.path()});
    EXPECT_EQ(textOfFile(m_programs.path("calls")), "-u -- " + m_folder.path() + '\n');
    EXPECT_EQ(information().figures, usualFigures);
}

TEST_F(LinuxVolumeServiceHangingTest, endsWhileAVolumeHangs)
{
    m_volume->hang();
    m_service->readInformation({m_folder.path()}, [](const auto &) {}, {});
    m_volume->waitUntilHeld("statfs");
    m_service.reset();
}

} // namespace

} // namespace tessaly
