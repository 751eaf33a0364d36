#include "tests/platform/linux/FakeBusService.hpp"

#include "tests/platform/linux/PrivateBus.hpp"

#include <stdexcept>
#include <utility>

namespace tessaly {

/// Where the calls arrive.
class FakeBusService::Object final : public QDBusVirtualObject {
public:
    explicit Object(FakeBusService &service) : m_service(service) {}

    QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection & /*bus*/) override
    {
        return m_service.handle(message);
    }

private:
    FakeBusService &m_service;
};

FakeBusService::FakeBusService(QString name, QString path, Handler handler, Answers answers,
                               QDBusConnection::VirtualObjectRegisterOption paths)
    : m_name(std::move(name)), m_path(std::move(path)), m_handler(std::move(handler)),
      m_isWithholding(answers == Answers::withheld), m_bus(PrivateBus::address()),
      m_object(std::make_unique<Object>(*this))
{
    // In this order, since Qt gives such an object a child on the thread that registers it.
    const bool isRegistered = m_bus->registerVirtualObject(m_path, m_object.get(), paths);
    m_object->moveToThread(&m_thread);
    m_thread.start();
    if (!isRegistered || !m_bus->registerService(m_name)) {
        throw std::runtime_error(m_name.toStdString() + " has an owner already");
    }
}

FakeBusService::~FakeBusService()
{
    m_bus->unregisterService(m_name);
    m_bus->unregisterObject(m_path, QDBusConnection::UnregisterTree);
    m_thread.quit();
    m_thread.wait();
}

void FakeBusService::withholdAnswers()
{
    const Lock locked = lock();
    m_isWithholding = true;
}

void FakeBusService::giveAnswers()
{
    const Lock locked = lock();
    m_isWithholding = false;
    for (const QDBusMessage &answer : std::exchange(m_unsent, {})) {
        m_bus->send(answer);
    }
}

void FakeBusService::waitForUnanswered(std::size_t count)
{
    (void)waitUntil([&] { return m_unsent.size() >= count; });
}

std::size_t FakeBusService::unansweredCount()
{
    const Lock locked = lock();
    return m_unsent.size();
}

void FakeBusService::onCall(const QString &method, std::function<void()> action)
{
    const Lock locked = lock();
    m_actions[method] = std::move(action);
}

bool FakeBusService::handle(const QDBusMessage &message)
{
    std::function<void()> action;
    {
        const Lock locked = lock();
        action = m_actions.value(message.member());
    }
    if (action) {
        action();
    }
    const Lock locked = lock();
    const auto answer = m_handler(message);
    if (!answer) {
        return false;
    }
    if (m_isWithholding) {
        m_unsent.push_back(*answer);
    } else {
        m_bus->send(*answer);
    }
    m_hasChanged.notify_all();
    return true;
}

} // namespace tessaly
