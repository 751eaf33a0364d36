#include "platform/linux/notifications/LinuxNotifier.hpp"

#include "engine/scan/FileDescriptor.hpp"
#include "platform/linux/bus/BusProbe.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/LogLines.hpp"
#include "tests/platform/linux/PrivateBus.hpp"
#include "tests/platform/linux/ScopedVariable.hpp"
#include "tests/platform/linux/SilentBus.hpp"
#include "tests/platform/linux/notifications/FakeNotificationService.hpp"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

using namespace std::string_literals;

namespace tessaly {

namespace {

using Call = FakeNotificationService::Call;
using Sound = Notification::Sound;

const QStringList withMarkup = {QStringLiteral("body"), QStringLiteral("body-markup")};
constexpr auto category = "tessaly.notifier";

Notification notification(const std::string &text, const std::string &origin = {})
{
    return {"Scan", text, Sound::silent, origin};
}

std::vector<std::string> textsOf(const std::vector<Call> &calls)
{
    std::vector<std::string> texts;
    for (const Call &call : calls) {
        texts.push_back(call.text.toStdString());
    }
    return texts;
}

/// A bus of the test's own, without a notification service so far. No test runs an event loop on
/// its own thread.
class LinuxNotifierTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateBus::isInstalled()) {
            GTEST_SKIP() << "needs dbus-daemon";
        }
        m_bus = std::make_unique<PrivateBus>();
    }

    std::unique_ptr<PrivateBus> m_bus;
};

TEST_F(LinuxNotifierTest, sendsTheProgramsNameAndTheTexts)
{
    FakeNotificationService service;
    LinuxNotifier notifier;
    notifier.post({"Scan finished", "It took 3 s", Sound::complete, "scan"});

    const Call call = service.waitForCalls(1).at(0);
    EXPECT_EQ(call.application, "Tessaly");
    EXPECT_EQ(call.icon, "io.tessaly.Tessaly");
    EXPECT_EQ(call.title, "Scan finished");
    EXPECT_EQ(call.text, "It took 3 s");
    EXPECT_EQ(call.replaced, 0U);
    EXPECT_TRUE(call.actions.isEmpty());
    EXPECT_EQ(call.timeout, -1);
    EXPECT_EQ(call.hints.value("desktop-entry"), QVariant("io.tessaly.Tessaly"));
}

TEST_F(LinuxNotifierTest, namesItsSoundOrAsksForNone)
{
    FakeNotificationService service;
    LinuxNotifier notifier;
    notifier.post({"Scan", "a", Sound::message, {}});
    notifier.post({"Scan", "b", Sound::complete, {}});
    notifier.post({"Scan", "c", Sound::silent, {}});

    const std::vector<Call> calls = service.waitForCalls(3);
    EXPECT_EQ(calls.at(0).hints.value("sound-name"), QVariant("message-new-instant"));
    EXPECT_FALSE(calls.at(0).hints.contains("suppress-sound"));
    EXPECT_EQ(calls.at(1).hints.value("sound-name"), QVariant("complete"));
    EXPECT_FALSE(calls.at(1).hints.contains("suppress-sound"));
    EXPECT_FALSE(calls.at(2).hints.contains("sound-name"));
    EXPECT_EQ(calls.at(2).hints.value("suppress-sound"), QVariant(true));
}

TEST_F(LinuxNotifierTest, escapesTheTextForAServiceThatReadsMarkup)
{
    FakeNotificationService service(withMarkup);
    LinuxNotifier notifier;
    notifier.post({"<R&D>", "<b>R&amp;D</b> \"x\"", Sound::silent, {}});

    const Call call = service.waitForCalls(1).at(0);
    EXPECT_EQ(call.title, "<R&D>");
    EXPECT_EQ(call.text, "&lt;b&gt;R&amp;amp;D&lt;/b&gt; \"x\"");
}

TEST_F(LinuxNotifierTest, leavesTheTextAsItIsForAServiceThatReadsNoMarkup)
{
    FakeNotificationService service;
    LinuxNotifier notifier;
    notifier.post({"<R&D>", "<b>R&amp;D</b> \"x\"", Sound::silent, {}});

    const Call call = service.waitForCalls(1).at(0);
    EXPECT_EQ(call.title, "<R&D>");
    EXPECT_EQ(call.text, "<b>R&amp;D</b> \"x\"");
}

