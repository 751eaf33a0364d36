#include "platform/linux/files/LinuxFileManager.hpp"

#include "platform/FileUrl.hpp"
#include "platform/linux/files/InformationWindow.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FakeDateTexts.hpp"
#include "tests/platform/linux/LogLines.hpp"
#include "tests/platform/linux/PrivateBus.hpp"
#include "tests/platform/linux/SilentBus.hpp"
#include "tests/platform/linux/WaitUntil.hpp"
#include "tests/platform/linux/files/FakeFileManagerService.hpp"

#include <QApplication>
#include <QLabel>
#include <QPointer>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <unistd.h>

using namespace std::string_literals;

namespace tessaly {

namespace {

using Answers = FakeFileManagerService::Answers;
using Call = FakeFileManagerService::Call;
using Urls = std::vector<std::string>;

constexpr auto category = "tessaly.filemanager";

std::vector<InformationWindow *> ownWindows()
{
    std::vector<InformationWindow *> windows;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<InformationWindow *>(widget)) {
            windows.push_back(window);
        }
    }
    return windows;
}

/// A file manager without a bus, until a test makes one. What is opened instead is recorded.
class LinuxFileManagerTest : public testing::Test {
protected:
    void makeBus()
    {
        if (!PrivateBus::isInstalled()) {
            GTEST_SKIP() << "needs dbus-daemon";
        }
        m_bus = std::make_unique<PrivateBus>();
    }

    [[nodiscard]] std::unique_ptr<LinuxFileManager>
    makeFileManager(std::chrono::milliseconds timeout = LinuxFileManager::defaultTimeout)
    {
        const auto open = [this](const std::string &url) {
            m_opened.push_back(url);
            return m_canOpen;
        };
        return std::make_unique<LinuxFileManager>(m_dates, open, timeout);
    }

    [[nodiscard]] std::string url(const std::string &inside = {}) const
    {
        return fileUrl(inside.empty() ? m_folder.path() : m_folder.path(inside)).value_or("");
    }

    TemporaryFolder m_folder;
    FakeDateTexts m_dates;
    std::unique_ptr<PrivateBus> m_bus;
    Urls m_opened;
    bool m_canOpen = true;
};

TEST_F(LinuxFileManagerTest, hasTheItemSelectedInItsFolder)
{
    makeBus();
    m_folder.file("file");
    FakeFileManagerService service;
    const auto fileManager = makeFileManager();
    fileManager->reveal(m_folder.path("file"));

    waitUntil([&] { return !service.calls().empty(); });
    EXPECT_EQ(service.calls(), (std::vector<Call>{{"ShowItems", {url("file")}, ""}}));
}

TEST_F(LinuxFileManagerTest, hasTheItemsPropertiesShown)
{
    makeBus();
    m_folder.file("file");
    FakeFileManagerService service;
    const auto fileManager = makeFileManager();
    fileManager->showInformation(m_folder.path("file"));

    waitUntil([&] { return !service.calls().empty(); });
    EXPECT_EQ(service.calls(), (std::vector<Call>{{"ShowItemProperties", {url("file")}, ""}}));
}

TEST_F(LinuxFileManagerTest, opensTheRootWhichIsInNoFolder)
{
    makeBus();
    FakeFileManagerService service;
    const auto fileManager = makeFileManager();
    fileManager->reveal("//");
    waitUntil([&] { return service.calls().size() == 1; });
    fileManager->showInformation("/");
    waitUntil([&] { return service.calls().size() == 2; });
    EXPECT_EQ(service.calls(), (std::vector<Call>{{"ShowFolders", {"file:///"}, ""},
                                                  {"ShowItemProperties", {"file:///"}, ""}}));
}

