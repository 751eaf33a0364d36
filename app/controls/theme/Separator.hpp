#pragma once

#include <QWidget>

namespace tessaly {

/// A line between parts of a screen.
class Separator final : public QWidget {
    Q_OBJECT

public:
    explicit Separator(QWidget *parent = nullptr);
};

} // namespace tessaly
