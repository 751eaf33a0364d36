#include "preview/PreviewWindow.hpp"

#include "app/controls/frame/WindowGeometry.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/controls/theme/Theme.hpp"
#include "engine/tree/SizeText.hpp"
#include "preview/CardView.hpp"
#include "preview/FilePreview.hpp"
#include "preview/ImageView.hpp"
#include "preview/MediaView.hpp"
#include "preview/PdfView.hpp"
#include "preview/PreviewHeader.hpp"
#include "preview/PreviewLoader.hpp"
#include "preview/PreviewTheme.hpp"
#include "preview/TextView.hpp"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QSlider>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>
#include <variant>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

// The layout leaves this margin free. Inside, the children would get the mouse events of a resize.
constexpr int edgeWidth = 5;

/// Qt replaces "[*]" in a window title by its mark for modified documents.
/// A file may have that in its name. Doubled, it is shown as it is.
QString plainTitle(QString text)
{
    return text.replace("[*]"_L1, "[*][*]"_L1);
}

/// What of the content is shown, and how much it is.
QString noteOf(const LoadedPreview &preview)
{
    const PreviewInfo &info = preview.info;
    // The size is the whole file's, also where only its beginning is shown.
    const QString size =
        QString::fromStdString(tree::sizeText(static_cast<double>(info.status.byteCount)));
    QStringList note{info.type};
    if (const auto *image = std::get_if<PreviewImage>(&preview.content)) {
        note << PreviewWindow::tr("%1 × %2")
                    .arg(image->fullSize.width())
                    .arg(image->fullSize.height());
    } else if (const auto *document = std::get_if<PreviewPdf>(&preview.content)) {
        // A preview has a place for a limited number of pages (DecoderReply::maxPageCount).
        const auto shown = static_cast<int>(document->pageSizes.size());
        const int all = document->pageCount;
        note << (shown < all
                     ? PreviewWindow::tr("first %1 of %2 pages", nullptr, all).arg(shown).arg(all)
                 : shown == 1 ? PreviewWindow::tr("1 page")
                              : PreviewWindow::tr("%1 pages", nullptr, shown).arg(shown));
    }
    const auto *text = std::get_if<PreviewText>(&preview.content);
    const auto cut = text != nullptr ? text->cut : PreviewText::Cut::none;
    note << (cut == PreviewText::Cut::bytes ? PreviewWindow::tr("… first 256 KB of %1").arg(size)
             : cut == PreviewText::Cut::lines
                 ? PreviewWindow::tr("… first %1 lines of %2")
                       .arg(QLocale().toString(previewTextLineCount), size)
                 : size);
    return note.join(u" — "_s);
}

} // namespace

PreviewWindow::PreviewWindow()
    // A dialog, since window managers do not let tool windows fill the screen.
    : QWidget(nullptr, Qt::Dialog | Qt::FramelessWindowHint), m_drag(*this),
      m_loader(new PreviewLoader(this)), m_header(new PreviewHeader), m_note(new NameLabel)
{
    setWindowTitle(tr("Preview"));
    applyPreviewTheme(*this);
    // The pointer changes its shape over the edges while no button is pressed.
    setMouseTracking(true);
    setMinimumSize(360, 260);
    // The main window alone decides when the program quits.
    setAttribute(Qt::WA_QuitOnClose, false);

    makeViews();
    setTextStyle(*m_note, 12, QFont::Normal, theme::preview::dimText);
    m_note->setAlignment(Qt::AlignCenter);
    m_note->setFixedHeight(28);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(edgeWidth, edgeWidth, edgeWidth, edgeWidth);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addWidget(m_pages, 1);
    layout->addWidget(m_note);

    connect(m_header, &PreviewHeader::pagingAsked, this, &PreviewWindow::pagingAsked);
    connect(m_header, &PreviewHeader::fullScreenAsked, this, &PreviewWindow::toggleFullScreen);
    connect(m_header, &PreviewHeader::closeAsked, this, &PreviewWindow::closeAsked);
    // The loader answers later, or not at all when something else was asked for before.
    connect(m_loader, &PreviewLoader::loaded, this, &PreviewWindow::showLoaded);
    connect(m_loader, &PreviewLoader::pageDrawn, m_pdf, &PdfView::setPage);
    connect(m_pdf, &PdfView::pageWanted, m_loader, &PreviewLoader::drawPage);
    connect(m_image, &ImageView::frameWanted, m_loader, &PreviewLoader::nextFrame);
    connect(m_loader, &PreviewLoader::frameDecoded, m_image, &ImageView::setFrame);
    // The player tells only while it plays that it cannot. Until then the player's page is shown.
    connect(m_media, &MediaView::failed, this, [this](const QString &reason) {
        showCard(m_info, tr("This cannot be played: %1").arg(reason));
    });
    // The window's keys work whichever of its widgets has the focus.
    qApp->installEventFilter(this);
}

