#include "tests/platform/linux/PrivateBus.hpp"

#include <QCoreApplication>

#include <gtest/gtest.h>

/// No session bus until a test makes one.
int main(int argc, char **argv)
{
    const tessaly::SessionBusPlace place;
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
