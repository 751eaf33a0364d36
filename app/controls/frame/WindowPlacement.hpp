#pragma once

#include <QByteArray>
#include <QRect>

#include <optional>

namespace tessaly {

/// Where a window was when it was last seen.
struct WindowPlacement {
    QRect frame;              ///< when neither maximised nor full-screen
    bool isMaximized = false; ///< and shown over all of the screen

    /// As bytes to be kept in the settings.
    [[nodiscard]] QByteArray bytes() const;

    /// What bytes() wrote; nothing for any other bytes, and for frames that no screen has.
    [[nodiscard]] static std::optional<WindowPlacement> fromBytes(const QByteArray &bytes);
};

} // namespace tessaly
