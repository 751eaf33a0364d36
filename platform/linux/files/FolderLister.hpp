#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <string>
#include <vector>

namespace tessaly {

class ProbeProcess;

/// Lists the folders in a folder by a child process (ProbeProcess), so that nothing of this process
/// hangs on a server that is gone.
///
/// Threads: one, with an event loop.
class FolderLister final : public QObject {
    Q_OBJECT

public:
    /// `program`: see ProbeProcess.
    explicit FolderLister(std::string program, QObject *parent = nullptr);
    ~FolderLister() override;
    Q_DISABLE_COPY_MOVE(FolderLister)

    /// Lists the folders at the path; gives up a path that was asked for before.
    void list(const std::string &path);
    /// Emits no more signals for the path.
    void stop();

Q_SIGNALS:
    /// There is a folder at the path.
    void opened();
    /// There is none, or it cannot be read: an errno value. In the latter case after opened().
    void failed(int error);
    /// Names of folders in it, as bytes and in no order. Comes several times.
    void found(const std::vector<std::string> &names);
    /// There are no more.
    void finished();

private:
    void take();
    void takeWords();

    std::string m_program;
    std::unique_ptr<ProbeProcess> m_process;
    std::unique_ptr<QSocketNotifier> m_notifier; ///< destroyed before what it watches
    std::string m_text;                          ///< what was read and has not ended yet
    int m_statusCount = 0;                       ///< of the numbers that come before the names
};

} // namespace tessaly
