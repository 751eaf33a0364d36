#pragma once

#include "platform/Notifier.hpp"
#include "platform/background/ServiceThread.hpp"

namespace tessaly {

class NotificationSender;

/// Notifications by the desktop's notification service, on the session bus that the environment
/// names when this is made.
///
/// A thread of its own talks to the bus. A bus or a service that is missing is looked for again
/// with each notification.
///
/// Requires: a QCoreApplication. Its event loop need not run.
/// End:      the destructor blocks neither on the bus nor on the service. Notifications that were
///           not sent by then are dropped.
class LinuxNotifier final : public Notifier {
public:
    LinuxNotifier();
    ~LinuxNotifier() override;
    Q_DISABLE_COPY_MOVE(LinuxNotifier)

    void post(const Notification &notification) override;

private:
    ServiceThread<NotificationSender> m_sender;
};

} // namespace tessaly
