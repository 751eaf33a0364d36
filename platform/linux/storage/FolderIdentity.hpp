#pragma once

#include <map>
#include <optional>
#include <string>

struct statfs;
struct statx;

namespace tessaly {

/// What tells a folder from every other one, also from one that gets its name later: properties, as
/// bytes under their names, of which only those are here that its file system gives and keeps when
/// the computer starts again or the drive is plugged in elsewhere.
///
/// - "fileSystem": the type of the file system. Always there.
/// - "volume": which file system it is, where that lies on the disk itself (ext2 to ext4).
/// - "inode" and "handle": not on FAT, FUSE, network shares and the like, which number their files
///   differently at each mount. The handle tells a folder from a later one with the same number,
///   where the file system has handles.
/// - "birth": when it was made, where that is kept and does not depend on the time zone.
///
/// The number of the device is none of them: it depends on the order in which drives are found. On
/// file systems that keep nothing but the type, a folder is known by its path alone.
using FolderIdentity = std::map<std::string, std::string, std::less<>>;

/// The identity of the folder at `path` (bytes as the system takes them), or of the one that a
/// symbolic link there leads to. Nothing when no folder is there, or none can be reached.
[[nodiscard]] std::optional<FolderIdentity> folderIdentity(const std::string &path);

/// The identity of a folder of which the system says this. `handle` is empty when it gives none.
[[nodiscard]] FolderIdentity folderIdentity(const struct statx &folder,
                                            const struct statfs &fileSystem,
                                            const std::string &handle);

/// Whether a folder with the identity `present` can be the one known by `recorded`: it has at least
/// the same properties.
[[nodiscard]] bool isSameFolder(const FolderIdentity &recorded, const FolderIdentity &present);

} // namespace tessaly
