#include "tests/platform/linux/PrivateBus.hpp"

#include <QCoreApplication>

#include <gtest/gtest.h>

/// Qt's D-Bus wants an application; its event loop does not run but where a test says so.
int main(int argc, char **argv)
{
    const tessaly::SessionBusPlace place;
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
