#pragma once

#include "tests/platform/linux/FakeBusService.hpp"
#include "tests/platform/linux/volumes/UDisksObjects.hpp"

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tessaly {

/// UDisks2 without any disks, on the session bus: it has the objects that a test gives it, and
/// records what it is told to do.
class FakeUDisksService {
public:
    explicit FakeUDisksService(const UDisksObjects &objects = {});

    /// Waits until it has been told to do so many things, at least; returns all so far, each as
    /// "METHOD OBJECT".
    [[nodiscard]] std::vector<std::string> waitForCalls(std::size_t count);

    /// Blocks until so many calls of any kind, questions too, have no answer.
    void waitForUnanswered(std::size_t count) { m_service.waitForUnanswered(count); }
    [[nodiscard]] std::size_t questionCount();

    void withholdAnswers() { m_service.withholdAnswers(); }
    void giveAnswers() { m_service.giveAnswers(); }

    /// Answers calls of this method with an error.
    void refuse(const QString &method, const QString &reason);

    /// Calls this, on the service's thread, before it answers such a method.
    void onCall(const QString &method, std::function<void()> action)
    {
        m_service.onCall(method, std::move(action));
    }

    /// Takes other objects, and says that the properties of one of them have changed.
    void change(const UDisksObjects &objects, const QString &path);
    /// Takes other objects, and says that one has been added.
    void add(const UDisksObjects &objects, const QString &path);
    /// Says that there is a job, as it does whenever it does something, and that it has got on.
    void announceJob();

private:
    [[nodiscard]] QDBusMessage answerTo(const QDBusMessage &message);
    void setObjects(const UDisksObjects &objects);
    void sendAdded(const QString &path);
    void sendChanged(const QString &path);

    // Guarded by the service's lock.
    UDisksObjects m_objects;
    std::vector<std::string> m_calls;
    std::size_t m_questionCount = 0;
    QMap<QString, QString> m_refusals; ///< reasons by method
    FakeBusService m_service;
};

} // namespace tessaly
