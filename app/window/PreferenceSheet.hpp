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

/// The sheet with the preferences. Each change is set in the delegate and stored in the settings at
/// once; there is no cancel.
///
/// Threads: the main thread.
class PreferenceSheet final : public WindowSheet {
    Q_OBJECT

public:
    /// Loads the sheet on a window that has its content.
    PreferenceSheet(KORVENWindow &window, SettingsStore &settings);

    /// Shows the preferences as they are now.
    void showPreferenceSheet();

    /// Disables the choices about notifications, for a system that has none.
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

    // Actions of the controls: each stores the state of its control.
    void hiddenItemMatrixChanged();
    void largeFileMatrixChanged();
    void showNotificationChecked();
    void notificationSoundChecked();
    void diskGraphColorChecked();
    void folderGraphColorChecked();

Q_SIGNALS:
    /// A preference that the rows of the scan screens depend on has changed.
    void resultRowsChanged();
    /// The same for the rows of the drives.
    void driveRowsChanged();
    void customHomeFolderClicked();
    void removeHomeFolderClicked();
    void closeClicked();

private:
    /// Sets a preference in the delegate and stores it.
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
    bool m_isShowingPreferences = false; ///< the controls are being set, not used
};

} // namespace tessaly
