#pragma once

#include "platform/linux/bus/BusLink.hpp"

#include <QLoggingCategory>
#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace tessaly {

/// What becomes of calls to the file manager.
Q_DECLARE_LOGGING_CATEGORY(fileManagerLog)

/// The part of LinuxFileManager that calls the desktop's file manager on the session bus. Calls do
/// not wait for one another. A bus that is missing is looked for again with each call.
///
/// Threads: one, with an event loop. It never blocks on the bus.
/// Errors:  go to the log "tessaly.filemanager" and to `failed`.
class FileManagerCaller final : public QObject {
public:
    enum class Method { showFolders, showItems, showItemProperties };

    /// An answer, of the bus or the file manager, that has not come after `timeout` counts as an
    /// error.
    FileManagerCaller(std::string busAddress, std::chrono::milliseconds timeout);
    ~FileManagerCaller() override;
    Q_DISABLE_COPY_MOVE(FileManagerCaller)

    /// `failed` is called on this thread when there is no file manager, or it answers an error.
    void call(Method method, const QString &url, const std::function<void()> &failed);

private:
    struct Call {
        Method method;
        QString url;
        std::function<void()> failed;
    };

    void finishLooking(const QString &problem);
    void send(const Call &call);

    std::chrono::milliseconds m_timeout;
    BusLink m_link;
    std::vector<Call> m_waiting; ///< to be sent once the bus is open; it is opened for the first
};

} // namespace tessaly
