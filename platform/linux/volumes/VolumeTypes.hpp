#pragma once

#include <string>
#include <string_view>

namespace tessaly {

// What file systems are, by the kernel's names for their types ("ext4", "fuse.sshfs").

/// Whether file systems of that type hold what users keep: disks, network shares, and what FUSE
/// programs show. Not: views into the kernel, memory, what a desktop or a container has for its own
/// ends, and the images in which programs are delivered.
[[nodiscard]] bool holdsUserData(std::string_view type);

/// Whether a program serves the file system.
[[nodiscard]] bool isFuse(std::string_view type);

/// Whether mounting a folder of such a file system, and nothing else of it, is the usual thing.
[[nodiscard]] bool isMountedByFolder(std::string_view type);

/// The name of the type among VolumeInformation's: "hfs" for both kinds of HFS, "afpfs" for AFP
/// shares, "msdos" for FAT; the kernel's own name for all others.
[[nodiscard]] std::string volumeTypeName(std::string_view type);

} // namespace tessaly
