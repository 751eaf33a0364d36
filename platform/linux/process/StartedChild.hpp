#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace tessaly {

/// Copies the environment of this process for startChild().
///
/// Other threads must not read the environment itself, which the main thread changes while they
/// run: Qt takes the token that brings a window to the front from a variable, and removes it.
///
/// Requires: no other thread yet.
void keepEnvironmentForChildren();

/// Starts a program, found by PATH unless its name has a slash in it, without input. What it writes
/// goes to the two descriptors; -1 stands for nowhere. Its environment, and PATH, are those of
/// keepEnvironmentForChildren(); the current ones where that has not been called.
///
/// Threads: any. Nothing of this process runs in the child.
/// Returns: an errno value; 0 when it was started, and `process` is to be waited for.
[[nodiscard]] int startChild(std::vector<std::string> words, int output, int complaints,
                             pid_t &process);

} // namespace tessaly
