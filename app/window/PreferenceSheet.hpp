#pragma once

#include "app/controls/alerts/WindowSheet.hpp"

#include <cstdint>
#include <string_view>

class QButtonGroup;
class QCheckBox;

namespace tessaly {

class KORVENAppDelegate;
class KORVENWindow;
class SettingsStore;

/// The sheet with the preferences. Each change is the delegate's and in the settings at once; there
/// is nothing to cancel.
///
/// Threads: the main thread.
class PreferenceSheet final : public WindowSheet {
    Q_OBJECT

public:
    /// Loads the sheet on a window that has its content.
    PreferenceSheet(KORVENWindow &window, SettingsStore &settings);

    /// Shows the preferences as they are now.
    void showPreferenceSheet();

    /// Takes the choice of notifications away, for a system that has none.
    void disableNotifications();

    // The outlets. Rows of the groups are the identifiers of their buttons, from 0 to 4.
    [[nodiscard]] QButtonGroup &hiddenItemMatrix() const noexcept { return *m_hiddenItemMatrix; }
    [[nodiscard]] QButtonGroup &largeFileMatrix() const noexcept { return *m_largeFileMatrix; }
    [[nodiscard]] QCheckBox &showNotificationCheck() const noexcept { return *m_showNotification; }
    [[nodiscard]] QCheckBox &notificationSoundCheck() const noexcept
    {
        return *m_notificationSound;
    }
    [[nodiscard]] QCheckBox &diskGraphCheck() const noexcept { return *m_diskGraph; }
    [[nodiscard]] QCheckBox &folderGraphCheck() const noexcept { return *m_folderGraph; }

    // What the controls do: each takes over what its control shows.
    void hiddenItemMatrixChanged();
    void largeFileMatrixChanged();
    void showNotificationChecked();
    void notificationSoundChecked();
    void diskGraphColorChecked();
    void folderGraphColorChecked();

Q_SIGNALS:
    /// A preference that the rows of the scan screens go by has changed.
    void resultRowsChanged();
    /// One that the rows of the drives go by.
    void driveRowsChanged();
    void customHomeFolderClicked();
    void removeHomeFolderClicked();
    void closeClicked();

private:
    /// Makes a value the delegate's, and keeps it in the settings.
    void keep(std::string_view key, void (KORVENAppDelegate::*set)(std::int32_t),
              std::int32_t value);
    [[nodiscard]] QButtonGroup *matrix(const char *name);
    [[nodiscard]] QCheckBox *check(const char *name);
    void wire();
    void wireState(const QButtonGroup &group, void (PreferenceSheet::*changed)());
    void wireState(const QCheckBox &box, void (PreferenceSheet::*changed)());

    SettingsStore &m_settings;
    QButtonGroup *m_hiddenItemMatrix;
    QButtonGroup *m_largeFileMatrix;
    QCheckBox *m_showNotification;
    QCheckBox *m_notificationSound;
    QCheckBox *m_diskGraph;
    QCheckBox *m_folderGraph;
    bool m_isShowingPreferences = false; ///< the controls are following the preferences
};

} // namespace tessaly
