#pragma once

#include "platform/preview/PreviewContent.hpp"

#include <QSize>

#include <cstdint>

namespace tessaly {

class PreviewFile;

enum class ImageProblem : std::uint8_t {
    none,
    unreadable, ///< of no format that is understood, or damaged
    tooLarge,   ///< to be decoded in the memory and time that a preview may take
};

struct DecodedImage {
    PreviewImage image;
    ImageProblem problem = ImageProblem::none;
};

/// Decodes an image, turned upright and no larger than `bounds` (pixels). Takes at most about
/// 256 MB meanwhile, for all threads together: large images are decoded one after the other.
[[nodiscard]] DecodedImage decodeImage(PreviewFile &file, QSize bounds);

/// Draws an SVG drawing so that it fills `bounds`. Nothing outside the file is looked at.
[[nodiscard]] DecodedImage decodeSvg(PreviewFile &file, QSize bounds);

} // namespace tessaly
