#include "app/window/PreferenceSheet.hpp"

#include "app/controls/alerts/SheetGroup.hpp"
#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "app/controls/theme/Theme.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/SettingsKeys.hpp"
#include "platform/SettingsStore.hpp"

#include <QButtonGroup>
#include <QCheckBox>
#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

const QString nibName = u"TessalyPreferences"_s;
constexpr int rowCount = 5;

constexpr QColor unchosen{0xf4, 0xf4, 0xf4};
constexpr QColor unchosenDisabled{0x8c, 0x8c, 0x8c};

std::unique_ptr<QWidget> loadPanel()
{
    // Registered here since only this file uses it; a second registration replaces the first.
    InterfaceFile::registerWidget<SheetGroup>("SheetGroup");
    InterfaceFile::Loaded loaded = InterfaceFile::load(nibName);
    if (!loaded.root) {
        // The files are part of the program, so a missing one is a mistake of the build. Tests load
        // every one of them.
        qFatal("%s: %s", qUtf8Printable(nibName), qUtf8Printable(loaded.error));
    }
    return std::move(loaded.root);
}

KORVENAppDelegate &delegate()
{
    return KORVENAppDelegate::sharedDelegate();
}

/// A stored value outside the rows leaves the choice as it is.
void choose(const QButtonGroup &matrix, std::int32_t row)
{
    // The value is kept until the user chooses a row.
    if (QAbstractButton *button = matrix.button(row)) {
        button->setChecked(true);
    }
}

/// The colours of the box or disc before a title. The title keeps its own.
void colorIndicator(QAbstractButton &button, const QColor &ground, const QColor &mark)
{
    // Fusion draws the indicator with Base and Text.
    QPalette colors = button.palette();
    colors.setColor(QPalette::Base, ground);
    colors.setColor(QPalette::Text, mark);
    colors.setColor(QPalette::Disabled, QPalette::Base, unchosenDisabled);
    colors.setColor(QPalette::Disabled, QPalette::Text, theme::separator);
    button.setPalette(colors);
}

void colorCheck(QCheckBox &check)
{
    colorIndicator(check, check.isChecked() ? theme::selection : unchosen, Qt::white);
}

} // namespace

PreferenceSheet::PreferenceSheet(KORVENWindow &window, SettingsStore &settings)
    : WindowSheet(window, loadPanel()), m_settings(settings),
      m_hiddenItemMatrix(matrix("hiddenItemMatrix")), m_largeFileMatrix(matrix("largeFileMatrix")),
      m_showNotification(check("showNotificationCheck")),
      m_notificationSound(check("notificationSoundCheck")), m_diskGraph(check("diskGraphCheck")),
      m_folderGraph(check("folderGraphCheck"))
{
    setObjectName(u"preferenceSheet"_s);
    setAccessibleName(tr("Preferences"));
    wire();
}

QButtonGroup *PreferenceSheet::matrix(const char *name)
{
    auto *group = new QButtonGroup(&panel());
    group->setObjectName(QString::fromLatin1(name));
    for (int row = 0; row < rowCount; ++row) {
        auto &button = outlet<QRadioButton>(panel(), group->objectName() + QString::number(row));
        colorIndicator(button, unchosen, theme::selection);
        group->addButton(&button, row);
    }
    // Tab enters the group at the chosen button; Qt does so only once the focus has been there.
    connect(group, &QButtonGroup::idToggled, group, [group](int id, bool isChosen) {
        QAbstractButton &button = *group->button(id);
        button.setFocusPolicy(isChosen ? Qt::StrongFocus : Qt::ClickFocus);
    });
    for (QAbstractButton *button : group->buttons()) {
        button->setFocusPolicy(Qt::ClickFocus);
    }
    group->button(0)->setChecked(true);
    return group;
}

QCheckBox *PreferenceSheet::check(const char *name)
{
    auto &box = outlet<QCheckBox>(panel(), name);
    colorCheck(box);
    connect(&box, &QCheckBox::toggled, &box, [&box] { colorCheck(box); });
    return &box;
}

