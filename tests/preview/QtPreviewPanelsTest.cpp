#include "preview/QtPreviewPanels.hpp"

#include "app/controls/text/NameLabel.hpp"
#include "preview/CardView.hpp"
#include "preview/PreviewHeader.hpp"
#include "preview/PreviewWindow.hpp"
#include "preview/TextView.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FakeSettingsStore.hpp"
#include "tests/preview/PanelItems.hpp"
#include "tests/preview/PreviewFiles.hpp"

#include <QAbstractButton>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QTest>
#include <QTextDocument>
#include <QToolTip>
#include <QWindow>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

class QtPreviewPanelsTest : public testing::Test {
protected:
    QtPreviewPanelsTest()
    {
        for (const char *name : {"a", "b", "c"}) {
            writeFile(m_folder.path(name), name);
            m_items.paths.push_back(m_folder.path(name));
        }
        m_panels.setController(&m_items);
    }

    [[nodiscard]] QtPreviewPanel &panel() { return m_panels.sharedPreviewPanel(); }
    [[nodiscard]] PreviewWindow &window() { return panel().window(); }
    [[nodiscard]] QString title() { return window().header().titleLabel().text(); }

    void open()
    {
        panel().makeKeyAndOrderFront();
        waitUntil([this] { return window().shownKind() != u"loading"_s; });
    }

    /// The button of this name.
    [[nodiscard]] QAbstractButton &button(const QString &name)
    {
        for (auto *button : window().findChildren<QAbstractButton *>()) {
            if (button->accessibleName() == name || button->text() == name) {
                return *button;
            }
        }
        throw std::runtime_error("there is no button " + name.toStdString());
    }

    const TemporaryFolder m_folder;
    PanelItems m_items;
    FakeSettingsStore m_settings;
    QtPreviewPanels m_panels{&m_settings};
};

TEST_F(QtPreviewPanelsTest, thePanelIsMadeWhenItIsAskedFor)
{
    EXPECT_FALSE(m_panels.sharedPreviewPanelExists());
    EXPECT_FALSE(panel().isVisible());
    EXPECT_TRUE(m_panels.sharedPreviewPanelExists());
    EXPECT_EQ(&panel(), &m_panels.sharedPreviewPanel());
}

TEST_F(QtPreviewPanelsTest, opensUnderItsControllersControlAndClosesWithout)
{
    open();
    EXPECT_TRUE(panel().isVisible());
    EXPECT_EQ(m_items.beginCount, 1);
    EXPECT_EQ(title(), u"a — 1 of 3"_s);
    panel().makeKeyAndOrderFront();
    panel().makeKeyWindow();
    EXPECT_EQ(m_items.beginCount, 1);

    panel().orderOut();
    panel().orderOut();
    EXPECT_FALSE(panel().isVisible());
    EXPECT_EQ(m_items.endCount, 1);
    EXPECT_EQ(panel().dataSource(), nullptr);
    EXPECT_EQ(panel().delegate(), nullptr);
}

TEST_F(QtPreviewPanelsTest, itFloatsWithoutAFrameAndDoesNotKeepTheProgramRunning)
{
    EXPECT_TRUE(window().windowFlags() & Qt::FramelessWindowHint);
    EXPECT_EQ(window().windowType(), Qt::Dialog); // a tool window could not fill the screen
    EXPECT_FALSE(window().testAttribute(Qt::WA_QuitOnClose));
}

TEST_F(QtPreviewPanelsTest, showsTheSameItemWhenItOpensAgain)
{
    open();
    panel().setCurrentPreviewItemIndex(1);
    panel().orderOut();
    open();
    EXPECT_EQ(title(), u"b — 2 of 3"_s);
}

TEST_F(QtPreviewPanelsTest, aControllerThatDeclinesLeavesItEmpty)
{
    m_items.accepts = false;
    open();
    EXPECT_EQ(m_items.beginCount, 0);
    EXPECT_EQ(window().shownKind(), u"nothing"_s);
    EXPECT_FALSE(button(u"Next file"_s).isEnabled());
    panel().orderOut();
    EXPECT_EQ(m_items.endCount, 0);
}

