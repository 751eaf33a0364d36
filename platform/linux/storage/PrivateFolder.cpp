#include "platform/linux/storage/PrivateFolder.hpp"

#include <cerrno>

#include <sys/stat.h>

namespace tessaly {

namespace {

std::error_code makeOne(const std::string &path)
{
    if (mkdir(path.c_str(), S_IRWXU) == 0) {
        return {};
    }
    if (errno != EEXIST) {
        return {errno, std::system_category()};
    }
    struct stat status = {};
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
    const std::size_t slash = path.rfind('/');
    if (error != std::errc::no_such_file_or_directory || slash == std::string::npos || slash == 0) {
        return error;
    }
    error = makePrivateFolder(path.substr(0, slash));
    return error ? error : makeOne(path);
}

} // namespace tessaly
