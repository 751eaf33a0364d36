#include "app/window/HomeFolderGrant.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "platform/FileUrl.hpp"
#include "platform/FolderBookmarks.hpp"
#include "platform/FolderChooser.hpp"
#include "platform/SettingsStore.hpp"
#include "platform/UserAccount.hpp"

#include <QCoreApplication>
#include <QString>

#include <optional>
#include <string>
#include <utility>

namespace tessaly {

namespace {

constexpr std::string_view grantKey = "homeFolder";
/// No bookmark can be made of it: it has no scheme.
constexpr std::string_view noFolder = "/Temp";

} // namespace

HomeFolderGrant::HomeFolderGrant(QWidget &window, std::function<void()> changed)
    : m_window(window), m_changed(std::move(changed))
{
}

void HomeFolderGrant::customHomeFolder()
{
    services().folderChooser.chooseFolder(
        m_window,
        {services().account.homeFolder(),
         QCoreApplication::translate("HomeFolderGrant", "Save").toStdString()},
        [this](const std::optional<std::string> &folder) {
            if (folder) {
                store(fileUrl(*folder).value_or(std::string()));
            }
        });
}

void HomeFolderGrant::removeHomeFolder()
{
    store(noFolder);
}

void HomeFolderGrant::store(std::string_view url) const
{
    SettingsStore &settings = services().settings;
    if (const auto bookmark = services().bookmarks.makeBookmark(url)) {
        settings.setData(grantKey, *bookmark);
    } else {
        settings.remove(grantKey);
    }
    settings.flush();
    m_changed();
}

} // namespace tessaly
