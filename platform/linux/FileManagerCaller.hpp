#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

namespace tessaly {

/// LinuxFileManager's side in its thread: calls the desktop's file manager on the session bus.
/// Calls do not wait for one another. A bus that is missing is looked for again with each.
///
/// Threads: one, with an event loop; connecting to the bus may hold it up.
/// Errors:  go to the log "tessaly.filemanager" and to whoever called.
class FileManagerCaller final : public QObject {
public:
    enum class Method { showFolders, showItems, showItemProperties };

    /// Once `isEnding` is true, no connection is made any more. An answer that has not come after
    /// `patience` counts as an error.
    FileManagerCaller(std::shared_ptr<const std::atomic<bool>> isEnding,
                      std::chrono::milliseconds patience);
    ~FileManagerCaller() override;
    FileManagerCaller(const FileManagerCaller &) = delete;
    FileManagerCaller &operator=(const FileManagerCaller &) = delete;
    FileManagerCaller(FileManagerCaller &&) = delete;
    FileManagerCaller &operator=(FileManagerCaller &&) = delete;

    /// `failed` is called on this thread when there is no file manager, or it answers an error.
    void call(Method method, const QString &url, const std::function<void()> &failed);

private:
    [[nodiscard]] bool connectToBus();
    void disconnectFromBus();

    std::shared_ptr<const std::atomic<bool>> m_isEnding;
    std::chrono::milliseconds m_patience;
    QString m_connectionName;
    QDBusConnection m_bus;
    bool m_mayHaveConnection = false;
};

} // namespace tessaly
