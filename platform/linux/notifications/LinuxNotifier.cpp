#include "platform/linux/notifications/LinuxNotifier.hpp"

#include "platform/linux/bus/SessionBusAddress.hpp"
#include "platform/linux/notifications/NotificationSender.hpp"

#include <QMetaObject>

namespace tessaly {

LinuxNotifier::LinuxNotifier() : m_sender(new NotificationSender(sessionBusAddress()))
{
    m_sender->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_sender, &QObject::deleteLater);
    m_thread.start();
}

LinuxNotifier::~LinuxNotifier()
{
    m_thread.quit();
    m_thread.wait(); // not for long: nothing that the sender does waits for somebody else
}

void LinuxNotifier::post(const Notification &notification)
{
    QMetaObject::invokeMethod(
        m_sender, [sender = m_sender, notification] { sender->post(notification); },
        Qt::QueuedConnection);
}

} // namespace tessaly
