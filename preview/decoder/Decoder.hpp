#pragma once

#include "engine/scan/FileDescriptor.hpp"
#include "preview/decoder/ImageDecoder.hpp"
#include "preview/decoder/PdfReader.hpp"
#include "preview/protocol/DecoderMessages.hpp"
#include "preview/protocol/MessageSocket.hpp"

#include <QFile>

#include <memory>

namespace tessaly {

/// Answers the program's requests about one file, one after the other (see DecoderMessages).
///
/// Threads: the main thread of a process of its own.
class Decoder {
public:
    Decoder(scan::FileDescriptor file, MessageSocket socket);

    /// Returns once the program has closed its end, or sent what is no request.
    void run();

private:
    DecoderReply answer(const DecoderRequest &request, const scan::FileDescriptor &pixels);
    DecoderReply openDocument();
    DecoderReply page(const DecoderRequest &request, const scan::FileDescriptor &pixels) const;
    DecoderReply frame(const DecoderRequest &request, const scan::FileDescriptor &pixels);

    scan::FileDescriptor m_descriptor;
    MessageSocket m_socket;
    QFile m_file;
    PdfReader m_document; ///< reads from the file, and so do the frames
    std::unique_ptr<ImageFrames> m_frames;
};

} // namespace tessaly
