#pragma once

namespace tessaly {

class ApplicationLauncher;
class DateTexts;
class DocumentsFolder;
class FileManager;
class FolderBookmarks;
class FolderChooser;
class Notifier;
class PreviewPanels;
class SettingsStore;
class SystemRelease;
class UrlOpener;
class UserAccount;
class VolumeService;

/// What the program asks of a desktop, all of it. The services outlive every object that is given
/// the set.
struct Services {
    SettingsStore &settings;
    FolderBookmarks &bookmarks;
    DocumentsFolder &documents;
    SystemRelease &release;
    Notifier &notifier;
    DateTexts &dates;
    PreviewPanels &previewPanels;
    FileManager &fileManager;
    FolderChooser &folderChooser;
    UserAccount &account;
    VolumeService &volumes;
    ApplicationLauncher &applications;
    UrlOpener &urls;
};

} // namespace tessaly
