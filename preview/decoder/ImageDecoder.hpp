#pragma once

#include "preview/protocol/DecoderMessages.hpp"

#include <QImage>
#include <QSize>

#include <memory>

class QIODevice;
class QImageReader;

namespace tessaly {

struct DecodedImage {
    QImage image;
    QSize fullSize; ///< before it was scaled down, in pixels; for drawings their nominal size
    bool isMoving = false; ///< and small enough to be decoded frame by frame as it is shown
    DecoderProblem problem = DecoderProblem::none;
};

/// Decodes an image, turned upright and no larger than `bounds` (pixels). Takes at most about
/// 256 MB meanwhile. A drawing is none, whatever the file is called.
[[nodiscard]] DecodedImage decodeImage(QIODevice &device, QSize bounds);

/// Draws an SVG drawing so that it fills `bounds`. Nothing outside the file is looked at.
/// Requires: a QGuiApplication, which has the fonts.
[[nodiscard]] DecodedImage decodeSvg(QIODevice &device, QSize bounds);

/// The frames of an image that moves, one after the other and from the start again.
class ImageFrames {
public:
    /// `device` must outlive this.
    explicit ImageFrames(QIODevice &device);
    ~ImageFrames();
    Q_DISABLE_COPY_MOVE(ImageFrames)

    struct Frame {
        QImage image; ///< null when there is no further one
        int delayMs = 0;
    };
    [[nodiscard]] Frame next();

private:
    void restart();

    QIODevice &m_device;
    std::unique_ptr<QImageReader> m_reader;
};

} // namespace tessaly
