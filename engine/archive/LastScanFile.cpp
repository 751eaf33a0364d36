#include "engine/archive/LastScanFile.hpp"

#include "engine/archive/ScanFileReader.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "engine/archive/SetAsideFile.hpp"

#include <cerrno>
#include <utility>

#include <sys/stat.h>

namespace tessaly::archive {

namespace {

/// Whether the file holds a scan that found something. Reads the whole file.
bool holdsEntries(const std::string &path)
{
    const auto tree = readScanFile(path);
    return tree && !tree.value()->root().subitems().empty();
}

} // namespace

LastScanFile::LastScanFile(std::string path, FileCalls &calls)
    : m_path(std::move(path)), m_keptPath(m_path + ".kept"), m_calls(calls)
{
}

Result<Done, ArchiveError> LastScanFile::replace(const tree::LUMFileContainer &root, Former former)
{
    if (former == Former::kept) {
        const auto kept = keepFormer();
        return kept ? replaceDeleting(root) : kept;
    }
    auto written = replaceDeleting(root);
    if (written) {
        m_calls.unlink(m_keptPath.c_str());
    }
    return written;
}

Result<Done, ArchiveError> LastScanFile::replaceDeleting(const tree::LUMFileContainer &root)
{
    SetAsideFile former(m_path, m_calls);
    auto written = writeScanFile(root, m_path, m_calls);
    if (!written) {
        former.discard(); // perhaps the disk has no room for both
        written = writeScanFile(root, m_path, m_calls);
    }
    return written;
}

Result<Done, ArchiveError> LastScanFile::keepFormer()
{
    struct stat status = {};
    if (m_calls.lstat(m_path.c_str(), &status) != 0 || S_ISDIR(status.st_mode) ||
        m_calls.renameToFree(m_path.c_str(), m_keptPath.c_str()) == 0) {
        return Done{};
    }
    // When one is kept already, the current file usually is of a scan that could not open the
    // folder and holds nothing. But a process that was killed right after it had written a good
    // scan leaves an older one kept, too: then the newer one is.
    if (holdsEntries(m_path) && m_calls.rename(m_path.c_str(), m_keptPath.c_str()) != 0) {
        return systemError(ArchiveError::Kind::unwritable, "cannot keep " + m_path, errno);
    }
    return Done{};
}

void LastScanFile::putBack()
{
    SetAsideFile::putBack(m_path, m_calls);
    (void)m_calls.renameToFree(m_keptPath.c_str(), m_path.c_str());
}

} // namespace tessaly::archive
