#pragma once

#include "engine/scan/FileDescriptor.hpp"

#include <string>
#include <vector>

#include <sys/types.h>

namespace tessaly {

/// A program that runs beside a test: the destructor asks it to end (SIGTERM) and waits for it.
/// It does not outlive a test that dies. What it prints is not shown.
///
/// Members that fail throw std::runtime_error, which fails the test.
class StartedProgram {
public:
    /// `words`: the program, found by PATH, and its arguments. `variables`: "NAME=value" each, on
    /// top of the test's own environment. The program may report on descriptor 3.
    explicit StartedProgram(const std::vector<std::string> &words,
                            const std::vector<std::string> &variables = {});
    ~StartedProgram();
    StartedProgram(const StartedProgram &) = delete;
    StartedProgram &operator=(const StartedProgram &) = delete;

    /// Waits for the next line that the program writes to descriptor 3, and returns it without its
    /// end. Services write one once they can be reached. One that ends instead
    /// makes this throw what it complained of.
    [[nodiscard]] std::string reportedLine() const;

    /// False once it has ended.
    [[nodiscard]] bool isRunning();

    void sendSignal(int number) const;

    /// Waits until SIGSTOP has stopped all of it.
    void waitForStop() const;

    /// Waits for its end, and returns how it ended as waitpid() says it.
    [[nodiscard]] int waitForEnd();

    /// The beginning of what it has written to standard error so far.
    [[nodiscard]] std::string complaints() const;

    /// Whether PATH leads to a program of that name.
    [[nodiscard]] static bool isInstalled(const std::string &name);

private:
    std::string m_name;
    scan::FileDescriptor m_complaints; ///< its standard error
    scan::FileDescriptor m_report;
    pid_t m_process = -1;
};

} // namespace tessaly
