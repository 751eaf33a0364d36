#include "preview/PdfView.hpp"

#include "app/controls/theme/Theme.hpp"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace tessaly {

namespace {

constexpr int gap = 14;
constexpr int maxPageWidth = 1100;
constexpr int maxPageHeight = 20'000; ///< a document may claim any
// 16 MB for each page that is kept.
constexpr double maxPagePixels = 4'000'000;
constexpr std::size_t maxKeptPages = 6;

} // namespace

PdfView::PdfView(QWidget *parent) : QAbstractScrollArea(parent)
{
    setFrameShape(NoFrame);
    // The window has the keys, and scrolls this view by its scroll bar.
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(tr("Document"));
}

void PdfView::show(const PreviewPdf &document)
{
    clear();
    // The sizes are known before any page is drawn, so the scroll bar is right from the start.
    m_sizes = document.pageSizes;
    verticalScrollBar()->setValue(0);
    layOut();
}

void PdfView::clear()
{
    m_sizes.clear();
    m_images.clear();
    m_asked.clear();
    layOut();
}

void PdfView::setPage(int page, const QImage &image)
{
    m_images[page] = image; // even a null one, or it would be asked for again and again
    viewport()->update();
}

void PdfView::layOut()
{
    m_places.clear();
    const int width = std::clamp(viewport()->width() - 2 * gap, 1, maxPageWidth);
    int top = gap;
    for (const QSizeF &size : m_sizes) {
        // A page of a size that makes no sense is laid out as a square.
        const double height = size.isEmpty() ? width : width * size.height() / size.width();
        const int pageHeight =
            static_cast<int>(std::clamp(height, 1.0, static_cast<double>(maxPageHeight)));
        m_places.emplace_back((viewport()->width() - width) / 2, top, width, pageHeight);
        top += pageHeight + gap;
    }
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(40);
    verticalScrollBar()->setRange(0, std::max(0, top - viewport()->height()));
    viewport()->update();
}

void PdfView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    layOut();
}

QSize PdfView::pixelsOf(const QRect &place) const
{
    const QSizeF size = QSizeF(place.size()) * devicePixelRatioF();
    // A page may be as long as maxPageHeight: fewer pixels then, scaled when it is painted.
    const double share = maxPagePixels / (size.width() * size.height());
    return (size * std::min(1.0, std::sqrt(share))).toSize().expandedTo(QSize(1, 1));
}

void PdfView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.fillRect(viewport()->rect(), theme::preview::page);
    const int offset = verticalScrollBar()->value();
    int firstSeen = -1;
    int lastSeen = -1;
    for (int page = 0; page < static_cast<int>(m_places.size()); ++page) {
        const QRect &laid = m_places[static_cast<std::size_t>(page)];
        const QRect place = laid.translated(0, -offset);
        // No search for the first visible one: the number of pages is limited.
        if (!place.intersects(viewport()->rect())) {
            continue;
        }
        firstSeen = firstSeen < 0 ? page : firstSeen;
        lastSeen = page;
        painter.fillRect(place, theme::preview::paper);
        const auto image = m_images.find(page);
        // Perhaps of an outdated size: scaled it looks better than a blank page until the right one
        // comes.
        if (image != m_images.end() && !image->second.isNull()) {
            painter.drawImage(place, image->second);
        }
        // Asked for while painting: only here it is known what is visible, and in which size.
        if (const QSize wanted = pixelsOf(laid); m_asked[page] != wanted) {
            m_asked[page] = wanted;
            Q_EMIT pageWanted(page, wanted);
        }
    }
    forgetPages(firstSeen, lastSeen);
}

void PdfView::forgetPages(int firstSeen, int lastSeen)
{
    // By distance and not by age: the user scrolls, and comes back to the neighbours.
    while (m_images.size() > maxKeptPages) {
        const int first = m_images.begin()->first;
        const int last = std::prev(m_images.end())->first;
        if (first >= firstSeen && last <= lastSeen) {
            return; // all are visible
        }
        const int farthest = firstSeen - first > last - lastSeen ? first : last;
        // So that the page is asked for again when it is scrolled into view.
        m_asked.erase(farthest);
        m_images.erase(farthest);
    }
}

} // namespace tessaly
