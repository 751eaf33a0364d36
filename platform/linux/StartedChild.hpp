#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace tessaly {

/// Starts a program, found by PATH unless its name has a slash in it, without input. What it writes
/// goes to the two descriptors; -1 stands for nowhere.
///
/// Threads: any. Nothing of this process runs in the child.
/// Returns: an errno value; 0 when it was started, and `process` is to be waited for.
[[nodiscard]] int startChild(std::vector<std::string> words, int output, int complaints,
                             pid_t &process);

} // namespace tessaly
