#pragma once

#include <string>

namespace tessaly {

/// Mounts of this process's own, which no other process sees and which end with it, where it may
/// have such. For main(), before there is a second thread.
void takeOwnMounts();

/// Whether takeOwnMounts() has got them, so that a test may mount what it likes.
[[nodiscard]] bool hasOwnMounts();

/// Something that is mounted for as long as this lives. A mount that fails throws
/// std::system_error.
///
/// Requires: hasOwnMounts().
class ScopedMount {
public:
    /// `options`: of the file system.
    ScopedMount(const std::string &source, std::string path, const char *type,
                unsigned long flags = 0, const std::string &options = {});
    ~ScopedMount();
    ScopedMount(const ScopedMount &) = delete;
    ScopedMount &operator=(const ScopedMount &) = delete;

private:
    std::string m_path;
};

} // namespace tessaly
