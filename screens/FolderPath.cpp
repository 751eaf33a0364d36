#include "screens/FolderPath.hpp"

#include <algorithm>

namespace tessaly {

std::string standardPath(std::string path)
{
    path.erase(
        std::unique(path.begin(), path.end(), [](char a, char b) { return a == '/' && b == '/'; }),
        path.end());
    if (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    return path;
}

std::string withoutLastComponent(const std::string &path)
{
    const std::size_t end = path.find_last_not_of('/');
    if (end == std::string::npos) {
        return path.empty() ? "" : "/";
    }
    const std::size_t slash = path.rfind('/', end);
    if (slash == std::string::npos) {
        return "";
    }
    const std::size_t last = path.find_last_not_of('/', slash);
    return last == std::string::npos ? "/" : path.substr(0, last + 1);
}

} // namespace tessaly
