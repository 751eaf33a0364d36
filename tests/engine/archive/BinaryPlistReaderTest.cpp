#include "engine/archive/BinaryPlistReader.hpp"

#include "tests/engine/archive/PlistBuilder.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <optional>
#include <set>

namespace tessaly::archive {

namespace {

using Kind = ArchiveError::Kind;
using Type = BinaryPlistReader::Type;
using Object = BinaryPlistReader::Object;

/// A property list of one object, in memory of just its size.
class OneObject {
public:
    explicit OneObject(std::string_view bytes) : OneObject(bytesOf(bytes)) {}
    explicit OneObject(Bytes bytes) : m_file(fileOf(std::move(bytes))), m_reader(m_file) {}

    ~OneObject() = default;
    OneObject(const OneObject &) = delete;
    OneObject &operator=(const OneObject &) = delete;

    [[nodiscard]] const BinaryPlistReader &reader() const { return m_reader; }
    [[nodiscard]] Object object() const { return m_reader.object(m_reader.topObject()); }
    [[nodiscard]] Type type() const { return object().type; }
    [[nodiscard]] std::uint64_t bits() const { return m_reader.integer(object()).bits; }
    [[nodiscard]] bool isNegative() const { return m_reader.integer(object()).negative; }
    [[nodiscard]] std::optional<std::uint64_t> uid() const
    {
        return m_reader.uidAt(m_reader.topObject());
    }

private:
    static Bytes fileOf(Bytes bytes)
    {
        PlistBuilder plist;
        const auto object = plist.raw(std::move(bytes));
        return plist.build(object);
    }

