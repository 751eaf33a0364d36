#include "platform/linux/volumes/UDisksClient.hpp"

#include "platform/linux/bus/BusLink.hpp"
#include "tests/platform/linux/PrivateBus.hpp"
#include "tests/platform/linux/SilentBus.hpp"
#include "tests/platform/linux/WaitUntil.hpp"
#include "tests/platform/linux/volumes/FakeUDisksService.hpp"

#include <QDBusConnection>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tessaly {

namespace {

using AfterUnmount = UDisksClient::AfterUnmount;
using Calls = std::vector<std::string>;
using Outcome = UDisksClient::Outcome;
using Result = UDisksClient::Result;

UDisksObjects stick()
{
    UDisksObjects objects;
    objects.addDrive({.name = "Stick", .isRemovable = true, .isEjectable = true});
    objects.addDevice({.name = "sdb1",
                       .number = 17,
                       .label = "My Stick",
                       .mountPoints = {"/media/my stick"},
                       .drive = "Stick"});
    return objects;
}

/// A bus without services, and a client of it.
class UDisksClientTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateBus::isInstalled()) {
            GTEST_SKIP() << "needs dbus-daemon";
        }
        m_bus = std::make_unique<PrivateBus>();
        makeClient();
    }

    void makeClient(std::chrono::milliseconds timeout = std::chrono::hours(1))
    {
        m_client = std::make_unique<UDisksClient>(
            PrivateBus::address(), [this] { ++m_changeCount; }, timeout);
    }

    [[nodiscard]] std::optional<UDisksVolumes> volumes()
    {
        bool isAnswered = false;
        std::optional<UDisksVolumes> found;
        m_client->readVolumes([&](const std::optional<UDisksVolumes> &volumes) {
            found = volumes;
            isAnswered = true;
        });
        waitUntil([&] { return isAnswered; });
        return found;
    }

    [[nodiscard]] Outcome outcomeOf(const std::string &path, std::uint64_t device,
                                    AfterUnmount afterUnmount)
    {
        std::optional<Outcome> outcome;
        m_client->unmount(path, device, afterUnmount, [&](const Outcome &its) { outcome = its; });
        waitUntil([&] { return outcome.has_value(); });
        return *outcome;
    }

    /// The one connection that a BusLink has made for volumes, and that is open.
    [[nodiscard]] static QDBusConnection connectionOfClient()
    {
        for (int number = 1;; ++number) {
            QDBusConnection connection(QStringLiteral("tessaly-volumes-%1").arg(number));
            if (connection.isConnected()) {
                return connection;
            }
        }
    }

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<UDisksClient> m_client;
    int m_changeCount = 0;
};

TEST_F(UDisksClientTest, aBusThatDoesNotAnswerCountsAsMissing)
{
    m_client.reset();
    m_bus.reset();
    const SilentBus bus(10);
    makeClient(std::chrono::milliseconds(1));
    EXPECT_FALSE(volumes());
    EXPECT_EQ(outcomeOf("/media/my stick", 17, AfterUnmount::nothing).result, Result::unknown);
}

TEST_F(UDisksClientTest, mayBeDestroyedWhileQuestionsWaitForTheBus)
{
    m_client.reset();
    m_bus.reset();
    const SilentBus bus(10);
    makeClient();
    for (int count = 0; count < 3; ++count) {
        m_client->readVolumes([](const auto & /*volumes*/) { ADD_FAILURE() << "nobody is there"; });
    }
    m_client.reset();
}

TEST_F(UDisksClientTest, readsWhatThereIs)
{
    UDisksObjects objects = stick();
    objects.addDevice({.name = "sda1", .mountPoints = {"/\xff", "/a b"}, .isSystem = true});
    const FakeUDisksService service(objects);

    EXPECT_EQ(volumes(), UDisksVolumes(objects.objects()));
}

TEST_F(UDisksClientTest, findsNothingWithoutAService)
{
    EXPECT_EQ(volumes(), std::nullopt);
    const FakeUDisksService service(stick());
    EXPECT_NE(volumes(), std::nullopt); // it looks again
}

TEST_F(UDisksClientTest, findsNothingWithoutABus)
{
    m_bus->stop();
    EXPECT_EQ(volumes(), std::nullopt);
    EXPECT_EQ(outcomeOf("/media/my stick", 17, AfterUnmount::eject).result, Result::unknown);
    m_bus->start();
    const FakeUDisksService service(stick());
    EXPECT_NE(volumes(), std::nullopt);
}

TEST_F(UDisksClientTest, unmountsAndEjects)
{
    FakeUDisksService service(stick());
    EXPECT_EQ(outcomeOf("/media/my stick", 0, AfterUnmount::eject).result, Result::done);
    EXPECT_EQ(service.waitForCalls(2), (Calls{"Unmount sdb1", "Eject Stick"}));
}

TEST_F(UDisksClientTest, unmountsWithoutEjecting)
{
    FakeUDisksService service(stick());
    EXPECT_EQ(outcomeOf("/media/my stick", 0, AfterUnmount::nothing).result, Result::done);
    EXPECT_EQ(outcomeOf("/elsewhere", 17, AfterUnmount::nothing).result, Result::done);
    EXPECT_EQ(service.waitForCalls(2), (Calls{"Unmount sdb1", "Unmount sdb1"}));
}

