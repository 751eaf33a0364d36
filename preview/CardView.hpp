#pragma once

#include "preview/PreviewContent.hpp"

#include <QScrollArea>

class QFormLayout;
class QLabel;

namespace tessaly {

class WrappedLabel;

/// What the file system tells about a file, for those that have no preview. Where there is little
/// room the icon is smaller or left out; what still does not fit can be scrolled to.
class CardView final : public QScrollArea {
    Q_OBJECT

public:
    explicit CardView(QWidget *parent = nullptr);

    void show(const PreviewInfo &info, const QString &message);

    /// What the card says, line by line.
    [[nodiscard]] QString text() const;

private:
    class TypeIcon;

    void addRow(const QString &label, const QString &value);

    TypeIcon *m_icon;
    WrappedLabel *m_name;
    QLabel *m_type;
    QLabel *m_message;
    QFormLayout *m_rows;
};

/// The icon of a file's type: the theme's, or one that is drawn when it has none.
[[nodiscard]] QPixmap fileTypePixmap(const PreviewInfo &info, int side, qreal devicePixelRatio);

} // namespace tessaly
