#include "engine/tree/FilePath.hpp"

#include <algorithm>

namespace tessaly::tree {

namespace {

/// The path without slashes at its end; "/" for a path of slashes alone.
std::string_view withoutEndingSlashes(std::string_view path)
{
    const std::size_t last = path.find_last_not_of('/');
    return last == std::string_view::npos ? path.substr(0, 1) : path.substr(0, last + 1);
}

} // namespace

std::string cleanPath(std::string_view path)
{
    std::string clean(withoutEndingSlashes(path));
    const auto isDoubled = [](char a, char b) { return a == '/' && b == '/'; };
    // "." and ".." stay: ".." after a link leads to another folder than the text says.
    clean.erase(std::unique(clean.begin(), clean.end(), isDoubled), clean.end());
    return clean;
}

std::string parentPath(std::string_view path)
{
    // std::filesystem::path names "/a" as the folder above "/a/".
    const std::size_t slash = withoutEndingSlashes(path).rfind('/');
    return slash == std::string_view::npos
               ? std::string()
               : std::string(withoutEndingSlashes(path.substr(0, slash + 1)));
}

std::string containingFolder(std::string_view path)
{
    std::string folder = parentPath(path);
    return folder.empty() ? "." : folder;
}

std::string fileName(std::string_view path)
{
    path = withoutEndingSlashes(path);
    // Without a slash rfind() is npos, and npos + 1 is 0: all of the path.
    return std::string(path == "/" ? path : path.substr(path.rfind('/') + 1));
}

std::string joinPath(std::string_view folder, std::string_view name)
{
    std::string path(folder);
    if (!path.ends_with('/')) {
        path += '/';
    }
    return path += name;
}

} // namespace tessaly::tree
