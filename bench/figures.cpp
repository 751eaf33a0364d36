// Measures what the engine promises, and prints a line for each figure: name, value, bar and "ok"
// or "short", tab separated; plain figures, which have no bar, stand beside the ratios. The exit
// status is 1 when a figure falls short.
//
// Machines differ and are busy with other things, so the bars are ratios of two workloads of one
// run. All workloads are repeated, in random order among one another; a ratio is taken of the best
// times and of the medians.
//
//     figures [--repetitions N]

#include "bench/BareWalk.hpp"
#include "bench/MadeTrees.hpp"
#include "bench/Memory.hpp"
#include "bench/Peers.hpp"
#include "engine/LUMThreadedScanner.hpp"
#include "engine/MappedFile.hpp"
#include "engine/ScanFileReader.hpp"
#include "engine/ScanFileWriter.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <iostream>
#include <map>
#include <memory>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace tessaly;

constexpr std::size_t nodeCount = 1'000'000;

/// The times of each workload, in milliseconds.
class Times final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context & /*context*/) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                m_times[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
            }
        }
    }

    [[nodiscard]] double best(const std::string &workload) const
    {
        const std::vector<double> &times = m_times.at(workload);
        return *std::min_element(times.begin(), times.end());
    }
    [[nodiscard]] double median(const std::string &workload) const
    {
        std::vector<double> times = m_times.at(workload);
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    }

private:
    std::map<std::string, std::vector<double>> m_times;
};

/// Prints the figures and remembers whether one fell short.
class Table {
public:
    explicit Table(const Times &times) : m_times(times) {}

    void plain(const std::string &name, double value) { line(name, value, "-", true); }
    void atMost(const std::string &name, double value, double bar)
    {
        line(name, value, "<= " + text(bar), value <= bar);
    }
    void atLeast(const std::string &name, double value, double bar)
    {
        line(name, value, ">= " + text(bar), value >= bar);
    }

    void time(const std::string &workload)
    {
        plain(workload + ", best, ms", m_times.best(workload));
        plain(workload + ", median, ms", m_times.median(workload));
    }
    void ratioAtMost(const std::string &above, const std::string &below, double bar)
    {
        atMost(above + " / " + below + ", best", m_times.best(above) / m_times.best(below), bar);
        atMost(above + " / " + below + ", median", m_times.median(above) / m_times.median(below),
               bar);
    }
    void ratioAtLeast(const std::string &above, const std::string &below, double bar)
    {
        atLeast(above + " / " + below + ", best", m_times.best(above) / m_times.best(below), bar);
        atLeast(above + " / " + below + ", median", m_times.median(above) / m_times.median(below),
                bar);
    }

    [[nodiscard]] bool isShort() const noexcept { return m_isShort; }

private:
    static std::string text(double value)
    {
        std::ostringstream out;
        out << std::setprecision(4) << value;
        return out.str();
    }
    void line(const std::string &name, double value, const std::string &bar, bool isEnough)
    {
        std::cout << name << '\t' << text(value) << '\t' << bar << '\t'
                  << (isEnough ? "ok" : "short") << std::endl;
        m_isShort = m_isShort || !isEnough;
    }

    const Times &m_times;
    bool m_isShort = false;
};

void addWorkload(const std::string &name, int repetitions,
                 const std::function<void(benchmark::State &)> &work)
{
    benchmark::RegisterBenchmark(name.c_str(), [work](benchmark::State &state) { work(state); })
        ->Iterations(1)
        ->Repetitions(repetitions)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

/// A workload without preparation.
void addPlainWorkload(const std::string &name, int repetitions, const std::function<void()> &work)
{
    addWorkload(name, repetitions, [work](benchmark::State &state) {
        for (auto _ : state) {
            work();
        }
    });
}

std::shared_ptr<ScanTree> scan(const std::string &path)
{
    LUMThreadedScanner scanner;
    scanner.scanRootFolder(path);
    scanner.waitUntilFinished();
    return scanner.tree();
}

void addScans(const std::string &tree, const std::string &path, int repetitions)
{
    addWorkload("scan " + tree, repetitions, [path](benchmark::State &state) {
        std::shared_ptr<ScanTree> scanned;
        for (auto _ : state) {
            scanned = scan(path);
        }
    });
    addPlainWorkload("bare walk " + tree, repetitions,
                     [path] { benchmark::DoNotOptimize(bareWalk(path)); });
}

class FileSink final : public ByteSink {
public:
    explicit FileSink(const std::string &path)
        : m_descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600))
    {
    }
    ~FileSink() override { close(m_descriptor); }
    FileSink(const FileSink &) = delete;
    FileSink &operator=(const FileSink &) = delete;
    FileSink(FileSink &&) = delete;
    FileSink &operator=(FileSink &&) = delete;

    Result<Done, ArchiveError> write(std::span<const std::byte> bytes) override
    {
        while (!bytes.empty()) {
            const ssize_t count = ::write(m_descriptor, bytes.data(), bytes.size());
            if (count < 0) {
                return systemError(ArchiveError::Kind::unwritable, "cannot write", errno);
            }
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
        return Done{};
    }

private:
    int m_descriptor;
};

