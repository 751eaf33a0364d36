#include "platform/linux/bus/QtSessionBus.hpp"

#include "platform/linux/bus/BusAddresses.hpp"
#include "platform/linux/bus/BusLink.hpp"
#include "platform/linux/bus/BusProbe.hpp"

#include <QAccessible>
#include <QByteArray>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusPendingReply>
#include <QLoggingCategory>
#include <QString>

#include <algorithm>
#include <string>
#include <thread>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(busLog, "tessaly.bus")

using Clock = std::chrono::steady_clock;

constexpr auto sessionVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr auto accessibilityVariable = "AT_SPI_BUS_ADDRESS";
/// An address that refuses connections.
constexpr auto deadAddress = "unix:path=/dev/null";

std::chrono::milliseconds timeUntil(Clock::time_point deadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return std::max(left, std::chrono::milliseconds(0));
}

QtSessionBus::State stateAfter(std::chrono::milliseconds timeout)
{
    using State = QtSessionBus::State;
    constexpr std::chrono::milliseconds timeBetweenTries(10);
    const auto deadline = Clock::now() + timeout;
    for (;;) {
        const BusProbe probe(sessionBusAddress());
        if (probe.isConnected()) {
            return probe.waitForAnswer(timeUntil(deadline)) ? State::answers : State::silent;
        }
        if (!probe.isQueueFull()) {
            return State::missing;
        }
        // A full queue: the bus is stopped, or just busy. So it is tried again until the deadline.
        if (Clock::now() >= deadline) {
            return State::silent;
        }
        std::this_thread::sleep_for(timeBetweenTries);
    }
}

/// Has Qt connect to a session bus that is not there. Qt and libdbus keep that failed connection
/// for the life of the process, so the variable can be restored for the programs that this one
/// starts.
void keepSessionBusFromQt()
{
    const bool wasSet = qEnvironmentVariableIsSet(sessionVariable);
    const QByteArray address = qgetenv(sessionVariable);
    qputenv(sessionVariable, deadAddress);
    (void)QDBusConnection::sessionBus();
    if (wasSet) {
        qputenv(sessionVariable, address);
    } else {
        qunsetenv(sessionVariable);
    }
}

QDBusMessage callOf(const char *service, const char *path, const char *interface,
                    const char *method)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(QLatin1String(service), QLatin1String(path),
                                       QLatin1String(interface), QLatin1String(method));
    call.setAutoStartService(false); // a service that does not run yet cannot hang
    return call;
}

/// Blocks until the reply or the call's timeout. An error is an answer, too.
bool isAnswered(QDBusPendingCall &call)
{
    call.waitForFinished();
    const QDBusError::ErrorType error = call.error().type();
    return error != QDBusError::NoReply && error != QDBusError::Timeout &&
           error != QDBusError::TimedOut;
}

/// Asks the accessibility bus and the registry on it. Returns why Qt should not connect to it;
/// empty when it may.
QString problemOfAccessibility(Clock::time_point deadline)
{
    std::string address = qgetenv(accessibilityVariable).toStdString();
    if (address.empty()) {
        BusLink session(sessionBusAddress(), QStringLiteral("accessibility"));
        if (QString problem = session.openWithin(timeUntil(deadline)); !problem.isEmpty()) {
            return problem;
        }
        QDBusPendingReply<QString> answer = session.bus().asyncCall(
            callOf("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress"),
            static_cast<int>(timeUntil(deadline).count()));
        if (!isAnswered(answer)) {
            return QStringLiteral("org.a11y.Bus does not answer");
        }
        if (answer.isError()) {
            return {}; // there is none
        }
        address = answer.value().toStdString();
    }
    BusLink accessibility(address, QStringLiteral("accessibility"));
    if (QString problem = accessibility.openWithin(timeUntil(deadline)); !problem.isEmpty()) {
        return problem;
    }
    QDBusPendingCall answer = accessibility.bus().asyncCall(
        callOf("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root",
               "org.freedesktop.DBus.Peer", "Ping"),
        static_cast<int>(timeUntil(deadline).count()));
    return isAnswered(answer) ? QString() : QStringLiteral("its registry does not answer");
}

} // namespace

QtSessionBus::QtSessionBus(std::chrono::milliseconds timeout) : m_state(stateAfter(timeout))
{
    if (m_state == State::silent) {
        qCWarning(busLog, "the session bus does not answer; accessibility is off");
        keepSessionBusFromQt();
    }
}

void QtSessionBus::connectAccessibility(std::chrono::milliseconds timeout) const
{
    if (m_state == State::answers || qEnvironmentVariableIsSet(accessibilityVariable)) {
        if (const QString problem = problemOfAccessibility(Clock::now() + timeout);
            !problem.isEmpty()) {
            qCWarning(busLog, "accessibility is off: %s", qUtf8Printable(problem));
            qunsetenv(accessibilityVariable);
            keepSessionBusFromQt();
        }
    }
    // Creates the bridge now, right after the answers: it would block on a bus that stops later.
    (void)QAccessible::isActive();
}

} // namespace tessaly
