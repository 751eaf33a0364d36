#include "platform/linux/applications/DesktopEntry.hpp"

#include "platform/linux/applications/DesktopPlaces.hpp"
#include "platform/linux/applications/ExecLine.hpp"

#include <algorithm>
#include <utility>

namespace tessaly {

namespace {

constexpr auto group = "Desktop Entry";

} // namespace

DesktopEntry::DesktopEntry(KeyFile file, std::string id, std::string path)
    : m_file(std::move(file)), m_id(std::move(id)), m_path(std::move(path))
{
}

bool DesktopEntry::hasCategory(std::string_view category) const
{
    return listContains("Categories", category);
}

bool DesktopEntry::hasMimeType(std::string_view type) const
{
    return listContains("MimeType", type);
}

bool DesktopEntry::isShownIn(const std::vector<std::string> &desktops) const
{
    // Not the same as "Hidden", which means deleted: an entry that is not displayed may be a
    // default program.
    const bool isDisplayed = !flag("NoDisplay");
    // The first of the desktop's names that is mentioned decides.
    for (const std::string &desktop : desktops) {
        // XDG_CURRENT_DESKTOP may have several names, the most specific first.
        if (listContains("OnlyShowIn", desktop)) {
            return isDisplayed;
        }
        if (listContains("NotShowIn", desktop)) {
            return false;
        }
    }
    return isDisplayed && m_file.list(group, "OnlyShowIn").empty();
}

bool DesktopEntry::canStart(const DesktopPlaces &places) const
{
    // There is no standard way to find the user's terminal program, so none is offered.
    if (text("Type") != "Application" || flag("Hidden") || flag("Terminal")) {
        return false;
    }
    const std::vector<std::string> words = command();
    const std::string required = text("TryExec");
    // Entries remain when a program is removed by hand, so the program itself is looked for, too.
    return !words.empty() && places.hasProgram(words.front()) &&
           (required.empty() || places.hasProgram(required));
}

std::vector<std::string> DesktopEntry::command() const
{
    return wordsOfExecLine(text("Exec"), {text("Name"), text("Icon"), m_path});
}

std::string DesktopEntry::text(const char *key) const
{
    return m_file.text(group, key);
}

bool DesktopEntry::flag(const char *key) const
{
    return m_file.flag(group, key);
}

bool DesktopEntry::listContains(const char *key, std::string_view item) const
{
    const std::vector<std::string> list = m_file.list(group, key);
    return std::find(list.begin(), list.end(), item) != list.end();
}

} // namespace tessaly
