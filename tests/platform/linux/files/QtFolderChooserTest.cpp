#include "platform/linux/files/QtFolderChooser.hpp"

#include "platform/FileUrl.hpp"
#include "platform/linux/files/FolderDialog.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/HangingVolume.hpp"
#include "tests/platform/linux/StartedProgram.hpp"
#include "tests/platform/linux/WaitUntil.hpp"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QWidget>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessaly {

namespace {

using Answers = std::vector<std::optional<std::string>>;

/// A chooser that shows its dialog on a window.
class QtFolderChooserTest : public testing::Test {
protected:
    QtFolderChooserTest()
    {
        m_folder.folder("inside");
        m_window->show();
    }

    void ask(const std::string &initialFolder, const std::string &title = "Scan")
    {
        m_chooser->chooseFolder(*m_window, {initialFolder, title},
                                [this](const auto &answer) { m_answers.push_back(answer); });
    }

    [[nodiscard]] QList<FolderDialog *> dialogs() const
    {
        return m_window->findChildren<FolderDialog *>();
    }

    [[nodiscard]] FolderDialog &dialog() const { return *dialogs().at(0); }

    [[nodiscard]] QPushButton &button(QDialogButtonBox::StandardButton which) const
    {
        return *dialog().findChild<QDialogButtonBox *>()->button(which);
    }

    template <typename Widget>
    [[nodiscard]] Widget &part(const char *name) const
    {
        return *dialog().findChild<Widget *>(QString::fromLatin1(name));
    }
    [[nodiscard]] QLineEdit &path() const { return part<QLineEdit>("path"); }
    [[nodiscard]] QString message() const { return part<QLabel>("message").text(); }

    /// The folders that are listed and not hidden.
    [[nodiscard]] std::vector<std::string> listed() const
    {
        std::vector<std::string> names;
        const auto &list = part<QListWidget>("folders");
        for (int row = 0; row < list.count(); ++row) {
            if (!list.item(row)->isHidden()) {
                names.push_back(list.item(row)->text().toStdString());
            }
        }
        return names;
    }
    void waitForList(const std::vector<std::string> &names)
    {
        waitUntil([&] { return listed() == names; });
    }
    [[nodiscard]] QListWidgetItem &item(const char *name) const
    {
        return *part<QListWidget>("folders").findItems(QString::fromUtf8(name), {}).at(0);
    }
    void doubleClick(const char *name)
    {
        auto &list = part<QListWidget>("folders");
        const QPoint place = list.visualItemRect(&item(name)).center();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
    }

    void type(const std::string &text)
    {
        dialog().activateWindow();
        path().setFocus();
        path().clear();
        QTest::keyClicks(&path(), QString::fromStdString(text));
    }

    /// Waits for the next answer.
    [[nodiscard]] std::optional<std::string> answer()
    {
        waitUntil([this] { return !m_answers.empty(); });
        const auto answer = m_answers.front();
        m_answers.erase(m_answers.begin());
        return answer;
    }
    /// Waits until the dialog has a folder to start in.
    void waitForStart()
    {
        waitUntil([this] { return message().isEmpty(); });
    }

    /// The dialogs that were closed are deleted, as the event loop would do.
    static void clearUp() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    void confirm() { QTest::mouseClick(&button(QDialogButtonBox::Open), Qt::LeftButton); }
    void cancel() { QTest::mouseClick(&button(QDialogButtonBox::Cancel), Qt::LeftButton); }

