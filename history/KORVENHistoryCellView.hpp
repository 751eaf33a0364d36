#pragma once

#include <QString>
#include <QWidget>

#include <memory>
#include <optional>
#include <string>

class QLabel;

namespace tessaly {

class IconView;
class KORVENButton;
class KORVENHistoryViewController;
class NameLabel;

/// The cell of one recorded scan: an image that opens it again, the folder's path, the total, the
/// date, and a button that deletes it. The record's key is all that it keeps of the record.
///
/// Names:   scanPath holds the text of a path (see NameText.hpp).
/// Outlets: null in a cell that was not loaded from an interface file.
/// Threads: the main thread.
class KORVENHistoryCellView : public QWidget {
    Q_OBJECT

public:
    /// A cell without anything in it.
    explicit KORVENHistoryCellView(QWidget *parent = nullptr);
    ~KORVENHistoryCellView() override;
    Q_DISABLE_COPY_MOVE(KORVENHistoryCellView)

    /// The cell out of an interface file; nullptr when there is no such file, or no such cell in
    /// it. The owner is not used.
    [[nodiscard]] static std::unique_ptr<KORVENHistoryCellView>
    tableCellViewWithNibNamed(const QString &name, const KORVENHistoryViewController *owner);

    [[nodiscard]] IconView *imageView() const noexcept { return m_imageView; }
    [[nodiscard]] NameLabel *scanPath() const noexcept { return m_scanPath; }
    [[nodiscard]] QLabel *scanTotal() const noexcept { return m_scanTotal; }
    [[nodiscard]] QLabel *scanDate() const noexcept { return m_scanDate; }
    [[nodiscard]] KORVENButton *deleteButton() const noexcept { return m_deleteButton; }

    /// The key of the record that is shown; nothing for a record without one. A press of the mouse
    /// that began on another record's cell is none on this one's.
    [[nodiscard]] const std::optional<std::string> &scanKey() const noexcept { return m_scanKey; }
    void setScanKey(const std::optional<std::string> &scanKey);

    /// Asks the application delegate to show the scan.
    void imageClicked();
    /// Deletes the scan without confirmation. Does nothing when the history cannot be read.
    void deleteClicked();

private:
    void connectOutlets();

    IconView *m_imageView = nullptr;
    NameLabel *m_scanPath = nullptr;
    QLabel *m_scanTotal = nullptr;
    QLabel *m_scanDate = nullptr;
    KORVENButton *m_deleteButton = nullptr;
    std::optional<std::string> m_scanKey;
};

} // namespace tessaly
