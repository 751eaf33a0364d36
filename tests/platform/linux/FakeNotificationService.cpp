#include "tests/platform/linux/FakeNotificationService.hpp"

#include "tests/platform/linux/PrivateBus.hpp"

#include <QDBusArgument>
#include <QDBusError>

#include <stdexcept>
#include <utility>

namespace tessaly {

namespace {

const QString serviceName = QStringLiteral("org.freedesktop.Notifications");
const QString servicePath = QStringLiteral("/org/freedesktop/Notifications");

} // namespace

/// Where the calls arrive.
class FakeNotificationService::Object final : public QDBusVirtualObject {
public:
    explicit Object(FakeNotificationService &service) : m_service(service) {}

    QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection & /*bus*/) override
    {
        return m_service.handle(message);
    }

private:
    FakeNotificationService &m_service;
};

FakeNotificationService::FakeNotificationService(QStringList capabilities, Answers answers)
    : m_capabilities(std::move(capabilities)), m_isWithholding(answers == Answers::withheld),
      m_bus(PrivateBus::address()), m_object(std::make_unique<Object>(*this))
{
    m_object->moveToThread(&m_thread);
    m_thread.start();
    if (!m_bus->registerVirtualObject(servicePath, m_object.get()) ||
        !m_bus->registerService(serviceName)) {
        throw std::runtime_error("there is a notification service already");
    }
}

FakeNotificationService::~FakeNotificationService()
{
    m_bus->unregisterService(serviceName);
    m_bus->unregisterObject(servicePath);
    m_thread.quit();
    m_thread.wait();
}

std::vector<FakeNotificationService::Call> FakeNotificationService::waitForCalls(std::size_t count)
{
    std::unique_lock lock(m_mutex);
    m_hasChanged.wait(lock, [&] { return m_calls.size() >= count; });
    return m_calls;
}

void FakeNotificationService::waitForUnanswered()
{
    std::unique_lock lock(m_mutex);
    m_hasChanged.wait(lock, [&] { return !m_unsent.empty(); });
}

std::size_t FakeNotificationService::unansweredCount()
{
    const std::scoped_lock lock(m_mutex);
    return m_unsent.size();
}

void FakeNotificationService::withholdAnswers()
{
    const std::scoped_lock lock(m_mutex);
    m_isWithholding = true;
}

void FakeNotificationService::giveAnswers()
{
    const std::scoped_lock lock(m_mutex);
    m_isWithholding = false;
    for (const QDBusMessage &answer : std::exchange(m_unsent, {})) {
        m_bus->send(answer);
    }
}

void FakeNotificationService::refuse()
{
    const std::scoped_lock lock(m_mutex);
    m_isRefusing = true;
}

void FakeNotificationService::close(std::uint32_t id)
{
    constexpr std::uint32_t dismissedByUser = 2;
    QDBusMessage signal =
        QDBusMessage::createSignal(servicePath, serviceName, QStringLiteral("NotificationClosed"));
    signal << id << dismissedByUser;
    m_bus->send(signal);
}

bool FakeNotificationService::handle(const QDBusMessage &message)
{
    const bool isQuestion = message.member() == QLatin1String("GetCapabilities");
    const bool isNotification = message.member() == QLatin1String("Notify") &&
                                message.signature() == QLatin1String("susssasa{sv}i");
    if (message.interface() != serviceName || (!isQuestion && !isNotification)) {
        return false;
    }
    const std::scoped_lock lock(m_mutex);
    const QDBusMessage answer =
        isQuestion ? message.createReply(QVariant(m_capabilities)) : answerToNotify(message);
    if (m_isWithholding) {
        m_unsent.push_back(answer);
    } else {
        m_bus->send(answer);
    }
    m_hasChanged.notify_all();
    return true;
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
