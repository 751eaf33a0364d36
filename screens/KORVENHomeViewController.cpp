#include "screens/KORVENHomeViewController.hpp"

#include "app/controls/alerts/MessageAlert.hpp"
#include "app/controls/tables/IconView.hpp"
#include "app/controls/text/NameText.hpp"
#include "app/controls/theme/Theme.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/SettingsKeys.hpp"
#include "engine/archive/FileCreationDate.hpp"
#include "engine/archive/LastScanFile.hpp"
#include "engine/tree/FilePath.hpp"
#include "platform/DocumentsFolder.hpp"
#include "platform/FileUrl.hpp"
#include "platform/FolderBookmarks.hpp"
#include "platform/FolderChooser.hpp"
#include "platform/SettingsStore.hpp"
#include "platform/StoredBookmark.hpp"
#include "platform/UserAccount.hpp"
#include "resources/Artwork.hpp"
#include "screens/KORVENQuicklookController.hpp"

#include <QLabel>
#include <QLoggingCategory>
#include <QStackedWidget>

#include <string_view>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(homeLog, "tessaly.screens.home")

// Case does not matter here. On Linux this may accept another folder than the home folder, which is
// kept on purpose.
bool isSamePath(const std::string &one, const std::string &other)
{
    return textOfName(one).compare(textOfName(other), Qt::CaseInsensitive) == 0;
}

/// Whether the path is that of the user's home folder, in letters of any case.
bool isHomeFolder(const std::string &path, const UserAccount &account)
{
    return isSamePath(path, account.usersFolder() + '/' + account.loginName()) ||
           isSamePath(path, account.homeFolder());
}

// Below the root folder this gives two slashes, which the scan screen avoids. It is required, and
// the system reads them as one.
std::string homePathBelow(const std::string &folder, std::string_view name)
{
    return folder + '/' + std::string(name);
}

QString homeTrashImage(const KORVENFolderObject &row)
{
    // Signed, as it has always been compared: what reads as -1 is an empty trash.
    return static_cast<std::int64_t>(row.folderSizeAsNumber()) > 0 ? u"trash_full.png"_s
                                                                   : u"trash.png"_s;
}

} // namespace

KORVENHomeViewController::KORVENHomeViewController(const Services &services, const QString &nibName)
    : ResultViewController(
          services,
          {nibName, u"KORVENFolderCell"_s, {&homePathBelow, &tree::parentPath}, &homeTrashImage}),
      m_tabView(find<QStackedWidget>("tabView"))
{
    const QString homeImage = u"home_large.png"_s;
    find<IconView>("setupIcon").setImage(artworkIcon(homeImage), homeImage);
    makeTitle(find<QLabel>("setupTitle"));
    wire({{"continueButton", [this] { continueClicked(); }}});
}

KORVENHomeViewController::~KORVENHomeViewController()
{
    // Here and not in the base class alone: the workers call overrides of this class.
    stopWorkers();
}

void KORVENHomeViewController::showStart()
{
    // Kept for startLoading(), which comes later: a folder that the user chooses in between has no
    // last scan to load.
    m_wasSetUpAtStart = !checkSetupMode();
    if (m_wasSetUpAtStart) {
        showResultsPage();
    } else {
        m_tabView.setCurrentIndex(setupPage);
    }
}

void KORVENHomeViewController::startLoading()
{
    if (m_wasSetUpAtStart) {
        ResultViewController::startLoading();
    }
}

bool KORVENHomeViewController::checkSetupMode()
{
    const auto bookmark = services().settings.data(settings_key::homeFolder);
    // A bookmark that does not resolve, since the folder is no longer there, counts as none.
    m_homeFolder = bookmark ? services().bookmarks.resolve(*bookmark) : std::nullopt;
    return !m_homeFolder;
}

std::string KORVENHomeViewController::homePath() const
{
    const auto path = m_homeFolder ? pathOfFileUrl(*m_homeFolder) : std::nullopt;
    return path ? tree::cleanPath(*path) : std::string();
}

void KORVENHomeViewController::showResultsPage()
{
    folderNameField()->setText(textOfName(homePath()));
    showTotal({});
    showEmptyState(tr("Home folder not scanned yet"),
                   tr("Scan it to see what takes up its space."));
    m_tabView.setCurrentIndex(resultsPage);
}

