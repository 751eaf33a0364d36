#include "tests/platform/linux/LogLines.hpp"

#include <QLoggingCategory>
#include <QString>

#include <condition_variable>
#include <mutex>

namespace tessaly {

namespace {

/// Handlers of messages are plain functions, called from any thread.
struct Caught {
    std::mutex mutex;
    std::condition_variable hasChanged;
    std::string category;
    std::vector<std::string> lines;
    QtMessageHandler handlerBefore = nullptr;
};

Caught &caught()
{
    static Caught instance;
    return instance;
}

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const std::scoped_lock lock(caught().mutex);
    if (context.category == caught().category) {
        caught().lines.push_back(text.toStdString());
        caught().hasChanged.notify_all();
    } else {
        caught().handlerBefore(type, context, text);
    }
}

} // namespace

LogLines::LogLines(const std::string &category)
{
    {
        const std::scoped_lock lock(caught().mutex);
        caught().category = category;
        caught().lines.clear();
        caught().handlerBefore = qInstallMessageHandler(handleMessage);
    }
    QLoggingCategory::setFilterRules(QString::fromStdString(category) +
                                     QStringLiteral(".debug=true"));
}

LogLines::~LogLines()
{
    QLoggingCategory::setFilterRules({});
    qInstallMessageHandler(nullptr);
}

std::vector<std::string> LogLines::waitFor(std::size_t count)
{
    std::unique_lock lock(caught().mutex);
    caught().hasChanged.wait(lock, [&] { return caught().lines.size() >= count; });
    return caught().lines;
}

} // namespace tessaly
