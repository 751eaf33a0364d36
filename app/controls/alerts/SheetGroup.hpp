#pragma once

#include <QWidget>

namespace tessaly {

/// A box with round corners on a sheet, around controls that belong together.
class SheetGroup final : public QWidget {
    Q_OBJECT

public:
    explicit SheetGroup(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace tessaly
