#include "platform/linux/UnmountPrograms.hpp"

#include "engine/FileCalls.hpp"
#include "engine/FileDescriptor.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly {

namespace {

using Words = std::vector<std::string>;

/// Starts a program, found by PATH, whose complaints go to a descriptor. Returns an errno value.
int start(Words command, int complaints, pid_t &process)
{
    std::vector<char *> words;
    for (std::string &word : command) {
        words.push_back(word.data());
    }
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions = {};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&actions, STDIN_FILENO, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, complaints, STDERR_FILENO);
    const int error = posix_spawnp(&process, words[0], &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

/// What can be read until the other end is closed; of a long text the beginning.
std::string textFrom(int descriptor)
{
    constexpr std::size_t longest = 1000;
    std::string text;
    std::array<char, 256> piece{};
    for (;;) {
        const ssize_t count = retried([&] { return read(descriptor, piece.data(), piece.size()); });
        if (count <= 0) {
            break;
        }
        text.append(piece.data(), static_cast<std::size_t>(count));
        text.resize(std::min(text.size(), longest));
    }
    while (text.ends_with('\n')) {
        text.pop_back();
    }
    return text;
}

/// Runs the first of the commands whose program is installed.
std::optional<std::string> runFirst(const std::vector<Words> &commands)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return std::generic_category().message(errno);
    }
    const FileDescriptor complaints(ends[0]);
    FileDescriptor otherEnd(ends[1]);
    pid_t process = 0;
    int error = ENOENT;
    for (const Words &command : commands) {
        if (error == ENOENT) {
            error = start(command, otherEnd.number(), process);
        }
    }
    otherEnd.close();
    const std::string &program = commands.back().front();
    if (error != 0) {
        return program + ": " + std::generic_category().message(error);
    }
    std::string text = textFrom(complaints.number());
    int status = 0;
    if (retried([&] { return waitpid(process, &status, 0); }) == process && status == 0) {
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

std::optional<std::string> unmountByUser(const std::string &mountPoint)
{
    return runFirst({{"umount", "--", mountPoint}});
}

} // namespace tessaly
