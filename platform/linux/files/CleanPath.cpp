#include "platform/linux/files/CleanPath.hpp"

namespace tessaly {

std::string cleanPath(std::string_view path)
{
    std::string clean;
    for (const char byte : path) {
        if (byte != '/' || !clean.ends_with('/')) {
            clean += byte;
        }
    }
    if (clean.size() > 1 && clean.ends_with('/')) {
        clean.pop_back();
    }
    return clean;
}

std::string folderOf(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string_view::npos ? "/" : std::string(path.substr(0, slash));
}

std::string joinedPath(std::string_view folder, std::string_view name)
{
    std::string path(folder);
    if (folder != "/") {
        path += '/';
    }
    return path += name;
}

std::string nameOf(std::string_view path)
{
    return std::string(path == "/" ? path : path.substr(path.rfind('/') + 1));
}

} // namespace tessaly
