#include "platform/linux/process/ProbeProcess.hpp"

#include "engine/archive/FileCalls.hpp"
#include "platform/background/ChildProgram.hpp"
#include "platform/linux/process/ReadToEnd.hpp"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>

#include <array>
#include <csignal>
#include <cstring>
#include <memory>
#include <vector>

#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(probeLog, "tessaly.platform.probe", QtInfoMsg)

/// Children that were killed. Each new one reaps those that have ended by then, so that no thread
/// ever blocks in waitpid() for one that the kernel keeps.
class KilledChildren {
public:
    /// Never destroyed: threads may be at work when the process ends.
    static KilledChildren &instance()
    {
        static auto *const children = new KilledChildren;
        return *children;
    }

    void add(pid_t process)
    {
        const std::scoped_lock lock(m_mutex);
        m_processes.push_back(process);
        std::erase_if(m_processes,
                      [](pid_t child) { return waitpid(child, nullptr, WNOHANG) != 0; });
    }

private:
    std::mutex m_mutex;
    std::vector<pid_t> m_processes; ///< guarded by m_mutex
};

bool waitFor(int descriptor, std::chrono::milliseconds timeout)
{
    pollfd awaited = {descriptor, POLLIN, 0};
    return archive::retried([&] { return poll(&awaited, 1, static_cast<int>(timeout.count())); }) >
           0;
}

} // namespace

std::string ProbeProcess::programOfInstallation()
{
    const QString folder = QCoreApplication::applicationDirPath();
    return QFile::encodeName(folder).toStdString() + "/" TESSALY_FILE_SYSTEM_PROBE;
}

ProbeProcess::ProbeProcess(const std::string &program, const char *question,
                           const std::string &path)
{
    // A socket and no pipe: stop() can shut it down under a thread that is reading.
    std::array<int, 2> ends = {-1, -1};
    int error = 0;
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        error = errno;
    }
    m_answer = scan::FileDescriptor(ends[0]);
    const scan::FileDescriptor childsEnd(ends[1]);
    if (error == 0) {
        error = ChildProgram{.words = {program, question, path},
                             .output = childsEnd.number(),
                             .errors = STDERR_FILENO}
                    .start(m_process);
    }
    if (error != 0) {
        m_process = -1;
        qCWarning(probeLog, "%s is not started: %s", program.c_str(), std::strerror(error));
    }
}

ProbeProcess::~ProbeProcess()
{
    if (m_process > 0) {
        kill(m_process, SIGKILL);
        KilledChildren::instance().add(m_process);
    }
}

std::string ProbeProcess::wholeAnswer() const
{
    return readToEnd(m_answer.number()).value_or(std::string());
}

bool ProbeProcess::waitForAnswer(std::chrono::milliseconds timeout) const
{
    return waitFor(m_answer.number(), timeout);
}

void ProbeProcess::stop(std::chrono::milliseconds timeout)
{
    const std::scoped_lock lock(m_mutex);
    m_isStopped = true;
    if (m_process > 0) {
        kill(m_process, SIGKILL);
        // A descriptor of the process can be waited for with a timeout, unlike waitpid().
        const scan::FileDescriptor end(static_cast<int>(syscall(SYS_pidfd_open, m_process, 0)));
        (void)waitFor(end.number(), end.isOpen() ? timeout : std::chrono::milliseconds(0));
    }
    // A child that the kernel keeps has its end of the socket open, so the reader is woken here.
    shutdown(m_answer.number(), SHUT_RDWR);
}

bool ProbeProcess::isStopped() const
{
    const std::scoped_lock lock(m_mutex);
    return m_isStopped;
}

} // namespace tessaly
