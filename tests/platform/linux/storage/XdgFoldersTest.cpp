#include "platform/linux/storage/XdgFolders.hpp"

#include "platform/linux/storage/LinuxDocumentsFolder.hpp"
#include "platform/linux/storage/LinuxSettingsStore.hpp"
#include "tests/engine/ChildProcess.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace tessaly {
namespace {

class XdgFoldersTest : public testing::Test {
protected:
    /// Runs the body in an environment in which only these variables are set.
    static void runWith(const std::map<std::string, std::string> &variables,
                        const std::function<void()> &body)
    {
        runInChild([&] {
            for (const char *name :
                 {"HOME", "XDG_CONFIG_DIRS", "XDG_CONFIG_HOME", "XDG_DATA_DIRS", "XDG_DATA_HOME"}) {
                unsetenv(name);
            }
            for (const auto &[name, value] : variables) {
                setenv(name.c_str(), value.c_str(), 1);
            }
            body();
        });
    }
};

TEST_F(XdgFoldersTest, areThoseOfTheEnvironment)
{
    runWith({{"HOME", "/home/ada"}, {"XDG_CONFIG_HOME", "/c"}, {"XDG_DATA_HOME", "/d/\xFF"}}, [] {
        EXPECT_EQ(XdgFolders::config(), "/c");
        EXPECT_EQ(XdgFolders::data(), "/d/\xFF");
        EXPECT_EQ(LinuxSettingsStore::defaultPath(), "/c/tessaly/settings.plist");
        EXPECT_EQ(LinuxDocumentsFolder::defaultPath(), "/d/\xFF/tessaly");
    });
}

TEST_F(XdgFoldersTest, lieInTheHomeFolderByDefault)
{
    runWith({{"HOME", "/home/ada"}}, [] {
        EXPECT_EQ(XdgFolders::config(), "/home/ada/.config");
        EXPECT_EQ(XdgFolders::data(), "/home/ada/.local/share");
        EXPECT_EQ(LinuxSettingsStore::defaultPath(), "/home/ada/.config/tessaly/settings.plist");
        EXPECT_EQ(LinuxDocumentsFolder::defaultPath(), "/home/ada/.local/share/tessaly");
    });
}

TEST_F(XdgFoldersTest, lieInTheHomeFolderWhenTheVariablesAreEmptyOrRelative)
{
    for (const char *value : {"", "relative", "./c", "~/c"}) {
        runWith({{"HOME", "/home/ada"}, {"XDG_CONFIG_HOME", value}, {"XDG_DATA_HOME", value}}, [] {
            EXPECT_EQ(XdgFolders::config(), "/home/ada/.config");
            EXPECT_EQ(XdgFolders::data(), "/home/ada/.local/share");
        });
    }
}

TEST_F(XdgFoldersTest, haveNoSlashAtTheirEnd)
{
    runWith({{"HOME", "/home/ada//"}, {"XDG_CONFIG_HOME", "/c/"}}, [] {
        EXPECT_EQ(XdgFolders::home(), "/home/ada");
        EXPECT_EQ(XdgFolders::config(), "/c");
        EXPECT_EQ(XdgFolders::data(), "/home/ada/.local/share");
    });
    runWith({{"HOME", "/"}}, [] { EXPECT_EQ(XdgFolders::config(), "/.config"); });
}

TEST_F(XdgFoldersTest, lieInTheHomeFolderOfThePasswordDatabaseWithoutAnother)
{
    const passwd *entry = getpwuid(geteuid());
    if (entry == nullptr || entry->pw_dir[0] != '/' || entry->pw_dir[1] == '\0') {
        GTEST_SKIP() << "needs a user whom the password database gives a home folder";
    }
    const std::string home = entry->pw_dir;
    for (const auto &variables :
         {std::map<std::string, std::string>(), {{"HOME", ""}}, {{"HOME", "relative"}}}) {
        runWith(variables, [&] {
            EXPECT_EQ(XdgFolders::home(), home);
            EXPECT_EQ(XdgFolders::config(), home + "/.config");
            EXPECT_EQ(XdgFolders::data(), home + "/.local/share");
        });
    }
}

TEST_F(XdgFoldersTest, areFollowedByThoseOfTheSystem)
{
    using Paths = std::vector<std::string>;
    runWith({{"HOME", "/home/ada"},
             {"XDG_CONFIG_DIRS", "/c1/:relative::/c2"},
             {"XDG_DATA_HOME", "/d"},
             {"XDG_DATA_DIRS", "/d1"}},
            [] {
                EXPECT_EQ(XdgFolders::configSearch(), (Paths{"/home/ada/.config", "/c1", "/c2"}));
                EXPECT_EQ(XdgFolders::dataSearch(), (Paths{"/d", "/d1"}));
            });
    for (const char *value : {"", "relative", ":"}) {
        runWith({{"HOME", "/h"}, {"XDG_CONFIG_DIRS", value}, {"XDG_DATA_DIRS", value}}, [] {
            EXPECT_EQ(XdgFolders::configSearch(), (Paths{"/h/.config", "/etc/xdg"}));
            EXPECT_EQ(XdgFolders::dataSearch(),
                      (Paths{"/h/.local/share", "/usr/local/share", "/usr/share"}));
        });
    }
    runWith({{"HOME", "/h"}}, [] {
        EXPECT_EQ(XdgFolders::dataSearch(),
                  (Paths{"/h/.local/share", "/usr/local/share", "/usr/share"}));
    });
}

TEST_F(XdgFoldersTest, areAbsoluteForAnUnknownUser)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become an unknown user";
    }
    runWith({}, [] {
        ASSERT_EQ(setuid(123456789), 0);
        EXPECT_EQ(XdgFolders::config(), "/.config");
    });
}

} // namespace
} // namespace tessaly
