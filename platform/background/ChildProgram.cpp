#include "platform/background/ChildProgram.hpp"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <optional>
#include <sstream>
#include <string_view>

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace tessaly {

namespace {

using Strings = ChildProgram::Strings;

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

Strings environmentOfChildren()
{
    const auto &kept = keptEnvironment();
    return kept ? *kept : currentEnvironment();
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
    // Without a PATH, the system's own default.
    std::istringstream folders(variable == environment.end() ? "/bin:/usr/bin"
                                                             : variable->substr(path.size()));
    Strings files;
    for (std::string folder; std::getline(folders, folder, ':');) {
        files.push_back((folder.empty() ? "." : folder) + '/' + program);
    }
    return files;
}

/// The strings as exec() takes them. Valid as long as they are.
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

int ChildProgram::start(pid_t &process) const
{
    Strings variables = environment ? *environment : environmentOfChildren();
    Strings copiedWords = words;
    const std::vector<char *> variablePointers = pointersTo(variables);
    const std::vector<char *> wordPointers = pointersTo(copiedWords);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&actions, output < 0 ? STDIN_FILENO : output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors < 0 ? STDIN_FILENO : errors, STDERR_FILENO);
    if (channel >= 0) {
        posix_spawn_file_actions_adddup2(&actions, channel, channelNumber);
    }
    // Ours are closed there by their flags; a library may have opened some without.
    posix_spawn_file_actions_addclosefrom_np(&actions,
                                             channel < 0 ? channelNumber : channelNumber + 1);

    // What is ignored here stays ignored in a child: SIGPIPE, since the log may have no reader.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t signalSet;
    sigemptyset(&signalSet);
    posix_spawnattr_setsigmask(&attributes, &signalSet);
    sigaddset(&signalSet, SIGCHLD);
    sigaddset(&signalSet, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &signalSet);
    posix_spawnattr_setflags(&attributes,
                             static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                (hasOwnGroup ? POSIX_SPAWN_SETPGROUP : 0)));

    int error = ENOENT;
    for (const std::string &file : filesOf(words.front(), variables)) {
        const int problem = posix_spawn(&process, file.c_str(), &actions, &attributes,
                                        wordPointers.data(), variablePointers.data());
        if (problem == ENOENT || problem == ENOTDIR) {
            continue;
        }
        error = problem;
        if (problem != EACCES) { // another folder of PATH may have one that can be run
            break;
        }
    }
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

} // namespace tessaly
