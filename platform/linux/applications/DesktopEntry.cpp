#include "platform/linux/applications/DesktopEntry.hpp"

#include "platform/linux/applications/DesktopPlaces.hpp"
#include "platform/linux/applications/ExecLine.hpp"
#include "platform/linux/applications/KeyFile.hpp"

#include <algorithm>
#include <utility>

namespace tessaly {

namespace {

constexpr auto group = "Desktop Entry";

bool contains(const std::vector<std::string> &list, std::string_view item)
{
    return std::find(list.begin(), list.end(), item) != list.end();
}

} // namespace

DesktopEntry::DesktopEntry(const KeyFile &file, std::string id, std::string path)
    : m_id(std::move(id)), m_path(std::move(path)), m_type(file.text(group, "Type")),
      m_name(file.text(group, "Name")), m_icon(file.text(group, "Icon")),
      m_exec(file.text(group, "Exec")), m_tryExec(file.text(group, "TryExec")),
      m_workingFolder(file.text(group, "Path")), m_categories(file.list(group, "Categories")),
      m_mimeTypes(file.list(group, "MimeType")), m_onlyShowIn(file.list(group, "OnlyShowIn")),
      m_notShowIn(file.list(group, "NotShowIn")), m_isHidden(file.flag(group, "Hidden")),
      m_isDisplayed(!file.flag(group, "NoDisplay")), m_needsTerminal(file.flag(group, "Terminal"))
{
}

bool DesktopEntry::hasCategory(std::string_view category) const
{
    return contains(m_categories, category);
}

bool DesktopEntry::hasMimeType(std::string_view type) const
{
    return contains(m_mimeTypes, type);
}

bool DesktopEntry::isShownIn(const std::vector<std::string> &desktops) const
{
    // The first of the desktop's names that is mentioned decides.
    for (const std::string &desktop : desktops) {
        if (contains(m_onlyShowIn, desktop)) {
            return m_isDisplayed;
        }
        if (contains(m_notShowIn, desktop)) {
            return false;
        }
    }
    return m_isDisplayed && m_onlyShowIn.empty();
}

bool DesktopEntry::canStart(const DesktopPlaces &places) const
{
    if (m_type != "Application" || m_isHidden || m_needsTerminal) {
        return false;
    }
    const std::vector<std::string> words = command();
    return !words.empty() && places.hasProgram(words.front()) &&
           (m_tryExec.empty() || places.hasProgram(m_tryExec));
}

std::vector<std::string> DesktopEntry::command() const
{
    return wordsOfExecLine(m_exec, {m_name, m_icon, m_path});
}

} // namespace tessaly