    Bytes m_file;
    BinaryPlistReader m_reader;
};

template <std::size_t size>
std::string_view literal(const char (&text)[size])
{
    return {text, size - 1};
}

template <typename Work>
std::optional<Kind> failureOf(Work work)
{
    try {
        work();
    } catch (const ArchiveFailure &failure) {
        EXPECT_FALSE(failure.error().message.empty());
        return failure.error().kind;
    }
    return std::nullopt;
}

std::optional<Kind> failureOfObject(const Bytes &bytes)
{
    const OneObject one(bytes);
    return failureOf([&] { (void)one.object(); });
}

bool isKnownMarker(unsigned marker)
{
    const unsigned kind = marker >> 4U;
    const unsigned info = marker & 0x0FU;
    switch (kind) {
    case 0x0:
        return info == 0 || info == 8 || info == 9;
    case 0x1:
        return info <= 4;
    case 0x2:
        return info == 2 || info == 3;
    case 0x3:
        return info == 3;
    case 0x8:
        return info < 8;
    default: // with info 15 the count is missing here
        return std::set<unsigned>{0x4, 0x5, 0x6, 0xA, 0xC, 0xD}.contains(kind) && info < 15;
    }
}

/// A marker whose count follows as an integer of `width` bytes.
Bytes withCount(unsigned marker, std::uint64_t count, unsigned width)
{
    Bytes bytes{static_cast<std::byte>(marker | 0x0FU),
                static_cast<std::byte>(0x10U | static_cast<unsigned>(std::countr_zero(width)))};
    for (unsigned i = width; i-- > 0;) {
        bytes.push_back(i < 8 ? static_cast<std::byte>(count >> 8U * i) : std::byte{0});
    }
    return bytes;
}

} // namespace

TEST(BinaryPlistReader, knownMarkersAreReadAndNoOthers)
{
    for (unsigned marker = 0; marker <= 0xFF; ++marker) {
        Bytes bytes(65, std::byte{0});
        bytes[0] = static_cast<std::byte>(marker);
        EXPECT_EQ(failureOfObject(bytes) == std::nullopt, isKnownMarker(marker)) << marker;
    }
}

TEST(BinaryPlistReader, readsNullAndBooleans)
{
    EXPECT_EQ(OneObject(literal("\x00")).type(), Type::null);
    EXPECT_EQ(OneObject("\x08").type(), Type::boolean);
    EXPECT_EQ(OneObject("\x08").object().count, 0U);
    EXPECT_EQ(OneObject("\x09").object().count, 1U);
}

TEST(BinaryPlistReader, smallIntegersAreUnsigned)
{
    EXPECT_EQ(OneObject("\x10\xFF").bits(), 255U);
    EXPECT_EQ(OneObject("\x11\xFF\xFE").bits(), 65534U);
    EXPECT_EQ(OneObject("\x12\xFF\xFF\xFF\xFF").bits(), 4294967295U);
    EXPECT_FALSE(OneObject("\x12\xFF\xFF\xFF\xFF").isNegative());
}

TEST(BinaryPlistReader, integersOfEightBytesAreSigned)
{
    EXPECT_EQ(OneObject("\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF").bits(), 0x7FFFFFFFFFFFFFFFU);
    EXPECT_FALSE(OneObject("\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF").isNegative());
    EXPECT_TRUE(OneObject("\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF").isNegative());
    EXPECT_EQ(OneObject("\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF").bits(), UINT64_MAX);
}

TEST(BinaryPlistReader, integersOfSixteenBytesReachTo64Bits)
{
    const OneObject largest(literal("\x14\0\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"));
    EXPECT_EQ(largest.bits(), UINT64_MAX);
    EXPECT_FALSE(largest.isNegative());

    const OneObject minusOne(std::string(1, '\x14') + std::string(16, '\xFF'));
    EXPECT_TRUE(minusOne.isNegative());
    EXPECT_EQ(minusOne.bits(), UINT64_MAX);
}

TEST(BinaryPlistReader, numbersPast64BitsAreRefused)
{
    const OneObject positive(literal("\x14\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0"));
    const OneObject negative(literal("\x14\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x7F\0\0\0\0\0\0\0"));

    EXPECT_EQ(failureOf([&] { (void)positive.bits(); }), Kind::unsupported);
    EXPECT_EQ(failureOf([&] { (void)negative.bits(); }), Kind::unsupported);
}

TEST(BinaryPlistReader, readsRealsAndDates)
{
    const OneObject single(literal("\x22\x3F\xC0\0\0"));
    const OneObject twice(literal("\x23\xBF\xF8\0\0\0\0\0\0"));
    const OneObject date(literal("\x33\x40\x45\0\0\0\0\0\0"));

    EXPECT_EQ(single.type(), Type::real);
    EXPECT_EQ(single.reader().real(single.object()), 1.5);
    EXPECT_EQ(twice.reader().real(twice.object()), -1.5);
    EXPECT_EQ(date.type(), Type::date);
    EXPECT_EQ(date.reader().real(date.object()), 42.0);
}

TEST(BinaryPlistReader, readsDataAndStrings)
{
    const OneObject data(literal("\x43\0\1\2"));
    const OneObject ascii("\x53"
                          "abc");
    const OneObject utf16(literal("\x62\0a\xD8\x3D"));

    EXPECT_EQ(data.type(), Type::data);
    EXPECT_EQ(data.reader().bytes(data.object()), literal("\0\1\2"));
    EXPECT_EQ(ascii.type(), Type::asciiString);
    EXPECT_EQ(ascii.reader().bytes(ascii.object()), "abc");
    EXPECT_EQ(utf16.type(), Type::utf16String);
    EXPECT_EQ(utf16.reader().utf16(utf16.object()), u"a\xD83D");
}

TEST(BinaryPlistReader, readsUidsOfOneToEightBytes)
{
    for (unsigned width = 1; width <= 8; ++width) {
        Bytes bytes(width + 1, std::byte{0});
        bytes.front() = static_cast<std::byte>(0x80U | (width - 1));
        bytes.back() = std::byte{0xFE};
        EXPECT_EQ(OneObject(bytes).uid(), 0xFEU);
        EXPECT_EQ(OneObject(bytes).type(), Type::uid);
    }
    EXPECT_EQ(OneObject("\x87\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF").uid(), UINT64_MAX);
}

TEST(BinaryPlistReader, refusesUidsOfMoreBytes)
{
    const OneObject nine(std::string(1, '\x88') + std::string(9, '\0'));

    EXPECT_EQ(nine.uid(), std::nullopt);
    EXPECT_EQ(failureOf([&] { (void)nine.object(); }), Kind::damaged);
}

TEST(BinaryPlistReader, otherObjectsAreNoUids)
{
    EXPECT_EQ(OneObject("\x10\x05").uid(), std::nullopt);
    EXPECT_EQ(OneObject("\x51\x05").uid(), std::nullopt);
}

TEST(BinaryPlistReader, countsAreInlineOrOfAnyIntegerWidth)
{
    for (unsigned width : {1U, 2U, 4U, 8U, 16U}) {
        for (const std::uint64_t count : {0U, 1U, 15U, 255U}) {
            Bytes bytes = withCount(0x50, count, width);
            bytes.insert(bytes.end(), static_cast<std::size_t>(count), std::byte{'x'});
            const OneObject one(bytes);
            EXPECT_EQ(one.reader().bytes(one.object()), std::string(count, 'x')) << width;
        }
    }
}

TEST(BinaryPlistReader, aCountHasToBeANumber)
{
    EXPECT_EQ(failureOfObject(bytesOf("\x5F\x51\x41")), Kind::damaged);
    EXPECT_EQ(failureOfObject(bytesOf(literal("\x5F\x22\x3F\x80\0\0x"))), Kind::damaged);
    EXPECT_EQ(failureOfObject(bytesOf("\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF")), Kind::damaged);
    EXPECT_EQ(failureOfObject(bytesOf("\x5F")), Kind::damaged);
    EXPECT_EQ(failureOfObject(bytesOf("\x5F\x12\x01")), Kind::damaged);
}

TEST(BinaryPlistReader, countsPastTheEndAreRefusedWithoutOverflow)
{
    for (const unsigned marker : {0x40U, 0x50U, 0x60U, 0xA0U, 0xC0U, 0xD0U}) {
        for (const std::uint64_t count :
             {std::uint64_t{1} << 60U, std::uint64_t{1} << 61U, std::uint64_t{1} << 62U,
              std::uint64_t{1} << 63U, UINT64_MAX, UINT64_MAX / 2, UINT64_MAX / 4 + 1}) {
            EXPECT_EQ(failureOfObject(withCount(marker, count, 16)), Kind::damaged) << marker;
        }
    }
}

TEST(BinaryPlistReader, objectsMayEndJustBeforeTheOffsetsAndNotLater)
{
    for (const std::string &whole :
         {std::string("\x11\x01\x02"),
          std::string("\x53"
                      "abc"),
          std::string("\x5F\x10\x03"
                      "abc"),
          std::string("\x5F\x10\x01"
                      "a"),
          std::string("\x81\x01\x01"),
          std::string("\x42"
                      "ab"),
          std::string(literal("\x62\0a\0b")), std::string(literal("\xA1\0\0")),
          std::string(literal("\xD1\0\0\0\0")), std::string(literal("\x22\0\0\0\0")),
          std::string(literal("\x33\0\0\0\0\0\0\0\0"))}) {
        EXPECT_EQ(failureOfObject(bytesOf(whole)), std::nullopt) << whole;
        EXPECT_EQ(failureOfObject(bytesOf(whole.substr(0, whole.size() - 1))), Kind::damaged)
            << whole;
    }
}

TEST(BinaryPlistReader, aUidCutShortIsNone)
{
    EXPECT_EQ(OneObject("\x83\x01\x01").uid(), std::nullopt);
}

TEST(BinaryPlistReader, setsReadAsArrays)
{
    EXPECT_EQ(OneObject(literal("\xC1\0\0")).type(), Type::array);
}

TEST(BinaryPlistReader, everyWidthOfOffsetsAndReferencesIsRead)
{
    PlistBuilder plist;
    const auto key = plist.ascii("key");
    const auto value = plist.integer(7, 1);
    const auto top = plist.array({plist.dictionary({{key, value}}), value});

    for (unsigned offset = 1; offset <= 8; ++offset) {
        for (unsigned reference = 1; reference <= 8; ++reference) {
            const Bytes file = plist.build(top, {offset, reference});
            const BinaryPlistReader reader(file);
            const Object list = reader.object(reader.topObject());
            const Object dictionary = reader.object(reader.element(list, 0));
            EXPECT_TRUE(reader.isString(reader.object(reader.key(dictionary, 0)), "key"));
            EXPECT_EQ(reader.integer(reader.object(reader.value(dictionary, 0))).bits, 7U);
            EXPECT_EQ(reader.element(list, 1), reader.value(dictionary, 0));
        }
    }
}

TEST(BinaryPlistReader, referencesToNothingAreRefused)
{
    const OneObject one("\x10\x05");

    EXPECT_EQ(failureOf([&] { (void)one.reader().object(1); }), Kind::damaged);
    EXPECT_EQ(failureOf([&] { (void)one.reader().object(UINT64_MAX); }), Kind::damaged);
    EXPECT_EQ(failureOf([&] { (void)one.reader().uidAt(1); }), Kind::damaged);
}

TEST(BinaryPlistReader, offsetsOutsideTheObjectsAreRefused)
{
    PlistBuilder plist;
    const auto outside = plist.integer(0, 1);
    const auto other = plist.integer(0, 1);
    for (const std::size_t offset :
         {std::size_t{2}, std::size_t{100}, SIZE_MAX - 10, SIZE_MAX - 2}) {
        plist.placeInside(outside, other, offset);
        const Bytes file = plist.build(other, {8, 1});
        const BinaryPlistReader reader(file);
        EXPECT_EQ(failureOf([&] { (void)reader.object(outside); }), Kind::damaged) << offset;
    }
}

TEST(BinaryPlistReader, stringsAreComparedInEitherEncoding)
{
    const OneObject ascii("\x53"
                          "key");
    const OneObject utf16(literal("\x63\0k\0e\0y"));
    const OneObject wide(literal("\x63\1k\0e\0y"));
    const OneObject data("\x43"
                         "key");

    EXPECT_TRUE(ascii.reader().isString(ascii.object(), "key"));
    EXPECT_TRUE(utf16.reader().isString(utf16.object(), "key"));
    EXPECT_FALSE(ascii.reader().isString(ascii.object(), "ke"));
    EXPECT_FALSE(ascii.reader().isString(ascii.object(), "kez"));
    EXPECT_FALSE(wide.reader().isString(wide.object(), "key"));
    EXPECT_FALSE(data.reader().isString(data.object(), "key"));
}

TEST(BinaryPlistReader, aFileWithoutAnythingInItIsNone)
{
    EXPECT_EQ(failureOf([] { BinaryPlistReader({}); }), Kind::notAnArchive);
}

TEST(BinaryPlistReader, failuresSayWhere)
{
    const OneObject one("\xF7");
    try {
        (void)one.object();
        FAIL() << "an unknown marker was read";
    } catch (const ArchiveFailure &failure) {
        EXPECT_EQ(failure.error().text(), "byte 8: an object of an unknown type");
    }
}

} // namespace tessaly::archive
