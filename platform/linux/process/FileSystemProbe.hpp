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

    /// No figures when the space cannot be read; nothing when the question was stopped.
    using Reading = std::optional<std::optional<VolumeFigures>>;

    /// While one exists, nothing asks at its path. May be destroyed on any thread, and after the
    /// probe.
    using Quiet = std::shared_ptr<void>;

    /// Asks for the space of the file system that holds the path. Blocks until it answers.
    [[nodiscard]] Reading spaceAt(const std::string &path);

    /// Whether the file system answers within the time; an error is an answer, too.
    [[nodiscard]] bool answersWithin(std::chrono::milliseconds timeout,
                                     const std::string &path) const;

    /// Kills the children that ask for the space at the path, blocks for a moment until they have
    /// ended, and lets no others ask.
    [[nodiscard]] Quiet silence(const std::string &path);

    /// Kills all children.
    void stopAll();

private:
    struct State;

    const std::string m_program;
    std::shared_ptr<State> m_state;
};

} // namespace tessaly
