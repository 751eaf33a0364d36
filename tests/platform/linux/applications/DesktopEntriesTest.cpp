#include "platform/linux/applications/DesktopEntries.hpp"

#include "tests/platform/linux/applications/MadeDesktop.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tessaly {
namespace {

using Ids = std::vector<std::string>;

constexpr auto folders = "inode/directory";

class DesktopEntriesTest : public testing::Test {
protected:
    static DesktopEntries entries() { return DesktopEntries(DesktopPlaces::ofEnvironment()); }

    static Ids programs()
    {
        Ids ids;
        for (const DesktopEntry &entry : entries().programs()) {
            ids.push_back(entry.id());
        }
        return ids;
    }

    /// The id of the default program; "none" when there is none.
    static std::string defaultFor(const std::string &type, std::string_view category = {})
    {
        const auto entry = entries().defaultProgram(type, category);
        return entry ? entry->id() : "none";
    }

    static bool isShown(const std::string &id, const std::vector<std::string> &desktops)
    {
        const auto entry = entries().program(id);
        EXPECT_TRUE(entry) << id;
        return entry && entry->isShownIn(desktops);
    }

    MadeDesktop m_desktop{"Some:GNOME"};
};

TEST_F(DesktopEntriesTest, areFoundInTheOrderOfTheirFolders)
{
    m_desktop.install("c", {}, "data");
    m_desktop.install("b", {}, "usr");
    m_desktop.install("a", {}, "usr");
    m_desktop.install("d", {}, "local");
    EXPECT_EQ(programs(), (Ids{"c.desktop", "d.desktop", "a.desktop", "b.desktop"}));
}

TEST_F(DesktopEntriesTest, hideThoseOfLessImportantFolders)
{
    m_desktop.install("a", "Path=/usr");
    m_desktop.install("a", "Path=/home", "data");
    m_desktop.install("b");
    m_desktop.install("b", "Hidden=true", "local");
    EXPECT_EQ(programs(), Ids{"a.desktop"});
    EXPECT_EQ(entries().program("a.desktop")->workingFolder(), "/home");
    EXPECT_FALSE(entries().program("b.desktop"));
}

TEST_F(DesktopEntriesTest, haveTheirSubfolderInTheirId)
{
    m_desktop.install("kde-one");
    m_desktop.addProgram("two");
    m_desktop.write("usr/applications/kde/deep/two.desktop",
                    "[Desktop Entry]\nType=Application\nExec=two\n");
    EXPECT_TRUE(entries().program("kde-one.desktop"));
    EXPECT_TRUE(entries().program("kde-deep-two.desktop"));
    EXPECT_FALSE(entries().program("two.desktop"));
}

TEST_F(DesktopEntriesTest, leaveOutWhatCannotBeStarted)
{
    m_desktop.install("good", "TryExec=good");
    m_desktop.install("missing", "TryExec=not-there");
    m_desktop.install("terminal", "Terminal=true");
    m_desktop.addProgram("run");
    m_desktop.write("usr/applications/gone.desktop",
                    "[Desktop Entry]\nType=Application\nExec=not-there\n");
    m_desktop.write("usr/applications/link.desktop", "[Desktop Entry]\nType=Link\nExec=run\n");
    m_desktop.write("usr/applications/none.desktop", "[Desktop Entry]\nType=Application\n");
    m_desktop.write("usr/applications/shell.desktop",
                    "[Desktop Entry]\nType=Application\nExec=run; run\n");
    m_desktop.write("usr/applications/empty.desktop", "");
    m_desktop.write("usr/applications/no-program.desktop",
                    "[Desktop Entry]\nType=Application\nExec=text\n");
    m_desktop.write("bin/text", "not a program");
    m_desktop.write("usr/applications/run.txt", "[Desktop Entry]\nType=Application\nExec=run\n");
    EXPECT_EQ(programs(), Ids{"good.desktop"});
}

TEST_F(DesktopEntriesTest, sayOnWhichDesktopsTheyAreShown)
{
    m_desktop.install("any");
    m_desktop.install("gnome", "OnlyShowIn=GNOME;Unity;");
    m_desktop.install("others", "NotShowIn=GNOME;");
    m_desktop.install("none", "NoDisplay=true");
    EXPECT_TRUE(isShown("any.desktop", {}));
    EXPECT_TRUE(isShown("gnome.desktop", {"Some", "GNOME"}));
    EXPECT_FALSE(isShown("gnome.desktop", {"KDE"}));
    EXPECT_FALSE(isShown("gnome.desktop", {}));
    EXPECT_FALSE(isShown("others.desktop", {"GNOME"}));
    EXPECT_TRUE(isShown("others.desktop", {"KDE"}));
    EXPECT_FALSE(isShown("none.desktop", {"KDE"}));
}

TEST_F(DesktopEntriesTest, areChosenInTheOrderOfTheLists)
{
    const std::vector<std::string> lists{"config/some-mimeapps.list",
                                         "config/gnome-mimeapps.list",
                                         "config/mimeapps.list",
                                         "etc/some-mimeapps.list",
                                         "etc/mimeapps.list",
                                         "data/applications/mimeapps.list",
                                         "local/applications/gnome-mimeapps.list",
                                         "local/applications/mimeapps.list",
                                         "usr/applications/mimeapps.list"};
    EXPECT_EQ(defaultFor(folders), "none");
    for (std::size_t i = lists.size(); i > 0; --i) {
        const std::string id = "program" + std::to_string(i);
        m_desktop.install(id);
        m_desktop.write(lists.at(i - 1),
                        "[Default Applications]\ninode/directory=" + id + ".desktop\n");
        EXPECT_EQ(defaultFor(folders), id + ".desktop") << lists.at(i - 1);
    }
}

TEST_F(DesktopEntriesTest, skipDefaultsThatAreNotInstalled)
{
    m_desktop.install("second");
    m_desktop.install("third");
    m_desktop.write("config/mimeapps.list",
                    "[Default Applications]\ninode/directory=gone.desktop;second.desktop;\n");
    m_desktop.write("etc/mimeapps.list", "[Default Applications]\ninode/directory=third.desktop\n");
    EXPECT_EQ(defaultFor(folders), "second.desktop");
    std::filesystem::remove(m_desktop.path("bin/second"));
    EXPECT_EQ(defaultFor(folders), "third.desktop");
}

TEST_F(DesktopEntriesTest, areFoundByTheirMimeTypesWithoutAChoice)
{
    m_desktop.install("editor", "MimeType=text/plain;inode/directory;");
    m_desktop.install("files", "MimeType=inode/directory;\nCategories=System;FileManager;");
    EXPECT_EQ(defaultFor(folders), "editor.desktop");
    EXPECT_EQ(defaultFor(folders, "FileManager"), "files.desktop");
    EXPECT_EQ(defaultFor(folders, "WebBrowser"), "editor.desktop");
    EXPECT_EQ(defaultFor("text/plain"), "editor.desktop");
    EXPECT_EQ(defaultFor("image/png"), "none");

    m_desktop.install("added");
    m_desktop.write("etc/mimeapps.list", "[Added Associations]\ninode/directory=added.desktop\n");
    EXPECT_EQ(defaultFor(folders, "FileManager"), "added.desktop");

    m_desktop.write("config/mimeapps.list", "[Removed Associations]\n"
                                            "inode/directory=added.desktop;files.desktop\n");
    EXPECT_EQ(defaultFor(folders, "FileManager"), "editor.desktop");
}

} // namespace
} // namespace tessaly
