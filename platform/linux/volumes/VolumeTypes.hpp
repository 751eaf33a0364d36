#pragma once

#include <string>
#include <string_view>

namespace tessaly {

// What file systems are, by the kernel's names for their types ("ext4", "fuse.sshfs").

/// Whether file systems of that type hold what users keep: disks, network shares, and what FUSE
/// programs show. Not kernel file systems, memory, what desktops and containers mount for
/// themselves, and images in which programs are delivered.
[[nodiscard]] bool holdsUserData(std::string_view type);

/// Whether a program serves the file system.
[[nodiscard]] bool isFuse(std::string_view type);

/// Whether file systems of that type are usually mounted by a folder of theirs, as shares are.
[[nodiscard]] bool isMountedByFolder(std::string_view type);

/// The name of the type among VolumeInformation's: "hfs" for both kinds of HFS, "afpfs" for AFP
/// shares, "msdos" for FAT; the kernel's own name for all others.
[[nodiscard]] std::string volumeTypeName(std::string_view type);

} // namespace tessaly
