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

KORVENAppDelegate *shared = nullptr;

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

const char *originOf(ScanScreen screen) noexcept
{
    return screen == ScanScreen::home ? "home scan" : "folder scan";
}

} // namespace

KORVENAppDelegate::KORVENAppDelegate(const Services &services) : m_services(services)
{
    const SystemRelease::Version version = services.release.version();
    readPreferences();
    m_run10p7Mode = version.major == 10 && version.minor == 7;
    m_run10p8Mode = version.major == 10 && version.minor == 8;
    shared = this;
}

KORVENAppDelegate::~KORVENAppDelegate()
{
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
    struct Preference {
        std::string_view key;
        std::atomic<std::int32_t> &property;
        std::int32_t defaultValue;
    };
    const Preference preferences[] = {
        {settingsKey::hiddenItem, m_hiddenItem, 0},
        {settingsKey::largeFile, m_largeFile, 4},
        {settingsKey::showNotification, m_showNotification, 1},
        {settingsKey::notificationSound, m_notificationSound, 1},
        {settingsKey::diskGraphColor, m_diskGraph, 1},
        {settingsKey::folderGraphColor, m_folderGraph, 1},
    };
    SettingsStore &settings = m_services.settings;
    for (const Preference &preference : preferences) {
        if (!settings.hasKey(preference.key)) {
            settings.setDefault(preference.key, preference.defaultValue);
            settings.flush(); // may find a value that was not seen before
        }
        preference.property = static_cast<std::int32_t>(settings.integer(preference.key));
    }
}

void KORVENAppDelegate::applicationDidFinishLaunching()
{
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
    if (m_run10p7Mode || m_showNotification == 0) {
        return;
    }
    notification.sound = m_notificationSound != 0 ? sound : Notification::Sound::silent;
    if (shouldPresentNotification(notification)) {
        m_services.notifier.post(notification);
    }
}

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
