#include "tests/engine/tree/TreeLines.hpp"

#include "engine/tree/TreeWalk.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include <dirent.h>

namespace tessaly {

namespace {

struct LineWriter {
    std::vector<std::string> lines;
    std::vector<std::size_t> lengths;
    std::vector<const tree::LUMFileContainer *> folders;
    std::string path;

    void file(const tree::LUMFileItem &item)
    {
        lines.push_back(path + std::string(item.itemName()) + ' ' +
                        std::to_string(item.itemSize()));
    }
    void enter(const tree::LUMFileContainer &folder)
    {
        EXPECT_EQ(folder.itemSize(), 0U);
        EXPECT_EQ(folder.parentContainer(), folders.empty() ? nullptr : folders.back());
        lengths.push_back(path.size());
        if (!folders.empty()) {
            path += folder.itemName();
            path += '/';
            lines.push_back(path);
        }
        folders.push_back(&folder);
    }
    void leave(const tree::LUMFileContainer & /*folder*/)
    {
        path.resize(lengths.back());
        lengths.pop_back();
        folders.pop_back();
    }
};

} // namespace

std::vector<std::string> treeLines(const tree::LUMFileContainer &root)
{
    LineWriter writer;
    tree::walkTree(root, writer);
    std::sort(writer.lines.begin(), writer.lines.end());
    return std::move(writer.lines);
}

std::vector<std::string> childNames(const tree::LUMFileContainer &folder)
{
    std::vector<std::string> names;
    for (const tree::LUMFileItem &child : folder.subitems()) {
        names.emplace_back(child.itemName());
    }
    return names;
}

std::vector<std::string> listedNames(const std::string &path)
{
    std::vector<std::string> names;
    DIR *folder = opendir(path.c_str());
    EXPECT_NE(folder, nullptr) << path;
    while (const dirent *entry = readdir(folder)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    closedir(folder);
    return names;
}

const tree::LUMFileItem *childNamed(const tree::LUMFileContainer &folder, std::string_view name)
{
    for (const tree::LUMFileItem &child : folder.subitems()) {
        if (child.itemName() == name) {
            return &child;
        }
    }
    return nullptr;
}

std::shared_ptr<const tree::LUMFileContainer> scanned(std::string_view path,
                                                      scan::ScanSystem system)
{
    scan::LUMThreadedScanner scanner(std::move(system));
    scanner.scanRootFolder(path);
    scanner.waitUntilFinished();
    EXPECT_EQ(scanner.scanThreadCount(), 0);
    return scanner.rootContainer();
}

} // namespace tessaly
