#pragma once

#include "screens/results/ScanWork.hpp"

#include <QtGlobal>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

class QObject;

namespace tessaly {

class FolderBookmarks;

/// The threads of a scan screen: one that loads the last result, and one for each scan. They hand
/// over to the main thread what they made, and wait for nothing there.
///
/// A scan may hang for good in a folder of a server that is gone. So the worker has the scan run on
/// a thread that it leaves behind when the scan is cancelled and does not end. What is left behind
/// uses nothing but its own scanner.
///
/// Threads: the main thread. `work` is called on the workers.
class ScanWorkers final {
public:
    /// All three must outlive this. What has been handed over when `screen` is destroyed is not run
    /// any more.
    ScanWorkers(ScanWork &work, QObject &screen, FolderBookmarks &bookmarks);
    /// Stops.
    ~ScanWorkers();
    Q_DISABLE_COPY_MOVE(ScanWorkers)

    /// Starts to load the last result. Does nothing when it is called again.
    void startLoading();

    /// Starts to scan a folder, whose path is bytes. With the URL that a bookmark led to, the
    /// access to that folder is started before the scan and stopped after it.
    /// Requires: the last scan's step has been handed over.
    void startScan(const std::string &folder, const std::optional<std::string> &grantedUrl);

    /// Ends the running scan soon: its step is handed over within a moment, even if the scan hangs.
    /// False when there is none, or when it has ended and its result is on the way.
    bool cancelScan();

    /// Cancels the running scan and waits for all threads but those that hang.
    void stop();

private:
    struct RunningScan;

    void runLoader();
    void runScan(const std::string &folder, const std::optional<std::string> &grantedUrl);
    [[nodiscard]] bool scan(const std::shared_ptr<RunningScan> &scan, const std::string &folder,
                            const std::optional<std::string> &grantedUrl);
    void handOver(ScanWork::Step step);

    ScanWork &m_work;
    QObject &m_screen;
    FolderBookmarks &m_bookmarks;
    std::mutex m_scanLock;
    std::shared_ptr<RunningScan> m_scan;    ///< that can be cancelled; guarded by m_scanLock
    std::atomic<bool> m_isStopping = false; ///< set by stop(): nobody is to be told any more
    std::thread m_loader;
    std::thread m_worker;
};

} // namespace tessaly
