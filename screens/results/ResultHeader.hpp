#pragma once

class QLabel;
class QString;
class QWidget;

namespace tessaly {

class KORVENButton;

/// What stands over the rows of a scan screen beside the path: the button that leads up or the word
/// "Folder" in its place, the date of the scan and the level's total.
///
/// Threads: the main thread.
class ResultHeader final {
public:
    /// The header of this view, which must outlive this.
    explicit ResultHeader(QWidget &view);

    [[nodiscard]] KORVENButton &backButton() const noexcept { return m_backButton; }

    /// An empty text hides its caption as well.
    void showTotal(const QString &total);
    /// An empty date leaves its room to the path.
    void showDate(const QString &date);
    void showBackButton(bool isShown);

private:
    KORVENButton &m_backButton;
    QLabel &m_folderLabel;
    QLabel &m_totalLabel;
    QLabel &m_totalCaption;
    QLabel &m_dateLabel;
};

} // namespace tessaly