    TemporaryFolder m_folder;
    std::unique_ptr<QWidget> m_window = std::make_unique<QWidget>();
    std::unique_ptr<QtFolderChooser> m_chooser = std::make_unique<QtFolderChooser>(TESSALY_PROBE);
    Answers m_answers;
};

TEST_F(QtFolderChooserTest, asksForOneFolderInFrontOfTheWindow)
{
    ask(m_folder.path(), "Save");
    ASSERT_EQ(dialogs().size(), 1);
    EXPECT_TRUE(dialog().isVisible());
    EXPECT_EQ(dialog().windowModality(), Qt::WindowModal);
    EXPECT_EQ(dialog().parentWidget(), m_window.get());
    EXPECT_EQ(dialog().windowTitle(), "Choose a Folder");
    EXPECT_EQ(dialog().currentFolder(), m_folder.path());
    EXPECT_EQ(button(QDialogButtonBox::Open).text(), "Save");
    EXPECT_TRUE(m_answers.empty());
}

TEST_F(QtFolderChooserTest, isASheetOfTheWholeWindow)
{
    QWidget inner(m_window.get());
    m_chooser->chooseFolder(inner, {m_folder.path(), "Scan"}, [](const auto & /*answer*/) {});
    EXPECT_EQ(dialog().parentWidget(), m_window.get());
}

TEST_F(QtFolderChooserTest, answersTheFolderThatIsTyped)
{
    ask(m_folder.path());
    type(m_folder.path("inside"));
    EXPECT_EQ(button(QDialogButtonBox::Open).text(), "Scan");
    confirm();
    EXPECT_EQ(answer(), m_folder.path("inside"));
}

TEST_F(QtFolderChooserTest, answersTheFolderThatIsTypedAndNotOneOnTheWay)
{
    m_folder.folder("inside/deeper");
    ask(m_folder.path("inside"));
    type(m_folder.path("inside//deeper/"));
    confirm();
    EXPECT_EQ(answer(), m_folder.path("inside/deeper"));
}

TEST_F(QtFolderChooserTest, answersTheNameThatIsTyped)
{
    ask(m_folder.path());
    type("inside");
    QTest::keyClick(&path(), Qt::Key_Return);
    EXPECT_EQ(answer(), m_folder.path("inside"));
}

TEST_F(QtFolderChooserTest, answersTheFolderInWhichItStarts)
{
    ask(m_folder.path() + "//inside/");
    confirm();
    EXPECT_EQ(answer(), m_folder.path("inside"));
}

TEST_F(QtFolderChooserTest, answersFoldersOfOddNames)
{
    for (const std::string name : {"a b", "100%#?", "caf\xC3\xA9", "\"quoted\" \"twice\"",
                                   "back\\slash", " file:", "a\nb", "\xFF", "~"}) {
        m_folder.folder(name);
        ask(m_folder.path(name));
        confirm();
        EXPECT_EQ(answer(), m_folder.path(name));
        clearUp();
    }
}

TEST_F(QtFolderChooserTest, answersNothingWhenCancelled)
{
    ask(m_folder.path());
    type(m_folder.path("inside"));
    cancel();
    EXPECT_EQ(m_answers, Answers{std::nullopt});
    clearUp();

    ask(m_folder.path());
    QTest::keyClick(&dialog(), Qt::Key_Escape);
    EXPECT_EQ(m_answers, (Answers{std::nullopt, std::nullopt}));
}

TEST_F(QtFolderChooserTest, doesNotAcceptAFile)
{
    m_folder.file("file");
    ask(m_folder.path());
    for (const std::string name : {"file", "missing", "file/inside"}) {
        type(m_folder.path(name));
        QTest::keyClick(&path(), Qt::Key_Return);
        const QString expected = QStringLiteral("There is no folder “%1”.")
                                     .arg(QString::fromStdString(m_folder.path(name)));
        waitUntil([&] { return message() == expected; });
        EXPECT_TRUE(dialog().isVisible());
    }
    EXPECT_TRUE(m_answers.empty());
    QTest::keyClick(&path(), Qt::Key_Backspace);
    EXPECT_EQ(message(), QString());
}

TEST_F(QtFolderChooserTest, aTypedUrlReachesAFolderOfAnyBytes)
{
    m_folder.folder("\xFF %");
    ask(m_folder.path());
    type(fileUrl(m_folder.path("\xFF %")).value());
    confirm();
    EXPECT_EQ(answer(), m_folder.path("\xFF %"));
}

TEST_F(QtFolderChooserTest, listsFoldersAndLinksToFolders)
{
    for (const char *name : {"inside/b", "inside/A", "inside/.hidden", "inside/\xFF"}) {
        m_folder.folder(name);
    }
    m_folder.file("inside/file");
    m_folder.link("inside/link", "A");
    m_folder.link("inside/broken", "nowhere");
    ask(m_folder.path("inside"));
    waitForList({"?", "A", "b", "link"});
    for (auto *box : dialog().findChildren<QCheckBox *>()) {
        box->click();
    }
    EXPECT_EQ(listed(), (std::vector<std::string>{".hidden", "?", "A", "b", "link"}));
    part<QListWidget>("folders").setCurrentItem(&item("?"));
    confirm();
    EXPECT_EQ(answer(), m_folder.path("inside/\xFF"));
}

TEST_F(QtFolderChooserTest, opensFoldersAndTheirParents)
{
    m_folder.folder("inside/deeper");
    ask(m_folder.path());
    waitForList({"inside"});
    doubleClick("inside");
    waitForList({"deeper"});
    EXPECT_EQ(path().text().toStdString(), m_folder.path("inside"));
    part<QListWidget>("folders").setCurrentRow(0);
    EXPECT_EQ(path().text().toStdString(), m_folder.path("inside/deeper"));
    QTest::keyClick(&part<QListWidget>("folders"), Qt::Key_Return);
    waitUntil([this] { return dialog().currentFolder() == m_folder.path("inside/deeper"); });
    waitForStart();
    EXPECT_TRUE(m_answers.empty()) << "Return has not confirmed";

    QTest::mouseClick(&part<QToolButton>("upButton"), Qt::LeftButton);
    waitForList({"deeper"});
    QTest::keyClick(&part<QListWidget>("folders"), Qt::Key_Backspace);
    waitForList({"inside"});
    EXPECT_EQ(path().text().toStdString(), m_folder.path());
    confirm();
    EXPECT_EQ(answer(), m_folder.path());
}

TEST_F(QtFolderChooserTest, hasPlacesToStartFrom)
{
    ask(m_folder.path());
    auto &places = part<QListWidget>("places");
    ASSERT_GE(places.count(), 2);
    EXPECT_EQ(places.item(0)->text(), "Home");
    QTest::mouseClick(places.viewport(), Qt::LeftButton, {},
                      places.visualItemRect(places.item(1)).center());
    EXPECT_EQ(dialog().currentFolder(), "/");
    waitForStart();
    confirm();
    EXPECT_EQ(answer(), "/");
}

TEST_F(QtFolderChooserTest, startsInTheNearestFolderThereIs)
{
    m_folder.file("file");
    for (const std::string name : {"missing/missing", "file", "file/missing"}) {
        ask(m_folder.path(name));
        waitForStart();
        EXPECT_EQ(dialog().currentFolder(), m_folder.path()) << name;
        cancel();
        clearUp();
    }
}

TEST_F(QtFolderChooserTest, startsAtHomeWhenItIsToldNoPath)
{
    for (const std::string path : {"", "relative"}) {
        ask(path);
        EXPECT_EQ(dialog().currentFolder(), std::getenv("HOME"));
        cancel();
        clearUp();
    }
}

TEST_F(QtFolderChooserTest, staysWithTheDialogThatIsOpen)
{
    ask(m_folder.path());
    const Answers none{std::nullopt};
    Answers others;
    m_chooser->chooseFolder(*m_window, {m_folder.path("inside"), "Save"},
                            [&](const auto &answer) { others.push_back(answer); });
    EXPECT_TRUE(others.empty()); // not within the call
    waitUntil([&] { return !others.empty(); });
    EXPECT_EQ(others, none);
    EXPECT_EQ(dialogs().size(), 1);
    EXPECT_EQ(button(QDialogButtonBox::Open).text(), "Scan");

    waitForStart();
    confirm();
    EXPECT_EQ(answer(), m_folder.path());
    EXPECT_EQ(others, none);
}

TEST_F(QtFolderChooserTest, mayBeAskedAgainByTheAnswer)
{
    m_chooser->chooseFolder(*m_window, {m_folder.path(), "Scan"},
                            [this](const auto & /*answer*/) { ask(m_folder.path("inside")); });
    cancel();
    clearUp();
    ASSERT_EQ(dialogs().size(), 1);
    confirm();
    EXPECT_EQ(answer(), m_folder.path("inside"));
}

TEST_F(QtFolderChooserTest, doesNotAnswerAfterTheWindowIsDestroyed)
{
    ask(m_folder.path());
    m_window.reset();
    EXPECT_TRUE(m_answers.empty());

    m_window = std::make_unique<QWidget>();
    ask(m_folder.path());
    waitForStart();
    confirm();
    EXPECT_EQ(answer(), m_folder.path());
}

TEST_F(QtFolderChooserTest, doesNotAnswerAfterItIsDestroyed)
{
    ask(m_folder.path());
    ask(m_folder.path());
    m_chooser.reset();
    EXPECT_TRUE(dialogs().isEmpty());
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_answers.empty());
}

