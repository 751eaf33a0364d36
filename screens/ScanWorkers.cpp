#include "screens/ScanWorkers.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "engine/LUMThreadedScanner.hpp"
#include "platform/FolderBookmarks.hpp"

#include <QMetaObject>
#include <QObject>

#include <utility>

namespace tessaly {

namespace {

/// Access to a folder, for as long as this lives. Without a URL, to nothing.
class FolderAccess {
public:
    explicit FolderAccess(const std::optional<std::string> &url) : m_bookmarks(services().bookmarks)
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
    FolderAccess(const FolderAccess &) = delete;
    FolderAccess &operator=(const FolderAccess &) = delete;
    FolderAccess(FolderAccess &&) = delete;
    FolderAccess &operator=(FolderAccess &&) = delete;

private:
    FolderBookmarks &m_bookmarks;
    std::optional<std::string> m_url;
};

} // namespace

ScanWorkers::ScanWorkers(ScanWork &work, QObject &screen) : m_work(work), m_screen(screen) {}

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
        const std::scoped_lock lock(m_scannerLock);
        m_isCancelWanted = false;
        m_scanner = std::make_shared<LUMThreadedScanner>();
    }
    m_worker = std::thread([this, folder, grantedUrl] { runScan(folder, grantedUrl); });
}

void ScanWorkers::cancelScan()
{
    const std::scoped_lock lock(m_scannerLock);
    m_isCancelWanted = true;
    if (m_scanner) {
        m_scanner->cancelScanInProgress();
    }
}

void ScanWorkers::stop()
{
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
        QMetaObject::invokeMethod(&m_screen, std::move(step), Qt::QueuedConnection);
    }
}

void ScanWorkers::runLoader()
{
    handOver(m_work.loadResult());
}

void ScanWorkers::runScan(const std::string &folder, const std::optional<std::string> &grantedUrl)
{
    std::shared_ptr<LUMThreadedScanner> scanner;
    {
        const std::scoped_lock lock(m_scannerLock);
        scanner = m_scanner;
    }
    {
        const FolderAccess access(grantedUrl);
        scan(*scanner, folder);
    }
    if (!scanner->scanWasCancelled()) {
        handOver(m_work.scanCompleted(scanner->tree()));
    } else if (!m_isStopping) { // else it was not the user, and there is nobody left to tell
        handOver(m_work.scanCancelled());
    }
    const std::scoped_lock lock(m_scannerLock);
    m_scanner.reset();
}

void ScanWorkers::scan(LUMThreadedScanner &scanner, const std::string &folder)
{
    scanner.scanRootFolder(folder);
    {
        // A request from before the scan is forgotten by the scanner, but not by the user.
        const std::scoped_lock lock(m_scannerLock);
        if (m_isCancelWanted) {
            scanner.cancelScanInProgress();
        }
    }
    scanner.waitUntilFinished();
}

} // namespace tessaly
