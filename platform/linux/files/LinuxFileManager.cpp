#include "platform/linux/files/LinuxFileManager.hpp"

#include "engine/tree/FilePath.hpp"
#include "engine/tree/PrintableText.hpp"
#include "platform/FileUrl.hpp"
#include "platform/linux/bus/BusAddresses.hpp"
#include "platform/linux/files/InformationWindow.hpp"
#include "platform/linux/files/ItemInformation.hpp"

#include <QDesktopServices>
#include <QUrl>

#include <cerrno>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace tessaly {

namespace {

void logNotShown(const std::string &path, const std::string &reason)
{
    qCInfo(fileManagerLog).noquote()
        << "not shown:" << QString::fromStdString(tree::printableText(path)) << '-'
        << QString::fromStdString(reason);
}

/// The errno value with which looking for the item ends; 0 when it is there.
int errorOfLookingFor(const std::string &path)
{
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0 ? 0 : errno;
}

} // namespace

LinuxFileManager::LinuxFileManager(const DateTexts &dates, Opener opener,
                                   std::chrono::milliseconds timeout)
    : m_dates(dates), m_opener(std::move(opener)), m_caller(sessionBusAddress(), timeout)
{
}

LinuxFileManager::~LinuxFileManager()
{
    // Windows without a parent, which nothing else would delete.
    for (const auto &[path, window] : m_windows) {
        delete window.data();
    }
}

void LinuxFileManager::reveal(std::string_view path)
{
    // "/" lies in no folder, so file managers cannot select it there.
    const bool isRoot = tree::cleanPath(path) == "/";
    show(path, isRoot ? Method::showFolders : Method::showItems,
         [this](const std::string &clean) { openFolder(tree::parentPath(clean)); });
}

void LinuxFileManager::showInformation(std::string_view path)
{
    show(path, Method::showItemProperties,
         [this](const std::string &clean) { showOwnWindow(clean); });
}

bool LinuxFileManager::openWithDefaultApplication(const std::string &url)
{
    // Encoded, so that bytes of a path that are not UTF-8 stay as they are.
    return QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(url)));
}

void LinuxFileManager::show(std::string_view path, Method method,
                            std::function<void(const std::string &)> fallback)
{
    const std::string clean = tree::cleanPath(path);
    const auto url = fileUrl(clean);
    if (!url) {
        logNotShown(clean, "not an absolute path");
        return;
    }
    // Some file managers open an error box of their own for a path that is missing. The check may
    // block on the file system, so it runs on another thread.
    BackgroundWork::start(
        [this, clean, url = *url, method, fallback = std::move(fallback), post = m_work.poster()] {
            const int error = errorOfLookingFor(clean);
            post([this, clean, url, method, fallback, error] {
                if (error == 0) {
                    callFileManager(url, method, [fallback, clean] { fallback(clean); });
                } else {
                    // File managers answer "done" for what is missing, so ours is shown.
                    logNotShown(clean, std::generic_category().message(error));
                    showOwnWindow(clean); // which says why
                }
            });
        });
}

void LinuxFileManager::callFileManager(const std::string &url, Method method,
                                       std::function<void()> fallback)
{
    // The bus is asked on its own thread, so the fallback is posted back to this one.
    m_caller.post([method, url, fallback = std::move(fallback),
                   post = m_work.poster()](FileManagerCaller &caller) {
        caller.call(method, QString::fromStdString(url), [fallback, post] { post(fallback); });
    });
}

void LinuxFileManager::openFolder(const std::string &path)
{
    const auto url = fileUrl(path);
    if (!url || !m_opener(*url)) {
        logNotShown(path, "nothing opens this folder");
    }
}

void LinuxFileManager::showOwnWindow(const std::string &path)
{
    BackgroundWork::start([this, path, post = m_work.poster()] {
        post([this, item = ItemInformation::of(path)] { openWindow(item); });
    });
}

void LinuxFileManager::openWindow(const ItemInformation &item)
{
    // Closed windows delete themselves. Their entries are removed here, at the next opening.
    std::erase_if(m_windows, [](const auto &before) { return before.second.isNull(); });
    auto *window = new InformationWindow(item, m_dates);
    window->setAttribute(Qt::WA_DeleteOnClose); // QPointer tells when it was closed
    QPointer<InformationWindow> &place = m_windows[item.path];
    if (place != nullptr) { // replaces the window with what was known about the item before
        window->move(place->pos());
        delete place.data();
    }
    place = window;
    window->show();
    window->raise();
    window->activateWindow();
}

} // namespace tessaly
