#include "bench/MadeTrees.hpp"

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <random>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace tessaly {

namespace {

constexpr std::size_t childrenPerFolder = 17;
constexpr std::size_t foldersPerFolder = 6;

/// Names and sizes as they are met on disks: many small files, few large ones.
class Content {
public:
    std::string name()
    {
        std::string name(5 + m_random() % 21, ' ');
        for (char &c : name) {
            c = static_cast<char>('a' + m_random() % 26);
        }
        return name;
    }
    std::uint64_t size()
    {
        return static_cast<std::uint64_t>(std::exp(static_cast<double>(m_random() % 200) / 10));
    }

private:
    std::mt19937_64 m_random{20'000}; // the same numbers on every machine
};

[[noreturn]] void fail(const std::string &path)
{
    throw std::system_error(errno, std::generic_category(), path);
}

void makeFile(const std::string &path, std::uint64_t size)
{
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0 || ftruncate(descriptor, static_cast<off_t>(size)) != 0) {
        fail(path);
    }
    close(descriptor);
}

} // namespace

void makeFolderTree(const std::string &path, std::size_t folderCount, std::size_t fileCount)
{
    Content content;
    std::filesystem::create_directories(path);
    std::vector<std::string> folders{path};
    for (std::size_t parent = 0; folders.size() < folderCount; ++parent) {
        for (std::size_t i = 0; i < foldersPerFolder && folders.size() < folderCount; ++i) {
            folders.push_back(folders[parent] + "/d" + std::to_string(i) + content.name());
            std::filesystem::create_directory(folders.back());
        }
    }
    for (std::size_t i = 0; i < fileCount; ++i) {
        const std::string &folder = folders[i % folders.size()];
        makeFile(folder + "/f" + std::to_string(i) + content.name(), content.size());
    }
}

std::shared_ptr<tree::ScanTree> makeScanTree(std::size_t nodeCount)
{
    Content content;
    auto tree = std::make_shared<tree::ScanTree>();
    const auto arena = tree->leaseArena();
    std::deque<tree::LUMFileContainer *> folders{&tree->root()};
    std::size_t made = 1;
    while (made < nodeCount) {
        tree::LUMFileContainer &folder = *folders.front();
        folders.pop_front();
        // One folder in seventeen children would keep the tree a chain; the others make up for it.
        const std::size_t folderCount = folders.size() < 1000 ? 2 : 1;
        for (std::size_t i = 0; i < childrenPerFolder && made < nodeCount; ++i, ++made) {
            if (i < folderCount) {
                auto &subfolder =
                    arena->make<tree::LUMFileContainer>(content.name(), std::uint64_t{0});
                folder.subitems().append(subfolder);
                folders.push_back(&subfolder);
            } else {
                folder.subitems().append(
                    arena->make<tree::LUMFileItem>(content.name(), content.size()));
            }
        }
    }
    return tree;
}

ScratchFolder::ScratchFolder()
    : m_path((std::filesystem::temp_directory_path() / "tessaly-figures-XXXXXX").native())
{
    if (mkdtemp(m_path.data()) == nullptr) {
        fail(m_path);
    }
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace tessaly
