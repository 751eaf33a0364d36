#pragma once

#include <map>
#include <string>

namespace tessaly {

/// Starts programs and waits until they have told a moment on their standard error.
///
/// A program tells a moment by a line that ends in its name: "painted" once its window was painted
/// for the first time, "content painted" once that was so with all that is in it, "rows shown" once
/// the last result is to be seen.

/// Runs the program until it tells the moment, and then ends it. `environment` is added to our own.
/// Throws std::runtime_error when the program ends before.
void runUntil(const std::string &moment, const std::string &program,
              const std::map<std::string, std::string> &environment);

} // namespace tessaly