TEST_F(LinuxFileManagerTest, namesAnyItemExactly)
{
    makeBus();
    const std::vector<std::pair<std::string, std::string>> names{
        {"a b", "a%20b"},          {"100%#?&", "100%25%23%3F%26"}, {"\xFF\xC3", "%FF%C3"},
        {"a\nb", "a%0Ab"},         {"caf\xC3\xA9", "caf%C3%A9"},   {"\xE2\x80\xA8", "%E2%80%A8"},
        {"\\'\"<", "%5C%27%22%3C"}};
    FakeFileManagerService service;
    const auto fileManager = makeFileManager();
    for (const auto &[name, encoded] : names) {
        m_folder.file(name);
        const std::size_t before = service.calls().size();
        fileManager->reveal(m_folder.path(name));
        waitUntil([&] { return service.calls().size() > before; });
        EXPECT_EQ(service.calls().back().urls, Urls{"file://" + m_folder.path(encoded)});
    }
}

TEST_F(LinuxFileManagerTest, leavesOutSlashesTooMany)
{
    makeBus();
    m_folder.folder("a");
    m_folder.folder("a/b");
    FakeFileManagerService service;
    const auto fileManager = makeFileManager();
    fileManager->reveal("/" + m_folder.path("a///b//"));
    waitUntil([&] { return !service.calls().empty(); });
    EXPECT_EQ(service.calls().back().urls, Urls{url("a/b")});
}

TEST_F(LinuxFileManagerTest, showsALinkAndNotWhereItLeads)
{
    makeBus();
    m_folder.link("broken", "nowhere");
    FakeFileManagerService service;
    const auto fileManager = makeFileManager();
    fileManager->reveal(m_folder.path("broken"));
    waitUntil([&] { return !service.calls().empty(); });
    EXPECT_EQ(service.calls().back().urls, Urls{url("broken")});
}

TEST_F(LinuxFileManagerTest, doesNothingForWhatIsNoPathButLogIt)
{
    makeBus();
    m_folder.file("file");
    FakeFileManagerService service;
    const auto fileManager = makeFileManager();
    const LogLines log(category);
    const std::vector<std::string> paths{"", "file", "\0"s, m_folder.path("file") + '\0'};
    std::size_t count = 0;
    for (const std::string &path : paths) {
        fileManager->reveal(path);
        fileManager->showInformation(path);
        count += 2;
        waitUntil([&] { return LogLines::waitFor(0).size() == count; });
    }
    EXPECT_EQ(LogLines::waitFor(1).at(0), "not shown:  - not an absolute path");

    fileManager->reveal(m_folder.path("file")); // would come after what the others had led to
    waitUntil([&] { return !service.calls().empty(); });
    EXPECT_EQ(service.calls().size(), 1U);
    EXPECT_TRUE(m_opened.empty());
    EXPECT_TRUE(ownWindows().empty());
}

TEST_F(LinuxFileManagerTest, saysSoWhenTheItemIsGone)
{
    makeBus();
    m_folder.file("file");
    FakeFileManagerService service;
    using Show = void (LinuxFileManager::*)(std::string_view);
    for (const Show show : {Show(&LinuxFileManager::reveal), &LinuxFileManager::showInformation}) {
        const auto fileManager = makeFileManager();
        const LogLines log(category);
        ((*fileManager).*show)(m_folder.path("missing\n"));
        waitUntil([] { return !ownWindows().empty(); });
        ASSERT_EQ(ownWindows().size(), 1U);
        const InformationWindow &window = *ownWindows().front();
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(window.findChild<QLabel *>("name")->text(), "missing?");
        EXPECT_EQ(window.findChild<QLabel *>("problem")->text(),
                  "This item is not there any more.");
        EXPECT_EQ(LogLines::waitFor(1).at(0),
                  "not shown: " + m_folder.path("missing?") + " - No such file or directory");
    }
    EXPECT_TRUE(service.calls().empty());
    EXPECT_TRUE(m_opened.empty());
}

TEST_F(LinuxFileManagerTest, opensTheFolderWhereThereIsNoFileManager)
{
    makeBus();
    m_folder.file("\xFF%");
    const auto fileManager = makeFileManager();
    fileManager->reveal(m_folder.path("\xFF%"));
    waitUntil([&] { return !m_opened.empty(); });
    EXPECT_EQ(m_opened, Urls{url()});
}

