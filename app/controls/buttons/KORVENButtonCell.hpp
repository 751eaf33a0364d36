#pragma once

#include <QPushButton>

namespace tessaly {

/// A push button of the style with a black title, on a face light enough to read it.
///
/// Threads: the main thread.
class KORVENButtonCell : public QPushButton {
    Q_OBJECT

public:
    explicit KORVENButtonCell(QWidget *parent = nullptr);
    explicit KORVENButtonCell(const QString &title, QWidget *parent = nullptr);

    /// Paints the title black from now on.
    void setTextColor();
};

} // namespace tessaly
