#pragma once

#include "platform/FileManager.hpp"
#include "platform/background/BackgroundWork.hpp"
#include "platform/background/ServiceThread.hpp"
#include "platform/linux/files/FileManagerCaller.hpp"

#include <QPointer>

#include <chrono>
#include <functional>
#include <map>
#include <string>

namespace tessaly {

class DateTexts;
class InformationWindow;
struct ItemInformation;

/// The file manager that offers itself on the session bus, which may start it when it is called.
///
/// Requires: a QApplication and its event loop.
/// Errors:   go to the log "tessaly.filemanager".
/// End:      the destructor blocks neither on the bus nor on the file manager, and closes the
///           windows of our own.
class LinuxFileManager final : public FileManager {
public:
    /// Opens a "file:" URL with the default application; false when that failed.
    using Opener = std::function<bool(const std::string &url)>;

    static constexpr std::chrono::milliseconds defaultTimeout = std::chrono::seconds(25);

    /// `dates` writes the dates in windows of our own. A file manager that has not answered after
    /// `timeout` counts as none.
    explicit LinuxFileManager(const DateTexts &dates, Opener opener = openWithDefaultApplication,
                              std::chrono::milliseconds timeout = defaultTimeout);
    ~LinuxFileManager() override;
    Q_DISABLE_COPY_MOVE(LinuxFileManager)

    void reveal(std::string_view path) override;
    void showInformation(std::string_view path) override;

    static bool openWithDefaultApplication(const std::string &url);

private:
    using Method = FileManagerCaller::Method;

    /// `fallback` is called with the clean path, when the file manager does not show the item.
    void show(std::string_view path, Method method,
              std::function<void(const std::string &)> fallback);
    void callFileManager(const std::string &url, Method method, std::function<void()> fallback);
    void openFolder(const std::string &path);
    void showOwnWindow(const std::string &path);
    void openWindow(const ItemInformation &item);

    const DateTexts &m_dates;
    Opener m_opener;
    std::map<std::string, QPointer<InformationWindow>> m_windows; ///< by path; some are closed
    ServiceThread<FileManagerCaller> m_caller;
    BackgroundWork m_work; ///< destroyed first: nothing calls this object after that
};

} // namespace tessaly
