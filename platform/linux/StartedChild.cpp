#include "platform/linux/StartedChild.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace tessaly {

int startChild(std::vector<std::string> words, int output, int complaints, pid_t &process)
{
    std::vector<char *> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string &word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions = {};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&actions, output < 0 ? STDIN_FILENO : output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, complaints < 0 ? STDIN_FILENO : complaints,
                                     STDERR_FILENO);
    const int error =
        posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

} // namespace tessaly
