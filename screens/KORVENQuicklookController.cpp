#include "screens/KORVENQuicklookController.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/NamedException.hpp"
#include "platform/FileUrl.hpp"
#include "platform/FolderBookmarks.hpp"
#include "platform/SettingsStore.hpp"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tessaly {

namespace {

/// Without slashes at its end; "/" stays.
std::string_view withoutEndingSlashes(std::string_view path)
{
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1);
    }
    return path;
}

/// The absolute path of the folder that a file lies in, each slash single and none at the end. What
/// follows "..", or a link, is left to the file system. Empty when there is none.
std::string folderOf(std::string_view path)
{
    path = withoutEndingSlashes(path);
    const std::size_t slash = path.rfind('/');
    const std::string_view parent =
        slash == std::string_view::npos ? std::string_view() : path.substr(0, slash + 1);
    std::string folder(parent);
    if (!parent.starts_with('/')) {
        std::error_code error;
        folder = std::filesystem::current_path(error).string() + '/' + folder;
        if (error) {
            return {};
        }
    }
    const auto isDoubled = [](char a, char b) { return a == '/' && b == '/'; };
    folder.erase(std::unique(folder.begin(), folder.end(), isDoubled), folder.end());
    return std::string(withoutEndingSlashes(folder));
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
    throw NamedException("Singleton", "Use +[KORVENHistoryStore sharedStore]");
}

KORVENQuicklookController::KORVENQuicklookController(const Services &services,
                                                     FolderLister listFolder)
    : m_services(services), m_listFolder(std::move(listFolder)), m_home(opened("homeFolder"))
{
    m_services.previewPanels.setController(this);
}

KORVENQuicklookController::~KORVENQuicklookController()
{
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

void KORVENQuicklookController::quickLookItem(std::string_view path, std::string_view scanKey)
{
    close(m_scan);
    m_scan = opened(scanKey);
    if (m_scan.url) {
        quickLookItem(path);
    }
}

void KORVENQuicklookController::quickLookItem(std::string_view path)
{
    quickLookItems(path);
}

void KORVENQuicklookController::quickLookItems(std::string_view path)
{
    m_savedPath = folderOf(path);
    m_qlArray.clear();
    std::size_t start = 0;
    if (m_savedPath.find('\0') == std::string::npos) {
        for (const PreviewFolderEntry &entry : m_listFolder(m_savedPath)) {
            if (entry.isFolder || entry.name.starts_with('.')) {
                continue;
            }
            const std::string file = m_savedPath + '/' + entry.name;
            auto url = fileUrl(file);
            if (!url) {
                continue;
            }
            if (file == path) {
                start = m_qlArray.size();
            }
            m_qlArray.push_back(std::move(*url));
        }
    }
    std::rotate(m_qlArray.begin(), m_qlArray.begin() + static_cast<std::ptrdiff_t>(start),
                m_qlArray.end());

    PreviewPanel &panel = m_services.previewPanels.sharedPreviewPanel();
    if (panel.isVisible()) {
        panel.makeKeyWindow();
    } else {
        panel.makeKeyAndOrderFront();
    }
    panel.setCurrentPreviewItemIndex(0);
    panel.reloadData();
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
