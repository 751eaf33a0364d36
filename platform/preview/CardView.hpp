#pragma once

#include "platform/preview/PreviewContent.hpp"

#include <QWidget>

class QFormLayout;
class QLabel;

namespace tessaly {

/// What the file system tells about a file, for those that have no preview.
class CardView final : public QWidget {
    Q_OBJECT

public:
    explicit CardView(QWidget *parent = nullptr);

    void show(const PreviewInfo &info, const QString &message);

    /// What the card says, line by line.
    [[nodiscard]] QString text() const;

private:
    void addRow(const QString &label, const QString &value);

    QLabel *m_icon;
    QLabel *m_name;
    QLabel *m_type;
    QLabel *m_message;
    QFormLayout *m_rows;
};

/// The icon of a file's type: the theme's, or one that is drawn when it has none.
[[nodiscard]] QPixmap fileTypePixmap(const PreviewInfo &info, int side, qreal devicePixelRatio);

} // namespace tessaly
