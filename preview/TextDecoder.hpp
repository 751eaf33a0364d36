#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace tessaly {

/// The text that these bytes are, the first of a file, or nothing when they are none: by their byte
/// order mark, or as UTF-8, as UTF-16, or in the end as Latin-1. A character that `isCut` has left
/// incomplete at the end is dropped; line ends become "\n".
[[nodiscard]] std::optional<QString> decodeText(QByteArrayView bytes, bool isCut);

} // namespace tessaly
