#include "app/controls/text/WrappingLabel.hpp"

#include "app/controls/text/WrappedText.hpp"

#include <QCoreApplication>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QImage>
#include <QToolTip>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

constexpr int width = 200;

int widestLine(const QString &lines)
{
    return QFontMetrics(QGuiApplication::font()).size(0, lines).width();
}

QString wrapped(const QString &text, int maxLineCount = 100)
{
    return wrappedText(text, QGuiApplication::font(), width, maxLineCount);
}

TEST(WrappedText, leavesAShortTextAsItIs)
{
    EXPECT_EQ(wrapped(u"one two"_s), u"one two"_s);
    EXPECT_EQ(wrapped(u"one\ntwo\n"_s), u"one\ntwo\n"_s);
    EXPECT_EQ(wrapped({}), QString());
}

TEST(WrappedText, breaksBetweenWordsFirst)
{
    const QString text = QStringList(20, u"word"_s).join(u' ');
    const QString lines = wrapped(text);
    EXPECT_GT(lines.count(u'\n'), 1);
    EXPECT_LE(widestLine(lines), width);
    for (const QString &line : lines.split(u'\n')) {
        EXPECT_EQ(line.trimmed().size() % 5, 4) << "whole words: " << qPrintable(line);
    }
}

TEST(WrappedText, breaksAWordThatIsWiderThanALine)
{
    const QString name(250, u'n');
    const QString lines = wrapped(name);
    EXPECT_GT(lines.count(u'\n'), 4);
    EXPECT_LE(widestLine(lines), width);
    EXPECT_EQ(QString(lines).remove(u'\n'), name);
}

TEST(WrappedText, leavesOutTheMiddleOfWhatTakesTooManyLines)
{
    const QString text = u"begin"_s + QString(2'000, u'n') + u"end"_s;
    for (const int count : {2, 3, 4, 5}) {
        const QString lines = wrapped(text, count);
        EXPECT_EQ(lines.count(u'\n') + 1, count);
        EXPECT_EQ(lines.count(u'…'), 1) << count;
        EXPECT_LE(widestLine(lines), width);
        EXPECT_TRUE(lines.startsWith(u"begin"_s));
        EXPECT_EQ(lines.endsWith(u"end"_s), count > 2);
    }
}

TEST(WrappingLabel, isAsHighAsItsLines)
{
    WrappingLabel label;
    label.setText(QString(250, u'n'));
    EXPECT_EQ(label.heightForWidth(width),
              QFontMetrics(label.font()).size(0, wrapped(label.text(), 8)).height());
    EXPECT_GT(label.heightForWidth(width), 4 * label.fontMetrics().height());
    EXPECT_EQ(label.text().size(), 250);
}

TEST(WrappingLabel, drawsNothingOverItsEdges)
{
    WrappingLabel label;
    label.setAlignment(Qt::AlignCenter);
    label.setText(u"/home/ada/"_s + QString(250, u'm'));
    label.setContentsMargins(12, 0, 12, 0);
    label.resize(width, label.heightForWidth(width));
    const QImage image = label.grab().toImage();
    const auto isBlank = [&image](int left, int end) {
        for (int x = left; x < end; ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (image.pixel(x, y) != image.pixel(0, 0)) {
                    return false;
                }
            }
        }
        return true;
    };
    EXPECT_TRUE(isBlank(0, 11));
    EXPECT_TRUE(isBlank(width - 11, width));
    EXPECT_FALSE(isBlank(12, width - 12));
}

TEST(WrappingLabel, shortensFromAsManyLinesOnAsItIsTold)
{
    WrappingLabel label;
    label.setText(QString(250, u'n'));
    label.setMaxLineCount(3);
    EXPECT_EQ(label.linesIn(width), wrapped(label.text(), 3));
    EXPECT_EQ(label.heightForWidth(width), 3 * label.fontMetrics().height());
}

TEST(WrappingLabel, aToolTipHasAllOfAShortenedText)
{
    WrappingLabel label;
    label.setText(QString(100, u'n'));
    label.resize(width, label.heightForWidth(width));
    label.show();
    const auto toolTip = [&label] {
        QHelpEvent asked(QEvent::ToolTip, QPoint(2, 2), label.mapToGlobal(QPoint(2, 2)));
        QCoreApplication::sendEvent(&label, &asked);
        const QString text = asked.isAccepted() ? QToolTip::text() : QString();
        QToolTip::hideText();
        return text;
    };
    EXPECT_EQ(toolTip(), QString()) << "all of it is there";
    label.setMaxLineCount(3);
    EXPECT_EQ(toolTip().remove(u'\n'), label.text());
}

} // namespace
} // namespace tessaly
