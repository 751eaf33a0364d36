#include "platform/linux/process/SingleInstance.hpp"

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/engine/UnansweredMount.hpp"
#include "tests/platform/linux/BusConnection.hpp"
#include "tests/platform/linux/EndingProgram.hpp"
#include "tests/platform/linux/PrivateBus.hpp"
#include "tests/platform/linux/SilentBus.hpp"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <string>
#include <thread>

namespace tessaly {
namespace {

const QString name = QStringLiteral("io.tessaly.Tessaly");
const QString path = QStringLiteral("/io/tessaly/Tessaly");
const QString interface = QStringLiteral("org.freedesktop.Application");
constexpr auto complaint = "Tessaly is already running.";

/// Instances in processes of their own, without a bus until a test makes one.
class SingleInstanceTest : public testing::Test {
protected:
    void makeBus()
    {
        if (!PrivateBus::isInstalled()) {
            GTEST_SKIP() << "needs dbus-daemon";
        }
        m_bus = std::make_unique<PrivateBus>();
    }

    [[nodiscard]] std::unique_ptr<EndingProgram>
    start(const std::vector<std::string> &variables = {}, const std::string &timeouts = {}) const
    {
        return std::make_unique<EndingProgram>("claim", m_folder.path() + timeouts, variables);
    }

