#pragma once

#include <QMetaObject>
#include <QObject>
#include <QThread>

#include <utility>

namespace tessaly {

/// A thread with an event loop and the one object that lives there, such as the side of a service
/// that talks to a bus.
///
/// `Object`: a QObject that can be made on another thread, and does nothing that blocks.
/// Threads:  post() may be called from any thread.
/// End:      the destructor waits for the end of the function that is running. Those that were
///           posted and have not begun are dropped; then the thread destroys the object.
template <typename Object>
class ServiceThread {
public:
    /// The arguments are those of the object's constructor.
    template <typename... Arguments>
    explicit ServiceThread(Arguments &&...arguments)
        : m_object(new Object(std::forward<Arguments>(arguments)...))
    {
        m_object->moveToThread(&m_thread);
        QObject::connect(&m_thread, &QThread::finished, m_object, &QObject::deleteLater);
        m_thread.start();
    }
    ~ServiceThread()
    {
        m_thread.quit();
        m_thread.wait();
    }
    Q_DISABLE_COPY_MOVE(ServiceThread)

    /// Has the function called there with the object, after those that were posted before.
    template <typename Function>
    void post(Function function) const
    {
        QMetaObject::invokeMethod(
            m_object, [object = m_object, function = std::move(function)] { function(*object); },
            Qt::QueuedConnection);
    }

private:
    QThread m_thread;
    Object *m_object; ///< destroyed by the thread when it ends
};

} // namespace tessaly
