#include "tests/TestFonts.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/OwnMounts.hpp"
#include "tests/platform/linux/PrivateBus.hpp"

#include <QApplication>

#include <gtest/gtest.h>

#include <cstdlib>

#include <sys/stat.h>

/// Mounts of our own where we may have such. Windows that nobody sees, on a desktop that has
/// nothing to do with the user's: no session bus but where a test makes one, and a home folder in
/// which Qt may keep what it likes.
int main(int argc, char **argv)
{
    tessaly::takeOwnMounts();
    const tessaly::SessionBusPlace place;
    const tessaly::TemporaryFolder home;
    setenv("HOME", home.path().c_str(), 1);
    chmod(home.path().c_str(), S_IRWXU); // as Qt wants it
    setenv("XDG_RUNTIME_DIR", home.path().c_str(), 1);
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("XDG_CACHE_HOME");
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    tessaly::useTestFonts();
    const QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
