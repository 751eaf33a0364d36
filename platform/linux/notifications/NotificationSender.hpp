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
class QDBusPendingCallWatcher;

namespace tessaly {

/// LinuxNotifier's side in its thread: hands notifications to the notification service, one after
/// the other. Each waits for the answer to the one before, which says what it has to replace.
///
/// Threads: one, with an event loop. It never waits for the bus.
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
    /// Another service, or none: it has other abilities and counts from 1 again.
    void forgetService();

private:
    void lookForBus();
    void listenToBus();
    void dropWaiting(const QString &reason);
    void sendNext();
    void sendFirst();
    void askForMarkup();
    void notify();
    void finishNotify(const QDBusPendingCallWatcher &call);
    [[nodiscard]] QDBusMessage notifyMessage(const Notification &notification) const;

    BusLink m_link;
    std::deque<Notification> m_waiting; ///< the first one is being sent while m_isSending
    bool m_isSending = false;
    bool m_isSecondTry = false;
    std::optional<bool> m_hasMarkup; ///< whether bodies are markup; nothing until asked
    std::map<std::string, std::uint32_t> m_shown; ///< the last notification of each origin
};

} // namespace tessaly
