#include "preview/PreviewWindow.hpp"

#include "engine/tree/SizeText.hpp"
#include "preview/CardView.hpp"
#include "preview/FilePreview.hpp"
#include "preview/GlyphButton.hpp"
#include "preview/ImageView.hpp"
#include "preview/MediaView.hpp"
#include "preview/PdfView.hpp"
#include "preview/PlainToolTip.hpp"
#include "preview/PreviewColors.hpp"
#include "preview/PreviewLoader.hpp"
#include "preview/TextView.hpp"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QPushButton>
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

constexpr int edgeWidth = 5;

/// A line of text that gives way when there is little room.
class ElidedLabel final : public QLabel {
public:
    using QLabel::QLabel;

    [[nodiscard]] QSize minimumSizeHint() const override
    {
        return {40, QLabel::sizeHint().height()};
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setPen(palette().color(foregroundRole()));
        painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                         fontMetrics().elidedText(text(), Qt::ElideMiddle, width()));
    }
};

QLabel *newLabel(QLabel *label, int pixelSize, QFont::Weight weight, const QColor &color)
{
    QFont font = label->font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

QPalette darkPalette()
{
    QPalette palette(preview_colors::window);
    palette.setColor(QPalette::Window, preview_colors::window);
    palette.setColor(QPalette::Base, preview_colors::page);
    palette.setColor(QPalette::Highlight, preview_colors::accent);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
        palette.setColor(role, preview_colors::text);
    }
    return palette;
}

