#pragma once

#include <QByteArray>

#include <optional>

class QIODevice;

namespace tessaly {

/// The content of a file that may be compressed by gzip: unpacked then, or as it is. Nothing when
/// it is longer than `maxByteCount`, unpacked or not, or damaged.
[[nodiscard]] std::optional<QByteArray> unpackedFile(QIODevice &device, qint64 maxByteCount);

} // namespace tessaly
