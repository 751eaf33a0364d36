#include "drives/KORVENDriveViewController.hpp"

#include "app/controls/bars/KORVENProgressBar.hpp"
#include "app/controls/bars/WarningColors.hpp"
#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/tables/CellTexts.hpp"
#include "app/controls/tables/IconView.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/controls/text/NameText.hpp"
#include "app/controls/theme/Theme.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "drives/DriveRows.hpp"
#include "drives/KORVENDriveCellView.hpp"
#include "platform/ApplicationLauncher.hpp"
#include "platform/VolumeService.hpp"
#include "resources/Artwork.hpp"

#include <QLabel>
#include <QPointer>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <set>
#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

const QString cellIdentifier = u"KORVENDriveCell"_s;
const QString cellFile = u"KORVENDriveCell"_s;

constexpr int minRowHeight = 84;
// As wide as a size text gets, so that rows need not change their height when figures change.
const QString widestFigure = u"0000.00 GB"_s;

// A name that is kept on purpose. ApplicationLauncher starts the desktop's own disk program for it.
constexpr auto diskUtility = "Disk Utility.app";

/// The kind of file system, as the icon's tooltip names it.
QString kindName(std::int32_t diskType)
{
    static const std::array<QString, 4> names{u"hfs"_s, u"afpfs"_s, u"msdos"_s, u"other"_s};
    // A negative kind becomes a large index, and so is another kind as well.
    const auto index = static_cast<std::size_t>(diskType);
    return index < names.size() ? names.at(index) : names.back();
}

/// The used part, as the bars take it: in single precision, in which the warning colours are
/// decided, too (see docs/conventions.md).
float shareOf(const KORVENDriveObject &row)
{
    return static_cast<float>(row.sizeAsPercent());
}

} // namespace

KORVENDriveViewController::KORVENDriveViewController(VolumeService &volumes,
                                                     ApplicationLauncher &applications,
                                                     FileManager &fileManager,
                                                     const QString &nibName)
    : TableScreen(*this, nibName, cellsOf<KORVENDriveCellView>(cellIdentifier, cellFile, this)),
      m_volumes(volumes), m_applications(applications), m_fileManager(fileManager),
      m_sortButton(find<KORVENButton>("sortButton")),
      m_launchButton(find<KORVENButton>("launchButton")), m_countLabel(find<QLabel>("countLabel"))
{
    makeCaption(m_countLabel);
    wire({{"refreshButton", [this] { refreshClicked(); }},
          {"sortButton", [this] { sortClicked(); }},
          {"launchButton", [this] { launchClicked(); }}});
    // The service outlives the screen and keeps its listeners, so they must not use a plain
    // pointer.
    m_volumes.setChangeListener([guard = QPointer(this)] {
        if (guard) {
            guard->discMounted();
        }
    });
    // Without this, the row of a refused eject would say "Ejecting…" until the timeout.
    m_volumes.setRefusalListener([guard = QPointer(this)](const std::string &path) {
        if (guard) {
            guard->endEjecting(path);
        }
    });
    connect(&m_ejecting, &EjectingVolumes::changed, this, [this] {
        // The view may be destroyed before this object, while a timeout is still pending.
        for (int row = 0; view() != nullptr && row < numberOfRowsInTableView(); ++row) {
            if (KORVENDriveCellView *cell = cellAt<KORVENDriveCellView>(row)) {
                cell->showEjectControl(m_ejecting.contains(rowAt(row).diskName()));
            }
        }
    });
}

KORVENDriveViewController::~KORVENDriveViewController()
{
    closeView();
}

void KORVENDriveViewController::setUp()
{
    TableScreen::setUp();
    m_sortBySizeFlag = true;
    m_sortButton.setTitle(tr("Sort by name"));
    fitRowHeight();
    m_countLabel.clear();
    // Volumes are asked on other threads, and a dead one costs up to two seconds. Until then the
    // page must not say that there are none.
    setEmptyTexts(tr("Looking for volumes…"), {});
    showEmptyPage();
    m_launchButton.hide(); // until it is known that there is something to launch
    lookForDiskUtility();
    runScanDrives();
}

/// Fits the rows to the fonts, which may be larger than those that the cells were designed with.
void KORVENDriveViewController::fitRowHeight()
{
    m_sampleCell = KORVENDriveCellView::tableCellViewWithNibNamed(cellFile, this);
    if (m_sampleCell == nullptr) {
        table().setRowHeight(minRowHeight);
        return;
    }
    // The widest texts: the figures take as many lines as they need, which decides the height.
    for (QLabel *figure :
         {m_sampleCell->driveTotal(), m_sampleCell->driveUsed(), m_sampleCell->driveFree()}) {
        figure->setText(widestFigure);
    }
    // The height depends on the width: in a narrow window the figures take a second line.
    table().setRowHeightForWidth(
        [this](int width) { return std::max(minRowHeight, m_sampleCell->heightForWidth(width)); });
}

