#include "platform/linux/process/ProgramLog.hpp"

#include "engine/tree/PrintableText.hpp"
#include "platform/linux/process/StandardError.hpp"

#include <QLoggingCategory>

#include <csignal>
#include <string>
#include <string_view>

namespace tessaly {

namespace {

void writeMessage(QtMsgType /*type*/, const QMessageLogContext &context, const QString &text)
{
    const QByteArray line = ProgramLog::lineOf(context.category, text) + '\n';
    writeToStandardError({line.constData(), static_cast<std::size_t>(line.size())});
}

} // namespace

void ProgramLog::install()
{
    std::signal(SIGPIPE, SIG_IGN);
    // The rows' actions report nothing but their lines in the log, so these are always written.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\n"
                                                    "tessaly.*.debug=false\n"
                                                    "tessaly.*.info=false\n"
                                                    "tessaly.screens.info=true\n"
                                                    "tessaly.drives.info=true\n"));
    qInstallMessageHandler(writeMessage);
}

QByteArray ProgramLog::lineOf(const char *category, const QString &text)
{
    constexpr std::string_view own = "tessaly.";
    std::string_view source = category == nullptr ? std::string_view() : category;
    if (source.starts_with(own)) { // every line says "tessaly" already
        source.remove_prefix(own.size());
    }
    std::string line = "tessaly: ";
    if (!source.empty() && source != "default") {
        line.append(source).append(": ");
    }
    return QByteArray::fromStdString(line + tree::printableText(text.toStdString()));
}

} // namespace tessaly
