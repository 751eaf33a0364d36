#pragma once

#include "platform/linux/ApplicationObject.hpp"
#include "platform/linux/BusLink.hpp"
#include "platform/linux/InstanceLock.hpp"

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace tessaly {

/// Keeps the user to one running instance: the first one is the only one that writes, and the only
/// one with a window.
///
/// The first instance owns a name on the session bus, where a second one asks it to show itself. It
/// also locks the documents folder, since there may be no bus, or another one in another session of
/// the same user.
///
/// Requires: a QCoreApplication; the event loop, to be asked by others.
/// Threads:  the main thread.
/// Errors:   go to the log "tessaly.instance". Neither a bus nor another instance that says nothing
///           is waited for longer than Patience says.
class SingleInstance {
public:
    enum class Outcome : std::uint8_t {
        first,   ///< this is the one to run
        shown,   ///< another one runs, and has been asked to show itself
        refused, ///< another one runs that cannot be asked, or does not answer
    };

    struct Patience {
        std::chrono::milliseconds forBus = std::chrono::seconds(2);
        /// For an instance that is about to end, or has only just begun.
        std::chrono::milliseconds forFirst = std::chrono::seconds(10);
    };

    /// `documentsFolder`: as bytes. `platformData`: what this start hands over to another instance,
    /// by ApplicationObject::platformDataOfThisStart().
    SingleInstance(const std::string &documentsFolder, QVariantMap platformData);
    SingleInstance(const std::string &documentsFolder, QVariantMap platformData, Patience patience);

    /// Finds out which instance this is. Whoever gets anything but `first` ends with the status of
    /// endSecondStart(), without having written anything.
    [[nodiscard]] Outcome claim();

    /// The exit status of an instance that is not the first: 0 when the first one shows itself.
    /// Otherwise the user is told with `complain` that there is one.
    [[nodiscard]] int
    endSecondStart(const std::function<void(const QString &)> &complain = showComplaint) const;

    /// Called when another start asks for the window. Meanwhile XDG_ACTIVATION_TOKEN holds what the
    /// desktop has given that start, if anything, for Qt to bring the window to the front with.
    void setActivated(std::function<void()> activated) { m_activated = std::move(activated); }

    /// Shows a text in a window of its own, until the user closes it or the program is to end. Not
    /// while an event loop runs already.
    static void showComplaint(const QString &text);

private:
    enum class Name : std::uint8_t { owned, taken, unknown };

    [[nodiscard]] Name askForName();
    [[nodiscard]] bool askToShow();
    [[nodiscard]] Outcome lockFolder(std::chrono::milliseconds patience);
    void activate(const QByteArray &token);

    QVariantMap m_platformData;
    Patience m_patience;
    ApplicationObject m_object;
    BusLink m_link;
    InstanceLock m_lock; ///< goes before the name: who waits for that finds the folder free
    std::function<void()> m_activated;
    Outcome m_outcome = Outcome::refused;
};

} // namespace tessaly
