#include "engine/archive/PropertyList.hpp"

#include "tests/engine/archive/ArchiveVectors.hpp"
#include "tests/engine/archive/PlistBuilder.hpp"
#include "tests/engine/archive/PlistSamples.hpp"
#include "tests/fakes/MemorySink.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>

namespace tessaly::archive {

namespace {

using Kind = ArchiveError::Kind;
using Reference = PlistBuilder::Reference;

Bytes written(const PlistValue &value)
{
    MemorySink sink;
    const auto done = writePropertyList(value, sink);
    EXPECT_TRUE(done) << done.error().text();
    return sink.bytes();
}

/// The value after a round trip.
PlistValue again(const PlistValue &value)
{
    const auto read = readPropertyList(written(value));
    EXPECT_TRUE(read) << read.error().text();
    return read ? read.value() : PlistValue("unreadable");
}

void expectRoundTrip(const PlistValue &value)
{
    EXPECT_TRUE(again(value) == value) << "alternative " << value.content().index();
}

/// An array of as many arrays, one inside the other.
PlistValue nested(std::size_t count)
{
    PlistValue value = PlistArray{};
    for (std::size_t i = 1; i < count; ++i) {
        PlistArray outer;
        outer.push_back(std::move(value));
        value = std::move(outer);
    }
    return value;
}

Bytes fileOf(const std::function<Reference(PlistBuilder &)> &makeTop)
{
    PlistBuilder plist;
    const auto top = makeTop(plist);
    return plist.build(top);
}

std::optional<PlistValue> valueOf(const std::function<Reference(PlistBuilder &)> &makeTop)
{
    const auto read = readPropertyList(fileOf(makeTop));
    return read ? std::optional(read.value()) : std::nullopt;
}

std::optional<Kind> failureOf(const Bytes &file)
{
    const auto read = readPropertyList(file);
    if (read) {
        return std::nullopt;
    }
    EXPECT_FALSE(read.error().message.empty());
    return read.error().kind;
}

std::optional<Kind> failureOf(const std::function<Reference(PlistBuilder &)> &makeTop)
{
    return failureOf(fileOf(makeTop));
}

/// Arrays of ten references to the next array, `count` of them; the last one holds `innermost`.
Reference tenfold(PlistBuilder &plist, std::size_t count, Reference innermost)
{
    for (std::size_t i = 0; i < count; ++i) {
        innermost = plist.array(std::vector<Reference>(10, innermost));
    }
    return innermost;
}

/// Expects an error, or a value that can be written.
void expectErrorOrValue(const Bytes &file)
{
    const auto read = readPropertyList(file);
    if (read) {
        expectRoundTrip(read.value());
    } else {
        EXPECT_FALSE(read.error().message.empty());
    }
}

} // namespace

TEST(PlistValue, tellsItsTypeAndNoOther)
{
    const PlistValue number = 7;

    ASSERT_NE(number.as<std::int64_t>(), nullptr);
    EXPECT_EQ(*number.as<std::int64_t>(), 7);
    EXPECT_EQ(number.as<std::uint64_t>(), nullptr);
    EXPECT_EQ(number.as<bool>(), nullptr);
    EXPECT_EQ(number.as<double>(), nullptr);
    EXPECT_EQ(number.as<std::string>(), nullptr);
    EXPECT_EQ(number.as<PlistArray>(), nullptr);
}

TEST(PlistValue, isNullToBeginWith)
{
    EXPECT_NE(PlistValue().as<PlistNull>(), nullptr);
}

TEST(PlistValue, integersAreSignedAsLongAsTheyCanBe)
{
    const auto most = std::numeric_limits<std::int64_t>::max();

    EXPECT_EQ(PlistValue(static_cast<std::uint64_t>(most)), PlistValue(most));
    EXPECT_NE(PlistValue(7U).as<std::int64_t>(), nullptr);
    EXPECT_NE(PlistValue(static_cast<std::uint64_t>(most) + 1).as<std::uint64_t>(), nullptr);
}

TEST(PlistValue, valuesOfDifferentTypesDiffer)
{
    const PlistArray values{
        PlistValue(), false,        0,   0.0,           PlistDate{0},     PlistData{}, "",
        PlistUid{0},  PlistArray{}, "0", PlistData{{}}, PlistDictionary{}};
    for (std::size_t i = 0; i < values.size(); ++i) {
        for (std::size_t j = 0; j < values.size(); ++j) {
            EXPECT_EQ(values[i] == values[j], i == j) << i << ' ' << j;
        }
    }
}

TEST(PlistValue, realsAndDatesAreEqualWhenTheirBitsAre)
{
    EXPECT_EQ(PlistValue(std::nan("")), PlistValue(std::nan("")));
    EXPECT_EQ(PlistValue(PlistDate{std::nan("")}), PlistValue(PlistDate{std::nan("")}));
    EXPECT_FALSE(PlistValue(0.0) == PlistValue(-0.0));
    EXPECT_FALSE(PlistValue(1.0) == PlistValue(1.5));
}

TEST(PlistValue, containersAreChangedInPlace)
{
    PlistValue value = PlistDictionary{{"list", PlistArray{1}}};

    value.as<PlistDictionary>()->at("list").as<PlistArray>()->push_back("two");
    EXPECT_EQ(value, PlistValue(PlistDictionary{{"list", PlistArray{1, "two"}}}));
}

TEST(PropertyList, everyTypeComesBackAsItWas)
{
    const PlistValue sample = sampleOfEveryType();
    expectRoundTrip(sample);
    for (const auto &[key, values] : *sample.as<PlistDictionary>()) {
        expectRoundTrip(values);
        if (const auto *list = values.as<PlistArray>()) {
            for (const PlistValue &value : *list) {
                expectRoundTrip(value);
            }
        }
    }
}

TEST(PropertyList, readsWhatAnotherWriterWrote)
{
    const auto file = fileText(TESSALY_TEST_DATA_DIR "/property_list/every_type.bplist");
    const auto read = readPropertyList(bytesOf(file));

    ASSERT_TRUE(read) << read.error().text();
    EXPECT_TRUE(read.value() == sampleOfEveryType());
}

TEST(PropertyList, realsOfAnyBitsComeBack)
{
    expectRoundTrip(-0.0);
    expectRoundTrip(std::nan(""));
    expectRoundTrip(-std::numeric_limits<double>::infinity());
    expectRoundTrip(PlistDate{std::nan("")});
}

TEST(PropertyList, textsAndKeysOfAnyBytesComeBack)
{
    std::string everyByte;
    for (int byte = 0; byte < 256; ++byte) {
        everyByte += static_cast<char>(byte);
    }
    for (const std::string &text :
         {everyByte, std::string("\xFF"), std::string("half\xC3"), std::string("\xED\xA0\x80"),
          std::string("\uEF80"), std::string("\0", 1), std::string("$null")}) {
        expectRoundTrip(text);
        expectRoundTrip(PlistDictionary{{text, text}});
    }
}

TEST(PropertyList, manyValuesComeBack)
{
    // So many that references take one, two and four bytes.
    for (const int count : {253, 254, 255, 256, 65'533, 65'534, 65'535, 65'536}) {
        PlistArray numbers;
        for (int i = 0; i < count; ++i) {
            numbers.emplace_back(-i);
        }
        expectRoundTrip(numbers);
    }
}

TEST(PropertyList, valuesLargerThanTheWritersBufferComeBack)
{
    constexpr std::size_t large = 1'000'000;
    expectRoundTrip(PlistArray{PlistData(large, std::byte{7}), std::string(large, 'x'),
                               std::string(large, '\xE9')});
}

TEST(PropertyList, ofAKeyThatStandsTwiceTheFirstCounts)
{
    const auto value = valueOf([](PlistBuilder &plist) {
        const auto first = plist.integer(1, 1);
        const auto second = plist.integer(2, 1);
        return plist.dictionary({{plist.ascii("key"), first}, {plist.utf16(u"key"), second}});
    });
    EXPECT_EQ(value, PlistValue(PlistDictionary{{"key", 1}}));
}

TEST(PropertyList, keysAreStrings)
{
    const auto withKey = [](const std::function<Reference(PlistBuilder &)> &makeKey) {
        return failureOf([&](PlistBuilder &plist) {
            return plist.dictionary({{makeKey(plist), plist.integer(1, 1)}});
        });
    };
    EXPECT_EQ(withKey([](auto &plist) { return plist.integer(1, 1); }), Kind::damaged);
    EXPECT_EQ(withKey([](auto &plist) { return plist.array({}); }), Kind::damaged);
    EXPECT_EQ(withKey([](auto &plist) { return plist.raw(bytesOf("\x41k")); }), Kind::damaged);
    EXPECT_EQ(withKey([](auto &plist) { return plist.ascii("k"); }), std::nullopt);
}

TEST(PropertyList, asciiStringsWithOtherBytesAreRefused)
{
    EXPECT_EQ(failureOf([](auto &plist) { return plist.ascii("\xC3\xA9"); }), Kind::damaged);
}

TEST(PropertyList, loneSurrogatesAreKeptInAText)
{
    const auto value = valueOf([](auto &plist) { return plist.utf16(u"a\xD83D"); });
    ASSERT_EQ(value, PlistValue("a\xED\xA0\xBD"));
    expectRoundTrip(*value);
}

TEST(PropertyList, numbersOfEveryWidthAreRead)
{
    EXPECT_EQ(valueOf([](auto &plist) { return plist.integer(7, 16); }), PlistValue(7));
    EXPECT_EQ(valueOf([](auto &plist) { return plist.integer(UINT64_MAX, 8); }), PlistValue(-1));
    EXPECT_EQ(valueOf([](auto &plist) {
                  return plist.raw(bytesOf({"\x22\x3F\xC0\0\0", 5}));
              }),
              PlistValue(1.5));
    EXPECT_EQ(valueOf([](auto &plist) { return plist.uid(7, 8); }), PlistValue(PlistUid{7}));
}

TEST(PropertyList, numbersTooLargeAreRefused)
{
    EXPECT_EQ(failureOf([](auto &plist) { return plist.uid(std::uint64_t{1} << 32U, 8); }),
              Kind::unsupported);
    EXPECT_EQ(failureOf([](auto &plist) {
                  return plist.raw(bytesOf({"\x14\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0", 17}));
              }),
              Kind::unsupported);
}

TEST(PropertyList, otherFilesAreRefused)
{
    EXPECT_EQ(failureOf(Bytes{}), Kind::notAnArchive);
    EXPECT_EQ(failureOf(bytesOf("<?xml version=\"1.0\"?>")), Kind::notAnArchive);
    EXPECT_EQ(failureOf(bytesOf("bplist00")), Kind::truncated);
}

TEST(PropertyList, containersNestOnlySoDeep)
{
    expectRoundTrip(nested(maxPlistDepth));

    const auto arrays = [](std::size_t count) {
        return [=](PlistBuilder &plist) {
            auto array = plist.array({});
            for (std::size_t i = 1; i < count; ++i) {
                array = plist.array({array});
            }
            return array;
        };
    };
    EXPECT_EQ(valueOf(arrays(maxPlistDepth)), nested(maxPlistDepth));
    EXPECT_EQ(failureOf(arrays(maxPlistDepth + 1)), Kind::unsupported);
}

TEST(PropertyList, whatCouldNotBeReadIsNotWritten)
{
    MemorySink sink;
    const auto done = writePropertyList(nested(maxPlistDepth + 1), sink);

    ASSERT_FALSE(done);
    EXPECT_EQ(done.error().kind, Kind::unsupported);
    EXPECT_TRUE(sink.bytes().empty());
}

TEST(PropertyList, containersThatHoldThemselvesAreRefused)
{
    EXPECT_EQ(failureOf([](auto &plist) {
                  const auto array = plist.array({});
                  plist.setArray(array, {array});
                  return array;
              }),
              Kind::damaged);
    EXPECT_EQ(failureOf([](auto &plist) {
                  const auto array = plist.array({});
                  plist.setArray(array, {plist.dictionary({{plist.ascii("up"), array}})});
                  return array;
              }),
              Kind::damaged);
}

TEST(PropertyList, containersThatAreReferredToTwiceAreReadTwice)
{
    const auto value = valueOf([](PlistBuilder &plist) {
        const auto shared = plist.array({plist.integer(7, 1)});
        return plist.array({shared, plist.array({shared})});
    });
    EXPECT_EQ(value, PlistValue(PlistArray{PlistArray{7}, PlistArray{PlistArray{7}}}));
}

TEST(PropertyList, sharingWithinMeasureIsRead)
{
    const auto value = valueOf([](auto &plist) { return tenfold(plist, 3, plist.ascii("ha")); });
    ASSERT_TRUE(value);
    EXPECT_EQ(value->as<PlistArray>()->size(), 10U);
}

TEST(PropertyList, sharingBeyondMeasureIsRefused)
{
    EXPECT_EQ(failureOf([](auto &plist) { return tenfold(plist, 60, plist.ascii("ha")); }),
              Kind::damaged);
    EXPECT_EQ(failureOf([](auto &plist) { return tenfold(plist, 60, plist.array({})); }),
              Kind::damaged);
    const std::string longText(100'000, 'x');
    EXPECT_EQ(failureOf([&](auto &plist) { return tenfold(plist, 3, plist.ascii(longText)); }),
              Kind::damaged);
    EXPECT_EQ(failureOf([&](auto &plist) {
                  const auto wide = plist.utf16(std::u16string(100'000, u'\u4E00'));
                  return tenfold(plist, 3, wide);
              }),
              Kind::damaged);
    EXPECT_EQ(failureOf([&](auto &plist) {
                  const auto key = plist.ascii(longText);
                  return tenfold(plist, 3, plist.dictionary({{key, key}}));
              }),
              Kind::damaged);
}

TEST(PropertyList, aFileCutAnywhereGivesAnErrorOrAValue)
{
    const Bytes file = written(sampleOfEveryType());
    for (std::size_t size = 0; size < file.size(); ++size) {
        expectErrorOrValue({file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)});
    }
}

TEST(PropertyList, aFileChangedAnywhereGivesAnErrorOrAValue)
{
    const Bytes file = written(sampleOfEveryType());
    for (std::size_t i = 0; i < file.size(); ++i) {
        for (const auto byte :
             {std::byte{0}, std::byte{0xFF}, file[i] ^ std::byte{1}, file[i] ^ std::byte{0x80}}) {
            Bytes changed = file;
            changed[i] = byte;
            expectErrorOrValue(changed);
        }
    }
}

TEST(PropertyList, aSinkThatFailsEndsTheWriting)
{
    const PlistValue value = PlistArray{PlistData(1'000'000, std::byte{7}), 7};
    const std::size_t size = written(value).size();
    for (const std::size_t room : {std::size_t{0}, std::size_t{300'000}, size - 1}) {
        MemorySink sink(room);
        const auto done = writePropertyList(value, sink);
        ASSERT_FALSE(done) << room;
        EXPECT_EQ(done.error().kind, Kind::unwritable);
        EXPECT_EQ(sink.writesAfterFailure(), 0);
    }
}

} // namespace tessaly::archive