    TemporaryFolder m_folder;
    std::unique_ptr<PrivateBus> m_bus;
};

TEST_F(SingleInstanceTest, theSecondHasTheFirstShowItselfAndEnds)
{
    makeBus();
    const auto first = start();
    EXPECT_EQ(first->reportedLine(), "first");
    for (int count = 0; count < 3; ++count) {
        EXPECT_EQ(start()->result(), 0);
        EXPECT_EQ(first->reportedLine(), "activated ");
    }
}

TEST_F(SingleInstanceTest, theSecondHandsOverWhatTheDesktopGaveIt)
{
    makeBus();
    const auto first = start({"XDG_ACTIVATION_TOKEN=mine"});
    EXPECT_EQ(first->reportedLine(), "first");
    EXPECT_EQ(start({"XDG_ACTIVATION_TOKEN=token", "DESKTOP_STARTUP_ID=id_TIME1"})->result(), 0);
    EXPECT_EQ(first->reportedLine(), "activated token");
    EXPECT_EQ(start({"DESKTOP_STARTUP_ID=id_TIME2"})->result(), 0);
    EXPECT_EQ(first->reportedLine(), "activated id_TIME2");
    EXPECT_EQ(start()->result(), 0);
    EXPECT_EQ(first->reportedLine(), "activated ");
}

TEST_F(SingleInstanceTest, theFirstShowsItselfWhateverItIsAsked)
{
    makeBus();
    const auto first = start();
    EXPECT_EQ(first->reportedLine(), "first");
    BusConnection bus(PrivateBus::address());
    QDBusMessage open = QDBusMessage::createMethodCall(name, path, interface, "Open");
    open << QStringList{"file:///"} << QVariantMap{{"activation-token", "opened"}};
    QDBusMessage action = QDBusMessage::createMethodCall(name, path, interface, "ActivateAction");
    action << "some-action" << QVariantList{1} << QVariantMap();
    EXPECT_EQ(bus->call(open).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(first->reportedLine(), "activated opened");
    EXPECT_EQ(bus->call(action).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(first->reportedLine(), "activated ");
    const QDBusMessage unknown = QDBusMessage::createMethodCall(name, path, interface, "Other");
    EXPECT_EQ(bus->call(unknown).type(), QDBusMessage::ErrorMessage);
}

TEST_F(SingleInstanceTest, theNextIsTheFirstWhenThatHasEnded)
{
    makeBus();
    for (const int number : {SIGTERM, SIGKILL}) {
        const auto first = start();
        EXPECT_EQ(first->reportedLine(), "first");
        first->sendSignal(number);
        EXPECT_EQ(first->result(), number == SIGTERM ? 0 : -number);
    }
    EXPECT_EQ(start()->reportedLine(), "first");
}

TEST_F(SingleInstanceTest, theSecondTakesOverFromAFirstThatEndsMeanwhile)
{
    makeBus();
    const auto first = start();
    EXPECT_EQ(first->reportedLine(), "first");
    first->sendSignal(SIGSTOP);
    const auto second = start();
    BusConnection bus(PrivateBus::address());
    constexpr int oursAndTheirs = 5; // the bus, this connection, the name, and two instances
    while (bus->interface()->registeredServiceNames().value().size() < oursAndTheirs) {
        ASSERT_TRUE(second->isRunning());
    }
    first->sendSignal(SIGKILL);
    EXPECT_EQ(second->reportedLine(), "first");
}

TEST_F(SingleInstanceTest, theSecondDoesNotWaitLongForAFirstThatHangs)
{
    makeBus();
    const auto first = start();
    EXPECT_EQ(first->reportedLine(), "first");
    first->sendSignal(SIGSTOP);
    const auto second = start({}, ":60000:500");
    EXPECT_EQ(second->reportedLine(), complaint);
    EXPECT_EQ(second->result(), 1);
    first->sendSignal(SIGCONT);
    EXPECT_EQ(first->reportedLine(), "activated ");
}

TEST_F(SingleInstanceTest, theSecondWaitsForAllAnswersTogether)
{
    makeBus();
    const auto first = start();
    EXPECT_EQ(first->reportedLine(), "first");
    first->sendSignal(SIGSTOP);
    EndingProgram second("claim-late", m_folder.path());
    EXPECT_EQ(second.reportedLine(), complaint);
}

TEST_F(SingleInstanceTest, theNextIsTheFirstWhileTheLastOneIsStuckInTheKernel)
{
    makeBus();
    if (const auto missing = UnansweredMount::missingRequirement()) {
        GTEST_SKIP() << *missing;
    }
    m_folder.folder("mount");
    for (const std::string end : {"watch", "return"}) {
        auto mount = std::make_unique<UnansweredMount>(m_folder.path("mount"));
        EndingProgram last("get-stuck", m_folder.path() + ':' + m_folder.path("mount") + ':' + end);
        EXPECT_EQ(last.reportedLine(), "first");
        mount->takeRequest();
        last.sendSignal(SIGTERM);
        EXPECT_EQ(last.reportedLine(), "ending");
        {
            BusConnection bus(PrivateBus::address());
            while (bus->interface()->isServiceRegistered(name).value()) {
                std::this_thread::yield();
            }
        }
        EXPECT_EQ(start()->reportedLine(), "first") << end;
        EXPECT_TRUE(last.isRunning()) << end;
        mount.reset();
        EXPECT_EQ(last.result(), 0) << end;
    }
}

TEST_F(SingleInstanceTest, theSecondEndsWithoutABusToo)
{
    const auto first = start();
    EXPECT_EQ(first->reportedLine(), "first");
    const auto second = start();
    EXPECT_EQ(second->reportedLine(), complaint);
    EXPECT_EQ(second->result(), 1);

    first->sendSignal(SIGKILL);
    EXPECT_EQ(first->result(), -SIGKILL);
    EXPECT_EQ(start()->reportedLine(), "first");
}

TEST_F(SingleInstanceTest, theSecondEndsInAnotherSessionToo)
{
    const auto first = start();
    EXPECT_EQ(first->reportedLine(), "first");
    makeBus();
    const auto second = start();
    EXPECT_EQ(second->reportedLine(), complaint);
    EXPECT_EQ(second->result(), 1);
}

TEST_F(SingleInstanceTest, aBusThatDoesNotAnswerIsIgnored)
{
    const SilentBus bus(10);
    const auto first = start({}, ":100:100");
    EXPECT_EQ(first->reportedLine(), "first");
    EXPECT_EQ(start({}, ":100:100")->reportedLine(), complaint);
}

TEST_F(SingleInstanceTest, aFolderThatCannotBeLockedIsNoReasonNotToStart)
{
    EndingProgram program("claim", m_folder.path("missing"));
    EXPECT_EQ(program.reportedLine(), "first");
    EXPECT_EQ(program.complaints(), "tessaly: instance: the documents folder cannot be locked\n");
}

} // namespace
} // namespace tessaly
