#include "platform/linux/bus/BusLink.hpp"

#include "tests/platform/linux/PrivateBus.hpp"
#include "tests/platform/linux/SilentBus.hpp"
#include "tests/platform/linux/WaitUntil.hpp"

#include <QDBusPendingCall>
#include <QDBusPendingReply>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace tessaly {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds longWait = std::chrono::minutes(2);
constexpr milliseconds shortWait(20);

class BusLinkTest : public testing::Test {
protected:
    void makeBus()
    {
        if (!PrivateBus::isInstalled()) {
            GTEST_SKIP() << "needs dbus-daemon";
        }
        m_bus = std::make_unique<PrivateBus>();
    }

    /// What open() answers.
    std::string opened(std::optional<milliseconds> timeout = {})
    {
        std::optional<QString> problem;
        m_link.open([&](const QString &answer) { problem = answer; }, timeout);
        waitUntil([&] { return problem.has_value(); });
        return problem->toStdString();
    }

    bool canCall()
    {
        const QDBusPendingReply<QString> id = m_link.bus().asyncCall(BusLink::callOfBus("GetId"));
        QDBusPendingReply<QString>(id).waitForFinished();
        return id.isValid() && !id.value().isEmpty();
    }

    std::unique_ptr<PrivateBus> m_bus;
    BusLink m_link{PrivateBus::address(), QStringLiteral("test")};
};

TEST_F(BusLinkTest, connectsToABus)
{
    makeBus();
    EXPECT_FALSE(m_link.isOpen());
    EXPECT_EQ(opened(), "");
    EXPECT_TRUE(m_link.isOpen());
    EXPECT_TRUE(canCall());
    EXPECT_EQ(opened(longWait), "");
    EXPECT_TRUE(canCall());
    EXPECT_EQ(m_link.openWithin(longWait), "");
    EXPECT_TRUE(canCall());
}

TEST_F(BusLinkTest, reportsAMissingBus)
{
    EXPECT_EQ(opened(), "nobody takes connections there");
    EXPECT_EQ(m_link.openWithin(longWait), "nobody takes connections there");
    EXPECT_FALSE(m_link.isOpen());
}

TEST_F(BusLinkTest, noticesThatABusHasEndedAndOpensTheNext)
{
    makeBus();
    EXPECT_EQ(opened(), "");
    m_bus->stop();
    waitUntil([&] { return !m_link.isOpen(); });
    m_bus->start();
    EXPECT_EQ(m_link.openWithin(longWait), "");
    EXPECT_TRUE(canCall());
}

TEST_F(BusLinkTest, givesUpOnASilentBus)
{
    const SilentBus bus;
    EXPECT_EQ(opened(shortWait), "the bus does not answer");
    EXPECT_EQ(m_link.openWithin(shortWait), "the bus does not answer");
    EXPECT_FALSE(m_link.isOpen());
}

TEST_F(BusLinkTest, mayBeDestroyedOrOpenedAgainWhileItWaits)
{
    const SilentBus bus(10);
    BusLink link(PrivateBus::address(), QStringLiteral("test"));
    link.open([](const QString &problem) { FAIL() << problem.toStdString(); });
    std::string answer;
    link.open([&](const QString &problem) { answer = problem.toStdString(); }, shortWait);
    waitUntil([&] { return !answer.empty(); });
    EXPECT_EQ(answer, "the bus does not answer");
    link.open([](const QString &problem) { FAIL() << problem.toStdString(); }, shortWait);
}

} // namespace
} // namespace tessaly
