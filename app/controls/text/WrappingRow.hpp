#pragma once

#include <QWidget>

namespace tessaly {

/// Shows its child widgets one after the other, in as many lines as its width takes. Each has the
/// size of its hint. Children are laid out in the order in which they were added.
class WrappingRow final : public QWidget {
    Q_OBJECT

public:
    explicit WrappingRow(QWidget *parent = nullptr);

    /// All in one line.
    [[nodiscard]] QSize sizeHint() const override;
    /// One a line.
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Lays the children out if asked to; the height of all lines.
    int layOut(int width, bool movesChildren) const;
};

} // namespace tessaly
