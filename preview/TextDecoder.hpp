#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace tessaly {

/// The first bytes of a file as a text: by their byte order mark, or as UTF-8, as UTF-16, or in the
/// end as Latin-1. Nothing when they look like binary data. With `isCut` the bytes may end within a
/// character, which is dropped. Line ends become "\n".
[[nodiscard]] std::optional<QString> decodeText(QByteArrayView bytes, bool isCut);

} // namespace tessaly
