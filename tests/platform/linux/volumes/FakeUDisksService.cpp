#include "tests/platform/linux/volumes/FakeUDisksService.hpp"

#include <QByteArrayList>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QStringList>

namespace tessaly {

namespace {

const QString serviceName = QStringLiteral("org.freedesktop.UDisks2");
const QString servicePath = QStringLiteral("/org/freedesktop/UDisks2");
const QString objectManager = QStringLiteral("org.freedesktop.DBus.ObjectManager");

/// Registered before the service may be called.
const UDisksObjects &withRegisteredTypes(const UDisksObjects &objects)
{
    qDBusRegisterMetaType<QByteArrayList>();
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    qDBusRegisterMetaType<BusObjects>();
    return objects;
}

} // namespace

FakeUDisksService::FakeUDisksService(const UDisksObjects &objects)
    : m_objects(withRegisteredTypes(objects)),
      m_service(
          serviceName, servicePath,
          [this](const QDBusMessage &message) { return answerTo(message); },
          FakeBusService::Answers::given, QDBusConnection::VirtualObjectRegisterOption::SubPath)
{
}

std::vector<std::string> FakeUDisksService::waitForCalls(std::size_t count)
{
    const auto locked = m_service.waitUntil([&] { return m_calls.size() >= count; });
    return m_calls;
}

std::size_t FakeUDisksService::questionCount()
{
    const auto locked = m_service.lock();
    return m_questionCount;
}

void FakeUDisksService::refuse(const QString &method, const QString &reason)
{
    const auto locked = m_service.lock();
    m_refusals[method] = reason;
}

void FakeUDisksService::setObjects(const UDisksObjects &objects)
{
    const auto locked = m_service.lock();
    m_objects = objects;
}

void FakeUDisksService::change(const UDisksObjects &objects, const QString &path)
{
    setObjects(objects);
    sendChanged(path);
}

void FakeUDisksService::add(const UDisksObjects &objects, const QString &path)
{
    setObjects(objects);
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
    m_service.send(signal);
}

void FakeUDisksService::sendChanged(const QString &path)
{
    QDBusMessage signal =
        QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                   QStringLiteral("PropertiesChanged"));
    signal << QStringLiteral("org.freedesktop.UDisks2.Filesystem") << QVariantMap()
           << QStringList();
    m_service.send(signal);
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
