#pragma once

#include "engine/FileDescriptor.hpp"
#include "tests/platform/linux/OwnMounts.hpp"

#include <future>
#include <string>
#include <thread>

namespace tessaly {

/// A mounted file system whose server takes requests and never answers them, as one on a machine
/// that is gone. A thread that uses it is stuck in the kernel, whatever happens to its process; its
/// call fails when this is destroyed.
///
/// Requires: hasOwnMounts(). This process must not use the folder itself.
class UnansweringMount {
public:
    /// `path`: of an existing folder.
    explicit UnansweringMount(const std::string &path);
    ~UnansweringMount();
    UnansweringMount(const UnansweringMount &) = delete;
    UnansweringMount &operator=(const UnansweringMount &) = delete;
    UnansweringMount(UnansweringMount &&) = delete;
    UnansweringMount &operator=(UnansweringMount &&) = delete;

    /// Waits until somebody is stuck.
    void waitUntilUsed() { m_used.get_future().wait(); }

private:
    void serve();

    FileDescriptor m_device;
    FileDescriptor m_stopping; ///< an eventfd
    ScopedMount m_mount;
    std::promise<void> m_used;
    std::thread m_server;
};

} // namespace tessaly
