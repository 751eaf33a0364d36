#pragma once

#include <optional>
#include <string>

namespace tessaly {

/// Has a FUSE file system unmounted by FUSE's own program (fusermount3, or fusermount), which lets
/// its owner do that. Waits for the outcome.
///
/// Threads: any, better not one with windows.
/// Errors:  returns what went wrong, as bytes; nothing when it is unmounted.
[[nodiscard]] std::optional<std::string> unmountFuse(const std::string &mountPoint);

/// The same for a FUSE file system whose program does not answer: a lazy unmount. It leaves the
/// list of mounts at once; the kernel destroys it when its last user is gone.
[[nodiscard]] std::optional<std::string> detachFuse(const std::string &mountPoint);

/// Unmounts by "umount" exactly what is mounted at that place: "umount" asks no helper, which
/// could take another place where the same file system is mounted. Only root may do that,
/// unless fstab lets users unmount there.
[[nodiscard]] std::optional<std::string> unmountThere(const std::string &mountPoint);

/// Unmounts by "umount" a file system that fstab lets users mount and unmount.
[[nodiscard]] std::optional<std::string> unmountByUser(const std::string &mountPoint);

} // namespace tessaly
