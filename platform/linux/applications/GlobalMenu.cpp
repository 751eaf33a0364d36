#include "platform/linux/applications/GlobalMenu.hpp"

#include <QDBusReply>
#include <QLoggingCategory>
#include <QMenuBar>

#include <chrono>
#include <utility>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(menuLog, "tessaly.menu")

// The answer is not urgent: without it the window keeps its own menu.
constexpr std::chrono::seconds busTimeout{5};
constexpr auto registrar = "com.canonical.AppMenu.Registrar";

} // namespace

GlobalMenu::GlobalMenu(QWidget &window, QMenu &menu, QString title, std::string busAddress)
    : m_window(&window), m_menu(&menu), m_title(std::move(title)),
      m_link(std::move(busAddress), QStringLiteral("menu"), this)
{
    m_link.open(
        [this](const QString &problem) {
            if (problem.isEmpty()) {
                askForMenuBar();
            }
        },
        busTimeout);
}

GlobalMenu::~GlobalMenu() = default;

void GlobalMenu::askForMenuBar()
{
    // Asks the bus and not the registrar: a call to the name would start a service for it.
    m_link.call(BusLink::callOfBus("NameHasOwner", {QLatin1String(registrar)}),
                [this](const QDBusReply<bool> &hasOwner) {
                    if (hasOwner.isValid() && hasOwner.value()) {
                        show();
                    }
                });
}

void GlobalMenu::show()
{
    // The bus answers later, and the window may be closed by then.
    if (m_window.isNull() || m_menu.isNull()) {
        return;
    }
    // The bar is the window's child, so it is destroyed with it.
    auto *bar = new QMenuBar(m_window);
    if (!bar->isNativeMenuBar()) { // what Qt has been told to leave alone, or a platform without
        delete bar;
        return;
    }
    m_menu->setTitle(m_title); // a popup menu has none so far, and the bar shows it
    bar->addMenu(m_menu);
    qCDebug(menuLog, "shown by the desktop");
}

} // namespace tessaly
