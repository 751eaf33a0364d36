#include "screens/ScanWorkers.hpp"

#include "engine/scan/AbandonableWork.hpp"
#include "engine/scan/LUMThreadedScanner.hpp"
#include "platform/FolderBookmarks.hpp"

#include <QMetaObject>
#include <QObject>

#include <chrono>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaly {

namespace {

/// Access to a folder, for as long as this lives. Without a URL, to nothing.
class FolderAccess {
public:
    FolderAccess(FolderBookmarks &bookmarks, const std::optional<std::string> &url)
        : m_bookmarks(bookmarks)
    {
        if (url && m_bookmarks.startAccess(*url)) {
            m_url = url;
        }
    }
    ~FolderAccess()
    {
        if (m_url) {
            m_bookmarks.stopAccess(*m_url);
        }
    }
    Q_DISABLE_COPY_MOVE(FolderAccess)

private:
    FolderBookmarks &m_bookmarks;
    std::optional<std::string> m_url;
};

/// How long walks may take to see that they are cancelled. They look at each entry; one that takes
/// longer hangs.
constexpr std::chrono::milliseconds cancelTimeout{300};

/// Asks the system what it is asked when access to a folder is started.
void lookAt(const std::string &folder)
{
    struct stat status = {};
    if (stat(folder.c_str(), &status) == 0) {
        // The answer does not matter, only that there is one.
        (void)!faccessat(AT_FDCWD, folder.c_str(), R_OK | X_OK, AT_EACCESS);
    }
}

} // namespace

/// Belongs to the worker and to the thread that may be left behind.
struct ScanWorkers::RunningScan {
    scan::LUMThreadedScanner scanner;
    scan::AbandonableWork work{cancelTimeout};
    std::atomic<bool> isCancelWanted = false;

    void run(const std::string &folder)
    {
        scanner.scanRootFolder(folder);
        // A request from before the scan is forgotten by the scanner, but not by the user.
        if (isCancelWanted) {
            scanner.cancelScanInProgress();
        }
        scanner.waitUntilFinished();
    }

    void cancel()
    {
        isCancelWanted = true;
        scanner.cancelScanInProgress();
        // Last, since the timeout begins here: the walks get that long to see the request.
        work.giveUp();
    }
};

ScanWorkers::ScanWorkers(ScanWork &work, QObject &screen, FolderBookmarks &bookmarks)
    : m_work(work), m_screen(screen), m_bookmarks(bookmarks)
{
}

ScanWorkers::~ScanWorkers()
{
    stop();
}

void ScanWorkers::startLoading()
{
    if (!m_loader.joinable()) {
        m_loader = std::thread([this] { runLoader(); });
    }
}

void ScanWorkers::startScan(const std::string &folder, const std::optional<std::string> &grantedUrl)
{
    if (m_worker.joinable()) {
        m_worker.join(); // has ended, or is about to
    }
    {
        const std::scoped_lock lock(m_scanLock);
        // Before the thread starts, so that a cancel right after this call finds the scan.
        m_scan = std::make_shared<RunningScan>();
    }
    m_worker = std::thread([this, folder, grantedUrl] { runScan(folder, grantedUrl); });
}

bool ScanWorkers::cancelScan()
{
    const std::scoped_lock lock(m_scanLock);
    // Under the lock, so that a scan is either cancelled or its result handed over, but never both.
    if (m_scan) {
        m_scan->cancel();
    }
    return m_scan != nullptr;
}

void ScanWorkers::stop()
{
    // Before the cancel: the worker must not take this for a request of the user.
    m_isStopping = true;
    cancelScan();
    for (std::thread *thread : {&m_loader, &m_worker}) {
        if (thread->joinable()) {
            thread->join();
        }
    }
}

void ScanWorkers::handOver(ScanWork::Step step)
{
    if (step) {
        // Qt drops queued calls when the context object is destroyed, so no step runs on a screen
        // that is destroyed.
        QMetaObject::invokeMethod(&m_screen, std::move(step), Qt::QueuedConnection);
    }
}

void ScanWorkers::runLoader()
{
    handOver(m_work.loadResult());
}

void ScanWorkers::runScan(const std::string &folder, const std::optional<std::string> &grantedUrl)
{
    // A copy of the pointer keeps the scan alive after m_scan is reset, and for the thread that may
    // be left behind.
    std::shared_ptr<RunningScan> running;
    {
        const std::scoped_lock lock(m_scanLock);
        running = m_scan;
    }
    const bool hasEnded = scan(running, folder, grantedUrl);
    {
        const std::scoped_lock lock(m_scanLock);
        m_scan.reset(); // from here on it is too late to cancel
    }
    if (hasEnded && !running->scanner.scanWasCancelled()) {
        handOver(m_work.scanCompleted({running->scanner.tree(), running->scanner.rootProblem()}));
    } else if (!m_isStopping) { // else it was not the user, and there is nobody left to tell
        handOver(m_work.scanCancelled());
    }
}

/// Whether the scan has ended by itself or after it was cancelled; else it was left behind.
bool ScanWorkers::scan(const std::shared_ptr<RunningScan> &scan, const std::string &folder,
                       const std::optional<std::string> &grantedUrl)
{
    // Starting the access looks at the folder, and cannot be left behind.
    if (grantedUrl && !scan->work.run([folder] { lookAt(folder); })) {
        return false;
    }
    const FolderAccess access(m_bookmarks, grantedUrl);
    return scan->work.run([scan, folder] { scan->run(folder); });
}

} // namespace tessaly
