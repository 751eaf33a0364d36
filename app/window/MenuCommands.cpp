#include "app/window/MenuCommands.hpp"

#include "app/controls/alerts/WindowSheet.hpp"
#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/tables/RowActions.hpp"
#include "app/window/KORVENWindowController.hpp"
#include "app/window/VendorUrls.hpp"
#include "drives/KORVENDriveViewController.hpp"
#include "history/KORVENHistoryViewController.hpp"
#include "screens/KORVENHomeViewController.hpp"
#include "screens/KORVENScanViewController.hpp"

#include <QAction>

#include <array>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace tessaly {

using Controller = KORVENWindowController;
using Item = ApplicationMenu::Item;

namespace {

/// The links whose addresses no vendor has set.
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

} // namespace

MenuCommands::MenuCommands(KORVENWindowController &controller)
    : m_controller(controller), m_menu([this] { return state(); }, unsetLinks())
{
    connectWindowItems();
    connectScreenItems();
}

void MenuCommands::connectWindowItems()
{
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
    connect(&m_menu.action(Item::quit), &QAction::triggered, &m_controller.mainWindow(),
            &QWidget::close);
    QAction &diskUtility = m_menu.action(Item::diskUtility);
    diskUtility.setVisible(false); // until it is known that there is something to launch
    connect(&m_controller.dvc(), &KORVENDriveViewController::diskUtilityLookedFor, &diskUtility,
            &QAction::setVisible);
}

void MenuCommands::connectScreenItems()
{
    connect(&m_menu.action(Item::refreshDrives), &QAction::triggered, this,
            &MenuCommands::refreshDrives);
    connect(&m_menu.action(Item::back), &QAction::triggered, this, &MenuCommands::goBack);
    connect(&m_menu.action(Item::sort), &QAction::triggered, this, &MenuCommands::sort);
    for (const auto &[item, page] : std::initializer_list<std::pair<Item, int>>{
             {Item::goToDrives, Controller::drivesPage},
             {Item::goToHome, Controller::homePage},
             {Item::goToScan, Controller::scanPage},
             {Item::goToHistory, Controller::historyPage}}) {
        connect(&m_menu.action(item), &QAction::triggered, this,
                [this, page = page] { m_controller.selectPage(page); });
    }
    using Act = void (RowActions::*)();
    for (const auto &[item, act] : std::initializer_list<std::pair<Item, Act>>{
             {Item::quickLook, &RowActions::showQuickLook},
             {Item::showInFileManager, &RowActions::showInFinder},
             {Item::showInfo, &RowActions::showInfo}}) {
        connect(&m_menu.action(item), &QAction::triggered, this,
                [this, act = act] { actOnSelectedRow(act); });
    }
}

ApplicationMenu::State MenuCommands::state() const
{
    const ResultViewController *results = shownResults();
    const RowActions *rows = shownRows();
    return {.isBlocked = WindowSheet::openOn(m_controller.mainWindow()) != nullptr,
            .isFolderScanRunning = m_controller.avc().isScanRunningNow(),
            .isHomeScanRunning = m_controller.hvc().isScanRunningNow(),
            .canGoBack = results != nullptr && results->canGoBack(),
            .canSort = results == nullptr || !results->isScanRunningNow(),
            .hasSelectedRow = rows != nullptr && rows->hasSelectedRow(),
            .canQuickLook = rows != nullptr && rows->canShowQuickLook()};
}

ResultViewController *MenuCommands::shownResults() const
{
    switch (m_controller.selectedPage()) {
    case Controller::homePage:
        return &m_controller.hvc();
    case Controller::scanPage:
        return &m_controller.avc();
    default:
        return nullptr;
    }
}

RowActions *MenuCommands::shownRows() const
{
    if (ResultViewController *results = shownResults()) {
        return results->rowActions();
    }
    const std::array<QObject *, Controller::pageCount> screens{
        &m_controller.dvc(), &m_controller.hvc(), &m_controller.avc(), &m_controller.lvc()};
    return dynamic_cast<RowActions *>(
        screens.at(static_cast<std::size_t>(m_controller.selectedPage())));
}

void MenuCommands::refreshDrives()
{
    m_controller.selectPage(Controller::drivesPage);
    m_controller.dvc().refreshClicked();
}

void MenuCommands::goBack()
{
    if (ResultViewController *results = shownResults()) {
        results->drillUpOneLevel();
    }
}

void MenuCommands::sort()
{
    if (ResultViewController *results = shownResults()) {
        results->sortClicked();
    } else if (m_controller.selectedPage() == Controller::drivesPage) {
        m_controller.dvc().sortClicked();
    } else {
        m_controller.lvc().sortClicked();
    }
}

void MenuCommands::actOnSelectedRow(void (RowActions::*act)())
{
    if (RowActions *rows = shownRows()) {
        (rows->*act)();
    }
}

} // namespace tessaly
