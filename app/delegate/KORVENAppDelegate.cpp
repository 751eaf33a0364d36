#include "app/delegate/KORVENAppDelegate.hpp"

#include "app/delegate/MainWindow.hpp"
#include "app/delegate/SettingsKeys.hpp"
#include "platform/SettingsStore.hpp"
#include "platform/SystemRelease.hpp"

#include <QCoreApplication>

#include <cassert>
#include <string_view>
#include <utility>

namespace tessaly {

namespace {

/// The last one made. Code far from main(), such as a row that looks up a threshold, reads the
/// preferences through it. It is set before the first worker starts.
KORVENAppDelegate *shared = nullptr;

/// The class is not a QObject, so it has no tr() of its own. The context keeps its name.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(KORVENAppDelegate)
};

Notification notificationOf(const QString &title, const QString &message, std::string origin)
{
    Notification notification;
    notification.title = title.toStdString();
    notification.text = message.toStdString();
    notification.origin = std::move(origin);
    return notification;
}

/// A notification replaces the last one with the same origin, so the next scan of a screen does not
/// add a second one. The two scan screens run independently and must not replace each other's.
const char *originOf(ScanScreen screen) noexcept
{
    return screen == ScanScreen::home ? "home scan" : "folder scan";
}

} // namespace

KORVENAppDelegate::KORVENAppDelegate(const Services &services) : m_services(services)
{
    // The order is part of the required interface: the release is asked for, then the preferences
    // are read, and only then are the flags set. On Linux both stay false.
    const SystemRelease::Version version = services.release.version();
    readPreferences();
    m_run10p7Mode = version.major == 10 && version.minor == 7;
    m_run10p8Mode = version.major == 10 && version.minor == 8;
    shared = this;
}

KORVENAppDelegate::~KORVENAppDelegate()
{
    // Another one may have been made since; that one stays the shared one.
    if (shared == this) {
        shared = nullptr;
    }
}

KORVENAppDelegate &KORVENAppDelegate::sharedDelegate() noexcept
{
    assert(shared != nullptr);
    return *shared;
}

void KORVENAppDelegate::readPreferences()
{
    // The atomics let other threads read a preference while the user changes it in the sheet. Each
    // value stands for itself, so no lock has to keep several of them together.
    struct Preference {
        std::string_view key;
        std::atomic<std::int32_t> &property;
        std::int32_t defaultValue;
    };
    const Preference preferences[] = {
        {settings_key::hiddenItem, m_hiddenItem, 0},
        {settings_key::largeFile, m_largeFile, 4},
        {settings_key::showNotification, m_showNotification, 1},
        {settings_key::notificationSound, m_notificationSound, 1},
        {settings_key::diskGraphColor, m_diskGraph, 1},
        {settings_key::folderGraphColor, m_folderGraph, 1},
    };
    SettingsStore &settings = m_services.settings;
    // Key by key, each stored before it is read: another process may have stored some of them, and
    // those values win over the defaults.
    for (const Preference &preference : preferences) {
        if (!settings.hasKey(preference.key)) {
            settings.setDefault(preference.key, preference.defaultValue);
            settings.flush(); // may find a value that was not seen before
        }
        // Read back, not taken from the table: setDefault() gives way to a stored value. A value
        // outside 32 bits keeps its low bits, and one that no row of the sheet has stays as it is.
        preference.property = static_cast<std::int32_t>(settings.integer(preference.key));
    }
}

void KORVENAppDelegate::applicationDidFinishLaunching()
{
    // Read once: it is atomic, and main() sets it to nullptr while workers may still call. A second
    // read could return nullptr after the check. The same holds for the relays below.
    MainWindow *window = m_windowController;
    if ((m_run10p7Mode || m_run10p8Mode) && window != nullptr) {
        window->windowLoaded();
    }
}

void KORVENAppDelegate::applicationWillTerminate() {}

void KORVENAppDelegate::showCompletedNotification(const QString &message, ScanScreen screen)
{
    post(notificationOf(Texts::tr("Scan Completed"), message, originOf(screen)),
         Notification::Sound::complete);
}

void KORVENAppDelegate::showCanceledNotification(const QString &message, ScanScreen screen)
{
    post(notificationOf(Texts::tr("Scan Canceled"), message, originOf(screen)),
         Notification::Sound::message);
}

void KORVENAppDelegate::showNotification(const QString &title, const QString &message)
{
    post(notificationOf(title, message, {}), Notification::Sound::message);
}

void KORVENAppDelegate::post(Notification notification, Notification::Sound sound)
{
    // Release 10.7 has no notifications, whatever the preferences say.
    if (m_run10p7Mode || m_showNotification == 0) {
        return;
    }
    notification.sound = m_notificationSound != 0 ? sound : Notification::Sound::silent;
    // Always true. The call stays since the hook is required, and it is asked last, about the
    // notification as it would be posted.
    if (shouldPresentNotification(notification)) {
        m_services.notifier.post(notification);
    }
}

// The relays lead nowhere without a window: at the end of the program it is taken away first, while
// a worker may still add its record to the history.
void KORVENAppDelegate::historyStoreUpdated()
{
    if (MainWindow *window = m_windowController) {
        window->historyStoreUpdated();
    }
}

void KORVENAppDelegate::reloadHistoryDelete(const std::optional<std::string> &scanKey)
{
    if (MainWindow *window = m_windowController) {
        window->reloadHistoryDelete(scanKey);
    }
}

void KORVENAppDelegate::loadHistoryItem(const std::string &scanKey)
{
    if (MainWindow *window = m_windowController) {
        window->loadHistoryItem(scanKey);
    }
}

void KORVENAppDelegate::scanClicked()
{
    if (MainWindow *window = m_windowController) {
        window->scanClicked();
    }
}

void KORVENAppDelegate::dumpHistoryStore() {}

} // namespace tessaly
