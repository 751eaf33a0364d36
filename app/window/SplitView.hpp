#pragma once

#include <QSplitter>

namespace tessaly {

/// Two views side by side with a line between them, which cannot be dragged. The first one keeps
/// the width that it was given when the window's changes.
class SplitView final : public QSplitter {
    Q_OBJECT

public:
    explicit SplitView(QWidget *parent = nullptr);

    /// Whether the subview resizes with the window: all do but the first.
    [[nodiscard]] bool shouldAdjustSizeOfSubview(const QWidget &subview) const;

    /// Puts the line between the views where the first one gets this width.
    void setPosition(int width);

protected:
    QSplitterHandle *createHandle() override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void layOut();

    int m_position = 0;
};

} // namespace tessaly
