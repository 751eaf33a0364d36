#include "screens/KORVENQuicklookController.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/NamedException.hpp"
#include "app/delegate/SettingsKeys.hpp"
#include "engine/tree/FilePath.hpp"
#include "platform/FileUrl.hpp"
#include "platform/FolderBookmarks.hpp"
#include "platform/SettingsStore.hpp"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unordered_map>
#include <utility>

#include <sys/stat.h>

namespace tessaly {

namespace {

/// The absolute path of the folder that a file lies in, each slash single and none at the end. What
/// follows "..", or a link, is left to the file system. Empty when there is none.
std::string absoluteFolderOf(std::string_view path)
{
    std::string folder = tree::parentPath(path);
    if (!folder.starts_with('/')) {
        std::error_code error;
        // The current folder may have been deleted. The overload without an error code would throw
        // then.
        const std::filesystem::path current = std::filesystem::current_path(error);
        if (error) {
            return {};
        }
        folder = tree::joinPath(current.native(), folder);
    }
    return tree::cleanPath(folder);
}

/// Puts the entries with these names first, in the order of the names; the others keep theirs.
void orderAsShown(std::vector<PreviewFolderEntry> &entries,
                  const std::vector<std::string> &shownNames)
{
    // A folder may have many thousands of files; a search in the list of names for each of them
    // would take quadratic time.
    std::unordered_map<std::string_view, std::size_t> places;
    for (const std::string &name : shownNames) {
        places.emplace(name, places.size());
    }
    const auto placeOf = [&](const PreviewFolderEntry &entry) {
        const auto found = places.find(entry.name);
        return found != places.end() ? found->second : places.size();
    };
    std::stable_sort(entries.begin(), entries.end(),
                     [&](const auto &a, const auto &b) { return placeOf(a) < placeOf(b); });
}

/// Whether the folder is there and the file is not. The folder tells a deleted file from a disk
/// that is not mounted. lstat(), since a link without a target is still there.
bool isGoneFrom(const std::string &folder, const std::string &file)
{
    struct stat status;
    return stat(folder.c_str(), &status) == 0 && lstat(file.c_str(), &status) != 0 &&
           errno == ENOENT;
}

} // namespace

KORVENQuicklookController &KORVENQuicklookController::sharedStore()
{
    // Never destroyed: the panel may ask for as long as the process lives.
    static KORVENQuicklookController &store =
        *new KORVENQuicklookController(services(), previewFolderEntries);
    return store;
}

KORVENQuicklookController::KORVENQuicklookController() : m_services(services())
{
    // Required interface, the text included, although it names the other class.
    throw NamedException("Singleton", "Use +[KORVENHistoryStore sharedStore]");
}

KORVENQuicklookController::KORVENQuicklookController(const Services &services,
                                                     FolderLister listFolder)
    : m_services(services), m_listFolder(std::move(listFolder)),
      m_home(opened(settings_key::homeFolder))
{
    m_services.previewPanels.setController(this);
}

KORVENQuicklookController::~KORVENQuicklookController()
{
    // Another controller may have taken its place, as in tests, which make their own.
    if (m_services.previewPanels.controller() == this) {
        m_services.previewPanels.setController(nullptr);
    }
    close(m_scan);
    close(m_home);
}

KORVENQuicklookController::GrantedFolder
KORVENQuicklookController::opened(std::string_view settingsKey) const
{
    GrantedFolder folder;
    if (const auto data = m_services.settings.data(settingsKey)) {
        folder.url = m_services.bookmarks.resolve(*data);
        folder.hasAccess = folder.url && m_services.bookmarks.startAccess(*folder.url);
    }
    return folder;
}

void KORVENQuicklookController::close(GrantedFolder &folder) const
{
    if (folder.hasAccess) {
        m_services.bookmarks.stopAccess(*folder.url);
    }
    folder = {};
}

void KORVENQuicklookController::quickLookItem(std::string_view path, std::string_view scanKey,
                                              const std::vector<std::string> &shownNames)
{
    // Access to the previous folder ends here and not after the preview, since the panel reads its
    // files for as long as it is open.
    close(m_scan);
    m_scan = opened(scanKey);
    if (m_scan.url) {
        quickLookItem(path, shownNames);
    }
}

void KORVENQuicklookController::quickLookItem(std::string_view path,
                                              const std::vector<std::string> &shownNames)
{
    quickLookItems(path, shownNames);
}

void KORVENQuicklookController::listFiles(std::string_view path,
                                          const std::vector<std::string> &shownNames)
{
    m_qlArray.clear();
    // A name from a damaged scan file may hold a NUL, at which the system would cut the path.
    if (m_savedPath.find('\0') != std::string::npos) {
        return;
    }
    std::vector<PreviewFolderEntry> entries = m_listFolder(m_savedPath);
    orderAsShown(entries, shownNames);
    std::size_t start = 0;
    for (const PreviewFolderEntry &entry : entries) {
        if (entry.isFolder || entry.name.starts_with('.')) {
            continue;
        }
        const std::string file = m_savedPath + '/' + entry.name;
        auto url = fileUrl(file);
        if (!url) {
            continue;
        }
        // Compared as bytes: another spelling of the same path is not found, and the list begins
        // with its first file.
        if (file == path) {
            start = m_qlArray.size();
        }
        m_qlArray.push_back(std::move(*url));
    }
    // The panel starts at its first item. Rotating keeps the order in which it pages on from there.
    std::rotate(m_qlArray.begin(), m_qlArray.begin() + static_cast<std::ptrdiff_t>(start),
                m_qlArray.end());
}

void KORVENQuicklookController::quickLookItems(std::string_view path,
                                               const std::vector<std::string> &shownNames)
{
    m_savedPath = absoluteFolderOf(path);
    listFiles(path, shownNames);

    PreviewPanel &panel = m_services.previewPanels.sharedPreviewPanel();
    if (panel.isVisible()) {
        panel.makeKeyWindow();
    } else {
        panel.makeKeyAndOrderFront();
    }
    panel.setCurrentPreviewItemIndex(0);
    panel.reloadData();
    // The scan may be old. Without this, another file would be shown in the place of one that is
    // gone.
    if (const auto url = fileUrl(path); url && isGoneFrom(m_savedPath, std::string(path))) {
        panel.showUnlistedItem(*url);
    }
}

bool KORVENQuicklookController::acceptsPreviewPanelControl(PreviewPanel & /*panel*/)
{
    return true;
}

void KORVENQuicklookController::beginPreviewPanelControl(PreviewPanel &panel)
{
    m_previewPanel = &panel;
    panel.setDelegate(this);
    panel.setDataSource(this);
}

void KORVENQuicklookController::endPreviewPanelControl(PreviewPanel &panel)
{
    m_previewPanel = nullptr;
    panel.setDelegate(nullptr);
    panel.setDataSource(nullptr);
}

std::size_t KORVENQuicklookController::numberOfPreviewItemsInPreviewPanel() const
{
    return m_qlArray.size();
}

std::string KORVENQuicklookController::previewItemAtIndex(std::size_t index) const
{
    return index < m_qlArray.size() ? m_qlArray[index] : std::string();
}

bool KORVENQuicklookController::handleEvent(PreviewPanelEvent event)
{
    return event == PreviewPanelEvent::keyDown;
}

PreviewPanelFrame
KORVENQuicklookController::sourceFrameOnScreenForPreviewItem(std::size_t /*index*/) const
{
    return {};
}

} // namespace tessaly
