#pragma once

#include "platform/linux/bus/BusProbe.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>
#include <QVariantList>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tessaly {

/// A connection of our own to a message bus. Connecting never blocks on a bus that does not answer,
/// as Qt's own ways to connect do: those wait without a timeout, and hold up all of the process's
/// D-Bus meanwhile.
///
/// Once it is open, bus() makes calls and takes them. What Qt does by itself for a connection to a
/// bus has to be asked for here: signals by addMatch(), names by callOfBus("RequestName").
///
/// Threads: one. open() and call() need its event loop.
class BusLink final : public QObject {
public:
    /// Told why there is no connection; an empty text when there is one.
    using Answered = std::function<void(const QString &problem)>;
    /// Takes the reply to a call, which may be an error.
    using Replied = std::function<void(const QDBusMessage &reply)>;

    static constexpr int defaultTimeoutMs = -1; ///< libdbus's: 25 seconds

    /// `addresses`: as BusProbe takes them. `purpose`: a word to tell connections by.
    /// A member of a QObject gives that as its parent, so that they move between threads together.
    BusLink(std::string addresses, const QString &purpose, QObject *parent = nullptr);
    ~BusLink() override;
    Q_DISABLE_COPY_MOVE(BusLink)

    /// Connects, or connects again. `answered` is called once: at once when nothing listens at the
    /// addresses, else when the bus has answered or after `timeout`. Never when this is destroyed
    /// or opened again before that.
    void open(Answered answered, std::optional<std::chrono::milliseconds> timeout = {});

    /// Connects, or connects again, and blocks for at most `timeout`. Returns why there is no
    /// connection; an empty text when there is one.
    [[nodiscard]] QString openWithin(std::chrono::milliseconds timeout);

    /// False also when the bus has closed the connection.
    [[nodiscard]] bool isOpen() const { return m_bus.isConnected(); }

    [[nodiscard]] QDBusConnection &bus() noexcept { return m_bus; }

    /// Makes a call and returns. `replied` is called once, later; never when this is destroyed
    /// before that. Requires: open() or openWithin() has connected it. A bus that was lost since
    /// then gives an error.
    void call(const QDBusMessage &message, Replied replied, int timeoutMs = defaultTimeoutMs);

    /// Has the bus pass on the signals that match the rule.
    void addMatch(const char *rule);

    /// A call of the bus itself.
    [[nodiscard]] static QDBusMessage callOfBus(const char *method,
                                                const QVariantList &arguments = {});

private:
    void close();
    void finish(const QString &problem);
    [[nodiscard]] QString connectTo(const std::string &address);

    std::string m_addresses;
    QString m_name;
    QDBusConnection m_bus;
    // While the bus is being asked. The notifier is destroyed before the probe, whose socket it
    // watches.
    std::unique_ptr<BusProbe> m_probe;
    std::unique_ptr<QSocketNotifier> m_probeAnswered;
    QTimer m_timeout;
    Answered m_answered;
};

} // namespace tessaly
