#pragma once

#include <map>
#include <string>

namespace tessaly {

/// Starts programs and waits until they report a stage of their start on standard error.
///
/// A stage is reported by a line that ends in its name: "painted" when the window has been painted
/// for the first time, "content painted" when it has been painted with its content, "rows shown"
/// when the last result is visible.

/// Runs the program until it tells the moment, and then ends it. `environment` is added to our own.
/// Throws std::runtime_error when the program ends before.
void runUntil(const std::string &moment, const std::string &program,
              const std::map<std::string, std::string> &environment);

} // namespace tessaly
