#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>

class QObject;

namespace tessaly {

/// Work off the thread that wants it, and the way back for what comes of it. For calls that may
/// never end, such as looking at a file on a server that is gone: nobody waits for them, neither
/// this class nor the end of the process.
///
/// Threads: made and ended by one thread with an event loop.
class BackgroundWork {
public:
    /// Has a function called on the thread that the BackgroundWork lives in, by its event loop.
    /// Drops the function once that is gone. May be copied, used on any thread, and outlive it.
    using Poster = std::function<void(std::function<void()>)>;

    BackgroundWork();
    ~BackgroundWork();
    Q_DISABLE_COPY_MOVE(BackgroundWork)

    [[nodiscard]] Poster poster() const;

    /// Runs a function on a thread of its own; on this one when there is no thread to be had. As
    /// the process may end in the midst of it, it must not use what ends with the process; that
    /// leaves the system's calls and posters.
    static void start(const std::function<void()> &work);

    /// The same; false when there is no thread to be had, and nothing was run.
    [[nodiscard]] static bool tryStart(const std::function<void()> &work);

private:
    struct Receiver;

    std::shared_ptr<Receiver> m_receiver;
};

} // namespace tessaly