TEST_F(LinuxFileManagerTest, opensTheFolderByTheBytesOfItsName)
{
    m_folder.folder("\xFF %");
    m_folder.file("\xFF %/file");
    const auto fileManager = makeFileManager();
    fileManager->reveal(m_folder.path("\xFF %/file"));
    waitUntil([&] { return !m_opened.empty(); });
    EXPECT_EQ(m_opened, Urls{"file://" + m_folder.path("%FF%20%25")});
}

TEST_F(LinuxFileManagerTest, opensTheFolderWhenTheFileManagerRefuses)
{
    makeBus();
    m_folder.file("file");
    FakeFileManagerService service(Answers::refused);
    const auto fileManager = makeFileManager();
    fileManager->reveal(m_folder.path("file"));
    waitUntil([&] { return !m_opened.empty(); });
    EXPECT_EQ(m_opened, Urls{url()});
    EXPECT_EQ(service.calls().size(), 1U);
}

TEST_F(LinuxFileManagerTest, opensTheFolderWhenThereIsNoBus)
{
    m_folder.file("file");
    const auto fileManager = makeFileManager();
    for (std::size_t count = 1; count <= 2; ++count) { // each is a try of its own
        fileManager->reveal(m_folder.path("file"));
        waitUntil([&] { return m_opened.size() == count; });
    }
    fileManager->reveal("/");
    waitUntil([&] { return m_opened.size() == 3; });
    EXPECT_EQ(m_opened, (Urls{url(), url(), "file:///"}));
}

TEST_F(LinuxFileManagerTest, logsThatNothingOpensTheFolder)
{
    m_canOpen = false;
    m_folder.file("file");
    const auto fileManager = makeFileManager();
    const LogLines log(category);
    fileManager->reveal(m_folder.path("file"));
    waitUntil([&] { return LogLines::waitFor(0).size() == 2; });
    EXPECT_TRUE(LogLines::waitFor(1).at(0).starts_with("no session bus"));
    EXPECT_EQ(LogLines::waitFor(2).at(1),
              "not shown: " + m_folder.path() + " - nothing opens this folder");
}

TEST_F(LinuxFileManagerTest, findsABusAndAFileManagerThatAppearLater)
{
    m_folder.file("file");
    const auto fileManager = makeFileManager();
    fileManager->reveal(m_folder.path("file"));
    waitUntil([&] { return !m_opened.empty(); });

    makeBus();
    FakeFileManagerService service;
    fileManager->reveal(m_folder.path("file"));
    waitUntil([&] { return !service.calls().empty(); });
    EXPECT_EQ(m_opened.size(), 1U);
}

TEST_F(LinuxFileManagerTest, showsAWindowOfOurOwnWhereThereIsNoFileManager)
{
    m_folder.file("file", 1500);
    auto fileManager = makeFileManager();
    fileManager->showInformation(m_folder.path("/file/"));
    waitUntil([] { return !ownWindows().empty(); });
    ASSERT_EQ(ownWindows().size(), 1U);
    const QPointer<InformationWindow> window = ownWindows().front();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->findChild<QLabel *>("name")->text(), "file");
    EXPECT_EQ(window->findChild<QLabel *>("size")->text(), "1.50 KB (1,500 bytes)");
    EXPECT_TRUE(m_opened.empty());

    fileManager.reset();
    EXPECT_EQ(window, nullptr);
}

