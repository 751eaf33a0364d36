#pragma once

#include "platform/preview/PreviewContent.hpp"

#include <QSize>
#include <QString>

#include <stop_token>
#include <string>
#include <string_view>

namespace tessaly {

/// The bytes of a text that are shown.
inline constexpr qint64 previewTextByteCount = qint64{256} << 10U;

/// And the lines, of which a text document cannot hold as many at once.
inline constexpr qsizetype previewTextLineCount = 20'000;

/// The last part of a path (bytes) as a text that is fit to be shown.
[[nodiscard]] QString previewName(std::string_view path);

/// Reads what is to be shown of the file at `path` (bytes): by its content where that tells, or
/// else by its name. Images are no larger than `bounds` (pixels). Whatever the file is, there is an
/// answer, at worst a card with what the file system tells.
///
/// Threads: any, and not the main one: it may take long. A stop ends it as soon as it can be ended.
[[nodiscard]] LoadedPreview readPreview(const std::string &path, QSize bounds,
                                        std::stop_token stop);

} // namespace tessaly
