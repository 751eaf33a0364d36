#include "app/window/KORVENRate.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/window/ProgramVersion.hpp"
#include "app/window/VendorUrls.hpp"
#include "tests/fakes/FakeServices.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Log = std::vector<std::string>;

const std::string version{programVersion()};
constexpr int never = -1;

class KORVENRateTest : public testing::Test {
protected:
    KORVENRateTest() { m_settings.clearLog(); }

    [[nodiscard]] KORVENRate makeRate()
    {
        return KORVENRate("123456789", m_settings, m_services.urls,
                          [this](const RateMessageBox::Request &request) {
                              m_asked.push_back(request);
                              return m_answer;
                          });
    }

    /// One start of the program; whether it asked.
    bool start()
    {
        m_asked.clear();
        KORVENRate rate = makeRate();
        rate.checkRateAndReview();
        m_count = rate.getRunCount();
        return !m_asked.empty();
    }

    void store(std::int64_t count, const std::string &countedVersion = version)
    {
        m_settings.setInteger("KORVENRate_run_count", count);
        m_settings.setText("KORVENRate_version_num", countedVersion);
        m_settings.clearLog();
    }

    [[nodiscard]] std::int64_t storedCount() const
    {
        return m_settings.integer("KORVENRate_run_count");
    }

    /// Number of the first start, of as many as that, which asks.
    int firstStartThatAsks(int starts)
    {
        for (int number = 1; number <= starts; ++number) {
            if (start()) {
                return number;
            }
        }
        return never;
    }

    FakeServices m_services;
    FakeSettingsStore &m_settings = m_services.settings;
    KORVENAppDelegate m_delegate{m_services.all()};
    std::vector<RateMessageBox::Request> m_asked;
    int m_answer = RateMessageBox::noAnswer;
    int m_count = 0; ///< of the last start
};

TEST_F(KORVENRateTest, theFirstStartStoresTheVersionAndShowsNothing)
{
    EXPECT_FALSE(start());
    EXPECT_EQ(m_count, 0);
    EXPECT_EQ(m_settings.log(), (Log{"setInteger KORVENRate_run_count 0",
                                     "setText KORVENRate_version_num " + version}));
}

TEST_F(KORVENRateTest, theNextStartsCountWithoutFlushing)
{
    start();
    m_settings.clearLog();
    EXPECT_FALSE(start());
    EXPECT_FALSE(start());
    EXPECT_EQ(m_count, 2);
    EXPECT_EQ(m_settings.log(),
              (Log{"setInteger KORVENRate_run_count 1", "setInteger KORVENRate_run_count 2"}));
}

TEST_F(KORVENRateTest, theFourthStartOfAVersionIsTheFirstToAsk)
{
    EXPECT_EQ(firstStartThatAsks(4), 4);
    EXPECT_EQ(m_count, 3);
}

TEST_F(KORVENRateTest, asksWhileTheCountIsFromThreeToEight)
{
    for (int stored = 0; stored <= 9; ++stored) {
        store(stored);
        EXPECT_EQ(start(), stored >= 2 && stored <= 7) << stored;
    }
}

TEST_F(KORVENRateTest, asksInTheseWords)
{
    store(2);
    start();
    ASSERT_EQ(m_asked.size(), 1U);
    EXPECT_EQ(m_asked[0].messageText, u"Tessaly - Rate and Review"_s);
    EXPECT_EQ(m_asked[0].informativeText,
              u"If you enjoy using Tessaly please take a moment to rate and review. Thank you."_s);
    EXPECT_EQ(m_asked[0].buttons, (QStringList{u"Yes"_s, u"Not now"_s}));
}

TEST_F(KORVENRateTest, aCountOfNineNeitherCountsNorAsks)
{
    store(9);
    EXPECT_EQ(firstStartThatAsks(20), never);
    EXPECT_EQ(m_count, 9);
    EXPECT_EQ(m_settings.log(), Log{});
}

TEST_F(KORVENRateTest, acountAboveNineStaysToo)
{
    store(4711);
    EXPECT_EQ(firstStartThatAsks(3), never);
    EXPECT_EQ(m_count, 4711);
    EXPECT_EQ(m_settings.log(), Log{});
}

TEST_F(KORVENRateTest, theCountAfterEightIsNineAndIsNotAskedAt)
{
    store(8);
    EXPECT_FALSE(start());
    EXPECT_EQ(storedCount(), 9);
}

TEST_F(KORVENRateTest, aNewVersionCountsFromZeroEvenAfterAnAnswer)
{
    store(9, "0.0.1");
    EXPECT_FALSE(start());
    EXPECT_EQ(m_count, 0);
    EXPECT_EQ(m_settings.log(), (Log{"setInteger KORVENRate_run_count 0",
                                     "setText KORVENRate_version_num " + version}));
    EXPECT_EQ(firstStartThatAsks(3), 3); // the fourth of all
}

