#pragma once

#include "engine/scan/FileDescriptor.hpp"

#include <QSocketNotifier>

#include <functional>
#include <memory>
#include <string>

namespace tessaly {

/// Watches the kernel's list of mounts.
///
/// Threads: one, with an event loop.
class MountWatch {
public:
    /// Calls `changed` after something was mounted or unmounted; changes that come close together
    /// may be one. `mountInfo` is "/proc/self/mountinfo"; other files never change here.
    MountWatch(const std::string &mountInfo, std::function<void()> changed);

private:
    scan::FileDescriptor m_file;
    std::unique_ptr<QSocketNotifier> m_notifier; ///< destroyed before the file that it watches
};

} // namespace tessaly
