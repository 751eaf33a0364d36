#include "bench/MillionNodes.hpp"

#include "bench/MadeTrees.hpp"
#include "bench/Workloads.hpp"
#include "engine/archive/MappedFile.hpp"
#include "engine/archive/ScanFileReader.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "engine/scan/FileDescriptor.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <numeric>
#include <span>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace tessaly {

namespace {

constexpr std::size_t blockSize = std::size_t{256} << 10U;

/// A file in the page cache: nothing waits for a disk.
class FileSink final : public archive::ByteSink {
public:
    explicit FileSink(const std::string &path)
        : m_file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600))
    {
    }

    archive::Result<archive::Done, archive::ArchiveError>
    write(std::span<const std::byte> bytes) override
    {
        while (!bytes.empty()) {
            const ssize_t count = ::write(m_file.number(), bytes.data(), bytes.size());
            if (count < 0) {
                return archive::systemError(archive::ArchiveError::Kind::unwritable, "cannot write",
                                            errno);
            }
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
        return archive::Done{};
    }

private:
    scan::FileDescriptor m_file;
};

void require(bool isDone)
{
    if (!isDone) {
        throw std::runtime_error("a workload failed");
    }
}

} // namespace

MillionNodes::MillionNodes(std::string path)
    : m_path(std::move(path)), m_tree(makeScanTree(nodeCount))
{
    write(m_path);
    const auto file = archive::MappedFile::open(m_path);
    require(file.hasValue());
    m_bytes.assign(file.value().bytes().begin(), file.value().bytes().end());

    // From here on in the order in which scans and scan files leave a tree in memory.
    auto tree = archive::readScanFile(m_path);
    require(tree.hasValue());
    m_tree = std::move(tree.value());
}

void MillionNodes::addWorkloads(int repetitions)
{
    addTreeWorkloads(repetitions);
    addFileWorkloads(repetitions);
}

void MillionNodes::addTreeWorkloads(int repetitions)
{
    addPlainWorkload("total of 1M nodes", repetitions,
                     [this] { benchmark::DoNotOptimize(m_tree->root().valueOfSubitems()); });
    // What the nodes take, names aside: a total has no need of those.
    m_memory.assign(nodeCount * sizeof(tree::LUMFileItem) / sizeof(std::uint64_t), 1);
    addPlainWorkload("reading the memory of 1M nodes", repetitions, [this] {
        benchmark::DoNotOptimize(
            std::accumulate(m_memory.begin(), m_memory.end(), std::uint64_t{0}));
    });
    addWorkload("freeing 1M nodes", repetitions, [this](benchmark::State &state) {
        auto tree = archive::readScanFile(m_path);
        require(tree.hasValue());
        for (auto _ : state) {
            tree.value().reset();
        }
    });
}

void MillionNodes::addFileWorkloads(int repetitions)
{
    addPlainWorkload("writing 1M nodes", repetitions, [this] { write(m_path + ".written"); });
    addPlainWorkload("plain write of the file of 1M nodes", repetitions,
                     [this] { writePlainly(m_path + ".plain"); });
    addWorkload("reading 1M nodes", repetitions, [this](benchmark::State &state) {
        archive::Result<std::shared_ptr<tree::ScanTree>, archive::ArchiveError> tree =
            std::shared_ptr<tree::ScanTree>();
        for (auto _ : state) {
            tree = archive::readScanFile(m_path);
        }
        require(tree.hasValue());
    });
    m_copy.resize(m_bytes.size());
    addPlainWorkload("memcpy of the mapped file of 1M nodes", repetitions, [this] { copyFile(); });
}

void MillionNodes::write(const std::string &path) const
{
    FileSink sink(path);
    require(archive::writeScanArchive(m_tree->root(), sink).hasValue());
}

void MillionNodes::writePlainly(const std::string &path) const
{
    FileSink sink(path);
    for (std::span<const std::byte> rest(m_bytes); !rest.empty();) {
        const std::size_t count = std::min(blockSize, rest.size());
        require(sink.write(rest.first(count)).hasValue());
        rest = rest.subspan(count);
    }
}

/// From the page cache, as the reader gets the bytes, into memory that is there already.
void MillionNodes::copyFile()
{
    const scan::FileDescriptor file(open(m_path.c_str(), O_RDONLY | O_CLOEXEC));
    void *mapped = mmap(nullptr, m_copy.size(), PROT_READ, MAP_PRIVATE, file.number(), 0);
    require(mapped != MAP_FAILED);
    std::memcpy(m_copy.data(), mapped, m_copy.size());
    munmap(mapped, m_copy.size());
    benchmark::ClobberMemory();
}

} // namespace tessaly