TEST_F(LinuxFileManagerTest, showsTheSameItemOnceWithNewFigures)
{
    m_folder.file("file");
    m_folder.file("other");
    const auto fileManager = makeFileManager();
    fileManager->showInformation(m_folder.path("file"));
    waitUntil([] { return ownWindows().size() == 1; });
    const QPointer<InformationWindow> first = ownWindows().front();
    first->move(30, 40);
    fileManager->showInformation(m_folder.path("other"));
    waitUntil([] { return ownWindows().size() == 2; });

    ASSERT_EQ(truncate(m_folder.path("file").c_str(), 2000), 0);
    fileManager->showInformation(m_folder.path("file"));
    waitUntil([&] { return first == nullptr; });
    ASSERT_EQ(ownWindows().size(), 2U);
    for (InformationWindow *window : ownWindows()) {
        if (window->findChild<QLabel *>("name")->text() == "file") {
            EXPECT_EQ(window->findChild<QLabel *>("size")->text(), "2.00 KB (2,000 bytes)");
            EXPECT_EQ(window->pos(), QPoint(30, 40));
        }
    }
}

TEST_F(LinuxFileManagerTest, destroysAWindowThatIsClosed)
{
    m_folder.file("file");
    const auto fileManager = makeFileManager();
    for (int round = 0; round < 2; ++round) {
        fileManager->showInformation(m_folder.path("file"));
        waitUntil([] { return !ownWindows().empty(); });
        const QPointer<InformationWindow> window = ownWindows().front();
        window->close();
        waitUntil([&] { return window == nullptr; });
    }
}

// A service that never answers, as long as the test lasts: that the test comes to its end shows
// that nothing waits for it.
TEST_F(LinuxFileManagerTest, doesNotWaitForAFileManagerThatDoesNotAnswer)
{
    makeBus();
    m_folder.file("file");
    FakeFileManagerService service(Answers::withheld);
    auto fileManager = makeFileManager();
    fileManager->reveal(m_folder.path("file"));
    waitUntil([&] { return service.calls().size() == 1; });
    fileManager->showInformation(m_folder.path("file"));
    waitUntil([&] { return service.calls().size() == 2; });
    fileManager.reset();
    EXPECT_TRUE(m_opened.empty());
}

TEST_F(LinuxFileManagerTest, treatsAFileManagerThatDoesNotAnswerAsMissing)
{
    makeBus();
    m_folder.file("file");
    FakeFileManagerService service(Answers::withheld);
    const auto fileManager = makeFileManager(std::chrono::milliseconds(1));
    fileManager->reveal(m_folder.path("file"));
    waitUntil([&] { return !m_opened.empty(); });
    EXPECT_EQ(m_opened, Urls{url()});
    fileManager->showInformation(m_folder.path("file"));
    waitUntil([] { return !ownWindows().empty(); });
}

TEST_F(LinuxFileManagerTest, doesNotWaitForABusThatDoesNotAnswer)
{
    const SilentBus bus;
    m_folder.file("file");
    auto fileManager = makeFileManager();
    fileManager->reveal(m_folder.path("file"));
    waitUntil([&] { return bus.hasQueue(); });
    fileManager->showInformation(m_folder.path("file"));
    fileManager.reset();
    EXPECT_TRUE(m_opened.empty());
}

TEST_F(LinuxFileManagerTest, treatsABusThatDoesNotAnswerAsMissing)
{
    const SilentBus bus(10);
    m_folder.file("file");
    const auto fileManager = makeFileManager(std::chrono::milliseconds(20));
    fileManager->reveal(m_folder.path("file"));
    waitUntil([&] { return !m_opened.empty(); });
    EXPECT_EQ(m_opened, Urls{url()});
    fileManager->showInformation(m_folder.path("file"));
    waitUntil([] { return !ownWindows().empty(); });
}

TEST_F(LinuxFileManagerTest, mayBeDestroyedAtAnyMoment)
{
    m_folder.file("file");
    for (int round = 0; round < 20; ++round) {
        const auto fileManager = makeFileManager();
        fileManager->reveal(m_folder.path("file"));
        fileManager->showInformation(m_folder.path("file"));
        for (int events = 0; events < round; ++events) {
            QCoreApplication::processEvents();
        }
    }
    EXPECT_TRUE(ownWindows().empty());
}

} // namespace

} // namespace tessaly
