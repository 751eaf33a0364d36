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
          std::unique_lock lock(m_mutex);
          if (!m_hasEnded.wait_for(lock, timeout, [this] { return m_isOver; })) {
              release();
              qCWarning(endLog, "Something keeps the program from ending; it is not waited for.");
              std::_Exit(exitStatus);
          }
      })
{
}

ShutdownWatchdog::~ShutdownWatchdog()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_isOver = true;
    }
    m_hasEnded.notify_one();
    m_thread.join();
}

} // namespace tessaly
