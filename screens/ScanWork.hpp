#pragma once

#include "engine/ScanTree.hpp"

#include <functional>
#include <memory>

namespace tessaly {

/// What a screen does on its ScanWorkers. Each call runs on a worker; what it answers is run on the
/// main thread afterwards, unless it is empty.
class ScanWork {
public:
    using Step = std::function<void()>;

    ScanWork() = default;
    virtual ~ScanWork() = default;
    ScanWork(const ScanWork &) = delete;
    ScanWork &operator=(const ScanWork &) = delete;
    ScanWork(ScanWork &&) = delete;
    ScanWork &operator=(ScanWork &&) = delete;

    /// Loads the last result.
    [[nodiscard]] virtual Step loadResult() = 0;
    /// A scan has found this.
    [[nodiscard]] virtual Step scanCompleted(const std::shared_ptr<ScanTree> &tree) = 0;
    /// A scan has ended before its time.
    [[nodiscard]] virtual Step scanCancelled() = 0;
};

} // namespace tessaly
