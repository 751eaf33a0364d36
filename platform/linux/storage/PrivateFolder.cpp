#include "platform/linux/storage/PrivateFolder.hpp"

#include "engine/tree/FilePath.hpp"

#include <cerrno>

#include <sys/stat.h>

namespace tessaly {

namespace {

std::error_code makeOne(const std::string &path)
{
    // Tried first and looked at afterwards: another process may make the same folder in between.
    if (mkdir(path.c_str(), S_IRWXU) == 0) {
        return {};
    }
    if (errno != EEXIST) {
        return {errno, std::system_category()};
    }
    struct stat status = {};
    // stat() and not lstat(): a link to a folder is one as well.
    if (stat(path.c_str(), &status) != 0) {
        return {errno, std::system_category()};
    }
    return {S_ISDIR(status.st_mode) ? 0 : ENOTDIR, std::system_category()};
}

} // namespace

std::error_code makePrivateFolder(const std::string &path)
{
    // From the end: asking for a folder above that is there may not be allowed.
    std::error_code error = makeOne(path);
    const std::string parent = tree::parentPath(path);
    if (error != std::errc::no_such_file_or_directory || parent.empty() || parent == "/") {
        return error;
    }
    error = makePrivateFolder(parent);
    return error ? error : makeOne(path);
}

} // namespace tessaly
