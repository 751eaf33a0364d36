#pragma once

#include "platform/Notifier.hpp"
#include "platform/Services.hpp"

#include <QString>

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

namespace tessaly {

class MainWindow;

/// The screens that scan. A notification replaces the last one of the same screen.
enum class ScanScreen { folder, home };

/// The application's delegate: the one settings object, the way to the desktop's services, and the
/// relay between the history and the main window.
///
/// The preferences are read through sharedDelegate() at the moment of use, never cached. Code that
/// changes a preference sets the property and the stored value together.
///
/// Lifetime: one for the whole run of the program, made before any screen.
/// Threads:  properties and notifications: any thread. The preferences are written on the main
///           thread only. historyStoreUpdated(): any. The rest: the main thread.
class KORVENAppDelegate final {
public:
    /// Reads the preferences (see readPreferences()), then the system's release.
    explicit KORVENAppDelegate(const Services &services);
    ~KORVENAppDelegate();
    Q_DISABLE_COPY_MOVE(KORVENAppDelegate)

    /// The one that was made last. Requires: one lives.
    [[nodiscard]] static KORVENAppDelegate &sharedDelegate() noexcept;

    [[nodiscard]] const Services &services() const noexcept { return m_services; }

    /// nullptr before the window is created and after it is destroyed. The owner keeps it alive
    /// until no worker is left that may add to the history.
    [[nodiscard]] MainWindow *windowController() const noexcept { return m_windowController; }
    void setWindowController(MainWindow *windowController) noexcept
    {
        m_windowController = windowController;
    }

    /// Whether the program runs on release 10.7, or 10.8, of a system that has such releases.
    [[nodiscard]] bool run10p7Mode() const noexcept { return m_run10p7Mode; }
    [[nodiscard]] bool run10p8Mode() const noexcept { return m_run10p8Mode; }

    /// Loads the six preferences. One that is not stored gets its default, which is stored at once.
    void readPreferences();

    // The preferences, each stored under its name. Any value may be stored; what is none of those
    // named acts as row 0 (rows) or as 1 (the others).

    /// Row 0 to 4 of the choice which items with a name beginning with "." are listed.
    [[nodiscard]] std::int32_t hiddenItemPreference() const noexcept { return m_hiddenItem; }
    void setHiddenItemPreference(std::int32_t row) noexcept { m_hiddenItem = row; }
    /// Row 0 to 4 of the choice which other files are listed.
    [[nodiscard]] std::int32_t largeFilePreference() const noexcept { return m_largeFile; }
    void setLargeFilePreference(std::int32_t row) noexcept { m_largeFile = row; }
    /// 1: tell the user when a scan ends.
    [[nodiscard]] std::int32_t showNotificationPreference() const noexcept
    {
        return m_showNotification;
    }
    void setShowNotificationPreference(std::int32_t on) noexcept { m_showNotification = on; }
    /// 1: with a sound.
    [[nodiscard]] std::int32_t notificationSoundPreference() const noexcept
    {
        return m_notificationSound;
    }
    void setNotificationSoundPreference(std::int32_t on) noexcept { m_notificationSound = on; }
    /// 1: the bars of nearly full drives change their colour.
    [[nodiscard]] std::int32_t diskGraphColorPreference() const noexcept { return m_diskGraph; }
    void setDiskGraphColorPreference(std::int32_t on) noexcept { m_diskGraph = on; }
    /// 1: the bars of rows with a large share change their colour.
    [[nodiscard]] std::int32_t folderGraphColorPreference() const noexcept { return m_folderGraph; }
    void setFolderGraphColorPreference(std::int32_t on) noexcept { m_folderGraph = on; }

    /// Called when the event loop begins.
    void applicationDidFinishLaunching();
    /// Required interface: called when the event loop has ended. Does nothing: everything is stored
    /// as it changes.
    void applicationWillTerminate();
    [[nodiscard]] static bool applicationShouldTerminateAfterLastWindowClosed() noexcept
    {
        return true;
    }

    /// Notifies the user of how a scan has ended, if the preferences say so.
    void showCompletedNotification(const QString &message, ScanScreen screen = ScanScreen::folder);
    void showCanceledNotification(const QString &message, ScanScreen screen = ScanScreen::folder);
    void showNotification(const QString &title, const QString &message);

    /// Required interface: notifications are shown even while one of our windows is in front.
    [[nodiscard]] static bool shouldPresentNotification(const Notification & /*posted*/) noexcept
    {
        return true;
    }

    // Relays to the window controller; without one they lead nowhere.
    /// A record was added to the history.
    void historyStoreUpdated();
    /// The record with this key, or one without a key, was removed from the history.
    void reloadHistoryDelete(const std::optional<std::string> &scanKey);
    void loadHistoryItem(const std::string &scanKey);
    void scanClicked();

    /// Required interface: a hook for a developer's own output, which prints nothing.
    void dumpHistoryStore();

private:
    /// `notification` is complete but for its sound.
    void post(Notification notification, Notification::Sound sound);

    const Services m_services;
    std::atomic<MainWindow *> m_windowController = nullptr;
    bool m_run10p7Mode = false;
    bool m_run10p8Mode = false;
    std::atomic<std::int32_t> m_hiddenItem = 0;
    std::atomic<std::int32_t> m_largeFile = 0;
    std::atomic<std::int32_t> m_showNotification = 0;
    std::atomic<std::int32_t> m_notificationSound = 0;
    std::atomic<std::int32_t> m_diskGraph = 0;
    std::atomic<std::int32_t> m_folderGraph = 0;
};

/// The services of the shared delegate. Requires: there is one.
[[nodiscard]] inline const Services &services() noexcept
{
    return KORVENAppDelegate::sharedDelegate().services();
}

} // namespace tessaly
