#pragma once

#include "engine/scan/FileDescriptor.hpp"

#include <cstddef>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace tessaly {

/// One end of a pair of local sockets that keep messages apart (SOCK_SEQPACKET), and take
/// descriptors along.
///
/// Threads: one at a time, but for shutDown(), which any may call.
/// Errors:  a message that cannot be sent or received means that the other end is no longer there.
class MessageSocket {
public:
    MessageSocket() = default;
    explicit MessageSocket(scan::FileDescriptor descriptor) : m_descriptor(std::move(descriptor)) {}

    /// Both ends of a new pair, neither of which programs that are started inherit; two that are
    /// not open when the system has no more.
    [[nodiscard]] static std::pair<MessageSocket, MessageSocket> makePair();

    [[nodiscard]] bool isOpen() const noexcept { return m_descriptor.isOpen(); }
    [[nodiscard]] int number() const noexcept { return m_descriptor.number(); }
    void close() noexcept { m_descriptor.close(); }

    /// Ends a receive() at either end, and all that follow.
    void shutDown() const noexcept;

    /// Sends a message along with duplicates of these descriptors, three at most.
    template <typename Message>
    bool send(const Message &message, const std::vector<int> &descriptors = {})
    {
        static_assert(std::is_trivially_copyable_v<Message>);
        return sendBytes(&message, sizeof message, descriptors);
    }

    /// Waits for a message; nothing when there will be none, or it has another length. The
    /// descriptors that came along are put into `descriptors`.
    template <typename Message>
    std::optional<Message> receive(std::vector<scan::FileDescriptor> *descriptors = nullptr)
    {
        static_assert(std::is_trivially_copyable_v<Message>);
        Message message;
        return receiveBytes(&message, sizeof message, descriptors) ? std::optional(message)
                                                                   : std::nullopt;
    }

private:
    bool sendBytes(const void *bytes, std::size_t byteCount, const std::vector<int> &descriptors);
    // NOLINTNEXTLINE(readability-make-member-function-const): takes what was sent
    bool receiveBytes(void *bytes, std::size_t byteCount,
                      std::vector<scan::FileDescriptor> *descriptors);

    scan::FileDescriptor m_descriptor;
};

} // namespace tessaly
