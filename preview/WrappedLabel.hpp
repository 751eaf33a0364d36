#pragma once

#include <QLabel>
#include <QStringList>

namespace tessaly {

/// A centred text that wraps in the middle of a word where there is no other place for it, such as
/// a file's name. One that takes more than `maxLineCount` lines is elided in its middle, and has a
/// tooltip with all of it.
class WrappedLabel final : public QLabel {
    Q_OBJECT

public:
    static constexpr int maxLineCount = 4;

    explicit WrappedLabel(QWidget *parent = nullptr);

    /// What is shown of the text in this width, in pixels.
    [[nodiscard]] QStringList linesIn(int width) const;

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};

} // namespace tessaly
