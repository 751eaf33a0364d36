#include "tests/platform/linux/StartedProgram.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly {

namespace {

constexpr int reportDescriptor = 3;

std::vector<char *> pointersTo(std::vector<std::string> &texts)
{
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string &text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentWith(const std::vector<std::string> &variables)
{
    std::vector<std::string> all = variables; // the first of a name is the one that counts
    for (char **variable = environ; *variable != nullptr; ++variable) {
        const std::string_view text = *variable;
        const std::string_view name = text.substr(0, text.find('=') + 1);
        bool isReplaced = false;
        for (const std::string &replacement : variables) {
            isReplaced = isReplaced || replacement.starts_with(name);
        }
        if (!isReplaced) {
            all.emplace_back(text);
        }
    }
    return all;
}

/// Only what may be done between fork() and exec() while other threads run.
[[noreturn]] void becomeProgram(int report, int complaints, char *const *words,
                                char *const *environment)
{
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    dup2(complaints, STDERR_FILENO);
    if (report == reportDescriptor) {
        fcntl(report, F_SETFD, 0);
    } else {
        dup2(report, reportDescriptor);
    }
    execvpe(words[0], words, environment);
    constexpr int notFound = 127;
    _exit(notFound);
}

} // namespace

StartedProgram::StartedProgram(const std::vector<std::string> &words,
                               const std::vector<std::string> &variables)
    : m_name(words.at(0)), m_complaints(memfd_create(m_name.c_str(), MFD_CLOEXEC))
{
    std::vector<std::string> ownWords = words;
    std::vector<std::string> environment = environmentWith(variables);
    const std::vector<char *> wordPointers = pointersTo(ownWords);
    const std::vector<char *> variablePointers = pointersTo(environment);

    std::array<int, 2> pipeEnds{};
    if (pipe2(pipeEnds.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe for " + m_name);
    }
    m_report = scan::FileDescriptor(pipeEnds[0]);
    const scan::FileDescriptor reportEnd(pipeEnds[1]);
    m_process = fork();
    if (m_process == 0) {
        becomeProgram(reportEnd.number(), m_complaints.number(), wordPointers.data(),
                      variablePointers.data());
    }
    if (m_process < 0) {
        throw std::runtime_error("cannot start " + m_name);
    }
}

StartedProgram::~StartedProgram()
{
    if (m_process > 0) {
        kill(m_process, SIGTERM);
        kill(m_process, SIGCONT); // should a test have stopped it
        waitpid(m_process, nullptr, 0);
    }
}

std::string StartedProgram::reportedLine() const
{
    std::string line;
    for (;;) {
        char letter = 0;
        const ssize_t count = read(m_report.number(), &letter, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            throw std::runtime_error(m_name + " has ended before it was of use: " + complaints());
        }
        if (letter == '\n') {
            return line;
        }
        line += letter;
    }
}

void StartedProgram::sendSignal(int number) const
{
    if (m_process <= 0 || kill(m_process, number) != 0) {
        throw std::runtime_error(m_name + " takes no signal");
    }
}

void StartedProgram::waitForStop() const
{
    int status = 0;
    if (waitpid(m_process, &status, WUNTRACED) != m_process || !WIFSTOPPED(status)) {
        throw std::runtime_error(m_name + " has not stopped");
    }
}

int StartedProgram::waitForEnd()
{
    int status = 0;
    if (m_process <= 0 || waitpid(m_process, &status, 0) != m_process) {
        throw std::runtime_error(m_name + " has ended before");
    }
    m_process = -1;
    return status;
}

std::string StartedProgram::complaints() const
{
    std::array<char, 4096> text{};
    const ssize_t length = pread(m_complaints.number(), text.data(), text.size(), 0);
    return {text.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
}

bool StartedProgram::isRunning()
{
    if (m_process > 0 && waitpid(m_process, nullptr, WNOHANG) == m_process) {
        m_process = -1;
    }
    return m_process > 0;
}

bool StartedProgram::isInstalled(const std::string &name)
{
    const char *path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "/usr/bin:/bin" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (access((folder + '/' + name).c_str(), X_OK) == 0) {
            return true;
        }
    }
    return false;
}

} // namespace tessaly
