#pragma once

#include "preview/PreviewContent.hpp"

#include <QScrollArea>

class QFormLayout;
class QLabel;
class QPainter;

namespace tessaly {

class PaintedView;
class WrappingLabel;

/// What the file system tells about a file, for those that have no preview. In a small
/// window the icon is smaller or left out, and the rest scrolls.
class CardView final : public QScrollArea {
    Q_OBJECT

public:
    explicit CardView(QWidget *parent = nullptr);

    void show(const PreviewInfo &info, const QString &message);

    /// What the card says, line by line.
    [[nodiscard]] QString text() const;

private:
    void paintIcon(QPainter &painter) const;
    void addRow(const QString &label, const QString &value);

    PreviewInfo m_info;
    PaintedView *m_icon;
    WrappingLabel *m_name;
    QLabel *m_type;
    QLabel *m_message;
    QFormLayout *m_rows;
};

} // namespace tessaly
