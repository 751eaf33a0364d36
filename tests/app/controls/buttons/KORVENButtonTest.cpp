#include "app/controls/buttons/KORVENButton.hpp"

#include "app/controls/buttons/KORVENButtonCell.hpp"
#include "app/controls/theme/Theme.hpp"
#include "resources/Artwork.hpp"
#include "tests/app/controls/Pictures.hpp"

#include <QAccessible>
#include <QApplication>
#include <QFontMetrics>
#include <QIcon>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

QColor titleColor(const QPushButton &button)
{
    return button.palette().color(QPalette::ButtonText);
}

class KORVENButtonTest : public testing::Test {
protected:
    static constexpr int iconSide = 28;

    KORVENButtonTest() { m_button.resize(m_button.sizeHint()); }

    /// Without a title and without the face, which would show beside the icon.
    void showIconOnly(const QIcon &icon)
    {
        m_button.setTitle({});
        m_button.setFlat(true);
        m_button.setIcon(icon);
        m_button.setIconSize({iconSide, iconSide});
        m_button.resize(m_button.sizeHint());
    }

    KORVENButton m_button{u"Sort by name"_s};
};

TEST_F(KORVENButtonTest, titleIsWhite)
{
    EXPECT_EQ(titleColor(m_button), Qt::white);
    m_button.setTitle(u"Sort by size"_s);
    EXPECT_EQ(m_button.text(), u"Sort by size"_s);
    EXPECT_EQ(titleColor(m_button), Qt::white);
    EXPECT_FALSE(m_button.run10p7Mode());
}

TEST_F(KORVENButtonTest, titleStaysWhiteWhenTheApplicationsColoursChange)
{
    const QPalette before = QApplication::palette();
    QApplication::setPalette(QPalette(Qt::darkGreen));
    EXPECT_EQ(titleColor(m_button), Qt::white);
    QApplication::setPalette(before);
}

TEST_F(KORVENButtonTest, olderLookIsThatOfAnyPushButton)
{
    m_button.set10p7Mode();
    EXPECT_TRUE(m_button.run10p7Mode());
    EXPECT_FALSE(m_button.wantsUpdateLayer());
    m_button.setTitle(u"Sort by size"_s);

    QPushButton standard(u"Sort by size"_s);
    standard.resize(m_button.size());
    EXPECT_EQ(titleColor(m_button), titleColor(standard));
    EXPECT_EQ(m_button.sizeHint(), standard.sizeHint());
    EXPECT_EQ(pictureOf(m_button, 1), pictureOf(standard, 1));
}

TEST_F(KORVENButtonTest, imageFollowsThePress)
{
    EXPECT_TRUE(m_button.wantsUpdateLayer());
    EXPECT_EQ(m_button.imageName(), u"_tq_but.png"_s);
    const QImage released = pictureOf(m_button, 1);
    QTest::mousePress(&m_button, Qt::LeftButton);
    EXPECT_EQ(m_button.imageName(), u"_tq_butp.png"_s);
    EXPECT_NE(pictureOf(m_button, 1), released);
    QTest::mouseRelease(&m_button, Qt::LeftButton);
    EXPECT_EQ(m_button.imageName(), u"_tq_but.png"_s);
}

TEST_F(KORVENButtonTest, edgesOfTheFaceAreThoseOfTheImage)
{
    m_button.setTitle({});
    m_button.resize(102, 34);
    struct {
        double scale;
        QString image;
    } const cases[]{{1.0, u"_tq_but.png"_s}, {1.5, u"_tq_but.png"_s}, {2.0, u"_tq_but@2x.png"_s}};
    for (const auto &[scale, name] : cases) {
        SCOPED_TRACE(scale);
        QImage image(artworkPath(name));
        image.setDevicePixelRatio(1);
        QImage ground(image.size(), QImage::Format_ARGB32_Premultiplied);
        ground.fill(Qt::black);
        QPainter(&ground).drawImage(0, 0, image);
        const QImage picture = pictureOf(m_button, scale);
        const int cap = name.contains(u'@') ? 12 : 6;
        const QPoint corner(ground.width() - 1, ground.height() - 1);
        const QPoint pictureCorner(picture.width() - 1, picture.height() - 1);
        for (int y = 0; y < cap; ++y) {
            for (int x = 0; x < cap; ++x) {
                EXPECT_EQ(picture.pixelColor(x, y), ground.pixelColor(x, y)) << x << ' ' << y;
                const QPoint back(x, y);
                EXPECT_EQ(picture.pixelColor(pictureCorner - back),
                          ground.pixelColor(corner - back))
                    << x << ' ' << y;
            }
        }
    }
}

