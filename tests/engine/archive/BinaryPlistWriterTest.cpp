#include "engine/archive/BinaryPlistWriter.hpp"

#include "engine/archive/BinaryPlistReader.hpp"
#include "tests/engine/archive/PlistBuilder.hpp"
#include "tests/fakes/MemorySink.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace tessaly::archive {

namespace {

/// The bytes between header and trailer that a writer gives for what `work` writes.
Bytes written(const std::function<void(BinaryPlistWriter &)> &work, unsigned referenceWidth = 1)
{
    MemorySink sink;
    BinaryPlistWriter writer(sink, referenceWidth);
    work(writer);
    writer.finish(1, 0, 8, 1);
    constexpr std::ptrdiff_t header = 8;
    constexpr std::ptrdiff_t trailer = 32;
    return {sink.bytes().begin() + header, sink.bytes().end() - trailer};
}

template <std::size_t size>
Bytes literal(const char (&text)[size])
{
    return bytesOf({text, size - 1});
}

Bytes integerBytes(std::uint64_t number)
{
    return written([=](BinaryPlistWriter &writer) { writer.integer(number); });
}

Bytes signedBytes(std::int64_t number)
{
    return written([=](BinaryPlistWriter &writer) { writer.signedInteger(number); });
}

Bytes realBytes(double number)
{
    return written([=](BinaryPlistWriter &writer) { writer.real(number); });
}

Bytes dataBytes(const Bytes &bytes)
{
    return written([&](BinaryPlistWriter &writer) { writer.data(bytes); });
}

Bytes uidBytes(std::uint32_t uid)
{
    return written([=](BinaryPlistWriter &writer) { writer.uid(uid); });
}

Bytes nameBytes(std::string_view name)
{
    return written([=](BinaryPlistWriter &writer) { writer.name(name); });
}

} // namespace

TEST(BinaryPlistWriter, integersTakeTheLeastWidthThatIsAllowed)
{
    EXPECT_EQ(integerBytes(0), literal("\x10\0"));
    EXPECT_EQ(integerBytes(0xFF), literal("\x10\xFF"));
    EXPECT_EQ(integerBytes(0x100), literal("\x11\1\0"));
    EXPECT_EQ(integerBytes(0xFFFF), literal("\x11\xFF\xFF"));
    EXPECT_EQ(integerBytes(0x10000), literal("\x12\0\1\0\0"));
    EXPECT_EQ(integerBytes(0xFFFFFFFF), literal("\x12\xFF\xFF\xFF\xFF"));
    EXPECT_EQ(integerBytes(0x100000000), literal("\x13\0\0\0\1\0\0\0\0"));
    EXPECT_EQ(integerBytes(INT64_MAX), literal("\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"));
}

TEST(BinaryPlistWriter, integersPastTheSignedOnesTakeSixteenBytes)
{
    EXPECT_EQ(integerBytes(std::uint64_t{1} << 63U),
              literal("\x14\0\0\0\0\0\0\0\0\x80\0\0\0\0\0\0\0"));
    EXPECT_EQ(integerBytes(UINT64_MAX),
              literal("\x14\0\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"));
}

TEST(BinaryPlistWriter, negativeIntegersTakeEightBytes)
{
    EXPECT_EQ(signedBytes(-1), literal("\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"));
    EXPECT_EQ(signedBytes(-256), literal("\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\0"));
    EXPECT_EQ(signedBytes(INT64_MIN), literal("\x13\x80\0\0\0\0\0\0\0"));
}

TEST(BinaryPlistWriter, signedIntegersThatAreNotNegativeAreAsTheOthers)
{
    for (const std::int64_t number : {std::int64_t{0}, std::int64_t{255}, INT64_MAX}) {
        EXPECT_EQ(signedBytes(number), integerBytes(static_cast<std::uint64_t>(number)));
    }
}

TEST(BinaryPlistWriter, realsAndDatesTakeEightBytes)
{
    EXPECT_EQ(realBytes(-1.5), literal("\x23\xBF\xF8\0\0\0\0\0\0"));
    EXPECT_EQ(realBytes(std::numeric_limits<double>::infinity()),
              literal("\x23\x7F\xF0\0\0\0\0\0\0"));
    EXPECT_EQ(written([](BinaryPlistWriter &writer) { writer.date(42); }),
              literal("\x33\x40\x45\0\0\0\0\0\0"));
}

TEST(BinaryPlistWriter, nullAndBooleansAreTheirMarkers)
{
    EXPECT_EQ(written([](BinaryPlistWriter &writer) { writer.null(); }), literal("\0"));
    EXPECT_EQ(written([](BinaryPlistWriter &writer) { writer.boolean(false); }), literal("\x08"));
    EXPECT_EQ(written([](BinaryPlistWriter &writer) { writer.boolean(true); }), literal("\x09"));
}

