#include "preview/decoder/ImageDecoder.hpp"

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/preview/PreviewFiles.hpp"

#include <QBuffer>
#include <QFile>

#include <gtest/gtest.h>

#include <unistd.h>

namespace tessaly {
namespace {

constexpr QSize bounds(1000, 800);

class ImageDecoderTest : public testing::Test {
protected:
    DecodedImage decoded(const QByteArray &bytes)
    {
        writeFile(m_folder.path("image"), bytes);
        return decodedFile();
    }

    DecodedImage decodedFile()
    {
        QFile file(QString::fromStdString(m_folder.path("image")));
        file.open(QIODevice::ReadOnly);
        return decodeImage(file, bounds);
    }

    static DecodedImage decodedSvg(QByteArray bytes)
    {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        return decodeSvg(buffer, bounds);
    }

    const TemporaryFolder m_folder;
};

/// A JPEG file that says that it is to be turned by a quarter.
QByteArray turnedJpeg(QSize size)
{
    QByteArray bytes = imageBytes("jpg", size, Qt::red);
    const QByteArray orientation("\xFF\xE1\x00\x22"
                                 "Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0"
                                 "\0\0\0\0",
                                 36);
    return bytes.insert(2, orientation);
}

TEST_F(ImageDecoderTest, keepsSmallImagesAsTheyAre)
{
    for (const char *format : {"png", "jpg", "bmp"}) {
        const DecodedImage image = decoded(imageBytes(format, {40, 30}, Qt::blue));
        ASSERT_EQ(image.problem, DecoderProblem::none) << format;
        EXPECT_EQ(image.image.size(), QSize(40, 30));
        EXPECT_EQ(image.fullSize, QSize(40, 30));
        EXPECT_GT(image.image.pixelColor(20, 15).blue(), 250);
        EXPECT_FALSE(image.isMoving);
    }
}

TEST_F(ImageDecoderTest, scalesLargeImagesDown)
{
    for (const char *format : {"png", "jpg", "bmp"}) {
        const DecodedImage image = decoded(imageBytes(format, {4000, 2000}, Qt::blue));
        EXPECT_EQ(image.image.size(), QSize(1000, 500)) << format;
        EXPECT_EQ(image.fullSize, QSize(4000, 2000));
    }
}

TEST_F(ImageDecoderTest, turnsImagesUpright)
{
    const DecodedImage small = decoded(turnedJpeg({40, 20}));
    EXPECT_EQ(small.image.size(), QSize(20, 40));
    EXPECT_EQ(small.fullSize, QSize(20, 40));
    const DecodedImage large = decoded(turnedJpeg({4000, 2000}));
    EXPECT_EQ(large.image.size(), QSize(400, 800));
}

TEST_F(ImageDecoderTest, showsTheFramesOfAnImageThatMovesAgainAndAgain)
{
    EXPECT_TRUE(decoded(movingGif()).isMoving);
    QByteArray bytes = movingGif();
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    ImageFrames frames(buffer);
    for (int round = 0; round < 3; ++round) {
        for (const QColor &color : {QColor(Qt::red), QColor(Qt::blue)}) {
            const ImageFrames::Frame frame = frames.next();
            EXPECT_EQ(frame.image.pixelColor(0, 0), color) << round;
            EXPECT_EQ(frame.delayMs, 100) << round;
        }
    }
}

TEST_F(ImageDecoderTest, decodesImagesLineByLineThatWouldNotFitWhole)
{
    const DecodedImage image = decoded(colorPng(9000, 5000));
    ASSERT_EQ(image.problem, DecoderProblem::none);
    EXPECT_EQ(image.image.size(), QSize(1000, 555));
    EXPECT_EQ(image.fullSize, QSize(9000, 5000));
}

TEST_F(ImageDecoderTest, refusesImagesThatWouldHaveToBeDecodedWhole)
{
    EXPECT_EQ(decoded(greyPng(20'000, 20'000)).problem, DecoderProblem::tooLarge);
    EXPECT_EQ(decoded(greyPng(100'000, 100)).problem, DecoderProblem::none);
    writeFile(m_folder.path("image"), bmpHeader(12'000, 12'000));
    ASSERT_EQ(truncate(m_folder.path("image").c_str(), 54 + 12'000L * 12'000 * 3), 0);
    EXPECT_EQ(decodedFile().problem, DecoderProblem::tooLarge);
}

TEST_F(ImageDecoderTest, refusesJpegsOfSeveralScansWhereItDecodesOthers)
{
    // The header alone decides. Of the same size, one is scaled down while it is decoded.
    const QByteArray size("\x08\x20\x00\x20\x00\x01\x01\x11\x00", 9);
    const QByteArray scan("\xFF\xDA\x00\x08\x01\x01\x00\x00\x3F\x00", 10);
    const QByteArray usual = QByteArray("\xFF\xD8\xFF\xC0\x00\x0B", 6) + size + scan;
    const QByteArray progressive = QByteArray("\xFF\xD8\xFF\xC2\x00\x0B", 6) + size + scan;
    EXPECT_EQ(decoded(usual).problem, DecoderProblem::unreadable);
    EXPECT_EQ(decoded(progressive).problem, DecoderProblem::tooLarge);
}

TEST_F(ImageDecoderTest, refusesDamagedImages)
{
    const QByteArray png = imageBytes("png", {40, 30}, Qt::blue);
    for (const QByteArray &bytes : {QByteArray(), QByteArray("no image"), png.first(20),
                                    png.first(png.size() / 2), QByteArray("\xFF\xD8\xFF\xE0", 4)}) {
        EXPECT_NE(decoded(bytes).problem, DecoderProblem::none) << bytes.size();
    }
}

TEST_F(ImageDecoderTest, refusesDrawingsAndDocumentsInDisguise)
{
    const QByteArray drawing =
        R"(<svg xmlns="http://www.w3.org/2000/svg" width="20" height="10"><g/></svg>)";
    EXPECT_EQ(decoded(drawing).problem, DecoderProblem::unreadable);
    EXPECT_EQ(decoded(gzipBytes(drawing)).problem, DecoderProblem::unreadable);
    EXPECT_EQ(decoded(pdfBytes(1)).problem, DecoderProblem::unreadable);
}

TEST_F(ImageDecoderTest, drawsDrawingsAsLargeAsTheyFit)
{
    const DecodedImage image =
        decodedSvg("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"20\" height=\"10\">"
                   "<rect width=\"20\" height=\"10\" fill=\"#ff0000\"/></svg>");
    ASSERT_EQ(image.problem, DecoderProblem::none);
    EXPECT_EQ(image.image.size(), QSize(1000, 500));
    EXPECT_EQ(image.fullSize, QSize(20, 10));
    EXPECT_EQ(image.image.pixelColor(500, 250), QColor(Qt::red));
}

TEST_F(ImageDecoderTest, refusesDamagedDrawings)
{
    EXPECT_NE(decodedSvg("<svg><g></svg>").problem, DecoderProblem::none);
    EXPECT_NE(decodedSvg("").problem, DecoderProblem::none);
}

} // namespace
} // namespace tessaly
