#include "platform/linux/volumes/UDisksClient.hpp"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <limits>
#include <utility>

namespace tessaly {

Q_LOGGING_CATEGORY(volumesLog, "tessaly.platform.volumes", QtInfoMsg)

namespace {

constexpr auto service = "org.freedesktop.UDisks2";
constexpr auto servicePath = "/org/freedesktop/UDisks2";
constexpr auto jobsPath = "/org/freedesktop/UDisks2/jobs/"; // it has one while it does something
constexpr auto objectManager = "org.freedesktop.DBus.ObjectManager";
constexpr auto properties = "org.freedesktop.DBus.Properties";

// What the bus is to pass on to us.
constexpr auto objectSignals =
    "type='signal',sender='org.freedesktop.UDisks2',path='/org/freedesktop/UDisks2',"
    "interface='org.freedesktop.DBus.ObjectManager'";
constexpr auto propertySignals =
    "type='signal',sender='org.freedesktop.UDisks2',path_namespace='/org/freedesktop/UDisks2',"
    "interface='org.freedesktop.DBus.Properties'";
constexpr auto ownerSignals = "type='signal',sender='org.freedesktop.DBus',"
                              "member='NameOwnerChanged',arg0='org.freedesktop.UDisks2'";

/// For calls that end when they are done: libdbus sets no limit then.
constexpr int noTimeout = std::numeric_limits<int>::max();

QDBusMessage callOf(const QString &path, const QString &interface, const QString &method)
{
    return QDBusMessage::createMethodCall(QLatin1String(service), path, interface, method);
}

} // namespace

UDisksClient::UDisksClient(std::string busAddress, std::function<void()> changed,
                           std::chrono::milliseconds timeout)
    : m_changed(std::move(changed)), m_timeout(timeout),
      m_link(std::move(busAddress), QStringLiteral("volumes"), this)
{
}

UDisksClient::~UDisksClient() = default;

void UDisksClient::withBus(std::function<void(const QString &problem)> ready)
{
    if (m_link.isOpen()) {
        ready({});
        return;
    }
    m_waitingForBus.push_back(std::move(ready));
    if (m_waitingForBus.size() > 1) {
        return; // it is being opened already
    }
    const auto opened = [this](const QString &problem) {
        if (problem.isEmpty()) {
            listenOn(m_link.bus());
        }
        for (const auto &waiting : std::exchange(m_waitingForBus, {})) {
            waiting(problem);
        }
    };
    m_link.open(opened, m_timeout);
}

void UDisksClient::listenOn(QDBusConnection &bus)
{
    for (const char *rule : {objectSignals, propertySignals, ownerSignals}) {
        bus.asyncCall(BusLink::callOfBus("AddMatch", {QLatin1String(rule)}));
    }
    const QString interface = QLatin1String(objectManager);
    bus.connect(QString(), QLatin1String(servicePath), interface, QStringLiteral("InterfacesAdded"),
                this, SLOT(takeObjectsSignal(QDBusMessage)));
    bus.connect(QString(), QLatin1String(servicePath), interface,
                QStringLiteral("InterfacesRemoved"), this, SLOT(takeObjectsSignal(QDBusMessage)));
    bus.connect(QString(), QString(), QLatin1String(properties),
                QStringLiteral("PropertiesChanged"), this,
                SLOT(takePropertiesSignal(QDBusMessage)));
    bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus"),
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"), this,
                SLOT(takeOwnerSignal(QDBusMessage)));
}

void UDisksClient::readVolumes(const VolumesAnswer &answer)
{
    withBus([this, answer](const QString &problem) {
        if (problem.isEmpty()) {
            askForObjects(answer);
        } else {
            qCDebug(volumesLog) << "no system bus:" << problem;
            answer(std::nullopt);
        }
    });
}

