#pragma once

#include "platform/preview/PreviewContent.hpp"

#include <QBuffer>
#include <QMovie>
#include <QPixmap>
#include <QWidget>

#include <memory>

namespace tessaly {

/// An image as large as it fits, but no larger than it is.
class ImageView final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ImageView)

public:
    explicit ImageView(QWidget *parent = nullptr);
    ~ImageView() override;

    void show(const PreviewImage &image);
    void clear();

    [[nodiscard]] bool isMoving() const { return m_movie != nullptr; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRect place() const;

    PreviewImage m_image;
    QPixmap m_scaled; ///< for the place and the screen that it was drawn at last
    QBuffer m_movieBytes;
    std::unique_ptr<QMovie> m_movie;
};

} // namespace tessaly
