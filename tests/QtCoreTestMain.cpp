// The main function of tests that need an event loop, but neither a screen nor widgets.

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argumentCount, char **arguments)
{
    testing::InitGoogleTest(&argumentCount, arguments);
    const QCoreApplication application(argumentCount, arguments);
    return RUN_ALL_TESTS();
}
