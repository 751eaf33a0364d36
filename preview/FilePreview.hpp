#pragma once

#include "preview/PreviewContent.hpp"

#include <QSize>
#include <QString>

#include <memory>
#include <stop_token>
#include <string>
#include <string_view>

namespace tessaly {

class DecoderProcess;
class DecoderSession;

/// How much of a text is shown: so many bytes,
inline constexpr qint64 previewTextByteCount = qint64{256} << 10U;

/// and so many lines: QTextDocument cannot handle as many blocks as line breaks fit into that.
inline constexpr qsizetype previewTextLineCount = 20'000;

/// The last part of a path (bytes) as a text that is fit to be shown.
[[nodiscard]] QString previewName(std::string_view path);

struct ReadPreview {
    LoadedPreview preview;
    /// For pages of a document or frames of an animation that are still to be decoded; else
    /// nullptr.
    std::shared_ptr<DecoderSession> session;
};

/// Reads the preview of the file at `path` (bytes). Its type is known by its content, or else by
/// its name. Images are no larger than `bounds` (pixels). Images and documents are decoded by a
/// child process. For every file there is a preview, at worst a card with its size and dates.
///
/// Threads: any but the main one, since it may take long. A stop ends it early where that is
///          possible.
[[nodiscard]] ReadPreview readPreview(const std::string &path, QSize bounds,
                                      const std::shared_ptr<DecoderProcess> &decoders,
                                      const std::stop_token &stop);

/// The text for a file whose decoder crashed or reached a resource limit.
[[nodiscard]] QString undecodedMessage();

} // namespace tessaly
