#include "platform/linux/applications/DefaultApplications.hpp"

#include "platform/linux/applications/DesktopEntries.hpp"

#include <algorithm>
#include <span>
#include <string_view>

namespace tessaly {

namespace {

using namespace std::string_view_literals;

/// A program and its desktop, by the name in XDG_CURRENT_DESKTOP.
struct KnownProgram {
    std::string_view desktop; ///< empty when it belongs to none
    std::string_view id;
};

// Ids change between releases of a desktop, so several of them may stand for one program. The newer
// one comes first.
constexpr KnownProgram settingsPrograms[] = {
    {"GNOME"sv, "org.gnome.Settings.desktop"sv},
    {"GNOME"sv, "gnome-control-center.desktop"sv},
    {"Unity"sv, "unity-control-center.desktop"sv},
    {"Budgie"sv, "org.buddiesofbudgie.BudgieControlCenter.desktop"sv},
    {"Budgie"sv, "budgie-control-center.desktop"sv},
    {"Pantheon"sv, "io.elementary.settings.desktop"sv},
    {"Pantheon"sv, "io.elementary.switchboard.desktop"sv},
    {"COSMIC"sv, "com.system76.CosmicSettings.desktop"sv},
    {"KDE"sv, "systemsettings.desktop"sv},
    {"KDE"sv, "kdesystemsettings.desktop"sv},
    {"XFCE"sv, "xfce-settings-manager.desktop"sv},
    {"MATE"sv, "matecc.desktop"sv},
    {"MATE"sv, "mate-control-center.desktop"sv},
    {"X-Cinnamon"sv, "cinnamon-settings.desktop"sv},
    {"Cinnamon"sv, "cinnamon-settings.desktop"sv},
    {"LXQt"sv, "lxqt-config.desktop"sv},
    {"Deepin"sv, "org.deepin.dde.control-center.desktop"sv},
    {"Deepin"sv, "dde-control-center.desktop"sv},
    {"DDE"sv, "org.deepin.dde.control-center.desktop"sv},
    {"DDE"sv, "dde-control-center.desktop"sv},
};

constexpr KnownProgram diskUtilities[] = {
    {"KDE"sv, "org.kde.partitionmanager.desktop"sv},
    {"LXQt"sv, "org.kde.partitionmanager.desktop"sv},
    {"Deepin"sv, "deepin-diskmanager.desktop"sv},
    {"DDE"sv, "deepin-diskmanager.desktop"sv},
    {""sv, "org.gnome.DiskUtility.desktop"sv},
    {""sv, "gnome-disks.desktop"sv},
    {""sv, "org.kde.partitionmanager.desktop"sv},
    {""sv, "blivet-gui.desktop"sv},
    {""sv, "gparted.desktop"sv},
};

/// The first one that is installed: in the order of the desktop's names, then of the table. An
/// entry that menus do not show on this desktop is left out, since such programs need their own
/// desktop.
std::optional<DesktopEntry> knownProgram(std::span<const KnownProgram> table,
                                         const DesktopEntries &entries)
{
    std::vector<std::string> desktops = entries.places().desktops;
    desktops.emplace_back(); // the programs that belong to no desktop come last
    for (const std::string &desktop : desktops) {
        for (const KnownProgram &known : table) {
            if (known.desktop != desktop) {
                continue;
            }
            auto entry = entries.program(std::string(known.id));
            if (entry && entry->isShownIn(entries.places().desktops)) {
                return entry;
            }
        }
    }
    return std::nullopt;
}

/// Whether the program has the settings of one thing only, such as printers.
bool isPanel(const DesktopEntry &entry)
{
    constexpr std::string_view kinds[] = {
        "DesktopSettings"sv,        "HardwareSettings"sv, "PackageManager"sv,       "Printing"sv,
        "X-GNOME-Settings-Panel"sv, "Accessibility"sv,    "X-XFCE-SettingsDialog"sv};
    return std::any_of(std::begin(kinds), std::end(kinds),
                       [&](std::string_view kind) { return entry.hasCategory(kind); });
}

std::optional<DesktopEntry> settingsProgram(const DesktopEntries &entries)
{
    // The table first: by the category alone many tools call themselves settings.
    if (auto known = knownProgram(settingsPrograms, entries)) {
        return known;
    }
    // A desktop that is not in the table: the settings of another one, if they show here, or any.
    for (const KnownProgram &known : settingsPrograms) {
        auto entry = entries.program(std::string(known.id));
        if (entry && entry->isShownIn(entries.places().desktops)) {
            return entry;
        }
    }
    for (DesktopEntry &entry : entries.programs()) {
        if (entry.hasCategory("Settings") && !isPanel(entry) &&
            entry.isShownIn(entries.places().desktops)) {
            return std::move(entry);
        }
    }
    return std::nullopt;
}

std::optional<DesktopEntry> fileManager(const DesktopEntries &entries)
{
    // Editors and disk tools claim folders, too; without a choice the category decides.
    constexpr auto category = "FileManager"sv;
    if (auto chosen = entries.defaultProgram("inode/directory", category)) {
        return chosen;
    }
    for (DesktopEntry &entry : entries.programs()) {
        if (entry.hasCategory(category) && entry.isShownIn(entries.places().desktops)) {
            return std::move(entry);
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<DesktopEntry> findApplication(DefaultApplication wanted,
                                            const DesktopEntries &entries)
{
    switch (wanted) {
    case DefaultApplication::settings:
        return settingsProgram(entries);
    case DefaultApplication::diskUtility:
        // Only by the table: no category tells disk utilities from cleaners and benchmarks.
        return knownProgram(diskUtilities, entries);
    case DefaultApplication::fileManager:
        break;
    }
    return fileManager(entries);
}

} // namespace tessaly
