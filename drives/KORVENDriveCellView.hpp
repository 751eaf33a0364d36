#pragma once

#include <QString>
#include <QWidget>

#include <cstdint>
#include <memory>
#include <string>

class QLabel;
class QMenu;
class QPoint;

namespace tessaly {

class FileManager;
class IconView;
class KORVENButton;
class KORVENProgressBar;
class NameLabel;
class VolumeService;

/// The cell of one volume: icon, name, three size texts, usage bar, eject control, and the row's
/// menu. A click on icon or name shows the volume in the file manager.
///
/// Names: driveName holds the text of a volume's name (see NameText.hpp), which all actions make
///        their path of; nothing else is known of the volume here.
/// Outlets: null in a cell that was not loaded from an interface file.
/// Errors:  actions report no outcome. The system announces a volume that was unmounted.
class KORVENDriveCellView : public QWidget {
    Q_OBJECT

public:
    /// A cell without anything in it.
    explicit KORVENDriveCellView(QWidget *parent = nullptr);
    ~KORVENDriveCellView() override;
    Q_DISABLE_COPY_MOVE(KORVENDriveCellView)

    /// The cell out of an interface file; nullptr when there is no such file, or no such cell in
    /// it. The owner is not used.
    [[nodiscard]] static std::unique_ptr<KORVENDriveCellView>
    tableCellViewWithNibNamed(const QString &name, const QObject *owner);

    /// What the actions below use: to be set before the first of them. Both outlive the cell, and
    /// `volumes` every unmounting as well (see waitForUnmounts()).
    void setServices(VolumeService &volumes, FileManager &fileManager) noexcept
    {
        m_volumes = &volumes;
        m_fileManager = &fileManager;
    }

    [[nodiscard]] NameLabel *driveName() const noexcept { return m_driveName; }
    [[nodiscard]] QLabel *driveFree() const noexcept { return m_driveFree; }
    [[nodiscard]] QLabel *driveUsed() const noexcept { return m_driveUsed; }
    [[nodiscard]] QLabel *driveTotal() const noexcept { return m_driveTotal; }
    [[nodiscard]] KORVENProgressBar *driveGraph() const noexcept { return m_driveGraph; }
    [[nodiscard]] IconView *driveImage() const noexcept { return m_driveImage; }
    [[nodiscard]] KORVENButton *ejectButton() const noexcept { return m_ejectButton; }
    [[nodiscard]] QLabel *ejectLabel() const noexcept { return m_ejectLabel; }

    // Copied from the row.
    [[nodiscard]] bool isRemoveable() const noexcept { return m_isRemoveable; }
    void setIsRemoveable(bool isRemoveable) noexcept { m_isRemoveable = isRemoveable; }
    [[nodiscard]] bool isUnmountable() const noexcept { return m_isUnmountable; }
    void setIsUnmountable(bool isUnmountable) noexcept { m_isUnmountable = isUnmountable; }
    [[nodiscard]] std::int32_t diskType() const noexcept { return m_diskType; }
    void setDiskType(std::int32_t type) noexcept { m_diskType = type; }

    /// Shows the figures as those that the volume had when it last answered, or as current.
    void showFiguresOld(bool areOld);

    /// Shows the eject control of a volume that is removable or unmountable: enabled, or disabled
    /// while it is being ejected. Hides it for any other volume.
    void showEjectControl(bool isEjecting);

    /// Ejects a removable volume, unmounts one that is unmountable only, leaves any other alone.
    void ejectDrive();
    /// Unmounts the volume at a path and waits for the outcome. Any thread but the main thread.
    static void unmountInBackground(VolumeService &volumes, const std::string &path);
    /// Shows the volume in the file manager.
    void showInFinder();
    /// Shows a window with what is known about the volume.
    void showInfo();

    /// The height that the cell needs at that width, with the fonts as they are.
    [[nodiscard]] int heightForWidth(int width) const override;

    /// Opens the row's menu. It acts on the row that the cell shows now, whatever it shows later.
    QMenu *popUpMenu(const QPoint &place);

Q_SIGNALS:
    /// An eject or unmount of the volume with this name, as bytes, has been started.
    void ejectRequested(const std::string &name);
    /// The row's menu is about to open.
    void menuRequested();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    /// What the actions are about, independent of the cell.
    struct Target;

    void connectOutlets();
    void fitEjectLabel(int cellWidth) const;
    [[nodiscard]] bool canEject() const noexcept { return m_isRemoveable || m_isUnmountable; }
    [[nodiscard]] Target target() const;

    VolumeService *m_volumes = nullptr;
    FileManager *m_fileManager = nullptr;
    bool m_isRemoveable = false;
    bool m_isUnmountable = false;
    std::int32_t m_diskType = 0;
    bool m_isEjecting = false;
    NameLabel *m_driveName = nullptr;
    QLabel *m_driveFree = nullptr;
    QLabel *m_driveUsed = nullptr;
    QLabel *m_driveTotal = nullptr;
    KORVENProgressBar *m_driveGraph = nullptr;
    IconView *m_driveImage = nullptr;
    KORVENButton *m_ejectButton = nullptr;
    QLabel *m_ejectLabel = nullptr;
    int m_ejectLabelWidth = 0; ///< fits either of its texts
};

} // namespace tessaly