TEST_F(KORVENRateTest, aNewVersionForgetsACountThatWasUnderWay)
{
    store(5, version + ".1");
    EXPECT_FALSE(start());
    EXPECT_EQ(storedCount(), 0);
}

TEST_F(KORVENRateTest, aProgramThatEndedBeforeTheAnswerAsksAgain)
{
    store(5);
    EXPECT_TRUE(start());
    EXPECT_EQ(m_count, 6);
    EXPECT_EQ(storedCount(), 6);
    EXPECT_EQ(m_settings.log(), Log{"setInteger KORVENRate_run_count 6"});
    EXPECT_TRUE(m_services.urls.opened.empty());
}

TEST_F(KORVENRateTest, yesIsKeptAtOnceAndOpensTheStore)
{
    store(2);
    m_answer = 1000;
    EXPECT_TRUE(start());
    EXPECT_EQ(m_count, 9);
    EXPECT_EQ(m_settings.log(),
              (Log{"setInteger KORVENRate_run_count 3", "setInteger KORVENRate_run_count 0",
                   "flush", "setInteger KORVENRate_run_count 9", "flush"}));
    EXPECT_EQ(m_services.urls.opened, Log{storePage("123456789")});
    EXPECT_EQ(firstStartThatAsks(10), never);
}

TEST_F(KORVENRateTest, notNowAsksAgainAtTheThirdStartAfterThat)
{
    store(2);
    m_answer = 1001;
    EXPECT_TRUE(start());
    EXPECT_EQ(m_count, 0);
    EXPECT_EQ(m_settings.log(), (Log{"setInteger KORVENRate_run_count 3",
                                     "setInteger KORVENRate_run_count 0", "flush"}));
    EXPECT_TRUE(m_services.urls.opened.empty());
    EXPECT_EQ(firstStartThatAsks(10), 3);
}

TEST_F(KORVENRateTest, aThirdButtonIsAnAnswerWithoutTheStore)
{
    store(2);
    m_answer = 1002;
    EXPECT_TRUE(start());
    EXPECT_EQ(m_count, 9);
    EXPECT_EQ(m_settings.log(),
              (Log{"setInteger KORVENRate_run_count 3", "setInteger KORVENRate_run_count 0",
                   "flush", "setInteger KORVENRate_run_count 9", "flush"}));
    EXPECT_TRUE(m_services.urls.opened.empty());
}

TEST_F(KORVENRateTest, theAlertCanBeShownAtAnyTime)
{
    KORVENRate rate = makeRate();
    rate.rateAndReviewAlert();
    EXPECT_EQ(m_asked.size(), 1U);
}

TEST_F(KORVENRateTest, setsTheCountAtOnce)
{
    KORVENRate rate = makeRate();
    m_settings.clearLog();
    rate.setRunCount(7);
    EXPECT_EQ(rate.getRunCount(), 7);
    EXPECT_EQ(m_settings.log(), (Log{"setInteger KORVENRate_run_count 7", "flush"}));
    EXPECT_EQ(makeRate().getRunCount(), 8);
}

TEST_F(KORVENRateTest, aCountThatIsATextReadsAsNone)
{
    store(0);
    m_settings.setText("KORVENRate_run_count", "5");
    EXPECT_FALSE(start());
    EXPECT_EQ(m_count, 1);
    EXPECT_EQ(storedCount(), 1);
}

TEST_F(KORVENRateTest, aVersionThatIsANumberIsAnotherVersion)
{
    store(9);
    m_settings.setInteger("KORVENRate_version_num", 1);
    EXPECT_FALSE(start());
    EXPECT_EQ(m_count, 0);
    EXPECT_EQ(m_settings.text("KORVENRate_version_num"), version);
}

TEST_F(KORVENRateTest, countsOnInThirtyTwoBits)
{
    store((std::int64_t{1} << 32) + 4);
    EXPECT_TRUE(start());
    EXPECT_EQ(m_count, 5);
    EXPECT_EQ(storedCount(), 5);
}

TEST_F(KORVENRateTest, opensThePageOfTheProgramItIsTold)
{
    const KORVENRate rate = makeRate();
    rate.doRateAndReview();
    ASSERT_EQ(m_services.urls.opened.size(), 1U);
    EXPECT_TRUE(m_services.urls.opened[0].starts_with("macappstore:"));
    EXPECT_TRUE(m_services.urls.opened[0].ends_with("123456789"));
}

} // namespace
} // namespace tessaly
