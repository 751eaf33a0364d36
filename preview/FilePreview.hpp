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

/// The bytes of a text that are shown.
inline constexpr qint64 previewTextByteCount = qint64{256} << 10U;

/// And the lines, of which a text document cannot hold as many at once.
inline constexpr qsizetype previewTextLineCount = 20'000;

/// The last part of a path (bytes) as a text that is fit to be shown.
[[nodiscard]] QString previewName(std::string_view path);

struct ReadPreview {
    LoadedPreview preview;
    /// Has what is still to be decoded: the pages of a document, the frames of an image that moves.
    std::shared_ptr<DecoderSession> session;
};

/// Reads what is to be shown of the file at `path` (bytes): by its content where that tells, or
/// else by its name. Images are no larger than `bounds` (pixels). Images and documents are decoded
/// by a child of the program. Whatever the file is, there is an answer, at worst a card with what
/// the file system tells.
///
/// Threads: any, and not the main one: it may take long. A stop ends it as soon as it can be ended.
[[nodiscard]] ReadPreview readPreview(const std::string &path, QSize bounds,
                                      const std::shared_ptr<DecoderProcess> &decoders,
                                      const std::stop_token &stop);

/// What is said about a file that its decoder came to no end with.
[[nodiscard]] QString undecodedMessage();

} // namespace tessaly
