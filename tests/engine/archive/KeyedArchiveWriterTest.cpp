#include "engine/archive/KeyedArchiveWriter.hpp"

#include "engine/archive/KeyedArchiveReader.hpp"
#include "engine/archive/PropertyList.hpp"
#include "tests/engine/archive/ArchiveVectors.hpp"
#include "tests/engine/archive/PlistBuilder.hpp"
#include "tests/engine/archive/PlistSamples.hpp"
#include "tests/fakes/MemorySink.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <set>

namespace tessaly::archive {

namespace {

using Uid = KeyedArchiveWriter::Uid;

Bytes fileOf(const KeyedArchiveWriter &archive, Uid root)
{
    MemorySink sink;
    const auto done = archive.finish(root, sink);
    EXPECT_TRUE(done) << done.error().text();
    return sink.bytes();
}

Bytes fileOf(const std::vector<SampleRecord> &records)
{
    KeyedArchiveWriter archive;
    const auto list = addRecords(archive, records);
    return fileOf(archive, list);
}

PlistValue valueOf(const Bytes &file)
{
    const auto value = readPropertyList(file);
    EXPECT_TRUE(value) << value.error().text();
    return value.value();
}

/// "$objects", by UID.
PlistArray objectsOf(const Bytes &file)
{
    const PlistValue top = valueOf(file);
    return *top.as<PlistDictionary>()->at("$objects").as<PlistArray>();
}

PlistValue uid(std::uint32_t number)
{
    return PlistUid{number};
}

PlistValue classRecord(const PlistArray &chain)
{
    return PlistDictionary{{"$classname", chain.front()}, {"$classes", chain}};
}

/// An archive whose root is an instance of "Thing" with the one field "value".
class Thing {
public:
    using MakeValue = std::function<Uid(KeyedArchiveWriter &)>;

    explicit Thing(const MakeValue &makeValue) : m_file(thingFile(makeValue)), m_reader(m_file) {}

    ~Thing() = default;
    Thing(const Thing &) = delete;
    Thing &operator=(const Thing &) = delete;

    [[nodiscard]] KeyedArchiveReader::Reference value() const
    {
        KeyedArchiveReader::NameMatcher keys{"$class", "value"};
        return m_reader.fields(m_reader.object(m_reader.root()), keys)[1].value();
    }
    [[nodiscard]] std::optional<std::string> name() const
    {
        const auto string = m_reader.string(value(), "the value");
        return string.type == KeyedArchiveReader::Type::null ? std::nullopt
                                                             : std::optional(m_reader.name(string));
    }
    [[nodiscard]] std::optional<double> date() const { return m_reader.date(value(), "the value"); }
    [[nodiscard]] PlistArray objects() const { return objectsOf(m_file); }

private:
    static Bytes thingFile(const MakeValue &makeValue)
    {
        KeyedArchiveWriter archive;
        const auto thing = archive.reserve();
        const auto value = makeValue(archive);
        archive.instance(thing, archive.classNamed("Thing", {"NSObject"}), {{"value", value}});
        return fileOf(archive, thing);
    }

