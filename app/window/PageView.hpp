#pragma once

#include <QStackedWidget>

namespace tessaly {

/// The pages of a window, one of which is shown. Its minimum size is that of the page that is
/// shown. QStackedWidget asks every page for its size and its height for each width, which would
/// lay out all texts of the program before the first page is seen.
class PageView final : public QStackedWidget {
    Q_OBJECT

public:
    explicit PageView(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return false; }
};

} // namespace tessaly
