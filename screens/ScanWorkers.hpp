#pragma once

#include "screens/ScanWork.hpp"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

class QObject;

namespace tessaly {

class LUMThreadedScanner;

/// The threads of a scan screen: one that loads the last result, and one for each scan. They hand
/// over to the main thread what they made, and wait for nothing there.
///
/// Threads: the main thread. `work` is called on the workers.
class ScanWorkers final {
public:
    /// Both must outlive this. What is handed over when `screen` goes is not run any more.
    ScanWorkers(ScanWork &work, QObject &screen);
    /// Stops.
    ~ScanWorkers();
    ScanWorkers(const ScanWorkers &) = delete;
    ScanWorkers &operator=(const ScanWorkers &) = delete;
    ScanWorkers(ScanWorkers &&) = delete;
    ScanWorkers &operator=(ScanWorkers &&) = delete;

    /// Starts to load the last result. Does nothing when it is called again.
    void startLoading();

    /// Starts to scan a folder, whose path is bytes. With the URL that a bookmark led to, the
    /// access to that folder is started before the scan and stopped after it.
    /// Requires: the last scan's step has been handed over.
    void startScan(const std::string &folder, const std::optional<std::string> &grantedUrl);

    /// Ends the running scan soon, if there is one.
    void cancelScan();

    /// Cancels the running scan and waits for all threads.
    void stop();

private:
    void runLoader();
    void runScan(const std::string &folder, const std::optional<std::string> &grantedUrl);
    void scan(LUMThreadedScanner &scanner, const std::string &folder);
    void handOver(ScanWork::Step step);

    ScanWork &m_work;
    QObject &m_screen;
    std::mutex m_scannerLock;
    std::shared_ptr<LUMThreadedScanner> m_scanner; ///< of the scan that is running
    bool m_isCancelWanted = false;
    std::atomic<bool> m_isStopping = false; ///< nobody is to be told any more
    std::thread m_loader;
    std::thread m_worker;
};

} // namespace tessaly
