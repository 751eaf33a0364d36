#pragma once

#include "tests/platform/linux/BusConnection.hpp"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QThread>

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tessaly {

/// A file manager on the session bus that shows nothing and records what it is told, on a thread of
/// its own.
class FakeFileManagerService {
public:
    struct Call {
        std::string method;
        std::vector<std::string> urls;
        std::string startupId;

        bool operator==(const Call &) const = default;
    };
    enum class Answers { given, refused, withheld };

    explicit FakeFileManagerService(Answers answers = Answers::given);
    ~FakeFileManagerService();
    FakeFileManagerService(const FakeFileManagerService &) = delete;
    FakeFileManagerService &operator=(const FakeFileManagerService &) = delete;
    FakeFileManagerService(FakeFileManagerService &&) = delete;
    FakeFileManagerService &operator=(FakeFileManagerService &&) = delete;

    /// All so far, in their order.
    [[nodiscard]] std::vector<Call> calls();

private:
    class Object;

    bool handle(const QDBusMessage &message);

    Answers m_answers;
    std::mutex m_mutex;
    std::vector<Call> m_calls;

    BusConnection m_bus;
    QThread m_thread;
    std::unique_ptr<QDBusVirtualObject> m_object; ///< lives in the thread
};

} // namespace tessaly
