#include "app/window/PreferenceSheet.hpp"

#include "app/controls/alerts/SheetGroup.hpp"
#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "app/controls/theme/Theme.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
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
    InterfaceFile::registerWidget<SheetGroup>("SheetGroup");
    InterfaceFile::Loaded loaded = InterfaceFile::load(nibName);
    if (!loaded.root) {
        qFatal("%s: %s", qUtf8Printable(nibName), qUtf8Printable(loaded.error));
    }
    return std::move(loaded.root);
}

KORVENAppDelegate &delegate()
{
    return KORVENAppDelegate::sharedDelegate();
}

void store(std::string_view key, std::int32_t value)
{
    SettingsStore &settings = services().settings;
    settings.setInteger(key, value);
    settings.flush();
}

/// A value without a row of its own leaves the row that is chosen.
void choose(const QButtonGroup &matrix, std::int32_t row)
{
    if (QAbstractButton *button = matrix.button(row)) {
        button->setChecked(true);
    }
}

/// The colours of the box or disc before a title. The title keeps its own.
void colorIndicator(QAbstractButton &button, const QColor &ground, const QColor &mark)
{
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

PreferenceSheet::PreferenceSheet(KORVENWindow &window)
    : WindowSheet(window, loadPanel()), m_hiddenItemMatrix(matrix("hiddenItemMatrix")),
      m_largeFileMatrix(matrix("largeFileMatrix")),
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
    m_isShowingPreferences = true;
    choose(*m_hiddenItemMatrix, delegate().hiddenItemPreference());
    choose(*m_largeFileMatrix, delegate().largeFilePreference());
    m_showNotification->setChecked(delegate().showNotificationPreference() != 0);
    m_notificationSound->setChecked(delegate().notificationSoundPreference() != 0);
    m_diskGraph->setChecked(delegate().diskGraphColorPreference() != 0);
    m_folderGraph->setChecked(delegate().folderGraphColorPreference() != 0);
    m_isShowingPreferences = false;
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

void PreferenceSheet::hiddenItemMatrixChanged()
{
    const int row = m_hiddenItemMatrix->checkedId();
    delegate().setHiddenItemPreference(row);
    store("hiddenItemPreference", row);
    Q_EMIT resultRowsChanged();
}

void PreferenceSheet::largeFileMatrixChanged()
{
    const int row = m_largeFileMatrix->checkedId();
    delegate().setLargeFilePreference(row);
    store("largeFilePreference", row);
    Q_EMIT resultRowsChanged();
}

void PreferenceSheet::showNotificationChecked()
{
    const int value = m_showNotification->isChecked() ? 1 : 0;
    m_notificationSound->setEnabled(value != 0);
    delegate().setShowNotificationPreference(value);
    store("showNotificationPreference", value);
}

void PreferenceSheet::notificationSoundChecked()
{
    const int value = m_notificationSound->isChecked() ? 1 : 0;
    delegate().setNotificationSoundPreference(value);
    store("notificationSoundPreference", value);
}

void PreferenceSheet::diskGraphColorChecked()
{
    const int value = m_diskGraph->isChecked() ? 1 : 0;
    delegate().setDiskGraphColorPreference(value);
    store("diskGraphColorPreference", value);
    Q_EMIT driveRowsChanged();
}

void PreferenceSheet::folderGraphColorChecked()
{
    const int value = m_folderGraph->isChecked() ? 1 : 0;
    delegate().setFolderGraphColorPreference(value);
    store("folderGraphColorPreference", value);
    Q_EMIT resultRowsChanged();
}

} // namespace tessaly
