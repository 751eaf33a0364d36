#pragma once

#include "tests/platform/linux/FakeBusService.hpp"

#include <string>
#include <vector>

namespace tessaly {

/// A file manager on the session bus that shows nothing and records its calls.
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

    /// All so far, in their order.
    [[nodiscard]] std::vector<Call> calls();

private:
    [[nodiscard]] std::optional<QDBusMessage> answerTo(const QDBusMessage &message);

    Answers m_answers;
    std::vector<Call> m_calls; ///< guarded by the service's lock
    FakeBusService m_service;
};

} // namespace tessaly
