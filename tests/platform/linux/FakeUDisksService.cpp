#include "tests/platform/linux/FakeUDisksService.hpp"

#include "tests/platform/linux/PrivateBus.hpp"

#include <QByteArrayList>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QStringList>

#include <stdexcept>
#include <utility>

namespace tessaly {

namespace {

const QString serviceName = QStringLiteral("org.freedesktop.UDisks2");
const QString servicePath = QStringLiteral("/org/freedesktop/UDisks2");
const QString objectManager = QStringLiteral("org.freedesktop.DBus.ObjectManager");

} // namespace

/// Where the calls arrive.
class FakeUDisksService::Object final : public QDBusVirtualObject {
public:
    explicit Object(FakeUDisksService &service) : m_service(service) {}

    QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection & /*bus*/) override
    {
        return m_service.handle(message);
    }

private:
    FakeUDisksService &m_service;
};

FakeUDisksService::FakeUDisksService(const UDisksObjects &objects)
    : m_objects(objects), m_bus(PrivateBus::address()), m_object(std::make_unique<Object>(*this))
{
    qDBusRegisterMetaType<QByteArrayList>();
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    qDBusRegisterMetaType<BusObjects>();
    // In this order, since Qt gives such an object a child on the thread that registers it.
    const bool isRegistered =
        m_bus->registerVirtualObject(servicePath, m_object.get(), QDBusConnection::SubPath);
    m_object->moveToThread(&m_thread);
    m_thread.start();
    if (!isRegistered || !m_bus->registerService(serviceName)) {
        throw std::runtime_error("there is a UDisks2 already");
    }
}

FakeUDisksService::~FakeUDisksService()
{
    m_bus->unregisterService(serviceName);
    m_bus->unregisterObject(servicePath, QDBusConnection::UnregisterTree);
    m_thread.quit();
    m_thread.wait();
}

std::vector<std::string> FakeUDisksService::waitForCalls(std::size_t count)
{
    std::unique_lock lock(m_mutex);
    m_hasChanged.wait(lock, [&] { return m_calls.size() >= count; });
    return m_calls;
}

void FakeUDisksService::waitForUnanswered(std::size_t count)
{
    std::unique_lock lock(m_mutex);
    m_hasChanged.wait(lock, [&] { return m_unsent.size() >= count; });
}

std::size_t FakeUDisksService::questionCount()
{
    const std::scoped_lock lock(m_mutex);
    return m_questionCount;
}

void FakeUDisksService::withholdAnswers()
{
    const std::scoped_lock lock(m_mutex);
    m_isWithholding = true;
}

void FakeUDisksService::giveAnswers()
{
    const std::scoped_lock lock(m_mutex);
    m_isWithholding = false;
    for (const QDBusMessage &answer : std::exchange(m_unsent, {})) {
        m_bus->send(answer);
    }
}

void FakeUDisksService::refuse(const QString &method, const QString &reason)
{
    const std::scoped_lock lock(m_mutex);
    m_refusals[method] = reason;
}

void FakeUDisksService::onCall(const QString &method, std::function<void()> action)
{
    const std::scoped_lock lock(m_mutex);
    m_actions[method] = std::move(action);
}

void FakeUDisksService::change(const UDisksObjects &objects, const QString &path)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_objects = objects;
    }
    sendChanged(path);
}

void FakeUDisksService::add(const UDisksObjects &objects, const QString &path)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_objects = objects;
    }
    sendAdded(path);
}

void FakeUDisksService::announceJob()
{
    const QString job = servicePath + QStringLiteral("/jobs/1");
    sendAdded(job);
    sendChanged(job);
}

void FakeUDisksService::sendAdded(const QString &path)
{
    QDBusMessage signal =
        QDBusMessage::createSignal(servicePath, objectManager, QStringLiteral("InterfacesAdded"));
    signal << QVariant::fromValue(QDBusObjectPath(path))
           << QVariant::fromValue(m_objects.objects().value(QDBusObjectPath(path)));
    m_bus->send(signal);
}

void FakeUDisksService::sendChanged(const QString &path)
{
    QDBusMessage signal =
        QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                   QStringLiteral("PropertiesChanged"));
    signal << QStringLiteral("org.freedesktop.UDisks2.Filesystem") << QVariantMap()
           << QStringList();
    m_bus->send(signal);
}

bool FakeUDisksService::handle(const QDBusMessage &message)
{
    std::function<void()> action;
    {
        const std::scoped_lock lock(m_mutex);
        action = m_actions.value(message.member());
    }
    if (action) {
        action();
    }
    const std::scoped_lock lock(m_mutex);
    const QDBusMessage answer = answerTo(message);
    if (m_isWithholding) {
        m_unsent.push_back(answer);
    } else {
        m_bus->send(answer);
    }
    m_hasChanged.notify_all();
    return true;
}

QDBusMessage FakeUDisksService::answerTo(const QDBusMessage &message)
{
    if (message.interface() == objectManager) {
        ++m_questionCount;
        return message.createReply(QVariant::fromValue(m_objects.objects()));
    }
    const QString object = message.path().section(QLatin1Char('/'), -1);
    m_calls.push_back((message.member() + QLatin1Char(' ') + object).toStdString());
    if (message.signature() != QLatin1String("a{sv}")) {
        return message.createErrorReply(QDBusError::InvalidSignature, message.signature());
    }
    if (m_refusals.contains(message.member())) {
        return message.createErrorReply(QStringLiteral("org.freedesktop.UDisks2.Error.DeviceBusy"),
                                        m_refusals.value(message.member()));
    }
    return message.createReply();
}

} // namespace tessaly
