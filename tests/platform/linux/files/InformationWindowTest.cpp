#include "platform/linux/files/InformationWindow.hpp"

#include "platform/linux/files/ItemInformation.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FakeDateTexts.hpp"

#include <QClipboard>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <string>

#include <sys/stat.h>

namespace tessaly {

namespace {

constexpr auto wideEnough = 10'000; ///< wide enough for any line

std::chrono::sys_seconds timeOf(std::int64_t seconds)
{
    return std::chrono::sys_seconds(std::chrono::seconds(seconds));
}

ItemInformation itemAt(const std::string &path, mode_t mode)
{
    ItemInformation item;
    item.path = path;
    item.mode = mode;
    item.owner = "ada";
    item.group = "staff";
    return item;
}

class InformationWindowTest : public testing::Test {
protected:
    /// Shows a window so wide that it leaves nothing out, unless told.
    InformationWindow &show(const ItemInformation &item, int width = wideEnough)
    {
        m_window = std::make_unique<InformationWindow>(item, m_dates);
        m_window->resize(width, m_window->height());
        m_window->show();
        return *m_window;
    }

    [[nodiscard]] QLabel *label(const char *name) const
    {
        return m_window->findChild<QLabel *>(QLatin1String(name));
    }

    /// "(none)" where there is no such label.
    [[nodiscard]] std::string text(const char *name) const
    {
        const QLabel *found = label(name);
        return found != nullptr ? found->text().toStdString() : "(none)";
    }

