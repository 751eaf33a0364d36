#pragma once

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/PrivateBus.hpp"
#include "tests/platform/linux/StartedProgram.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>

namespace tessaly {

/// Starts the program itself, with a home folder of its own, on a screen in memory unless a test
/// chooses another. There is no session bus until makeBus().
class ProgramFixture : public testing::Test {
protected:
    void SetUp() override
    {
        m_folder.folder("run");
        chmod(m_folder.path("run").c_str(), S_IRWXU);
    }

    void makeBus()
    {
        if (!PrivateBus::isInstalled()) {
            GTEST_SKIP() << "needs dbus-daemon";
        }
        m_bus = std::make_unique<PrivateBus>();
    }

    /// `variables` come before those of every start.
    [[nodiscard]] std::unique_ptr<StartedProgram>
    start(std::vector<std::string> variables = {}) const
    {
        for (const std::string &variable :
             {std::string("QT_QPA_PLATFORM=offscreen"), "HOME=" + m_folder.path(),
              "XDG_CONFIG_HOME=" + m_folder.path("config"),
              "XDG_DATA_HOME=" + m_folder.path("data"), "XDG_RUNTIME_DIR=" + m_folder.path("run"),
              std::string("XDG_CURRENT_DESKTOP="), std::string("QT_QPA_PLATFORMTHEME="),
              std::string("QT_LOGGING_RULES=tessaly.instance.info=true;tessaly.window=true")}) {
            variables.push_back(variable);
        }
        return std::make_unique<StartedProgram>(std::vector<std::string>{TESSALY_PROGRAM},
                                                variables);
    }

    /// Waits until its log has this; false when it ends instead.
    [[nodiscard]] static bool waitForLog(StartedProgram &program, const std::string &text)
    {
        while (program.complaints().find(text) == std::string::npos) {
            if (!program.isRunning()) {
                return false;
            }
            std::this_thread::yield();
        }
        return true;
    }

    /// Waits for its end: the exit status, or minus the number of the signal that ended it.
    static int statusOf(StartedProgram &program)
    {
        const int status = program.waitForEnd();
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    TemporaryFolder m_folder;
    std::unique_ptr<PrivateBus> m_bus;
};

} // namespace tessaly
