#include "app/controls/text/NameLabel.hpp"

#include <QApplication>
#include <QHelpEvent>
#include <QImage>
#include <QScreen>
#include <QTest>
#include <QToolTip>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// A text in the middle of a label, as it is drawn in a window of that direction.
QImage drawn(const QString &text, Qt::LayoutDirection direction)
{
    // The program's direction, since painters go by it.
    const Qt::LayoutDirection before = QGuiApplication::layoutDirection();
    QGuiApplication::setLayoutDirection(direction);
    NameLabel label;
    label.setAlignment(Qt::AlignCenter);
    label.setText(text);
    label.resize(label.sizeHint());
    QImage image = label.grab().toImage();
    QGuiApplication::setLayoutDirection(before);
    return image;
}

/// What the pointer brings up over a label; empty when that is nothing.
QString toolTipOver(NameLabel &label)
{
    QHelpEvent asked(QEvent::ToolTip, QPoint(2, 2), label.mapToGlobal(QPoint(2, 2)));
    QCoreApplication::sendEvent(&label, &asked);
    return asked.isAccepted() ? QToolTip::text() : QString();
}

/// The window with the tooltip.
QWidget *toolTipWindow()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->inherits("QTipLabel")) {
            return window;
        }
    }
    return nullptr;
}

TEST(NameLabel, nameRunsAsItsLettersDoWhateverTheWindow)
{
    const QString names[]{u".Trash"_s, u"/home/ada"_s, u"a (1)"_s, u"(\u05d0\u05d1.\u05d2"_s};
    for (const QString &name : names) {
        EXPECT_EQ(drawn(name, Qt::RightToLeft), drawn(name, Qt::LeftToRight)) << qPrintable(name);
    }
    EXPECT_NE(drawn(u".Trash"_s, Qt::RightToLeft), drawn(u"Trash."_s, Qt::RightToLeft));
}

TEST(NameLabel, elidesWhereItIsToldTo)
{
    const QString name = u"A name that is far too long"_s;
    const auto drawnIn = [&name](Qt::TextElideMode mode) {
        NameLabel label;
        label.setElideMode(mode);
        label.setText(name);
        label.resize(label.sizeHint().width() / 2, label.sizeHint().height());
        return label.grab().toImage();
    };
    const auto drawnText = [](Qt::TextElideMode mode, const QString &text) {
        NameLabel whole;
        whole.setText(text);
        const int width = whole.sizeHint().width() / 2;
        NameLabel label;
        label.setText(label.fontMetrics().elidedText(text, mode, width));
        label.resize(width, whole.sizeHint().height());
        return label.grab().toImage();
    };
    EXPECT_EQ(NameLabel().elideMode(), Qt::ElideMiddle);
    EXPECT_EQ(drawnIn(Qt::ElideRight), drawnText(Qt::ElideRight, name));
    EXPECT_NE(drawnIn(Qt::ElideRight), drawnIn(Qt::ElideMiddle));
}

TEST(NameLabel, nameBeginsWhereTheWindowDoes)
{
    NameLabel label;
    label.setText(u"name"_s);
    label.resize(label.sizeHint().width() * 3, label.sizeHint().height());
    const int third = label.width() / 3;
    const auto isEmpty = [&label](const QRect &part) {
        const QImage image = label.grab(part).toImage();
        QImage blank(image.size(), image.format());
        blank.fill(image.pixel(0, 0));
        return image == blank;
    };
    const QRect left(0, 0, third, label.height());
    const QRect right(2 * third, 0, third, label.height());
    EXPECT_FALSE(isEmpty(left));
    EXPECT_TRUE(isEmpty(right));
    label.setLayoutDirection(Qt::RightToLeft);
    EXPECT_TRUE(isEmpty(left));
    EXPECT_FALSE(isEmpty(right));
}

TEST(NameLabel, toolTipFitsOntoTheScreen)
{
    const QString name(250, u'm');
    NameLabel label;
    label.setText(name);
    label.show();
    EXPECT_EQ(toolTipOver(label), QString());
    label.setToolTip(name);
    EXPECT_EQ(toolTipOver(label).remove(u'\n'), name);
    const QWidget *window = toolTipWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->screen()->availableGeometry().contains(window->geometry()));
    QToolTip::hideText();
}

TEST(NameLabel, toolTipShowsMarkupAsItIs)
{
    const QString name = u"<b>not  bold</b> but a name"_s;
    NameLabel label;
    label.setText(name);
    label.setToolTip(name.toHtmlEscaped());
    label.show();
    const QString told = toolTipOver(label);
    EXPECT_TRUE(told.contains(name.toHtmlEscaped())) << qPrintable(told);
    EXPECT_TRUE(told.contains(u"white-space: pre"_s)) << "which keeps both spaces";
    QToolTip::hideText();
}

TEST(NameLabel, anElidedTextHasAToolTipWhereThatIsWanted)
{
    NameLabel label;
    label.setText(u"/home/ada/Pictures"_s);
    label.resize(label.sizeHint());
    label.show();
    label.setTellsWhenShortened(true);
    EXPECT_FALSE(label.isShortened());
    EXPECT_EQ(toolTipOver(label), QString());
    label.resize(label.width() / 2, label.height());
    EXPECT_TRUE(label.isShortened());
    EXPECT_EQ(toolTipOver(label), u"/home/ada/Pictures"_s);
    label.setTellsWhenShortened(false);
    EXPECT_EQ(toolTipOver(label), QString());
    QToolTip::hideText();
}

} // namespace
} // namespace tessaly
