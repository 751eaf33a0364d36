// The program.

#include "app/controls/KORVENWindow.hpp"
#include "app/controls/Look.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/window/KORVENWindowController.hpp"
#include "engine/AtomicFile.hpp"
#include "platform/linux/IcuDateTexts.hpp"
#include "platform/linux/LinuxDocumentsFolder.hpp"
#include "platform/linux/LinuxFileManager.hpp"
#include "platform/linux/LinuxFolderBookmarks.hpp"
#include "platform/linux/LinuxNotifier.hpp"
#include "platform/linux/LinuxSettingsStore.hpp"
#include "platform/linux/LinuxSystemRelease.hpp"
#include "platform/linux/QtFolderChooser.hpp"
#include "platform/preview/QtPreviewPanels.hpp"

#include <QApplication>

using namespace tessaly;
using namespace Qt::StringLiterals;

int main(int argumentCount, char **arguments)
{
    // The other backend of Qt's players needs more than is installed with it.
    if (!qEnvironmentVariableIsSet("QT_MEDIA_BACKEND")) {
        qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    }
    QApplication application(argumentCount, arguments);
    QApplication::setApplicationName(u"tessaly"_s);
    QApplication::setApplicationDisplayName(u"Tessaly"_s);
    QApplication::setDesktopFileName(u"tessaly"_s);
    applyLook(application);

    LinuxSettingsStore settings;
    LinuxFolderBookmarks bookmarks;
    LinuxDocumentsFolder documents;
    LinuxSystemRelease release;
    LinuxNotifier notifier;
    IcuDateTexts dates;
    QtPreviewPanels previewPanels({}, &settings);
    LinuxFileManager fileManager(dates);
    QtFolderChooser folderChooser;
    KORVENAppDelegate delegate({settings, bookmarks, documents, release, notifier, dates,
                                previewPanels, fileManager, folderChooser});
    AtomicFile::removeLeftovers(documents.path());

    KORVENWindowController controller;
    delegate.setWindowController(&controller);
    controller.awakeFromNib();
    controller.mainWindow().show();
    QMetaObject::invokeMethod(
        &application, [&delegate] { delegate.applicationDidFinishLaunching(); },
        Qt::QueuedConnection);
    QApplication::setQuitOnLastWindowClosed(
        KORVENAppDelegate::applicationShouldTerminateAfterLastWindowClosed());
    const int status = QApplication::exec();
    delegate.applicationWillTerminate();
    delegate.setWindowController(nullptr);
    return status;
}
