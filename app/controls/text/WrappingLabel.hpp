#pragma once

#include <QLabel>

namespace tessaly {

/// A plain text over several lines. Other than a QLabel it breaks a word that has no room in a
/// line, as file names may not; what takes too many lines is shortened in the middle. text() is the
/// whole text.
class WrappingLabel final : public QLabel {
    Q_OBJECT

public:
    explicit WrappingLabel(QWidget *parent = nullptr);

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace tessaly
