#pragma once

#include <QLabel>

namespace tessaly {

/// A plain text over several lines. Unlike a QLabel it breaks a word that has no room in a line, as
/// a file name may be. A text that takes too many lines is elided in its middle, and has a tooltip
/// with all of it. text() is the whole text.
class WrappingLabel final : public QLabel {
    Q_OBJECT

public:
    explicit WrappingLabel(QWidget *parent = nullptr);

    /// 8 at first; at least 2.
    void setMaxLineCount(int count);

    /// The lines that are shown in a label of this width, line breaks between them.
    [[nodiscard]] QString linesIn(int width) const;

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int m_maxLineCount = 8;
};

} // namespace tessaly
