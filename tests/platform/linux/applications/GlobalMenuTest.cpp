#include "platform/linux/applications/GlobalMenu.hpp"

#include "tests/platform/linux/BusConnection.hpp"
#include "tests/platform/linux/ManagedDisplay.hpp"
#include "tests/platform/linux/PrivateBus.hpp"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QDebug>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// A desktop's menu bar, on a thread of its own since Qt waits for its answers.
class MenuRegistrar {
public:
    struct Menu {
        unsigned window = 0;
        QString service;
        QString path;
    };

    MenuRegistrar() : m_bus(PrivateBus::address()), m_object(std::make_unique<Object>(*this))
    {
        m_object->moveToThread(&m_thread);
        m_thread.start();
        if (!m_bus->registerVirtualObject(u"/com/canonical/AppMenu/Registrar"_s, m_object.get()) ||
            !m_bus->registerService(u"com.canonical.AppMenu.Registrar"_s)) {
            throw std::runtime_error("there is a menu bar already");
        }
    }
    ~MenuRegistrar()
    {
        m_bus->unregisterObject(u"/com/canonical/AppMenu/Registrar"_s);
        m_thread.quit();
        m_thread.wait();
    }
    Q_DISABLE_COPY_MOVE(MenuRegistrar)

    [[nodiscard]] std::vector<Menu> menus()
    {
        const std::scoped_lock lock(m_mutex);
        return m_menus;
    }

    /// The titles in a menu, and in those of its items that the program sends along.
    [[nodiscard]] QString layoutOf(const Menu &menu)
    {
        QDBusMessage question = QDBusMessage::createMethodCall(
            menu.service, menu.path, u"com.canonical.dbusmenu"_s, u"GetLayout"_s);
        question << 0 << -1 << QStringList{};
        const QDBusPendingCall call = m_bus->asyncCall(question);
        EXPECT_TRUE(QTest::qWaitFor([&] { return call.isFinished(); }));
        QString text;
        QDebug(&text) << call.reply();
        return text;
    }

private:
    class Object final : public QDBusVirtualObject {
    public:
        explicit Object(MenuRegistrar &registrar) : m_registrar(registrar) {}
        QString introspect(const QString & /*path*/) const override { return {}; }
        bool handleMessage(const QDBusMessage &message, const QDBusConnection & /*bus*/) override
        {
            if (message.member() == "RegisterWindow"_L1) {
                const std::scoped_lock lock(m_registrar.m_mutex);
                m_registrar.m_menus.push_back(
                    {message.arguments().at(0).toUInt(), message.service(),
                     message.arguments().at(1).value<QDBusObjectPath>().path()});
            }
            m_registrar.m_bus->send(message.createReply());
            return true;
        }

    private:
        MenuRegistrar &m_registrar;
    };

    std::mutex m_mutex;
    std::vector<Menu> m_menus;
    BusConnection m_bus;
    QThread m_thread;
    std::unique_ptr<QDBusVirtualObject> m_object; ///< lives in the thread
};

class GlobalMenuTest : public testing::Test {
protected:
    void SetUp() override
    {
        const std::string missing =
            PrivateBus::isInstalled() ? ManagedDisplay::missing() : "dbus-daemon";
        if (!missing.empty()) {
            GTEST_SKIP() << "needs " << missing;
        }
        m_bus = std::make_unique<PrivateBus>();
        m_menu.addAction(u"Item"_s);
        m_window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_window));
    }
    [[nodiscard]] QMenuBar *menuBar() const { return m_window.findChild<QMenuBar *>(); }

    std::unique_ptr<PrivateBus> m_bus;
    QWidget m_window;
    QMenu m_menu;
};

TEST_F(GlobalMenuTest, isShownByTheDesktop)
{
    MenuRegistrar desktop;
    const GlobalMenu shown(m_window, m_menu, u"Name"_s, PrivateBus::address());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !desktop.menus().empty(); }));
    EXPECT_EQ(desktop.menus()[0].window, m_window.winId());
    ASSERT_TRUE(QTest::qWaitFor([&] { return menuBar() != nullptr; }));
    EXPECT_FALSE(menuBar()->isVisible()) << "not in the window as well";
    const QString layout = desktop.layoutOf(desktop.menus()[0]);
    EXPECT_TRUE(layout.contains(u"Name"_s)) << qPrintable(layout);
    EXPECT_TRUE(layout.contains(u"Item"_s)) << qPrintable(layout);
}

TEST_F(GlobalMenuTest, nothingChangesOnADesktopWithout)
{
    const GlobalMenu shown(m_window, m_menu, u"Name"_s, PrivateBus::address());
    BusConnection bus(PrivateBus::address()); // asks later, and so is answered later
    const QDBusPendingCall later = bus->asyncCall(BusLink::callOfBus("ListNames"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return later.isFinished(); }));
    QCoreApplication::processEvents();
    EXPECT_EQ(menuBar(), nullptr);
    EXPECT_TRUE(m_menu.title().isEmpty());
}

TEST_F(GlobalMenuTest, nothingChangesWithoutABus)
{
    const GlobalMenu shown(m_window, m_menu, u"Name"_s, "unix:path=/nonexistent");
    QCoreApplication::processEvents();
    EXPECT_EQ(menuBar(), nullptr);
}

TEST_F(GlobalMenuTest, windowAndMenuMayBeDestroyedFirst)
{
    MenuRegistrar desktop;
    auto window = std::make_unique<QWidget>();
    auto menu = std::make_unique<QMenu>();
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    const GlobalMenu shown(*window, *menu, u"Name"_s, PrivateBus::address());
    menu.reset();
    window.reset();
    const GlobalMenu other(m_window, m_menu, u"Name"_s, PrivateBus::address());
    ASSERT_TRUE(QTest::qWaitFor([&] { return menuBar() != nullptr; }));
    EXPECT_EQ(desktop.menus().size(), 1U);
}

} // namespace
} // namespace tessaly

int main(int argumentCount, char **arguments)
{
    testing::InitGoogleTest(&argumentCount, arguments);
    using tessaly::ManagedDisplay;
    const tessaly::SessionBusPlace place;
    std::optional<ManagedDisplay> display;
    // Neither a list of the tests nor tests that are skipped need one.
    if (testing::GTEST_FLAG(list_tests) || !ManagedDisplay::missing().empty()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    } else {
        display.emplace();
    }
    const QApplication application(argumentCount, arguments);
    return RUN_ALL_TESTS();
}