    Bytes m_file;
    KeyedArchiveReader m_reader;
};

std::optional<std::string> nameAgain(const std::string &name)
{
    return Thing([&](auto &archive) { return archive.string(name); }).name();
}

std::optional<double> dateAgain(double seconds)
{
    return Thing([=](auto &archive) { return archive.date(seconds); }).date();
}

/// Reads the records of a list back and expects these.
void expectRecords(const Bytes &file, const std::vector<SampleRecord> &records)
{
    const KeyedArchiveReader archive(file);
    KeyedArchiveReader::NameMatcher keys{"$class", "scanPath", "scanTotal", "scanKey", "scanDate"};
    KeyedArchiveReader::NameMatcher classes{"KORVENHistoryItem"};
    const auto list = archive.rootArray();
    ASSERT_EQ(list.count, records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto fields = archive.fields(archive.object(archive.elementUid(list, i)), keys);
        const auto text = [&](std::size_t key) {
            return archive.name(archive.string(fields[key].value(), "a text"));
        };
        ASSERT_EQ(archive.classIndex(fields[0].value(), classes), 0U);
        EXPECT_EQ(text(1), records[i].path);
        EXPECT_EQ(text(2), records[i].total);
        EXPECT_EQ(text(3), records[i].key);
        EXPECT_EQ(archive.date(fields[4].value(), "a date"), records[i].date);
    }
}

} // namespace

TEST(KeyedArchiveWriter, writesWhatAnotherWriterMakesOfTheSameRecords)
{
    EXPECT_TRUE(valueOf(fileOf(sampleRecords())) == valueOf(vectorBytes("valid/history_3.bplist")));
    EXPECT_TRUE(valueOf(fileOf(std::vector<SampleRecord>{})) ==
                valueOf(vectorBytes("valid/history_empty.bplist")));
}

TEST(KeyedArchiveWriter, recordsAreReadBack)
{
    expectRecords(fileOf(sampleRecords()), sampleRecords());
}

TEST(KeyedArchiveWriter, recordsAreReadBackWhateverTheWidthOfReferences)
{
    // Eleven objects for each record, and some fifty.
    std::set<std::byte> widths;
    for (const std::size_t edge : {std::size_t{0x100}, std::size_t{0x10000}}) {
        for (std::size_t count = (edge - 100) / 11; count <= edge / 11; ++count) {
            const std::vector<SampleRecord> records(count, sampleRecords().back());
            const Bytes file = fileOf(records);
            expectRecords(file, records);
            constexpr std::size_t trailer = 32;
            constexpr std::size_t widthInTrailer = 7;
            widths.insert(file[file.size() - trailer + widthInTrailer]);
        }
    }
    EXPECT_EQ(widths, (std::set{std::byte{1}, std::byte{2}, std::byte{4}}));
}

TEST(KeyedArchiveWriter, placesFollowTheOrderInWhichTheyAreTaken)
{
    KeyedArchiveWriter archive;
    const auto list = archive.reserve();
    const auto point = archive.reserve();
    const auto name = archive.string("A");
    archive.instance(point, archive.classNamed("Point", {"Shape", "NSObject"}),
                     {{"name", name}, {"next", point}, {"none", Uid::null}});
    archive.array(list, std::array{point, point, Uid::null});

    const PlistArray expected{
        "$null",
        PlistDictionary{{"NS.objects", PlistArray{uid(2), uid(2), uid(0)}}, {"$class", uid(5)}},
        PlistDictionary{{"name", uid(3)}, {"next", uid(2)}, {"none", uid(0)}, {"$class", uid(4)}},
        "A",
        classRecord({"Point", "Shape", "NSObject"}),
        classRecord({"NSMutableArray", "NSArray", "NSObject"})};
    EXPECT_TRUE(objectsOf(fileOf(archive, list)) == expected);
}

TEST(KeyedArchiveWriter, fieldsStandInTheOrderGivenAndTheClassLast)
{
    KeyedArchiveWriter archive;
    const auto point = archive.reserve();
    archive.instance(point, archive.classNamed("Point", {}),
                     {{"y", Uid::null}, {"x", Uid::null}, {"z", Uid::null}});
    const Bytes file = fileOf(archive, point);

    const KeyedArchiveReader reader(file);
    const BinaryPlistReader &plist = reader.propertyList();
    const auto instance = reader.object(1);
    ASSERT_EQ(instance.count, 4U);
    for (std::uint64_t i = 0; i < instance.count; ++i) {
        const std::array expected{"y", "x", "z", "$class"};
        EXPECT_TRUE(plist.isString(plist.object(plist.key(instance, i)), expected.at(i)));
    }
}

TEST(KeyedArchiveWriter, aClassIsWrittenOnceAfterWhatItsFirstInstanceHolds)
{
    KeyedArchiveWriter archive;
    const auto outer = archive.reserve();
    const auto inner = archive.reserve();
    const auto other = archive.reserve();
    const auto first = archive.classNamed("First", {"NSObject"});
    const auto second = archive.classNamed("Second", {"First", "NSObject"});
    archive.instance(inner, second, {});
    archive.instance(other, second, {});
    EXPECT_EQ(archive.classNamed("Second", {"First", "NSObject"}), second);
    archive.instance(outer, first, {{"a", inner}, {"b", other}});

    const PlistArray expected{"$null",
                              PlistDictionary{{"a", uid(2)}, {"b", uid(3)}, {"$class", uid(5)}},
                              PlistDictionary{{"$class", uid(4)}},
                              PlistDictionary{{"$class", uid(4)}},
                              classRecord({"Second", "First", "NSObject"}),
                              classRecord({"First", "NSObject"})};
    EXPECT_TRUE(objectsOf(fileOf(archive, outer)) == expected);
}

TEST(KeyedArchiveWriter, uidsAndKeysAreShared)
{
    const auto objectCount = [](std::size_t recordCount) {
        const std::vector<SampleRecord> records(recordCount, sampleRecords().front());
        return BinaryPlistReader(fileOf(records)).objectCount();
    };
    // The record, three strings, the date, a UID for each of them, and the date's number.
    EXPECT_EQ(objectCount(3) - objectCount(2), 11U);
    EXPECT_EQ(objectCount(100) - objectCount(99), 11U);
}

TEST(KeyedArchiveWriter, anObjectMayBeReferredToInManyPlaces)
{
    KeyedArchiveWriter archive;
    const auto list = archive.reserve();
    const auto name = archive.string("shared");
    archive.array(list, std::vector<Uid>(1000, name));
    const Bytes file = fileOf(archive, list);

    const KeyedArchiveReader reader(file);
    const auto elements = reader.rootArray();
    ASSERT_EQ(elements.count, 1000U);
    EXPECT_EQ(reader.name(reader.object(reader.elementUid(elements, 999))), "shared");
    EXPECT_LT(file.size(), 2000U);
}

TEST(KeyedArchiveWriter, textsOfAnyBytesComeBack)
{
    std::string everyByte;
    for (int byte = 0; byte < 256; ++byte) {
        everyByte += static_cast<char>(byte);
    }
    for (const std::string &name :
         {std::string(), std::string("plain"), std::string("\u00E9 \U0001F600"), everyByte,
          std::string("\xFF"), std::string("half\xC3"), std::string("\xED\xA0\x80"),
          std::string("\uEF80"), std::string("\0", 1), std::string(300'000, 'x'),
          std::string("$nul"), std::string("$class")}) {
        EXPECT_EQ(nameAgain(name), name);
    }
}

TEST(KeyedArchiveWriter, aTextCalledNullIsNotNothing)
{
    EXPECT_EQ(nameAgain("$null"), "$null");

    const auto objects = Thing([](auto &archive) { return archive.string("$null"); }).objects();
    const PlistValue wrapper = PlistDictionary{{"NS.string", "$null"}, {"$class", uid(3)}};
    ASSERT_EQ(objects.size(), 5U);
    EXPECT_TRUE(objects[2] == wrapper);
    EXPECT_TRUE(objects[3] == classRecord({"NSMutableString", "NSString", "NSObject"}));
}

TEST(KeyedArchiveWriter, datesComeBack)
{
    for (const double seconds : {0.0, -1.0, 730'857'600.5, 700'000'000.123, -6e10, 1e300}) {
        EXPECT_EQ(dateAgain(seconds), seconds);
    }
}

TEST(KeyedArchiveWriter, whatIsNoPointInTimeIsNothing)
{
    for (const double seconds : {std::nan(""), std::numeric_limits<double>::infinity(),
                                 -std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(dateAgain(seconds), std::nullopt);
    }
}

TEST(KeyedArchiveWriter, aFieldMayBeNull)
{
    EXPECT_EQ(Thing([](auto & /*archive*/) { return Uid::null; }).name(), std::nullopt);
}

TEST(KeyedArchiveWriter, namesOfKeysAndClassesMayBeAnyText)
{
    KeyedArchiveWriter archive;
    const auto thing = archive.reserve();
    const auto name = archive.string("value");
    archive.instance(thing, archive.classNamed("NS.objects", {"\u00E9", ""}),
                     {{"", name}, {"\u00E9", name}, {"$objects", name}, {"NS.time", name}});

    const PlistArray expected{"$null",
                              PlistDictionary{{"", uid(2)},
                                              {"\u00E9", uid(2)},
                                              {"$objects", uid(2)},
                                              {"NS.time", uid(2)},
                                              {"$class", uid(3)}},
                              "value", classRecord({"NS.objects", "\u00E9", ""})};
    EXPECT_TRUE(objectsOf(fileOf(archive, thing)) == expected);
}

TEST(KeyedArchiveWriter, aSinkThatFailsEndsTheWritingAndAnotherCanBeTried)
{
    KeyedArchiveWriter archive;
    const auto list =
        addRecords(archive, std::vector<SampleRecord>(5'000, sampleRecords().front()));
    const Bytes whole = fileOf(archive, list);
    for (const std::size_t room : {std::size_t{0}, std::size_t{300'000}, whole.size() - 1}) {
        MemorySink sink(room);
        const auto done = archive.finish(list, sink);
        ASSERT_FALSE(done) << room;
        EXPECT_EQ(done.error().kind, ArchiveError::Kind::unwritable);
        EXPECT_EQ(sink.writesAfterFailure(), 0);
    }
    EXPECT_TRUE(fileOf(archive, list) == whole);
}

} // namespace tessaly::archive
