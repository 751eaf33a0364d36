#pragma once

#include "preview/PreviewContent.hpp"

#include <QAbstractScrollArea>
#include <QImage>

#include <map>
#include <vector>

namespace tessaly {

/// The pages of a document below one another. Pages are drawn when they are scrolled into view, and
/// only a few are kept.
class PdfView final : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit PdfView(QWidget *parent = nullptr);

    void show(const PreviewPdf &document);
    void clear();
    /// The answer to pageWanted(). An image of an outdated size is shown scaled until the right one
    /// comes.
    void setPage(int page, const QImage &image);

    /// Whether the page has been drawn.
    [[nodiscard]] bool hasPage(int page) const { return m_images.contains(page); }

Q_SIGNALS:
    /// A page is visible and not drawn yet in this size (pixels).
    void pageWanted(int page, QSize size);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void layOut();
    /// Drops pages that are out of view, the farthest first, until few are left.
    void forgetPages(int firstSeen, int lastSeen);
    [[nodiscard]] QSize pixelsOf(const QRect &place) const;

    std::vector<QSizeF> m_sizes;
    std::vector<QRect> m_places; ///< from the top of the first page
    std::map<int, QImage> m_images;
    std::map<int, QSize> m_asked; ///< the size that was asked for last
};

} // namespace tessaly
