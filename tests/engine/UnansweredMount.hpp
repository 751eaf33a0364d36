#pragma once

#include "engine/scan/FileDescriptor.hpp"

#include <optional>
#include <string>

namespace tessaly {

/// A mount of a server that does not answer: a thread that asks anything about the folder or its
/// content hangs in the kernel for as long as this lives, and then gets an error. Until its request
/// is taken it can be killed; from then on it cannot.
///
/// The mount is seen by the thread that makes it and by the threads and processes that this thread
/// starts, and by nobody else.
class UnansweredMount {
public:
    /// What is missing for there to be one; nothing when it can be.
    [[nodiscard]] static std::optional<std::string> missingRequirement();

    /// Mounts at a folder. Requires: no missingRequirement().
    explicit UnansweredMount(std::string path);
    ~UnansweredMount();
    UnansweredMount(const UnansweredMount &) = delete;
    UnansweredMount &operator=(const UnansweredMount &) = delete;

    /// Takes one request, as a server that hangs over it; waits until there is one. Call it once.
    void takeRequest() const;

private:
    const std::string m_path;
    scan::FileDescriptor m_server; ///< the server's end of FUSE
};

} // namespace tessaly
