// The main function of tests that need a QApplication: on a screen in memory, in a language, fonts
// and a look that are the same everywhere.

#include "tests/TestFonts.hpp"

#include <QApplication>
#include <QLocale>

#include <gtest/gtest.h>

int main(int argumentCount, char **arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    tessaly::useTestFonts();
    qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    testing::InitGoogleTest(&argumentCount, arguments);
    QLocale::setDefault(QLocale::c());
    const QApplication application(argumentCount, arguments);
    return RUN_ALL_TESTS();
}
