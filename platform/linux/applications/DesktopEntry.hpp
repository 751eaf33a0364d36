#pragma once

#include "platform/linux/applications/KeyFile.hpp"

#include <string>
#include <vector>

namespace tessaly {

struct DesktopPlaces;

/// A program as its desktop file describes it, after freedesktop.org's Desktop Entry 1.5,
/// https://specifications.freedesktop.org/desktop-entry-spec/latest/.
///
/// Threads: any, for reading.
class DesktopEntry {
public:
    /// `id`: by which other files refer to it, "org.example.Editor.desktop".
    DesktopEntry(KeyFile file, std::string id, std::string path);

    [[nodiscard]] const std::string &id() const noexcept { return m_id; }

    [[nodiscard]] bool hasCategory(std::string_view category) const;
    [[nodiscard]] bool hasMimeType(std::string_view type) const;

    /// Whether menus show it on any of these desktops ("OnlyShowIn", "NotShowIn", "NoDisplay").
    [[nodiscard]] bool isShownIn(const std::vector<std::string> &desktops) const;

    /// Whether it can be started: an application that is not "Hidden", that is installed ("TryExec"
    /// and the program itself are there), and that needs no terminal.
    [[nodiscard]] bool canStart(const DesktopPlaces &places) const;

    /// The program and its arguments, for no files: the field codes for files are left out, the
    /// others replaced. Empty when "Exec" breaks the rules: no shell is ever involved, and
    /// characters that are special to one have to be quoted.
    [[nodiscard]] std::vector<std::string> command() const;

    /// The working directory that it wants; empty when it names none.
    [[nodiscard]] std::string workingFolder() const { return text("Path"); }

private:
    [[nodiscard]] std::string text(const char *key) const;
    [[nodiscard]] bool flag(const char *key) const;
    [[nodiscard]] bool listContains(const char *key, std::string_view item) const;

    KeyFile m_file;
    std::string m_id;
    std::string m_path;
};

} // namespace tessaly
