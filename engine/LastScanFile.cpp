#include "engine/LastScanFile.hpp"

#include "engine/ScanFileWriter.hpp"
#include "engine/SetAsideFile.hpp"

#include <utility>

#include <sys/stat.h>

namespace tessaly {

LastScanFile::LastScanFile(std::string path, FileCalls &calls)
    : m_path(std::move(path)), m_keptPath(m_path + ".kept"), m_calls(calls)
{
}

Result<Done, ArchiveError> LastScanFile::replace(const LUMFileContainer &root, Former former)
{
    if (former == Former::kept) {
        keepFormer();
        return replaceDeleting(root);
    }
    auto written = replaceDeleting(root);
    if (written) {
        m_calls.unlink(m_keptPath.c_str());
    }
    return written;
}

Result<Done, ArchiveError> LastScanFile::replaceDeleting(const LUMFileContainer &root)
{
    SetAsideFile former(m_path, m_calls);
    auto written = writeScanFile(root, m_path, m_calls);
    if (!written) {
        former.discard(); // the disk may not have room for both
        written = writeScanFile(root, m_path, m_calls);
    }
    return written;
}

void LastScanFile::keepFormer()
{
    struct stat status = {};
    if (m_calls.lstat(m_path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode)) {
        // Where one is kept already, the file in its place is of a scan that found nothing.
        (void)m_calls.renameToFree(m_path.c_str(), m_keptPath.c_str());
    }
}

void LastScanFile::putBack()
{
    SetAsideFile::putBack(m_path, m_calls);
    (void)m_calls.renameToFree(m_keptPath.c_str(), m_path.c_str());
}

} // namespace tessaly
