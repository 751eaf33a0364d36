// Measures what the windows promise, and prints a line for each figure (see FigureTable). The exit
// status is 1 when one falls short.
//
//     window_figures [--repetitions N]
//
// Uses the platform plugin "offscreen" unless QT_QPA_PLATFORM says otherwise.

#include "bench/FigureTable.hpp"
#include "bench/MadeTrees.hpp"
#include "bench/ProgramStart.hpp"
#include "bench/WindowLevel.hpp"
#include "bench/Workloads.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "history/records/KORVENHistoryStore.hpp"
#include "screens/results/ResultRows.hpp"

#include <QApplication>

#include <algorithm>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace tessaly;

constexpr int usualRepetitions = 7;
constexpr int wheelStepCount = 300;
constexpr std::size_t keptNodes = 1'000'000;

/// The rows of a level in the order of their names.
std::vector<KORVENFolderObject> unsortedRows(const tree::LUMFileContainer *folder)
{
    auto rows = resultRowsOf(folder, {1, 1}).rows;
    sortRows(rows, RowOrder::name);
    return rows;
}

void addLevels(WindowLevel &level, int repetitions)
{
    addWorkload("opening 1M rows", repetitions, [&level](benchmark::State &state) {
        for (auto _ : state) {
            level.open("large");
        }
        level.close();
    });
    addWorkload("sorting 1M rows", repetitions, [&level](benchmark::State &state) {
        level.open("large");
        auto rows = unsortedRows(level.folder());
        level.close();
        for (auto _ : state) {
            sortRows(rows, RowOrder::size);
        }
    });
    addWorkload("populating 100k rows", repetitions, [&level](benchmark::State &state) {
        level.open("usual");
        for (auto _ : state) {
            level.populate();
        }
        level.close();
    });
}

void printWheel(FigureTable &table, WindowLevel &level)
{
    level.open("large");
    std::vector<double> times;
    for (const double share : {0.0, 0.5, 0.9999}) {
        level.scrollTo(share);
        const auto steps = level.wheelSteps(wheelStepCount);
        times.insert(times.end(), steps.begin(), steps.end());
    }
    table.atMost("cells that exist for 1M rows", static_cast<double>(level.cellCount()), 100);
    std::sort(times.begin(), times.end());
    table.plain("wheel step over 1M rows, ms, median", times[times.size() / 2]);
    table.plain("wheel step over 1M rows, ms, worst", times.back());
    level.close();
}

/// Records a scan of a million nodes as the last one.
void recordScan()
{
    const auto item = std::make_shared<KORVENHistoryItem>("/usr", "0 bytes");
    if (!archive::writeScanFile(makeScanTree(keptNodes)->root(), item->scanFilePath().value())) {
        throw std::runtime_error("the scan file cannot be written");
    }
    KORVENHistoryStore::sharedStore().addItem(item);
    KORVENHistoryStore::sharedStore().saveChanges();
}

/// A home folder of its own for a program, without a bus; the moments are told.
std::map<std::string, std::string> environmentOf(const ScratchFolder &scratch)
{
    return {{"HOME", scratch.path("")},
            {"XDG_DATA_HOME", scratch.path("data")},
            {"XDG_CONFIG_HOME", scratch.path("config")},
            {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"},
            {"QT_LOGGING_RULES", "tessaly.*.debug=true"}};
}

void addStarts(const ScratchFolder &scratch, int repetitions)
{
    recordScan();
    const auto environment = environmentOf(scratch);
    const auto ownFolder = std::filesystem::canonical("/proc/self/exe").parent_path();
    const std::string program = (ownFolder / ".." / "app" / "window" / "tessaly").native();
    const std::string empty = (ownFolder / "empty_window").native();
    const auto add = [&](const std::string &name, const std::string &moment,
                         const std::string &path) {
        addPlainWorkload(name, repetitions, [=] { runUntil(moment, path, environment); });
    };
    add("start to the first painted window", "painted", program);
    add("start to an empty painted window", "painted", empty);
    add("start to the window's content", "content painted", program);
    add("start to the rows of a scan of 1M nodes", "rows shown", program);
}

bool measure(int repetitions)
{
    const ScratchFolder scratch;
    WindowLevel level(scratch.path("data/tessaly"));
    addLevels(level, repetitions);
    addStarts(scratch, repetitions);
    WorkloadTimes times;
    times.measure();

    FigureTable table(times);
    table.ratioAtMost("start to the first painted window", "start to an empty painted window", 1.5);
    table.time("start to the first painted window");
    table.time("start to an empty painted window");
    table.time("start to the window's content");
    table.time("start to the rows of a scan of 1M nodes");
    table.ratioAtMost("opening 1M rows", "sorting 1M rows", 2);
    table.time("opening 1M rows");
    table.time("sorting 1M rows");
    table.time("populating 100k rows");
    printWheel(table, level);
    return !table.isShort();
}

} // namespace

int main(int argumentCount, char **arguments)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argumentCount, arguments);
    const bool hasRepetitions =
        argumentCount == 3 && std::strcmp(arguments[1], "--repetitions") == 0;
    if (argumentCount != 1 && !hasRepetitions) {
        std::cerr << "usage: window_figures [--repetitions N]\n";
        return 2;
    }
    try {
        return measure(hasRepetitions ? std::stoi(arguments[2]) : usualRepetitions) ? 0 : 1;
    } catch (const std::exception &failure) {
        std::cerr << "window_figures: " << failure.what() << '\n';
        return 2;
    }
}