TEST(BinaryPlistWriter, dataIsCountedInBytes)
{
    EXPECT_EQ(dataBytes({}), literal("\x40"));
    EXPECT_EQ(dataBytes(literal("\0\xFF")), literal("\x42\0\xFF"));

    const Bytes large(300'000, std::byte{7});
    Bytes expected = literal("\x4F\x12\0\4\x93\xE0");
    expected.insert(expected.end(), large.begin(), large.end());
    EXPECT_TRUE(dataBytes(large) == expected);
}

TEST(BinaryPlistWriter, uidsTakeTheLeastWidth)
{
    EXPECT_EQ(uidBytes(0), literal("\x80\0"));
    EXPECT_EQ(uidBytes(0xFF), literal("\x80\xFF"));
    EXPECT_EQ(uidBytes(0x100), literal("\x81\1\0"));
    EXPECT_EQ(uidBytes(0xFFFF), literal("\x81\xFF\xFF"));
    EXPECT_EQ(uidBytes(0x10000), literal("\x83\0\1\0\0"));
    EXPECT_EQ(uidBytes(UINT32_MAX), literal("\x83\xFF\xFF\xFF\xFF"));
}

TEST(BinaryPlistWriter, theWidthOfAUidIsKnownBeforehand)
{
    for (const std::uint32_t uid : {0U, 0xFFU, 0x100U, 0xFFFFU, 0x10000U, UINT32_MAX}) {
        EXPECT_EQ(BinaryPlistWriter::uidByteCount(uid), uidBytes(uid).size());
    }
}

TEST(BinaryPlistWriter, aWidthFitsTheCountItself)
{
    EXPECT_EQ(BinaryPlistWriter::widthFor(255), 1U);
    EXPECT_EQ(BinaryPlistWriter::widthFor(256), 2U);
    EXPECT_EQ(BinaryPlistWriter::widthFor(65'535), 2U);
    EXPECT_EQ(BinaryPlistWriter::widthFor(65'536), 4U);
    EXPECT_EQ(BinaryPlistWriter::widthFor(0xFFFFFFFF), 4U);
    EXPECT_EQ(BinaryPlistWriter::widthFor(0x100000000), 8U);
}

TEST(BinaryPlistWriter, namesAreAsciiWhereTheyCanBe)
{
    EXPECT_EQ(nameBytes(""), literal("\x50"));
    EXPECT_EQ(nameBytes("fourteen chars"), literal("\x5E"
                                                   "fourteen chars"));
    EXPECT_EQ(nameBytes("fifteen charact"), literal("\x5F\x10\x0F"
                                                    "fifteen charact"));
    EXPECT_EQ(nameBytes({"\0\n\x7F", 3}), literal("\x53\0\n\x7F"));
}

TEST(BinaryPlistWriter, otherNamesAreCountedInUtf16Units)
{
    EXPECT_EQ(nameBytes("\u00E9"), literal("\x61\0\xE9"));
    EXPECT_EQ(nameBytes("\U0001F600"), literal("\x62\xD8\x3D\xDE\0"));
    EXPECT_EQ(nameBytes("a\xFF"), literal("\x62\0a\xEF\xFF"));
}

TEST(BinaryPlistWriter, referencesTakeTheWidthTheyWereGiven)
{
    const auto dictionary = [](BinaryPlistWriter &writer) {
        writer.dictionary(1);
        writer.reference(2);
        writer.reference(3);
    };
    EXPECT_EQ(written(dictionary, 1), literal("\xD1\2\3"));
    EXPECT_EQ(written(dictionary, 2), literal("\xD1\0\2\0\3"));
    EXPECT_EQ(written(dictionary, 8), literal("\xD1\0\0\0\0\0\0\0\2\0\0\0\0\0\0\0\3"));
}

TEST(BinaryPlistWriter, countsFromFifteenOnFollowTheMarker)
{
    const auto arrayOf = [](std::uint64_t count) {
        return written([=](BinaryPlistWriter &writer) { writer.array(count); });
    };
    EXPECT_EQ(arrayOf(14), literal("\xAE"));
    EXPECT_EQ(arrayOf(15), literal("\xAF\x10\x0F"));
    EXPECT_EQ(arrayOf(70'000), literal("\xAF\x12\0\1\x11\x70"));
}

TEST(BinaryPlistWriter, thePositionCountsEveryByteAcrossFlushes)
{
    MemorySink sink;
    BinaryPlistWriter writer(sink, 1);
    EXPECT_EQ(writer.position(), 8U);
    const std::string name(300'000, 'n');
    for (std::uint64_t i = 0; i < 5; ++i) {
        EXPECT_EQ(writer.position(), 8 + i * (6 + name.size()));
        writer.name(name);
    }
}

TEST(BinaryPlistWriter, aReaderFindsWhatTheTrailerSays)
{
    MemorySink sink;
    BinaryPlistWriter writer(sink, 1);
    writer.integer(7);
    const std::uint64_t second = writer.position();
    writer.name("top");
    const std::uint64_t table = writer.position();
    PlistOffsets offsets(2, 2);
    offsets.set(0, 8);
    offsets.set(1, second);
    writer.offsets(offsets.packed());
    writer.finish(2, 1, table, 2);

    const BinaryPlistReader reader(sink.bytes());
    EXPECT_EQ(reader.objectCount(), 2U);
    EXPECT_TRUE(reader.isString(reader.object(reader.topObject()), "top"));
    EXPECT_EQ(reader.integer(reader.object(0)).bits, 7U);
}

TEST(PlistOffsets, keepsTheLowBytesInOrder)
{
    PlistOffsets offsets(2, 4);
    offsets.set(1, 0x01020304);

    const std::vector<std::byte> packed(offsets.packed().begin(), offsets.packed().end());
    EXPECT_EQ(packed, literal("\0\0\0\0\1\2\3\4"));
}

} // namespace tessaly::archive
