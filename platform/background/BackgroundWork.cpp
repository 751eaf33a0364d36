#include "platform/background/BackgroundWork.hpp"

#include <QMetaObject>
#include <QObject>

#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace tessaly {

struct BackgroundWork::Receiver {
    std::mutex mutex;
    std::unique_ptr<QObject> object; ///< guarded by mutex; lives in the owner's thread; null later
};

BackgroundWork::BackgroundWork() : m_receiver(std::make_shared<Receiver>())
{
    m_receiver->object = std::make_unique<QObject>();
}

BackgroundWork::~BackgroundWork()
{
    // Destroyed after the lock is released: the functions that are dropped with it own posters,
    // and destroying their captures may call one.
    std::unique_ptr<QObject> object;
    const std::scoped_lock lock(m_receiver->mutex);
    object.swap(m_receiver->object);
}

BackgroundWork::Poster BackgroundWork::poster() const
{
    return [receiver = m_receiver](std::function<void()> function) {
        // Under the lock, or the receiver could be destroyed between the question and the call.
        const std::scoped_lock lock(receiver->mutex);
        if (receiver->object) {
            QMetaObject::invokeMethod(receiver->object.get(), std::move(function),
                                      Qt::QueuedConnection);
        }
    };
}

void BackgroundWork::start(const std::function<void()> &work)
{
    if (!tryStart(work)) {
        work();
    }
}

bool BackgroundWork::tryStart(const std::function<void()> &work)
{
    try {
        std::thread(work).detach(); // joining one that hangs in the kernel would hang as well
    } catch (const std::system_error &) {
        return false;
    }
    return true;
}

} // namespace tessaly
