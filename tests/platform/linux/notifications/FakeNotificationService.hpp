#pragma once

#include "tests/platform/linux/FakeBusService.hpp"

#include <QStringList>
#include <QVariantMap>

#include <cstdint>
#include <vector>

namespace tessaly {

/// A notification service that shows nothing and records its calls.
///
/// As a real one does, it keeps the id of a notification that is replaced, and counts up for
/// others.
class FakeNotificationService {
public:
    /// The arguments of a call of Notify.
    struct Call {
        QString application;
        std::uint32_t replaced = 0;
        QString icon;
        QString title;
        QString text;
        QStringList actions;
        QVariantMap hints;
        int timeout = 0;
        std::uint32_t id = 0; ///< not an argument: the one that the service gives it
    };

    using Answers = FakeBusService::Answers;

    /// On the session bus, where there is none so far.
    explicit FakeNotificationService(QStringList capabilities = {QStringLiteral("body")},
                                     Answers answers = Answers::given);

    /// Waits until Notify has been called that many times, at least; returns all calls so far.
    [[nodiscard]] std::vector<Call> waitForCalls(std::size_t count);
    /// Blocks until a call of any kind has no answer.
    void waitForUnanswered() { m_service.waitForUnanswered(1); }
    [[nodiscard]] std::size_t unansweredCount() { return m_service.unansweredCount(); }

    void withholdAnswers() { m_service.withholdAnswers(); }
    void giveAnswers() { m_service.giveAnswers(); }

    /// Answers Notify with an error from now on.
    void refuse();

    /// Says that a notification has been closed by the user.
    void close(std::uint32_t id);

private:
    [[nodiscard]] std::optional<QDBusMessage> answerTo(const QDBusMessage &message);
    [[nodiscard]] QDBusMessage answerToNotify(const QDBusMessage &message);

    QStringList m_capabilities;
    // Guarded by the service's lock.
    std::vector<Call> m_calls;
    bool m_isRefusing = false;
    std::uint32_t m_lastId = 0;
    FakeBusService m_service;
};

} // namespace tessaly
