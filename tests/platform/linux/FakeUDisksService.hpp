#pragma once

#include "tests/platform/linux/BusConnection.hpp"
#include "tests/platform/linux/UDisksObjects.hpp"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QThread>

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tessaly {

/// UDisks2 without any disks, on the session bus: it has the objects that a test gives it, and
/// records what it is told to do. It answers on a thread of its own.
class FakeUDisksService {
public:
    explicit FakeUDisksService(const UDisksObjects &objects = {});
    ~FakeUDisksService();
    FakeUDisksService(const FakeUDisksService &) = delete;
    FakeUDisksService &operator=(const FakeUDisksService &) = delete;
    FakeUDisksService(FakeUDisksService &&) = delete;
    FakeUDisksService &operator=(FakeUDisksService &&) = delete;

    /// Waits until it has been told to do so many things, at least; returns all so far, each as
    /// "METHOD OBJECT".
    [[nodiscard]] std::vector<std::string> waitForCalls(std::size_t count);

    /// Waits until there are so many calls of any kind, questions too, that have no answer.
    void waitForUnanswered(std::size_t count);
    [[nodiscard]] std::size_t questionCount();

    /// From now on nothing is answered until giveAnswers().
    void withholdAnswers();
    /// Answers what has been withheld, and whatever comes.
    void giveAnswers();

    /// Answers calls of this method with an error.
    void refuse(const QString &method, const QString &reason);

    /// Calls this, on the thread of its own, before it answers to such a method.
    void onCall(const QString &method, std::function<void()> action);

    /// Takes other objects, and says that the properties of one of them have changed.
    void change(const UDisksObjects &objects, const QString &path);
    /// Takes other objects, and says that one has been added.
    void add(const UDisksObjects &objects, const QString &path);
    /// Says that there is a job, as it does whenever it does something, and that it has got on.
    void announceJob();

private:
    class Object;

    bool handle(const QDBusMessage &message);
    [[nodiscard]] QDBusMessage answerTo(const QDBusMessage &message);
    void sendAdded(const QString &path);
    void sendChanged(const QString &path);

    std::mutex m_mutex;
    std::condition_variable m_hasChanged;
    UDisksObjects m_objects;
    std::vector<std::string> m_calls;
    std::size_t m_questionCount = 0;
    std::vector<QDBusMessage> m_unsent; ///< withheld answers
    bool m_isWithholding = false;
    QMap<QString, QString> m_refusals; ///< reasons by method
    QMap<QString, std::function<void()>> m_actions;

    BusConnection m_bus;
    QThread m_thread;
    std::unique_ptr<QDBusVirtualObject> m_object; ///< lives in the thread
};

} // namespace tessaly
