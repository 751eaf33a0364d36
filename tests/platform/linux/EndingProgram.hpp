#pragma once

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/StartedProgram.hpp"

#include <string>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>

namespace tessaly {

/// The program of the tests that ends in one of several ways (ending_program.cpp).
class EndingProgram : public StartedProgram {
public:
    explicit EndingProgram(const std::string &way, const std::string &argument = {},
                           std::vector<std::string> variables = {})
        : StartedProgram({TESSALY_ENDING_PROGRAM, way, argument}, withQuietQt(std::move(variables)))
    {
    }

    /// Waits for its end: the exit status, or minus the number of the signal that ended it.
    [[nodiscard]] int result()
    {
        const int status = waitForEnd();
        return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    }

private:
    /// With a folder for Qt to use, so that it does not complain that there is none.
    static std::vector<std::string> withQuietQt(std::vector<std::string> variables)
    {
        static const TemporaryFolder folder;
        chmod(folder.path().c_str(), S_IRWXU);
        variables.push_back("XDG_RUNTIME_DIR=" + folder.path());
        return variables;
    }
};

} // namespace tessaly