void UDisksClient::askForObjects(const VolumesAnswer &answer)
{
    const QDBusMessage call = callOf(QLatin1String(servicePath), QLatin1String(objectManager),
                                     QStringLiteral("GetManagedObjects"));
    auto *answered = new QDBusPendingCallWatcher(m_link.bus().asyncCall(call), this);
    connect(answered, &QDBusPendingCallWatcher::finished, this, [answered, answer] {
        answered->deleteLater();
        const QDBusMessage reply = answered->reply();
        if (reply.type() == QDBusMessage::ReplyMessage &&
            reply.signature() == QLatin1String("a{oa{sa{sv}}}")) {
            answer(UDisksVolumes(
                qdbus_cast<BusObjects>(reply.arguments().at(0).value<QDBusArgument>())));
        } else {
            qCDebug(volumesLog) << "no UDisks2:" << reply.errorMessage();
            answer(std::nullopt);
        }
    });
}

void UDisksClient::unmount(const std::string &mountPoint, std::uint64_t device,
                           AfterUnmount afterUnmount, const OutcomeAnswer &answer)
{
    readVolumes([=, this](const std::optional<UDisksVolumes> &volumes) {
        const UDisksVolume *volume = volumes ? volumes->find(mountPoint, device) : nullptr;
        if (volume == nullptr) {
            answer({Result::unknown, {}});
            return;
        }
        std::vector<Step> steps = {{volume->path,
                                    QStringLiteral("org.freedesktop.UDisks2.Filesystem"),
                                    QStringLiteral("Unmount")}};
        if (afterUnmount == AfterUnmount::eject && !volume->encrypted.isEmpty()) {
            steps.push_back({volume->encrypted, QStringLiteral("org.freedesktop.UDisks2.Encrypted"),
                             QStringLiteral("Lock")});
        }
        if (afterUnmount == AfterUnmount::eject && !volume->removableDrive.isEmpty()) {
            steps.push_back({volume->removableDrive,
                             QStringLiteral("org.freedesktop.UDisks2.Drive"),
                             QStringLiteral("Eject")});
        }
        doSteps(steps, 0, answer);
    });
}

void UDisksClient::doSteps(const std::vector<Step> &steps, std::size_t first,
                           const OutcomeAnswer &answer)
{
    if (first == steps.size()) {
        answer({Result::done, {}});
        return;
    }
    const Step &step = steps[first];
    if (!m_link.isOpen()) { // nobody would answer
        answer({Result::failed, step.method.toStdString() + ": the bus is gone"});
        return;
    }
    QDBusMessage call = callOf(step.path, step.interface, step.method);
    call << QVariantMap();
    call.setInteractiveAuthorizationAllowed(true); // the user may be asked for a password
    auto *answered = new QDBusPendingCallWatcher(m_link.bus().asyncCall(call, noTimeout), this);
    connect(answered, &QDBusPendingCallWatcher::finished, this, [=, this] {
        answered->deleteLater();
        const QDBusMessage reply = answered->reply();
        if (reply.type() == QDBusMessage::ReplyMessage) {
            doSteps(steps, first + 1, answer);
        } else {
            const QString problem = step.method + QLatin1String(": ") + reply.errorMessage();
            answer({Result::failed, problem.toStdString()});
        }
    });
}

void UDisksClient::takeObjectsSignal(const QDBusMessage &signal)
{
    const QString path = signal.arguments().value(0).value<QDBusObjectPath>().path();
    if (!path.startsWith(QLatin1String(jobsPath))) {
        m_changed();
    }
}

void UDisksClient::takePropertiesSignal(const QDBusMessage &signal)
{
    if (!signal.path().startsWith(QLatin1String(jobsPath))) {
        m_changed();
    }
}

/// A service that has gone may come back; it would be started only to be asked.
void UDisksClient::takeOwnerSignal(const QDBusMessage &signal)
{
    const bool isThere = !signal.arguments().value(2).toString().isEmpty();
    if (isThere) {
        m_changed();
    }
}

} // namespace tessaly
