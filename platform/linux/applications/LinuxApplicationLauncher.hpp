#pragma once

#include "platform/ApplicationLauncher.hpp"
#include "platform/background/BackgroundWork.hpp"

#include <functional>
#include <string>
#include <vector>

namespace tessaly {

/// Starts the desktop's programs as its desktop files say, without a shell. They outlive this
/// program. The files are read at each launch, on another thread: what was installed meanwhile is
/// found.
///
/// Requires: a QCoreApplication and its event loop.
/// Errors:   go to the log "tessaly.launcher".
class LinuxApplicationLauncher final : public ApplicationLauncher {
public:
    /// Starts a program: its words, and the folder to start it in, empty for any. False when that
    /// failed.
    using Starter =
        std::function<bool(const std::vector<std::string> &words, const std::string &folder)>;

    explicit LinuxApplicationLauncher(Starter starter = startByItself);

    void launchApplication(std::string_view name) override;
    void askWhetherInstalled(std::string_view name,
                             std::function<void(bool isInstalled)> answer) override;

    static bool startByItself(const std::vector<std::string> &words, const std::string &folder);

private:
    Starter m_starter;
    BackgroundWork m_work; ///< destroyed first: nothing calls this object after that
};

} // namespace tessaly