void KORVENDriveViewController::runScanDrives()
{
    // Names and paths are taken together, since a name has another path once its volume is
    // unmounted.
    const std::vector<std::string> names = listedVolumes(*m_volumes.enumerator());
    std::vector<std::string> paths;
    paths.reserve(names.size());
    for (const std::string &name : names) {
        paths.push_back(m_volumes.pathOf(name));
    }
    // Mounts come in quick succession, so a question may be asked while another is open. Only the
    // answer to the last one fits its list of names.
    const unsigned number = ++m_scanNumber;
    const auto isCurrent = [guard = QPointer(this), number] {
        return guard && guard->view() != nullptr && guard->m_scanNumber == number;
    };
    m_volumes.readInformation(
        std::move(paths),
        // `this` is only used once isCurrent() has found the screen alive.
        [this, isCurrent, names](const std::vector<VolumeInformation> &answers) {
            if (isCurrent()) {
                showDrives(names, answers);
            }
        },
        [this, isCurrent, names](std::size_t index, const std::optional<VolumeFigures> &figures) {
            if (isCurrent() && index < names.size()) {
                showLateFigures(names[index], figures);
            }
        });
}

void KORVENDriveViewController::showDrives(const std::vector<std::string> &names,
                                           const std::vector<VolumeInformation> &information)
{
    const std::string selected = selectedName();
    table().clearSelection(); // row numbers of the old list
    m_disksArray.clear();
    for (std::size_t i = 0; i < names.size(); ++i) {
        const VolumeInformation known =
            i < information.size() ? information[i] : VolumeInformation{};
        m_disksArray.push_back(driveRow(names[i], m_volumes.pathOf(names[i]), known));
    }
    // A volume that is no longer listed has been unmounted. This emits no signal, since the cells
    // are filled right below.
    m_ejecting.keepOnly({names.begin(), names.end()});
    sortTable();
    selectName(selected);
    showCountOrEmptyState();
}

void KORVENDriveViewController::showLateFigures(const std::string &name,
                                                const std::optional<VolumeFigures> &figures)
{
    // By name: the order may have changed since the question was asked.
    const auto row = std::find_if(m_disksArray.begin(), m_disksArray.end(),
                                  [&](const auto &each) { return each.diskName() == name; });
    if (row == m_disksArray.end()) {
        return;
    }
    // What is in view stays there, though this row may change its place.
    const std::string selected = selectedName();
    *row = withFigures(*row, figures);
    sortDrives(m_disksArray, m_sortBySizeFlag ? DriveOrder::size : DriveOrder::name);
    table().reloadData();
    selectName(selected);
}

void KORVENDriveViewController::endEjecting(const std::string &path)
{
    // names() is a copy, so that remove() does not change what is iterated. The service knows
    // paths, the rows know names.
    for (const std::string &name : m_ejecting.names()) {
        if (m_volumes.pathOf(name) == path) {
            m_ejecting.remove(name);
        }
    }
}

void KORVENDriveViewController::showCountOrEmptyState()
{
    const std::size_t count = m_disksArray.size();
    if (count == 0) {
        m_countLabel.clear();
        setEmptyTexts(tr("No volumes found"), tr("A drive appears here as soon as it is mounted."));
        showEmptyPage();
        return;
    }
    m_countLabel.setText(count == 1 ? tr("1 volume") : tr("%1 volumes").arg(count));
    showTable();
}

void KORVENDriveViewController::refreshTable()
{
    const std::string selected = selectedName();
    table().reloadData();
    selectName(selected);
}

void KORVENDriveViewController::discMounted()
{
    runScanDrives();
}

void KORVENDriveViewController::refreshClicked()
{
    runScanDrives();
    // The user may have installed such a program in the meantime.
    lookForDiskUtility();
}

void KORVENDriveViewController::lookForDiskUtility()
{
    // Looking through hundreds of desktop entries takes some 13 ms (see docs/decisions.md), so the
    // answer comes later, from another thread.
    m_applications.askWhetherInstalled(diskUtility, [guard = QPointer(this)](bool isInstalled) {
        if (guard && guard->view() != nullptr) {
            guard->m_launchButton.setVisible(isInstalled);
            emit guard->diskUtilityLookedFor(isInstalled);
        }
    });
}

void KORVENDriveViewController::launchClicked()
{
    m_applications.launchApplication(diskUtility);
}

void KORVENDriveViewController::sortClicked()
{
    m_sortBySizeFlag = !m_sortBySizeFlag;
    // The title names what the next click does, not the present order.
    m_sortButton.setTitle(m_sortBySizeFlag ? tr("Sort by name") : tr("Sort by size"));
    sortTable();
}

void KORVENDriveViewController::sortTable()
{
    // By name, since the row numbers are about to change.
    const std::string selected = selectedName();
    sortDrives(m_disksArray, m_sortBySizeFlag ? DriveOrder::size : DriveOrder::name);
    table().reloadData();
    table().scrollToTop();
    selectName(selected);
}

std::string KORVENDriveViewController::selectedName() const
{
    const int row = table().selectedRow();
    return isRow(row) ? rowAt(row).diskName() : std::string();
}

