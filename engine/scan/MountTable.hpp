#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly::scan {

/// Where the root file system is mounted.
inline constexpr std::string_view rootPath = "/";

/// A line of the kernel's list of mounts. Texts are the bytes that the kernel has. What a broken
/// line does not say is empty or 0.
struct Mount {
    int id = 0;               ///< unique for as long as the mount is there
    int parentId = 0;         ///< the mount on which this one lies
    std::uint64_t device = 0; ///< the number of the file system, as makedev() packs it
    std::string root;         ///< the folder of the file system that is shown; "/" for all of it
    std::string mountPoint;
    std::string type;         ///< of the file system, by the kernel's name
    std::string source;       ///< a device, a server's folder, or just a word
    std::string superOptions; ///< of the file system, separated by commas

    /// The value of the file system's option `name`; empty for an option without one, nothing where
    /// it has no such option.
    [[nodiscard]] std::optional<std::string_view> option(std::string_view name) const;
};

/// The kernel's list of mounts, as this process sees them, at one moment.
///
/// Threads: never changes once made; any number may read.
class MountTable {
public:
    MountTable() = default;

    /// The list in the file, which is "/proc/self/mountinfo" for the kernel's own. Nothing when it
    /// cannot be read. Does not wait for any file system.
    [[nodiscard]] static std::optional<MountTable> read(const std::string &path);
    [[nodiscard]] static MountTable fromText(std::string_view text);

    [[nodiscard]] const std::vector<Mount> &mounts() const noexcept { return m_mounts; }

    /// The mount that an absolute path without links leads into: where one covers another, the one
    /// on top. nullptr when the list has none for it. Mounts with that mount point that are not the
    /// answer cannot be reached.
    [[nodiscard]] const Mount *mountOf(std::string_view path) const;

    /// A text with what stands in it as a backslash and three octal digits (blanks, line ends,
    /// backslashes) as the bytes themselves. So are texts written in the kernel's list and in
    /// /etc/fstab.
    [[nodiscard]] static std::string unescaped(std::string_view text);

private:
    explicit MountTable(std::vector<Mount> mounts);

    std::vector<Mount> m_mounts;
    std::vector<bool> m_isTop; ///< for each mount, whether it lies on none in the list
};

} // namespace tessaly::scan
