#pragma once

#include "engine/FileDescriptor.hpp"

#include <optional>
#include <string>

namespace tessaly {

/// A mount of a server that does not answer: a thread that asks anything about the folder or its
/// content hangs in the kernel for as long as this lives, and then gets an error.
///
/// The mount is seen by this thread and those that it starts, and by nobody else.
class UnansweredMount {
public:
    /// What is missing for there to be one; nothing when it can be.
    [[nodiscard]] static std::optional<std::string> missingRequirement();

    /// Mounts at a folder. Requires: no missingRequirement().
    explicit UnansweredMount(std::string path);
    ~UnansweredMount();
    UnansweredMount(const UnansweredMount &) = delete;
    UnansweredMount &operator=(const UnansweredMount &) = delete;
    UnansweredMount(UnansweredMount &&) = delete;
    UnansweredMount &operator=(UnansweredMount &&) = delete;

private:
    const std::string m_path;
    FileDescriptor m_server; ///< the server's end of FUSE, from which nobody reads
};

} // namespace tessaly
