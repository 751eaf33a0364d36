// The program.

#include "app/controls/accessibility/AccessibleControls.hpp"
#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/theme/Theme.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/window/ApplicationMenu.hpp"
#include "app/window/BringToFront.hpp"
#include "app/window/CommandLine.hpp"
#include "app/window/GuardedApplication.hpp"
#include "app/window/KORVENWindowController.hpp"
#include "app/window/ProgramVersion.hpp"
#include "app/window/ShutdownWatchdog.hpp"
#include "app/window/TranslationLoader.hpp"
#include "drives/UnmountThreads.hpp"
#include "engine/archive/AtomicFile.hpp"
#include "platform/ProgramIdentity.hpp"
#include "platform/background/ChildProgram.hpp"
#include "platform/linux/applications/GlobalMenu.hpp"
#include "platform/linux/applications/LinuxApplicationLauncher.hpp"
#include "platform/linux/applications/LinuxUrlOpener.hpp"
#include "platform/linux/bus/BusAddresses.hpp"
#include "platform/linux/bus/QtSessionBus.hpp"
#include "platform/linux/files/LinuxFileManager.hpp"
#include "platform/linux/files/LoadedPreviewPanels.hpp"
#include "platform/linux/files/QtFolderChooser.hpp"
#include "platform/linux/notifications/LinuxNotifier.hpp"
#include "platform/linux/process/CrashLog.hpp"
#include "platform/linux/process/IcuDateTexts.hpp"
#include "platform/linux/process/LinuxSystemRelease.hpp"
#include "platform/linux/process/ProgramLog.hpp"
#include "platform/linux/process/SingleInstance.hpp"
#include "platform/linux/process/TerminationSignals.hpp"
#include "platform/linux/storage/LinuxDocumentsFolder.hpp"
#include "platform/linux/storage/LinuxFolderBookmarks.hpp"
#include "platform/linux/storage/LinuxSettingsStore.hpp"
#include "platform/linux/storage/LinuxUserAccount.hpp"
#include "platform/linux/volumes/LinuxVolumeService.hpp"
#include "resources/Artwork.hpp"

#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>

using namespace tessaly;
using namespace Qt::StringLiterals;

namespace {

using Clock = std::chrono::steady_clock;

/// For the accessibility bus, when a second start has to report that the program runs already.
constexpr std::chrono::seconds accessibilityTimeoutOfComplaint{2};
/// For unmounts that are still running when the window has closed.
constexpr std::chrono::seconds unmountTimeout{2};
/// For the whole shutdown: long enough to write a completed scan to a slow disk.
constexpr std::chrono::seconds endTimeout{30};

/// What the program asks of the desktop. Members are destroyed before those that they use.
struct LinuxServices {
    LinuxSettingsStore settings;
    LinuxFolderBookmarks bookmarks;
    LinuxSystemRelease release;
    LinuxNotifier notifier;
    IcuDateTexts dates;
    LoadedPreviewPanels previewPanels{LoadedPreviewPanels::modulePathOfProgram(), settings};
    LinuxFileManager fileManager{dates};
    QtFolderChooser folderChooser;
    LinuxUserAccount account;
    LinuxVolumeService volumes;
    LinuxApplicationLauncher applications;
    LinuxUrlOpener urls;

