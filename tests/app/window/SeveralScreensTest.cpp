// The main window where there are several screens. They are those of the whole program.

#include "app/controls/frame/KORVENWindow.hpp"
#include "app/window/FullScreen.hpp"
#include "tests/TestFonts.hpp"
#include "tests/fakes/FakeServices.hpp"

#include <QApplication>
#include <QFile>
#include <QScreen>
#include <QSequentialAnimationGroup>
#include <QTemporaryDir>
#include <QVariantAnimation>
#include <QWindow>

#include <gtest/gtest.h>

namespace tessaly {
namespace {

constexpr QRect firstScreen{1000, 40, 900, 700};
constexpr QRect secondScreen{0, 0, 1000, 800};
constexpr QRect smallScreen{0, 800, 640, 450};

TEST(WindowOnSeveralScreens, isNeverLargerThanItsScreen)
{
    QScreen *small = QGuiApplication::screens().at(2);
    ASSERT_EQ(small->geometry(), smallScreen);
    KORVENWindow window(KORVENWindow::Surface::opaque);
    window.show();
    EXPECT_EQ(window.minimumSize(), minWindowSize);
    window.windowHandle()->setScreen(small);
    EXPECT_EQ(window.minimumSize(), smallScreen.size());
    window.setGeometry(window.constrainFrameRect({0, 800, 760, 480}, small));
    EXPECT_EQ(window.geometry(), smallScreen);
    window.windowHandle()->setScreen(QGuiApplication::screens().at(0));
    EXPECT_EQ(window.minimumSize(), minWindowSize);
}

TEST(FullScreenOnSeveralScreens, isOnTheFirstOneWhereverTheWindowIs)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    ASSERT_EQ(screens.size(), 3);
    ASSERT_EQ(screens[0]->geometry(), firstScreen);
    ASSERT_EQ(screens[1]->geometry(), secondScreen);

    FakeServices services;
    KORVENWindow window(KORVENWindow::Surface::opaque);
    window.setGeometry(100, 100, 800, 500);
    window.show();
    ASSERT_EQ(window.screen(), screens[1]);
    FullScreen fullScreen(window, services.settings, FullScreen::Motion::byProgram);
    fullScreen.toggleFullScreen();
    const auto *animation = fullScreen.findChild<QSequentialAnimationGroup *>();
    ASSERT_NE(animation, nullptr);
    const auto *last = qobject_cast<QVariantAnimation *>(animation->animationAt(1));
    EXPECT_EQ(last->endValue().toRectF(), QRectF(1060, 100, 780, 580));
}

} // namespace
} // namespace tessaly

int main(int argumentCount, char **arguments)
{
    testing::InitGoogleTest(&argumentCount, arguments);
    const QTemporaryDir folder;
    QFile screens(folder.filePath(QStringLiteral("screens.json")));
    if (!screens.open(QIODevice::WriteOnly)) {
        return 1;
    }
    screens.write(R"({"screens": [
        {"name": "first", "x": 1000, "y": 40, "width": 900, "height": 700},
        {"name": "second", "x": 0, "y": 0, "width": 1000, "height": 800},
        {"name": "small", "x": 0, "y": 800, "width": 640, "height": 450}]})");
    screens.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toLocal8Bit());
    tessaly::useTestFonts();
    const QApplication application(argumentCount, arguments);
    return RUN_ALL_TESTS();
}
