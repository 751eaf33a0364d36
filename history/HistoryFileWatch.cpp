#include "history/HistoryFileWatch.hpp"

#include <QFile>
#include <QFileInfo>

namespace tessaly {

HistoryFileWatch::HistoryFileWatch(QObject *parent, std::chrono::milliseconds interval)
    : QObject(parent)
{
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &HistoryFileWatch::mayHaveChanged);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this,
            &HistoryFileWatch::mayHaveChanged);
}

void HistoryFileWatch::start(const std::string &path)
{
    if (isActive()) {
        return;
    }
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
}

} // namespace tessaly