    [[nodiscard]] Services with(DocumentsFolder &documents)
    {
        return {settings,    bookmarks,     documents, release, notifier,     dates, previewPanels,
                fileManager, folderChooser, account,   volumes, applications, urls};
    }
};

/// The names under which the desktop knows the program.
void nameApplication()
{
    QApplication::setApplicationName(u"tessaly"_s);
    QApplication::setApplicationDisplayName(u"Tessaly"_s);
    QApplication::setApplicationVersion(QString::fromUtf8(programVersion()));
    QApplication::setDesktopFileName(QString::fromLatin1(programId));
}

/// Timeouts for a start that has already waited for the bus. A bus that did not answer is not
/// waited for again. A second start, with its message, takes no longer than Timeouts::claim in
/// total.
SingleInstance::Timeouts timeoutsAfter(const QtSessionBus &bus, Clock::duration waited)
{
    SingleInstance::Timeouts timeouts;
    if (bus.state() == QtSessionBus::State::silent) {
        timeouts.bus = std::chrono::milliseconds(0);
    }
    timeouts.claim -= accessibilityTimeoutOfComplaint +
                      std::chrono::duration_cast<std::chrono::milliseconds>(waited);
    return timeouts;
}

/// Has to happen before the first widget is created.
void prepareWidgets(const QtSessionBus &bus, std::chrono::milliseconds accessibilityTimeout)
{
    applyTheme();
    installAccessibleControls();
    bus.connectAccessibility(accessibilityTimeout);
}

/// Shows the window until the program ends. Requires: this is the only instance.
/// Returns: the exit status.
int runWindow(QApplication &application, LinuxDocumentsFolder &documents, SingleInstance &instance)
{
    LinuxServices desktop;
    const Services services = desktop.with(documents);
    KORVENAppDelegate delegate(services);
    // What killed runs have left. As the only instance, this cannot remove the file of another one;
    // running writers hold a lock anyway.
    archive::AtomicFile::removeLeftovers(documents.path());

    auto controller = std::make_unique<KORVENWindowController>(services);
    delegate.setWindowController(controller.get());
    std::optional<GlobalMenu> globalMenu;
    controller->showWindow([&] {
        // Runs once the empty window has been painted: fonts and icons took a good part of the time
        // until then.
        applyFont(application);
        application.setWindowIcon(applicationIcon());
        controller->awakeFromNib();
        delegate.applicationDidFinishLaunching();
        // Last: it needs the menu, and a window that is on the screen.
        globalMenu.emplace(controller->mainWindow(), controller->applicationMenu(),
                           QApplication::applicationDisplayName(), sessionBusAddress());
    });
    // Only now is there a window to show; the event loop below delivers the requests.
    instance.setActivated([&controller] { bringToFront(controller->mainWindow()); });
    QApplication::setQuitOnLastWindowClosed(
        KORVENAppDelegate::applicationShouldTerminateAfterLastWindowClosed());
    const int status = QApplication::exec();
    delegate.applicationWillTerminate();
    // In this order: first nothing leads to the window any more, then what the user has changed is
    // stored, and only then may something take long. The watchdog requires that all that has to be
    // stored is stored before it.
    instance.setActivated({});
    delegate.setWindowController(nullptr);
    desktop.settings.flush();
    const ShutdownWatchdog watch(endTimeout, status, [&instance] { instance.release(); });
    controller.reset(); // ends scans, and keeps what they have completed
    desktop.settings.flush();
    if (!waitForUnmounts(unmountTimeout)) {
        instance.release();
        std::_Exit(status); // their threads use the services, which must not be destroyed
    }
    return status;
}

} // namespace

int main(int argumentCount, char **arguments)
{
    if (const auto status = CommandLine::answer(argumentCount, arguments)) {
        return *status;
    }
    keepEnvironmentForChildren(); // while there is one thread
    // Both as early as can be, so that they see what goes wrong below.
    ProgramLog::install();
    CrashLog::install("tessaly", programVersion());
    // Before Qt starts: it reads the activation token of this start and removes it from the
    // environment.
    const QVariantMap launchData = ApplicationObject::platformDataOfThisStart();
    // The other backend of Qt's players needs more than is installed with it.
    if (!qEnvironmentVariableIsSet("QT_MEDIA_BACKEND")) {
        qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    }
    const Clock::time_point start = Clock::now();
    // Before the application: platform themes may use the bus, and a silent one would block Qt
    // without a timeout.
    const QtSessionBus qtSessionBus;
    const Clock::duration waited = Clock::now() - start;
    GuardedApplication application(argumentCount, arguments);
    // Needs the application, and comes before the first event loop, which may be that of a second
    // start's complaint.
    const TerminationSignals terminationSignals;
    nameApplication();
    const TranslationLoader translations;
    // After the application, which has removed Qt's own options from the arguments.
    if (const auto status = CommandLine::refuse()) {
        return *status;
    }

    // Up to claim() nothing of the user's is written: another instance may be at it.
    LinuxDocumentsFolder documents;
    SingleInstance instance(documents.path(), launchData, timeoutsAfter(qtSessionBus, waited));
    if (instance.claim() != SingleInstance::Outcome::first) {
        return instance.endSecondStart([&](const QString &complaint) {
            prepareWidgets(qtSessionBus, accessibilityTimeoutOfComplaint);
            SingleInstance::showComplaint(complaint);
        });
    }
    // Not earlier: a second start shows no widget, and would wait for an accessibility bus in vain.
    prepareWidgets(qtSessionBus, QtSessionBus::usualAccessibilityTimeout);

    return runWindow(application, documents, instance);
}
