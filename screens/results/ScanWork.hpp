#pragma once

#include "engine/tree/ScanTree.hpp"

#include <QtGlobal>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tessaly {

/// What a scan has found.
struct FinishedScan {
    std::shared_ptr<tree::ScanTree> tree;
    /// Why the scanned folder itself could not be opened, in the system's words.
    std::optional<std::string> rootProblem;
};

/// What a screen does on its ScanWorkers. Each call runs on a worker; what it answers is run on the
/// main thread afterwards, unless it is empty.
class ScanWork {
public:
    using Step = std::function<void()>;

    ScanWork() = default;
    virtual ~ScanWork() = default;
    Q_DISABLE_COPY_MOVE(ScanWork)

    /// Loads the last result.
    [[nodiscard]] virtual Step loadResult() = 0;
    [[nodiscard]] virtual Step scanCompleted(const FinishedScan &scan) = 0;
    /// A scan has ended before its time.
    [[nodiscard]] virtual Step scanCancelled() = 0;
};

} // namespace tessaly
