#include "preview/decoder/Decoder.hpp"

#include "preview/protocol/SharedPixels.hpp"

#include <QGuiApplication>
#include <QPainter>

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

namespace tessaly {

namespace {

using Kind = DecoderRequest::Kind;

DecoderReply problem(DecoderProblem what)
{
    DecoderReply reply;
    reply.problem = what;
    return reply;
}

/// Where an image of this size goes; a null image when it is larger than was asked for.
QImage canvasOf(QSize size, bool hasAlpha, const DecoderRequest &request,
                const scan::FileDescriptor &pixels)
{
    // The memory has been allocated for the requested size, and its length is sealed.
    const bool fits = size.width() <= request.width && size.height() <= request.height;
    return fits && pixels.isOpen() && !size.isEmpty() ? SharedPixels::canvas(pixels, size, hasAlpha)
                                                      : QImage();
}

/// The reply with an image, which is put into the pixels.
DecoderReply withImage(DecoderReply reply, const QImage &image, const DecoderRequest &request,
                       const scan::FileDescriptor &pixels)
{
    QImage canvas = canvasOf(image.size(), image.hasAlphaChannel(), request, pixels);
    if (canvas.isNull()) {
        return problem(DecoderProblem::unreadable);
    }
    QPainter painter(&canvas);
    // Copies transparent pixels, too, instead of blending them with what is there.
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    // QPainter converts the format, as decoders return any.
    painter.drawImage(0, 0, image);
    reply.width = image.width();
    reply.height = image.height();
    reply.hasAlpha = image.hasAlphaChannel();
    return reply;
}

DecoderReply replyOf(const DecodedImage &decoded, const DecoderRequest &request,
                     const scan::FileDescriptor &pixels)
{
    if (decoded.problem != DecoderProblem::none) {
        return problem(decoded.problem);
    }
    DecoderReply reply;
    reply.fullWidth = decoded.fullSize.width();
    reply.fullHeight = decoded.fullSize.height();
    reply.isMoving = decoded.isMoving;
    return withImage(reply, decoded.image, request, pixels);
}

} // namespace

Decoder::Decoder(scan::FileDescriptor file, MessageSocket socket)
    : m_descriptor(std::move(file)), m_socket(std::move(socket))
{
    // By the number: the sandbox does not let a decoder open a path of the user's.
    m_file.open(m_descriptor.number(), QIODevice::ReadOnly);
}

void Decoder::run()
{
    for (;;) {
        std::vector<scan::FileDescriptor> descriptors;
        const auto request = m_socket.receive<DecoderRequest>(&descriptors);
        // The program has closed its end, or sends what this decoder does not understand.
        if (!request || descriptors.size() > 1) {
            return;
        }
        const scan::FileDescriptor pixels =
            descriptors.empty() ? scan::FileDescriptor() : std::move(descriptors.front());
        DecoderReply reply;
        try {
            reply = answer(*request, pixels);
        } catch (const std::bad_alloc &) { // of a valid file, too: the address space is limited
            reply = problem(DecoderProblem::tooLarge);
        }
        if (!m_socket.send(reply)) {
            return;
        }
    }
}

DecoderReply Decoder::answer(const DecoderRequest &request, const scan::FileDescriptor &pixels)
{
    const QSize bounds(request.width, request.height);
    if (request.kind == Kind::image || request.kind == Kind::drawing) {
        m_file.seek(0); // the program has looked at the file before
    }
    switch (request.kind) {
    case Kind::image:
        return replyOf(decodeImage(m_file, bounds), request, pixels);
    case Kind::drawing:
        // Text cannot be drawn without.
        return QCoreApplication::instance() == nullptr
                   ? problem(DecoderProblem::unreadable)
                   : replyOf(decodeSvg(m_file, bounds), request, pixels);
    case Kind::frame:
        return frame(request, pixels);
    case Kind::document:
        return openDocument();
    case Kind::page:
        return page(request, pixels);
    }
    return problem(DecoderProblem::unreadable);
}

DecoderReply Decoder::openDocument()
{
    m_file.seek(0);
    if (const DecoderProblem found = m_document.open(m_file); found != DecoderProblem::none) {
        return problem(found);
    }
    DecoderReply reply;
    // The true number is told, the sizes only of as many pages as a message has room for.
    reply.pageCount = m_document.pageCount();
    const int shown = std::min(reply.pageCount, DecoderReply::maxPageCount);
    for (int page = 0; page < shown; ++page) {
        const QSizeF size = m_document.pageSize(page);
        reply.pageSizes[static_cast<std::size_t>(page)] = {size.width(), size.height()};
    }
    return reply;
}

DecoderReply Decoder::page(const DecoderRequest &request, const scan::FileDescriptor &pixels) const
{
    const QSize size(request.width, request.height);
    QImage paper = canvasOf(size, false, request, pixels);
    if (!m_document.drawPage(request.page, paper)) {
        return problem(DecoderProblem::unreadable);
    }
    DecoderReply reply;
    reply.width = size.width();
    reply.height = size.height();
    return reply;
}

DecoderReply Decoder::frame(const DecoderRequest &request, const scan::FileDescriptor &pixels)
{
    // Kept between requests, since the formats that move are decoded from one frame to the next.
    if (!m_frames) {
        m_frames = std::make_unique<ImageFrames>(m_file);
    }
    const ImageFrames::Frame next = m_frames->next();
    DecoderReply reply;
    reply.delayMs = next.delayMs;
    return withImage(reply, next.image, request, pixels);
}

} // namespace tessaly
