#pragma once

#include "platform/Notifier.hpp"

#include <functional>
#include <mutex>
#include <vector>

namespace tessaly {

/// Keeps what is posted.
class FakeNotifier final : public Notifier {
public:
    /// Run before each is kept, on the thread that posts it.
    std::function<void()> beforeEach = [] {};

    void post(const Notification &notification) override
    {
        beforeEach();
        const std::scoped_lock lock(m_mutex);
        m_notifications.push_back(notification);
    }

    /// All so far, in their order.
    [[nodiscard]] std::vector<Notification> notifications() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_notifications;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<Notification> m_notifications;
};

} // namespace tessaly
