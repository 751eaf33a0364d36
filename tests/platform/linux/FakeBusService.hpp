#pragma once

#include "tests/platform/linux/BusConnection.hpp"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMap>
#include <QThread>

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace tessaly {

/// What the fakes of services on the session bus have in common: a name and an object, a thread of
/// their own, so that tests need no event loop, and answers that can be withheld.
///
/// A fake has one as its last member, so that all that the handler uses is there while it may be
/// called.
class FakeBusService {
public:
    using Lock = std::unique_lock<std::mutex>;
    /// Answers a call, nothing when it does not know the call. Called on the service's thread with
    /// the lock held.
    using Handler = std::function<std::optional<QDBusMessage>(const QDBusMessage &call)>;

    enum class Answers { given, withheld };

    /// Throws where the name has an owner already.
    FakeBusService(QString name, QString path, Handler handler, Answers answers = Answers::given,
                   QDBusConnection::VirtualObjectRegisterOption paths =
                       QDBusConnection::VirtualObjectRegisterOption::SingleNode);
    ~FakeBusService();
    Q_DISABLE_COPY_MOVE(FakeBusService)

    /// Guards what the handler uses.
    [[nodiscard]] Lock lock() { return Lock(m_mutex); }
    /// Blocks until the condition holds after some call; returns with the lock.
    template <typename Condition>
    Lock waitUntil(Condition condition)
    {
        Lock locked = lock();
        m_hasChanged.wait(locked, condition);
        return locked;
    }

    void send(const QDBusMessage &message) { m_bus->send(message); }

    /// From now on nothing is answered until giveAnswers().
    void withholdAnswers();
    /// Answers what has been withheld, and whatever comes.
    void giveAnswers();
    /// Blocks until there are so many calls without an answer.
    void waitForUnanswered(std::size_t count);
    [[nodiscard]] std::size_t unansweredCount();

    /// Calls this, on the service's thread without the lock, before it handles such a method.
    void onCall(const QString &method, std::function<void()> action);

private:
    class Object;

    bool handle(const QDBusMessage &message);

    const QString m_name;
    const QString m_path;
    const Handler m_handler;
    std::mutex m_mutex;
    std::condition_variable m_hasChanged;
    std::vector<QDBusMessage> m_unsent;             ///< guarded by m_mutex; withheld answers
    bool m_isWithholding;                           ///< guarded by m_mutex
    QMap<QString, std::function<void()>> m_actions; ///< guarded by m_mutex; by method

    BusConnection m_bus;
    QThread m_thread;
    std::unique_ptr<QDBusVirtualObject> m_object; ///< lives in the thread
};

} // namespace tessaly
