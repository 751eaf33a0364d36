#include "engine/archive/KeyedArchiveReader.hpp"

#include "tests/engine/archive/ArchiveVectors.hpp"
#include "tests/engine/archive/PlistBuilder.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <optional>

namespace tessaly::archive {

namespace {

using Kind = ArchiveError::Kind;
using Reference = PlistBuilder::Reference;

/// An archive whose root is an instance of "Thing"; a test says which fields it has.
class Thing {
public:
    using MakeFields = std::function<ArchiveBuilder::Fields(ArchiveBuilder &)>;

    explicit Thing(const MakeFields &makeFields) : m_file(fileOf(makeFields)), m_reader(m_file) {}

    ~Thing() = default;
    Thing(const Thing &) = delete;
    Thing &operator=(const Thing &) = delete;

    /// The field "value".
    [[nodiscard]] Reference value() const
    {
        KeyedArchiveReader::NameMatcher keys{"$class", "value"};
        return m_reader.fields(m_reader.object(m_reader.root()), keys)[1].value();
    }
    [[nodiscard]] std::optional<std::uint64_t> number() const
    {
        return m_reader.unsignedNumber(value(), "the value");
    }
    [[nodiscard]] std::optional<double> date() const { return m_reader.date(value(), "the value"); }
    [[nodiscard]] std::optional<std::u16string> text() const
    {
        const auto string = m_reader.string(value(), "the value");
        return string.type == KeyedArchiveReader::Type::null ? std::nullopt
                                                             : std::optional(m_reader.text(string));
    }
    [[nodiscard]] std::optional<std::uint64_t> elementCount() const
    {
        const auto array = m_reader.array(value(), "the value");
        return array ? std::optional(array->count) : std::nullopt;
    }

private:
    static Bytes fileOf(const MakeFields &makeFields)
    {
        ArchiveBuilder archive;
        const auto thing = archive.classNamed("Thing", {"Thing", "NSObject"});
        return archive.build(archive.instance(thing, makeFields(archive)));
    }

