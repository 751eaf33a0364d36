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

/// A connection of our own to a message bus, which is made without waiting for a bus that says
/// nothing: Qt's ways to connect wait for it, for ever if need be, and stop all of the process's
/// D-Bus meanwhile.
///
/// Once it is open, bus() makes calls and takes them. What Qt does for connections to a bus by
/// itself it does not do here: signals need their "AddMatch", names their "RequestName", by
/// callOfBus().
///
/// Threads: one. open() needs its event loop.
class BusLink final : public QObject {
public:
    /// Told why there is no connection; an empty text when there is one.
    using Answered = std::function<void(const QString &problem)>;

    /// `addresses`: as BusProbe takes them. `purpose`: a word to tell connections by.
    /// A member of a QObject gives that as its parent, so that they move between threads together.
    BusLink(std::string addresses, const QString &purpose, QObject *parent = nullptr);
    ~BusLink() override;
    Q_DISABLE_COPY_MOVE(BusLink)

    /// Connects, or connects again. `answered` is called once: at once when nobody takes
    /// connections, else when the bus has answered or `timeout` is over. Never, when this is
    /// destroyed or opened again before that.
    void open(Answered answered, std::optional<std::chrono::milliseconds> timeout = {});

    /// Connects, or connects again, and waits for that as long as `timeout` at most. Returns why
    /// there is no connection; an empty text when there is one.
    [[nodiscard]] QString openWithin(std::chrono::milliseconds timeout);

    /// False also when the bus has closed the connection.
    [[nodiscard]] bool isOpen() const { return m_bus.isConnected(); }

    [[nodiscard]] QDBusConnection &bus() noexcept { return m_bus; }

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
    // Of the look for a bus, while there is one; the notifier is destroyed before the probe.
    std::unique_ptr<BusProbe> m_probe;
    std::unique_ptr<QSocketNotifier> m_probeAnswered;
    QTimer m_timeout;
    Answered m_answered;
};

} // namespace tessaly
