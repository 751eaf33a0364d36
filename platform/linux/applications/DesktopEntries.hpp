#pragma once

#include "platform/linux/applications/DesktopEntry.hpp"
#include "platform/linux/applications/DesktopPlaces.hpp"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessaly {

/// The programs that the desktop files describe, with the files that were there when this was made.
///
/// A file in a more important folder hides those with the same id in the others, even when it only
/// says that the program is "Hidden".
///
/// Which program is the default for a type of files, or for a scheme of addresses
/// ("x-scheme-handler/https"), is what the files "mimeapps.list" say, in the order of the
/// Association between MIME types and applications 1.0.1,
/// https://specifications.freedesktop.org/mime-apps-spec/latest/.
///
/// Threads: one. Reads files, which may block.
/// Errors:  files that cannot be read are ignored.
class DesktopEntries {
public:
    explicit DesktopEntries(DesktopPlaces places);

    [[nodiscard]] const DesktopPlaces &places() const noexcept { return m_places; }

    /// The program with this id; nothing when there is none or it cannot be started.
    [[nodiscard]] std::optional<DesktopEntry> program(const std::string &id) const;

    /// Those that can be started, the ones in more important folders first, then by id.
    [[nodiscard]] std::vector<DesktopEntry> programs() const;

    /// What the user or the desktop has chosen for the type. Without a choice, a program whose file
    /// lists the type, preferably one of the category.
    [[nodiscard]] std::optional<DesktopEntry>
    defaultProgram(const std::string &mimeType, std::string_view preferredCategory = {}) const;

private:
    [[nodiscard]] std::vector<std::string> listsOfDefaults() const;

    DesktopPlaces m_places;
    std::vector<std::pair<std::string, std::string>>
        m_files;                                ///< ids and paths, by falling importance
    std::map<std::string, std::string> m_paths; ///< the same by id
};

} // namespace tessaly