TEST_F(KORVENButtonTest, allEdgesShowBetweenThePixelsOfTheScreen)
{
    // At one and a half pixels a point these begin or end in the middle of a pixel.
    const QColor border(0x3d, 0x3d, 0x3d);
    for (const QRect &place : {QRect(1, 1, 51, 35), QRect(1, 1, 52, 34), QRect(2, 2, 51, 35)}) {
        QWidget window;
        window.resize(60, 40);
        m_button.setTitle({});
        m_button.setParent(&window);
        m_button.setGeometry(place);
        m_button.show();
        const QImage picture = pictureOf(window, 1.5);
        const auto first = [](int point) { return static_cast<int>(std::ceil(point * 1.5)); };
        const auto last = [](int behind) { return static_cast<int>(behind * 1.5) - 1; };
        const int x = last(place.left() + place.width());
        const int y = last(place.top() + place.height());
        EXPECT_TRUE(looksLike(picture.pixelColor(first(place.left()), 30), border)) << place.x();
        EXPECT_TRUE(looksLike(picture.pixelColor(30, first(place.top())), border)) << place.x();
        EXPECT_TRUE(looksLike(picture.pixelColor(x, 30), border)) << place.width();
        EXPECT_TRUE(looksLike(picture.pixelColor(30, y), border)) << place.height();
        EXPECT_FALSE(looksLike(picture.pixelColor(x - 1, 30), border)) << place.width();
        m_button.setParent(nullptr);
    }
}

TEST_F(KORVENButtonTest, titleFitsAtEveryFontSize)
{
    for (int points = 9; points <= 16; ++points) {
        SCOPED_TRACE(points);
        QFont font = m_button.font();
        font.setPointSize(points);
        m_button.setFont(font);
        const QSize title = QFontMetrics(font).size(Qt::TextShowMnemonic, m_button.text());
        EXPECT_GE(m_button.sizeHint().width(), title.width() + 24);
        EXPECT_GE(m_button.sizeHint().height(), title.height() + 8);
        EXPECT_GE(m_button.sizeHint().height(), 28);
        EXPECT_EQ(m_button.minimumSizeHint(), m_button.sizeHint());
    }
}

TEST_F(KORVENButtonTest, signAloneTakesLittleRoom)
{
    m_button.setTitle(u"x"_s);
    EXPECT_LE(m_button.sizeHint().width(), 34);
    m_button.setTitle({});
    m_button.setIcon(artworkIcon(u"eject.png"));
    EXPECT_EQ(m_button.sizeHint(), QSize(m_button.iconSize().width() + 18, 28));
}

TEST_F(KORVENButtonTest, iconIsTheOneOfTheNextWholeScale)
{
    constexpr QColor small(255, 0, 0);
    constexpr QColor large(0, 0, 255);
    QIcon icon;
    for (const auto &[scale, color] : {std::pair(1, small), std::pair(2, large)}) {
        QPixmap plain(iconSide * scale, iconSide * scale);
        plain.fill(color);
        plain.setDevicePixelRatio(scale);
        icon.addPixmap(plain);
    }
    showIconOnly(icon);
    struct {
        double scale;
        QColor color;
    } const cases[]{{1, small}, {1.25, large}, {1.5, large}, {1.75, large}, {2, large}};
    for (const auto &[scale, color] : cases) {
        const QImage picture = pictureOf(m_button, scale);
        EXPECT_EQ(picture.pixelColor(picture.rect().center()), color) << scale;
    }
}

TEST_F(KORVENButtonTest, largerIconIsDrawnSmoothly)
{
    // Lines that are one pixel wide at the double scale get grey at one and a half.
    QImage lines(iconSide * 2, iconSide * 2, QImage::Format_RGB32);
    lines.fill(Qt::white);
    QPainter painter(&lines);
    for (int x = 0; x < lines.width(); x += 2) {
        painter.fillRect(x, 0, 1, lines.height(), Qt::black);
    }
    painter.end();
    lines.setDevicePixelRatio(2);
    showIconOnly(QIcon(QPixmap::fromImage(lines)));
    const QImage picture = pictureOf(m_button, 1.5);
    int greys = 0;
    for (int x = 0; x < picture.width(); ++x) {
        const int lightness = picture.pixelColor(x, picture.height() / 2).lightness();
        greys += lightness > 20 && lightness < 235 ? 1 : 0;
    }
    EXPECT_GT(greys, iconSide);
}

