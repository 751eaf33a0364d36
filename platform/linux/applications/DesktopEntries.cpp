#include "platform/linux/applications/DesktopEntries.hpp"

#include "platform/linux/applications/KeyFile.hpp"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

namespace tessaly {

namespace {

namespace fs = std::filesystem;

constexpr auto folderOfEntries = "/applications";
constexpr std::string_view ending = ".desktop";
constexpr int maxDepth = 8; // far deeper than entries are sorted; ends cycles of bind mounts

/// The desktop files in a folder and its subfolders as ids and paths, by id. "sub/name.desktop" has
/// the id "sub-name.desktop".
std::map<std::string, std::string> filesIn(const std::string &folder)
{
    std::map<std::string, std::string> files;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied,
                                           error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (entry.depth() >= maxDepth) {
            entry.disable_recursion_pending();
        }
        const std::string &path = entry->path().native();
        // What kind of file it is, KeyFile finds out when it reads it.
        if (path.ends_with(ending)) {
            std::string id = path.substr(folder.size() + 1);
            std::replace(id.begin(), id.end(), '/', '-');
            files.emplace(std::move(id), path);
        }
    }
    return files;
}

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return text;
}

} // namespace

DesktopEntries::DesktopEntries(DesktopPlaces places) : m_places(std::move(places))
{
    for (const std::string &folder : m_places.dataFolders) {
        for (const auto &[id, path] : filesIn(folder + folderOfEntries)) {
            // Only the first file of an id: it hides the others even when it cannot be started.
            if (m_paths.emplace(id, path).second) {
                m_files.emplace_back(id, path);
            }
        }
    }
}

std::optional<DesktopEntry> DesktopEntries::program(const std::string &id) const
{
    const auto path = m_paths.find(id);
    if (path == m_paths.end()) {
        return std::nullopt;
    }
    // Read when it is asked for, and not kept: most questions need a few of hundreds.
    auto file = KeyFile::read(path->second);
    if (!file) {
        return std::nullopt;
    }
    DesktopEntry entry(std::move(*file), id, path->second);
    return entry.canStart(m_places) ? std::optional(std::move(entry)) : std::nullopt;
}

std::vector<DesktopEntry> DesktopEntries::programs() const
{
    std::vector<DesktopEntry> found;
    for (const auto &[id, path] : m_files) {
        if (auto entry = program(id)) {
            found.push_back(std::move(*entry));
        }
    }
    return found;
}

std::optional<DesktopEntry> DesktopEntries::defaultProgram(const std::string &mimeType,
                                                           std::string_view preferredCategory) const
{
    std::vector<KeyFile> lists;
    for (const std::string &path : listsOfDefaults()) {
        if (auto list = KeyFile::read(path)) {
            lists.push_back(std::move(*list));
        }
    }
    // A list names several programs in case the first is not installed.
    for (const KeyFile &list : lists) {
        for (const std::string &id : list.list("Default Applications", mimeType)) {
            if (auto entry = program(id)) {
                return entry;
            }
        }
    }
    std::set<std::string> removed; // by this list or a more important one
    for (const KeyFile &list : lists) {
        for (const std::string &id : list.list("Added Associations", mimeType)) {
            if (auto entry = removed.contains(id) ? std::nullopt : program(id)) {
                return entry;
            }
        }
        for (std::string &id : list.list("Removed Associations", mimeType)) {
            removed.insert(std::move(id));
        }
    }
    // The files themselves and not "mimeinfo.cache", which is missing or old where programs were
    // installed by hand.
    std::optional<DesktopEntry> second;
    for (DesktopEntry &entry : programs()) {
        if (!entry.hasMimeType(mimeType) || removed.contains(entry.id())) {
            continue;
        }
        // Nobody has chosen a program, so the category is the best guess.
        if (preferredCategory.empty() || entry.hasCategory(preferredCategory)) {
            return std::move(entry);
        }
        if (!second) {
            second = std::move(entry);
        }
    }
    return second;
}

std::vector<std::string> DesktopEntries::listsOfDefaults() const
{
    std::vector<std::string> folders = m_places.configFolders;
    for (const std::string &folder : m_places.dataFolders) {
        folders.push_back(folder + folderOfEntries);
    }
    std::vector<std::string> paths;
    for (const std::string &folder : folders) {
        for (const std::string &desktop : m_places.desktops) {
            if (desktop.find('/') == std::string::npos) { // or it would lead to another folder
                paths.push_back(folder + '/' + lowerCase(desktop) + "-mimeapps.list");
            }
        }
        paths.push_back(folder + "/mimeapps.list");
    }
    return paths;
}

} // namespace tessaly
