#include "app/window/ApplicationMenu.hpp"

#include <QAction>
#include <QKeyEvent>
#include <QKeySequence>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

ApplicationMenu::ApplicationMenu(StateReader readState, const QStringList &pageTitles,
                                 std::vector<Item> leftOut, QWidget *parent)
    : QMenu(parent), m_readState(std::move(readState)), m_leftOut(std::move(leftOut))
{
    setAccessibleName(tr("Menu"));
    addScreenItems(pageTitles);
    addSeparator();
    addWindowItems();
    addSeparator();
    addHelpItems();
    addSeparator();
    add(*this, Item::about, tr("&About Tessaly"));
    add(*this, Item::quit, tr("&Quit"), Qt::CTRL | Qt::Key_Q);
    connect(this, &QMenu::aboutToShow, this, &ApplicationMenu::update);
}

QAction *ApplicationMenu::add(QMenu &menu, const QString &title, const QKeySequence &key)
{
    QAction *action = menu.addAction(title);
    action->setShortcut(key);
    // The menu shows the key and no more: see handleKey().
    action->setShortcutContext(Qt::WidgetShortcut);
    // Some desktops move actions like "Quit" into a menu of their own.
    action->setMenuRole(QAction::NoRole);
    return action;
}

QAction *ApplicationMenu::add(QMenu &menu, Item item, const QString &title, const QKeySequence &key)
{
    QAction *action = add(menu, title, key);
    if (std::ranges::find(m_leftOut, item) != m_leftOut.end()) {
        // The action stays, without a place in the menu: connections and handleKey() need no
        // exception for it.
        menu.removeAction(action);
        action->setEnabled(false);
    }
    m_actions.at(static_cast<std::size_t>(item)) = action;
    return action;
}

void ApplicationMenu::addScreenItems(const QStringList &pageTitles)
{
    add(*this, Item::scanFolder, tr("Scan &Folder…"), Qt::CTRL | Qt::Key_O);
    add(*this, Item::scanHome, tr("Scan &Home"), Qt::CTRL | Qt::SHIFT | Qt::Key_H);
    add(*this, Item::refreshDrives, tr("&Refresh Drives"), Qt::Key_F5);
    addSeparator();
    add(*this, Item::back, tr("&Back"), Qt::ALT | Qt::Key_Left);
    add(*this, Item::sort, tr("Change &Sort Order"), Qt::CTRL | Qt::SHIFT | Qt::Key_S);
    QMenu &screens = *addMenu(tr("&Go To"));
    for (const QString &title : pageTitles) {
        const auto number = static_cast<Qt::Key>(Qt::Key_1 + m_pageActions.size());
        m_pageActions << add(screens, title, Qt::CTRL | number);
    }
    addSeparator();
    add(*this, Item::quickLook, tr("Quick &Look"), Qt::CTRL | Qt::Key_Y);
    add(*this, Item::showInFileManager, tr("Show in File &Manager"),
        Qt::CTRL | Qt::SHIFT | Qt::Key_O);
    add(*this, Item::showInfo, tr("Show &Info"), Qt::CTRL | Qt::Key_I);
}

void ApplicationMenu::addWindowItems()
{
    add(*this, Item::chooseHomeFolder, tr("&Choose Home Folder…"));
    add(*this, Item::removeHomeFolder, tr("Remo&ve Home Folder"));
    add(*this, Item::preferences, tr("&Preferences…"), Qt::CTRL | Qt::Key_Comma);
    add(*this, Item::fullScreen, tr("Enter Full Screen"), Qt::Key_F11)
        ->setObjectName(u"fullscreenMenuItem"_s);
}

void ApplicationMenu::addHelpItems()
{
    QMenu &tools = *addMenu(tr("&Tools"));
    add(tools, Item::diskUtility, tr("&Disk Utility"));
    add(tools, Item::fileManager, tr("&File Manager"));
    add(tools, Item::systemSettings, tr("&System Settings"));
    // Added only when something is in it: a vendor who has set no addresses leaves it empty.
    auto &help = *new QMenu(tr("H&elp"), this);
    add(help, Item::webHelp, tr("Tessaly &Help"), Qt::Key_F1);
    add(help, Item::website, tr("&Website"));
    add(help, Item::support, tr("&Support"));
    add(help, Item::storePage, tr("Software Sto&re Page"));
    help.addSeparator();
    add(help, Item::facebook, tr("Tessaly on &Facebook"));
    add(help, Item::twitter, tr("Tessaly on &Twitter"));
    add(help, Item::google, tr("Tessaly on &Google+"));
    const bool hasItems = !std::ranges::all_of(help.actions(), &QAction::isSeparator);
    if (hasItems) {
        addMenu(&help);
    }
}

void ApplicationMenu::update()
{
    const State state = m_readState();
    // A sheet covers the content. Its page must not change below it, and a second sheet must not
    // open.
    const bool isFree = !state.isBlocked;
    for (const auto &[item, isEnabled] : std::initializer_list<std::pair<Item, bool>>{
             {Item::scanFolder, !state.isFolderScanRunning},
             {Item::scanHome, !state.isHomeScanRunning},
             {Item::refreshDrives, true},
             {Item::back, state.canGoBack},
             {Item::sort, state.canSort},
             {Item::quickLook, state.canQuickLook},
             {Item::showInFileManager, state.hasSelectedRow},
             {Item::showInfo, state.hasSelectedRow},
             {Item::chooseHomeFolder, true},
             {Item::removeHomeFolder, true},
             {Item::preferences, true}}) {
        action(item).setEnabled(isFree && isEnabled);
    }
    for (QAction *action : m_pageActions) {
        action->setEnabled(isFree);
    }
}

bool ApplicationMenu::handleKey(const QKeyEvent &event)
{
    const QKeySequence key(QKeyCombination(event.modifiers() & ~Qt::KeypadModifier,
                                           static_cast<Qt::Key>(event.key())));
    for (QAction *action : m_pageActions + QList<QAction *>(m_actions.begin(), m_actions.end())) {
        if (!action->shortcut().isEmpty() && action->shortcut() == key) {
            // The state may have changed since the menu was last open.
            update();
            const bool isEnabled = action->isEnabled();
            action->trigger(); // does nothing while it is disabled
            return isEnabled;
        }
    }
    return false;
}

} // namespace tessaly
