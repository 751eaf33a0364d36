#pragma once

#include "platform/linux/applications/ApplicationObject.hpp"
#include "platform/linux/bus/BusLink.hpp"
#include "platform/linux/process/InstanceLock.hpp"

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
/// Errors:   go to the log "tessaly.instance". Timeouts limits how long claim() blocks on a bus or
///           an instance that does not answer.
class SingleInstance {
public:
    enum class Outcome : std::uint8_t {
        first,   ///< this is the one to run
        shown,   ///< another one runs, and has been asked to show itself
        refused, ///< another one runs that cannot be asked, or does not answer
    };

    struct Timeouts {
        /// For each answer of the bus.
        std::chrono::milliseconds bus = std::chrono::seconds(2);
        /// For the whole of claim(): another instance may be about to end, or be starting.
        std::chrono::milliseconds claim = std::chrono::seconds(10);
    };

    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;

    /// `documentsFolder`: as bytes. `platformData`: what this start hands over to another instance,
    /// by ApplicationObject::platformDataOfThisStart().
    SingleInstance(const std::string &documentsFolder, QVariantMap platformData);
    SingleInstance(const std::string &documentsFolder, QVariantMap platformData, Timeouts timeouts,
                   Now now = Clock::now);

    /// Finds out which instance this is. A process that is not the first ends with the status of
    /// endSecondStart(), before it has written anything.
    [[nodiscard]] Outcome claim();

    /// The exit status of an instance that is not the first: 0 when the first one shows itself.
    /// Otherwise the user is told with `complain` that there is one.
    [[nodiscard]] int
    endSecondStart(const std::function<void(const QString &)> &complain = showComplaint) const;

    /// Called when another start asks for the window. Meanwhile XDG_ACTIVATION_TOKEN holds what the
    /// desktop has given that start, if anything, for Qt to bring the window to the front with.
    void setActivated(std::function<void()> activated) { m_activated = std::move(activated); }

    /// Lets another start be the first from now on: unlocks the folder, then releases the name. For
    /// a process that cannot end, since a thread of it is stuck in the kernel.
    ///
    /// Threads: any, once the event loop has ended. Blocks on the bus for Timeouts::bus at most.
    void release();

    /// Shows a text in a window of its own until the user closes it or the program has to end. Runs
    /// an event loop, so none may be running.
    static void showComplaint(const QString &text);

private:
    enum class Name : std::uint8_t { owned, taken, unknown };

    [[nodiscard]] std::chrono::milliseconds timeLeft() const;
    [[nodiscard]] std::chrono::milliseconds timeLeftForBus() const;
    [[nodiscard]] Name askForName();
    [[nodiscard]] bool askToShow();
    [[nodiscard]] Outcome lockFolder(std::chrono::milliseconds timeout);
    void activate(const QByteArray &token);

    QVariantMap m_platformData;
    Timeouts m_timeouts;
    Now m_now;
    Clock::time_point m_deadline; ///< of claim()
    ApplicationObject m_object;
    BusLink m_link;
    InstanceLock m_lock; ///< destroyed before m_link: the next owner of the name can take it
    std::function<void()> m_activated;
    Outcome m_outcome = Outcome::refused;
};

} // namespace tessaly
