#include "tests/platform/linux/LoggedWarnings.hpp"

#include <QString>
#include <QtGlobal>

#include <mutex>

namespace tessaly {

namespace {

std::mutex mutex;
std::vector<std::string> logged;
QtMessageHandler handlerBefore = nullptr;

void keep(QtMsgType /*type*/, const QMessageLogContext &context, const QString &message)
{
    const std::lock_guard lock(mutex);
    logged.push_back(std::string(context.category) + ": " + message.toStdString());
}

} // namespace

LoggedWarnings::LoggedWarnings()
{
    logged.clear();
    handlerBefore = qInstallMessageHandler(keep);
}

LoggedWarnings::~LoggedWarnings()
{
    qInstallMessageHandler(handlerBefore);
}

std::vector<std::string> LoggedWarnings::lines() const
{
    const std::lock_guard lock(mutex);
    return logged;
}

} // namespace tessaly
