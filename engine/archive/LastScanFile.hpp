#pragma once

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/FileCalls.hpp"
#include "engine/archive/Result.hpp"
#include "engine/tree/LUMFileContainer.hpp"

#include <cstdint>
#include <string>

namespace tessaly::archive {

/// The scan file that every completed scan of a folder replaces.
///
/// The former file is deleted first, so that its date is the new scan's; but see SetAsideFile for
/// how it survives a kill on the way. A scan that could not even open its folder does not make the
/// former result outdated: that file is then kept with ".kept" added to its name, until a scan that
/// could open the folder replaces both. Of two scans that found something the newer is kept; if it
/// cannot be moved, it is not replaced.
///
/// Paths:   bytes as the system takes them.
/// Threads: one at a time.
class LastScanFile final {
public:
    /// What becomes of the file that is there.
    enum class Former : std::uint8_t { deleted, kept };

    /// `calls` must outlive this.
    explicit LastScanFile(std::string path, FileCalls &calls = FileCalls::system());

    /// Replaces the former file by the tree. After a failure there is no file at the path, except
    /// for a former one that was to be kept and could not be moved; a former one that was kept is
    /// restored by putBack().
    [[nodiscard]] Result<Done, ArchiveError> replace(const tree::LUMFileContainer &root,
                                                     Former former);

    /// Restores the former file when a program was killed, or failed to write, and left none. Call
    /// it before the file is read for the first time.
    void putBack();

    [[nodiscard]] const std::string &path() const noexcept { return m_path; }

private:
    [[nodiscard]] Result<Done, ArchiveError> replaceDeleting(const tree::LUMFileContainer &root);
    [[nodiscard]] Result<Done, ArchiveError> keepFormer();

    const std::string m_path;
    const std::string m_keptPath;
    FileCalls &m_calls;
};

} // namespace tessaly::archive
