#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>

class QIODevice;

namespace tessaly {

struct FilteredSvg {
    QByteArray source;
    std::uint64_t work; ///< elements that drawing it comes to; long ones count more than once
};

/// A drawing (SVG, compressed by gzip or not) made safe to be drawn: an unpacked copy that refers
/// to nothing outside itself, neither files nor addresses, with the small images that lie inside.
///
/// Nothing when it is not well-formed, or would take too long to draw: too many elements once all
/// its references to its own parts are followed, one that leads back to itself, too deeply nested,
/// or more than 8 MB, unpacked or not.
[[nodiscard]] std::optional<FilteredSvg> filteredSvg(QIODevice &device);

} // namespace tessaly
