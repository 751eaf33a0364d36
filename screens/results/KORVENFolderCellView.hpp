#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>

class QAction;
class QLabel;
class QMenu;
class QPoint;

namespace tessaly {

class IconView;
class KORVENProgressBar;
class KORVENViewController;
class NameLabel;

/// The cell of one result row: icon, name, size, percentage bar, and the row's menu. A click on
/// icon or name goes into a folder, or previews a file. All actions do nothing while the screen
/// cannot act on its rows (KORVENViewController::canActOnRows()).
///
/// Names: folderName holds the text of a name (see NameText.hpp), which all actions go by.
/// Outlets: null in a cell that was not loaded from an interface file.
class KORVENFolderCellView : public QWidget {
    Q_OBJECT

public:
    /// A cell without anything in it.
    explicit KORVENFolderCellView(QWidget *parent = nullptr);
    ~KORVENFolderCellView() override;
    Q_DISABLE_COPY_MOVE(KORVENFolderCellView)

    /// The cell out of an interface file; nullptr when there is no such file, or no such cell in
    /// it.
    [[nodiscard]] static std::unique_ptr<KORVENFolderCellView>
    tableCellViewWithNibNamed(const QString &name, KORVENViewController *owner);

    /// True for a folder row, false for a file row. Only files can be previewed by the menu.
    [[nodiscard]] bool allowsClickDrill() const noexcept { return m_allowsClickDrill; }
    void setAllowsClickDrill(bool allows);

    [[nodiscard]] IconView *iconImage() const noexcept { return m_iconImage; }
    [[nodiscard]] NameLabel *folderName() const noexcept { return m_folderName; }
    [[nodiscard]] QLabel *folderSize() const noexcept { return m_folderSize; }
    [[nodiscard]] KORVENProgressBar *folderGraph() const noexcept { return m_folderGraph; }
    /// The entry of the menu that previews; not visible for a folder row.
    [[nodiscard]] QAction *quickLookMenu() const noexcept { return m_quickLookMenu; }

    /// The screen that owns the table.
    [[nodiscard]] KORVENViewController *myViewController() const noexcept;
    void setMyViewController(KORVENViewController *controller);

    void clickedFolder() { goOrPreview(); }
    void clickedName() { goOrPreview(); }
    void showQuickLook();
    void showInFinder();
    void showInfo();

    /// Opens the row's menu. It acts on the row that the cell shows now, whatever it shows later.
    /// Its items are disabled if the screen cannot act on its rows.
    QMenu *popUpMenu(const QPoint &place);

private:
    /// What the actions are about, independent of the cell.
    struct Target;

    void connectOutlets();
    void goOrPreview();
    [[nodiscard]] bool canAct() const;
    [[nodiscard]] Target target() const;

    bool m_allowsClickDrill = false;
    IconView *m_iconImage = nullptr;
    NameLabel *m_folderName = nullptr;
    QLabel *m_folderSize = nullptr;
    KORVENProgressBar *m_folderGraph = nullptr;
    QAction *m_quickLookMenu;
    QPointer<KORVENViewController> m_myViewController;
};

} // namespace tessaly
