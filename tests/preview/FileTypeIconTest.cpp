#include "preview/FileTypeIcon.hpp"

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/preview/PreviewFiles.hpp"

#include <QDir>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// With an icon theme that has one icon: "red", of 16 by 16 pixels.
class FileTypeIconTest : public testing::Test {
protected:
    FileTypeIconTest()
    {
        const QString theme = QFile::decodeName(m_folder.path("looks").c_str());
        QDir().mkpath(theme + u"/16x16"_s);
        writeFile(m_folder.path("looks/index.theme"),
                  "[Icon Theme]\nName=looks\nDirectories=16x16\n[16x16]\nSize=16\nType=Fixed\n");
        writeFile(m_folder.path("looks/16x16/red.png"), imageBytes("png", {16, 16}, Qt::red));
        QIcon::setThemeSearchPaths({QFile::decodeName(m_folder.path("").c_str())});
        QIcon::setThemeName(u"looks"_s);
    }
    ~FileTypeIconTest() override
    {
        QIcon::setThemeSearchPaths(m_pathsBefore);
        QIcon::setThemeName(m_themeBefore);
    }
    Q_DISABLE_COPY_MOVE(FileTypeIconTest)

    /// The icon in a square of 64 points at (8, 8), on black.
    static QImage drawn(const PreviewInfo &info, double scale = 1)
    {
        QImage image((QSizeF(80, 80) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::black);
        QPainter painter(&image);
        drawFileTypeIcon(painter, info, {8, 8, 64, 64});
        return image;
    }

    static PreviewInfo infoOf(const QString &name, const QString &iconName)
    {
        PreviewInfo info;
        info.name = name;
        info.iconName = iconName;
        return info;
    }

    const TemporaryFolder m_folder;
    const QStringList m_pathsBefore = QIcon::themeSearchPaths();
    const QString m_themeBefore = QIcon::themeName();
};

TEST_F(FileTypeIconTest, theThemesIconIsInTheMiddleAndNoLargerThanItIs)
{
    const QImage image = drawn(infoOf(u"a.txt"_s, u"red"_s));
    EXPECT_EQ(image.pixelColor(40, 40), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(32, 32), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(31, 31), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(47, 47), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(48, 48), QColor(Qt::black));
}

TEST_F(FileTypeIconTest, aTypeWithoutAnIconHasASheetWithTheFilesEnding)
{
    for (const double scale : {1.0, 1.5, 2.0}) {
        const QImage plain = drawn(infoOf(u"data"_s, u"none"_s), scale);
        const auto at = [&](double x, double y) {
            return plain.pixelColor(static_cast<int>(x * scale), static_cast<int>(y * scale));
        };
        EXPECT_GT(at(40, 50).lightness(), 200) << scale;
        EXPECT_EQ(at(10, 40), QColor(Qt::black)) << "beside the sheet";
        EXPECT_EQ(at(58, 12), QColor(Qt::black)) << "beyond its folded corner";
        EXPECT_NE(plain, drawn(infoOf(u"data.bin"_s, u"none"_s), scale));
        EXPECT_EQ(plain, drawn(infoOf(u"data.endless"_s, u"none"_s), scale)) << "too long to fit";
        EXPECT_EQ(plain, drawn(infoOf(u".bin"_s, u"none"_s), scale)) << "a name, and no ending";
    }
}

} // namespace
} // namespace tessaly