void PreferenceSheet::wire()
{
    wireState(*m_hiddenItemMatrix, &PreferenceSheet::hiddenItemMatrixChanged);
    wireState(*m_largeFileMatrix, &PreferenceSheet::largeFileMatrixChanged);
    wireState(*m_showNotification, &PreferenceSheet::showNotificationChecked);
    wireState(*m_notificationSound, &PreferenceSheet::notificationSoundChecked);
    wireState(*m_diskGraph, &PreferenceSheet::diskGraphColorChecked);
    wireState(*m_folderGraph, &PreferenceSheet::folderGraphColorChecked);
    const QStringList missing =
        wireActions(panel(), *this,
                    {{"customHomeFolderButton", [this] { Q_EMIT customHomeFolderClicked(); }},
                     {"removeHomeFolderButton", [this] { Q_EMIT removeHomeFolderClicked(); }},
                     {"closeButton", [this] { Q_EMIT closeClicked(); }}});
    if (!missing.isEmpty()) {
        qFatal("there are no buttons %s", qUtf8Printable(missing.join(u", ")));
    }
    connect(this, &WindowSheet::escaped, this, &PreferenceSheet::closeClicked);
}

// By the state of a control and not by its clicks: assistive technology changes the state alone.

void PreferenceSheet::wireState(const QButtonGroup &group, void (PreferenceSheet::*changed)())
{
    connect(&group, &QButtonGroup::idToggled, this, [this, changed](int /*row*/, bool isChosen) {
        if (isChosen && !m_isShowingPreferences) {
            (this->*changed)();
        }
    });
}

void PreferenceSheet::wireState(const QCheckBox &box, void (PreferenceSheet::*changed)())
{
    connect(&box, &QCheckBox::toggled, this, [this, changed] {
        if (!m_isShowingPreferences) {
            (this->*changed)();
        }
    });
}

void PreferenceSheet::showPreferenceSheet()
{
    // Setting a control emits the same signal as using it. Without the flag each opening would
    // store all preferences and rebuild all rows.
    m_isShowingPreferences = true;
    choose(*m_hiddenItemMatrix, delegate().hiddenItemPreference());
    choose(*m_largeFileMatrix, delegate().largeFilePreference());
    m_showNotification->setChecked(delegate().showNotificationPreference() != 0);
    m_notificationSound->setChecked(delegate().notificationSoundPreference() != 0);
    m_diskGraph->setChecked(delegate().diskGraphColorPreference() != 0);
    m_folderGraph->setChecked(delegate().folderGraphColorPreference() != 0);
    m_isShowingPreferences = false;
    // Only disabled here: showNotificationChecked() enables it again when the user wants
    // notifications, and on a system without any both stay disabled.
    if (delegate().showNotificationPreference() == 0) {
        m_notificationSound->setEnabled(false);
    }
    begin(*m_hiddenItemMatrix->checkedButton());
}

void PreferenceSheet::disableNotifications()
{
    m_showNotification->setEnabled(false);
    m_notificationSound->setEnabled(false);
}

void PreferenceSheet::keep(std::string_view key, void (KORVENAppDelegate::*set)(std::int32_t),
                           std::int32_t value)
{
    // Both, and stored at once: the delegate is what running code reads, and there is no later
    // moment, since the sheet has no "cancel" and the program may be killed.
    (delegate().*set)(value);
    m_settings.setInteger(key, value);
    m_settings.flush();
}

void PreferenceSheet::hiddenItemMatrixChanged()
{
    keep(settings_key::hiddenItem, &KORVENAppDelegate::setHiddenItemPreference,
         m_hiddenItemMatrix->checkedId());
    Q_EMIT resultRowsChanged();
}

void PreferenceSheet::largeFileMatrixChanged()
{
    keep(settings_key::largeFile, &KORVENAppDelegate::setLargeFilePreference,
         m_largeFileMatrix->checkedId());
    Q_EMIT resultRowsChanged();
}

void PreferenceSheet::showNotificationChecked()
{
    const bool isOn = m_showNotification->isChecked();
    // Its state stays, so that the choice comes back with the notifications.
    m_notificationSound->setEnabled(isOn);
    keep(settings_key::showNotification, &KORVENAppDelegate::setShowNotificationPreference,
         isOn ? 1 : 0);
}

void PreferenceSheet::notificationSoundChecked()
{
    keep(settings_key::notificationSound, &KORVENAppDelegate::setNotificationSoundPreference,
         m_notificationSound->isChecked() ? 1 : 0);
}

void PreferenceSheet::diskGraphColorChecked()
{
    keep(settings_key::diskGraphColor, &KORVENAppDelegate::setDiskGraphColorPreference,
         m_diskGraph->isChecked() ? 1 : 0);
    Q_EMIT driveRowsChanged();
}

void PreferenceSheet::folderGraphColorChecked()
{
    keep(settings_key::folderGraphColor, &KORVENAppDelegate::setFolderGraphColorPreference,
         m_folderGraph->isChecked() ? 1 : 0);
    Q_EMIT resultRowsChanged();
}

} // namespace tessaly
