#include "history/records/HistoryFileWatch.hpp"

#include "engine/scan/ScanThread.hpp"
#include "history/records/HistoryFile.hpp"

#include <QFile>
#include <QFileInfo>

#include <mutex>
#include <utility>

namespace tessaly {

/// Shared with the thread that reads, which may outlive the watch.
struct HistoryFileWatch::Link {
    std::mutex mutex;
    HistoryFileWatch *watch; ///< null once it is destroyed; guarded by mutex
};

HistoryFileWatch::HistoryFileWatch(QObject *parent, std::chrono::milliseconds interval)
    : HistoryFileWatch(parent, interval,
                       [](const std::string &path) { (void)readHistoryFile(path); })
{
}

HistoryFileWatch::HistoryFileWatch(QObject *parent, std::chrono::milliseconds interval,
                                   FileReader readFile)
    : QObject(parent), m_readFile(std::move(readFile)), m_link(std::make_shared<Link>())
{
    m_link->watch = this;
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &HistoryFileWatch::readFile);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &HistoryFileWatch::readFile);
}

HistoryFileWatch::~HistoryFileWatch()
{
    // The thread posts its call under the same lock. It has either posted, and QObject drops the
    // call, or it finds the pointer null.
    const std::scoped_lock lock(m_link->mutex);
    m_link->watch = nullptr;
}

void HistoryFileWatch::start(const std::string &path)
{
    if (isActive()) {
        return;
    }
    m_path = path;
    // Its folder rather than the file: one that may not be read cannot be watched either. And the
    // folder above, which tells of a folder that may be entered again.
    const QFileInfo folder(QFileInfo(QFile::decodeName(path.c_str())).path());
    m_watcher.addPaths({folder.filePath(), folder.path()});
    m_timer.start();
}

void HistoryFileWatch::stop()
{
    m_timer.stop();
    const QStringList watched = m_watcher.directories();
    if (!watched.isEmpty()) {
        m_watcher.removePaths(watched);
    }
    m_isReadWanted = false;
}

void HistoryFileWatch::readFile()
{
    // At most one thread reads. While the disk hangs, the timer would otherwise leave a thread
    // behind at each interval.
    if (m_isReading) {
        m_isReadWanted = true;
        return;
    }
    m_isReading = true;
    const bool isStarted =
        scan::startDetachedThread([link = m_link, readFile = m_readFile, path = m_path] {
            readFile(path);
            // Not held during the read, which may hang: the destructor waits for this lock.
            const std::scoped_lock lock(link->mutex);
            if (link->watch != nullptr) {
                QMetaObject::invokeMethod(link->watch, &HistoryFileWatch::fileWasRead,
                                          Qt::QueuedConnection);
            }
        });
    if (!isStarted) {
        m_isReading = false; // the timer tries again
    }
}

void HistoryFileWatch::fileWasRead()
{
    m_isReading = false;
    if (!isActive()) {
        return; // it was stopped meanwhile
    }
    if (std::exchange(m_isReadWanted, false)) {
        readFile(); // the file may have changed after it was read
    }
    Q_EMIT mayHaveChanged();
}

} // namespace tessaly