/// A folder in which a file system is mounted that does not answer.
class HangingFolderTest : public QtFolderChooserTest {
protected:
    void SetUp() override
    {
        if (const auto missing = HangingVolume::missingRequirement()) {
            GTEST_SKIP() << "needs " << *missing;
        }
        m_folder.folder("inside/dead");
        m_folder.folder("inside/living");
        m_folder.link("inside/link", "dead");
        m_volume = std::make_unique<HangingVolume>(
            m_folder.path("inside/dead"), std::vector<std::string>{"statfs", "getattr", "readdir"});
        m_volume->hang();
    }

    std::unique_ptr<HangingVolume> m_volume;
};

TEST_F(HangingFolderTest, isListedAmongTheOthers)
{
    ask(m_folder.path("inside"));
    waitForList({"dead", "living"});
    m_volume->waitUntilHeld("getattr"); // for the link, on which only the child waits
    doubleClick("living");
    waitUntil([this] { return dialog().currentFolder() == m_folder.path("inside/living"); });
    waitForStart();
    confirm();
    EXPECT_EQ(answer(), m_folder.path("inside/living"));
}

TEST_F(HangingFolderTest, canBeLeftAgainAndAnswersLater)
{
    ask(m_folder.path("inside"));
    waitForList({"dead", "living"});
    doubleClick("dead");
    EXPECT_EQ(dialog().currentFolder(), m_folder.path("inside/dead"));
    m_volume->waitUntilHeld("readdir");
    QCoreApplication::processEvents();
    EXPECT_EQ(message(), "Looking into “dead”…");
    QTest::mouseClick(&part<QToolButton>("upButton"), Qt::LeftButton);
    waitForList({"dead", "living"});

    doubleClick("dead");
    m_volume->answer();
    waitForList({"inside", "link"});
    confirm();
    EXPECT_EQ(answer(), m_folder.path("inside/dead"));
}

