// Measures what the engine promises, and prints a line for each figure (see FigureTable). The exit
// status is 1 when one falls short.
//
//     figures [--repetitions N]
//
// Machines differ and are busy with other things, so the bars are ratios of two workloads of one
// run; plain times stand beside them.

#include "bench/BareWalk.hpp"
#include "bench/FigureTable.hpp"
#include "bench/MadeTrees.hpp"
#include "bench/Memory.hpp"
#include "bench/MillionNodes.hpp"
#include "bench/Peers.hpp"
#include "bench/Workloads.hpp"
#include "engine/scan/LUMThreadedScanner.hpp"

#include <array>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

namespace {

using namespace tessaly;

constexpr int usualRepetitions = 9;

constexpr std::array measuredTrees{"/usr", "300k files", "300k files below one folder",
                                   "200k files flat"};

/// Made trees, by the names above.
std::string pathOf(const std::string &tree, const ScratchFolder &scratch)
{
    if (tree == "/usr") {
        return tree;
    }
    // The same tree twice: scanned from its own root it has many top-level folders, scanned from
    // above a single one.
    return scratch.path(tree == "300k files"                    ? "nested/one"
                        : tree == "300k files below one folder" ? "nested"
                                                                : "flat");
}

void makeTrees(const ScratchFolder &scratch)
{
    makeFolderTree(scratch.path("nested/one"), 20'000, 300'000);
    makeFolderTree(scratch.path("flat"), 1, 200'000);
}

void addScans(const ScratchFolder &scratch, int repetitions)
{
    for (const std::string tree : measuredTrees) {
        const std::string path = pathOf(tree, scratch);
        addWorkload("scan " + tree, repetitions, [path](benchmark::State &state) {
            std::shared_ptr<tree::ScanTree> scanned;
            for (auto _ : state) {
                scan::LUMThreadedScanner scanner;
                scanner.scanRootFolder(path);
                scanner.waitUntilFinished();
                scanned = scanner.tree();
            }
        });
        addPlainWorkload("bare walk " + tree, repetitions,
                         [path] { benchmark::DoNotOptimize(bareWalk(path)); });
    }
}

/// Whole programs, ours among them, from start to end.
void addPrograms(int repetitions)
{
    const auto ownFolder = std::filesystem::canonical("/proc/self/exe").parent_path();
    const std::string ownTool = (ownFolder / "scan_tree").native();
    for (const Peer &peer :
         {Peer{"scan_tree /usr", {ownTool, "/usr"}}, Peer{"du -sb /usr", {"du", "-sb", "/usr"}},
          Peer{"ncdu -0 -x -o /dev/null /usr", {"ncdu", "-0", "-x", "-o", "/dev/null", "/usr"}},
          Peer{"gdu -n -p -a /usr", {"gdu", "-n", "-p", "-a", "/usr"}}}) {
        addPlainWorkload(peer.name, repetitions, [peer] { runPeer(peer); });
    }
}

void printFigures(FigureTable &table, const MillionNodes &million)
{
    for (const std::string tree : measuredTrees) {
        table.ratioAtMost("scan " + tree, "bare walk " + tree, 1.15);
        table.time("scan " + tree);
    }
    table.ratioAtLeast("du -sb /usr", "scan_tree /usr", 1.6);
    table.ratioAtLeast("ncdu -0 -x -o /dev/null /usr", "scan_tree /usr", 2.2);
    table.ratioAtLeast("gdu -n -p -a /usr", "scan_tree /usr", 2.8);
    table.time("scan_tree /usr");

    const TreeMemory usr = measureTreeMemory("/usr");
    table.atMost("bytes per entry in memory, /usr", usr.bytesPerEntry, 56);
    table.plain("entries of /usr", static_cast<double>(usr.entryCount));

    table.ratioAtMost("total of 1M nodes", "reading the memory of 1M nodes", 6);
    table.time("total of 1M nodes");
    table.ratioAtMost("freeing 1M nodes", "total of 1M nodes", 1);
    table.time("freeing 1M nodes");
    table.ratioAtMost("writing 1M nodes", "plain write of the file of 1M nodes", 10);
    table.time("writing 1M nodes");
    table.ratioAtMost("reading 1M nodes", "memcpy of the mapped file of 1M nodes", 12);
    table.time("reading 1M nodes");
    table.atMost("bytes of scan file per node",
                 static_cast<double>(million.fileSize()) / MillionNodes::nodeCount, 106);
    table.atMost("anonymous memory beyond the tree while reading 1M nodes, MB",
                 measureReadingMemory(million.path()) / 1e6, 60);
}

bool measure(int repetitions)
{
    std::cerr << "Making the trees to measure on...\n";
    const ScratchFolder scratch;
    makeTrees(scratch);
    MillionNodes million(scratch.path("million"));
    addScans(scratch, repetitions);
    addPrograms(repetitions);
    million.addWorkloads(repetitions);

    std::cerr << "Measuring...\n";
    WorkloadTimes times;
    times.measure();
    FigureTable table(times);
    printFigures(table, million);
    return !table.isShort();
}

} // namespace

int main(int argumentCount, char **arguments)
{
    const bool hasRepetitions =
        argumentCount == 3 && std::strcmp(arguments[1], "--repetitions") == 0;
    if (argumentCount != 1 && !hasRepetitions) {
        std::cerr << "usage: figures [--repetitions N]\n";
        return 2;
    }
    try {
        return measure(hasRepetitions ? std::stoi(arguments[2]) : usualRepetitions) ? 0 : 1;
    } catch (const std::exception &failure) {
        std::cerr << "figures: " << failure.what() << '\n';
        return 2;
    }
}
