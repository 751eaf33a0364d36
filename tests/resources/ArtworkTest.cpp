#include "resources/Artwork.hpp"

#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

TEST(Artwork, everyImageComesAtTwoScales)
{
    struct {
        QString name;
        int points;
    } const images[]{
        {u"_tq_but"_s, 28},    {u"_tq_butp"_s, 28},   {u"folder"_s, 28}, {u"file"_s, 28},
        {u"trash"_s, 28},      {u"trash_full"_s, 28}, {u"drives"_s, 24}, {u"home"_s, 24},
        {u"scan"_s, 24},       {u"history"_s, 24},    {u"menu"_s, 24},   {u"more"_s, 24},
        {u"eject"_s, 24},      {u"remove"_s, 24},     {u"drive"_s, 40},  {u"drive_usb"_s, 40},
        {u"home_large"_s, 80},
    };
    for (const auto &[name, points] : images) {
        EXPECT_EQ(QImage(artworkPath(name + u".png"_s)).size(), QSize(points, points))
            << qPrintable(name);
        EXPECT_EQ(QImage(artworkPath(name + u"@2x.png"_s)).size(), QSize(points, points) * 2)
            << qPrintable(name);
    }
}

TEST(Artwork, iconTakesTheImageForTheScreen)
{
    const QIcon icon = artworkIcon(u"folder.png");
    EXPECT_EQ(icon.pixmap(QSize(28, 28), 1).size(), QSize(28, 28));
    EXPECT_EQ(icon.pixmap(QSize(28, 28), 2).size(), QSize(56, 56));
    EXPECT_EQ(
        icon.pixmap(QSize(28, 28), 2).toImage(),
        QImage(artworkPath(u"folder@2x.png")).convertToFormat(QImage::Format_ARGB32_Premultiplied));
}

TEST(Artwork, missingImageIsAnEmptyIcon)
{
    EXPECT_TRUE(artworkIcon(u"nothing.png").pixmap(QSize(28, 28)).isNull());
}

TEST(Artwork, programHasAnIconInEverySize)
{
    const QIcon icon = applicationIcon();
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        EXPECT_TRUE(icon.availableSizes().contains(QSize(size, size))) << size;
        const QString path = artworkPath(u"icons/hicolor/%1x%1/apps/tessaly.png"_s.arg(size));
        EXPECT_EQ(QImage(path).size(), QSize(size, size));
    }
}

TEST(Artwork, interfaceFilesHaveTheirPlace)
{
    EXPECT_EQ(interfacePath(u"KORVENFolderCell"), u":/tessaly/interface/KORVENFolderCell.ui"_s);
}

} // namespace
} // namespace tessaly
