#include "tests/platform/linux/FakeFileManagerService.hpp"

#include "tests/platform/linux/PrivateBus.hpp"

#include <QDBusError>
#include <QStringList>

#include <stdexcept>

namespace tessaly {

namespace {

const QString serviceName = QStringLiteral("org.freedesktop.FileManager1");
const QString servicePath = QStringLiteral("/org/freedesktop/FileManager1");

} // namespace

/// Where the calls arrive.
class FakeFileManagerService::Object final : public QDBusVirtualObject {
public:
    explicit Object(FakeFileManagerService &service) : m_service(service) {}

    QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection & /*bus*/) override
    {
        return m_service.handle(message);
    }

private:
    FakeFileManagerService &m_service;
};

FakeFileManagerService::FakeFileManagerService(Answers answers)
    : m_answers(answers), m_bus(PrivateBus::address()), m_object(std::make_unique<Object>(*this))
{
    m_object->moveToThread(&m_thread);
    m_thread.start();
    if (!m_bus->registerVirtualObject(servicePath, m_object.get()) ||
        !m_bus->registerService(serviceName)) {
        throw std::runtime_error("there is a file manager already");
    }
}

FakeFileManagerService::~FakeFileManagerService()
{
    m_bus->unregisterService(serviceName);
    m_bus->unregisterObject(servicePath);
    m_thread.quit();
    m_thread.wait();
}

std::vector<FakeFileManagerService::Call> FakeFileManagerService::calls()
{
    const std::scoped_lock lock(m_mutex);
    return m_calls;
}

bool FakeFileManagerService::handle(const QDBusMessage &message)
{
    if (message.interface() != serviceName || message.signature() != QLatin1String("ass")) {
        return false;
    }
    Call call;
    call.method = message.member().toStdString();
    for (const QString &url : message.arguments().at(0).toStringList()) {
        call.urls.push_back(url.toStdString());
    }
    call.startupId = message.arguments().at(1).toString().toStdString();
    const std::scoped_lock lock(m_mutex);
    m_calls.push_back(call);
    if (m_answers == Answers::given) {
        m_bus->send(message.createReply());
    } else if (m_answers == Answers::refused) {
        m_bus->send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("refused")));
    }
    return true;
}

} // namespace tessaly
