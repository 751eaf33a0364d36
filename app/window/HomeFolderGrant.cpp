#include "app/window/HomeFolderGrant.hpp"

#include "app/delegate/SettingsKeys.hpp"
#include "platform/FileUrl.hpp"
#include "platform/FolderChooser.hpp"
#include "platform/StoredBookmark.hpp"
#include "platform/UserAccount.hpp"

#include <QCoreApplication>
#include <QString>

#include <optional>
#include <string>
#include <utility>

namespace tessaly {

namespace {

/// No bookmark can be made of it: it has no scheme.
constexpr auto noFolder = "/Temp";

} // namespace

HomeFolderGrant::HomeFolderGrant(QWidget &window, const Services &services,
                                 std::function<void()> changed)
    : m_window(window), m_services(services), m_changed(std::move(changed))
{
}

void HomeFolderGrant::customHomeFolder()
{
    m_services.folderChooser.chooseFolder(
        m_window,
        {m_services.account.homeFolder(),
         QCoreApplication::translate("HomeFolderGrant", "Save").toStdString()},
        [this](const std::optional<std::string> &folder) {
            if (folder) {
                // A path without a URL gives an empty one, for which there is no bookmark either.
                store(fileUrl(*folder).value_or(std::string()));
            }
        });
}

void HomeFolderGrant::removeHomeFolder()
{
    store(noFolder);
}

void HomeFolderGrant::store(const std::string &url) const
{
    // Stored before anyone is told: the alert ends the program.
    storeBookmark(url, settings_key::homeFolder, m_services.bookmarks, m_services.settings);
    m_changed();
}

} // namespace tessaly
