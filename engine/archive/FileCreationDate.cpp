#include "engine/archive/FileCreationDate.hpp"

#include <cerrno>
#include <chrono>

#include <fcntl.h>
#include <sys/stat.h>

namespace tessaly::archive {

namespace {

Timestamp timestampOf(const statx_timestamp &time)
{
    using namespace std::chrono;
    // Archived dates count from 2001, the system's from 1970.
    const sys_seconds reference = sys_days{2001y / January / 1};
    const seconds sinceReference = seconds(time.tv_sec) - reference.time_since_epoch();
    constexpr double nanosecondsOfSecond = 1e9;
    return {static_cast<double>(sinceReference.count()) + time.tv_nsec / nanosecondsOfSecond};
}

} // namespace

std::optional<Timestamp> creationDateOf(const struct statx &file)
{
    // Whatever else lies at the path is not a scan file.
    if (!S_ISREG(file.stx_mode)) {
        return std::nullopt;
    }
    // Some file systems claim to record it and report 0.
    if ((file.stx_mask & STATX_BTIME) != 0 && file.stx_btime.tv_sec != 0) {
        return timestampOf(file.stx_btime);
    }
    return timestampOf(file.stx_mtime);
}

std::optional<Timestamp> fileCreationDate(const std::string &path)
{
    struct statx file = {};
    int answer = -1;
    do {
        answer = statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT,
                       STATX_TYPE | STATX_MTIME | STATX_BTIME, &file);
    } while (answer != 0 && errno == EINTR);
    return answer == 0 ? creationDateOf(file) : std::nullopt;
}

} // namespace tessaly::archive
