// The preview panel with a window manager that people use. The display is that of the whole
// program.

#include "preview/PreviewWindow.hpp"
#include "preview/QtPreviewPanels.hpp"
#include "tests/platform/linux/ManagedDisplay.hpp"

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

constexpr QRect wholeScreen{0, 0, 1280, 900};

class PreviewOnDesktopTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (const std::string missing = ManagedDisplay::missing(); !missing.empty()) {
            GTEST_SKIP() << "needs " << missing;
        }
        m_program.setGeometry(200, 100, 900, 700);
        m_program.show();
        waitUntilActive(m_program);
        m_panels.sharedPreviewPanel().makeKeyAndOrderFront();
        waitUntilActive(preview());
    }

    [[nodiscard]] PreviewWindow &preview() { return m_panels.sharedPreviewPanel().window(); }

    static void waitUntilActive(QWidget &window)
    {
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window, desktopTimeoutMs));
        const auto isActive = [&window] { return window.isActiveWindow(); };
        for (int i = 0; i < 20 && !QTest::qWaitFor(isActive, 2'000); ++i) {
            window.activateWindow(); // a manager that has only just begun may have overlooked it
        }
        ASSERT_TRUE(window.isActiveWindow());
    }

    /// Where the display has the preview.
    [[nodiscard]] QRect frameOnDisplay()
    {
        QProcess process;
        process.start(u"xdotool"_s,
                      {u"getwindowgeometry"_s, u"--shell"_s, QString::number(preview().winId())});
        process.waitForFinished(-1);
        QHash<QString, int> values;
        for (const QString &line :
             QString::fromUtf8(process.readAllStandardOutput()).split(u'\n')) {
            values.insert(line.section(u'=', 0, 0), line.section(u'=', 1).toInt());
        }
        return {values[u"X"_s], values[u"Y"_s], values[u"WIDTH"_s], values[u"HEIGHT"_s]};
    }
    [[nodiscard]] bool waitForFrame(const QRect &frame)
    {
        return QTest::qWaitFor([&] { return frameOnDisplay() == frame; }, desktopTimeoutMs);
    }

    /// The button that enters full screen, or leaves it, whichever it does now; or nullptr.
    [[nodiscard]] QAbstractButton *button(const QString &name)
    {
        for (auto *found : preview().findChildren<QAbstractButton *>()) {
            if (found->accessibleName() == name) {
                return found;
            }
        }
        return nullptr;
    }
    [[nodiscard]] bool waitForButton(const QString &name)
    {
        return QTest::qWaitFor([&] { return button(name) != nullptr; }, desktopTimeoutMs);
    }

    QWidget m_program;
    QtPreviewPanels m_panels;
};

TEST_F(PreviewOnDesktopTest, fillsTheScreenByItsKeyAndItsButton)
{
    const QRect before = frameOnDisplay();
    ASSERT_NE(before, wholeScreen);
    EXPECT_EQ(xdotool({u"key"_s, u"F11"_s}), 0);
    EXPECT_TRUE(waitForFrame(wholeScreen));
    ASSERT_TRUE(waitForButton(u"Leave full screen"_s));
    EXPECT_EQ(xdotool({u"key"_s, u"F11"_s}), 0);
    EXPECT_TRUE(waitForFrame(before));
    ASSERT_TRUE(waitForButton(u"Full screen"_s));

    QTest::mouseClick(button(u"Full screen"_s), Qt::LeftButton);
    EXPECT_TRUE(waitForFrame(wholeScreen));
    QTest::mouseClick(button(u"Leave full screen"_s), Qt::LeftButton);
    EXPECT_TRUE(waitForFrame(before));
}

TEST_F(PreviewOnDesktopTest, itsButtonFollowsTheManager)
{
    const QRect before = frameOnDisplay();
    EXPECT_EQ(xdotool({u"key"_s, u"F12"_s}), 0);
    EXPECT_TRUE(waitForFrame(wholeScreen));
    EXPECT_TRUE(waitForButton(u"Leave full screen"_s));
    EXPECT_EQ(xdotool({u"key"_s, u"F12"_s}), 0);
    EXPECT_TRUE(waitForFrame(before));
    EXPECT_TRUE(waitForButton(u"Full screen"_s));
}

TEST_F(PreviewOnDesktopTest, itsHeaderMovesIt)
{
    const QRect before = frameOnDisplay();
    const QPoint title = before.topLeft() + QPoint(before.width() / 2, 20);
    const auto point = [](QPoint place) {
        EXPECT_EQ(xdotool({u"mousemove"_s, u"--sync"_s, QString::number(place.x()),
                           QString::number(place.y())}),
                  0);
    };
    // The manager may miss the first drags of a window that has only just appeared.
    for (int attempt = 0; attempt < 5 && frameOnDisplay() == before; ++attempt) {
        point(title);
        EXPECT_EQ(xdotool({u"mousedown"_s, u"1"_s}), 0);
        EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::mouseButtons() == Qt::LeftButton; },
                                    desktopTimeoutMs));
        point(title + QPoint(20, 0));
        // The manager takes the keyboard along with the pointer.
        static_cast<void>(QTest::qWaitFor([this] { return !preview().isActiveWindow(); }, 3'000));
        point(title + QPoint(60, 40));
        EXPECT_EQ(xdotool({u"mouseup"_s, u"1"_s}), 0);
        static_cast<void>(QTest::qWaitFor([&] { return frameOnDisplay() != before; }, 3'000));
    }
    EXPECT_NE(frameOnDisplay().topLeft(), before.topLeft());
    EXPECT_EQ(frameOnDisplay().size(), before.size());
}

TEST_F(PreviewOnDesktopTest, staysAboveTheProgramsWindow)
{
    m_program.raise();
    m_program.activateWindow();
    waitUntilActive(m_program);
    const QPoint middle = frameOnDisplay().center();
    EXPECT_EQ(xdotool({u"mousemove"_s, u"--sync"_s, QString::number(middle.x()),
                       QString::number(middle.y()), u"click"_s, u"1"_s}),
              0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return preview().isActiveWindow(); }, desktopTimeoutMs));
}

} // namespace
} // namespace tessaly
