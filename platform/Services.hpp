#pragma once

namespace tessaly {

class DateTexts;
class DocumentsFolder;
class FileManager;
class FolderBookmarks;
class FolderChooser;
class Notifier;
class PreviewPanels;
class SettingsStore;
class SystemRelease;

/// What the program asks of a desktop, all of it. The services outlive whoever was handed the set.
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
};

} // namespace tessaly