TEST_F(LinuxNotifierTest, showsTextsThatTheBusWouldNotCarry)
{
    FakeNotificationService service;
    LinuxNotifier notifier;
    notifier.post({"a\xFFz", "b\0z"s, Sound::silent, "\xFF"});
    notifier.post({"", "", Sound::silent, {}});

    const std::vector<Call> calls = service.waitForCalls(2);
    EXPECT_EQ(calls.at(0).title, QStringLiteral("a\uFFFDz"));
    EXPECT_EQ(calls.at(0).text, "bz");
    EXPECT_EQ(calls.at(1).title, "");
}

TEST_F(LinuxNotifierTest, replacesTheLastOneOfTheSameOrigin)
{
    FakeNotificationService service;
    LinuxNotifier notifier;
    notifier.post(notification("a1", "a"));
    notifier.post(notification("b1", "b"));
    notifier.post(notification("none 1"));
    notifier.post(notification("a2", "a"));
    notifier.post(notification("none 2"));
    notifier.post(notification("b2", "b"));
    notifier.post(notification("a3", "a"));

    const std::vector<Call> calls = service.waitForCalls(7);
    EXPECT_EQ(calls.at(0).replaced, 0U);
    EXPECT_EQ(calls.at(1).replaced, 0U);
    EXPECT_EQ(calls.at(2).replaced, 0U);
    EXPECT_EQ(calls.at(3).replaced, calls.at(0).id);
    EXPECT_EQ(calls.at(4).replaced, 0U);
    EXPECT_EQ(calls.at(5).replaced, calls.at(1).id);
    EXPECT_EQ(calls.at(6).replaced, calls.at(0).id);
}

TEST_F(LinuxNotifierTest, replacesOneWhoseIdIsNotKnownYetWhenItIsPosted)
{
    FakeNotificationService service;
    LinuxNotifier notifier;
    notifier.post(notification("first"));
    (void)service.waitForCalls(1);
    service.withholdAnswers();
    notifier.post(notification("a1", "a"));
    notifier.post(notification("a2", "a"));
    EXPECT_EQ(service.waitForCalls(2).at(1).text, "a1");
    EXPECT_EQ(service.unansweredCount(), 1U);

    service.giveAnswers();
    const std::vector<Call> calls = service.waitForCalls(3);
    EXPECT_EQ(calls.at(2).text, "a2");
    EXPECT_EQ(calls.at(2).replaced, calls.at(1).id);
}

TEST_F(LinuxNotifierTest, doesNotReplaceOneThatHasBeenClosed)
{
    FakeNotificationService service;
    LinuxNotifier notifier;
    notifier.post(notification("a1", "a"));
    notifier.post(notification("b1", "b"));
    const std::vector<Call> before = service.waitForCalls(2);
    service.close(before.at(0).id);
    notifier.post(notification("b2", "b")); // its answer comes after the news
    notifier.post(notification("a2", "a"));

    const std::vector<Call> calls = service.waitForCalls(4);
    EXPECT_EQ(calls.at(2).replaced, before.at(1).id);
    EXPECT_EQ(calls.at(3).text, "a2");
    EXPECT_EQ(calls.at(3).replaced, 0U);
}

TEST_F(LinuxNotifierTest, asksANewServiceAgain)
{
    auto service = std::make_unique<FakeNotificationService>();
    LinuxNotifier notifier;
    notifier.post(notification("<1>", "a"));
    (void)service->waitForCalls(1);
    service.reset();
    service = std::make_unique<FakeNotificationService>(withMarkup);
    notifier.post(notification("other")); // its answer comes after the news
    notifier.post(notification("<2>", "a"));

    const Call call = service->waitForCalls(2).at(1);
    EXPECT_EQ(call.replaced, 0U);
    EXPECT_EQ(call.text, "&lt;2&gt;");
}

TEST_F(LinuxNotifierTest, keepsTheOrder)
{
    FakeNotificationService service;
    LinuxNotifier notifier;
    std::vector<std::string> posted;
    for (int number = 0; number < 100; ++number) {
        posted.push_back(std::to_string(number));
        notifier.post(notification(posted.back(), std::to_string(number % 3)));
    }
    EXPECT_EQ(textsOf(service.waitForCalls(posted.size())), posted);
}

TEST_F(LinuxNotifierTest, takesPostsFromSeveralThreads)
{
    constexpr int threadCount = 4;
    constexpr int postCount = 25;
    FakeNotificationService service;
    LinuxNotifier notifier;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&notifier, thread] {
            for (int number = 0; number < postCount; ++number) {
                notifier.post({std::to_string(thread), std::to_string(number), Sound::silent, {}});
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }

    std::map<std::string, int> next; // of each thread, all in order
    for (const Call &call : service.waitForCalls(threadCount * postCount)) {
        EXPECT_EQ(call.text.toInt(), next[call.title.toStdString()]++);
    }
    EXPECT_EQ(next.size(), std::size_t(threadCount));
}

