#include "app/window/MenuCommands.hpp"

#include "app/controls/alerts/WindowSheet.hpp"
#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/tables/RowActions.hpp"
#include "app/window/KORVENWindowController.hpp"
#include "app/window/Pages.hpp"
#include "app/window/VendorUrls.hpp"
#include "drives/KORVENDriveViewController.hpp"
#include "screens/KORVENHomeViewController.hpp"
#include "screens/KORVENScanViewController.hpp"

#include <QAction>

#include <initializer_list>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace tessaly {

using Controller = KORVENWindowController;
using Item = ApplicationMenu::Item;

namespace {

/// The links whose addresses no vendor has set.
/// A build of which the vendor has set nothing would otherwise offer seven items that lead to a
/// host that does not exist.
std::vector<Item> unsetLinks()
{
    std::vector<Item> unset;
    for (const auto &[item, address] : std::initializer_list<std::pair<Item, std::string>>{
             {Item::webHelp, vendorHelpPage()},
             {Item::website, vendorWebsite()},
             {Item::support, vendorSupportPage()},
             {Item::storePage, storePage(storeIdentifier())},
             {Item::facebook, vendorFacebookPage()},
             {Item::twitter, vendorTwitterPage()},
             {Item::google, vendorGooglePage()}}) {
        if (!isSetByVendor(address)) {
            unset.push_back(item);
        }
    }
    return unset;
}

QStringList titlesOf(const Pages &pages)
{
    QStringList titles;
    for (const Pages::Page &page : pages.all()) {
        titles << page.menuTitle;
    }
    return titles;
}

} // namespace

MenuCommands::MenuCommands(KORVENWindowController &controller)
    : m_controller(controller),
      // The menu asks for the state when it opens and when a key is pressed. Scans, sheets,
      // selections and levels all change it; keeping the items up to date would mean a signal from
      // each of them.
      m_menu([this] { return state(); }, titlesOf(controller.pages()), unsetLinks())
{
    connectWindowItems();
    connectScreenItems();
}

void MenuCommands::connectWindowItems()
{
    // A table, since these items only call the controller, which is also the context of the
    // connections, so that they end with it.
    using Command = void (Controller::*)();
    for (const auto &[item, command] : std::initializer_list<std::pair<Item, Command>>{
             {Item::scanFolder, &Controller::scanClicked},
             {Item::scanHome, &Controller::scanHomeClicked},
             {Item::chooseHomeFolder, &Controller::customHomeFolder},
             {Item::removeHomeFolder, &Controller::removeHomeFolder},
             {Item::preferences, &Controller::showPreferenceSheet},
             {Item::diskUtility, &Controller::openDiskUtility},
             {Item::fileManager, &Controller::openFinder},
             {Item::systemSettings, &Controller::openSystemPreferences},
             {Item::webHelp, &Controller::openWebHelp},
             {Item::website, &Controller::openUrlWebsite},
             {Item::support, &Controller::supportClicked},
             {Item::storePage, &Controller::openInAppStore},
             {Item::facebook, &Controller::openUrlFacebook},
             {Item::twitter, &Controller::openUrlTwitter},
             {Item::google, &Controller::googleClicked},
             {Item::about, &Controller::showAbout}}) {
        connect(&m_menu.action(item), &QAction::triggered, &m_controller, command);
    }
    // Quitting is closing the window: its placement is stored on that way, and main() ends the
    // event loop with the last window.
    connect(&m_menu.action(Item::quit), &QAction::triggered, &m_controller.mainWindow(),
            &QWidget::close);
    QAction &diskUtility = m_menu.action(Item::diskUtility);
    diskUtility.setVisible(false); // until it is known that there is something to launch
    // The drives screen looks for the program anyway, for a button of its own; a second search
    // would tell nothing new.
    connect(&m_controller.dvc(), &KORVENDriveViewController::diskUtilityLookedFor, &diskUtility,
            &QAction::setVisible);
}

void MenuCommands::connectScreenItems()
{
    connect(&m_menu.action(Item::refreshDrives), &QAction::triggered, this,
            &MenuCommands::refreshDrives);
    // The screen is looked up when the item is triggered: another page may be shown by then.
    connect(&m_menu.action(Item::back), &QAction::triggered, this,
            [this] { m_controller.shownScreen().goBack(); });
    connect(&m_menu.action(Item::sort), &QAction::triggered, this,
            [this] { m_controller.shownScreen().sortClicked(); });
    for (int page = 0; page < std::ssize(m_controller.pages().all()); ++page) {
        connect(&m_menu.pageAction(page), &QAction::triggered, this,
                [this, page] { m_controller.selectPage(page); });
    }
    using Act = void (RowActions::*)();
    for (const auto &[item, act] : std::initializer_list<std::pair<Item, Act>>{
             {Item::quickLook, &RowActions::showQuickLook},
             {Item::showInFileManager, &RowActions::showInFinder},
             {Item::showInfo, &RowActions::showInfo}}) {
        connect(&m_menu.action(item), &QAction::triggered, this,
                // `act = act`, since clang before 16 cannot capture a structured binding by its
                // name.
                [this, act = act] { actOnSelectedRow(act); });
    }
}

ApplicationMenu::State MenuCommands::state() const
{
    // The two scans are asked for whatever page is shown: a scan goes on while the user looks at
    // another page, and each screen runs one at a time.
    Screen &shown = m_controller.shownScreen();
    const RowActions *rows = shown.rowActions();
    return {.isBlocked = WindowSheet::openOn(m_controller.mainWindow()) != nullptr,
            .isFolderScanRunning = m_controller.avc().isScanRunningNow(),
            .isHomeScanRunning = m_controller.hvc().isScanRunningNow(),
            .canGoBack = shown.canGoBack(),
            .canSort = shown.canSort(),
            .hasSelectedRow = rows != nullptr && rows->hasSelectedRow(),
            .canQuickLook = rows != nullptr && rows->canShowQuickLook()};
}

void MenuCommands::refreshDrives()
{
    // F5 works on every page; the user should see what is refreshed.
    m_controller.selectPage(Controller::drivesPage);
    m_controller.dvc().refreshClicked();
}

void MenuCommands::actOnSelectedRow(void (RowActions::*act)())
{
    // Null on pages whose rows have no actions. Their items are disabled, but only as of the last
    // time that the menu asked for the state.
    if (RowActions *rows = m_controller.shownScreen().rowActions()) {
        (rows->*act)();
    }
}

} // namespace tessaly
