#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tessaly {

/// Copies the environment of this process for the children that it starts later.
///
/// Other threads must not read the environment itself, which the main thread changes while they
/// run: Qt takes the token that brings a window to the front from a variable, and removes it.
///
/// Requires: no other thread yet.
void keepEnvironmentForChildren();

/// A program to run as a child process. The child blocks no signals and handles SIGPIPE and SIGCHLD
/// by default, whatever this process does; its standard input is empty; and of our descriptors it
/// inherits only those that stand here: -1 stands for /dev/null, or for no channel.
struct ChildProgram {
    using Strings = std::vector<std::string>;

    /// The number by which the child knows its channel.
    static constexpr int channelNumber = 3;

    Strings words;   ///< the program, which PATH leads to unless there is a slash in it; arguments
    int output = -1; ///< becomes its standard output
    int errors = -1; ///< becomes its standard error
    int channel =
        -1; ///< becomes channelNumber; 0 to 2 are taken by then, so it must be none of them
    std::optional<Strings> environment = {}; ///< else the one that was kept, else the current one
    bool hasOwnGroup = false;                ///< Ctrl+C in a terminal does not reach it

    /// Starts it. Nothing of this process runs in the child.
    ///
    /// Threads: any.
    /// Returns: an errno value; 0 when it runs, and the caller has to wait for `process`.
    [[nodiscard]] int start(pid_t &process) const;
};

} // namespace tessaly