    Bytes m_file;
    KeyedArchiveReader m_reader;
};

/// A thing with that value.
Thing thingWith(const std::function<Reference(ArchiveBuilder &)> &makeValue)
{
    return Thing([&](ArchiveBuilder &archive) {
        return ArchiveBuilder::Fields{{"value", makeValue(archive)}};
    });
}

/// A thing whose value is a UID of the object.
Thing thingWithArchived(const std::function<Reference(PlistBuilder &)> &makeObject)
{
    return thingWith(
        [&](ArchiveBuilder &archive) { return archive.archived(makeObject(archive.plist())); });
}

/// A thing whose value is an instance of that class with one field.
Thing thingWithInstance(const std::string &className, const std::string &key,
                        const std::function<Reference(PlistBuilder &)> &makeField)
{
    return thingWith([&](ArchiveBuilder &archive) {
        return archive.instance(archive.classNamed(className), {{key, makeField(archive.plist())}});
    });
}

template <typename Work>
std::optional<Kind> failureOf(Work work)
{
    try {
        (void)work();
    } catch (const ArchiveFailure &failure) {
        return failure.error().kind;
    }
    return std::nullopt;
}

std::optional<Kind> failureOfOpening(const Bytes &file)
{
    return failureOf([&] { return KeyedArchiveReader(file); });
}

Bytes emptyListWithFrame(const ArchiveBuilder::Frame &frame)
{
    ArchiveBuilder archive;
    return archive.build(archive.list({}), frame);
}

/// The class among "Item" and "Folder" that an instance of the class described reads as.
std::size_t classOf(const std::string &name, const std::vector<std::string> &chain)
{
    ArchiveBuilder archive;
    const Bytes file = archive.build(archive.instance(archive.classNamed(name, chain), {}));
    const KeyedArchiveReader reader(file);
    KeyedArchiveReader::NameMatcher keys{"$class"};
    KeyedArchiveReader::NameMatcher classes{"Item", "Folder"};
    return reader.classIndex(*reader.fields(reader.object(reader.root()), keys)[0], classes);
}

} // namespace

TEST(KeyedArchiveReader, readsPlainStringsInEitherEncoding)
{
    EXPECT_EQ(thingWithArchived([](auto &plist) { return plist.ascii("abc"); }).text(), u"abc");
    EXPECT_EQ(thingWithArchived([](auto &plist) { return plist.utf16(u"\u00E9\xD83D"); }).text(),
              u"\u00E9\xD83D");
    EXPECT_EQ(thingWith([](auto &archive) { return archive.plist().ascii("abc"); }).text(), u"abc");
}

TEST(KeyedArchiveReader, readsStringInstances)
{
    for (const std::string name : {"NSString", "NSMutableString"}) {
        EXPECT_EQ(
            thingWithInstance(name, "NS.string", [](auto &plist) { return plist.ascii("abc"); })
                .text(),
            u"abc");
    }
}

TEST(KeyedArchiveReader, aStringInstanceMayBeCalledNull)
{
    EXPECT_EQ(thingWithInstance("NSMutableString", "NS.string",
                                [](auto &plist) { return plist.ascii("$null"); })
                  .text(),
              u"$null");
}

TEST(KeyedArchiveReader, whatIsPlainlyCalledNullIsNothing)
{
    const auto nulls = {thingWith([](auto &archive) { return archive.null(); }),
                        thingWith([](auto &archive) { return archive.plist().ascii("$null"); }),
                        thingWithArchived([](auto &plist) { return plist.ascii("$null"); }),
                        thingWithArchived([](auto &plist) { return plist.utf16(u"$null"); })};
    for (const Thing &null : nulls) {
        EXPECT_EQ(null.text(), std::nullopt);
        EXPECT_EQ(null.number(), std::nullopt);
        EXPECT_EQ(null.date(), std::nullopt);
        EXPECT_EQ(null.elementCount(), std::nullopt);
    }
}

TEST(KeyedArchiveReader, otherValuesAreNoStrings)
{
    const auto others = {
        thingWithArchived([](auto &plist) { return plist.integer(1, 1); }),
        thingWithArchived([](auto &plist) { return plist.raw(bytesOf("\x41x")); }),
        thingWithInstance("NSNumber", "NS.string", [](auto &plist) { return plist.ascii("a"); }),
        thingWithInstance("NSString", "other", [](auto &plist) { return plist.ascii("a"); }),
        thingWithInstance("NSString", "NS.string",
                          [](auto &plist) { return plist.integer(1, 1); })};
    for (const Thing &other : others) {
        EXPECT_EQ(failureOf([&] { return other.text(); }), Kind::damaged);
    }
}

TEST(KeyedArchiveReader, asciiStringsWithOtherBytesAreRefused)
{
    EXPECT_EQ(
        failureOf([] {
            return thingWithArchived([](auto &plist) { return plist.ascii("\xC3\xA9"); }).text();
        }),
        Kind::damaged);
}

TEST(KeyedArchiveReader, readsNumbersInlineAndByUid)
{
    EXPECT_EQ(thingWith([](auto &archive) { return archive.plist().integer(7, 1); }).number(), 7U);
    EXPECT_EQ(thingWithArchived([](auto &plist) { return plist.integer(7, 8); }).number(), 7U);
    EXPECT_EQ(thingWithArchived([](auto &plist) { return plist.integer(UINT64_MAX, 16); }).number(),
              UINT64_MAX);
}

TEST(KeyedArchiveReader, cutsRealNumbers)
{
    EXPECT_EQ(thingWithArchived([](auto &plist) { return plist.real(1500.9); }).number(), 1500U);
    EXPECT_EQ(thingWithArchived([](auto &plist) { return plist.real(-0.0); }).number(), 0U);
    EXPECT_EQ(
        thingWithArchived([](auto &plist) { return plist.real(0x1.fffffffffffffp63); }).number(),
        0xFFFFFFFFFFFFF800U);
}

TEST(KeyedArchiveReader, numbersOutOfRangeAreRefused)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    for (const double number : {-1.0, -0.5, 0x1p64, infinity, -infinity, notANumber}) {
        const Thing thing = thingWithArchived([=](auto &plist) { return plist.real(number); });
        EXPECT_EQ(failureOf([&] { return thing.number(); }), Kind::damaged) << number;
    }
    const Thing negative =
        thingWithArchived([](auto &plist) { return plist.integer(UINT64_MAX, 8); });
    EXPECT_EQ(failureOf([&] { return negative.number(); }), Kind::damaged);
}

TEST(KeyedArchiveReader, otherValuesAreNoNumbers)
{
    const auto others = {thingWithArchived([](auto &plist) { return plist.boolean(true); }),
                         thingWithArchived([](auto &plist) { return plist.boolean(false); }),
                         thingWithArchived([](auto &plist) { return plist.ascii("7"); }),
                         thingWithArchived([](auto &plist) { return plist.date(7); }),
                         thingWithArchived([](auto &plist) { return plist.uid(0); })};
    for (const Thing &other : others) {
        EXPECT_EQ(failureOf([&] { return other.number(); }), Kind::damaged);
    }
}