TEST_F(QtPreviewPanelsTest, aControllerThatIsReplacedIsToldThatItsControlEnded)
{
    open();
    m_panels.setController(nullptr);
    EXPECT_EQ(m_items.endCount, 1);
    EXPECT_TRUE(panel().isVisible());
    QTest::keyClick(&window(), Qt::Key_Right);
    QTest::keyClick(&window(), Qt::Key_Return);
    EXPECT_TRUE(panel().isVisible());
    panel().orderOut();
    EXPECT_EQ(m_items.endCount, 1);
}

TEST_F(QtPreviewPanelsTest, anEmptyListShowsNothing)
{
    m_items.paths.clear();
    open();
    EXPECT_EQ(window().shownKind(), u"nothing"_s);
    QTest::keyClick(&window(), Qt::Key_Right);
    EXPECT_EQ(panel().currentPreviewItemIndex(), 0U);
}

TEST_F(QtPreviewPanelsTest, anIndexThatIsNotThereShowsNothingAndPagesOn)
{
    open();
    panel().setCurrentPreviewItemIndex(7);
    EXPECT_EQ(window().shownKind(), u"nothing"_s);
    QTest::keyClick(&window(), Qt::Key_Right);
    EXPECT_EQ(title(), u"a — 1 of 3"_s);
}

TEST_F(QtPreviewPanelsTest, reloadingShowsWhatTheListHasBecome)
{
    open();
    m_items.paths = {m_folder.path("c")};
    panel().reloadData();
    EXPECT_EQ(title(), u"c — 1 of 1"_s);
    EXPECT_FALSE(button(u"Next file"_s).isEnabled());
    QTest::keyClick(&window(), Qt::Key_Right);
    EXPECT_EQ(title(), u"c — 1 of 1"_s);
}

TEST_F(QtPreviewPanelsTest, showsAFileBesideTheListUntilAnotherOneIsAskedFor)
{
    const std::string gone = fileUrl(m_folder.path("gone")).value();
    panel().showUnlistedItem(gone);
    EXPECT_FALSE(panel().isVisible());
    open();
    panel().setCurrentPreviewItemIndex(1);
    const struct {
        std::function<void()> leave;
        QString title;
    } ways[] = {{[this] { QTest::keyClick(&window(), Qt::Key_Right); }, u"a — 1 of 3"_s},
                {[this] { QTest::keyClick(&window(), Qt::Key_Left); }, u"c — 3 of 3"_s},
                {[this] { panel().reloadData(); }, u"c — 3 of 3"_s},
                {[this] { panel().setCurrentPreviewItemIndex(2); }, u"c — 3 of 3"_s},
                {[this] {
                     panel().orderOut();
                     open();
                 },
                 u"c — 3 of 3"_s}};
    for (const auto &way : ways) {
        panel().showUnlistedItem(gone);
        EXPECT_EQ(title(), u"gone"_s);
        waitUntil([this] { return window().shownKind() == u"card"_s; });
        EXPECT_TRUE(window().cardView().text().contains(u"This file is no longer there."_s));
        way.leave();
        EXPECT_EQ(title(), way.title);
    }
}

TEST_F(QtPreviewPanelsTest, pagesFromAFileBesideAListOfOne)
{
    open();
    m_items.paths = {m_folder.path("c")};
    panel().showUnlistedItem(fileUrl(m_folder.path("gone")).value());
    QTest::mouseClick(&button(u"Next file"_s), Qt::LeftButton);
    EXPECT_EQ(title(), u"c — 1 of 1"_s);

    m_items.paths.clear();
    panel().showUnlistedItem(fileUrl(m_folder.path("gone")).value());
    EXPECT_FALSE(button(u"Next file"_s).isEnabled());
    QTest::keyClick(&window(), Qt::Key_Right);
    EXPECT_EQ(title(), u"gone"_s);
}

