#pragma once

#include "engine/archive/FileCalls.hpp"

#include <string>

namespace tessaly::archive {

/// A file that is deleted in favour of its successor, but only after the successor has been written
/// or writing it has failed.
///
/// The constructor moves the file aside, the destructor deletes it. A process that is killed in
/// between leaves the file, the successor or both; putBack() cleans up at the next start, so that
/// one of the two is there.
///
///     {
///         SetAsideFile old(path);
///         written = writeScanFile(tree, path);
///         if (!written) { // it may be that the disk has no room for both
///             old.discard();
///             written = writeScanFile(tree, path);
///         }
///     } // what lies at `path` now is the successor, or nothing
///
/// Paths:   bytes as the system takes them. The file lies beside its own place, with ".previous"
///          added to its name.
/// Errors:  ignored. A file that cannot be moved stays where it is; a folder is left alone.
/// Threads: any. Several threads and processes may do this with the same path: each holds a lock on
///          the file that it has set aside.
class SetAsideFile final {
public:
    /// `calls` must outlive this.
    explicit SetAsideFile(const std::string &path, FileCalls &calls = FileCalls::system());
    ~SetAsideFile();
    SetAsideFile(const SetAsideFile &) = delete;
    SetAsideFile &operator=(const SetAsideFile &) = delete;

    /// Deletes the file at once, for a successor that needs its room.
    void discard();

    /// Restores a file that a killed process had set aside, or deletes it when its successor is
    /// there. Leaves it alone while the process that set it aside still holds its lock.
    static void putBack(const std::string &path, FileCalls &calls = FileCalls::system());

private:
    const std::string m_aside;
    FileCalls &m_calls;
    int m_descriptor = -1; ///< of the file; holds the lock
};

} // namespace tessaly::archive