/// A scan file of a million nodes, the tree that it was written from, and its bytes.
class MillionNodes {
public:
    explicit MillionNodes(std::string path)
        : m_path(std::move(path)), m_tree(makeScanTree(nodeCount))
    {
        write(m_path);
        const auto file = MappedFile::open(m_path);
        m_bytes.assign(file.value().bytes().begin(), file.value().bytes().end());
        // From here on in the order in which scans and scan files leave a tree in memory.
        m_tree = readScanFile(m_path).value();
    }

    [[nodiscard]] const std::string &path() const noexcept { return m_path; }
    [[nodiscard]] std::size_t fileSize() const noexcept { return m_bytes.size(); }

    void addWorkloads(int repetitions)
    {
        addPlainWorkload("total of 1M nodes", repetitions,
                         [this] { benchmark::DoNotOptimize(m_tree->root().valueOfSubitems()); });
        // What the nodes take, names aside: a total has no need of those.
        m_memory.assign(nodeCount * sizeof(LUMFileItem) / sizeof(std::uint64_t), 1);
        addPlainWorkload("reading the memory of 1M nodes", repetitions, [this] {
            benchmark::DoNotOptimize(
                std::accumulate(m_memory.begin(), m_memory.end(), std::uint64_t{0}));
        });
        addWorkload("freeing 1M nodes", repetitions, [this](benchmark::State &state) {
            auto tree = readScanFile(m_path);
            for (auto _ : state) {
                tree.value().reset();
            }
        });
        addPlainWorkload("writing 1M nodes", repetitions, [this] { write(m_path + ".written"); });
        addPlainWorkload("plain write of the file of 1M nodes", repetitions, [this] {
            FileSink sink(m_path + ".plain");
            for (std::size_t at = 0; at < m_bytes.size(); at += blockSize) {
                const auto rest = std::span(m_bytes).subspan(at);
                require(sink.write(rest.first(std::min(blockSize, rest.size()))).hasValue());
            }
        });
        addWorkload("reading 1M nodes", repetitions, [this](benchmark::State &state) {
            Result<std::shared_ptr<ScanTree>, ArchiveError> tree = std::shared_ptr<ScanTree>();
            for (auto _ : state) {
                tree = readScanFile(m_path);
            }
            require(tree.hasValue());
        });
        m_copy.resize(m_bytes.size());
        addPlainWorkload("memcpy of the file of 1M nodes", repetitions, [this] { copyFile(); });
    }

private:
    static constexpr std::size_t blockSize = std::size_t{256} << 10U;

    static void require(bool isDone)
    {
        if (!isDone) {
            throw std::runtime_error("a workload failed");
        }
    }
    void write(const std::string &path)
    {
        FileSink sink(path);
        require(writeScanArchive(m_tree->root(), sink).hasValue());
    }
    /// From the page cache, as the reader gets the bytes, into memory that is there already.
    void copyFile()
    {
        const int descriptor = open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
        void *file = mmap(nullptr, m_copy.size(), PROT_READ, MAP_PRIVATE, descriptor, 0);
        close(descriptor);
        require(file != MAP_FAILED);
        std::memcpy(m_copy.data(), file, m_copy.size());
        munmap(file, m_copy.size());
        benchmark::ClobberMemory();
    }

