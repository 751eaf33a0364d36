#include "bench/Memory.hpp"

#include "cli/NodeCount.hpp"
#include "engine/archive/ScanFileReader.hpp"
#include "engine/scan/LUMThreadedScanner.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <thread>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly {

namespace {

/// The resident anonymous memory of this process, in bytes. Not from /proc/self/statm: the kernel
/// counts pages for each thread and adds them up only now and then. This file is exact.
double anonymousBytes()
{
    std::ifstream rollup("/proc/self/smaps_rollup");
    for (std::string word; rollup >> word;) {
        if (word == "Anonymous:") {
            double kilobytes = 0;
            rollup >> kilobytes;
            return kilobytes * 1024;
        }
    }
    throw std::runtime_error("/proc/self/smaps_rollup lacks a figure");
}

/// Runs the work in a process of its own, so that earlier measurements have no effect on it, and
/// returns its two numbers.
template <typename Work>
std::array<double, 2> inChildProcess(Work work)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::runtime_error("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        const std::array<double, 2> answer = work();
        const ssize_t written = write(ends[1], answer.data(), sizeof answer);
        _exit(written == sizeof answer ? 0 : 1);
    }
    close(ends[1]);
    std::array<double, 2> answer{};
    const ssize_t received = read(ends[0], answer.data(), sizeof answer);
    close(ends[0]);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || received != sizeof answer) {
        throw std::runtime_error("a measuring process failed");
    }
    return answer;
}

} // namespace

TreeMemory measureTreeMemory(const std::string &path)
{
    const auto answer = inChildProcess([&]() -> std::array<double, 2> {
        const auto scan = [&] {
            scan::LUMThreadedScanner scanner;
            scanner.scanRootFolder(path);
            scanner.waitUntilFinished();
            return scanner.tree();
        };
        scan(); // warms up: threads' stacks, buffers and the like
        malloc_trim(0);
        const double before = anonymousBytes();
        const auto tree = scan();
        malloc_trim(0);
        const double after = anonymousBytes();
        return {static_cast<double>(nodeCount(tree->root())), after - before};
    });
    return {static_cast<std::size_t>(answer[0]), answer[1] / answer[0]};
}

double measureReadingMemory(const std::string &scanFile)
{
    const auto answer = inChildProcess([&]() -> std::array<double, 2> {
        std::atomic<bool> isDone{false};
        std::atomic<double> maxBytes{0};
        std::thread watcher([&] {
            while (!isDone) {
                maxBytes = std::max(maxBytes.load(), anonymousBytes());
            }
        });
        const auto tree = archive::readScanFile(scanFile);
        isDone = true;
        watcher.join();
        malloc_trim(0);
        return {maxBytes, anonymousBytes()};
    });
    return std::max(0.0, answer[0] - answer[1]);
}

} // namespace tessaly
