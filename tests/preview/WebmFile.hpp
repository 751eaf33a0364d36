#pragma once

#include <QByteArray>
#include <QColor>
#include <QSize>

#include <optional>

namespace tessaly {

/// A WebM video of so many pictures of one colour, 10 a second. Without a duration it does not tell
/// how long it is, as programs write it that record what is happening.
[[nodiscard]] QByteArray webmBytes(QSize size, QColor color, int pictureCount,
                                   std::optional<double> durationMs = std::nullopt);

} // namespace tessaly