TEST_F(QtPreviewPanelsTest, arrowKeysPageAndWrapRound)
{
    open();
    const struct {
        Qt::Key key;
        std::size_t index;
    } steps[] = {{Qt::Key_Right, 1}, {Qt::Key_Down, 2}, {Qt::Key_Right, 0}, {Qt::Key_Left, 2},
                 {Qt::Key_Up, 1},    {Qt::Key_Up, 0},   {Qt::Key_Up, 2}};
    for (const auto &step : steps) {
        QTest::keyClick(&window(), step.key);
        EXPECT_EQ(panel().currentPreviewItemIndex(), step.index);
        EXPECT_TRUE(title().endsWith(u" — %1 of 3"_s.arg(step.index + 1)));
    }
}

TEST_F(QtPreviewPanelsTest, buttonsPage)
{
    open();
    QTest::mouseClick(&button(u"Previous file"_s), Qt::LeftButton);
    EXPECT_EQ(panel().currentPreviewItemIndex(), 2U);
    QTest::mouseClick(&button(u"Next file"_s), Qt::LeftButton);
    EXPECT_EQ(panel().currentPreviewItemIndex(), 0U);
}

TEST_F(QtPreviewPanelsTest, spaceEscapeAndItsButtonCloseIt)
{
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Escape}) {
        open();
        QTest::keyClick(&window(), key);
        EXPECT_FALSE(panel().isVisible());
    }
    open();
    QTest::mouseClick(&button(u"Close"_s), Qt::LeftButton);
    EXPECT_FALSE(panel().isVisible());
    open();
    // As the desktop asks; and so does a program that quits, which a refusal would keep from it.
    EXPECT_TRUE(window().close());
    EXPECT_FALSE(panel().isVisible());
    EXPECT_EQ(m_items.endCount, 4);
}

TEST_F(QtPreviewPanelsTest, keysAreThePanelsWhicheverOfItsWidgetsHasTheFocus)
{
    open();
    ASSERT_EQ(window().shownKind(), u"text"_s);
    QTest::keyClick(&button(u"Full screen"_s), Qt::Key_Left);
    EXPECT_EQ(panel().currentPreviewItemIndex(), 2U);
    QTest::keyClick(&window().textView(), Qt::Key_Right);
    EXPECT_EQ(panel().currentPreviewItemIndex(), 0U);
    QTest::keyClick(&button(u"Next file"_s), Qt::Key_Space);
    EXPECT_FALSE(panel().isVisible());
}

TEST_F(QtPreviewPanelsTest, returnPressesTheButtonWithTheFocus)
{
    open();
    QTest::keyClick(&button(u"Next file"_s), Qt::Key_Return);
    EXPECT_EQ(panel().currentPreviewItemIndex(), 1U);
    QTest::keyClick(&window(), Qt::Key_Return); // no button has it
    EXPECT_EQ(panel().currentPreviewItemIndex(), 1U);
    EXPECT_TRUE(panel().isVisible());
}

TEST_F(QtPreviewPanelsTest, otherKeysGoToTheDelegate)
{
    open();
    QTest::keyClick(&window(), Qt::Key_A);
    EXPECT_EQ(m_items.events, std::vector{PreviewPanelEvent::keyDown});
    QTest::keyClick(&window(), Qt::Key_Right);
    EXPECT_EQ(m_items.events.size(), 1U);
}

TEST_F(QtPreviewPanelsTest, fillsTheScreenAndComesBack)
{
    open();
    QTest::mouseClick(&button(u"Full screen"_s), Qt::LeftButton);
    EXPECT_TRUE(window().isFullScreen());
    QTest::mouseClick(&button(u"Leave full screen"_s), Qt::LeftButton);
    EXPECT_FALSE(window().isFullScreen());
    QTest::keyClick(&window(), Qt::Key_F11);
    EXPECT_TRUE(window().isFullScreen());
}

