#pragma once

#include <array>
#include <cstdint>
#include <type_traits>

namespace tessaly {

/// The messages between the program and its decoders. Both are built together, so a message is a
/// structure as it lies in memory. One of another length is invalid.
///
/// The program has a socket to the server of the child program, and sends it a DecoderTask with the
/// file and one end of a new pair of sockets. The server forks a decoder, which has that file and
/// that socket and nothing else. From then on the program sends the decoder a DecoderRequest at a
/// time, and gets a DecoderReply. It trusts neither the pixels nor the numbers of a reply.
///
/// A decoder is killed when the program closes its socket, or shuts it down.

/// Comes with two descriptors: the file, and the decoder's socket.
struct DecoderTask {
    /// What the server gets ready before it forks the decoder.
    enum class Content : std::uint8_t { image, drawing, document };

    Content content = Content::image;
};

struct DecoderRequest {
    enum class Kind : std::uint8_t {
        image,    ///< width and height: the maximum; with pixels
        drawing,  ///< likewise
        frame,    ///< the next one of an image that moves; width and height: the image's; pixels
        document, ///< opens it; without pixels
        page,     ///< width and height: the page's, with pixels
    };

    Kind kind = Kind::image;
    std::int32_t page = 0;
    std::int32_t width = 0; ///< pixels
    std::int32_t height = 0;
};

enum class DecoderProblem : std::uint8_t {
    none,
    unreadable, ///< of no format that is understood, or damaged
    tooLarge,   ///< to be decoded in the memory and time that a preview may take
    locked,     ///< by a password
};

struct DecoderReply {
    /// Pages that have a place in a preview.
    static constexpr std::int32_t maxPageCount = 500;

    struct PageSize { ///< points
        double width = 0;
        double height = 0;
    };

    DecoderProblem problem = DecoderProblem::none;
    bool hasAlpha = false;
    bool isMoving = false;
    std::int32_t width = 0; ///< of the image in the pixels that came with the request
    std::int32_t height = 0;
    std::int32_t fullWidth = 0; ///< before the image was scaled down, or a drawing's nominal size
    std::int32_t fullHeight = 0;
    std::int32_t delayMs = 0; ///< for which a frame is shown
    std::int32_t pageCount = 0;
    std::array<PageSize, maxPageCount> pageSizes{}; ///< of the first pages
};

static_assert(std::is_trivially_copyable_v<DecoderTask>);
static_assert(std::is_trivially_copyable_v<DecoderRequest>);
static_assert(std::is_trivially_copyable_v<DecoderReply>);

} // namespace tessaly
