#pragma once

#include "platform/PreviewPanels.hpp"
#include "platform/Services.hpp"
#include "screens/PreviewFolder.hpp"

#include <QtGlobal>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

class FolderBookmarks;

/// The one controller of the preview panel: from a file's path it makes the list of the files to
/// page through, the visible ones of the same folder with the chosen one first.
///
/// Order:   the folder's files come in the order of `shownNames`, the names of the rows that the
///          user sees; files that are no rows come after them, in the file system's order.
/// Paths:   bytes. URLs: "file:" URLs (see FileUrl.hpp).
/// Threads: the main thread; sharedStore() may be called first by any.
/// Errors:  none reach the caller. A folder that cannot be read gives an empty list, a bookmark
///          that does not resolve no preview at all. A file that has gone from its folder is shown
///          as gone, beside the list.
class KORVENQuicklookController final : public PreviewPanelController,
                                        public PreviewPanelDataSource,
                                        public PreviewPanelDelegate {
public:
    /// The controller, which the first call makes and which stays until the process ends. Requires:
    /// the application delegate lives.
    [[nodiscard]] static KORVENQuicklookController &sharedStore();

    /// Raises the NamedException "Singleton".
    [[noreturn]] KORVENQuicklookController();
    ~KORVENQuicklookController() override;
    Q_DISABLE_COPY_MOVE(KORVENQuicklookController)

    /// Previews a file of a folder that was scanned by way of the bookmark that the settings keep
    /// under the scan's key. Nothing is shown when there is none, or it does not resolve.
    void quickLookItem(std::string_view path, std::string_view scanKey,
                       const std::vector<std::string> &shownNames = {});
    void quickLookItem(std::string_view path, const std::vector<std::string> &shownNames = {});
    /// Rebuilds the list and shows the panel, with the file at this path first. When the path is
    /// not in the list (a folder, a hidden file, another spelling), the list begins with the
    /// folder's first file.
    void quickLookItems(std::string_view path, const std::vector<std::string> &shownNames = {});

    // What the panel asks.
    [[nodiscard]] bool acceptsPreviewPanelControl(PreviewPanel &panel) override;
    void beginPreviewPanelControl(PreviewPanel &panel) override;
    void endPreviewPanelControl(PreviewPanel &panel) override;
    [[nodiscard]] std::size_t numberOfPreviewItemsInPreviewPanel() const override;
    [[nodiscard]] std::string previewItemAtIndex(std::size_t index) const override;
    /// True for a key press: the panel keeps the keyboard to itself.
    bool handleEvent(PreviewPanelEvent event) override;
    [[nodiscard]] PreviewPanelFrame
    sourceFrameOnScreenForPreviewItem(std::size_t index) const override;

    // Required interface: the state.

    /// The panel that is under control, or nullptr.
    [[nodiscard]] PreviewPanel *previewPanel() const noexcept { return m_previewPanel; }
    /// The list of URLs that the panel pages through.
    [[nodiscard]] const std::vector<std::string> &qlArray() const noexcept { return m_qlArray; }
    /// The user's home folder, if the settings have a bookmark of it that resolves; open for as
    /// long as the controller lives.
    [[nodiscard]] const std::optional<std::string> &homeURL() const noexcept { return m_home.url; }
    /// The folder of the last preview; empty at first.
    [[nodiscard]] const std::string &savedPath() const noexcept { return m_savedPath; }
    /// The folder of the scan whose bookmark was used last; open until the next one is.
    [[nodiscard]] const std::optional<std::string> &scanURL() const noexcept { return m_scan.url; }

private:
    friend struct OwnQuicklookController; // gives each test a controller of its own

    using FolderLister = std::function<std::vector<PreviewFolderEntry>(const std::string &)>;

    /// A folder that a bookmark led to.
    struct GrantedFolder {
        std::optional<std::string> url;
        bool hasAccess = false;
    };

    explicit KORVENQuicklookController(const Services &services,
                                       FolderLister listFolder = previewFolderEntries);

    /// The folder of the bookmark under a key of the settings, and access to it.
    [[nodiscard]] GrantedFolder opened(std::string_view settingsKey) const;
    void close(GrantedFolder &folder) const;

    /// Makes the list of the files in m_savedPath.
    void listFiles(std::string_view path, const std::vector<std::string> &shownNames);

    const Services m_services;
    FolderLister m_listFolder;
    PreviewPanel *m_previewPanel = nullptr;
    std::vector<std::string> m_qlArray;
    GrantedFolder m_home;
    std::string m_savedPath;
    GrantedFolder m_scan;
};

} // namespace tessaly
