#pragma once

#include <QByteArrayView>

#include <optional>

namespace tessaly {

/// How many of a file's first bytes matroskaDuration() needs at most.
inline constexpr qint64 matroskaHeadByteCount = qint64{64} << 10U;

/// The duration in milliseconds from the header of a Matroska file, such as WebM. Qt's player reads
/// those of single tracks only, which these files do not have. Nothing when the file is of another
/// format or damaged, or has no duration in these bytes.
[[nodiscard]] std::optional<qint64> matroskaDuration(QByteArrayView head);

} // namespace tessaly