    FakeDateTexts m_dates;
    std::unique_ptr<InformationWindow> m_window;
};

TEST_F(InformationWindowTest, showsAFile)
{
    ItemInformation item = itemAt("/home/ada/notes.txt", S_IFREG | 0644);
    item.byteCount = 1'234'567;
    item.beginning = "text";
    item.created = timeOf(1'795'263'480);
    item.modified = timeOf(1'795'263'540);
    item.accessed = timeOf(-60);
    show(item);

    EXPECT_EQ(m_window->windowTitle(), QStringLiteral("Information about “notes.txt”"));
    EXPECT_EQ(text("name"), "notes.txt");
    EXPECT_EQ(text("kind"), "Plain text document");
    EXPECT_EQ(text("size"), "1.23 MB (1,234,567 bytes)");
    EXPECT_EQ(text("contains"), "(none)");
    EXPECT_EQ(text("where"), "/home/ada");
    EXPECT_EQ(text("created"), "2026-11-21 12:18 [3,1]");
    EXPECT_EQ(text("modified"), "2026-11-21 12:19 [3,1]");
    EXPECT_EQ(text("accessed"), "1969-12-31 23:59 [3,1]");
    EXPECT_EQ(text("owner"), "ada: read, write");
    EXPECT_EQ(text("group"), "staff: read");
    EXPECT_EQ(text("others"), "read");
    EXPECT_EQ(text("mode"), "rw-r--r--");
    EXPECT_EQ(text("problem"), "(none)");
}

TEST_F(InformationWindowTest, showsAFolder)
{
    ItemInformation item = itemAt("/home/ada", S_IFDIR | 0710);
    item.entryCount = 1200;
    show(item);
    EXPECT_EQ(text("kind"), "Folder");
    EXPECT_EQ(text("contains"), "1,200 items");
    EXPECT_EQ(text("size"), "(none)");
    EXPECT_EQ(text("created"), "(none)");
    EXPECT_EQ(text("owner"), "ada: read, write, enter");
    EXPECT_EQ(text("group"), "staff: enter");
    EXPECT_EQ(text("others"), "no access");
    EXPECT_EQ(text("mode"), "rwx--x---");

    item.entryCount = 1;
    show(item);
    EXPECT_EQ(text("contains"), "1 item");
    item.entryCount.reset();
    show(item);
    EXPECT_EQ(text("contains"), "This folder cannot be read");
}

TEST_F(InformationWindowTest, showsTheRoot)
{
    show(itemAt("/", S_IFDIR | 0755));
    EXPECT_EQ(text("name"), "/");
    EXPECT_EQ(text("where"), "/");
}

TEST_F(InformationWindowTest, showsALink)
{
    ItemInformation item = itemAt("/home/ada/link", S_IFLNK | 0777);
    item.target = "../\xFFx";
    item.isTargetThere = true;
    show(item);
    EXPECT_EQ(text("kind"), "Symbolic link");
    EXPECT_EQ(text("target"), "../?x");
    EXPECT_EQ(text("size"), "(none)");
    EXPECT_EQ(text("owner"), "ada");
    EXPECT_EQ(text("group"), "staff");
    EXPECT_EQ(text("others"), "(none)");
    EXPECT_EQ(text("mode"), "(none)");

    item.isTargetThere = false;
    show(item);
    EXPECT_EQ(text("target"), "../?x (not there)");
}

TEST_F(InformationWindowTest, knowsAFileByNameOrContents)
{
    ItemInformation item = itemAt("/home/ada/picture", S_IFREG | 0600);
    item.beginning = "\x89PNG\r\n\x1A\n";
    show(item);
    EXPECT_EQ(text("kind"), "PNG image");

    item.path = "/home/ada/picture.jpg"; // of which nothing may be read
    item.beginning.reset();
    show(item);
    EXPECT_EQ(text("kind"), "JPEG image");

    item.path = "/home/ada/unknown";
    show(item);
    EXPECT_EQ(text("kind"), "Unknown");
}

TEST_F(InformationWindowTest, showsWhateverElseThereIs)
{
    const auto kindOf = [this](mode_t type) {
        show(itemAt("/dev/x", type | 0600));
        return text("kind");
    };
    EXPECT_EQ(kindOf(S_IFIFO), "Pipe");
    EXPECT_EQ(kindOf(S_IFSOCK), "Socket");
    EXPECT_EQ(kindOf(S_IFCHR), "Character device");
    EXPECT_EQ(kindOf(S_IFBLK), "Block device");
    EXPECT_EQ(text("size"), "(none)");
}

TEST_F(InformationWindowTest, showsSizesOfFewBytes)
{
    ItemInformation item = itemAt("/x", S_IFREG | 0600);
    show(item);
    EXPECT_EQ(text("size"), "0.00 KB (0 bytes)");
    item.byteCount = 1;
    show(item);
    EXPECT_EQ(text("size"), "0.00 KB (1 byte)");
}

TEST_F(InformationWindowTest, marksSpecialPermissions)
{
    show(itemAt("/x", S_IFREG | 07777));
    EXPECT_EQ(text("mode"), "rwsrwsrwt");
    EXPECT_EQ(text("others"), "read, write, run");
    show(itemAt("/x", S_IFREG | 07000));
    EXPECT_EQ(text("mode"), "--S--S--T");
}

TEST_F(InformationWindowTest, showsNamesOfAnyBytesAsPlainText)
{
    show(itemAt("/<i>\xFF/<b>a\n\xE2\x80\xA8", S_IFREG | 0600));
    EXPECT_EQ(text("name"), "<b>a??");
    EXPECT_EQ(text("where"), "/<i>?");
    EXPECT_EQ(label("name")->textFormat(), Qt::PlainText);
}

TEST_F(InformationWindowTest, leavesOutTheMiddleOfALongName)
{
    const std::string name = "<b>begin" + std::string(200, 'm') + "end";
    show(itemAt("/home/" + name, S_IFREG | 0600), 400);
    EXPECT_EQ(m_window->width(), 400);
    const QString shown = label("name")->text();
    EXPECT_LT(shown.size(), 60);
    EXPECT_TRUE(shown.startsWith("<b>beg"));
    EXPECT_TRUE(shown.endsWith("end"));
    EXPECT_LE(QFontMetrics(label("name")->font()).horizontalAdvance(shown), label("name")->width());
    EXPECT_TRUE(label("name")->toolTip().contains("&lt;b&gt;begin" + QString(200, u'm') + "end"));
    EXPECT_EQ(label("name")->accessibleName().toStdString(), name);

    m_window->resize(wideEnough, m_window->height());
    EXPECT_EQ(text("name"), name);
    EXPECT_EQ(label("name")->toolTip(), "");
}

TEST_F(InformationWindowTest, copiesAllOfALineThatIsSelected)
{
    const std::string name = "begin" + std::string(200, 'm') + "end";
    show(itemAt("/home/" + name, S_IFREG | 0600), 400);
    QLabel *shown = label("name");
    shown->setSelection(0, static_cast<int>(shown->text().size()));
    QTest::keySequence(shown, QKeySequence::Copy);
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), name);

    shown->setSelection(1, 3);
    QTest::keySequence(shown, QKeySequence::Copy);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "egi");
}

TEST_F(InformationWindowTest, textsCanBeSelectedByMouseAndKeyboard)
{
    show(itemAt("/home/ada/notes.txt", S_IFREG | 0644));
    for (const char *name : {"name", "kind", "size", "where", "modified", "owner", "mode"}) {
        EXPECT_TRUE(label(name)->textInteractionFlags().testFlags(Qt::TextSelectableByMouse |
                                                                  Qt::TextSelectableByKeyboard))
            << name;
        EXPECT_FALSE(label(name)->accessibleName().isEmpty()) << name;
    }
    EXPECT_EQ(label("size")->accessibleDescription(), "Size");
}

TEST_F(InformationWindowTest, escapeClosesIt)
{
    auto *window = new InformationWindow(itemAt("/home/ada", S_IFDIR | 0755), m_dates);
    window->setAttribute(Qt::WA_DeleteOnClose);
    const QPointer<InformationWindow> shown = window;
    window->show();
    QTest::keyClick(window, Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(shown, nullptr);
}

TEST_F(InformationWindowTest, doesNotKeepTheProgramRunning)
{
    show(itemAt("/home/ada", S_IFDIR | 0755));
    EXPECT_FALSE(m_window->testAttribute(Qt::WA_QuitOnClose));
}

TEST_F(InformationWindowTest, saysWhyNothingIsKnown)
{
    ItemInformation item = itemAt("/home/ada/gone\n", 0);
    item.error = ENOENT;
    show(item);
    EXPECT_EQ(text("name"), "gone?");
    EXPECT_EQ(text("where"), "/home/ada");
    EXPECT_EQ(text("problem"), "This item is not there any more.");
    for (const char *name : {"kind", "size", "modified", "owner", "mode"}) {
        EXPECT_EQ(text(name), "(none)") << name;
    }

    item.error = EACCES;
    show(item);
    EXPECT_EQ(text("problem"), "You are not permitted to look into the folder of this item.");
    item.error = EIO;
    show(item);
    EXPECT_EQ(text("problem"), "This item cannot be looked at: Input/output error.");
}

} // namespace

} // namespace tessaly
