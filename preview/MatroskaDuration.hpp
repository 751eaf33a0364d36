#pragma once

#include <QByteArrayView>

#include <optional>

namespace tessaly {

/// How much of a file's beginning matroskaDuration() wants at most.
inline constexpr qint64 matroskaHeadByteCount = qint64{64} << 10U;

/// The duration in milliseconds that a Matroska file, such as WebM, tells in its header. Qt's
/// player knows only those of single tracks, which these files do not have. Nothing when the file
/// is of another format or damaged, tells none, or tells it further behind.
[[nodiscard]] std::optional<qint64> matroskaDuration(QByteArrayView head);

} // namespace tessaly
