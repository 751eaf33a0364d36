#include "app/controls/alerts/SheetGroup.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "drives/KORVENDriveCellView.hpp"
#include "history/KORVENHistoryCellView.hpp"
#include "screens/results/KORVENFolderCellView.hpp"

#include <QAbstractButton>
#include <QAction>
#include <QDir>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// What the program looks for in one interface file.
struct Needs {
    std::map<std::string, std::vector<const char *>> outlets; ///< the object names, by class
    std::vector<const char *> actions;                        ///< the names that are wired
};

const char *const cellTable = "tessaly::CellTableView";
const char *const iconView = "tessaly::IconView";
const char *const korvenButton = "tessaly::KORVENButton";
const char *const nameLabel = "tessaly::NameLabel";
const char *const progressBar = "tessaly::KORVENProgressBar";

Needs needsOfSidebarCell()
{
    return {{{iconView, {"icon"}}, {nameLabel, {"title"}}}, {}};
}

/// Those of a screen with the result of a scan.
Needs needsOfResult()
{
    return {
        {{nameLabel, {"folderNameField", "scanLabel"}},
         {cellTable, {"tableView"}},
         {korvenButton, {"scanButton", "cancelButton", "sortButton", "backButton", "emptyButton"}},
         {"QLabel",
          {"folderLabel", "totalLabel", "totalCaption", "dateLabel", "emptyTitle", "emptyText"}},
         {"QProgressBar", {"scanProgress"}},
         {"QStackedWidget", {"resultPages"}},
         {"QWidget", {"emptyPage"}}},
        {"scanButton", "emptyButton", "cancelButton", "sortButton", "backButton"}};
}

Needs needsOfHome()
{
    Needs needs = needsOfResult();
    needs.outlets["QStackedWidget"].push_back("tabView");
    needs.outlets[iconView] = {"setupIcon"};
    needs.outlets["QLabel"].push_back("setupTitle");
    needs.actions.push_back("continueButton");
    return needs;
}

Needs needsOfDrives()
{
    return {{{cellTable, {"tableView"}},
             {korvenButton, {"refreshButton", "sortButton", "launchButton"}},
             {"QLabel", {"countLabel", "emptyTitle", "emptyText"}},
             {"QStackedWidget", {"drivePages"}},
             {"QWidget", {"emptyPage"}}},
            {"refreshButton", "sortButton", "launchButton"}};
}

Needs needsOfHistory()
{
    return {{{cellTable, {"tableView"}},
             {korvenButton, {"refreshButton", "sortButton", "deleteButton"}},
             {"QLabel", {"countLabel", "problemLabel", "emptyTitle", "emptyText"}},
             {"QStackedWidget", {"historyPages"}},
             {"QWidget", {"emptyPage"}}},
            {"refreshButton", "sortButton", "deleteButton"}};
}

Needs needsOfDriveCell()
{
    return {{{"tessaly::KORVENDriveCellView", {"KORVENDriveCell"}},
             {nameLabel, {"driveName"}},
             {"QLabel",
              {"driveFree", "driveUsed", "driveTotal", "ejectLabel", "freeCaption", "usedCaption",
               "totalCaption"}},
             {progressBar, {"driveGraph"}},
             {iconView, {"driveImage"}},
             {korvenButton, {"ejectButton"}},
             {"QToolButton", {"menuButton"}}},
            {"ejectButton"}};
}

Needs needsOfFolderCell()
{
    return {{{"tessaly::KORVENFolderCellView", {"KORVENFolderCell"}},
             {iconView, {"iconImage"}},
             {nameLabel, {"folderName"}},
             {"QLabel", {"folderSize"}},
             {progressBar, {"folderGraph"}},
             {"QToolButton", {"menuButton"}}},
            {}};
}

Needs needsOfHistoryCell()
{
    return {{{"tessaly::KORVENHistoryCellView", {"KORVENHistoryCell"}},
             {iconView, {"imageView"}},
             {nameLabel, {"scanPath"}},
             {"QLabel", {"scanTotal", "scanDate"}},
             {korvenButton, {"deleteButton"}}},
            {"deleteButton"}};
}

Needs needsOfPreferences()
{
    return {{{"QRadioButton",
              {"hiddenItemMatrix0", "hiddenItemMatrix1", "hiddenItemMatrix2", "hiddenItemMatrix3",
               "hiddenItemMatrix4", "largeFileMatrix0", "largeFileMatrix1", "largeFileMatrix2",
               "largeFileMatrix3", "largeFileMatrix4"}},
             {"QCheckBox",
              {"showNotificationCheck", "notificationSoundCheck", "diskGraphCheck",
               "folderGraphCheck"}}},
            {"showNotificationCheck", "notificationSoundCheck", "diskGraphCheck",
             "folderGraphCheck", "customHomeFolderButton", "removeHomeFolderButton",
             "closeButton"}};
}