TEST_F(LinuxNotifierTest, continuesAfterAnError)
{
    FakeNotificationService service;
    LinuxNotifier notifier;
    service.refuse();
    notifier.post(notification("a1", "a"));
    notifier.post(notification("a2", "a"));

    const std::vector<Call> calls = service.waitForCalls(2);
    EXPECT_EQ(textsOf(calls), (std::vector<std::string>{"a1", "a2"}));
    EXPECT_EQ(calls.at(1).replaced, 0U);
}

TEST_F(LinuxNotifierTest, findsAServiceThatAppearsLater)
{
    const LogLines log(category);
    LinuxNotifier notifier;
    notifier.post(notification("too early", "a"));
    EXPECT_TRUE(LogLines::waitFor(1).at(0).starts_with("notification not shown"));

    FakeNotificationService service;
    notifier.post(notification("in time", "a"));
    EXPECT_EQ(textsOf(service.waitForCalls(1)), std::vector<std::string>{"in time"});
}

TEST_F(LinuxNotifierTest, findsABusThatAppearsLater)
{
    m_bus->stop();
    const LogLines log(category);
    LinuxNotifier notifier;
    notifier.post(notification("too early"));
    EXPECT_TRUE(LogLines::waitFor(1).at(0).starts_with("no session bus"));

    m_bus->start();
    FakeNotificationService service;
    notifier.post(notification("in time"));
    EXPECT_EQ(textsOf(service.waitForCalls(1)), std::vector<std::string>{"in time"});
}

TEST_F(LinuxNotifierTest, connectsAgainWhenTheBusWasLost)
{
    LinuxNotifier notifier;
    {
        FakeNotificationService service;
        notifier.post(notification("a1", "a"));
        (void)service.waitForCalls(1);
    }
    m_bus->stop();
    m_bus->start();
    FakeNotificationService service;
    notifier.post(notification("a2", "a"));
    const Call call = service.waitForCalls(1).at(0);
    EXPECT_EQ(call.text, "a2");
    EXPECT_EQ(call.replaced, 0U);
}

TEST_F(LinuxNotifierTest, looksForANewBusWhenOneIsLostBeforeItsAnswer)
{
    const LogLines log(category);
    LinuxNotifier notifier;
    {
        FakeNotificationService service({}, FakeNotificationService::Answers::withheld);
        notifier.post(notification("lost with it"));
        service.waitForUnanswered();
        m_bus->stop();
    }
    const std::vector<std::string> lines = LogLines::waitFor(2);
    EXPECT_TRUE(lines.at(0).starts_with("notification not shown"));
    EXPECT_TRUE(lines.at(1).starts_with("no session bus"));
}

TEST_F(LinuxNotifierTest, findsTheBusInTheUsersFolder)
{
    const TemporaryFolder folder;
    folder.link("bus", PrivateBus::address().substr(std::string("unix:path=").size()));
    FakeNotificationService service;
    const ScopedVariable runtimeFolder("XDG_RUNTIME_DIR", folder.path());
    const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    LinuxNotifier notifier;
    notifier.post(notification("here"));
    EXPECT_EQ(textsOf(service.waitForCalls(1)), std::vector<std::string>{"here"});
}

TEST_F(LinuxNotifierTest, findsTheBusInAListOfAddresses)
{
    const std::string list = "tcp:host=localhost,port=1;unix:path=/missing;" +
                             PrivateBus::address() + ";unix:path=/missing";
    FakeNotificationService service;
    const ScopedVariable variable("DBUS_SESSION_BUS_ADDRESS", list);
    LinuxNotifier notifier;
    notifier.post(notification("here"));
    EXPECT_EQ(textsOf(service.waitForCalls(1)), std::vector<std::string>{"here"});
}

TEST(LinuxNotifier, startsNoProgramToFindABus)
{
    const TemporaryFolder folder;
    const ScopedVariable variable("DBUS_SESSION_BUS_ADDRESS",
                                  "unixexec:path=/usr/bin/touch,argv1=" + folder.path("started"));
    const LogLines log(category);
    LinuxNotifier notifier;
    notifier.post(notification("nobody hears"));
    EXPECT_TRUE(LogLines::waitFor(1).at(0).starts_with("no session bus"));
    EXPECT_NE(access(folder.path("started").c_str(), F_OK), 0);
}

