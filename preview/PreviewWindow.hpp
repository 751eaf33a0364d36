#pragma once

#include "app/controls/frame/WindowDrag.hpp"
#include "preview/PreviewContent.hpp"

#include <QWidget>

#include <cstddef>
#include <string>

class QLabel;
class QStackedWidget;

namespace tessaly {

class CardView;
class ImageView;
class MediaView;
class NameLabel;
class PdfView;
class PreviewHeader;
class PreviewLoader;
class TextView;

/// The panel's window: a header with the file's name and buttons, the file's content, and a line
/// about it. It has no frame of the desktop's: the header moves it, and its edges resize it.
///
/// Space and Escape close it; the arrow keys page; Page Up, Page Down, Home and End scroll what is
/// shown; F11 fills the screen; Return presses the button with the focus.
class PreviewWindow final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PreviewWindow)

public:
    PreviewWindow();
    ~PreviewWindow() override;

    /// Shows the file at `path` (bytes), which is the one with this index of `count`.
    void showFile(const std::string &path, std::size_t index, std::size_t count);
    /// Shows the file at `path` (bytes), which is none of the `count` that can be paged through.
    void showUnlistedFile(const std::string &path, std::size_t count);
    /// Shows that there is no file.
    void showNothing();
    /// Cancels what is being read, and stops what plays.
    void stop();

    /// What is shown: "loading", "nothing", "image", "text", "document", "player" or "card".
    [[nodiscard]] QString shownKind() const { return m_shownKind; }

    [[nodiscard]] CardView &cardView() const { return *m_card; }
    [[nodiscard]] ImageView &imageView() const { return *m_image; }
    [[nodiscard]] MediaView &mediaView() const { return *m_media; }
    [[nodiscard]] PdfView &pdfView() const { return *m_pdf; }
    [[nodiscard]] TextView &textView() const { return *m_text; }
    [[nodiscard]] PreviewHeader &header() const { return *m_header; }
    [[nodiscard]] NameLabel &noteLabel() const { return *m_note; }

Q_SIGNALS:
    /// By 1 forwards, by -1 backwards.
    void pagingAsked(int step);
    void closeAsked();
    /// A key that the window does not use.
    void otherKeyPressed();
    /// Other content is shown than before.
    void contentShown();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void makeViews();
    bool handleKey(QWidget *focus, int key);
    bool scrollBy(int key);
    void toggleFullScreen();
    void load(const std::string &path, const QString &title, bool canPage);
    void showMessage(const QString &title, const QString &fileName, bool canPage,
                     const QString &message, const QString &kind);
    void showLoaded(const LoadedPreview &preview);
    void showCard(const PreviewInfo &info, const QString &message);
    void showPage(QWidget *page, const QString &kind);
    void clearViews();
    [[nodiscard]] Qt::Edges edgesAt(const QPoint &position) const;
    [[nodiscard]] QSize maxImageSize() const;

    WindowDrag m_drag;
    PreviewLoader *m_loader;
    PreviewHeader *m_header;
    NameLabel *m_note;
    QStackedWidget *m_pages = nullptr;
    QLabel *m_message = nullptr;
    ImageView *m_image = nullptr;
    TextView *m_text = nullptr;
    PdfView *m_pdf = nullptr;
    MediaView *m_media = nullptr;
    CardView *m_card = nullptr;
    PreviewInfo m_info;
    QString m_shownKind;
};

} // namespace tessaly