TEST(KeyedArchiveReader, readsDatesInAllTheirForms)
{
    const auto dates = {
        thingWithInstance("NSDate", "NS.time", [](auto &plist) { return plist.real(-42); }),
        thingWithInstance("NSDate", "NS.time", [](auto &plist) { return plist.integer(-42UL, 8); }),
        thingWithArchived([](auto &plist) { return plist.date(-42); }),
        thingWith([](auto &archive) { return archive.plist().date(-42); })};
    for (const Thing &date : dates) {
        EXPECT_EQ(date.date(), -42.0);
    }
}

TEST(KeyedArchiveReader, keepsFractionsOfSeconds)
{
    EXPECT_EQ(thingWithInstance("NSDate", "NS.time", [](auto &plist) { return plist.real(0.125); })
                  .date(),
              0.125);
}

TEST(KeyedArchiveReader, datesHaveToBePointsInTime)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    const auto others = {
        thingWithInstance("NSDate", "NS.time", [](auto &plist) { return plist.real(infinity); }),
        thingWithInstance("NSDate", "NS.time", [](auto &plist) { return plist.real(notANumber); }),
        thingWithInstance("NSDate", "NS.time", [](auto &plist) { return plist.ascii("now"); }),
        thingWithInstance("NSDate", "time", [](auto &plist) { return plist.real(1); }),
        thingWithInstance("NSNumber", "NS.time", [](auto &plist) { return plist.real(1); }),
        thingWithArchived([](auto &plist) { return plist.date(notANumber); }),
        thingWithArchived([](auto &plist) { return plist.real(1); }),
        thingWithArchived([](auto &plist) { return plist.ascii("now"); })};
    for (const Thing &other : others) {
        EXPECT_EQ(failureOf([&] { return other.date(); }), Kind::damaged);
    }
}

TEST(KeyedArchiveReader, readsArraysOfEitherClass)
{
    for (const std::string name : {"NSArray", "NSMutableArray"}) {
        EXPECT_EQ(thingWith([&](auto &archive) {
                      return archive.list({archive.null(), archive.null()}, name);
                  }).elementCount(),
                  2U);
    }
}

TEST(KeyedArchiveReader, otherValuesAreNoArrays)
{
    const auto others = {
        thingWithArchived([](auto &plist) { return plist.ascii("a"); }),
        thingWithArchived([](auto &plist) { return plist.array({}); }),
        thingWith([](auto &archive) { return archive.list({}, "NSSet"); }),
        thingWithInstance("NSArray", "NS.objects", [](auto &plist) { return plist.ascii("a"); }),
        thingWithInstance("NSArray", "objects", [](auto &plist) { return plist.array({}); }),
        thingWith([](auto &archive) { return archive.archived(archive.dictionary({})); })};
    for (const Thing &other : others) {
        EXPECT_EQ(failureOf([&] { return other.elementCount(); }), Kind::damaged);
    }
}

TEST(KeyedArchiveReader, elementsHaveToBeUids)
{
    ArchiveBuilder archive;
    const Bytes file = archive.build(archive.list({archive.plist().integer(0, 1)}));
    const KeyedArchiveReader reader(file);

    EXPECT_EQ(failureOf([&] { return reader.elementUid(reader.rootArray(), 0); }), Kind::damaged);
}

TEST(KeyedArchiveReader, uidsOfAnyWidthAreFollowed)
{
    for (unsigned width = 1; width <= 8; ++width) {
        ArchiveBuilder archive;
        (void)archive.list({});
        const Bytes file = archive.build(archive.plist().uid(2, width));
        EXPECT_EQ(KeyedArchiveReader(file).rootArray().count, 0U) << width;
    }
}

TEST(KeyedArchiveReader, uidsToNothingAreRefused)
{
    for (const std::uint64_t number :
         {std::uint64_t{3}, std::uint64_t{0xFFFFFFFF}, std::uint64_t{0x100000002}, UINT64_MAX}) {
        ArchiveBuilder archive;
        (void)archive.list({});
        const Bytes file = archive.build(archive.plist().uid(number, 8));
        EXPECT_EQ(failureOf([&] { return KeyedArchiveReader(file).rootArray(); }), Kind::damaged);
    }
}

TEST(KeyedArchiveReader, ofAKeyGivenTwiceTheFirstCounts)
{
    const Thing thing([](ArchiveBuilder &archive) {
        return ArchiveBuilder::Fields{{"value", archive.plist().integer(1, 1)},
                                      {"value", archive.plist().integer(2, 1)}};
    });

    EXPECT_EQ(thing.number(), 1U);
}

