#pragma once

#include "platform/Interface.hpp"

#include <string>

namespace tessaly {

/// What a desktop notification says. All texts are UTF-8.
struct Notification {
    enum class Sound { silent, message, complete };

    std::string title;
    std::string text;
    Sound sound = Sound::silent;
    /// Names where the notification comes from. A notification takes the place of the last one with
    /// the same origin, if that is still shown; without an origin it replaces none.
    std::string origin;
};

/// Shows desktop notifications.
///
/// Threads: post() may be called from any thread and returns at once. Notifications are shown in
///          the order in which they were posted.
/// Errors:  none reach the caller: a desktop without a notification service shows nothing.
class Notifier : public Interface {
public:
    virtual void post(const Notification &notification) = 0;
};

} // namespace tessaly
