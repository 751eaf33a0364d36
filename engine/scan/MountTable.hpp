#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly::scan {

/// Where the root file system is mounted.
inline constexpr std::string_view rootPath = "/";

/// A line of the kernel's list of mounts. Texts are the kernel's bytes, unescaped. What is missing
/// in a malformed line is empty or 0.
struct Mount {
    int id = 0;               ///< unique for as long as the mount is there
    int parentId = 0;         ///< the mount that holds the mount point
    std::uint64_t device = 0; ///< the number of the file system, as makedev() packs it
    std::string root;         ///< the folder of the file system that is mounted; "/" for all of it
    std::string mountPoint;
    std::string type;         ///< of the file system, by the kernel's name
    std::string source;       ///< a device, a server's folder, or just a word
    std::string superOptions; ///< of the file system, separated by commas

    /// The value of the file system's option `name`, empty for an option without a value. Nothing
    /// when the option is not set.
    [[nodiscard]] std::optional<std::string_view> option(std::string_view name) const;
};

/// A snapshot of the kernel's list of mounts, as this process sees them.
///
/// Threads: immutable once made; any number may read.
class MountTable {
public:
    MountTable() = default;

    /// The list in the file at `path`; the kernel's own is "/proc/self/mountinfo". Nothing when it
    /// cannot be read. Does not access any of the mounts.
    [[nodiscard]] static std::optional<MountTable> read(const std::string &path);
    [[nodiscard]] static MountTable fromText(std::string_view text);

    [[nodiscard]] const std::vector<Mount> &mounts() const noexcept { return m_mounts; }

    /// The mount that holds an absolute path without links: where one covers another, the one on
    /// top. nullptr when the list has none. Other mounts at the same mount point are hidden.
    [[nodiscard]] const Mount *mountOf(std::string_view path) const;

    /// Replaces the escapes of the kernel's list and /etc/fstab (a backslash and three octal
    /// digits, for blanks, line ends and backslashes) by their bytes.
    [[nodiscard]] static std::string unescaped(std::string_view text);

private:
    explicit MountTable(std::vector<Mount> mounts);

    std::vector<Mount> m_mounts;
    std::vector<bool> m_isTop; ///< for each mount, whether its parent is not in the list
};

} // namespace tessaly::scan
