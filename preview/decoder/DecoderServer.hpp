#pragma once

#include "engine/scan/FileDescriptor.hpp"
#include "preview/decoder/Sandbox.hpp"
#include "preview/protocol/MessageSocket.hpp"

#include <QBuffer>

#include <memory>
#include <optional>
#include <vector>

#include <sys/types.h>

class QGuiApplication;

namespace tessaly {

class PdfReader;

/// Forks a decoder for each file that the program asks for, and kills it when the program closes
/// its end of that decoder's socket. So decoders start at once: libraries, plugins and fonts are
/// loaded here, by a process that never reads a file of the user's.
///
/// Threads: the main thread, which stays the process's only one.
class DecoderServer {
public:
    /// `socket` leads to the program.
    explicit DecoderServer(MessageSocket socket);
    /// Kills the decoders that still run.
    ~DecoderServer();
    Q_DISABLE_COPY_MOVE(DecoderServer)

    /// Returns when the program has closed its end.
    void run();

private:
    struct Child {
        pid_t process;
        MessageSocket socket; ///< tells when the program has closed its end
    };

    /// False when the program is no longer there.
    bool takeTask();
    void startDecoder(scan::FileDescriptor file, MessageSocket socket);
    [[noreturn]] void becomeDecoder(scan::FileDescriptor file, MessageSocket socket);
    void removeEndedChildren();
    // What forked decoders find loaded; each is done once.
    void loadImageFormats();
    void loadFonts();
    void loadDocuments();
    /// Loads the next of them.
    void loadMore();
    /// After how many ms without a request loadMore() is due; -1 when all is loaded.
    [[nodiscard]] int msUntilLoading() const;

    MessageSocket m_socket;
    scan::FileDescriptor m_childSignals;
    std::vector<Child> m_children;
    std::optional<Sandbox> m_sandbox;               ///< of the decoders
    std::unique_ptr<QGuiApplication> m_application; ///< has the fonts
    QBuffer m_sample;
    std::unique_ptr<PdfReader> m_document; ///< keeps the library for documents ready
    bool m_hasImageFormats = false;
    bool m_hasStarted = false; ///< a decoder
};

} // namespace tessaly
