#pragma once

#include "platform/VolumeService.hpp"

#include <QtGlobal>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace tessaly {

/// Asks file systems that may never answer, each in a child process of its own (ProbeProcess), so
/// that no thread of this process hangs there: a thread that does keeps the volume from being
/// unmounted, and cannot be killed.
///
/// Threads: any.
class FileSystemProbe {
public:
    /// `program`: see ProbeProcess.
    explicit FileSystemProbe(std::string program);
    ~FileSystemProbe();
    Q_DISABLE_COPY_MOVE(FileSystemProbe)

    /// What is known after a question: nothing inside when the space cannot be read; nothing at all
    /// when the question was stopped.
    using Reading = std::optional<std::optional<VolumeFigures>>;

    /// As long as it lives nobody asks at a path. May be destroyed on any thread, also after the
    /// probe.
    using Quiet = std::shared_ptr<void>;

    /// Asks for the space of the file system that holds the path, and waits for the answer.
    [[nodiscard]] Reading spaceAt(const std::string &path);

    /// Whether the file system answers within the time, be it with an error.
    [[nodiscard]] bool answersWithin(std::chrono::milliseconds timeout,
                                     const std::string &path) const;

    /// Kills the children that ask for the space at the path, and waits a moment for them to end;
    /// keeps others from asking.
    [[nodiscard]] Quiet silence(const std::string &path);

    /// Kills all children.
    void stopAll();

private:
    struct State;

    const std::string m_program;
    std::shared_ptr<State> m_state;
};

} // namespace tessaly
