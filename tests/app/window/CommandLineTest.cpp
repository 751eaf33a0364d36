#include "app/window/CommandLine.hpp"

#include "app/window/ProgramVersion.hpp"
#include "app/window/TranslationLoader.hpp"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

QStringList started(const QStringList &arguments)
{
    return QStringList{u"tessaly"_s} + arguments;
}

TEST(CommandLine, versionIsToldInOneLine)
{
    EXPECT_TRUE(QRegularExpression(u"^[0-9]+[.][0-9]+[.][0-9]+$"_s)
                    .match(QString::fromUtf8(programVersion()))
                    .hasMatch());
    for (const QString &option : {u"--version"_s, u"-v"_s}) {
        const auto answer = CommandLine::answerTo(started({option}));
        ASSERT_TRUE(answer) << qPrintable(option);
        EXPECT_EQ(answer->status, 0);
        EXPECT_EQ(answer->text, u"tessaly "_s + QString::fromUtf8(programVersion()) + u'\n');
    }
}

TEST(CommandLine, helpNamesEveryOption)
{
    for (const QString &option : {u"--help"_s, u"-h"_s}) {
        const auto answer = CommandLine::answerTo(started({option}));
        ASSERT_TRUE(answer) << qPrintable(option);
        EXPECT_EQ(answer->status, 0);
        EXPECT_TRUE(answer->text.contains(u"-h, --help"_s)) << qPrintable(answer->text);
        EXPECT_TRUE(answer->text.contains(u"-v, --version"_s)) << qPrintable(answer->text);
    }
}

TEST(CommandLine, helpSpeaksTheUsersLanguage)
{
    const TranslationLoader german({u"de"_s});
    const auto answer = CommandLine::answerTo(started({u"--help"_s}));
    ASSERT_TRUE(answer);
    EXPECT_TRUE(answer->text.contains(u"Zeigt die Version"_s)) << qPrintable(answer->text);
}

TEST(CommandLine, optionsOfQtPassWithoutAnAnswer)
{
    // "-reverse" holds a "v" and "-style" none of our letters but one that follows it might.
    const QList<QStringList> passing{
        {}, {u"-reverse"_s}, {u"-platform"_s, u"offscreen"_s}, {u"-stylesheet"_s, u"v"_s}};
    for (const QStringList &arguments : passing) {
        EXPECT_FALSE(CommandLine::answerTo(started(arguments))) << qPrintable(arguments.join(u' '));
    }
}

TEST(CommandLine, nothingToRefuseWithoutArguments)
{
    EXPECT_FALSE(CommandLine::refusalOf(started({})));
}

TEST(CommandLine, argumentsThatAreNotUnderstoodAreRefused)
{
    const auto option = CommandLine::refusalOf(started({u"--verison"_s}));
    ASSERT_TRUE(option);
    EXPECT_EQ(option->status, 2);
    EXPECT_EQ(option->text,
              u"tessaly: There is no option \"verison\".\nTry \"tessaly --help\".\n"_s);

    const auto folder = CommandLine::refusalOf(started({u"/home"_s}));
    ASSERT_TRUE(folder);
    EXPECT_EQ(folder->status, 2);
    EXPECT_TRUE(folder->text.contains(u"\"/home\" is one argument too many."_s))
        << qPrintable(folder->text);
}

} // namespace
} // namespace tessaly
