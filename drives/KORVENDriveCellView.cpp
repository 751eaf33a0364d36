#include "drives/KORVENDriveCellView.hpp"

#include "app/controls/bars/KORVENProgressBar.hpp"
#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "app/controls/tables/IconView.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/controls/text/NameText.hpp"
#include "app/controls/theme/Theme.hpp"
#include "drives/UnmountThreads.hpp"
#include "platform/FileManager.hpp"
#include "platform/VolumeService.hpp"

#include <QAction>
#include <QDebug>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QResizeEvent>
#include <QToolButton>

#include <algorithm>
#include <cassert>

namespace tessaly {

// A copy of what an action needs. A menu stays open while the table is reloaded, and its cell may
// show another volume by then.
struct KORVENDriveCellView::Target {
    QString name; ///< the text of the volume's name
    bool isRemoveable = false;
    bool isUnmountable = false;
    VolumeService &volumes;
    FileManager &fileManager;
    QString labelDescription; ///< of the label that shows the name, for the log

    /// Returns whether an eject or unmount was started.
    [[nodiscard]] bool eject() const
    {
        const std::string path = volumes.pathOf(nameOfText(name));
        if (isRemoveable) {
            volumes.unmountAndEject(path);
        } else if (isUnmountable) {
            // unmountAndEject() returns at once, unmount() waits for the outcome.
            startUnmount([&volumes = volumes, path] { unmountInBackground(volumes, path); });
        }
        return isRemoveable || isUnmountable;
    }
    void showInFinder() const
    {
        qCInfo(drivesLog, "name: %s", qUtf8Printable(labelDescription));
        fileManager.reveal(shownPath());
    }
    void showInfo() const
    {
        const std::string path = shownPath();
        // The form of these lines is required, stars included.
        qCInfo(drivesLog, "startup: /"); // this system has no other name for it
        qCInfo(drivesLog, "******************* name: %s", qUtf8Printable(drawableText(name)));
        qCInfo(drivesLog, "******************* open: %s",
               qUtf8Printable(drawableText(textOfName(path))));
        fileManager.showInformation(path);
    }

private:
    [[nodiscard]] std::string shownPath() const
    {
        // The service has "/Volumes//" for the root, which does not exist on the disk.
        return name == u"/" ? "/" : volumes.pathOf(nameOfText(name));
    }
};

KORVENDriveCellView::KORVENDriveCellView(QWidget *parent) : QWidget(parent) {}

KORVENDriveCellView::~KORVENDriveCellView() = default;

std::unique_ptr<KORVENDriveCellView>
KORVENDriveCellView::tableCellViewWithNibNamed(const QString &name, const QObject * /*owner*/)
{
    InterfaceFile::registerWidget<KORVENDriveCellView>("KORVENDriveCellView");
    InterfaceFile::Loaded loaded = InterfaceFile::load(name);
    auto *cell = qobject_cast<KORVENDriveCellView *>(loaded.root.get());
    if (cell == nullptr) {
        qCWarning(drivesLog, "%s has no cell: %s", qUtf8Printable(name),
                  qUtf8Printable(loaded.error));
        return nullptr;
    }
    // The root and the cell are one object, which moves to a pointer of its own type.
    (void)loaded.root.release();
    std::unique_ptr<KORVENDriveCellView> owned(cell);
    owned->connectOutlets();
    return owned;
}

void KORVENDriveCellView::connectOutlets()
{
    m_driveName = &outlet<NameLabel>(*this, "driveName");
    m_driveFree = &outlet<QLabel>(*this, "driveFree");
    m_driveUsed = &outlet<QLabel>(*this, "driveUsed");
    m_driveTotal = &outlet<QLabel>(*this, "driveTotal");
    m_driveGraph = &outlet<KORVENProgressBar>(*this, "driveGraph");
    m_driveImage = &outlet<IconView>(*this, "driveImage");
    m_ejectButton = &outlet<KORVENButton>(*this, "ejectButton");
    m_ejectLabel = &outlet<QLabel>(*this, "ejectLabel");
    auto *menuButton = &outlet<QToolButton>(*this, "menuButton");

    for (const char *caption : {"totalCaption", "usedCaption", "freeCaption"}) {
        makeCaption(outlet<QLabel>(*this, caption));
    }
    for (QLabel *label : {m_driveTotal, m_driveUsed, m_driveFree, m_ejectLabel}) {
        makeCaption(*label);
    }
    // Rows with and without an eject control are laid out alike, whatever the control says.
    const QFontMetrics metrics = m_ejectLabel->fontMetrics();
    m_ejectLabelWidth = std::max(metrics.horizontalAdvance(tr("Eject")),
                                 metrics.horizontalAdvance(tr("Ejecting…")));
    m_ejectLabel->setMinimumWidth(m_ejectLabelWidth);
    // Hidden widgets give their room away otherwise, and the bars of two rows would differ in
    // length.
    for (QWidget *control :
         {static_cast<QWidget *>(m_ejectLabel), static_cast<QWidget *>(m_ejectButton)}) {
        QSizePolicy policy = control->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        control->setSizePolicy(policy);
    }

    m_driveImage->setClickable(true);
    m_driveName->setClickable(true);
    connect(m_driveImage, &IconView::clicked, this, &KORVENDriveCellView::showInFinder);
    connect(m_driveName, &NameLabel::clicked, this, &KORVENDriveCellView::showInFinder);
    connect(m_ejectButton, &KORVENButton::clicked, this, &KORVENDriveCellView::ejectDrive);
    connect(menuButton, &QToolButton::clicked, this, [this, menuButton] {
        popUpMenu(menuButton->mapToGlobal(menuButton->rect().bottomLeft()));
    });
}

void KORVENDriveCellView::showFiguresOld(bool areOld)
{
    for (QLabel *label : {m_driveTotal, m_driveUsed, m_driveFree}) {
        label->setEnabled(!areOld);
        label->setToolTip(areOld ? tr("As of the last time the volume answered") : QString());
    }
}

/// Hides the label beside the eject button where bar and figures need the space.
void KORVENDriveCellView::fitEjectLabel(int cellWidth) const
{
    const int labelWidth = m_ejectLabel->minimumWidth();
    // The label's own minimum width is part of the layout's, and is 0 after an earlier call that
    // left the label out.
    const int neededByOthers = layout()->minimumSize().width() - labelWidth;
    const bool fits = neededByOthers + m_ejectLabelWidth <= cellWidth;
    m_ejectLabel->setMinimumWidth(fits ? m_ejectLabelWidth : 0);
    m_ejectLabel->setMaximumWidth(fits ? QWIDGETSIZE_MAX : 0);
}

int KORVENDriveCellView::heightForWidth(int width) const
{
    if (m_ejectLabel == nullptr) {
        return sizeHint().height(); // a bare cell
    }
    fitEjectLabel(width);
    // The layout would take over the label's new limits in a posted event, which is too late here.
    layout()->activate();
    return layout()->heightForWidth(width);
}

void KORVENDriveCellView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (m_ejectLabel != nullptr) {
        fitEjectLabel(event->size().width());
    }
}

