#include "app/window/SplitView.hpp"

#include "app/controls/theme/Theme.hpp"

#include <QMouseEvent>
#include <QPainter>

namespace tessaly {

namespace {

/// The line, which cannot be dragged.
/// QSplitter has no switch for that. The handle ignores the mouse, so the cursor must not promise a
/// drag either.
class Divider final : public QSplitterHandle {
public:
    explicit Divider(QSplitter *parent) : QSplitterHandle(Qt::Horizontal, parent) { unsetCursor(); }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter(this).fillRect(rect(), theme::separator);
    }
    void mousePressEvent(QMouseEvent *event) override { event->ignore(); }
    void mouseMoveEvent(QMouseEvent *event) override { event->ignore(); }
    void mouseReleaseEvent(QMouseEvent *event) override { event->ignore(); }
};

} // namespace

SplitView::SplitView(QWidget *parent) : QSplitter(Qt::Horizontal, parent)
{
    setHandleWidth(1);
    // setSizes() would otherwise collapse a view that gets less than its minimum.
    setChildrenCollapsible(false);
}

bool SplitView::shouldAdjustSizeOfSubview(const QWidget &subview) const
{
    return widget(0) != &subview;
}

void SplitView::setPosition(int width)
{
    m_position = width;
    layOut();
}

void SplitView::layOut()
{
    QList<int> sizes;
    for (int i = 0; i < count(); ++i) {
        sizes.append(shouldAdjustSizeOfSubview(*widget(i)) ? width() - m_position - handleWidth()
                                                           : m_position);
    }
    // On each resize: QSplitter would share out the difference among the views.
    setSizes(sizes);
}

void SplitView::resizeEvent(QResizeEvent *event)
{
    QSplitter::resizeEvent(event);
    layOut();
}

QSplitterHandle *SplitView::createHandle()
{
    return new Divider(this);
}

} // namespace tessaly