PreviewWindow::~PreviewWindow() = default;

void PreviewWindow::makeViews()
{
    m_pages = new QStackedWidget(this);
    m_message = new QLabel;
    setTextStyle(*m_message, 14, QFont::Normal, theme::preview::dimText);
    m_message->setAlignment(Qt::AlignCenter);
    m_image = new ImageView;
    m_text = new TextView;
    m_pdf = new PdfView;
    m_media = new MediaView;
    m_card = new CardView;
    for (QWidget *page :
         std::initializer_list<QWidget *>{m_message, m_image, m_text, m_pdf, m_media, m_card}) {
        m_pages->addWidget(page);
        page->setCursor(Qt::ArrowCursor); // else it inherits that of the window's edges
    }
}

QSize PreviewWindow::maxImageSize() const
{
    constexpr QSize minSize(64, 64);
    // Decoded for the whole screen, since the window may fill it later without the file being read
    // again. The maximum keeps an image below 36 MB on any screen.
    constexpr QSize maxSize(3000, 3000);
    const QSize wanted = screen()->size() * screen()->devicePixelRatio();
    return wanted.boundedTo(maxSize).expandedTo(minSize);
}

void PreviewWindow::showFile(const std::string &path, std::size_t index, std::size_t count)
{
    //: The title of a preview: a file's name, its place among the files, and their number
    load(path,
         tr("%1 — %2 of %3")
             .arg(previewName(path), QString::number(index + 1), QString::number(count)),
         count > 1);
}

void PreviewWindow::showUnlistedFile(const std::string &path, std::size_t count)
{
    load(path, previewName(path), count > 0);
}

void PreviewWindow::load(const std::string &path, const QString &title, bool canPage)
{
    // The message first: it stops what was shown, so that no sound plays on while the file is read.
    showMessage(title, previewName(path), canPage, tr("Loading…"), u"loading"_s);
    m_loader->load(path, maxImageSize());
}

void PreviewWindow::showNothing()
{
    showMessage(tr("Preview"), {}, false, tr("Nothing to preview"), u"nothing"_s);
}

void PreviewWindow::showMessage(const QString &title, const QString &fileName, bool canPage,
                                const QString &message, const QString &kind)
{
    // Before the text changes: an answer that still came would replace the message.
    stop();
    m_header->setTitle(title, fileName);
    m_header->setCanPage(canPage);
    // The window has no title bar, but task bars and screen readers show its title.
    setWindowTitle(plainTitle(title));
    m_note->setText({});
    m_message->setText(message);
    showPage(m_message, kind);
}

void PreviewWindow::stop()
{
    m_loader->cancel();
    clearViews();
}

void PreviewWindow::clearViews()
{
    // All of them: images are large, and a player keeps its file open.
    m_info = {};
    m_image->clear();
    m_text->clear();
    m_pdf->clear();
    m_media->clear();
}

void PreviewWindow::showPage(QWidget *page, const QString &kind)
{
    // A hidden widget keeps the focus, and the keys would be lost.
    if (m_pages->isAncestorOf(focusWidget())) {
        setFocus();
    }
    m_pages->setCurrentWidget(page);
    m_shownKind = kind;
    Q_EMIT contentShown();
}

void PreviewWindow::showCard(const PreviewInfo &info, const QString &message)
{
    m_card->show(info, message); // before clearViews(), which resets what `info` may refer to
    clearViews();
    m_note->setText({});
    showPage(m_card, u"card"_s);
}

void PreviewWindow::showLoaded(const LoadedPreview &preview)
{
    // A copy: the player's failure comes later and needs it for the card.
    m_info = preview.info;
    if (const auto *card = std::get_if<PreviewCard>(&preview.content)) {
        showCard(preview.info, card->message);
        return;
    }
    // A card says all of this itself, so only the others have the note.
    m_note->setText(noteOf(preview));
    if (const auto *image = std::get_if<PreviewImage>(&preview.content)) {
        m_image->show(*image);
        showPage(m_image, u"image"_s);
    } else if (const auto *text = std::get_if<PreviewText>(&preview.content)) {
        m_text->show(text->text);
        showPage(m_text, u"text"_s);
    } else if (const auto *document = std::get_if<PreviewPdf>(&preview.content)) {
        m_pdf->show(*document);
        showPage(m_pdf, u"document"_s);
    } else {
        m_media->show(m_info, std::get<PreviewMedia>(preview.content));
        showPage(m_media, u"player"_s);
    }
}

