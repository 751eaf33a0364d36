#pragma once

#include <QDBusConnection>
#include <QString>

#include <string>

namespace tessaly {

/// A connection of a test's own to a bus, closed by the destructor. Throws std::runtime_error,
/// which fails the test, where there is no bus.
class BusConnection {
public:
    explicit BusConnection(const std::string &address);
    ~BusConnection();
    Q_DISABLE_COPY_MOVE(BusConnection)

    QDBusConnection *operator->() { return &m_connection; }
    QDBusConnection &operator*() { return m_connection; }

private:
    QString m_name;
    QDBusConnection m_connection;
};

} // namespace tessaly
