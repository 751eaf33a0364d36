#include "tests/platform/linux/HangingVolume.hpp"

#include "tests/platform/linux/OwnMounts.hpp"

#include <csignal>
#include <utility>

#include <sys/mount.h>
#include <unistd.h>

namespace tessaly {

namespace {

std::vector<std::string> commandFor(const std::string &path,
                                    const std::vector<std::string> &operations, int totalBlocks,
                                    int freeBlocks)
{
    std::vector<std::string> words = {TESSALY_HANGING_FILE_SYSTEM, path,
                                      std::to_string(totalBlocks), std::to_string(freeBlocks)};
    words.insert(words.end(), operations.begin(), operations.end());
    return words;
}

} // namespace

std::optional<std::string> HangingVolume::missingRequirement()
{
    if (!hasOwnMounts()) {
        return "root, to mount something";
    }
    if (!StartedProgram::isInstalled("fusermount3")) {
        return "fusermount3";
    }
    return access("/dev/fuse", R_OK | W_OK) == 0 ? std::nullopt
                                                 : std::optional<std::string>("FUSE");
}

HangingVolume::HangingVolume(std::string path, std::vector<std::string> operations, int totalBlocks,
                             int freeBlocks)
    : m_path(std::move(path)), m_program(commandFor(m_path, operations, totalBlocks, freeBlocks))
{
    waitForReport("mounted");
}

HangingVolume::~HangingVolume()
{
    umount2(m_path.c_str(), MNT_DETACH);
}

void HangingVolume::hang() const
{
    m_program.sendSignal(SIGUSR1);
    waitForReport("hanging");
}

void HangingVolume::answer() const
{
    m_program.sendSignal(SIGUSR2);
    waitForReport("answering");
}

void HangingVolume::waitUntilHeld(const std::string &operation) const
{
    waitForReport("held " + operation);
}

void HangingVolume::freeze() const
{
    m_program.sendSignal(SIGSTOP);
    m_program.waitForStop();
}

void HangingVolume::kill()
{
    m_program.sendSignal(SIGKILL);
    (void)m_program.waitForEnd();
}

void HangingVolume::waitForReport(const std::string &line) const
{
    while (m_program.reportedLine() != line) {}
}

} // namespace tessaly
