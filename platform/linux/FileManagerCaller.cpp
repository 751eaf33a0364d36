#include "platform/linux/FileManagerCaller.hpp"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>
#include <QStringList>

#include <utility>

namespace tessaly {

namespace {

// The service's bus name is also that of its interface.
constexpr auto service = "org.freedesktop.FileManager1";
constexpr auto servicePath = "/org/freedesktop/FileManager1";

Q_LOGGING_CATEGORY(fileManagerLog, "tessaly.filemanager", QtInfoMsg)

QString nameOf(FileManagerCaller::Method method)
{
    switch (method) {
    case FileManagerCaller::Method::showFolders:
        return QStringLiteral("ShowFolders");
    case FileManagerCaller::Method::showItems:
        return QStringLiteral("ShowItems");
    case FileManagerCaller::Method::showItemProperties:
        break;
    }
    return QStringLiteral("ShowItemProperties");
}

/// Connections have names of their own in the process.
QString newConnectionName()
{
    static std::atomic<int> count = 0;
    return QStringLiteral("tessaly-filemanager-%1").arg(++count);
}

} // namespace

FileManagerCaller::FileManagerCaller(std::shared_ptr<const std::atomic<bool>> isEnding,
                                     std::chrono::milliseconds patience)
    : m_isEnding(std::move(isEnding)), m_patience(patience), m_connectionName(newConnectionName()),
      m_bus(QString())
{
}

FileManagerCaller::~FileManagerCaller()
{
    if (m_mayHaveConnection) {
        disconnectFromBus();
    }
}

void FileManagerCaller::call(Method method, const QString &url, const std::function<void()> &failed)
{
    if (!connectToBus()) {
        failed();
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(
        QLatin1String(service), QLatin1String(servicePath), QLatin1String(service), nameOf(method));
    const QString noStartupId;
    message << QStringList{url} << noStartupId;
    auto *answered = new QDBusPendingCallWatcher(
        m_bus.asyncCall(message, static_cast<int>(m_patience.count())), this);
    connect(answered, &QDBusPendingCallWatcher::finished, this, [answered, failed] {
        answered->deleteLater();
        const QDBusPendingReply<> answer = *answered;
        if (answer.isError()) {
            qCInfo(fileManagerLog) << "no file manager:" << answer.error().message();
            failed();
        }
    });
}

bool FileManagerCaller::connectToBus()
{
    if (m_bus.isConnected()) {
        return true;
    }
    // Under its name a connection stays the same, be it one that failed or one that was lost.
    disconnectFromBus();
    // Only now, when Qt's D-Bus has been used: see endLater().
    if (*m_isEnding) {
        return false;
    }
    m_mayHaveConnection = true;
    m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_connectionName);
    if (!m_bus.isConnected()) {
        qCInfo(fileManagerLog) << "no session bus:" << m_bus.lastError().message();
        return false;
    }
    return true;
}

void FileManagerCaller::disconnectFromBus()
{
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(m_connectionName);
}

} // namespace tessaly