TEST(KeyedArchiveReader, ofManyKeysTheFirstOfTwoCountsToo)
{
    const Thing thing([](ArchiveBuilder &archive) {
        ArchiveBuilder::Fields fields;
        for (int i = 0; i < 20; ++i) {
            fields.emplace_back("other" + std::to_string(i), archive.null());
        }
        fields.emplace_back("value", archive.plist().integer(1, 1));
        fields.emplace_back("value", archive.plist().integer(2, 1));
        return fields;
    });

    EXPECT_EQ(thing.number(), 1U);
}

TEST(KeyedArchiveReader, anInstanceWithoutKeysHasNoValues)
{
    ArchiveBuilder archive;
    const Bytes file = archive.build(archive.archived(archive.plist().dictionary({})));
    const KeyedArchiveReader reader(file);
    KeyedArchiveReader::NameMatcher keys{"$class", "value"};
    const auto fields = reader.fields(reader.object(reader.root()), keys);

    EXPECT_EQ(fields[0], std::nullopt);
    EXPECT_EQ(fields[1], std::nullopt);
}

TEST(KeyedArchiveReader, keysMayBeUtf16)
{
    ArchiveBuilder archive;
    PlistBuilder &plist = archive.plist();
    const auto number = plist.integer(7, 1);
    const Bytes file =
        archive.build(archive.archived(plist.dictionary({{plist.utf16(u"value"), number}})));
    const KeyedArchiveReader reader(file);
    KeyedArchiveReader::NameMatcher keys{"value"};

    const auto fields = reader.fields(reader.object(reader.root()), keys);
    EXPECT_EQ(reader.unsignedNumber(fields[0].value(), "the value"), 7U);
}

TEST(KeyedArchiveReader, instancesOfTheSameShapeKeepTheirOwnValues)
{
    ArchiveBuilder archive;
    PlistBuilder &plist = archive.plist();
    const auto a = plist.ascii("a");
    const auto b = plist.ascii("b");
    const auto one = plist.integer(1, 1);
    const auto two = plist.integer(2, 1);
    const Bytes file =
        archive.build(archive.list({archive.archived(plist.dictionary({{a, one}, {b, two}})),
                                    archive.archived(plist.dictionary({{b, one}, {a, two}})),
                                    archive.archived(plist.dictionary({{a, two}, {b, one}}))}));
    const KeyedArchiveReader reader(file);
    KeyedArchiveReader::NameMatcher keys{"a", "b"};
    const auto valuesOf = [&](std::uint64_t i) {
        const auto instance = reader.object(reader.elementUid(reader.rootArray(), i));
        const auto fields = reader.fields(instance, keys);
        return std::pair(reader.unsignedNumber(*fields[0], "a").value(),
                         reader.unsignedNumber(*fields[1], "b").value());
    };

    EXPECT_EQ(valuesOf(0), std::pair(std::uint64_t{1}, std::uint64_t{2}));
    EXPECT_EQ(valuesOf(1), std::pair(std::uint64_t{2}, std::uint64_t{1}));
    EXPECT_EQ(valuesOf(2), std::pair(std::uint64_t{2}, std::uint64_t{1}));
}

TEST(KeyedArchiveReader, aKeyOrValueThatDoesNotExistIsRefused)
{
    for (const Reference missing : {Reference{5000}, Reference{UINT64_MAX}}) {
        ArchiveBuilder archive;
        PlistBuilder &plist = archive.plist();
        const auto value = plist.ascii("value");
        const auto badKey = archive.archived(plist.dictionary({{missing, value}}));
        const auto badValue = archive.archived(plist.dictionary({{value, missing}}));
        const Bytes file = archive.build(archive.list({badKey, badValue}),
                                         {.widths = {.offset = 8, .reference = 8}});
        const KeyedArchiveReader reader(file);
        KeyedArchiveReader::NameMatcher keys{"value"};
        for (const std::uint64_t i : {0U, 1U}) {
            EXPECT_EQ(failureOf([&] {
                          const auto instance =
                              reader.object(reader.elementUid(reader.rootArray(), i));
                          return reader.unsignedNumber(*reader.fields(instance, keys)[0], "value");
                      }),
                      Kind::damaged);
        }
    }
}

