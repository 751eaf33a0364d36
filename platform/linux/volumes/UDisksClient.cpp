#include "platform/linux/volumes/UDisksClient.hpp"

#include <QDBusArgument>
#include <QDBusError>

#include <limits>
#include <utility>

namespace tessaly {

Q_LOGGING_CATEGORY(volumesLog, "tessaly.platform.volumes", QtInfoMsg)

namespace {

const QString service = QStringLiteral("org.freedesktop.UDisks2");
const QString servicePath = QStringLiteral("/org/freedesktop/UDisks2");
const QString objectManager = QStringLiteral("org.freedesktop.DBus.ObjectManager");

/// UDisks2 adds a job here for everything that it does, and removes it afterwards. Each would make
/// us read all volumes again, though nothing about them has changed yet.
const QString jobsPath = QStringLiteral("/org/freedesktop/UDisks2/jobs/");

// The rules for the signals that the bus passes on to us. With the sender's name in them, no other
// program can make us read the volumes again and again.
constexpr auto objectSignals =
    "type='signal',sender='org.freedesktop.UDisks2',path='/org/freedesktop/UDisks2',"
    "interface='org.freedesktop.DBus.ObjectManager'";
constexpr auto propertySignals =
    "type='signal',sender='org.freedesktop.UDisks2',path_namespace='/org/freedesktop/UDisks2',"
    "interface='org.freedesktop.DBus.Properties'";
constexpr auto ownerSignals = "type='signal',sender='org.freedesktop.DBus',"
                              "member='NameOwnerChanged',arg0='org.freedesktop.UDisks2'";

/// libdbus takes this for "no timeout". Unmounting takes as long as writing back what is not on the
/// disk yet, which for a slow stick may be minutes.
constexpr int noTimeoutMs = std::numeric_limits<int>::max();

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
        return; // the first one has the bus opened for all
    }
    const auto opened = [this](const QString &problem) {
        if (problem.isEmpty()) {
            listen();
        }
        // Taken out before: what is called may come here again.
        for (const auto &waiting : std::exchange(m_waitingForBus, {})) {
            waiting(problem);
        }
    };
    m_link.open(opened, m_timeout);
}

void UDisksClient::listen()
{
    for (const char *rule : {objectSignals, propertySignals, ownerSignals}) {
        m_link.addMatch(rule);
    }
    // Without the sender's name: on a connection that Qt takes for one to a peer, it would compare
    // that with the unique name (":1.5") in the signal. The rules above have left out all others.
    // Slots take the whole message, since Qt cannot unpack the nested maps of these signals.
    QDBusConnection &bus = m_link.bus();
    for (const char *member : {"InterfacesAdded", "InterfacesRemoved"}) {
        bus.connect(QString(), servicePath, objectManager, QLatin1String(member), this,
                    SLOT(takeObjectsSignal(QDBusMessage)));
    }
    bus.connect(QString(), QString(), QStringLiteral("org.freedesktop.DBus.Properties"),
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
    // One call for everything, and the bus starts UDisks2 for it where it does not run yet.
    const QDBusMessage question = QDBusMessage::createMethodCall(
        service, servicePath, objectManager, QStringLiteral("GetManagedObjects"));
    m_link.call(question, [answer](const QDBusMessage &reply) {
        // Checked here, since qdbus_cast() does not check the signature of what it unpacks.
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
        // In this order: a device that is still unlocked keeps its drive from ejecting.
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
    if (!m_link.isOpen()) { // on a lost connection a call may never be answered
        answer({Result::failed, step.method.toStdString() + ": the bus is gone"});
        return;
    }
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, step.path, step.interface, step.method);
    call << QVariantMap();                         // no options
    call.setInteractiveAuthorizationAllowed(true); // the user may be asked for a password
    const auto replied = [=, this](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ReplyMessage) {
            doSteps(steps, first + 1, answer);
        } else {
            const QString problem =
                steps[first].method + QLatin1String(": ") + reply.errorMessage();
            answer({Result::failed, problem.toStdString()});
        }
    };
    m_link.call(call, replied, noTimeoutMs);
}

void UDisksClient::takeObjectsSignal(const QDBusMessage &signal)
{
    const QString path = signal.arguments().value(0).value<QDBusObjectPath>().path();
    if (!path.startsWith(jobsPath)) {
        m_changed();
    }
}

void UDisksClient::takePropertiesSignal(const QDBusMessage &signal)
{
    if (!signal.path().startsWith(jobsPath)) {
        m_changed();
    }
}

void UDisksClient::takeOwnerSignal(const QDBusMessage &signal)
{
    // Only when it comes: reading the volumes after its end would have the bus start it again.
    const QString newOwner = signal.arguments().value(2).toString();
    if (!newOwner.isEmpty()) {
        m_changed();
    }
}

} // namespace tessaly