TEST(LinuxNotifier, doesNothingWithAnInvalidAddress)
{
    for (const char *address : {"nonsense", "unix:", "unix:path=", "=", ";"}) {
        const ScopedVariable variable("DBUS_SESSION_BUS_ADDRESS", address);
        const LogLines log(category);
        LinuxNotifier notifier;
        notifier.post(notification("nobody hears"));
        EXPECT_TRUE(LogLines::waitFor(1).at(0).starts_with("no session bus")) << address;
    }
}

TEST(LinuxNotifier, doesNothingWithoutABus)
{
    const LogLines log(category);
    LinuxNotifier notifier;
    for (std::size_t count = 1; count <= 3; ++count) { // each is a try of its own
        notifier.post(notification("nobody hears"));
        EXPECT_TRUE(LogLines::waitFor(count).back().starts_with("no session bus"));
    }
}

// In the tests that follow something never answers, as long as they last: that they come to their
// end shows that nothing waits for it.

TEST_F(LinuxNotifierTest, doesNotWaitForAServiceThatDoesNotAnswer)
{
    FakeNotificationService service;
    auto notifier = std::make_unique<LinuxNotifier>();
    notifier->post(notification("a1", "a"));
    (void)service.waitForCalls(1);
    service.withholdAnswers();
    notifier->post(notification("a2", "a"));
    service.waitForUnanswered();
    notifier->post(notification("a3", "a"));
    notifier.reset();
    EXPECT_EQ(service.unansweredCount(), 1U);
    EXPECT_EQ(service.waitForCalls(2).size(), 2U);
}

TEST_F(LinuxNotifierTest, doesNotWaitForAServiceThatDoesNotSayWhatItCan)
{
    FakeNotificationService service({}, FakeNotificationService::Answers::withheld);
    auto notifier = std::make_unique<LinuxNotifier>();
    notifier->post(notification("a1", "a"));
    service.waitForUnanswered();
    notifier->post(notification("a2", "a"));
    notifier.reset();
    EXPECT_EQ(service.unansweredCount(), 1U);
    EXPECT_EQ(service.waitForCalls(0).size(), 0U);
}

TEST_F(LinuxNotifierTest, doesNotWaitForAServiceThatDoesNotStart)
{
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo(folder.path("started").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo(folder.path("end").c_str(), 0600), 0);
    const scan::FileDescriptor started(open(folder.path("started").c_str(), O_RDWR | O_CLOEXEC));
    const scan::FileDescriptor end(open(folder.path("end").c_str(), O_RDWR | O_CLOEXEC));
    // It reports, never takes its name, and goes when the other end of its input does.
    m_bus.reset();
    m_bus = std::make_unique<PrivateBus>(std::vector<PrivateBus::Service>{
        {"org.freedesktop.Notifications",
         "/bin/sh -c 'echo > " + folder.path("started") + "; cat " + folder.path("end") + "'"}});

    auto notifier = std::make_unique<LinuxNotifier>();
    notifier->post(notification("a1", "a"));
    char letter = 0;
    ASSERT_EQ(read(started.number(), &letter, 1), 1);
    notifier->post(notification("a2", "a"));
    notifier.reset();
}

TEST(LinuxNotifier, doesNotWaitForABusThatDoesNotAnswer)
{
    const SilentBus bus;
    auto notifier = std::make_unique<LinuxNotifier>();
    notifier->post(notification("a1", "a"));
    const scan::FileDescriptor connection = bus.connection();
    ASSERT_TRUE(connection.isOpen());
    notifier->post(notification("a2", "a"));
    notifier.reset();
}

TEST(LinuxNotifier, doesNotWaitForAPlaceInTheQueueOfABus)
{
    const SilentBus bus(0);
    const BusProbe first(PrivateBus::address());
    ASSERT_TRUE(first.isConnected());
    ASSERT_FALSE(BusProbe(PrivateBus::address()).isConnected()); // the queue is full
    const LogLines log(category);
    LinuxNotifier notifier;
    for (std::size_t count = 1; count <= 2; ++count) {
        notifier.post(notification("nobody hears"));
        EXPECT_TRUE(LogLines::waitFor(count).back().starts_with("no session bus"));
    }
}

TEST(LinuxNotifier, doesNotWaitForASecondPlaceInTheQueueOfABus)
{
    const SilentBus bus(0);
    auto notifier = std::make_unique<LinuxNotifier>();
    notifier->post(notification("a1", "a"));
    bus.waitForQueue(); // by now the queue is full
    notifier->post(notification("a2", "a"));
    notifier.reset();
}

TEST(LinuxNotifier, mayBeDestroyedBeforeItsThreadHasDoneAnything)
{
    for (int count = 0; count < 20; ++count) {
        LinuxNotifier notifier;
        notifier.post(notification("nobody hears"));
    }
}

} // namespace

} // namespace tessaly