TEST_F(UDisksClientTest, locksWhatIsEncryptedBeforeItEjects)
{
    UDisksObjects objects;
    objects.addDrive({.name = "Stick", .isRemovable = true, .isEjectable = true});
    objects.addEncryptedDevice("sdb1", "Stick");
    objects.addDevice({.name = "dm_0", .mountPoints = {"/secret"}, .encryptedIn = "sdb1"});
    FakeUDisksService service(objects);
    EXPECT_EQ(outcomeOf("/secret", 0, AfterUnmount::eject).result, Result::done);
    EXPECT_EQ(service.waitForCalls(3), (Calls{"Unmount dm_0", "Lock sdb1", "Eject Stick"}));
}

TEST_F(UDisksClientTest, ejectsNothingThatIsFixed)
{
    UDisksObjects objects;
    objects.addDrive({.name = "Disk"});
    objects.addDevice({.name = "sdb1", .mountPoints = {"/disk"}, .drive = "Disk"});
    FakeUDisksService service(objects);
    EXPECT_EQ(outcomeOf("/disk", 0, AfterUnmount::eject).result, Result::done);
    EXPECT_EQ(service.waitForCalls(1), Calls{"Unmount sdb1"});
}

TEST_F(UDisksClientTest, reportsTheErrorAndStopsThere)
{
    FakeUDisksService service(stick());
    service.refuse("Unmount", "target is busy");
    const Outcome busy = outcomeOf("/media/my stick", 0, AfterUnmount::eject);
    EXPECT_EQ(busy.result, Result::failed);
    EXPECT_EQ(busy.problem, "Unmount: target is busy");
    EXPECT_EQ(service.waitForCalls(1), Calls{"Unmount sdb1"});
}

TEST_F(UDisksClientTest, reportsThatEjectingFailed)
{
    FakeUDisksService service(stick());
    service.refuse("Eject", "in use");
    const Outcome outcome = outcomeOf("/media/my stick", 0, AfterUnmount::eject);
    EXPECT_EQ(outcome.result, Result::failed);
    EXPECT_EQ(outcome.problem, "Eject: in use");
}

TEST_F(UDisksClientTest, doesNotKnowOtherVolumes)
{
    FakeUDisksService service(stick());
    EXPECT_EQ(outcomeOf("/elsewhere", 5, AfterUnmount::eject).result, Result::unknown);
    EXPECT_EQ(service.waitForCalls(0), Calls{});
}

TEST_F(UDisksClientTest, reportsChangesButNotJobs)
{
    FakeUDisksService service;
    (void)volumes();
    const int before = m_changeCount;
    service.announceJob();
    (void)volumes(); // its answer comes after the signals
    EXPECT_EQ(m_changeCount, before);

    service.add(stick(), UDisksObjects::devicePath("sdb1"));
    waitUntil([&] { return m_changeCount == before + 1; });
    service.change({}, UDisksObjects::devicePath("sdb1"));
    waitUntil([&] { return m_changeCount == before + 2; });
}

TEST_F(UDisksClientTest, reportsThatTheServiceHasStarted)
{
    (void)volumes();
    const FakeUDisksService service;
    waitUntil([&] { return m_changeCount == 1; });
}

TEST_F(UDisksClientTest, failsWhenTheServiceEndsMeanwhile)
{
    auto service = std::make_unique<FakeUDisksService>(stick());
    std::optional<Outcome> outcome;
    service->onCall("Unmount", [&] { service->withholdAnswers(); });
    m_client->unmount("/media/my stick", 0, AfterUnmount::eject,
                      [&](const Outcome &its) { outcome = its; });
    waitUntil([&] { return service->waitForCalls(0).size() == 1; });
    service.reset();
    waitUntil([&] { return outcome.has_value(); });
    EXPECT_EQ(outcome->result, Result::failed);
}

TEST_F(UDisksClientTest, failsWhenTheBusEndsBetweenTwoSteps)
{
    FakeUDisksService service(stick());
    std::optional<Outcome> outcome;
    service.onCall("Unmount", [&] { service.withholdAnswers(); });
    m_client->unmount("/media/my stick", 0, AfterUnmount::eject,
                      [&](const Outcome &its) { outcome = its; });
    waitUntil([&] { return service.waitForCalls(0).size() == 1; });
    // The answer comes while nobody looks, and then the bus is gone. What the bus tells the client
    // comes in turn: once the client has an answer of the bus itself, it has this one as well.
    service.giveAnswers();
    QDBusConnection connection = connectionOfClient();
    connection.call(BusLink::callOfBus("GetId"));
    m_bus->stop();
    while (connection.isConnected()) {
        std::this_thread::yield();
    }
    waitUntil([&] { return outcome.has_value(); });
    EXPECT_EQ(outcome->result, Result::failed);
    EXPECT_EQ(outcome->problem, "Eject: the bus is gone");
}

TEST_F(UDisksClientTest, dropsUnansweredQuestionsWhenItIsDestroyed)
{
    FakeUDisksService service(stick());
    (void)volumes();
    service.withholdAnswers();
    bool isAnswered = false;
    const auto kept = std::make_shared<int>(0);
    m_client->readVolumes([&isAnswered, kept](const auto &) { isAnswered = true; });
    waitUntil([&] { return service.questionCount() == 2; });
    m_client.reset();
    EXPECT_EQ(kept.use_count(), 1);
    service.giveAnswers();
    makeClient();
    (void)volumes();
    EXPECT_FALSE(isAnswered);
}

} // namespace

} // namespace tessaly
