#include "app/controls/NameLabel.hpp"

#include <QGuiApplication>
#include <QImage>

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

TEST(NameLabel, nameRunsAsItsLettersDoWhateverTheWindow)
{
    const QString names[]{u".Trash"_s, u"/home/ada"_s, u"a (1)"_s, u"(\u05d0\u05d1.\u05d2"_s};
    for (const QString &name : names) {
        EXPECT_EQ(drawn(name, Qt::RightToLeft), drawn(name, Qt::LeftToRight)) << qPrintable(name);
    }
    EXPECT_NE(drawn(u".Trash"_s, Qt::RightToLeft), drawn(u"Trash."_s, Qt::RightToLeft));
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

} // namespace
} // namespace tessaly
