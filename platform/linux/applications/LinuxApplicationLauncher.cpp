#include "platform/linux/applications/LinuxApplicationLauncher.hpp"

#include "engine/tree/PrintableText.hpp"
#include "platform/linux/applications/DefaultApplications.hpp"
#include "platform/linux/applications/DesktopEntries.hpp"

#include <QFile>
#include <QLoggingCategory>
#include <QProcess>
#include <QStringList>

#include <optional>
#include <utility>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(launcherLog, "tessaly.launcher")

/// The names are those that the menu and the screens ask for, on every system.
/// These names are kept on purpose (see docs/conventions.md), although no such file exists here.
std::optional<DefaultApplication> applicationNamed(std::string_view name)
{
    if (name == "Finder.app") {
        return DefaultApplication::fileManager;
    }
    if (name == "System Preferences.app") {
        return DefaultApplication::settings;
    }
    if (name == "Disk Utility.app") {
        return DefaultApplication::diskUtility;
    }
    return std::nullopt;
}

void logNotStarted(const std::string &name, const char *reason)
{
    qCWarning(launcherLog, "%s not started: %s", tree::printableText(name).c_str(), reason);
}

} // namespace

LinuxApplicationLauncher::LinuxApplicationLauncher(Starter starter) : m_starter(std::move(starter))
{
}

void LinuxApplicationLauncher::launchApplication(std::string_view name)
{
    const auto wanted = applicationNamed(name);
    if (!wanted) {
        logNotStarted(std::string(name), "no such program is known");
        return;
    }
    BackgroundWork::start([this, name = std::string(name), wanted = *wanted, post = m_work.poster(),
                           places = DesktopPlaces::ofEnvironment()] {
        // Hundreds of small files, perhaps on a home folder of a server.
        const auto program = findApplication(wanted, DesktopEntries(places));
        post([this, name, program] {
            if (!program) {
                logNotStarted(name, "no such program is installed");
            } else if (!m_starter(program->command(), program->workingFolder())) {
                logNotStarted(name, program->id().c_str());
            }
        });
    });
}

void LinuxApplicationLauncher::askWhetherInstalled(std::string_view name,
                                                   std::function<void(bool isInstalled)> answer)
{
    // The places are read from the environment here: only the main thread may, since it alone
    // changes it.
    BackgroundWork::start([wanted = applicationNamed(name), answer = std::move(answer),
                           post = m_work.poster(), places = DesktopPlaces::ofEnvironment()] {
        const bool isInstalled = wanted && findApplication(*wanted, DesktopEntries(places));
        post([answer, isInstalled] { answer(isInstalled); });
    });
}

bool LinuxApplicationLauncher::startByItself(const std::vector<std::string> &words,
                                             const std::string &folder)
{
    QStringList arguments;
    for (const std::string &word : words) {
        // Decoded as file names, since QProcess encodes them the same way.
        arguments.append(QFile::decodeName(word.c_str()));
    }
    // Detached: it must not end with this program, nor be waited for by it.
    const QString program = arguments.takeFirst();
    return QProcess::startDetached(program, arguments, QFile::decodeName(folder.c_str()));
}

} // namespace tessaly
