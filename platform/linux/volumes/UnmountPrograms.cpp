#include "platform/linux/volumes/UnmountPrograms.hpp"

#include "engine/archive/FileCalls.hpp"
#include "engine/scan/FileDescriptor.hpp"
#include "platform/background/ChildProgram.hpp"
#include "platform/linux/process/ReadToEnd.hpp"

#include <array>
#include <cstddef>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly {

namespace {

using Words = std::vector<std::string>;

constexpr std::size_t maxErrorBytes = 1000; ///< for the log

/// Runs the first of the commands whose program is installed.
std::optional<std::string> runFirst(const std::vector<Words> &commands)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return std::generic_category().message(errno);
    }
    const scan::FileDescriptor complaints(ends[0]);
    scan::FileDescriptor otherEnd(ends[1]);
    pid_t process = 0;
    int error = ENOENT;
    for (const Words &command : commands) {
        if (error == ENOENT) {
            error = ChildProgram{.words = command, .errors = otherEnd.number()}.start(process);
        }
    }
    otherEnd.close(); // or reading would not end when the program does
    const std::string &program = commands.back().front();
    if (error != 0) {
        return program + ": " + std::generic_category().message(error);
    }
    std::string text = readToEnd(complaints.number(), maxErrorBytes).value_or(std::string());
    while (text.ends_with('\n')) {
        text.pop_back();
    }
    int status = 0;
    if (archive::retried([&] { return waitpid(process, &status, 0); }) == process && status == 0) {
        return std::nullopt;
    }
    return text.empty() ? program + " has failed" : text;
}

} // namespace

std::optional<std::string> unmountFuse(const std::string &mountPoint)
{
    return runFirst(
        {{"fusermount3", "-u", "--", mountPoint}, {"fusermount", "-u", "--", mountPoint}});
}

std::optional<std::string> detachFuse(const std::string &mountPoint)
{
    return runFirst({{"fusermount3", "-u", "-z", "--", mountPoint},
                     {"fusermount", "-u", "-z", "--", mountPoint}});
}

std::optional<std::string> unmountThere(const std::string &mountPoint)
{
    return runFirst({{"umount", "-i", "--", mountPoint}});
}

std::optional<std::string> unmountByUser(const std::string &mountPoint)
{
    return runFirst({{"umount", "--", mountPoint}});
}

} // namespace tessaly
