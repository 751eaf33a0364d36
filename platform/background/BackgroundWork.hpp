#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>

class QObject;

namespace tessaly {

/// Runs functions on threads of their own, and brings their results back to the thread of an
/// object. For calls that may never return, such as looking at a file on a server that is gone:
/// neither this class nor the end of the process waits for them.
///
/// An object that starts such work has a BackgroundWork as its last member, so that no result comes
/// back to an object that is destroyed.
///
/// Threads: made and destroyed by one thread with an event loop.
class BackgroundWork {
public:
    /// Calls a function later, by the event loop of the thread that the BackgroundWork lives in.
    /// Drops the function when that is destroyed before. May be copied, used on any thread, and
    /// outlive the BackgroundWork.
    using Poster = std::function<void(std::function<void()>)>;

    BackgroundWork();
    ~BackgroundWork();
    Q_DISABLE_COPY_MOVE(BackgroundWork)

    [[nodiscard]] Poster poster() const;

    /// Runs a function on a thread of its own; on this one when no thread can be started. The
    /// process may end while it runs, so it uses no static objects: system calls and posters only.
    static void start(const std::function<void()> &work);

    /// The same; false when no thread can be started, and the function was not run.
    [[nodiscard]] static bool tryStart(const std::function<void()> &work);

private:
    struct Receiver;

    std::shared_ptr<Receiver> m_receiver;
};

} // namespace tessaly
