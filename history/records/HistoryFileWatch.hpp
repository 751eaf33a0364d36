#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace tessaly {

/// Says when it is worth trying again to read a file that could not be read.
///
/// The system tells of changes in the file's folder and of the folder itself, such as other
/// permissions or another file in its place. What it does not tell of, such as a disk that reads
/// again or a link whose target is back, is covered by a signal at regular intervals.
///
/// Before each signal the file is read on another thread, whatever comes of it. So while the read
/// hangs, there is no signal, and nobody on the main thread is made to hang as well.
///
/// Threads: the main thread.
class HistoryFileWatch final : public QObject {
    Q_OBJECT

public:
    /// Reads the file at `path`, which may hang. Threads: any; it may outlive the watch.
    using FileReader = std::function<void(const std::string &path)>;

    explicit HistoryFileWatch(QObject *parent = nullptr,
                              std::chrono::milliseconds interval = std::chrono::seconds(5));
    HistoryFileWatch(QObject *parent, std::chrono::milliseconds interval, FileReader readFile);
    /// Leaves a read that hangs behind.
    ~HistoryFileWatch() override;
    Q_DISABLE_COPY_MOVE(HistoryFileWatch)

    /// Watches the file at `path`, until stop(). Does nothing while it watches.
    void start(const std::string &path);
    void stop();
    [[nodiscard]] bool isActive() const { return m_timer.isActive(); }

Q_SIGNALS:
    /// The file may be readable now. It need not have changed.
    void mayHaveChanged();

private:
    struct Link;

    void readFile();
    void fileWasRead();

    const FileReader m_readFile;
    const std::shared_ptr<Link> m_link; ///< with the thread that reads
    std::string m_path;
    bool m_isReading = false;
    bool m_isReadWanted = false; ///< again, when the running one has ended
    QFileSystemWatcher m_watcher;
    QTimer m_timer;
};

} // namespace tessaly
