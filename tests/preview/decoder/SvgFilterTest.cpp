#include "preview/decoder/SvgFilter.hpp"

#include "tests/preview/PreviewFiles.hpp"

#include <QBuffer>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

std::optional<QByteArray> filtered(QByteArray source)
{
    QBuffer buffer(&source);
    buffer.open(QIODevice::ReadOnly);
    auto drawing = filteredSvg(buffer);
    return drawing ? std::optional(std::move(drawing->source)) : std::nullopt;
}

/// A drawing with this inside.
QByteArray drawing(const QByteArray &inside)
{
    return R"(<svg xmlns="http://www.w3.org/2000/svg" )"
           R"(xmlns:xlink="http://www.w3.org/1999/xlink" width="10" height="10">)" +
           inside + "</svg>";
}

QByteArray dataUrl(const char *type, const QByteArray &bytes)
{
    return QByteArray("data:") + type + ";base64," + bytes.toBase64();
}

TEST(SvgFilter, keepsWhatIsDrawn)
{
    const QByteArray inside = R"(<style>a &lt; b {fill: red}</style><g id="part"><rect )"
                              R"(width="10" height="10"/></g><use xlink:href="#part"/>)";
    const auto copy = filtered("<?xml version=\"1.0\"?>" + drawing(inside));
    ASSERT_TRUE(copy);
    EXPECT_EQ(*copy, drawing(inside));
}

TEST(SvgFilter, dropsWhatLeadsOutside)
{
    const QByteArray inside = R"(<image xlink:href="/dev/zero"/><image href="file:///etc/passwd"/>)"
                              R"(<use xlink:href="other.svg#part"/><a href="http://example.org"/>)";
    const auto copy =
        filtered("<?xml-stylesheet type=\"text/css\" href=\"/dev/zero\"?>" + drawing(inside));
    ASSERT_TRUE(copy);
    EXPECT_EQ(*copy, drawing("<image/><image/><use/><a/>"));
}

TEST(SvgFilter, keepsSmallImagesInside)
{
    const QByteArray image =
        "<image href=\"" + dataUrl("image/png", imageBytes("png", {4, 4}, Qt::red)) + "\"/>";
    EXPECT_EQ(filtered(drawing(image)), drawing(image));
}

TEST(SvgFilter, dropsImagesInsideThatAreLargeOrLeadOn)
{
    const QByteArray large = dataUrl("image/png", greyPng(20'000, 20'000));
    const QByteArray leadsOn = dataUrl("image/png", drawing(R"(<image xlink:href="/dev/zero"/>)"));
    for (const QByteArray &url : {large, leadsOn, QByteArray("data:image/png;base64,")}) {
        EXPECT_EQ(filtered(drawing("<image href=\"" + url + "\"/>")), drawing("<image/>"));
    }
}

TEST(SvgFilter, unpacksWhatIsCompressed)
{
    const QByteArray source = drawing("<image xlink:href=\"/dev/zero\"/><rect/>");
    EXPECT_EQ(filtered(gzipBytes(source)), drawing("<image/><rect/>"));
    EXPECT_EQ(filtered(gzipBytes(source).first(40)), std::nullopt);
}

TEST(SvgFilter, unpacksNoMoreThanTheLimit)
{
    const QByteArray source = drawing(QByteArray(20 << 20U, ' '));
    EXPECT_LT(gzipBytes(source).size(), 100'000);
    EXPECT_EQ(filtered(gzipBytes(source)), std::nullopt);
}

TEST(SvgFilter, refusesReferencesThatMultiply)
{
    QByteArray inside = R"(<g id="g0"><rect width="1" height="1"/></g>)";
    for (int i = 1; i < 30; ++i) {
        const QByteArray use = "<use xlink:href=\"#g" + QByteArray::number(i - 1) + "\"/>";
        inside += "<g id=\"g" + QByteArray::number(i) + "\">" + use + use + "</g>";
    }
    EXPECT_EQ(filtered(drawing("<defs>" + inside + "</defs><use xlink:href=\"#g29\"/>")),
              std::nullopt);
}

TEST(SvgFilter, countsWhatIsDrawnAgain)
{
    QByteArray source = drawing(R"(<g id="a"><rect/><rect/></g><use xlink:href="#a"/>)");
    QBuffer buffer(&source);
    buffer.open(QIODevice::ReadOnly);
    EXPECT_EQ(filteredSvg(buffer).value().work, 1U + 3U + 1U + 3U);
}

TEST(SvgFilter, refusesReferencesThatNeverEnd)
{
    EXPECT_EQ(filtered(drawing(R"(<g id="a"><use xlink:href="#b"/></g>)"
                               R"(<g id="b"><use xlink:href="#a"/></g>)")),
              std::nullopt);
    EXPECT_EQ(filtered(drawing(R"(<g xml:id="a"><use xlink:href="#a"/></g>)")), std::nullopt);
}

TEST(SvgFilter, followsALongChainOfReferences)
{
    QByteArray inside;
    for (int i = 0; i < 20'000; ++i) {
        inside += "<use id=\"u" + QByteArray::number(i) + "\" xlink:href=\"#u" +
                  QByteArray::number(i + 1) + "\"/>";
    }
    EXPECT_EQ(filtered(drawing(inside)), std::nullopt); // the sum of all chains is large
    EXPECT_TRUE(filtered(drawing(inside.first(inside.indexOf("<use id=\"u200\"")))));
}

TEST(SvgFilter, refusesEntitiesThatMultiply)
{
    QByteArray entities = "<!ENTITY e0 'aaaaaaaaaa'>";
    for (int i = 1; i < 10; ++i) {
        const QByteArray use = "&e" + QByteArray::number(i - 1) + ";";
        entities += "<!ENTITY e" + QByteArray::number(i) + " '" + use.repeated(10) + "'>";
    }
    EXPECT_EQ(filtered("<!DOCTYPE svg [" + entities + "]>" + drawing("<text>&e9;</text>")),
              std::nullopt);
}

TEST(SvgFilter, refusesWhatIsTooDeepTooLongOrDamaged)
{
    EXPECT_EQ(
        filtered(drawing(QByteArray("<g>").repeated(10'000) + QByteArray("</g>").repeated(10'000))),
        std::nullopt);
    EXPECT_EQ(filtered(drawing(QByteArray("<g/>").repeated(200'000))), std::nullopt);
    EXPECT_EQ(filtered(drawing(QByteArray(9'000'000, ' '))), std::nullopt);
    EXPECT_EQ(filtered("<svg><g></svg>"_ba), std::nullopt);
    EXPECT_EQ(filtered(""_ba), std::nullopt);
}

} // namespace
} // namespace tessaly
