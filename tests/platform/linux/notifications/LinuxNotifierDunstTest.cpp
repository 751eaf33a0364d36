// The notifier with a notification service that people use.

#include "platform/linux/notifications/LinuxNotifier.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/BusConnection.hpp"
#include "tests/platform/linux/PrivateBus.hpp"
#include "tests/platform/linux/StartedProgram.hpp"
#include "tests/platform/linux/VirtualDisplay.hpp"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace tessaly {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString dunst = QStringLiteral("org.dunstproject.cmd0");

/// A notification as dunst remembers it.
struct Shown {
    int id = 0;
    std::string application;
    std::string icon;
    std::string title;
    std::string text;
};

/// A display that nobody sees, a bus, and dunst.
class DunstTest : public testing::Test {
protected:
    void SetUp() override
    {
        for (const char *program : {"dbus-daemon", "Xvfb", "dunst"}) {
            if (!StartedProgram::isInstalled(program)) {
                GTEST_SKIP() << "needs " << program;
            }
        }
        std::ofstream(m_folder.path("dunstrc")) << "[global]\nmarkup = full\n";
        m_display = std::make_unique<VirtualDisplay>();
    }

    void startDunst()
    {
        m_bus = std::make_unique<PrivateBus>();
        m_dunst = std::make_unique<StartedProgram>(dunstWords());
        ASSERT_TRUE(PrivateBus::waitForOwner(service.toStdString(), *m_dunst))
            << m_dunst->complaints();
        m_connection = std::make_unique<BusConnection>(PrivateBus::address());
    }

    /// The bus starts dunst when somebody wants something of it.
    void letTheBusStartDunst()
    {
        std::string command;
        for (const std::string &word : dunstWords()) {
            command += word + ' ';
        }
        m_bus = std::make_unique<PrivateBus>(
            std::vector<PrivateBus::Service>{{service.toStdString(), command}});
        m_connection = std::make_unique<BusConnection>(PrivateBus::address());
    }

    [[nodiscard]] std::vector<std::string> dunstWords() const
    {
        return {"/usr/bin/env",
                "--unset=WAYLAND_DISPLAY",
                "DISPLAY=" + m_display->name(),
                "HOME=" + m_folder.path(),
                "XDG_CACHE_HOME=" + m_folder.path(),
                "dunst",
                "-config",
                m_folder.path("dunstrc")};
    }

    /// Throws when there is none, which fails the test.
    [[nodiscard]] QVariant answer(const QString &interface, const QString &method,
                                  const QVariantList &arguments = {})
    {
        QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
        call.setArguments(arguments);
        const QDBusMessage reply = (*m_connection)->call(call);
        if (reply.type() != QDBusMessage::ReplyMessage) {
            throw std::runtime_error(reply.errorMessage().toStdString());
        }
        return reply.arguments().value(0);
    }

    [[nodiscard]] unsigned number(const char *name)
    {
        return qvariant_cast<QDBusVariant>(answer(QStringLiteral("org.freedesktop.DBus.Properties"),
                                                  QStringLiteral("Get"),
                                                  {dunst, QString::fromLatin1(name)}))
            .variant()
            .toUInt();
    }

    /// Waits until dunst shows, or has in store, that many.
    void waitForNotifications(unsigned count)
    {
        while (number("displayedLength") + number("waitingLength") < count) {
            std::this_thread::yield(); // dunst tells nobody; without it, number() fails
        }
    }

    /// Closes all, so that they become history, and returns that in the order of time.
    [[nodiscard]] std::vector<Shown> closeAndList()
    {
        (void)answer(dunst, QStringLiteral("NotificationCloseAll"));
        std::vector<Shown> all;
        const auto list =
            answer(dunst, QStringLiteral("NotificationListHistory")).value<QDBusArgument>();
        list.beginArray();
        while (!list.atEnd()) {
            const auto entry = qdbus_cast<QVariantMap>(list);
            all.insert(all.begin(),
                       {entry.value("id").toInt(), entry.value("appname").toString().toStdString(),
                        entry.value("icon_path").toString().toStdString(),
                        entry.value("summary").toString().toStdString(),
                        entry.value("body").toString().toStdString()});
        }
        list.endArray();
        return all;
    }

    TemporaryFolder m_folder;
    std::unique_ptr<VirtualDisplay> m_display;
    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<StartedProgram> m_dunst;
    std::unique_ptr<BusConnection> m_connection;
};

TEST_F(DunstTest, showsWhatIsPosted)
{
    ASSERT_NO_FATAL_FAILURE(startDunst());
    LinuxNotifier notifier;
    notifier.post({"Scan <finished>", "R&D <b>3</b> s", Notification::Sound::complete, "scan"});
    waitForNotifications(1);
    const std::vector<Shown> shown = closeAndList();
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown[0].application, "Tessaly");
    EXPECT_EQ(shown[0].title, "Scan <finished>");
    EXPECT_EQ(shown[0].text, "R&amp;D &lt;b&gt;3&lt;/b&gt; s");
}

TEST_F(DunstTest, replacesTheLastOneOfTheSameOrigin)
{
    ASSERT_NO_FATAL_FAILURE(startDunst());
    LinuxNotifier notifier;
    notifier.post({"Scan", "a1", Notification::Sound::silent, "a"});
    notifier.post({"Scan", "a2", Notification::Sound::message, "a"});
    notifier.post({"Scan", "b", Notification::Sound::silent, "b"});
    waitForNotifications(2);
    const std::vector<Shown> shown = closeAndList();
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_EQ(shown[0].text, "a2");
    EXPECT_EQ(shown[1].text, "b");
}

TEST_F(DunstTest, showsANewOneAfterTheLastWasClosed)
{
    ASSERT_NO_FATAL_FAILURE(startDunst());
    LinuxNotifier notifier;
    notifier.post({"Scan", "a1", Notification::Sound::silent, "a"});
    waitForNotifications(1);
    (void)answer(dunst, QStringLiteral("NotificationCloseAll"));
    notifier.post({"Scan", "b", Notification::Sound::silent, "b"}); // answered after the news
    notifier.post({"Scan", "a2", Notification::Sound::silent, "a"});
    waitForNotifications(2);
    const std::vector<Shown> shown = closeAndList();
    ASSERT_EQ(shown.size(), 3U);
    EXPECT_EQ(shown[0].text, "a1");
    EXPECT_EQ(shown[2].text, "a2");
    EXPECT_NE(shown[0].id, shown[2].id);
}

TEST_F(DunstTest, isStartedForANotification)
{
    letTheBusStartDunst();
    LinuxNotifier notifier;
    notifier.post({"Scan", "a", Notification::Sound::silent, "a"});
    waitForNotifications(1);
    const std::vector<Shown> shown = closeAndList();
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown[0].text, "a");
}

} // namespace

} // namespace tessaly
