#include "app/window/CommandLine.hpp"

#include "app/window/ProgramVersion.hpp"
#include "app/window/TranslationLoader.hpp"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

constexpr int statusOfRefusal = 2;

QCommandLineOption helpOption()
{
    return {{u"h"_s, u"help"_s}, CommandLine::tr("Displays this help and ends.")};
}

QCommandLineOption versionOption()
{
    return {{u"v"_s, u"version"_s}, CommandLine::tr("Displays the version and ends.")};
}

/// A parser that has read the arguments; Qt's options are not known to it.
void read(QCommandLineParser &parser, const QStringList &arguments)
{
    // "-reverse" is an option of Qt's and not a row of letters, among them our "-v".
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOption(helpOption());
    parser.addOption(versionOption());
    parser.parse(arguments);
}

std::optional<int> print(const std::optional<CommandLine::Answer> &answer)
{
    if (!answer) {
        return std::nullopt;
    }
    // An answer that was asked for goes to the output, where a pipe expects it; a refusal to the
    // error stream.
    std::FILE *stream = answer->status == 0 ? stdout : stderr;
    const QByteArray text = answer->text.toLocal8Bit();
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stream);
    // On a full disk or a closed pipe nobody has received the answer.
    return std::fflush(stream) == 0 ? answer->status : 1;
}

} // namespace

std::optional<CommandLine::Answer> CommandLine::answerTo(const QStringList &arguments)
{
    QCommandLineParser parser;
    read(parser, arguments);
    if (parser.isSet(helpOption())) {
        parser.setApplicationDescription(tr("Shows where the space on your disks has gone."));
        return Answer{0, parser.helpText()};
    }
    if (parser.isSet(versionOption())) {
        const std::string_view version = programVersion();
        return Answer{0, u"tessaly %1\n"_s.arg(QLatin1StringView(
                             version.data(), static_cast<qsizetype>(version.size())))};
    }
    return std::nullopt;
}

std::optional<CommandLine::Answer> CommandLine::refusalOf(const QStringList &arguments)
{
    QCommandLineParser parser;
    read(parser, arguments);
    QString what;
    if (const QStringList unknown = parser.unknownOptionNames(); !unknown.isEmpty()) {
        what = tr("There is no option \"%1\".").arg(unknown.first());
    } else if (const QStringList rest = parser.positionalArguments(); !rest.isEmpty()) {
        what = tr("\"%1\" is one argument too many.").arg(rest.first());
    } else {
        return std::nullopt;
    }
    return Answer{statusOfRefusal, u"tessaly: %1\n%2\n"_s.arg(what, tr("Try \"tessaly --help\"."))};
}

std::optional<int> CommandLine::answer(int argumentCount, char **arguments)
{
    QStringList given;
    // Read without an application object: that of an ordinary start is a QApplication, and there
    // can only be one.
    for (int index = 0; index < argumentCount; ++index) {
        given << QString::fromLocal8Bit(arguments[index]);
    }
    QCommandLineParser parser;
    read(parser, given);
    if (!parser.isSet(helpOption()) && !parser.isSet(versionOption())) {
        return std::nullopt;
    }
    // No QApplication, so that "--help" works without a display.
    const QCoreApplication application(argumentCount, arguments);
    const TranslationLoader translations;
    return print(answerTo(QCoreApplication::arguments()));
}

std::optional<int> CommandLine::refuse()
{
    return print(refusalOf(QCoreApplication::arguments()));
}

} // namespace tessaly