void KORVENDriveViewController::selectName(const std::string &name)
{
    const auto found = std::find_if(m_disksArray.begin(), m_disksArray.end(),
                                    [&](const auto &row) { return row.diskName() == name; });
    if (found != m_disksArray.end()) {
        selectInPlace(static_cast<int>(found - m_disksArray.begin()));
    }
}

const KORVENDriveObject &KORVENDriveViewController::rowAt(int row) const
{
    return m_disksArray[static_cast<std::size_t>(row)];
}

int KORVENDriveViewController::numberOfRowsInTableView() const
{
    return static_cast<int>(m_disksArray.size());
}

QWidget *KORVENDriveViewController::viewForTableColumn(int row)
{
    if (!isRow(row)) {
        return nullptr;
    }
    auto &cell = makeCell<KORVENDriveCellView>();
    fillCell(cell, rowAt(row));
    return &cell;
}

void KORVENDriveViewController::fillCell(KORVENDriveCellView &cell, const KORVENDriveObject &row)
{
    cell.setServices(m_volumes, m_fileManager);
    cell.setIsRemoveable(row.isRemoveable());
    cell.setIsUnmountable(row.isUnmountable());
    cell.setDiskType(row.diskType());
    if (cell.driveName() == nullptr) {
        return; // a bare cell
    }
    const QString name = textOfName(row.diskName());
    cell.driveName()->setText(name);
    cell.driveName()->setToolTip(nameToolTip(name));
    cell.driveFree()->setText(QString::fromStdString(row.diskFreeAsString()));
    cell.driveTotal()->setText(QString::fromStdString(row.diskTotalAsString()));
    cell.driveUsed()->setText(QString::fromStdString(row.diskUsedAsString()));

    const float share = shareOf(row);
    cell.driveGraph()->setBarPercent(share);
    // The cell may have shown a volume in warning colours before.
    cell.driveGraph()->setColorsGreen();
    if (KORVENAppDelegate::sharedDelegate().diskGraphColorPreference() != 0) {
        setWarningColors(*cell.driveGraph(), share);
    }
    cell.driveGraph()->setToolTip(percentText(share));

    const QString image = row.isRemoveable() ? u"drive_usb.png"_s : u"drive.png"_s;
    cell.driveImage()->setImage(artworkIcon(image), image);
    cell.driveImage()->setToolTip(kindName(row.diskType()));
    cell.showFiguresOld(row.areFiguresOld());
    cell.showEjectControl(m_ejecting.contains(row.diskName()));
    pressGuard().watch(*cell.ejectButton()); // the row below may move up under the pointer
    // A cell is filled many times but must be connected once. Qt::UniqueConnection works with
    // member functions only, not with lambdas; hence the slot that looks for its sender.
    connect(&cell, &KORVENDriveCellView::ejectRequested, &m_ejecting, &EjectingVolumes::add,
            Qt::UniqueConnection);
    connect(&cell, &KORVENDriveCellView::menuRequested, this,
            &KORVENDriveViewController::selectRowOfSender, Qt::UniqueConnection);
}

void KORVENDriveViewController::selectRowOfSender()
{
    // Cells are reused for other rows, so they do not know their row.
    for (int row = 0; row < numberOfRowsInTableView(); ++row) {
        if (cellAt<KORVENDriveCellView>(row) == sender()) {
            table().selectRow(row);
        }
    }
}

bool KORVENDriveViewController::hasSelectedRow() const
{
    return table().selectedRow() >= 0;
}

void KORVENDriveViewController::showInFinder()
{
    if (KORVENDriveCellView *cell = selectedCell<KORVENDriveCellView>()) {
        cell->showInFinder();
    }
}

void KORVENDriveViewController::showInfo()
{
    if (KORVENDriveCellView *cell = selectedCell<KORVENDriveCellView>()) {
        cell->showInfo();
    }
}

QString KORVENDriveViewController::searchText(int row) const
{
    return textOfName(rowAt(row).diskName());
}

QString KORVENDriveViewController::accessibleText(int row) const
{
    const KORVENDriveObject &object = rowAt(row);
    const QString name = drawableText(searchText(row));
    const float share = shareOf(object);
    // A volume that has not answered has a size of 0, and 0 / 0 is not a number.
    if (std::isnan(share)) {
        return tr("%1, size unknown").arg(name);
    }
    const QString used = QString::fromStdString(object.diskUsedAsString());
    const QString percent = percentText(share).trimmed();
    return object.areFiguresOld() ? tr("%1, %2 used, %3, out of date").arg(name, used, percent)
                                  : tr("%1, %2 used, %3").arg(name, used, percent);
}

void KORVENDriveViewController::activateRow(int row)
{
    if (KORVENDriveCellView *cell = cellAt<KORVENDriveCellView>(row)) {
        cell->showInFinder();
    }
}

void KORVENDriveViewController::showMenu(int row, const QPoint &place)
{
    if (KORVENDriveCellView *cell = cellAt<KORVENDriveCellView>(row)) {
        cell->popUpMenu(place);
    }
}

} // namespace tessaly