bool PreviewWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) {
        return false;
    }
    // The filter sees the events of the whole program, and those of QWindows before their widgets
    // get them. They are left alone here, or each key would count twice.
    auto *widget = qobject_cast<QWidget *>(watched);
    if (widget == nullptr || widget->window() != this) {
        return false;
    }
    const auto &key = static_cast<const QKeyEvent &>(*event);
    if ((key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0) {
        return false; // Ctrl+C copies a part of a text
    }
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept(); // keeps it from the program's shortcuts
        return false;
    }
    return handleKey(widget, key.key());
}

bool PreviewWindow::handleKey(QWidget *focus, int key)
{
    const bool isOnSlider = qobject_cast<QSlider *>(focus) != nullptr;
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Up:
    case Qt::Key_Right:
    case Qt::Key_Down:
        // A player's slider has the focus only if the user moved it there by Tab.
        if (isOnSlider) { // which moves by these keys
            return false;
        }
        Q_EMIT pagingAsked(key == Qt::Key_Left || key == Qt::Key_Up ? -1 : 1);
        return true;
    // Space closes, as it opened the preview. So buttons are pressed by Return, which Qt's buttons
    // do not take by themselves.
    case Qt::Key_Space:
    case Qt::Key_Escape:
        Q_EMIT closeAsked();
        return true;
    case Qt::Key_F11:
        toggleFullScreen();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (auto *button = qobject_cast<QAbstractButton *>(focus)) {
            button->click();
        }
        return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        return !isOnSlider && scrollBy(key);
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return false; // moves the focus
    default:
        // Consumed in any case, so that no view scrolls or searches by keys that are not listed
        // above.
        Q_EMIT otherKeyPressed();
        return true;
    }
}

bool PreviewWindow::scrollBy(int key)
{
    // The views with scroll bars do not have the focus as a rule, so they would not get these keys.
    auto *area = qobject_cast<QAbstractScrollArea *>(m_pages->currentWidget());
    if (area == nullptr) {
        return false;
    }
    const auto action = key == Qt::Key_PageUp     ? QAbstractSlider::SliderPageStepSub
                        : key == Qt::Key_PageDown ? QAbstractSlider::SliderPageStepAdd
                        : key == Qt::Key_Home     ? QAbstractSlider::SliderToMinimum
                                                  : QAbstractSlider::SliderToMaximum;
    area->verticalScrollBar()->triggerAction(action);
    return true;
}

void PreviewWindow::toggleFullScreen()
{
    // Only this one flag, so that a maximized window is maximized again afterwards.
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

void PreviewWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    // The window manager may have changed it, too.
    if (event->type() == QEvent::WindowStateChange) {
        m_header->setShownFullScreen(isFullScreen());
    }
}

void PreviewWindow::closeEvent(QCloseEvent *event)
{
    // The owner hides the window. The event is accepted, since a window that refuses to close would
    // stop the program from quitting.
    Q_EMIT closeAsked();
    event->accept();
}

void PreviewWindow::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), theme::preview::window);
    // The window is frameless: no frame of the desktop draws an edge or a title bar.
    const int headerEnd = m_header->geometry().bottom() + 1;
    QLinearGradient shade(0, 0, 0, headerEnd);
    shade.setColorAt(0, theme::preview::headerTop);
    shade.setColorAt(1, theme::preview::headerBottom);
    painter.fillRect(0, 0, width(), headerEnd, shade);
    painter.setPen(theme::preview::line);
    painter.drawLine(0, headerEnd - 1, width(), headerEnd - 1);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

Qt::Edges PreviewWindow::edgesAt(const QPoint &position) const
{
    // In full screen the margin is there as well, but a drag at the screen's edge must not resize.
    return isFullScreen() ? Qt::Edges() : tessaly::edgesAt(position, size(), edgeWidth);
}

void PreviewWindow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (const Qt::Edges edges = edgesAt(event->pos())) {
        // The compositor resizes: on Wayland a window can neither place nor move itself.
        windowHandle()->startSystemResize(edges);
    } else if (m_header->geometry().contains(event->pos())) {
        // Only noted: the move begins once the pointer is far enough away, so a double click still
        // works.
        m_drag.press(event->pos());
    }
}

void PreviewWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons().testFlag(Qt::LeftButton)) {
        // No new shape while a button is pressed: the pointer may cross an edge during a drag.
        m_drag.move(*event);
    } else {
        setCursor(cursorForEdges(edgesAt(event->pos())));
    }
}

void PreviewWindow::mouseReleaseEvent(QMouseEvent * /*event*/)
{
    m_drag.end();
}

void PreviewWindow::mouseDoubleClickEvent(QMouseEvent *event)
{
    // The second press of a double click comes as this event, and a drag must not follow from it.
    m_drag.end();
    if (m_header->geometry().contains(event->pos())) {
        toggleFullScreen();
    }
}

void PreviewWindow::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    // The pointer leaves across an edge, and the window would keep the shape for resizing.
    unsetCursor();
}

} // namespace tessaly
