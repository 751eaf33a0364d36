#include "tests/platform/linux/notifications/FakeNotificationService.hpp"

#include <QDBusArgument>
#include <QDBusError>

#include <utility>

namespace tessaly {

namespace {

const QString serviceName = QStringLiteral("org.freedesktop.Notifications");
const QString servicePath = QStringLiteral("/org/freedesktop/Notifications");

} // namespace

FakeNotificationService::FakeNotificationService(QStringList capabilities, Answers answers)
    : m_capabilities(std::move(capabilities)),
      m_service(
          serviceName, servicePath,
          [this](const QDBusMessage &message) { return answerTo(message); }, answers)
{
}

std::vector<FakeNotificationService::Call> FakeNotificationService::waitForCalls(std::size_t count)
{
    const auto locked = m_service.waitUntil([&] { return m_calls.size() >= count; });
    return m_calls;
}

void FakeNotificationService::refuse()
{
    const auto locked = m_service.lock();
    m_isRefusing = true;
}

void FakeNotificationService::close(std::uint32_t id)
{
    constexpr std::uint32_t dismissedByUser = 2;
    QDBusMessage signal =
        QDBusMessage::createSignal(servicePath, serviceName, QStringLiteral("NotificationClosed"));
    signal << id << dismissedByUser;
    m_service.send(signal);
}

std::optional<QDBusMessage> FakeNotificationService::answerTo(const QDBusMessage &message)
{
    const bool isQuestion = message.member() == QLatin1String("GetCapabilities");
    const bool isNotification = message.member() == QLatin1String("Notify") &&
                                message.signature() == QLatin1String("susssasa{sv}i");
    if (message.interface() != serviceName || (!isQuestion && !isNotification)) {
        return std::nullopt;
    }
    return isQuestion ? message.createReply(QVariant(m_capabilities)) : answerToNotify(message);
}

QDBusMessage FakeNotificationService::answerToNotify(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    Call call;
    call.application = arguments[0].toString();
    call.replaced = arguments[1].toUInt();
    call.icon = arguments[2].toString();
    call.title = arguments[3].toString();
    call.text = arguments[4].toString();
    call.actions = arguments[5].toStringList();
    call.hints = qdbus_cast<QVariantMap>(arguments[6]);
    call.timeout = arguments[7].toInt();
    call.id = call.replaced == 0 ? ++m_lastId : call.replaced;
    m_calls.push_back(call);
    return m_isRefusing
               ? message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("refused"))
               : message.createReply(call.id);
}

} // namespace tessaly
