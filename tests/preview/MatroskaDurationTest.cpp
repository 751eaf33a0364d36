#include "preview/MatroskaDuration.hpp"

#include "tests/preview/PreviewFiles.hpp"
#include "tests/preview/WebmFile.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace tessaly {
namespace {

QByteArray fileOf(std::optional<double> durationMs)
{
    return webmBytes({8, 8}, Qt::red, 2, durationMs);
}

TEST(MatroskaDuration, isThatOfTheHeader)
{
    EXPECT_EQ(matroskaDuration(fileOf(5000)), 5000);
    EXPECT_EQ(matroskaDuration(fileOf(1)), 1);
    EXPECT_EQ(matroskaDuration(fileOf(86'400'000.4)), 86'400'000);
}

TEST(MatroskaDuration, countsInTheScaleOfTheFile)
{
    QByteArray bytes = fileOf(5000);
    const QByteArray scale = QByteArray::fromHex("2AD7B1"
                                                 "10000004");
    const auto place = bytes.indexOf(scale) + scale.size();
    EXPECT_EQ(matroskaDuration(bytes.replace(place, 4, QByteArray::fromHex("001E8480"))), 10'000);
}

TEST(MatroskaDuration, isNothingWhereNoneIsTold)
{
    EXPECT_EQ(matroskaDuration(fileOf(std::nullopt)), std::nullopt);
    EXPECT_EQ(matroskaDuration({}), std::nullopt);
    EXPECT_EQ(matroskaDuration(wavBytes()), std::nullopt);
    EXPECT_EQ(matroskaDuration(QByteArray(1000, '\0')), std::nullopt);
    EXPECT_EQ(matroskaDuration(QByteArray(1000, '\xFF')), std::nullopt);
}

TEST(MatroskaDuration, isNothingWhenItCannotBe)
{
    for (const double duration : {0.0, -1.0, 1e300, std::numeric_limits<double>::infinity(),
                                  std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(matroskaDuration(fileOf(duration)), std::nullopt) << duration;
    }
}

TEST(MatroskaDuration, ofAFileThatIsCutAnywhereIsRightOrNothing)
{
    const QByteArray bytes = fileOf(5000);
    for (qsizetype count = 0; count < bytes.size(); ++count) {
        const QByteArray start(bytes.constData(), count);
        EXPECT_EQ(matroskaDuration(start).value_or(5000), 5000) << count;
    }
}

} // namespace
} // namespace tessaly
