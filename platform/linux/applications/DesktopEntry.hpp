#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

class KeyFile;
struct DesktopPlaces;

/// A program as its desktop file describes it, after freedesktop.org's Desktop Entry 1.5,
/// https://specifications.freedesktop.org/desktop-entry-spec/latest/.
///
/// Threads: any, for reading.
class DesktopEntry {
public:
    /// `id`: what other files know it by, "org.example.Editor.desktop".
    DesktopEntry(const KeyFile &file, std::string id, std::string path);

    [[nodiscard]] const std::string &id() const noexcept { return m_id; }

    [[nodiscard]] bool hasCategory(std::string_view category) const;
    [[nodiscard]] bool hasMimeType(std::string_view type) const;

    /// Whether the user is to see it in menus, on any of these desktops ("OnlyShowIn", "NotShowIn",
    /// "NoDisplay").
    [[nodiscard]] bool isShownIn(const std::vector<std::string> &desktops) const;

    /// Whether it can be started: an application that is not "Hidden", that is installed ("TryExec"
    /// and the program itself are there), and that needs no terminal.
    [[nodiscard]] bool canStart(const DesktopPlaces &places) const;

    /// The program and its arguments, for no files: of the field codes those for files are left
    /// out, and the others replaced. Empty when "Exec" breaks the rules: nothing is ever handed to
    /// a shell, and what a shell would take apart has to be quoted.
    [[nodiscard]] std::vector<std::string> command() const;

    /// Where it wants to be started; empty when it says nothing.
    [[nodiscard]] const std::string &workingFolder() const noexcept { return m_workingFolder; }

private:
    std::string m_id;
    std::string m_path;
    std::string m_type;
    std::string m_name;
    std::string m_icon;
    std::string m_exec;
    std::string m_tryExec;
    std::string m_workingFolder;
    std::vector<std::string> m_categories;
    std::vector<std::string> m_mimeTypes;
    std::vector<std::string> m_onlyShowIn;
    std::vector<std::string> m_notShowIn;
    bool m_isHidden;
    bool m_isDisplayed;
    bool m_needsTerminal;
};

} // namespace tessaly