TEST_F(HangingFolderTest, canBeTypedAndGivenUp)
{
    ask(m_folder.path());
    type(m_folder.path("inside/dead/inside"));
    QTest::keyClick(&path(), Qt::Key_Return);
    m_volume->waitUntilHeld("getattr");
    EXPECT_TRUE(dialog().isVisible());
    type(m_folder.path("inside/living"));
    QTest::keyClick(&path(), Qt::Key_Return);
    EXPECT_EQ(answer(), m_folder.path("inside/living"));
    clearUp();

    ask(m_folder.path("inside/dead"));
    QTest::keyClick(&dialog(), Qt::Key_Escape);
    EXPECT_EQ(answer(), std::nullopt);
}

TEST_F(HangingFolderTest, keepsNoProgramFromEnding)
{
    for (const auto &[folder, operation] :
         {std::pair("inside", "getattr"), std::pair("inside/dead", "readdir")}) {
        StartedProgram program({TESSALY_ENDING_PROGRAM, "choose-folder", m_folder.path(folder)});
        EXPECT_EQ(program.reportedLine(), "asked");
        m_volume->waitUntilHeld(operation);
        program.sendSignal(SIGTERM);
        EXPECT_EQ(program.waitForEnd(), 0) << program.complaints();
        m_volume->answer(); // so that the child can end
        m_volume->hang();
    }
}

} // namespace

} // namespace tessaly
