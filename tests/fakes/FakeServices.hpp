#pragma once

#include "platform/Services.hpp"
#include "tests/fakes/FakeApplicationLauncher.hpp"
#include "tests/fakes/FakeDateTexts.hpp"
#include "tests/fakes/FakeDocumentsFolder.hpp"
#include "tests/fakes/FakeFileManager.hpp"
#include "tests/fakes/FakeFolderBookmarks.hpp"
#include "tests/fakes/FakeFolderChooser.hpp"
#include "tests/fakes/FakeNotifier.hpp"
#include "tests/fakes/FakePreviewPanels.hpp"
#include "tests/fakes/FakeSettingsStore.hpp"
#include "tests/fakes/FakeSystemRelease.hpp"
#include "tests/fakes/FakeUrlOpener.hpp"
#include "tests/fakes/FakeUserAccount.hpp"
#include "tests/fakes/FakeVolumeService.hpp"

#include <string>

namespace tessaly {

/// A desktop of fakes, each to be asked what it was asked.
struct FakeServices {
    FakeServices() = default;
    explicit FakeServices(std::string documentsPath) : documents(std::move(documentsPath)) {}

    FakeSettingsStore settings;
    FakeFolderBookmarks bookmarks;
    FakeDocumentsFolder documents{"/nowhere"};
    FakeSystemRelease release;
    FakeNotifier notifier;
    FakeDateTexts dates;
    FakePreviewPanels previewPanels;
    FakeFileManager fileManager;
    FakeFolderChooser folderChooser;
    FakeUserAccount account;
    FakeVolumeService volumes;
    FakeApplicationLauncher applications;
    FakeUrlOpener urls;

    [[nodiscard]] Services all()
    {
        return {settings,    bookmarks,     documents, release, notifier,     dates, previewPanels,
                fileManager, folderChooser, account,   volumes, applications, urls};
    }
};

} // namespace tessaly