TEST_F(KORVENButtonTest, lightsUpUnderThePointer)
{
    const QColor before = pictureOf(m_button, 1).pixelColor(8, 14);
    m_button.setAttribute(Qt::WA_UnderMouse);
    EXPECT_GT(pictureOf(m_button, 1).pixelColor(8, 14).lightness(), before.lightness());
}

TEST_F(KORVENButtonTest, fadesWhenDisabled)
{
    const QImage before = pictureOf(m_button, 1);
    m_button.setEnabled(false);
    m_button.setAttribute(Qt::WA_UnderMouse);
    const QColor after = pictureOf(m_button, 1).pixelColor(8, 14);
    EXPECT_LT(after.lightness(), before.pixelColor(8, 14).lightness() * 0.6);
    EXPECT_EQ(titleColor(m_button), Qt::white);
}

TEST_F(KORVENButtonTest, ringShowsTheKeyboardsFocusOnly)
{
    m_button.show();
    QApplication::setActiveWindow(&m_button);
    m_button.setFocus(Qt::MouseFocusReason);
    ASSERT_TRUE(m_button.hasFocus());
    const QImage clicked = pictureOf(m_button, 2);
    m_button.clearFocus();
    EXPECT_EQ(pictureOf(m_button, 2), clicked);

    m_button.setFocus(Qt::TabFocusReason);
    const QImage tabbed = pictureOf(m_button, 2);
    EXPECT_TRUE(looksLike(tabbed.pixelColor(2, 28), theme::focusRing));
    EXPECT_FALSE(looksLike(clicked.pixelColor(2, 28), theme::focusRing));

    // Away to another window and back again.
    QFocusEvent back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(&m_button, &back);
    EXPECT_EQ(pictureOf(m_button, 2), tabbed);
}

TEST_F(KORVENButtonTest, mnemonicIsUnderlinedAndPresses)
{
    KORVENButton plain(u"Scan"_s);
    KORVENButton marked(u"&Scan"_s);
    EXPECT_EQ(marked.sizeHint(), plain.sizeHint());
    plain.resize(plain.sizeHint());
    marked.resize(plain.size());
    EXPECT_NE(pictureOf(marked, 2), pictureOf(plain, 2));
    EXPECT_EQ(marked.shortcut(), QKeySequence(Qt::ALT | Qt::Key_S));
}

TEST_F(KORVENButtonTest, keysPress)
{
    const QSignalSpy clicked(&m_button, &QAbstractButton::clicked);
    QTest::keyClick(&m_button, Qt::Key_Space);
    EXPECT_EQ(clicked.count(), 1);
}

TEST_F(KORVENButtonTest, longTitleIsShortenedInASmallButton)
{
    m_button.resize(50, 28);
    m_button.setTitle(u"iiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiii"_s);
    const QImage first = pictureOf(m_button, 1);
    m_button.setTitle({});
    const QImage empty = pictureOf(m_button, 1);
    for (int y = 0; y < 28; ++y) {
        EXPECT_EQ(first.pixel(3, y), empty.pixel(3, y)) << "the title runs over the edge";
        EXPECT_EQ(first.pixel(46, y), empty.pixel(46, y)) << "the title runs over the edge";
    }
    EXPECT_NE(first, empty);
}

TEST_F(KORVENButtonTest, isAButtonToAssistiveTechnology)
{
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&m_button);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    EXPECT_EQ(accessible->text(QAccessible::Name), u"Sort by name"_s);
}

TEST(KORVENButtonCell, titleIsBlackOnALightFace)
{
    KORVENButtonCell button(u"Close"_s);
    EXPECT_EQ(titleColor(button), Qt::black);
    button.setPalette(QPalette(Qt::darkGray));
    button.setTextColor();
    EXPECT_EQ(titleColor(button), Qt::black);
    EXPECT_EQ(button.palette().color(QPalette::Button), theme::lightButton);
}

} // namespace
} // namespace tessaly
