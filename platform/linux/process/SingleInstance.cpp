#include "platform/linux/process/SingleInstance.hpp"

#include "platform/ProgramIdentity.hpp"
#include "platform/linux/bus/BusAddresses.hpp"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QMessageBox>

#include <algorithm>
#include <thread>
#include <utility>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(instanceLog, "tessaly.instance")

constexpr auto applicationInterface = "org.freedesktop.Application";
constexpr auto activationTokenVariable = "XDG_ACTIVATION_TOKEN";

// Of the bus's RequestName.
constexpr uint doNotQueue = 4;
constexpr uint isOwnerNow = 1;
constexpr uint isOwnerAlready = 4;

constexpr std::chrono::milliseconds noWait(0);
constexpr std::chrono::milliseconds timeBetweenTries(10);

} // namespace

SingleInstance::SingleInstance(const std::string &documentsFolder, QVariantMap platformData)
    : SingleInstance(documentsFolder, std::move(platformData), Timeouts())
{
}

SingleInstance::SingleInstance(const std::string &documentsFolder, QVariantMap platformData,
                               Timeouts timeouts, Now now)
    : m_platformData(std::move(platformData)), m_timeouts(timeouts), m_now(std::move(now)),
      m_object([this](const QByteArray &token) { activate(token); }),
      m_link(sessionBusAddress(), QStringLiteral("instance")),
      m_lock(documentsFolder + "/instance.lock")
{
}

SingleInstance::Outcome SingleInstance::claim()
{
    m_deadline = m_now() + m_timeouts.claim;
    if (const QString problem = m_link.openWithin(timeLeftForBus()); !problem.isEmpty()) {
        qCInfo(instanceLog) << "no session bus:" << problem;
        return m_outcome = lockFolder(noWait); // the lock alone decides
    }
    // Before the name: once the name has an owner, a second start may call the object at once.
    m_link.bus().registerObject(QLatin1String(programObjectPath), &m_object,
                                QDBusConnection::ExportAllSlots);
    bool isLockAwaited = false;
    do {
        switch (askForName()) {
        case Name::owned:
        case Name::unknown:
            return m_outcome = lockFolder(isLockAwaited ? timeLeftForBus() : noWait);
        case Name::taken:
            if (askToShow()) {
                return m_outcome = Outcome::shown;
            }
        }
        // The owner does not answer, or has just ended. Then the name is free the next time, while
        // the lock may be held for some moments yet.
        isLockAwaited = true;
        std::this_thread::sleep_for(timeBetweenTries);
    } while (timeLeft() > noWait);
    qCWarning(instanceLog, "the instance that is running does not answer");
    return m_outcome = Outcome::refused;
}

std::chrono::milliseconds SingleInstance::timeLeft() const
{
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(m_deadline - m_now()), noWait);
}

std::chrono::milliseconds SingleInstance::timeLeftForBus() const
{
    return std::min(timeLeft(), m_timeouts.bus);
}

void SingleInstance::release()
{
    // The lock first: the next owner of the name tries the lock next.
    m_lock.release();
    if (m_link.isOpen()) {
        QDBusPendingCall answer = m_link.bus().asyncCall(
            BusLink::callOfBus("ReleaseName", {QString::fromLatin1(programId)}),
            static_cast<int>(m_timeouts.bus.count()));
        answer.waitForFinished();
    }
}

int SingleInstance::endSecondStart(const std::function<void(const QString &)> &complain) const
{
    if (m_outcome == Outcome::shown) {
        return 0;
    }
    complain(QCoreApplication::translate("SingleInstance", "Tessaly is already running."));
    return 1;
}

void SingleInstance::showComplaint(const QString &text)
{
    qCWarning(instanceLog).noquote() << text;
    // By the application's own event loop, which ends also when the program is asked to.
    QMessageBox box(QMessageBox::Warning, QGuiApplication::applicationDisplayName(), text,
                    QMessageBox::Ok);
    QObject::connect(&box, &QMessageBox::finished, QCoreApplication::instance(),
                     &QCoreApplication::quit, Qt::QueuedConnection);
    box.show();
    QCoreApplication::exec();
}

SingleInstance::Name SingleInstance::askForName()
{
    // Without queueing: an instance that ends later must not make this one the first unasked.
    QDBusPendingReply<uint> answer = m_link.bus().asyncCall(
        BusLink::callOfBus("RequestName", {QLatin1String(programId), doNotQueue}),
        static_cast<int>(timeLeftForBus().count()));
    answer.waitForFinished();
    if (answer.isError()) {
        qCWarning(instanceLog, "no name on the session bus: %s",
                  qUtf8Printable(answer.error().message()));
        return Name::unknown;
    }
    const uint code = answer.value();
    return code == isOwnerNow || code == isOwnerAlready ? Name::owned : Name::taken;
}

/// Whether the owner of the name has answered.
bool SingleInstance::askToShow()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QLatin1String(programId), QLatin1String(programObjectPath),
        QLatin1String(applicationInterface), QStringLiteral("Activate"));
    call << m_platformData;
    call.setAutoStartService(false); // the bus would start a third one if the owner has ended
    QDBusPendingCall answer = m_link.bus().asyncCall(call, static_cast<int>(timeLeft().count()));
    answer.waitForFinished();
    return !answer.isError();
}

SingleInstance::Outcome SingleInstance::lockFolder(std::chrono::milliseconds timeout)
{
    const auto deadline = Clock::now() + timeout;
    InstanceLock::State state = m_lock.take();
    while (state == InstanceLock::State::refused && Clock::now() < deadline) {
        std::this_thread::sleep_for(timeBetweenTries);
        state = m_lock.take();
    }
    switch (state) {
    case InstanceLock::State::refused:
        return Outcome::refused;
    case InstanceLock::State::impossible:
        qCWarning(instanceLog, "the documents folder cannot be locked");
        break; // some network file systems have no locks; a program that never starts is worse
    case InstanceLock::State::taken:
        break;
    }
    qCInfo(instanceLog) << "this is the first instance";
    return Outcome::first;
}

void SingleInstance::activate(const QByteArray &token)
{
    if (!m_activated) {
        return;
    }
    if (token.isEmpty()) {
        m_activated();
        return;
    }
    // Qt takes the token from the environment when it activates a window, and knows no other way.
    qputenv(activationTokenVariable, token);
    m_activated();
    qunsetenv(activationTokenVariable); // Qt may not have used it; children must not inherit it
}

} // namespace tessaly
