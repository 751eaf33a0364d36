#pragma once

#include <QObject>

#include <functional>
#include <mutex>
#include <utility>

namespace tessaly {

/// The way back from a thread to an object that may be gone before the thread has come to its end.
/// Held by both, by std::shared_ptr.
///
/// Threads: any.
class ReplyBox {
public:
    explicit ReplyBox(QObject *receiver) : m_receiver(receiver) {}

    /// Runs the reply later, on the receiver's thread; not at all once the box is closed or the
    /// receiver is gone.
    void post(std::function<void()> reply)
    {
        const std::scoped_lock lock(m_mutex);
        if (m_receiver != nullptr) {
            QMetaObject::invokeMethod(m_receiver, std::move(reply), Qt::QueuedConnection);
        }
    }

    /// To be called by the receiver's destructor.
    void close()
    {
        const std::scoped_lock lock(m_mutex);
        m_receiver = nullptr;
    }

private:
    std::mutex m_mutex;
    QObject *m_receiver;
};

} // namespace tessaly
