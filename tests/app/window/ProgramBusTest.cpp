// The program on an X display, where Qt's accessibility bridge uses the session bus.

#include "tests/app/window/ProgramFixture.hpp"
#include "tests/platform/linux/BusConnection.hpp"
#include "tests/platform/linux/SilentBus.hpp"
#include "tests/platform/linux/VirtualDisplay.hpp"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QString>
#include <QVariantList>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>
#include <unistd.h>

namespace tessaly {
namespace {

constexpr auto launcherPath = "/usr/libexec/at-spi-bus-launcher";

/// The first value of the answer to a call; throws without one.
template <typename Value>
Value answerOf(BusConnection &bus, const char *service, const char *path, const char *interface,
               const char *method, const QVariantList &arguments = {})
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    const QDBusMessage answer = bus->call(call);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) {
        throw std::runtime_error(answer.errorMessage().toStdString());
    }
    return answer.arguments().first().value<Value>();
}

/// The process that has a name on a bus.
pid_t processOf(BusConnection &bus, const char *name)
{
    return static_cast<pid_t>(answerOf<uint>(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                             "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                                             {QString::fromLatin1(name)}));
}

/// How many programs the registry of an accessibility bus knows.
int registeredProgramCount(BusConnection &bus)
{
    return answerOf<QDBusVariant>(
               bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root",
               "org.freedesktop.DBus.Properties", "Get",
               {QStringLiteral("org.a11y.atspi.Accessible"), QStringLiteral("ChildCount")})
        .variant()
        .toInt();
}

/// A process that does nothing while this lives.
class SuspendedProcess {
public:
    explicit SuspendedProcess(pid_t process) : m_process(process) { kill(m_process, SIGSTOP); }
    ~SuspendedProcess() { kill(m_process, SIGCONT); }
    Q_DISABLE_COPY_MOVE(SuspendedProcess)

private:
    pid_t m_process;
};

class ProgramBusTest : public ProgramFixture {
protected:
    void SetUp() override
    {
        ProgramFixture::SetUp();
        if (!VirtualDisplay::isInstalled()) {
            GTEST_SKIP() << "needs Xvfb";
        }
        if (!PrivateBus::isInstalled()) {
            GTEST_SKIP() << "needs dbus-daemon";
        }
        m_display.emplace();
        m_bus = std::make_unique<PrivateBus>();
    }

    [[nodiscard]] std::unique_ptr<StartedProgram>
    startOnDisplay(std::vector<std::string> variables = {}) const
    {
        variables.emplace_back("QT_QPA_PLATFORM=xcb");
        variables.emplace_back("DISPLAY=" + m_display->name());
        return start(std::move(variables));
    }

    /// Starts the services of the accessibility bus.
    void makeAccessibilityBus()
    {
        if (access(launcherPath, X_OK) != 0) {
            GTEST_SKIP() << "needs at-spi2-core";
        }
        m_launcher.emplace(std::vector<std::string>{launcherPath, "--launch-immediately"},
                           std::vector<std::string>{"DISPLAY=" + m_display->name(),
                                                    "XDG_RUNTIME_DIR=" + m_folder.path("run")});
        ASSERT_TRUE(PrivateBus::waitForOwner("org.a11y.Bus", *m_launcher));
        BusConnection session(PrivateBus::address());
        m_accessibilityAddress = answerOf<QString>(session, "org.a11y.Bus", "/org/a11y/bus",
                                                   "org.a11y.Bus", "GetAddress")
                                     .toStdString();
    }

    /// Shows its window, and ends when it is asked to.
    static void expectToWork(StartedProgram &program)
    {
        ASSERT_TRUE(waitForLog(program, "content painted")) << program.complaints();
        program.sendSignal(SIGTERM);
        EXPECT_EQ(statusOf(program), 0) << program.complaints();
    }

    std::optional<VirtualDisplay> m_display;
    std::optional<StartedProgram> m_launcher;
    std::string m_accessibilityAddress;
};

TEST_F(ProgramBusTest, startsWhileTheBusIsSuspended)
{
    m_bus->suspend();
    const auto program = startOnDisplay();
    expectToWork(*program);
    EXPECT_NE(program->complaints().find("the session bus does not answer"), std::string::npos);
}

TEST_F(ProgramBusTest, startsWithASocketThatListensAndDoesNotAnswer)
{
    m_bus->stop();
    const SilentBus bus(100);
    const auto program = startOnDisplay();
    expectToWork(*program);
}

TEST_F(ProgramBusTest, startsWithASocketWhoseQueueIsFull)
{
    m_bus->stop();
    const SilentBus bus(0);
    const scan::FileDescriptor inQueue = SilentBus::connectionToBus();
    const auto program = startOnDisplay();
    expectToWork(*program);
}

TEST_F(ProgramBusTest, aSecondStartEndsWhileTheBusIsSuspended)
{
    const auto first = startOnDisplay();
    ASSERT_TRUE(waitForLog(*first, "content painted")) << first->complaints();
    m_bus->suspend();
    const auto second = startOnDisplay();
    ASSERT_TRUE(waitForLog(*second, "already running")) << second->complaints();
    second->sendSignal(SIGTERM);
    EXPECT_EQ(statusOf(*second), 1) << second->complaints();
    first->sendSignal(SIGTERM);
    EXPECT_EQ(statusOf(*first), 0) << first->complaints();
}

TEST_F(ProgramBusTest, goesOnWhenTheBusIsSuspendedOnceItHasItsName)
{
    const auto program = startOnDisplay();
    ASSERT_TRUE(PrivateBus::waitForOwner("io.tessaly.Tessaly", *program));
    m_bus->suspend();
    expectToWork(*program);
}

TEST_F(ProgramBusTest, isSeenOnAnAccessibilityBusThatAnswers)
{
    makeAccessibilityBus();
    BusConnection accessibility(m_accessibilityAddress);
    const auto program = startOnDisplay({"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"});
    while (registeredProgramCount(accessibility) == 0) {
        ASSERT_TRUE(program->isRunning()) << program->complaints();
    }
    expectToWork(*program);
}

TEST_F(ProgramBusTest, startsWhileTheAccessibilityBusIsSuspended)
{
    makeAccessibilityBus();
    pid_t daemon = 0;
    {
        BusConnection accessibility(m_accessibilityAddress);
        daemon = processOf(accessibility, "org.freedesktop.DBus");
    }
    const SuspendedProcess suspended(daemon);
    expectToWork(*startOnDisplay({"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"}));
}

TEST_F(ProgramBusTest, startsWhileTheLauncherOfTheAccessibilityBusIsSuspended)
{
    makeAccessibilityBus();
    m_launcher->sendSignal(SIGSTOP);
    const auto program = startOnDisplay();
    expectToWork(*program);
    EXPECT_NE(program->complaints().find("org.a11y.Bus does not answer"), std::string::npos);
}

TEST_F(ProgramBusTest, aSecondStartEndsWithoutAskingForAccessibility)
{
    makeAccessibilityBus();
    const auto first = startOnDisplay();
    ASSERT_TRUE(waitForLog(*first, "content painted")) << first->complaints();
    m_launcher->sendSignal(SIGSTOP);
    const auto second = startOnDisplay();
    EXPECT_EQ(statusOf(*second), 0);
    EXPECT_EQ(second->complaints().find("accessibility"), std::string::npos)
        << second->complaints();
    m_launcher->sendSignal(SIGCONT);
    expectToWork(*first);
}

TEST_F(ProgramBusTest, aSecondStartComplainsOfAFirstThatHangsWithoutAccessibilityIfNeedBe)
{
    makeAccessibilityBus();
    const auto first = startOnDisplay();
    ASSERT_TRUE(waitForLog(*first, "content painted")) << first->complaints();
    first->sendSignal(SIGSTOP);
    m_launcher->sendSignal(SIGSTOP);
    const auto second = startOnDisplay();
    ASSERT_TRUE(waitForLog(*second, "already running")) << second->complaints();
    const std::string log = second->complaints();
    const std::size_t decision = log.find("the instance that is running does not answer");
    ASSERT_NE(decision, std::string::npos) << log;
    EXPECT_GT(log.find("org.a11y.Bus does not answer"), decision) << log;
    second->sendSignal(SIGTERM);
    EXPECT_EQ(statusOf(*second), 1) << second->complaints();
    m_launcher->sendSignal(SIGCONT);
    first->sendSignal(SIGCONT);
    expectToWork(*first);
}

TEST_F(ProgramBusTest, startsWhileTheRegistryOfTheAccessibilityBusIsSuspended)
{
    makeAccessibilityBus();
    BusConnection accessibility(m_accessibilityAddress);
    (void)answerOf<uint>(accessibility, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                         "org.freedesktop.DBus", "StartServiceByName",
                         {QStringLiteral("org.a11y.atspi.Registry"), 0U});
    const SuspendedProcess suspended(processOf(accessibility, "org.a11y.atspi.Registry"));
    expectToWork(*startOnDisplay({"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"}));
}

} // namespace
} // namespace tessaly
