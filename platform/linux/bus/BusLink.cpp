#include "platform/linux/bus/BusLink.hpp"

#include <QDBusError>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <atomic>
#include <utility>

namespace tessaly {

namespace {

const QString busName = QStringLiteral("org.freedesktop.DBus");
const QString busPath = QStringLiteral("/org/freedesktop/DBus");

const QString noListener = QStringLiteral("nobody takes connections there");
const QString noAnswer = QStringLiteral("the bus does not answer");

/// Qt keeps connections by name, for the whole process: each needs a name of its own.
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
    connect(&m_timeout, &QTimer::timeout, this, [this] { finish(noAnswer); });
}

BusLink::~BusLink()
{
    close();
}

void BusLink::open(Answered answered, std::optional<std::chrono::milliseconds> timeout)
{
    m_probeAnswered.reset();
    m_answered = std::move(answered);
    // A socket of our own asks first: it can be watched by the event loop, while libdbus blocks as
    // soon as it connects. Once the probe has its answer, the bus is known to serve connections.
    m_probe = std::make_unique<BusProbe>(m_addresses);
    if (!m_probe->isConnected()) {
        finish(noListener);
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
        return noListener;
    }
    return probe.waitForAnswer(timeout) ? connectTo(probe.address()) : noAnswer;
}

void BusLink::finish(const QString &problem)
{
    m_timeout.stop();
    if (m_probeAnswered) {
        // This may run inside the notifier's own signal, which a plain delete would not survive.
        m_probeAnswered->setEnabled(false);
        m_probeAnswered.release()->deleteLater();
    }
    m_probe.reset();
    // Taken out before it is called: it may open this link again.
    std::exchange(m_answered, nullptr)(problem);
}

QString BusLink::connectTo(const std::string &address)
{
    // Qt returns the connection that it has by this name, even one that failed or was lost.
    close();
    // As to a peer: connectToBus() would wait for the bus to answer "Hello", without a timeout. We
    // send "Hello" ourselves; a bus handles messages in order, so nothing depends on the reply.
    m_bus = QDBusConnection::connectToPeer(QString::fromStdString(address), m_name);
    if (!m_bus.isConnected()) {
        return m_bus.lastError().message();
    }
    m_bus.asyncCall(callOfBus("Hello"));
    return {};
}

void BusLink::close()
{
    // Our handle first: Qt closes a connection when the last handle of it is gone.
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromPeer(m_name);
}

void BusLink::call(const QDBusMessage &message, Replied replied, int timeoutMs)
{
    // A child, so that no reply arrives here once this is destroyed.
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, timeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [watcher, replied = std::move(replied)] {
                watcher->deleteLater();
                replied(watcher->reply());
            });
}

void BusLink::addMatch(const char *rule)
{
    m_bus.asyncCall(callOfBus("AddMatch", {QLatin1String(rule)}));
}

QDBusMessage BusLink::callOfBus(const char *method, const QVariantList &arguments)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(busName, busPath, busName, QLatin1String(method));
    call.setArguments(arguments);
    return call;
}

} // namespace tessaly
