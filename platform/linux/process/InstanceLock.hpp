#pragma once

#include "engine/scan/FileDescriptor.hpp"

#include <cstdint>
#include <string>

namespace tessaly {

/// Marks a folder as used by this process, by a lock on a file in it. The lock ends with the
/// process, however that ends; the empty file stays.
///
/// Threads: one.
class InstanceLock {
public:
    enum class State : std::uint8_t {
        taken,     ///< it is ours
        refused,   ///< another process has it
        impossible ///< there is no such file, or no locks on its file system
    };

    /// `path`: of the file to lock, which is made; bytes.
    explicit InstanceLock(std::string path);

    /// Tries once, without waiting. Does no harm when it is ours already.
    State take();

    /// Another process may take it from now on, also while this one's file stays open: in a process
    /// that is being started, or one whose threads are stuck in the kernel.
    void release();

private:
    std::string m_path;
    scan::FileDescriptor m_file; ///< open while the lock is ours
};

} // namespace tessaly
