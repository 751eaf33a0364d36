#pragma once

#include "preview/protocol/DecoderMessages.hpp"
#include "preview/protocol/MessageSocket.hpp"

#include <QtGlobal>

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tessaly {

/// The child program that decodes files: the server of it, which starts a decoder for each file.
///
/// It is started with the first file, or before, and again if it has ended.
///
/// Threads: any; it is made on the main thread, which alone may change the environment. What the
///          program gets of that is copied then.
/// Errors:  a program that cannot be started is logged, once.
class DecoderProcess {
public:
    explicit DecoderProcess(std::string programPath = usualProgramPath());
    /// Ends the program, and with it all decoders.
    ~DecoderProcess();
    Q_DISABLE_COPY_MOVE(DecoderProcess)

    /// "preview-decoder" in the folder of the module or program that this code is part of.
    [[nodiscard]] static std::string usualProgramPath();

    /// Starts the program, unless it runs.
    void start();

    /// Has a decoder started for an open file, and returns the socket to it (see DecoderMessages).
    /// Nothing when there is no program.
    [[nodiscard]] std::optional<MessageSocket> startDecoder(int file, DecoderTask task);

private:
    bool isStarted(); // NOLINT(readability-make-member-function-const): starts it
    void end();

    const std::string m_programPath;
    const std::vector<std::string> m_environment; ///< of the program
    std::mutex m_mutex;
    MessageSocket m_socket;   ///< guarded by m_mutex
    pid_t m_process = -1;     ///< guarded by m_mutex
    bool m_hasLogged = false; ///< guarded by m_mutex
};

} // namespace tessaly