/// By the file's name.
std::map<QString, Needs> allNeeds()
{
    return {{u"DriveCell"_s, needsOfSidebarCell()},
            {u"FolderCell"_s, needsOfSidebarCell()},
            {u"ScanCell"_s, needsOfSidebarCell()},
            {u"HistoryCell"_s, needsOfSidebarCell()},
            {u"KORVENDriveViewController"_s, needsOfDrives()},
            {u"KORVENHomeViewController"_s, needsOfHome()},
            {u"KORVENScanViewController"_s, needsOfResult()},
            {u"KORVENHistoryViewController"_s, needsOfHistory()},
            {u"KORVENDriveCell"_s, needsOfDriveCell()},
            {u"KORVENFolderCell"_s, needsOfFolderCell()},
            {u"KORVENHistoryCell"_s, needsOfHistoryCell()},
            {u"TessalyPreferences"_s, needsOfPreferences()}};
}

/// The files that are in the program, by name.
QStringList filesInTheProgram()
{
    QStringList names;
    for (const QFileInfo &file : QDir(u":/tessaly/interface"_s).entryInfoList({u"*.ui"_s})) {
        names << file.completeBaseName();
    }
    return names;
}

void registerCells()
{
    InterfaceFile::registerWidget<KORVENDriveCellView>("KORVENDriveCellView");
    InterfaceFile::registerWidget<KORVENFolderCellView>("KORVENFolderCellView");
    InterfaceFile::registerWidget<KORVENHistoryCellView>("KORVENHistoryCellView");
    InterfaceFile::registerWidget<SheetGroup>("SheetGroup");
}

/// `Name (Class)` of each outlet that is not there, or is of another class.
QStringList missingOutlets(QWidget &root, const Needs &needs)
{
    QStringList missing;
    for (const auto &[className, names] : needs.outlets) {
        for (const char *name : names) {
            const auto *found = findOutlet<QWidget>(root, QString::fromLatin1(name));
            if (found == nullptr || !found->inherits(className.c_str())) {
                missing << QString::fromLatin1(name) + u" ("_s + className.c_str() + u')';
            }
        }
    }
    return missing;
}

/// The buttons and actions that do nothing, as the program never looks for them.
QStringList unwired(const QWidget &root, const Needs &needs)
{
    QStringList wired;
    for (const char *name : needs.actions) {
        wired << QString::fromLatin1(name);
    }
    for (const auto &[className, names] : needs.outlets) {
        if (className == "QToolButton" || className == "QRadioButton") { // wired as outlets
            for (const char *name : names) {
                wired << QString::fromLatin1(name);
            }
        }
    }
    QStringList names;
    for (const auto *button : root.findChildren<QAbstractButton *>()) {
        names << button->objectName();
    }
    for (const auto *action : root.findChildren<QAction *>()) {
        names << action->objectName();
    }
    names.removeIf([&](const QString &name) { return wired.contains(name); });
    return names;
}

QStringList missingActions(QWidget &root, const Needs &needs)
{
    std::vector<WiredAction> actions;
    for (const char *name : needs.actions) {
        actions.push_back({name, [] {}});
    }
    return wireActions(root, root, actions);
}

TEST(InterfaceFiles, eachIsKnownHere)
{
    QStringList known;
    for (const auto &[name, needs] : allNeeds()) {
        known << name;
    }
    EXPECT_EQ(filesInTheProgram().join(u' ').toStdString(), known.join(u' ').toStdString());
}

TEST(InterfaceFiles, eachHasWhatTheProgramLooksFor)
{
    registerCells();
    for (const auto &[name, needs] : allNeeds()) {
        SCOPED_TRACE(name.toStdString());
        const InterfaceFile::Loaded loaded = InterfaceFile::load(name);
        ASSERT_NE(loaded.root, nullptr) << loaded.error.toStdString();
        EXPECT_EQ(missingOutlets(*loaded.root, needs).join(u", ").toStdString(), "");
        EXPECT_EQ(missingActions(*loaded.root, needs).join(u", ").toStdString(), "");
        EXPECT_EQ(unwired(*loaded.root, needs).join(u", ").toStdString(), "");
    }
}

} // namespace
} // namespace tessaly
