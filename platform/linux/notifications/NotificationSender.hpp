#pragma once

#include "platform/Notifier.hpp"
#include "platform/linux/bus/BusLink.hpp"

#include <QObject>
#include <QString>

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>

class QDBusMessage;
template <typename Value>
class QDBusReply;

namespace tessaly {

/// The part of LinuxNotifier that hands notifications to the notification service, one after the
/// other. Each is sent after the reply to the one before, whose id it may have to replace.
///
/// Threads: one, with an event loop. It never blocks on the bus.
/// Errors:  go to the log "tessaly.notifier", which is off unless asked for.
class NotificationSender final : public QObject {
    Q_OBJECT

public:
    explicit NotificationSender(std::string busAddress);
    ~NotificationSender() override;
    Q_DISABLE_COPY_MOVE(NotificationSender)

    void post(const Notification &notification);

private slots:
    /// A notification that is no longer shown is not to be replaced: the next one is news.
    void forgetNotification(unsigned id);
    /// The service was replaced or has ended: another one may support less, and its ids start at 1.
    void forgetService();

private:
    void lookForBus();
    void listenToBus();
    void dropWaiting(const QString &reason);
    void sendNext();
    void sendFirst();
    void askForMarkup();
    void notify();
    void finishNotify(const QDBusReply<uint> &answer);
    [[nodiscard]] QDBusMessage notifyMessage(const Notification &notification) const;

    BusLink m_link;
    std::deque<Notification> m_waiting; ///< the first one is being sent while m_isSending
    bool m_isSending = false;
    bool m_isSecondTry = false;
    std::optional<bool> m_hasMarkup; ///< whether bodies are markup; nothing until asked
    std::map<std::string, std::uint32_t> m_shown; ///< the last notification of each origin
};

} // namespace tessaly