void KORVENDriveCellView::showEjectControl(bool isEjecting)
{
    m_isEjecting = isEjecting;
    if (m_ejectButton == nullptr) {
        return; // a bare cell
    }
    m_ejectLabel->setVisible(canEject());
    m_ejectLabel->setText(isEjecting ? tr("Ejecting…") : tr("Eject"));
    m_ejectButton->setVisible(canEject());
    m_ejectButton->setEnabled(!isEjecting);
    m_ejectButton->setToolTip(m_isRemoveable ? tr("Eject the volume") : tr("Unmount the volume"));
    // A screen reader would otherwise speak the same word for every row.
    m_ejectButton->setAccessibleName(tr("Eject %1").arg(drawableText(m_driveName->text())));
}

KORVENDriveCellView::Target KORVENDriveCellView::target() const
{
    assert(m_volumes != nullptr && m_fileManager != nullptr);
    return {m_driveName != nullptr ? m_driveName->text() : QString(),
            m_isRemoveable,
            m_isUnmountable,
            *m_volumes,
            *m_fileManager,
            QDebug::toString(m_driveName)};
}

void KORVENDriveCellView::ejectDrive()
{
    const Target chosen = target();
    if (chosen.eject()) {
        Q_EMIT ejectRequested(nameOfText(chosen.name));
    }
}

void KORVENDriveCellView::unmountInBackground(VolumeService &volumes, const std::string &path)
{
    volumes.unmount(path);
}

void KORVENDriveCellView::showInFinder()
{
    target().showInFinder();
}

void KORVENDriveCellView::showInfo()
{
    target().showInfo();
}

QMenu *KORVENDriveCellView::popUpMenu(const QPoint &place)
{
    // The row becomes the selected one first, so that the user sees what the menu is about.
    Q_EMIT menuRequested();
    // A child of the window: the cell may be reused or destroyed while the menu is open.
    auto *menu = new QMenu(window());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const Target chosen = target();
    menu->addAction(tr("Show in File Manager"), menu, [chosen] { chosen.showInFinder(); });
    menu->addAction(tr("Show Info"), menu, [chosen] { chosen.showInfo(); });
    if (canEject()) {
        menu->addSeparator();
        // With the cell as its context, since it sends the signal. The volume is the chosen one,
        // whatever the cell shows now.
        QAction *eject = menu->addAction(tr("Eject"), this, [this, chosen] {
            if (chosen.eject()) {
                Q_EMIT ejectRequested(nameOfText(chosen.name));
            }
        });
        eject->setEnabled(!m_isEjecting);
    }
    menu->popup(place);
    return menu;
}

} // namespace tessaly
