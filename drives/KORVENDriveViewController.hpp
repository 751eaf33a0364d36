#pragma once

#include "app/controls/tables/RowActions.hpp"
#include "app/screen/TableScreen.hpp"
#include "drives/EjectingVolumes.hpp"
#include "drives/KORVENDriveObject.hpp"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>
#include <string>
#include <vector>

class QLabel;

namespace tessaly {

class ApplicationLauncher;
class FileManager;
class KORVENButton;
class KORVENDriveCellView;
struct VolumeFigures;
struct VolumeInformation;
class VolumeService;

/// The screen that lists the mounted volumes, one row each, with how full they are. The list is
/// rebuilt, in the order that the user chose, whenever volumes were mounted or unmounted and when
/// the user asks; the rows before stay in view until the volumes have answered. A volume that does
/// not answer in time keeps the figures that it had, marked as old, until it does.
///
/// The button for the disk utility is there where the desktop has one.
///
/// Threads: the main thread.
class KORVENDriveViewController final : public QObject, public TableScreen, public RowActions {
    Q_OBJECT

public:
    /// Listens to mounts and refused ejects from now on. The services outlive this and every
    /// unmounting (see waitForUnmounts()). `nibName`: the interface file with the screen's view.
    KORVENDriveViewController(VolumeService &volumes, ApplicationLauncher &applications,
                              FileManager &fileManager,
                              const QString &nibName = QStringLiteral("KORVENDriveViewController"));
    ~KORVENDriveViewController() override;
    Q_DISABLE_COPY_MOVE(KORVENDriveViewController)

    /// Asks for the volumes that there are now, and lists them once all have answered.
    void runScanDrives();
    void refreshTable() override;
    /// A volume was mounted or unmounted.
    void discMounted();

    // What the buttons do.
    void refreshClicked();
    void sortClicked() override;
    /// Starts the system's disk utility, if there is one.
    void launchClicked();

    /// Puts the rows into the chosen order and shows them from the first.
    void sortTable();

    [[nodiscard]] int numberOfRowsInTableView() const override;
    [[nodiscard]] QWidget *viewForTableColumn(int row) override;

    [[nodiscard]] RowActions *rowActions() noexcept override { return this; }
    [[nodiscard]] bool hasSelectedRow() const override;
    void showInFinder() override;
    void showInfo() override;

    // The state.
    [[nodiscard]] const std::vector<KORVENDriveObject> &disksArray() const noexcept
    {
        return m_disksArray;
    }
    /// Rows are in the order of size; otherwise in that of names.
    [[nodiscard]] bool sortBySizeFlag() const noexcept { return m_sortBySizeFlag; }

signals:
    /// Whether the desktop has a disk utility: after awakeFromNib() and after each
    /// refreshClicked(), never before these return.
    void diskUtilityLookedFor(bool isInstalled);

private:
    void setUp() override;
    void fitRowHeight();
    void showDrives(const std::vector<std::string> &names,
                    const std::vector<VolumeInformation> &information);
    void showLateFigures(const std::string &name, const std::optional<VolumeFigures> &figures);
    void showCountOrEmptyState();
    /// The eject of a volume was refused.
    void endEjecting(const std::string &path);
    /// Shows the launch button if the desktop has a disk utility, and emits diskUtilityLookedFor().
    void lookForDiskUtility();
    /// Selects the row whose cell has sent the signal.
    void selectRowOfSender();
    [[nodiscard]] std::string selectedName() const;
    void selectName(const std::string &name);
    [[nodiscard]] const KORVENDriveObject &rowAt(int row) const;
    void fillCell(KORVENDriveCellView &cell, const KORVENDriveObject &row);

    [[nodiscard]] QString searchText(int row) const override;
    [[nodiscard]] QString accessibleText(int row) const override;
    [[nodiscard]] bool canActivateRow(int /*row*/) const override { return true; }
    [[nodiscard]] bool hasMenu(int /*row*/) const override { return true; }
    void activateRow(int row) override;
    void showMenu(int row, const QPoint &place) override;

    VolumeService &m_volumes;
    ApplicationLauncher &m_applications;
    FileManager &m_fileManager;
    std::unique_ptr<KORVENDriveCellView> m_sampleCell; ///< never shown; says how high rows are
    // Outlets: the view owns them.
    KORVENButton &m_sortButton;
    KORVENButton &m_launchButton;
    QLabel &m_countLabel;

    std::vector<KORVENDriveObject> m_disksArray;
    bool m_sortBySizeFlag = true;
    unsigned m_scanNumber = 0; ///< of the question whose answer counts
    EjectingVolumes m_ejecting;
};

} // namespace tessaly
