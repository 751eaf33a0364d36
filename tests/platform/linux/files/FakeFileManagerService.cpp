#include "tests/platform/linux/files/FakeFileManagerService.hpp"

#include <QDBusError>
#include <QStringList>

namespace tessaly {

namespace {

const QString serviceName = QStringLiteral("org.freedesktop.FileManager1");
const QString servicePath = QStringLiteral("/org/freedesktop/FileManager1");

} // namespace

FakeFileManagerService::FakeFileManagerService(Answers answers)
    : m_answers(answers), m_service(
                              serviceName, servicePath,
                              [this](const QDBusMessage &message) { return answerTo(message); },
                              answers == Answers::withheld ? FakeBusService::Answers::withheld
                                                           : FakeBusService::Answers::given)
{
}

std::vector<FakeFileManagerService::Call> FakeFileManagerService::calls()
{
    const auto locked = m_service.lock();
    return m_calls;
}

std::optional<QDBusMessage> FakeFileManagerService::answerTo(const QDBusMessage &message)
{
    if (message.interface() != serviceName || message.signature() != QLatin1String("ass")) {
        return std::nullopt;
    }
    Call call;
    call.method = message.member().toStdString();
    for (const QString &url : message.arguments().at(0).toStringList()) {
        call.urls.push_back(url.toStdString());
    }
    call.startupId = message.arguments().at(1).toString().toStdString();
    m_calls.push_back(call);
    return m_answers == Answers::refused
               ? message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("refused"))
               : message.createReply();
}

} // namespace tessaly
