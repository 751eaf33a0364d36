#pragma once

#include "engine/scan/FileDescriptor.hpp"

#include <QtGlobal>

#include <chrono>
#include <mutex>
#include <string>

#include <sys/types.h>

namespace tessaly {

/// Asks a file system that may never answer, by a child process: the program "file-system-probe".
/// If the file system hangs, only the child does, and it can be killed.
///
/// The kernel keeps a killed process until the file system has answered its request, and the mount
/// stays busy until then. Nothing here waits for such a process; it is reaped later.
///
/// Threads: stop() may be called on any thread. Otherwise one thread at a time.
class ProbeProcess {
public:
    // The questions: the program's first argument.
    static constexpr auto figures = "figures";
    static constexpr auto folders = "folders";

    /// The program of this installation. Requires a QCoreApplication.
    [[nodiscard]] static std::string programOfInstallation();

    /// Asks at a path. When the program cannot be started, the answer is empty, and the log
    /// "tessaly.platform.probe" says so.
    ProbeProcess(const std::string &program, const char *question, const std::string &path);
    /// Kills the child. Does not wait for its end.
    ~ProbeProcess();
    Q_DISABLE_COPY_MOVE(ProbeProcess)

    /// The descriptor to read the answer from; it ends when the child does.
    [[nodiscard]] int answer() const noexcept { return m_answer.number(); }

    /// Blocks until the answer ends, without a timeout.
    [[nodiscard]] std::string wholeAnswer() const;

    /// Blocks until there is something to read or the answer ends; false after `timeout`.
    [[nodiscard]] bool waitForAnswer(std::chrono::milliseconds timeout) const;

    /// Kills the child and ends the answer, so that a blocked reader returns. Blocks until the
    /// child has ended, for `timeout` at most.
    void stop(std::chrono::milliseconds timeout);

    /// Whether stop() was called, so that the answer may be cut short.
    [[nodiscard]] bool isStopped() const;

private:
    scan::FileDescriptor m_answer;
    pid_t m_process = -1; ///< not reaped before this is destroyed
    mutable std::mutex m_mutex;
    bool m_isStopped = false; ///< guarded by m_mutex
};

} // namespace tessaly
