#include "platform/linux/bus/BusLink.hpp"

#include <QDBusError>
#include <QDBusPendingCall>

#include <atomic>
#include <utility>

namespace tessaly {

namespace {

constexpr auto busName = "org.freedesktop.DBus";
constexpr auto busPath = "/org/freedesktop/DBus";

const QString nobody = QStringLiteral("nobody takes connections there");
const QString silence = QStringLiteral("the bus does not answer");

/// Connections have names of their own in the process.
QString newConnectionName(const QString &purpose)
{
    static std::atomic<int> count = 0;
    return QStringLiteral("tessaly-%1-%2").arg(purpose).arg(++count);
}

} // namespace

BusLink::BusLink(std::string addresses, const QString &purpose, QObject *parent)
    : QObject(parent), m_addresses(std::move(addresses)), m_name(newConnectionName(purpose)),
      m_bus(QString()), m_timeout(this)
{
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this, [this] { finish(silence); });
}

BusLink::~BusLink()
{
    close();
}

void BusLink::open(Answered answered, std::optional<std::chrono::milliseconds> timeout)
{
    m_probeAnswered.reset();
    m_answered = std::move(answered);
    m_probe = std::make_unique<BusProbe>(m_addresses);
    if (!m_probe->isConnected()) {
        finish(nobody);
        return;
    }
    if (timeout) {
        m_timeout.start(*timeout);
    }
    m_probeAnswered =
        std::make_unique<QSocketNotifier>(m_probe->descriptor(), QSocketNotifier::Read);
    connect(m_probeAnswered.get(), &QSocketNotifier::activated, this,
            [this] { finish(connectTo(std::exchange(m_probe, nullptr)->address())); });
}

QString BusLink::openWithin(std::chrono::milliseconds timeout)
{
    const BusProbe probe(m_addresses);
    if (!probe.isConnected()) {
        return nobody;
    }
    return probe.waitForAnswer(timeout) ? connectTo(probe.address()) : silence;
}

void BusLink::finish(const QString &problem)
{
    m_timeout.stop();
    if (m_probeAnswered) {
        m_probeAnswered->setEnabled(false);
        m_probeAnswered.release()->deleteLater(); // it may be the one that calls
    }
    m_probe.reset();
    // It may well open this again.
    std::exchange(m_answered, nullptr)(problem);
}

QString BusLink::connectTo(const std::string &address)
{
    // Under its name a connection stays the same, be it one that failed or one that was lost.
    close();
    // As to a peer: what Qt calls a connection to a bus waits until the bus has said hello. So we
    // say hello ourselves. The bus does what it is told in turn; nothing depends on its answer.
    m_bus = QDBusConnection::connectToPeer(QString::fromStdString(address), m_name);
    if (!m_bus.isConnected()) {
        return m_bus.lastError().message();
    }
    m_bus.asyncCall(callOfBus("Hello"));
    return {};
}

void BusLink::close()
{
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromPeer(m_name);
}

QDBusMessage BusLink::callOfBus(const char *method, const QVariantList &arguments)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(QLatin1String(busName), QLatin1String(busPath),
                                       QLatin1String(busName), QLatin1String(method));
    call.setArguments(arguments);
    return call;
}

} // namespace tessaly
