#include "tests/platform/linux/FilesOnDisk.hpp"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include <sys/stat.h>

namespace tessaly {

namespace {

[[noreturn]] void fail(const std::string &path)
{
    throw std::system_error(errno, std::system_category(), path);
}

struct stat statusOf(const std::string &path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        fail(path);
    }
    return status;
}

} // namespace

std::string textOfFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        fail(path);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeFile(const std::string &path, std::string_view text)
{
    std::ofstream file(path, std::ios::binary);
    if (!(file << text << std::flush)) {
        fail(path);
    }
}

std::vector<std::string> namesIn(const std::string &folder)
{
    std::vector<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().native());
    }
    std::sort(names.begin(), names.end());
    return names;
}

mode_t modeOf(const std::string &path)
{
    return statusOf(path).st_mode & 07777U;
}

ino_t inodeOf(const std::string &path)
{
    return statusOf(path).st_ino;
}

} // namespace tessaly
