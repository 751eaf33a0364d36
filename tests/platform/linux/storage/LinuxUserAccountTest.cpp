#include "platform/linux/storage/LinuxUserAccount.hpp"

#include "tests/engine/ChildProcess.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

#include <pwd.h>
#include <unistd.h>

namespace tessaly {
namespace {

/// Runs the body with this HOME, or with none.
void runWithHome(const std::optional<std::string> &home, const std::function<void()> &body)
{
    runInChild([&] {
        unsetenv("HOME");
        if (home) {
            setenv("HOME", home->c_str(), 1);
        }
        body();
    });
}

/// What the password database says of us; nullptr when it does not know us.
const passwd *ourEntry()
{
    return getpwuid(geteuid());
}

TEST(LinuxUserAccount, hasTheLoginNameOfThePasswordDatabaseInAnyEnvironment)
{
    if (ourEntry() == nullptr) {
        GTEST_SKIP() << "needs a user whom the password database knows";
    }
    const std::string name = ourEntry()->pw_name;
    ASSERT_FALSE(name.empty());
    runInChild([&] {
        setenv("USER", "somebody else", 1);
        setenv("LOGNAME", "somebody else", 1);
        EXPECT_EQ(LinuxUserAccount().loginName(), name);
    });
}

TEST(LinuxUserAccount, hasTheHomeFolderOfTheEnvironment)
{
    runWithHome("/home/ada", [] { EXPECT_EQ(LinuxUserAccount().homeFolder(), "/home/ada"); });
    runWithHome("/home/\xFF", [] { EXPECT_EQ(LinuxUserAccount().homeFolder(), "/home/\xFF"); });
}

TEST(LinuxUserAccount, hasNoSlashAtTheEndOfItsHomeFolderButThatOfTheRootFolder)
{
    runWithHome("/home/ada//", [] { EXPECT_EQ(LinuxUserAccount().homeFolder(), "/home/ada"); });
    runWithHome("/", [] { EXPECT_EQ(LinuxUserAccount().homeFolder(), "/"); });
}

TEST(LinuxUserAccount, hasTheHomeFolderOfThePasswordDatabaseWithoutAnother)
{
    if (ourEntry() == nullptr || ourEntry()->pw_dir[0] != '/' || ourEntry()->pw_dir[1] == '\0') {
        GTEST_SKIP() << "needs a user whom the password database gives a home folder";
    }
    const std::string home = ourEntry()->pw_dir;
    for (const auto &variable : {std::optional<std::string>(), {""}, {"relative"}, {"~/c"}}) {
        runWithHome(variable, [&] { EXPECT_EQ(LinuxUserAccount().homeFolder(), home); });
    }
}

TEST(LinuxUserAccount, isEmptyForAnUnknownUser)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become an unknown user";
    }
    runWithHome(std::nullopt, [] {
        ASSERT_EQ(setuid(123456789), 0);
        EXPECT_EQ(LinuxUserAccount().loginName(), "");
        EXPECT_EQ(LinuxUserAccount().homeFolder(), "");
    });
}

TEST(LinuxUserAccount, keepsHomeFoldersInHome)
{
    EXPECT_EQ(LinuxUserAccount().usersFolder(), "/home");
}

} // namespace
} // namespace tessaly
