#pragma once

#include "preview/PreviewContent.hpp"

#include <QPixmap>
#include <QTimer>
#include <QWidget>

namespace tessaly {

/// An image as large as fits, but no larger than it is. An animation gets its frames one by one:
/// each is asked for when the one before has been shown for its time.
class ImageView final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ImageView)

public:
    explicit ImageView(QWidget *parent = nullptr);
    ~ImageView() override;

    void show(const PreviewImage &image);
    void clear();
    /// The answer to frameWanted(): the next frame, and for how long it is shown.
    void setFrame(const QImage &image, int delayMs);

    [[nodiscard]] bool isMoving() const { return m_image.isMoving; }

Q_SIGNALS:
    void frameWanted();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRect place() const;

    PreviewImage m_image;
    QPixmap m_scaled; ///< for the size and the screen that it was last drawn at
    QTimer m_frameTimer;
};

} // namespace tessaly