void KORVENHomeViewController::continueClicked()
{
    services().folderChooser.chooseFolder(
        *view()->window(), {services().account.homeFolder(), tr("Save").toStdString()},
        // The dialog does not block the program, so the screen may be destroyed before it is
        // closed.
        [guard = QPointer(this)](const std::optional<std::string> &folder) {
            if (guard && folder) {
                guard->folderWasChosen(tree::cleanPath(*folder));
            }
        });
}

void KORVENHomeViewController::folderWasChosen(const std::string &folder)
{
    const auto url = fileUrl(folder);
    if (!url || !isHomeFolder(folder, services().account)) {
        setupAlert();
        return;
    }
    storeBookmark(*url, settings_key::homeFolder, services().bookmarks, services().settings);
    m_homeFolder = url;
    showResultsPage();
    // The bookmark is resolved again as the next start will do it. If it could not be stored, there
    // is no home folder, and scanClicked() says so.
    checkSetupMode();
}

void KORVENHomeViewController::setupAlert()
{
    MessageAlert::begin(
        *view()->window(), tr("Tessaly Message"),
        tr("The folder was not your home folder.\nPlease select your home folder again."),
        [guard = QPointer(this)](int returnCode) {
            if (guard) {
                guard->alertDidEnd(returnCode);
            }
        });
}

void KORVENHomeViewController::alertDidEnd(int /*returnCode*/) {}

void KORVENHomeViewController::scanClicked()
{
    if (isScanRunningNow()) {
        return;
    }
    if (!m_homeFolder) {
        // Its bookmark could not be kept. An empty scan must not replace the last one.
        showEmptyState(tr("The home folder cannot be reached"),
                       tr("Choose it again when Tessaly starts the next time."));
        return;
    }
    startScan(homePath(), m_homeFolder);
}

ScanResult KORVENHomeViewController::completedScan(const FinishedScan &scan)
{
    // The file is written before the user is told. The scan screen does it the other way round;
    // both orders are kept on purpose.
    archive::LastScanFile lastScan(itemArchivePath());
    const auto written = lastScan.replace(
        // A scan that could not open its folder is no reason to lose the last good one.
        scan.tree->root(), scan.rootProblem ? archive::LastScanFile::Former::kept
                                            : archive::LastScanFile::Former::deleted);
    KORVENAppDelegate::sharedDelegate().showCompletedNotification(tr("Home folders scan completed"),
                                                                  ScanScreen::home);

    ScanResult result = ScanResult::ofScan(scan);
    if (!written) {
        const std::string reason = written.error().text();
        qCWarning(homeLog, "The scan was not kept: %s", reason.c_str());
        result.notice = ScanResult::noticeOfLostScan(reason);
    }
    // The date shown is the creation date of the file, so that it is the same after a restart.
    // Without a file there is no date, and the screen goes on looking as if it scanned: an oddity
    // that is kept on purpose.
    const auto date = archive::fileCreationDate(lastScan.path());
    if (date) {
        result.dateText = formatDate(*date);
    } else {
        result.keepsScanningLook = true;
    }
    return result;
}

void KORVENHomeViewController::notifyCanceled()
{
    KORVENAppDelegate::sharedDelegate().showCanceledNotification(tr("Home folders scan canceled"),
                                                                 ScanScreen::home);
}

std::optional<ScanResult> KORVENHomeViewController::loadScanResults()
{
    const std::string path = itemArchivePath();
    // A process that was killed while it replaced the file has left the former one under another
    // name.
    archive::LastScanFile(path).putBack();
    const auto date = archive::fileCreationDate(path);
    if (!date) {
        return std::nullopt;
    }
    ScanResult result = ScanResult::ofFile(path);
    if (result.tree) {
        result.dateText = formatDate(*date);
    }
    return result;
}

void KORVENHomeViewController::resultWasShown(const ScanResult &result)
{
    // With a tree the model names its folder. Without one the field would stay as it was.
    if (!result.tree) {
        folderNameField()->setText(textOfName(homePath()));
    }
}

void KORVENHomeViewController::quickLookItem(std::string_view path)
{
    KORVENQuicklookController::sharedStore().quickLookItem(path, shownFileNames());
}

std::string KORVENHomeViewController::itemArchivePath() const
{
    return services().documents.path() + "/scanhome.archive";
}

} // namespace tessaly
