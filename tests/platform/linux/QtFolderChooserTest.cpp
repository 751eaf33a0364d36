#include "platform/linux/QtFolderChooser.hpp"

#include "platform/FileUrl.hpp"
#include "platform/linux/FolderDialog.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/WaitUntil.hpp"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

namespace {

using Answers = std::vector<std::optional<std::string>>;

/// A chooser that shows Qt's own dialog on a window.
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

    void type(const std::string &text)
    {
        auto *edit = dialog().findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        dialog().activateWindow();
        edit->setFocus(); // without it, Qt takes the text to be its own
        waitUntil([&] { return edit->hasFocus(); });
        edit->clear();
        QTest::keyClicks(edit, QString::fromStdString(text));
    }

    /// The dialogs that were closed are deleted, as the event loop would do.
    static void clearUp() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    void confirm() { QTest::mouseClick(&button(QDialogButtonBox::Open), Qt::LeftButton); }
    void cancel() { QTest::mouseClick(&button(QDialogButtonBox::Cancel), Qt::LeftButton); }

    TemporaryFolder m_folder;
    std::unique_ptr<QWidget> m_window = std::make_unique<QWidget>();
    std::unique_ptr<QtFolderChooser> m_chooser = std::make_unique<QtFolderChooser>();
    Answers m_answers;
};

TEST_F(QtFolderChooserTest, asksForOneFolderInFrontOfTheWindow)
{
    ask(m_folder.path(), "Save");
    ASSERT_EQ(dialogs().size(), 1);
    EXPECT_TRUE(dialog().isVisible());
    EXPECT_EQ(dialog().windowModality(), Qt::WindowModal);
    EXPECT_EQ(dialog().parentWidget(), m_window.get());
    EXPECT_EQ(dialog().fileMode(), QFileDialog::Directory);
    EXPECT_TRUE(dialog().testOption(QFileDialog::ShowDirsOnly));
    EXPECT_FALSE(dialog().testOption(QFileDialog::DontUseNativeDialog));
    EXPECT_EQ(dialog().directory().absolutePath().toStdString(), m_folder.path());
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
    EXPECT_EQ(m_answers, Answers{m_folder.path("inside")});
}

TEST_F(QtFolderChooserTest, answersTheFolderThatIsTypedAndNotOneOnTheWay)
{
    m_folder.folder("inside/deeper");
    ask(m_folder.path("inside"));
    type(m_folder.path("inside//deeper/"));
    confirm();
    EXPECT_EQ(m_answers, Answers{m_folder.path("inside/deeper")});
}

TEST_F(QtFolderChooserTest, answersTheNameThatIsTyped)
{
    ask(m_folder.path());
    type("inside");
    QTest::keyClick(&dialog(), Qt::Key_Return);
    EXPECT_EQ(m_answers, Answers{m_folder.path("inside")});
}

TEST_F(QtFolderChooserTest, answersTheFolderInWhichItStarts)
{
    ask(m_folder.path() + "//inside/");
    confirm();
    EXPECT_EQ(m_answers, Answers{m_folder.path("inside")});
}

TEST_F(QtFolderChooserTest, answersFoldersOfOddNames)
{
    for (const std::string name : {"a b", "100%#?", "caf\xC3\xA9", "\"quoted\" \"twice\"",
                                   "back\\slash", " file:", "a\nb"}) {
        m_folder.folder(name);
        ask(m_folder.path(name));
        confirm();
        EXPECT_EQ(m_answers.back(), m_folder.path(name));
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
    type(m_folder.path("file"));
    EXPECT_FALSE(button(QDialogButtonBox::Open).isEnabled());
    QTest::keyClick(&dialog(), Qt::Key_Return);
    EXPECT_TRUE(dialog().isVisible());
    EXPECT_TRUE(m_answers.empty());
}

TEST_F(QtFolderChooserTest, aTypedUrlReachesAFolderOfAnyBytes)
{
    m_folder.folder("\xFF %");
    ask(m_folder.path());
    type(fileUrl(m_folder.path("\xFF %")).value());
    confirm();
    EXPECT_EQ(m_answers, Answers{m_folder.path("\xFF %")});
}

TEST_F(QtFolderChooserTest, startsAboveAFolderThatQtCannotName)
{
    m_folder.folder("\xFF");
    m_folder.folder("\xFF/inside");
    ask(m_folder.path("\xFF/inside"));
    EXPECT_EQ(dialog().directory().absolutePath().toStdString(), m_folder.path());
}

TEST_F(QtFolderChooserTest, startsInTheNearestFolderThereIs)
{
    m_folder.file("file");
    for (const std::string name : {"missing/missing", "file", "file/missing"}) {
        ask(m_folder.path(name));
        EXPECT_EQ(dialog().directory().absolutePath().toStdString(), m_folder.path()) << name;
        cancel();
        clearUp();
    }
}

TEST_F(QtFolderChooserTest, startsAtHomeWhenItIsToldNoPath)
{
    for (const std::string path : {"", "relative"}) {
        ask(path);
        EXPECT_EQ(dialog().directory().absolutePath().toStdString(), std::getenv("HOME"));
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

    confirm();
    EXPECT_EQ(m_answers, Answers{m_folder.path()});
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
    EXPECT_EQ(m_answers, Answers{m_folder.path("inside")});
}

TEST_F(QtFolderChooserTest, answersNoMoreWhenTheWindowIsGone)
{
    ask(m_folder.path());
    m_window.reset();
    EXPECT_TRUE(m_answers.empty());

    m_window = std::make_unique<QWidget>();
    ask(m_folder.path());
    confirm();
    EXPECT_EQ(m_answers, Answers{m_folder.path()});
}

TEST_F(QtFolderChooserTest, answersNoMoreWhenItIsGone)
{
    ask(m_folder.path());
    ask(m_folder.path());
    m_chooser.reset();
    EXPECT_TRUE(dialogs().isEmpty());
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_answers.empty());
}

} // namespace

} // namespace tessaly
