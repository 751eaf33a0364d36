#include "platform/linux/files/FileManagerCaller.hpp"

#include <QDBusError>
#include <QDBusMessage>
#include <QStringList>

#include <utility>

namespace tessaly {

Q_LOGGING_CATEGORY(fileManagerLog, "tessaly.filemanager", QtInfoMsg)

namespace {

// The service's bus name is also that of its interface.
const QString service = QStringLiteral("org.freedesktop.FileManager1");
const QString servicePath = QStringLiteral("/org/freedesktop/FileManager1");

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
    // Behind calls that wait for the bus, so that none overtakes another.
    if (m_waiting.empty() && m_link.isOpen()) {
        send({method, url, failed});
        return;
    }
    m_waiting.push_back({method, url, failed});
    // Only the first call opens the connection. The others wait for the same answer.
    if (m_waiting.size() == 1) {
        m_link.open([this](const QString &problem) { finishLooking(problem); }, m_timeout);
    }
}

void FileManagerCaller::finishLooking(const QString &problem)
{
    if (!problem.isEmpty()) {
        qCInfo(fileManagerLog) << "no session bus:" << problem;
    }
    // Taken out first: a failure may lead to the next call.
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
        QDBusMessage::createMethodCall(service, servicePath, service, methodName(call.method));
    // The interface wants one. Without it the file manager decides whether its window comes to the
    // front.
    const QString noStartupId;
    message << QStringList{call.url} << noStartupId;
    // The bus starts the service on demand, so an error or a timeout means that there is no file
    // manager of this interface.
    const auto replied = [failed = call.failed](const QDBusMessage &reply) {
        if (reply.type() != QDBusMessage::ReplyMessage) {
            qCInfo(fileManagerLog) << "no file manager:" << reply.errorMessage();
            failed();
        }
    };
    m_link.call(message, replied, static_cast<int>(m_timeout.count()));
}

} // namespace tessaly
