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
    std::unique_ptr<QObject> object; ///< lives in the thread to come back to; gone with its owner
};

BackgroundWork::BackgroundWork() : m_receiver(std::make_shared<Receiver>())
{
    m_receiver->object = std::make_unique<QObject>();
}

BackgroundWork::~BackgroundWork()
{
    std::unique_ptr<QObject> object; // outlives the lock: what it drops may post
    const std::scoped_lock lock(m_receiver->mutex);
    object.swap(m_receiver->object);
}

BackgroundWork::Poster BackgroundWork::poster() const
{
    return [receiver = m_receiver](std::function<void()> function) {
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
        std::thread(work).detach();
    } catch (const std::system_error &) {
        return false;
    }
    return true;
}

} // namespace tessaly
