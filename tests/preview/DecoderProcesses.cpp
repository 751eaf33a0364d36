#include "tests/preview/DecoderProcesses.hpp"

#include <QCoreApplication>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <malloc.h>
#include <unistd.h>

namespace tessaly {

namespace {

/// The live processes whose parent this is and which run the decoder's program.
std::vector<pid_t> childrenOf(pid_t parent)
{
    std::vector<pid_t> children;
    for (const auto &entry : std::filesystem::directory_iterator("/proc")) {
        std::ifstream file(entry.path() / "stat");
        std::string stat;
        std::getline(file, stat);
        const std::size_t nameEnd = stat.rfind(')');
        if (nameEnd == std::string::npos || stat.find("(preview-decoder)") == std::string::npos) {
            continue;
        }
        std::istringstream rest(stat.substr(nameEnd + 1));
        char state = 0;
        pid_t itsParent = 0;
        rest >> state >> itsParent;
        if (itsParent == parent && state != 'Z') {
            children.push_back(std::stoi(stat));
        }
    }
    return children;
}

} // namespace

std::vector<pid_t> decoderServers()
{
    return childrenOf(getpid());
}

std::vector<pid_t> decoders()
{
    std::vector<pid_t> found;
    for (const pid_t server : decoderServers()) {
        const std::vector<pid_t> its = childrenOf(server);
        found.insert(found.end(), its.begin(), its.end());
    }
    return found;
}

void waitUntilDecoding(std::size_t count)
{
    while (decoders().size() != count) {
        QCoreApplication::processEvents();
    }
}

void resetPeakMemory()
{
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;
}

int peakMegabytes()
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.starts_with("VmHWM:")) {
            return std::stoi(line.substr(6)) / 1024;
        }
    }
    return 0;
}

} // namespace tessaly
