#include "app/window/ShutdownWatchdog.hpp"

#include <QLoggingCategory>

#include <cstdlib>
#include <utility>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(endLog, "tessaly.end")

} // namespace

ShutdownWatchdog::ShutdownWatchdog(std::chrono::milliseconds timeout, int exitStatus,
                                   std::function<void()> release)
    : m_thread([this, timeout, exitStatus, release = std::move(release)] {
          // The flag is checked under the lock, so a program that ends before this thread waits is
          // not missed.
          std::unique_lock lock(m_mutex);
          if (!m_hasEnded.wait_for(lock, timeout, [this] { return m_isOver; })) {
              // Before the exit, which may never be complete: the kernel keeps a process with a
              // thread that waits for a dead server. The next start would find the name and the
              // lock taken.
              release();
              qCWarning(endLog, "Something keeps the program from ending; it is not waited for.");
              // Not std::exit(), which would destroy statics that the stuck thread may still use.
              std::_Exit(exitStatus);
          }
      })
{
}

ShutdownWatchdog::~ShutdownWatchdog()
{
    {
        // A change without the lock could fall between the check and the wait, and the notification
        // would be lost.
        const std::scoped_lock lock(m_mutex);
        m_isOver = true;
    }
    m_hasEnded.notify_one();
    m_thread.join();
}

} // namespace tessaly
