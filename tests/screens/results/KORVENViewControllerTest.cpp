#include "screens/results/KORVENViewController.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "tests/fakes/FakeServices.hpp"

#include <QKeyEvent>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <thread>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

class KORVENViewControllerTest : public testing::Test {
protected:
    /// Types a key in the result table.
    bool type(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        return m_controller.shouldTypeSelectForEvent(QKeyEvent(QEvent::KeyPress, key, modifiers),
                                                     u"search"_s);
    }

    FakeServices m_services;
    KORVENAppDelegate m_delegate{m_services.all()};
    KORVENViewController m_controller{m_services.all()};
};

TEST_F(KORVENViewControllerTest, hiddenItemsHaveAThresholdByRow)
{
    constexpr std::array<std::uint64_t, 5> thresholds{0, 1'000'000, 500'000, 1'000, 1};
    for (std::int32_t row = 0; row < 5; ++row) {
        m_delegate.setHiddenItemPreference(row);
        EXPECT_EQ(m_controller.compareHiddenItem(), thresholds.at(static_cast<unsigned>(row)));
    }
}

TEST_F(KORVENViewControllerTest, filesHaveAThresholdByRow)
{
    constexpr std::array<std::uint64_t, 5> thresholds{0, 1'000'000'000, 500'000'000, 1'000'000, 1};
    for (std::int32_t row = 0; row < 5; ++row) {
        m_delegate.setLargeFilePreference(row);
        EXPECT_EQ(m_controller.compareLargeFile(), thresholds.at(static_cast<unsigned>(row)));
    }
}

TEST_F(KORVENViewControllerTest, anyOtherRowActsAsTheFirst)
{
    for (const std::int32_t row : {5, 7, -1, INT32_MAX, INT32_MIN}) {
        m_delegate.setHiddenItemPreference(row);
        m_delegate.setLargeFilePreference(row);
        EXPECT_EQ(m_controller.compareHiddenItem(), 0U) << row;
        EXPECT_EQ(m_controller.compareLargeFile(), 0U) << row;
    }
}

TEST_F(KORVENViewControllerTest, buildsSizeTexts)
{
    EXPECT_EQ(KORVENViewController::buildString(500), u"0.50 KB"_s);
    EXPECT_EQ(KORVENViewController::buildString(999'999), u"1000.00 KB"_s);
    EXPECT_EQ(KORVENViewController::buildString(1'000'000), u"1.00 MB"_s);
    EXPECT_EQ(KORVENViewController::buildString(1'500'000), u"1.50 MB"_s);
    EXPECT_EQ(KORVENViewController::buildString(2'500'000'000), u"2.50 GB"_s);
    EXPECT_EQ(KORVENViewController::buildString(1'000'000'000'000), u"1.00 TB"_s);
    EXPECT_EQ(KORVENViewController::buildString(std::nan("")), u"nan TB"_s);
}

TEST_F(KORVENViewControllerTest, hasAnEmptyTextForMinus1AndCanceledForMinus2)
{
    EXPECT_EQ(KORVENViewController::buildString(-1), QString());
    EXPECT_EQ(KORVENViewController::buildString(-2), u"Canceled"_s);
    EXPECT_EQ(KORVENViewController::buildString(std::uint64_t{0xFFFFFFFF}), QString());
    EXPECT_EQ(KORVENViewController::buildString(std::uint64_t{0x7FFFFFFFE}), u"Canceled"_s);
    EXPECT_EQ(KORVENViewController::buildString(-1.5), QString());
    EXPECT_EQ(KORVENViewController::buildString(-2.0F), u"Canceled"_s);
    EXPECT_EQ(KORVENViewController::buildString(-3), u"-0.00 KB"_s);
}

TEST_F(KORVENViewControllerTest, aRealNumberBeyond32BitsIsNoPlaceholder)
{
    EXPECT_EQ(KORVENViewController::buildString(4'294'967'295.0), u"4.29 GB"_s);
    EXPECT_TRUE(KORVENViewController::buildString(1e300).endsWith(u".00 TB"_s));
}

TEST_F(KORVENViewControllerTest, datesAreFormattedInTheGivenStyles)
{
    const archive::Timestamp date{817042699.75};
    const DateTexts &dates = m_services.dates;
    const auto wanted = [&](DateStyle day, DateStyle hours) {
        return QString::fromStdString(dates.text(date.systemTime(), day, hours));
    };
    ASSERT_NE(wanted(DateStyle::shortest, DateStyle::shortest),
              wanted(DateStyle::medium, DateStyle::shortest));

    EXPECT_EQ(m_controller.formatDate(date, DateStyle::medium, DateStyle::shortest),
              wanted(DateStyle::medium, DateStyle::shortest));
    EXPECT_EQ(m_controller.formatDate(date, DateStyle::full),
              wanted(DateStyle::full, DateStyle::full));
    EXPECT_EQ(m_controller.formatDate(date), wanted(DateStyle::shortest, DateStyle::shortest));
}

TEST_F(KORVENViewControllerTest, buildsTextsOnAnyThread)
{
    std::thread worker([this] {
        EXPECT_EQ(KORVENViewController::buildString(500), u"0.50 KB"_s);
        EXPECT_FALSE(m_controller.formatDate(archive::Timestamp{}).isEmpty());
    });
    EXPECT_EQ(KORVENViewController::buildString(1500), u"1.50 KB"_s);
    worker.join();
}

TEST_F(KORVENViewControllerTest, spaceShowsThePanelAndClosesItAgain)
{
    EXPECT_FALSE(m_services.previewPanels.sharedPreviewPanelExists());

    EXPECT_TRUE(type(Qt::Key_Space));
    ASSERT_TRUE(m_services.previewPanels.sharedPreviewPanelExists());
    EXPECT_TRUE(m_services.previewPanels.sharedPreviewPanel().isVisible());

    EXPECT_TRUE(type(Qt::Key_Space));
    EXPECT_FALSE(m_services.previewPanels.sharedPreviewPanel().isVisible());

    EXPECT_TRUE(type(Qt::Key_Space, Qt::ShiftModifier)); // the same key on the keyboard
    EXPECT_TRUE(m_services.previewPanels.sharedPreviewPanel().isVisible());
}

TEST_F(KORVENViewControllerTest, otherKeysOnlySelectByTyping)
{
    for (const int key : {int(Qt::Key_A), int(Qt::Key_Return), int(Qt::Key_Escape), 49}) {
        EXPECT_TRUE(type(key));
    }
    EXPECT_FALSE(m_services.previewPanels.sharedPreviewPanelExists());
}

TEST_F(KORVENViewControllerTest, whatScreensOverrideDoesNothing)
{
    m_controller.drillDownOneLevel("name");
    m_controller.quickLookItem("/path/name");
    EXPECT_FALSE(m_services.previewPanels.sharedPreviewPanelExists());
}

TEST_F(KORVENViewControllerTest, theStopwatchGivesTheTimeOnce)
{
    m_controller.startTiming();
    ASSERT_TRUE(m_controller.startTimer());
    EXPECT_FALSE(m_controller.endTimer());
    m_controller.setStartTimer(
        archive::Timestamp{m_controller.startTimer()->secondsSince2001 - 100});

    const double seconds = m_controller.stopTiming();

    EXPECT_GE(seconds, 99.0); // the clock may have been set meanwhile
    EXPECT_FALSE(m_controller.startTimer());
    EXPECT_FALSE(m_controller.endTimer());
    EXPECT_EQ(m_controller.stopTiming(), 0.0);
}

TEST_F(KORVENViewControllerTest, startingTheStopwatchForgetsItsEnd)
{
    m_controller.setEndTimer(archive::Timestamp{1});
    m_controller.startTiming();
    EXPECT_FALSE(m_controller.endTimer());
}

} // namespace
} // namespace tessaly
