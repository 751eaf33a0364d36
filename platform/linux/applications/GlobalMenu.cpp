#include "platform/linux/applications/GlobalMenu.hpp"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>
#include <QMenuBar>

#include <chrono>
#include <utility>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(menuLog, "tessaly.menu")

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
    const QDBusMessage question =
        BusLink::callOfBus("NameHasOwner", {QString::fromLatin1(registrar)});
    auto *answered = new QDBusPendingCallWatcher(m_link.bus().asyncCall(question), this);
    connect(answered, &QDBusPendingCallWatcher::finished, this, [this, answered] {
        answered->deleteLater();
        const QDBusPendingReply<bool> hasOwner = *answered;
        if (hasOwner.isValid() && hasOwner.value()) {
            show();
        }
    });
}

void GlobalMenu::show()
{
    if (m_window.isNull() || m_menu.isNull()) {
        return;
    }
    auto *bar = new QMenuBar(m_window);
    if (!bar->isNativeMenuBar()) { // what Qt has been told to leave alone, or a platform without
        delete bar;
        return;
    }
    m_menu->setTitle(m_title);
    bar->addMenu(m_menu);
    qCDebug(menuLog, "shown by the desktop");
}

} // namespace tessaly