/// What palettes do not reach.
QString darkStyleSheet()
{
    return uR"(
        QPushButton { background: #5A5A5A; border: 1px solid #262626; border-radius: 5px;
                      padding: 4px 12px; color: #EEEEEE; }
        QPushButton:hover { background: #686868; }
        QPushButton:pressed { background: #4A4A4A; }
        QPushButton:focus { border: 1px solid #3B7DF6; }
        QPushButton:disabled { color: #8A8A8A; }
        QPlainTextEdit { background: #222222; color: #EEEEEE;
                         selection-background-color: #3B7DF6; selection-color: #FFFFFF; }
        QScrollBar { background: transparent; }
        QScrollBar:vertical { width: 12px; }
        QScrollBar:horizontal { height: 12px; }
        QScrollBar::handle { background: #6A6A6A; border-radius: 4px; margin: 2px; }
        QScrollBar::handle:vertical { min-height: 28px; }
        QScrollBar::handle:horizontal { min-width: 28px; }
        QScrollBar::handle:hover { background: #808080; }
        QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
        QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
        QAbstractScrollArea::corner { background: transparent; }
        QSlider::groove { height: 4px; border-radius: 2px; background: #555555; }
        QSlider::sub-page { border-radius: 2px; background: #3B7DF6; }
        QSlider::handle { width: 12px; margin: -4px 0; border-radius: 6px; background: #EEEEEE; }
        QSlider::handle:focus { background: #9DC0FF; }
        QToolTip { background: #3A3A3A; color: #EEEEEE; border: 1px solid #1E1E1E; }
    )"_s;
}

/// Kept from Qt, which takes "[*]" in a title for a mark of its own.
QString plainTitle(QString text)
{
    return text.replace("[*]"_L1, "[*][*]"_L1);
}

QString sizeOf(const PreviewInfo &info)
{
    return QString::fromStdString(tree::sizeText(static_cast<double>(info.status.byteCount)));
}

} // namespace

PreviewWindow::PreviewWindow(bool canOpenFiles)
    // A dialog, since window managers let no tool window fill the screen.
    : QWidget(nullptr, Qt::Dialog | Qt::FramelessWindowHint), m_loader(new PreviewLoader(this))
{
    setWindowTitle(tr("Preview"));
    setPalette(darkPalette());
    setStyleSheet(darkStyleSheet());
    setMouseTracking(true);
    setMinimumSize(360, 260);
    // The program ends with its main window.
    setAttribute(Qt::WA_QuitOnClose, false);

    makeHeader();
    m_open->setVisible(canOpenFiles);
    makeViews();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(edgeWidth, edgeWidth, edgeWidth, edgeWidth);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addWidget(m_pages, 1);
    layout->addWidget(m_note);

    connect(m_loader, &PreviewLoader::loaded, this, &PreviewWindow::showLoaded);
    connect(m_loader, &PreviewLoader::pageDrawn, m_pdf, &PdfView::setPage);
    connect(m_pdf, &PdfView::pageWanted, m_loader, &PreviewLoader::drawPage);
    connect(m_image, &ImageView::frameWanted, m_loader, &PreviewLoader::nextFrame);
    connect(m_loader, &PreviewLoader::frameDecoded, m_image, &ImageView::setFrame);
    connect(m_media, &MediaView::failed, this, [this](const QString &reason) {
        showCard(m_info, tr("This cannot be played: %1").arg(reason));
    });
    // The keys are the window's, whichever of its widgets has the focus.
    qApp->installEventFilter(this);
}

PreviewWindow::~PreviewWindow() = default;

void PreviewWindow::makeHeader()
{
    m_header = new QWidget(this);
    m_header->setFixedHeight(40);
    m_previous = new GlyphButton(GlyphButton::Glyph::previous, tr("Previous file"));
    m_next = new GlyphButton(GlyphButton::Glyph::next, tr("Next file"));
    m_title = newLabel(new ElidedLabel, 14, QFont::DemiBold, preview_colors::text);
    m_open = new QPushButton(tr("Open"));
    m_open->setToolTip(tr("Open with the usual application"));
    m_open->setFocusPolicy(Qt::TabFocus);
    m_fullScreen = new GlyphButton(GlyphButton::Glyph::fullScreen, tr("Full screen"));
    auto *close = new GlyphButton(GlyphButton::Glyph::close, tr("Close"));

    auto *layout = new QHBoxLayout(m_header);
    layout->setContentsMargins(6, 4, 6, 6);
    layout->setSpacing(4);
    layout->addWidget(m_previous);
    layout->addWidget(m_next);
    layout->addSpacing(6);
    layout->addWidget(m_title, 1);
    layout->addSpacing(6);
    layout->addWidget(m_open);
    layout->addWidget(m_fullScreen);
    layout->addWidget(close);

    connect(m_previous, &GlyphButton::clicked, this, [this] { Q_EMIT pagingAsked(-1); });
    connect(m_next, &GlyphButton::clicked, this, [this] { Q_EMIT pagingAsked(1); });
    connect(m_open, &QPushButton::clicked, this, &PreviewWindow::openAsked);
    connect(m_fullScreen, &GlyphButton::clicked, this, &PreviewWindow::toggleFullScreen);
    connect(close, &GlyphButton::clicked, this, &PreviewWindow::closeAsked);
}

void PreviewWindow::makeViews()
{
    m_pages = new QStackedWidget(this);
    m_message = newLabel(new QLabel, 14, QFont::Normal, preview_colors::dimText);
    m_image = new ImageView;
    m_text = new TextView;
    m_pdf = new PdfView;
    m_media = new MediaView;
    m_card = new CardView;
    for (QWidget *page :
         std::initializer_list<QWidget *>{m_message, m_image, m_text, m_pdf, m_media, m_card}) {
        m_pages->addWidget(page);
        page->setCursor(Qt::ArrowCursor); // not that of the window's edges
    }
    m_note = newLabel(new ElidedLabel, 12, QFont::Normal, preview_colors::dimText);
    m_note->setFixedHeight(28);
}

QSize PreviewWindow::largestImage() const
{
    constexpr QSize most(3000, 3000);
    const QSize wanted = screen()->size() * screen()->devicePixelRatio();
    return wanted.boundedTo(most).expandedTo(QSize(64, 64));
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
    stop();
    showTitle(title, plainToolTip(previewName(path)));
    m_previous->setEnabled(canPage);
    m_next->setEnabled(canPage);
    m_open->setEnabled(true);
    m_note->clear();
    m_message->setText(tr("Loading…"));
    showPage(m_message, u"loading"_s);
    m_loader->load(path, largestImage());
}

void PreviewWindow::showTitle(const QString &title, const QString &toolTip)
{
    m_title->setText(title);
    m_title->setToolTip(toolTip);
    setWindowTitle(plainTitle(title));
}

void PreviewWindow::showNothing()
{
    stop();
    showTitle(tr("Preview"), {});
    m_previous->setEnabled(false);
    m_next->setEnabled(false);
    m_open->setEnabled(false);
    m_note->clear();
    m_message->setText(tr("Nothing to preview"));
    showPage(m_message, u"nothing"_s);
}

void PreviewWindow::stop()
{
    m_loader->cancel();
    clearViews();
}

void PreviewWindow::clearViews()
{
    m_info = {};
    m_image->clear();
    m_text->clear();
    m_pdf->clear();
    m_media->clear();
}

void PreviewWindow::showPage(QWidget *page, const QString &kind)
{
    if (m_pages->isAncestorOf(focusWidget())) {
        setFocus();
    }
    m_pages->setCurrentWidget(page);
    m_shownKind = kind;
    Q_EMIT contentShown();
}

void PreviewWindow::showCard(const PreviewInfo &info, const QString &message)
{
    m_card->show(info, message);
    clearViews();
    m_note->clear();
    showPage(m_card, u"card"_s);
}

void PreviewWindow::showLoaded(const LoadedPreview &preview)
{
    m_info = preview.info;
    m_open->setEnabled(m_info.status.kind != PreviewFileStatus::Kind::missing);
    QStringList note{m_info.type};
    if (const auto *image = std::get_if<PreviewImage>(&preview.content)) {
        m_image->show(*image);
        note << tr("%1 × %2").arg(image->fullSize.width()).arg(image->fullSize.height())
             << sizeOf(m_info);
        showPage(m_image, u"image"_s);
    } else if (const auto *text = std::get_if<PreviewText>(&preview.content)) {
        m_text->show(text->text);
        note << (text->cut == PreviewText::Cut::bytes
                     ? tr("… first 256 KB of %1").arg(sizeOf(m_info))
                 : text->cut == PreviewText::Cut::lines
                     ? tr("… first %1 lines of %2")
                           .arg(QLocale().toString(previewTextLineCount), sizeOf(m_info))
                     : sizeOf(m_info));
        showPage(m_text, u"text"_s);
    } else if (const auto *document = std::get_if<PreviewPdf>(&preview.content)) {
        const auto shown = static_cast<int>(document->pageSizes.size());
        m_pdf->show(*document);
        note << (shown < document->pageCount
                     ? tr("first %1 of %2 pages", nullptr, document->pageCount)
                           .arg(shown)
                           .arg(document->pageCount)
                 : shown == 1 ? tr("1 page")
                              : tr("%1 pages", nullptr, shown).arg(shown))
             << sizeOf(m_info);
        showPage(m_pdf, u"document"_s);
    } else if (const auto *media = std::get_if<PreviewMedia>(&preview.content)) {
        m_media->show(m_info, *media);
        note << sizeOf(m_info);
        showPage(m_media, u"player"_s);
    } else {
        showCard(preview.info, std::get<PreviewCard>(preview.content).message);
        return;
    }
    m_note->setText(note.join(u" — "_s));
}

bool PreviewWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) {
        return false;
    }
    auto *widget = qobject_cast<QWidget *>(watched);
    if (widget == nullptr || widget->window() != this) {
        return false;
    }
    const auto &key = static_cast<const QKeyEvent &>(*event);
    if ((key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0) {
        return false; // copying a part of a text, for one
    }
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept(); // no shortcut of the program's gets it
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
        if (isOnSlider) {
            return false;
        }
        Q_EMIT pagingAsked(key == Qt::Key_Left || key == Qt::Key_Up ? -1 : 1);
        return true;
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
        } else if (m_open->isVisible()) {
            m_open->click();
        }
        return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        return !isOnSlider && scrollBy(key);
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return false;
    default:
        Q_EMIT otherKeyPressed();
        return true;
    }
}

bool PreviewWindow::scrollBy(int key)
{
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
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

void PreviewWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    // Also when the window manager has changed it.
    if (event->type() == QEvent::WindowStateChange) {
        m_fullScreen->setGlyph(isFullScreen() ? GlyphButton::Glyph::window
                                              : GlyphButton::Glyph::fullScreen,
                               isFullScreen() ? tr("Leave full screen") : tr("Full screen"));
    }
}

void PreviewWindow::closeEvent(QCloseEvent *event)
{
    // The owner hides the window. A window that refuses to close would keep the program from
    // quitting, so the event is accepted either way.
    Q_EMIT closeAsked();
    event->accept();
}

void PreviewWindow::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), preview_colors::window);
    const int headerEnd = m_header->geometry().bottom() + 1;
    QLinearGradient shade(0, 0, 0, headerEnd);
    shade.setColorAt(0, preview_colors::headerTop);
    shade.setColorAt(1, preview_colors::headerBottom);
    painter.fillRect(0, 0, width(), headerEnd, shade);
    painter.setPen(preview_colors::line);
    painter.drawLine(0, headerEnd - 1, width(), headerEnd - 1);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

Qt::Edges PreviewWindow::edgesAt(const QPoint &position) const
{
    Qt::Edges edges;
    if (isFullScreen()) {
        return edges;
    }
    constexpr int cornerWidth = 14; // easier to hit than an edge
    const bool isOnEdge =
        !rect().adjusted(edgeWidth, edgeWidth, -edgeWidth, -edgeWidth).contains(position);
    const int reach = isOnEdge ? cornerWidth : 0;
    edges.setFlag(Qt::LeftEdge, position.x() < reach);
    edges.setFlag(Qt::RightEdge, position.x() >= width() - reach);
    edges.setFlag(Qt::TopEdge, position.y() < reach);
    edges.setFlag(Qt::BottomEdge, position.y() >= height() - reach);
    return edges;
}

void PreviewWindow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (const Qt::Edges edges = edgesAt(event->pos())) {
        windowHandle()->startSystemResize(edges);
        return;
    }
    m_pressedAt = event->pos();
    m_mayMove = m_header->geometry().contains(event->pos());
}

void PreviewWindow::mouseMoveEvent(QMouseEvent *event)
{
    if ((event->buttons() & Qt::LeftButton) == 0) {
        const Qt::Edges edges = edgesAt(event->pos());
        const bool isFalling =
            edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge);
        const bool isCorner = (edges & (Qt::TopEdge | Qt::BottomEdge)) != 0 &&
                              (edges & (Qt::LeftEdge | Qt::RightEdge)) != 0;
        setCursor(!edges                                          ? Qt::ArrowCursor
                  : isFalling                                     ? Qt::SizeFDiagCursor
                  : isCorner                                      ? Qt::SizeBDiagCursor
                  : (edges & (Qt::LeftEdge | Qt::RightEdge)) != 0 ? Qt::SizeHorCursor
                                                                  : Qt::SizeVerCursor);
        return;
    }
    const int distance = (event->pos() - m_pressedAt).manhattanLength();
    // Only once: the desktop takes over, and the release never comes here.
    if (m_mayMove && distance >= QApplication::startDragDistance()) {
        m_mayMove = false;
        windowHandle()->startSystemMove();
    }
}

void PreviewWindow::mouseReleaseEvent(QMouseEvent * /*event*/)
{
    m_mayMove = false;
}

void PreviewWindow::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_mayMove = false;
    if (m_header->geometry().contains(event->pos())) {
        toggleFullScreen();
    }
}

void PreviewWindow::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    unsetCursor();
}

} // namespace tessaly
