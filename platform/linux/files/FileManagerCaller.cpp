#include "platform/linux/files/FileManagerCaller.hpp"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>

#include <utility>

namespace tessaly {

Q_LOGGING_CATEGORY(fileManagerLog, "tessaly.filemanager", QtInfoMsg)

namespace {

// The service's bus name is also that of its interface.
constexpr auto service = "org.freedesktop.FileManager1";
constexpr auto servicePath = "/org/freedesktop/FileManager1";

QString methodName(FileManagerCaller::Method method)
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

} // namespace

FileManagerCaller::FileManagerCaller(std::string busAddress, std::chrono::milliseconds timeout)
    : m_timeout(timeout), m_link(std::move(busAddress), QStringLiteral("filemanager"), this)
{
}

FileManagerCaller::~FileManagerCaller() = default;

void FileManagerCaller::call(Method method, const QString &url, const std::function<void()> &failed)
{
    if (m_waiting.empty() && m_link.isOpen()) {
        send({method, url, failed});
        return;
    }
    m_waiting.push_back({method, url, failed});
    if (m_waiting.size() == 1) {
        m_link.open([this](const QString &problem) { finishLooking(problem); }, m_timeout);
    }
}

void FileManagerCaller::finishLooking(const QString &problem)
{
    if (!problem.isEmpty()) {
        qCInfo(fileManagerLog) << "no session bus:" << problem;
    }
    for (const Call &call : std::exchange(m_waiting, {})) {
        if (problem.isEmpty()) {
            send(call);
        } else {
            call.failed();
        }
    }
}

void FileManagerCaller::send(const Call &call)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(QLatin1String(service), QLatin1String(servicePath),
                                       QLatin1String(service), methodName(call.method));
    const QString noStartupId;
    message << QStringList{call.url} << noStartupId;
    auto *answered = new QDBusPendingCallWatcher(
        m_link.bus().asyncCall(message, static_cast<int>(m_timeout.count())), this);
    connect(answered, &QDBusPendingCallWatcher::finished, this, [answered, failed = call.failed] {
        answered->deleteLater();
        const QDBusPendingReply<> answer = *answered;
        if (answer.isError()) {
            qCInfo(fileManagerLog) << "no file manager:" << answer.error().message();
            failed();
        }
    });
}

} // namespace tessaly
