#pragma once

#include <QStackedWidget>

namespace tessaly {

/// The pages of a window, one of which is shown. It takes the size that it is given: only the page
/// that is shown is asked for the least of it. Qt asks all of them, and how high each would be at
/// which width, for which all texts of the program are laid out before the first is seen.
class PageView final : public QStackedWidget {
    Q_OBJECT

public:
    explicit PageView(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return false; }
};

} // namespace tessaly
