#include "screens/KORVENQuicklookController.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/NamedException.hpp"
#include "platform/FileUrl.hpp"
#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FakeServices.hpp"
#include "tests/screens/OwnQuicklookController.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace tessaly {
namespace {

using Urls = std::vector<std::string>;
using Entries = std::vector<PreviewFolderEntry>;

class KORVENQuicklookControllerTest : public testing::Test {
protected:
    /// Stores a bookmark of a folder that is there.
    void storeBookmark(const std::string &key, const std::string &url)
    {
        m_services.settings.setData(key, *m_services.bookmarks.makeBookmark(url));
    }

    std::unique_ptr<KORVENQuicklookController> controllerOf(const Entries &entries)
    {
        return OwnQuicklookController::open(m_delegate.services(), entries);
    }

    [[nodiscard]] FakePreviewPanel &panel()
    {
        return m_services.previewPanels.sharedPreviewPanel();
    }

    const Entries m_abcd{{"a", false}, {"b", false}, {"c", false}, {"d", true}};

    FakeServices m_services;
    KORVENAppDelegate m_delegate{m_services.all()};
};

TEST_F(KORVENQuicklookControllerTest, theListBeginsWithTheChosenFileAndWrapsRound)
{
    const auto controller = controllerOf(m_abcd);
    controller->quickLookItem("/x/b");
    const Urls wanted{"file:///x/b", "file:///x/c", "file:///x/a"};
    EXPECT_EQ(controller->qlArray(), wanted);
    EXPECT_EQ(panel().items(), wanted);
    EXPECT_EQ(controller->savedPath(), "/x");
}

TEST_F(KORVENQuicklookControllerTest, theFirstAndTheLastFileComeFirstToo)
{
    const auto controller = controllerOf(m_abcd);
    controller->quickLookItem("/x/a");
    EXPECT_EQ(controller->qlArray(), (Urls{"file:///x/a", "file:///x/b", "file:///x/c"}));
    controller->quickLookItem("/x/c");
    EXPECT_EQ(controller->qlArray(), (Urls{"file:///x/c", "file:///x/a", "file:///x/b"}));
}

TEST_F(KORVENQuicklookControllerTest, theShownNamesComeFirstInTheirOrder)
{
    const auto controller = controllerOf(m_abcd);
    controller->quickLookItem("/x/a", {"c", "no such file", "a", "d"});
    EXPECT_EQ(controller->qlArray(), (Urls{"file:///x/a", "file:///x/b", "file:///x/c"}));
    controller->quickLookItem("/x/c", {"c", "no such file", "a", "d"});
    EXPECT_EQ(controller->qlArray(), (Urls{"file:///x/c", "file:///x/a", "file:///x/b"}));
}

TEST_F(KORVENQuicklookControllerTest, whatIsNotInTheListLeavesTheOrder)
{
    const auto controller = controllerOf({{".h", false}, {"a", false}, {"b", false}, {"d", true}});
    for (const char *path : {"/x/.h", "/x/d", "/x/gone", "/x//b"}) {
        controller->quickLookItem(path);
        ASSERT_EQ(controller->qlArray().size(), 2U) << path;
        EXPECT_TRUE(controller->qlArray()[0].ends_with("/a")) << path;
        EXPECT_TRUE(controller->qlArray()[1].ends_with("/b")) << path;
    }
}

TEST_F(KORVENQuicklookControllerTest, aFileOfTheRootFolderIsFoundAsTheScreensSpellIt)
{
    const auto controller = controllerOf(m_abcd);
    controller->quickLookItem("//b");
    EXPECT_EQ(controller->savedPath(), "/");
    ASSERT_EQ(controller->qlArray().size(), 3U);
    EXPECT_EQ(pathOfFileUrl(controller->qlArray()[0]), "//b");
}

TEST_F(KORVENQuicklookControllerTest, theFolderIsWhatComesBeforeTheLastName)
{
    const auto controller = controllerOf({});
    const std::vector<std::pair<std::string, std::string>> folders{
        {"/x/y/z", "/x/y"}, {"/x/y/", "/x"},  {"/x", "/"},
        {"/", "/"},         {"//x//y", "/x"}, {"/x/../y", "/x/.."}};
    for (const auto &[path, folder] : folders) {
        controller->quickLookItem(path);
        EXPECT_EQ(controller->savedPath(), folder) << path;
    }
}

TEST_F(KORVENQuicklookControllerTest, listsTheFilesThatAreThere)
{
    const TemporaryFolder folder;
    const std::set<std::string> names{"a", "b c", "\xFF", "100%"};
    for (const std::string &name : names) {
        folder.file(name);
    }
    folder.folder("d");
    folder.file("d/inside");
    folder.file(".hidden");
    const auto controller = OwnQuicklookController::open(m_delegate.services());

    controller->quickLookItem(folder.path("\xFF"));

    std::set<std::string> found;
    for (const std::string &url : controller->qlArray()) {
        found.insert(pathOfFileUrl(url).value().substr(folder.path().size() + 1));
    }
    EXPECT_EQ(found, names);
    EXPECT_EQ(pathOfFileUrl(controller->qlArray().at(0)), folder.path("\xFF"));
}

TEST_F(KORVENQuicklookControllerTest, aFolderThatIsGoneShowsAnEmptyPanel)
{
    const TemporaryFolder folder;
    const auto controller = OwnQuicklookController::open(m_delegate.services());
    controller->quickLookItem(folder.path("gone/file"));
    EXPECT_TRUE(controller->qlArray().empty());
    EXPECT_TRUE(panel().isVisible());
    EXPECT_TRUE(panel().items().empty());
    EXPECT_EQ(panel().unlistedItem(), "");
}

TEST_F(KORVENQuicklookControllerTest, aPathThatIsNoneShowsAnEmptyPanel)
{
    const auto controller = controllerOf(m_abcd);
    controller->quickLookItem(std::string_view("/x\0y/b", 6));
    EXPECT_TRUE(controller->qlArray().empty());
    EXPECT_TRUE(panel().isVisible());
}

TEST_F(KORVENQuicklookControllerTest, thePanelIsShownAndStartsAtTheFirstItem)
{
    const auto controller = controllerOf(m_abcd);
    controller->quickLookItem("/x/b");
    EXPECT_EQ(panel().frontCount(), 1);
    EXPECT_EQ(panel().keyCount(), 0);

    panel().setCurrentPreviewItemIndex(2);
    const int reloads = panel().reloadCount();
    controller->quickLookItem("/x/a");
    EXPECT_EQ(panel().frontCount(), 1);
    EXPECT_EQ(panel().keyCount(), 1);
    EXPECT_EQ(panel().currentPreviewItemIndex(), 0U);
    EXPECT_EQ(panel().reloadCount(), reloads + 1);
    EXPECT_EQ(panel().items().at(0), "file:///x/a");
}

TEST_F(KORVENQuicklookControllerTest, controlsThePanelWhileItIsOpen)
{
    const auto controller = controllerOf(m_abcd);
    EXPECT_TRUE(controller->acceptsPreviewPanelControl(panel()));
    controller->quickLookItem("/x/b");
    EXPECT_EQ(panel().dataSource(), controller.get());
    EXPECT_EQ(panel().delegate(), controller.get());
    EXPECT_EQ(controller->previewPanel(), &panel());

    panel().orderOut();
    EXPECT_EQ(panel().dataSource(), nullptr);
    EXPECT_EQ(panel().delegate(), nullptr);
    EXPECT_EQ(controller->previewPanel(), nullptr);

    panel().makeKeyAndOrderFront(); // as the space bar does
    EXPECT_EQ(panel().items().size(), 3U);
    EXPECT_EQ(panel().items().at(0), "file:///x/b");
}

TEST_F(KORVENQuicklookControllerTest, givesThePanelUpWhenItIsDestroyed)
{
    auto controller = controllerOf(m_abcd);
    controller->quickLookItem("/x/b");
    controller.reset();
    EXPECT_EQ(m_services.previewPanels.controller(), nullptr);
    EXPECT_EQ(panel().dataSource(), nullptr);
    EXPECT_EQ(panel().delegate(), nullptr);
}

TEST_F(KORVENQuicklookControllerTest, answersThePanel)
{
    const auto controller = controllerOf(m_abcd);
    EXPECT_EQ(controller->numberOfPreviewItemsInPreviewPanel(), 0U);
    controller->quickLookItem("/x/b");
    EXPECT_EQ(controller->numberOfPreviewItemsInPreviewPanel(), 3U);
    EXPECT_EQ(controller->previewItemAtIndex(2), "file:///x/a");
    EXPECT_EQ(controller->previewItemAtIndex(3), "");
    EXPECT_TRUE(controller->handleEvent(PreviewPanelEvent::keyDown));
    EXPECT_EQ(static_cast<int>(PreviewPanelEvent::keyDown), 10);
    for (const auto event : {PreviewPanelEvent::keyUp, PreviewPanelEvent::mouseDown,
                             PreviewPanelEvent::mouseUp, PreviewPanelEvent::scrollWheel}) {
        EXPECT_FALSE(controller->handleEvent(event));
    }
    EXPECT_EQ(controller->sourceFrameOnScreenForPreviewItem(0), PreviewPanelFrame());
}

TEST_F(KORVENQuicklookControllerTest, keepsTheHomeFolderOpenForItsLife)
{
    const std::string home = "file:///home/ada";
    storeBookmark("homeFolder", home);
    auto controller = controllerOf(m_abcd);
    EXPECT_EQ(controller->homeURL(), home);
    EXPECT_EQ(m_services.bookmarks.accessCount(home), 1);
    controller->quickLookItem("/x/b");
    EXPECT_EQ(m_services.bookmarks.accessCount(home), 1);
    controller.reset();
    EXPECT_EQ(m_services.bookmarks.startCount(home), 1);
    EXPECT_EQ(m_services.bookmarks.stopCount(home), 1);
}

TEST_F(KORVENQuicklookControllerTest, doesWithoutAHomeFolder)
{
    const std::string home = "file:///home/ada";
    storeBookmark("homeFolder", home);
    m_services.bookmarks.setGone(home);
    auto controller = controllerOf(m_abcd);
    EXPECT_EQ(controller->homeURL(), std::nullopt);
    controller.reset();
    EXPECT_EQ(m_services.bookmarks.stopCount(home), 0);
}

TEST_F(KORVENQuicklookControllerTest, opensTheScannedFolderUntilTheNextOne)
{
    storeBookmark("scan 1", "file:///x");
    storeBookmark("scan 2", "file:///y");
    auto controller = controllerOf(m_abcd);

    controller->quickLookItem("/x/b", "scan 1");
    EXPECT_EQ(controller->scanURL(), "file:///x");
    EXPECT_EQ(m_services.bookmarks.accessCount("file:///x"), 1);
    EXPECT_EQ(panel().items().at(0), "file:///x/b");

    controller->quickLookItem("/y/c", "scan 2");
    EXPECT_EQ(m_services.bookmarks.accessCount("file:///x"), 0);
    EXPECT_EQ(m_services.bookmarks.accessCount("file:///y"), 1);
    EXPECT_EQ(panel().items().at(0), "file:///y/c");

    controller.reset();
    for (const char *url : {"file:///x", "file:///y"}) {
        EXPECT_EQ(m_services.bookmarks.startCount(url), 1);
        EXPECT_EQ(m_services.bookmarks.stopCount(url), 1);
    }
}

TEST_F(KORVENQuicklookControllerTest, aBookmarkThatDoesNotResolveShowsNothing)
{
    storeBookmark("scan", "file:///x");
    storeBookmark("gone", "file:///gone");
    m_services.bookmarks.setGone("file:///gone");
    const auto controller = controllerOf(m_abcd);
    controller->quickLookItem("/x/b", "scan");
    panel().orderOut();

    for (const char *key : {"gone", "never stored"}) {
        controller->quickLookItem("/x/a", key);
        EXPECT_FALSE(panel().isVisible());
        EXPECT_EQ(controller->scanURL(), std::nullopt);
    }
    EXPECT_EQ(controller->qlArray().at(0), "file:///x/b");
    EXPECT_EQ(m_services.bookmarks.stopCount("file:///x"), 1);
    EXPECT_EQ(m_services.bookmarks.stopCount("file:///gone"), 0);
}

TEST_F(KORVENQuicklookControllerTest, cannotBeMadeByAnybody)
{
    try {
        const KORVENQuicklookController controller;
        FAIL();
    } catch (const NamedException &exception) {
        EXPECT_EQ(exception.name(), "Singleton");
        EXPECT_EQ(exception.reason(), "Use +[KORVENHistoryStore sharedStore]");
    }
}

TEST_F(KORVENQuicklookControllerTest, allThreadsShareOneController)
{
    storeBookmark("homeFolder", "file:///home/ada");
    runInChild([this] { // the shared controller stays
        std::vector<KORVENQuicklookController *> controllers(8);
        std::vector<std::thread> threads;
        for (KORVENQuicklookController *&controller : controllers) {
            threads.emplace_back(
                [&controller] { controller = &KORVENQuicklookController::sharedStore(); });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
        EXPECT_EQ(std::count(controllers.begin(), controllers.end(), controllers.front()), 8);
        EXPECT_EQ(m_services.bookmarks.startCount("file:///home/ada"), 1);
        EXPECT_EQ(m_services.previewPanels.controller(), controllers.front());
    });
}

} // namespace
} // namespace tessaly
