#include "tests/platform/linux/BusConnection.hpp"

#include <atomic>
#include <stdexcept>

namespace tessaly {

namespace {

QString newConnectionName()
{
    static std::atomic<int> count = 0;
    return QStringLiteral("test-%1").arg(++count);
}

} // namespace

BusConnection::BusConnection(const std::string &address)
    : m_name(newConnectionName()),
      m_connection(QDBusConnection::connectToBus(QString::fromStdString(address), m_name))
{
    if (!m_connection.isConnected()) {
        throw std::runtime_error("no connection to the bus at " + address);
    }
}

BusConnection::~BusConnection()
{
    m_connection = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(m_name);
}

} // namespace tessaly
