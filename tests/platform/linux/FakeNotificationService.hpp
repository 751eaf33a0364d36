#pragma once

#include "tests/platform/linux/BusConnection.hpp"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QThread>
#include <QVariantMap>

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace tessaly {

/// A notification service that shows nothing and records what it is told. It answers on a thread
/// of its own, so that a test needs no event loop.
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

    enum class Answers : std::uint8_t { given, withheld };

    /// On the session bus, where there is none so far.
    explicit FakeNotificationService(QStringList capabilities = {QStringLiteral("body")},
                                     Answers answers = Answers::given);
    ~FakeNotificationService();
    FakeNotificationService(const FakeNotificationService &) = delete;
    FakeNotificationService &operator=(const FakeNotificationService &) = delete;
    FakeNotificationService(FakeNotificationService &&) = delete;
    FakeNotificationService &operator=(FakeNotificationService &&) = delete;

    /// Waits until Notify has been called that many times, at least; returns all calls so far.
    [[nodiscard]] std::vector<Call> waitForCalls(std::size_t count);
    /// Waits until a call of any kind has come that is not answered so far.
    void waitForUnanswered();
    [[nodiscard]] std::size_t unansweredCount();

    /// From now on nothing is answered until giveAnswers().
    void withholdAnswers();
    /// Answers what has been withheld, and whatever comes.
    void giveAnswers();

    /// Answers Notify with an error from now on.
    void refuse();

    /// Says that a notification has been closed by the user.
    void close(std::uint32_t id);

private:
    class Object;

    bool handle(const QDBusMessage &message);
    [[nodiscard]] QDBusMessage answerToNotify(const QDBusMessage &message);

    QStringList m_capabilities;
    std::mutex m_mutex;
    std::condition_variable m_hasChanged;
    std::vector<Call> m_calls;
    std::vector<QDBusMessage> m_unsent; ///< withheld answers
    bool m_isWithholding;
    bool m_isRefusing = false;
    std::uint32_t m_lastId = 0;

    BusConnection m_bus;
    QThread m_thread;
    std::unique_ptr<QDBusVirtualObject> m_object; ///< lives in the thread
};

} // namespace tessaly