TEST(KeyedArchiveReader, classesAreKnownByNameOrBySuperclass)
{
    EXPECT_EQ(classOf("Item", {"Item", "NSObject"}), 0U);
    EXPECT_EQ(classOf("Folder", {"Folder", "Item", "NSObject"}), 1U);
    EXPECT_EQ(classOf("Folder", {}), 1U);
    EXPECT_EQ(classOf("FancyFolder", {"FancyFolder", "Folder", "Item", "NSObject"}), 1U);
    EXPECT_EQ(classOf("FancyItem", {"FancyItem", "Item", "NSObject"}), 0U);
    EXPECT_EQ(classOf("Weird", {"Weird", "NSObject"}), 2U);
}

TEST(KeyedArchiveReader, aClassThatDoesNotExistIsRefused)
{
    ArchiveBuilder archive;
    const Bytes file = archive.build(archive.list({}));
    const KeyedArchiveReader reader(file);
    KeyedArchiveReader::NameMatcher classes{"Item"};

    for (const Reference missing : {Reference{5000}, Reference{UINT64_MAX}}) {
        EXPECT_EQ(failureOf([&] { return reader.classIndex(missing, classes); }), Kind::damaged);
    }
}

TEST(KeyedArchiveReader, theClassNameIsShortAndOnOneLine)
{
    ArchiveBuilder archive;
    const std::string hostile = "A\nB\x1B[31m" + std::string(5000, 'x');
    const auto classUid = archive.classNamed(hostile);
    const Bytes file = archive.build(archive.instance(classUid, {}));
    const std::string name = KeyedArchiveReader(file).className(classUid);

    EXPECT_LE(name.size(), 100U);
    EXPECT_TRUE(name.starts_with("A?B?[31mx")) << name;
}

TEST(KeyedArchiveReader, theFrameIsChecked)
{
    EXPECT_EQ(failureOfOpening(emptyListWithFrame({})), std::nullopt);
    EXPECT_EQ(failureOfOpening(emptyListWithFrame({.archiver = "NSArchiver"})), Kind::notAnArchive);
    EXPECT_EQ(failureOfOpening(emptyListWithFrame({.version = 100001})), Kind::unsupported);
    EXPECT_EQ(failureOfOpening(emptyListWithFrame({.version = 0})), Kind::unsupported);
}

TEST(KeyedArchiveReader, everyReferenceWidthIsRead)
{
    for (unsigned reference = 1; reference <= 8; ++reference) {
        for (unsigned offset = 2; offset <= 8; ++offset) {
            const Bytes file =
                emptyListWithFrame({.widths = {.offset = offset, .reference = reference}});
            EXPECT_EQ(KeyedArchiveReader(file).rootArray().count, 0U);
        }
    }
}

TEST(KeyedArchiveReader, largeObjectsMetAgainAndAgainAreRefused)
{
    ArchiveBuilder archive;
    PlistBuilder::Pairs pairs(10'000, {archive.null(), archive.null()});
    const auto huge = archive.archived(archive.plist().dictionary(pairs));
    const Bytes file = archive.build(huge);
    const KeyedArchiveReader reader(file);
    KeyedArchiveReader::NameMatcher keys{"value"};

    EXPECT_EQ(failureOf([&] {
                  for (int i = 0; i < 100; ++i) {
                      (void)reader.fields(reader.object(reader.root()), keys);
                  }
                  return 0;
              }),
              Kind::damaged);
}

TEST(KeyedArchiveReader, aTextMayBeSharedButNotToNoEnd)
{
    const Thing thing =
        thingWithArchived([](auto &plist) { return plist.ascii(std::string(100'000, 'x')); });

    EXPECT_EQ(thing.text(), std::u16string(100'000, u'x'));
    EXPECT_EQ(failureOf([&] {
                  for (int i = 0; i < 100; ++i) {
                      (void)thing.text();
                  }
                  return 0;
              }),
              Kind::damaged);
}

TEST(KeyedArchiveReader, damagedHistoriesAreFoundAtTheirDates)
{
    for (const ArchiveVector &vector : archiveVectors("history")) {
        const Bytes file = vectorBytes(vector.file);
        const KeyedArchiveReader reader(file);
        const auto records = reader.rootArray();
        KeyedArchiveReader::NameMatcher keys{"scanDate"};
        const auto failure = failureOf([&] {
            for (std::uint64_t i = 0; i < records.count; ++i) {
                const auto record = reader.object(reader.elementUid(records, i));
                if (const auto date = reader.fields(record, keys)[0]) {
                    (void)reader.date(*date, "the date");
                }
            }
            return 0;
        });
        EXPECT_EQ(failure ? kindName(*failure) : "read", vector.outcome) << vector.file;
    }
}

} // namespace tessaly::archive
