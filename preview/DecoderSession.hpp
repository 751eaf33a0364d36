#pragma once

#include "preview/PreviewContent.hpp"
#include "preview/protocol/DecoderMessages.hpp"
#include "preview/protocol/MessageSocket.hpp"

#include <QImage>
#include <QSize>

#include <memory>
#include <optional>
#include <stop_token>

namespace tessaly {

class DecoderProcess;
class PreviewFile;
class SharedPixels;

/// A file and the decoder process that reads it, which is killed when this is destroyed.
///
/// Each call waits for the decoder's answer, until a stop is requested. A decoder that has ended
/// without an answer has crashed or reached a resource limit. It is replaced for the next call, but
/// only if it had answered one: so no file starts decoders for ever.
///
/// Threads: one at a time, and not the main one; it may be destroyed on any.
class DecoderSession {
public:
    DecoderSession(std::shared_ptr<DecoderProcess> process, std::shared_ptr<PreviewFile> file,
                   std::stop_token stop);
    ~DecoderSession();
    Q_DISABLE_COPY_MOVE(DecoderSession)

    /// The image or drawing, no larger than `bounds` (pixels), or why there is none. This and the
    /// next one: nothing when the decoder ended without an answer.
    struct Image {
        DecoderProblem problem = DecoderProblem::none;
        PreviewImage image;
    };
    [[nodiscard]] std::optional<Image> image(QSize bounds, bool isDrawing);

    /// The document, or why there is none.
    struct Document {
        DecoderProblem problem = DecoderProblem::none;
        PreviewPdf document;
    };
    [[nodiscard]] std::optional<Document> document();

    /// A page of the document in this size (pixels), on white. A null image when it cannot be
    /// drawn.
    [[nodiscard]] QImage page(int page, QSize size);

    /// The next frame of an image that moves. A null image when there is none.
    struct Frame {
        QImage image;
        int delayMs = 0; ///< between 20 ms and a minute
    };
    [[nodiscard]] Frame nextFrame(QSize size);

    /// Whether the last call got no answer, although no stop was requested.
    [[nodiscard]] bool hasFailed() const { return m_hasFailed && !m_stop.stop_requested(); }

private:
    std::optional<DecoderReply> ask(const DecoderRequest &request, const SharedPixels *pixels);
    std::optional<DecoderReply> exchange(const DecoderRequest &request, const SharedPixels *pixels);
    bool start(DecoderRequest::Kind kind);
    QImage imageOf(const DecoderRequest &request, std::optional<DecoderReply> &reply);

    const std::shared_ptr<DecoderProcess> m_process;
    const std::shared_ptr<PreviewFile> m_file;
    const std::stop_token m_stop;
    MessageSocket m_socket;
    bool m_mayStart = true;
    bool m_hasFailed = false;
};

} // namespace tessaly
