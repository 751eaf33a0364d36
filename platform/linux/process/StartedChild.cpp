#include "platform/linux/process/StartedChild.hpp"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <sstream>
#include <string_view>

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace tessaly {

namespace {

using Strings = std::vector<std::string>;

Strings currentEnvironment()
{
    Strings variables;
    for (char **variable = environ; *variable != nullptr; ++variable) {
        variables.emplace_back(*variable);
    }
    return variables;
}

/// Never destroyed: threads may be at work when the process ends.
std::optional<Strings> &keptEnvironment()
{
    static auto *const variables = new std::optional<Strings>;
    return *variables;
}

/// The files that a program may be, in the order of PATH. posix_spawnp() would read the PATH of
/// this process.
Strings filesOf(const std::string &program, const Strings &environment)
{
    if (program.find('/') != std::string::npos) {
        return {program};
    }
    constexpr std::string_view path = "PATH=";
    const auto variable =
        std::find_if(environment.begin(), environment.end(),
                     [&](const std::string &text) { return text.starts_with(path); });
    std::istringstream folders(variable == environment.end() ? "/bin:/usr/bin"
                                                             : variable->substr(path.size()));
    Strings files;
    for (std::string folder; std::getline(folders, folder, ':');) {
        files.push_back((folder.empty() ? "." : folder) + '/' + program);
    }
    return files;
}

/// As the functions of exec() take them. Valid as long as the strings.
std::vector<char *> pointersTo(Strings &strings)
{
    std::vector<char *> pointers;
    pointers.reserve(strings.size() + 1);
    for (std::string &string : strings) {
        pointers.push_back(string.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

void keepEnvironmentForChildren()
{
    keptEnvironment() = currentEnvironment();
}

int startChild(std::vector<std::string> words, int output, int complaints, pid_t &process)
{
    Strings environment = keptEnvironment() ? *keptEnvironment() : currentEnvironment();
    const std::vector<char *> variables = pointersTo(environment);
    const std::vector<char *> arguments = pointersTo(words);
    posix_spawn_file_actions_t actions = {};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&actions, output < 0 ? STDIN_FILENO : output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, complaints < 0 ? STDIN_FILENO : complaints,
                                     STDERR_FILENO);
    int error = ENOENT;
    for (const std::string &file : filesOf(words.front(), environment)) {
        const int problem = posix_spawn(&process, file.c_str(), &actions, nullptr, arguments.data(),
                                        variables.data());
        if (problem == ENOENT || problem == ENOTDIR) {
            continue;
        }
        error = problem;
        if (problem != EACCES) { // another folder of PATH may have one that can be run
            break;
        }
    }
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

} // namespace tessaly
