#include "tests/TestFonts.hpp"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

TEST(TestFonts, areTheSameOnEachMachine)
{
    for (const QString &family : QFontDatabase::families()) {
        EXPECT_TRUE(QFontInfo(QFont(family)).family().startsWith(u"DejaVu Sans"))
            << qPrintable(family);
    }
    EXPECT_EQ(QFontInfo(QApplication::font()).family(), u"DejaVu Sans"_s)
        << "needs the package fonts-dejavu-core";
    EXPECT_EQ(QFontInfo(QFont(u"Lucida Grande"_s)).family(), u"DejaVu Sans"_s);
}

} // namespace
} // namespace tessaly
