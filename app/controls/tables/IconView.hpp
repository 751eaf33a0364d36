#pragma once

#include "app/controls/text/ClickableView.hpp"

#include <QIcon>

namespace tessaly {

/// An icon in the middle of its place, which may be clicked.
class IconView : public ClickableView {
    Q_OBJECT
    Q_PROPERTY(QIcon image READ image WRITE setImage)
    Q_PROPERTY(QSize imageSize READ imageSize WRITE setImageSize)

public:
    explicit IconView(QWidget *parent = nullptr);

    /// `name` is that of the image's file; an image with the name of the one before is not redrawn.
    void setImage(const QIcon &image, const QString &name);
    void setImage(const QIcon &image) { setImage(image, {}); }
    [[nodiscard]] QIcon image() const { return m_image; }
    [[nodiscard]] const QString &imageName() const noexcept { return m_imageName; }

    /// In points.
    [[nodiscard]] QSize imageSize() const noexcept { return m_imageSize; }
    void setImageSize(QSize size);

    [[nodiscard]] QSize sizeHint() const override { return m_imageSize; }
    [[nodiscard]] QSize minimumSizeHint() const override { return m_imageSize; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QIcon m_image;
    QString m_imageName;
    QSize m_imageSize{28, 28};
};

} // namespace tessaly
