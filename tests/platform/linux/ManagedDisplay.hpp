#pragma once

#include "tests/platform/linux/StartedProgram.hpp"
#include "tests/platform/linux/VirtualDisplay.hpp"

#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <csignal>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

/// How long something may take there, on a machine that has much else to do.
constexpr int desktopTimeoutMs = 30'000;

/// Runs the program that presses keys and moves the pointer; its exit status, -1 when it failed.
inline int xdotool(const QStringList &words)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(QStringLiteral("xdotool"), words);
    return process.waitForFinished(-1) ? process.exitCode() : -1;
}

/// A display with a window manager, which Qt takes for its own. One for the whole process. The key
/// F12 is the manager's own: it takes the window in front to full screen and back.
class ManagedDisplay {
public:
    ManagedDisplay()
    {
        s_current = this;
        setenv("DISPLAY", m_display.name().c_str(), 1);
        setenv("QT_QPA_PLATFORM", "xcb", 1);
        writeSettings();
        const QString ready = m_folder.filePath(QStringLiteral("ready"));
        m_manager.emplace(std::vector<std::string>{"openbox", "--sm-disable", "--config-file",
                                                   settingsPath().toStdString(), "--startup",
                                                   "touch " + ready.toStdString()});
        // It begins that once it has taken over the windows there are; one that is shown before may
        // be overlooked.
        while ((!QFile::exists(ready) || xdotool({QStringLiteral("get_desktop")}) != 0) &&
               m_manager->isRunning()) {}
    }

    ~ManagedDisplay() { s_current = nullptr; }
    Q_DISABLE_COPY_MOVE(ManagedDisplay)

    /// The display of this process, nullptr without one.
    [[nodiscard]] static ManagedDisplay *current() noexcept { return s_current; }

    /// Keeps so many pixels free at the top of the screen, as a desktop's panel does. Windows learn
    /// it a little later.
    void reserveTop(int height)
    {
        m_reservedTop = height;
        writeSettings();
        m_manager->sendSignal(SIGUSR2); // reads its settings
    }

    /// What is missing for one; empty when nothing is.
    [[nodiscard]] static std::string missing()
    {
        for (const char *program : {"Xvfb", "openbox", "xdotool"}) {
            if (!StartedProgram::isInstalled(program)) {
                return program;
            }
        }
        return {};
    }

private:
    [[nodiscard]] QString settingsPath() const
    {
        return m_folder.filePath(QStringLiteral("rc.xml"));
    }

    /// The manager's usual settings, with a key added and room reserved.
    void writeSettings() const
    {
        QFile usual(QStringLiteral("/etc/xdg/openbox/rc.xml"));
        QFile own(settingsPath());
        if (usual.open(QIODevice::ReadOnly) && own.open(QIODevice::WriteOnly)) {
            own.write(usual.readAll()
                          .replace("</keyboard>",
                                   "<keybind key=\"F12\"><action "
                                   "name=\"ToggleFullscreen\"/></keybind></keyboard>")
                          .replace("<top>0</top>",
                                   "<top>" + QByteArray::number(m_reservedTop) + "</top>"));
        }
    }

    static inline ManagedDisplay *s_current = nullptr;
    int m_reservedTop = 0;
    QTemporaryDir m_folder;
    VirtualDisplay m_display{"1280x900x24"};
    std::optional<StartedProgram> m_manager;
};

} // namespace tessaly
