#pragma once

#include "engine/scan/FileDescriptor.hpp"

#include <QtGlobal>

#include <chrono>
#include <mutex>
#include <string>

#include <sys/types.h>

namespace tessaly {

/// A question to a file system that may never answer, asked by a child process: the program
/// "file-system-probe". If the file system hangs, only the child does, and it can be killed.
///
/// The kernel keeps a killed process for as long as a file system works on its request, and the
/// mount is busy as long. Nothing here waits for such a process; it is reaped later.
///
/// Threads: stop() may be called on any thread. Otherwise one thread at a time.
class ProbeProcess {
public:
    /// What is asked; the program's first argument.
    static constexpr auto figures = "figures";
    static constexpr auto folders = "folders";

    /// The program of this installation. Requires a QCoreApplication.
    [[nodiscard]] static std::string programOfInstallation();

    /// Asks at a path. A program that cannot be started leaves an empty answer, and a line in the
    /// log "tessaly.platform.probe".
    ProbeProcess(const std::string &program, const char *question, const std::string &path);
    /// Kills the child. Does not wait for its end.
    ~ProbeProcess();
    Q_DISABLE_COPY_MOVE(ProbeProcess)

    /// The answer can be read here, as far as it has come; it ends when the child does.
    [[nodiscard]] int answer() const noexcept { return m_answer.number(); }

    /// Reads the answer to its end, however long that takes.
    [[nodiscard]] std::string wholeAnswer() const;

    /// Waits until there is something to read or the answer ends; false when it takes longer.
    [[nodiscard]] bool waitForAnswer(std::chrono::milliseconds timeout) const;

    /// Kills the child and ends the answer, so that nobody reads any longer. Waits for the child's
    /// end, but no longer than `timeout`.
    void stop(std::chrono::milliseconds timeout);

    /// Whether stop() was called, so that the answer may be cut short.
    [[nodiscard]] bool isStopped() const;

private:
    scan::FileDescriptor m_answer;
    pid_t m_process = -1; ///< not reaped before this is destroyed
    mutable std::mutex m_mutex;
    bool m_isStopped = false;
};

} // namespace tessaly
