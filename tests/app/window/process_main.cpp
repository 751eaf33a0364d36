#include "tests/platform/linux/OwnMounts.hpp"
#include "tests/platform/linux/PrivateBus.hpp"

#include <QCoreApplication>

#include <gtest/gtest.h>

/// Mounts of our own where we may have such, and no session bus until a test makes one.
int main(int argc, char **argv)
{
    tessaly::takeOwnMounts();
    const tessaly::SessionBusPlace place;
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
