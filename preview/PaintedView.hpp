#pragma once

#include <QPainter>
#include <QWidget>

#include <functional>
#include <utility>

namespace tessaly {

/// A part of a view that is painted by a function of the view, which outlives it.
class PaintedView final : public QWidget {
public:
    /// The painter is that of the widget, for the length of the call.
    using Paint = std::function<void(QPainter &painter)>;

    explicit PaintedView(Paint paint, QWidget *parent = nullptr)
        : QWidget(parent), m_paint(std::move(paint))
    {
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        m_paint(painter);
    }

private:
    const Paint m_paint;
};

} // namespace tessaly