TEST_F(QtPreviewPanelsTest, aDoubleClickOnTheTitleFillsTheScreen)
{
    open();
    QTest::mouseDClick(&window().header().titleLabel(), Qt::LeftButton);
    EXPECT_TRUE(window().isFullScreen());
    QTest::mouseDClick(&window().noteLabel(), Qt::LeftButton);
    EXPECT_TRUE(window().isFullScreen()) << "the header alone does that";
}

TEST_F(QtPreviewPanelsTest, thePointerShowsThatEdgesCanBeDragged)
{
    open();
    const auto cursorAt = [this](const QPoint &place) {
        QMouseEvent move(QEvent::MouseMove, place, window().mapToGlobal(place), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window(), &move);
        return window().cursor().shape();
    };
    const int bottom = window().height() - 1;
    EXPECT_EQ(cursorAt({4, 200}), Qt::SizeHorCursor);
    EXPECT_EQ(cursorAt({200, bottom}), Qt::SizeVerCursor);
    EXPECT_EQ(cursorAt({1, bottom}), Qt::SizeBDiagCursor);
    EXPECT_EQ(cursorAt({5, 20}), Qt::ArrowCursor);
    window().setWindowState(Qt::WindowFullScreen);
    EXPECT_EQ(cursorAt({0, 200}), Qt::ArrowCursor);
}

TEST_F(QtPreviewPanelsTest, remembersItsSize)
{
    open();
    window().resize(640, 480);
    panel().orderOut();
    EXPECT_EQ(m_settings.integer("previewPanelWidth"), 640);
    EXPECT_EQ(m_settings.integer("previewPanelHeight"), 480);

    QtPreviewPanels next(&m_settings);
    EXPECT_EQ(next.sharedPreviewPanel().window().size(), QSize(640, 480));
}

TEST_F(QtPreviewPanelsTest, ignoresSizesThatNoWindowHas)
{
    m_settings.setInteger("previewPanelWidth", -5);
    m_settings.setInteger("previewPanelHeight", 1'000'000'000'000);
    open();
    EXPECT_GE(window().width(), 360);
    EXPECT_LE(window().height(), 16'000);
    m_settings.clearLog();
    panel().orderOut();
    EXPECT_TRUE(m_settings.log().empty()); // what the user did not change is not stored
}

TEST_F(QtPreviewPanelsTest, everyButtonHasANameForScreenReaders)
{
    open();
    for (const auto *button : window().findChildren<QAbstractButton *>()) {
        EXPECT_FALSE(button->accessibleName().isEmpty() && button->text().isEmpty());
        EXPECT_NE(button->focusPolicy() & Qt::TabFocus, 0);
    }
}

TEST_F(QtPreviewPanelsTest, showsTheMarkupInANameAsItIs)
{
    const std::string name = "<b>a  & b [*]";
    writeFile(m_folder.path(name), "text");
    m_items.paths = {m_folder.path(name)};
    open();
    EXPECT_EQ(title(), u"<b>a  & b [*] — 1 of 1"_s);
    EXPECT_TRUE(window().windowHandle()->title().startsWith(title()))
        << window().windowHandle()->title().toStdString();
    QWidget &label = window().header().titleLabel();
    QHelpEvent asked(QEvent::ToolTip, QPoint(2, 2), label.mapToGlobal(QPoint(2, 2)));
    QCoreApplication::sendEvent(&label, &asked);
    QTextDocument toolTip;
    toolTip.setHtml(QToolTip::text());
    EXPECT_EQ(toolTip.toPlainText(), title());
    QToolTip::hideText();
}

TEST_F(QtPreviewPanelsTest, namesOfAnyBytesHaveATitle)
{
    writeFile(m_folder.path("\xFF\n"), "text");
    m_items.paths = {m_folder.path("\xFF\n")};
    open();
    EXPECT_EQ(title(), u"?? — 1 of 1"_s);
    EXPECT_EQ(window().shownKind(), u"text"_s);
}

} // namespace
} // namespace tessaly
