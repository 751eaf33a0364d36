#include "platform/linux/notifications/LinuxNotifier.hpp"

#include "platform/linux/bus/BusAddresses.hpp"
#include "platform/linux/notifications/NotificationSender.hpp"

namespace tessaly {

LinuxNotifier::LinuxNotifier() : m_sender(sessionBusAddress()) {}

LinuxNotifier::~LinuxNotifier() = default;

void LinuxNotifier::post(const Notification &notification)
{
    m_sender.post([notification](NotificationSender &sender) { sender.post(notification); });
}

} // namespace tessaly
