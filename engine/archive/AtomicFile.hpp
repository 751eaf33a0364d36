#pragma once

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/ByteSink.hpp"
#include "engine/archive/FileCalls.hpp"
#include "engine/archive/Result.hpp"

#include <cstddef>
#include <span>
#include <string>

namespace tessaly::archive {

/// A file that takes the place of another one all at once.
///
/// open() makes a temporary file in the target's folder; write() fills it; commit() flushes it to
/// disk, renames it over the target and flushes the folder. Whatever fails or ends the process on
/// the way, the target is the complete old or the complete new file. Without commit() the temporary
/// file is removed; that of a killed process is removed by removeLeftovers() at the next start.
///
/// Target:  a regular file or none. A symbolic link is replaced itself; a folder, a device or the
///          like is refused.
/// Mode:    0600.
/// Threads: one at a time for each file. Several processes may write the same target: the last
///          commit stays.
class AtomicFile final : public ByteSink {
public:
    /// `path`: bytes as the system takes them. `calls` must outlive the file.
    explicit AtomicFile(std::string path, FileCalls &calls = FileCalls::system());
    ~AtomicFile() override;
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    Result<Done, ArchiveError> open();
    Result<Done, ArchiveError> write(std::span<const std::byte> bytes) override;
    /// After a failure the target is the old file; only when it was the flush of the folder that
    /// failed, the new file is in place but might not survive a power cut.
    Result<Done, ArchiveError> commit();

    /// Removes the temporary files in `folder` whose writers have ended.
    /// Those of running writers, in this process or another, stay: each holds a lock on its file.
    /// On file systems without locks all stay.
    static void removeLeftovers(const std::string &folder, FileCalls &calls = FileCalls::system());

private:
    [[nodiscard]] ArchiveError failure(const std::string &what, int errorNumber) const;
    [[nodiscard]] Result<Done, ArchiveError> flushFolder();
    [[nodiscard]] bool lockNewFile();
    void discard() noexcept;

    std::string m_path;
    std::string m_folder;
    std::string m_temporary; ///< empty while there is none
    FileCalls &m_calls;
    int m_descriptor = -1;
};

} // namespace tessaly::archive
