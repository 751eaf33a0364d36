#include "platform/linux/process/TerminationSignals.hpp"

#include <QCoreApplication>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace tessaly {

namespace {

constexpr std::array terminationSignals = {SIGTERM, SIGINT, SIGHUP};

/// Where the handler writes. A handler is a plain function and knows no object.
std::atomic<int> writingEnd = -1;

/// A signal handler: only async-signal-safe calls. The write wakes up the event loop.
void wakeUp(int /*number*/)
{
    const int error = errno;
    const char byte = 0;
    (void)!write(writingEnd, &byte, 1);
    errno = error;
}

} // namespace

TerminationSignals::TerminationSignals()
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // then the signals end the program as they do without this
    }
    m_reading = scan::FileDescriptor(ends[0]);
    m_writing = scan::FileDescriptor(ends[1]);
    writingEnd = m_writing.number();
    m_notifier.emplace(m_reading.number(), QSocketNotifier::Read);
    QObject::connect(&*m_notifier, &QSocketNotifier::activated, &*m_notifier, [this] {
        m_notifier->setEnabled(false);
        QCoreApplication::quit();
    });
    for (const int number : terminationSignals) {
        struct sigaction action = {};
        // nohup starts programs with SIGHUP ignored, shells background jobs with SIGINT.
        if (sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) {
            continue;
        }
        action = {};
        action.sa_handler = wakeUp;
        // Reset: the same signal again ends the program, should its event loop not get there.
        action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
        sigemptyset(&action.sa_mask);
        sigaction(number, &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals()
{
    for (const int number : terminationSignals) {
        struct sigaction action = {};
        if (sigaction(number, nullptr, &action) == 0 && action.sa_handler == wakeUp) {
            std::signal(number, SIG_DFL);
        }
    }
    writingEnd = -1;
}

} // namespace tessaly