    std::string m_path;
    std::shared_ptr<ScanTree> m_tree;
    std::vector<std::byte> m_bytes;
    std::vector<std::byte> m_copy;
    std::vector<std::uint64_t> m_memory;
};

void printFigures(Table &table, const MillionNodes &million)
{
    for (const char *tree :
         {"/usr", "300k files", "300k files below one folder", "200k files flat"}) {
        table.ratioAtMost(std::string("scan ") + tree, std::string("bare walk ") + tree, 1.15);
        table.time(std::string("scan ") + tree);
    }
    table.ratioAtLeast("du -sb /usr", "scan_tree /usr", 1.6);
    table.ratioAtLeast("ncdu -0 -x -o /dev/null /usr", "scan_tree /usr", 2.2);
    table.ratioAtLeast("gdu -n -p -a /usr", "scan_tree /usr", 2.8);
    table.time("scan_tree /usr");

    const TreeMemory usr = measureTreeMemory("/usr");
    table.atMost("bytes per entry, /usr", usr.bytesPerEntry, 56);
    table.plain("entries of /usr", static_cast<double>(usr.entryCount));

    table.ratioAtMost("total of 1M nodes", "reading the memory of 1M nodes", 6);
    table.time("total of 1M nodes");
    table.ratioAtMost("freeing 1M nodes", "total of 1M nodes", 1);
    table.time("freeing 1M nodes");
    table.ratioAtMost("writing 1M nodes", "plain write of the file of 1M nodes", 10);
    table.time("writing 1M nodes");
    table.ratioAtMost("reading 1M nodes", "memcpy of the file of 1M nodes", 12);
    table.time("reading 1M nodes");
    table.atMost("bytes of scan file per node", static_cast<double>(million.fileSize()) / nodeCount,
                 106);
    table.atMost("memory beyond the tree while reading 1M nodes, MB",
                 measureReadingMemory(million.path()) / 1e6, 60);
}

} // namespace

int main(int argumentCount, char **arguments)
{
    try {
        const bool hasRepetitions =
            argumentCount == 3 && std::strcmp(arguments[1], "--repetitions") == 0;
        if (argumentCount != 1 && !hasRepetitions) {
            std::cerr << "usage: figures [--repetitions N]\n";
            return 2;
        }
        const int repetitions = hasRepetitions ? std::stoi(arguments[2]) : 9;

        const ScratchFolder scratch;
        std::cerr << "Making the trees to measure on...\n";
        // The made tree lies below one folder: scanned from there it has many top-level folders,
        // scanned from above only one.
        makeFolderTree(scratch.path("deep/one"), 20'000, 300'000);
        makeFolderTree(scratch.path("flat"), 1, 200'000);
        MillionNodes million(scratch.path("million"));

        addScans("/usr", "/usr", repetitions);
        addScans("300k files", scratch.path("deep/one"), repetitions);
        addScans("300k files below one folder", scratch.path("deep"), repetitions);
        addScans("200k files flat", scratch.path("flat"), repetitions);
        const auto ownTool =
            std::filesystem::canonical("/proc/self/exe").parent_path() / "scan_tree";
        for (const Peer &peer :
             {Peer{"scan_tree /usr", {ownTool.native(), "/usr"}},
              Peer{"du -sb /usr", {"du", "-sb", "/usr"}},
              Peer{"ncdu -0 -x -o /dev/null /usr", {"ncdu", "-0", "-x", "-o", "/dev/null", "/usr"}},
              Peer{"gdu -n -p -a /usr", {"gdu", "-n", "-p", "-a", "/usr"}}}) {
            addPlainWorkload(peer.name, repetitions, [peer] { runPeer(peer); });
        }
        million.addWorkloads(repetitions);

        std::cerr << "Measuring...\n";
        char program[] = "figures";
        char interleave[] = "--benchmark_enable_random_interleaving=true";
        char *flags[] = {program, interleave, nullptr};
        int flagCount = 2;
        benchmark::Initialize(&flagCount, flags);
        Times times;
        benchmark::RunSpecifiedBenchmarks(&times);

        Table table(times);
        printFigures(table, million);
        return table.isShort() ? 1 : 0;
    } catch (const std::exception &failure) {
        std::cerr << "figures: " << failure.what() << '\n';
        return 2;
    }
}
