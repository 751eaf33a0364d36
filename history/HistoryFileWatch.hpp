#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <string>

namespace tessaly {

/// Says when it is worth trying again to read a file that could not be read.
///
/// The system tells of changes in the file's folder and of the folder itself, such as other
/// permissions or another file in its place. What it does not tell of, such as a disk that reads
/// again or a link whose target is back, is covered by a signal at regular intervals.
///
/// Threads: the main thread.
class HistoryFileWatch final : public QObject {
    Q_OBJECT

public:
    explicit HistoryFileWatch(QObject *parent = nullptr,
                              std::chrono::milliseconds interval = std::chrono::seconds(5));

    /// Watches the file at `path`, until stop(). Does nothing while it watches.
    void start(const std::string &path);
    void stop();
    [[nodiscard]] bool isActive() const { return m_timer.isActive(); }

Q_SIGNALS:
    /// The file may be readable now. It need not have changed.
    void mayHaveChanged();

private:
    QFileSystemWatcher m_watcher;
    QTimer m_timer;
};

} // namespace tessaly
