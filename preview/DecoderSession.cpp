#include "preview/DecoderSession.hpp"

#include "preview/DecoderProcess.hpp"
#include "preview/PreviewFile.hpp"
#include "preview/protocol/SharedPixels.hpp"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace tessaly {

namespace {

using RequestKind = DecoderRequest::Kind;

DecoderRequest requestFor(RequestKind kind, QSize size)
{
    DecoderRequest request;
    request.kind = kind;
    request.width = size.width();
    request.height = size.height();
    return request;
}

DecoderTask taskFor(RequestKind kind)
{
    switch (kind) {
    case RequestKind::drawing:
        return {DecoderTask::Content::drawing};
    case RequestKind::document:
    case RequestKind::page:
        return {DecoderTask::Content::document};
    default:
        // A frame is only asked for after an image, and with the same libraries.
        return {DecoderTask::Content::image};
    }
}

/// A file may have taken the decoder over, so its numbers may be any.
QSizeF pageSizeOf(const DecoderReply::PageSize &size)
{
    const auto isLength = [](double value) { return std::isfinite(value) && value > 0; };
    return isLength(size.width) && isLength(size.height) ? QSizeF(size.width, size.height)
                                                         : QSizeF();
}

} // namespace

DecoderSession::DecoderSession(std::shared_ptr<DecoderProcess> process,
                               std::shared_ptr<PreviewFile> file, std::stop_token stop)
    : m_process(std::move(process)), m_file(std::move(file)), m_stop(std::move(stop))
{
}

DecoderSession::~DecoderSession() = default;

bool DecoderSession::start(RequestKind kind)
{
    // Allowed again after the first answer. A file that crashes every decoder gets one, not one for
    // each page.
    if (!std::exchange(m_mayStart, false) || m_stop.stop_requested()) {
        return false;
    }
    auto socket = m_process->startDecoder(m_file->handle(), taskFor(kind));
    if (!socket) {
        return false;
    }
    m_socket = std::move(*socket);
    // Only pages depend on an earlier request. Frames start over at the first one.
    if (kind != RequestKind::page) {
        return true;
    }
    // The decoder before had the document open; this one does not.
    const auto reopened = exchange(requestFor(RequestKind::document, {}), nullptr);
    return reopened && reopened->problem == DecoderProblem::none;
}

std::optional<DecoderReply> DecoderSession::exchange(const DecoderRequest &request,
                                                     const SharedPixels *pixels)
{
    // Ends receive() at once. The server sees the closed socket, and kills the decoder.
    // shutdown() and not close(): another thread may be inside of recvmsg(), and a closed number
    // could be given to another file.
    const std::stop_callback stopping(m_stop, [this] { m_socket.shutDown(); });
    std::vector<int> descriptors;
    if (pixels != nullptr) {
        // The decoder gets memory for exactly this answer, and cannot write into that of another
        // one.
        descriptors.push_back(pixels->descriptor());
    }
    return m_socket.send(request, descriptors) ? m_socket.receive<DecoderReply>() : std::nullopt;
}

std::optional<DecoderReply> DecoderSession::ask(const DecoderRequest &request,
                                                const SharedPixels *pixels)
{
    std::optional<DecoderReply> reply;
    if (m_socket.isOpen() || start(request.kind)) {
        reply = exchange(request, pixels);
    }
    m_hasFailed = !reply;
    if (reply) {
        m_mayStart = true; // this decoder works, so one in its place may be started
    } else {
        // The server kills a decoder whose socket is closed. One that hangs would live until its
        // time limit.
        m_socket.close();
    }
    return reply;
}

/// The image of the reply to a request for one; the reply is reset when there was none.
QImage DecoderSession::imageOf(const DecoderRequest &request, std::optional<DecoderReply> &reply)
{
    // Allocated on this side: so the size is ours, whatever the decoder says.
    const auto pixels = SharedPixels::make({request.width, request.height});
    if (!pixels) {
        // As if the decoder had said so: without memory there is nothing to ask it for.
        reply = DecoderReply();
        reply->problem = DecoderProblem::tooLarge;
        return {};
    }
    reply = ask(request, &*pixels);
    return reply && reply->problem == DecoderProblem::none
               ? pixels->image({reply->width, reply->height}, reply->hasAlpha)
               : QImage();
}

std::optional<DecoderSession::Image> DecoderSession::image(QSize bounds, bool isDrawing)
{
    std::optional<DecoderReply> reply;
    const QImage image =
        imageOf(requestFor(isDrawing ? RequestKind::drawing : RequestKind::image, bounds), reply);
    if (!reply) {
        return std::nullopt;
    }
    if (image.isNull()) {
        return Image{reply->problem == DecoderProblem::tooLarge ? DecoderProblem::tooLarge
                                                                : DecoderProblem::unreadable,
                     {}};
    }
    const QSize fullSize = QSize(reply->fullWidth, reply->fullHeight);
    return Image{DecoderProblem::none,
                 {image, fullSize.isEmpty() ? image.size() : fullSize, isDrawing, reply->isMoving}};
}

std::optional<DecoderSession::Document> DecoderSession::document()
{
    const auto reply = ask(requestFor(RequestKind::document, {}), nullptr);
    if (!reply) {
        return std::nullopt;
    }
    if (reply->problem == DecoderProblem::locked) {
        return Document{DecoderProblem::locked, {}};
    }
    if (reply->problem != DecoderProblem::none || reply->pageCount <= 0) {
        return Document{DecoderProblem::unreadable, {}};
    }
    Document opened;
    opened.document.pageCount = reply->pageCount;
    const int shown = std::min(reply->pageCount, DecoderReply::maxPageCount); // the array's size
    for (int page = 0; page < shown; ++page) {
        opened.document.pageSizes.push_back(
            pageSizeOf(reply->pageSizes[static_cast<std::size_t>(page)]));
    }
    return opened;
}

QImage DecoderSession::page(int page, QSize size)
{
    DecoderRequest request = requestFor(RequestKind::page, size);
    request.page = page;
    std::optional<DecoderReply> reply;
    return imageOf(request, reply);
}

DecoderSession::Frame DecoderSession::nextFrame(QSize size)
{
    // Files with a delay of 0 are common, and a decoder may send any number.
    constexpr int minDelayMs = 20;
    constexpr int maxDelayMs = 60'000;
    std::optional<DecoderReply> reply;
    Frame frame;
    frame.image = imageOf(requestFor(RequestKind::frame, size), reply);
    frame.delayMs = reply ? std::clamp(int{reply->delayMs}, minDelayMs, maxDelayMs) : 0;
    return frame;
}

} // namespace tessaly
