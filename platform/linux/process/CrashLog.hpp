#pragma once

#include <string_view>

namespace tessaly {

/// Says on standard error what the program died of, in one line: a signal that ends a program that
/// went wrong (SIGSEGV, SIGABRT, SIGBUS, SIGILL, SIGFPE), or an exception that was not caught. Then
/// it dies as it would have without this: by that signal, or by SIGABRT, with a core dump where
/// those are wanted.
class CrashLog {
public:
    /// The line begins with `program` and `version`. Once in a process, by its main thread. A
    /// signal that already has a handler keeps it.
    static void install(std::string_view program, std::string_view version);
};

} // namespace tessaly
