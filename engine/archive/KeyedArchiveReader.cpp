#include "engine/archive/KeyedArchiveReader.hpp"

#include "engine/tree/EscapedName.hpp"
#include "engine/tree/PrintableText.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessaly::archive {

namespace {

using Kind = ArchiveError::Kind;

// The format's only version so far.
constexpr std::uint64_t archiveVersion = 100000;

enum WrapperKey : std::size_t { classKey, elementsKey, stringKey, timeKey };
enum WrapperClass : std::size_t {
    arrayClass,
    mutableArrayClass,
    stringClass,
    mutableStringClass,
    dateClass,
};

std::string quoted(std::string_view text)
{
    return '"' + std::string(text) + '"';
}

} // namespace

KeyedArchiveReader::KeyedArchiveReader(std::span<const std::byte> file)
    : m_plist(file), m_budget(file.size()), m_textBudget(textFactor * file.size())
{
    const Object top = m_plist.object(m_plist.topObject());
    if (top.type != Type::dictionary) {
        throw ArchiveFailure(Kind::notAnArchive, "a property list, but not an archive",
                             m_plist.offsetOf(top));
    }
    // Before anything else: settings of other programs are property lists, too, and must not be
    // reported as damaged archives.
    const std::optional<Reference> archiver = find(top, "$archiver");
    if (!archiver || !m_plist.isString(m_plist.object(*archiver), "NSKeyedArchiver")) {
        throw ArchiveFailure(Kind::notAnArchive, "a property list, but not a keyed archive");
    }
    // Layouts may differ between versions, so nothing further is read of an unknown one.
    const Object version = require(top, "$version", Type::integer);
    const BinaryPlistReader::Integer number = m_plist.integer(version);
    if (number.negative || number.bits != archiveVersion) {
        fail(Kind::unsupported, "a keyed archive of another version", version);
    }
    m_objects = require(top, "$objects", Type::array);
    const Object roots = require(top, "$top", Type::dictionary);
    const std::optional<Reference> root = find(roots, "root");
    if (!root) {
        fail(Kind::damaged, "\"$top\" has no root", roots);
    }
    m_root = uid(*root, "the root"); // whether there is such an object is checked when it is read
}

KeyedArchiveReader::Object KeyedArchiveReader::inlineObject(Reference value) const
{
    // Archivers put plain numbers in the place of a UID. A plain "$null" there means the same as
    // UID 0.
    const Object object = m_plist.object(value);
    return isNullMarker(object) ? Object{} : object;
}

/// For instances that are too large for the cache, and for objects that are no instances.
KeyedArchiveReader::Fields KeyedArchiveReader::unusualFields(const Object &instance,
                                                             NameMatcher &keys) const
{
    // Positions are narrow numbers, of which the last one stands for "missing".
    if (instance.type != Type::dictionary || instance.count >= Fields::missing) {
        fail(Kind::damaged, "an instance is not a dictionary", instance);
    }
    // Spent before the entries are read, so that a false count costs nothing.
    spend(instance.count);
    return {m_plist, instance, positions(instance, keys)};
}

KeyedArchiveReader::Fields::Positions KeyedArchiveReader::positions(const Object &instance,
                                                                    NameMatcher &keys) const
{
    Fields::Positions positions;
    positions.fill(Fields::missing);
    for (std::uint32_t i = 0; i < instance.count; ++i) {
        const std::size_t index = keyIndex(m_plist.key(instance, i), keys);
        if (index != keys.none() && positions[index] == Fields::missing) { // the first one counts
            positions[index] = i;
        }
    }
    return positions;
}

/// Which of the names a key is. By the key's number, so a name is compared once for each of its
/// objects and not once for each instance.
std::size_t KeyedArchiveReader::keyIndex(Reference key, NameMatcher &keys) const
{
    // One answer for each slot, without chains: a collision only means that the name is compared
    // again.
    NameMatcher::Answer &answer = keys.recent(key);
    if (!answer.answers(key)) {
        answer = {key, matchName(m_plist.object(key), keys)};
    }
    return answer.index;
}

std::size_t KeyedArchiveReader::classIndexOf(Uid classUid, NameMatcher &classes) const
{
    NameMatcher::Answer &answer = classes.recent(classUid);
    if (answer.answers(classUid)) {
        return answer.index;
    }

    // Only sound answers are cached: each failure below throws before the assignment at the end.
    const Object description = classDescription(classUid);
    const std::optional<Reference> name = find(description, "$classname");
    if (!name || !m_plist.object(*name).isString()) {
        fail(Kind::damaged, "a class without a name", description);
    }
    // The class's own name comes first. The names of its superclasses let a reader make do with the
    // nearest class that it knows.
    std::size_t index = matchName(m_plist.object(*name), classes);
    if (const std::optional<Reference> chain = find(description, "$classes");
        chain && index == classes.none()) {
        const Object names = m_plist.object(*chain);
        // The chain only helps with unknown classes. One that is damaged makes the class unknown,
        // and the archive stays readable.
        if (names.type == Type::array) {
            // Each class may have a long chain, and each instance a class of its own.
            spend(names.count);
            for (std::uint64_t i = 0; i < names.count && index == classes.none(); ++i) {
                index = matchName(m_plist.object(m_plist.element(names, i)), classes);
            }
        }
    }
    answer = {classUid, index};
    return index;
}

std::string KeyedArchiveReader::className(Reference classValue) const
{
    constexpr std::size_t maxLength = 100; // it is for a message, and a file may claim any
    // An error is being reported already. A missing name leaves its text empty instead of raising a
    // second one.
    const Object name = m_plist.object(
        find(classDescription(uid(classValue, "\"$class\"")), "$classname").value_or(0));
    return name.isString() ? tree::printableText(this->name(name).substr(0, maxLength)) : "";
}

KeyedArchiveReader::Object KeyedArchiveReader::classDescription(Uid classUid) const
{
    const Object description = object(classUid);
    // A UID may lead to any object of the file, also to a string.
    if (description.type != Type::dictionary) {
        fail(Kind::damaged, "\"$class\" does not describe a class", description);
    }
    return description;
}

std::optional<KeyedArchiveReader::Object> KeyedArchiveReader::array(Reference value,
                                                                    std::string_view what) const
{
    const Object instance = resolved(value);
    if (instance.type == Type::null) {
        return std::nullopt;
    }
    return elementsOf(instance, what);
}

KeyedArchiveReader::Object KeyedArchiveReader::rootArray() const
{
    return elementsOf(object(m_root), "the root");
}

/// Which of the classes of lists, texts and dates an instance has.
std::size_t KeyedArchiveReader::wrapperClass(const Fields &wrapper) const
{
    // Without a class it is none of the wrappers, and the caller says so in terms of the value.
    const std::optional<Reference> classValue = wrapper[classKey];
    return classValue ? classIndex(*classValue, m_wrapperClasses) : m_wrapperClasses.none();
}

KeyedArchiveReader::Object KeyedArchiveReader::elementsOf(const Object &instance,
                                                          std::string_view what) const
{
    if (instance.type != Type::dictionary) {
        fail(Kind::damaged, std::string(what) + " is not an array", instance);
    }
    const Fields wrapper = fields(instance, m_wrapperKeys);
    const std::size_t index = wrapperClass(wrapper);
    // The class decides, not the key: sets store their members under "NS.objects", too, and have no
    // order.
    if (index != arrayClass && index != mutableArrayClass) {
        fail(Kind::damaged, std::string(what) + " is not an array", instance);
    }
    const std::optional<Reference> elements = wrapper[elementsKey];
    // The elements are a plain array inside of the instance, not a UID.
    const Object list = elements ? m_plist.object(*elements) : Object{};
    if (list.type != Type::array) {
        fail(Kind::damaged, std::string(what) + " has no \"NS.objects\"", instance);
    }
    return list;
}

KeyedArchiveReader::Object KeyedArchiveReader::unwrapped(const Object &wrapper,
                                                         std::string_view what) const
{
    if (wrapper.type == Type::dictionary) {
        const Fields fields = this->fields(wrapper, m_wrapperKeys);
        const std::size_t index = wrapperClass(fields);
        // Immutable strings usually stand in "$objects" as they are. Mutable ones are wrapped, and
        // so is the text "$null".
        if ((index == stringClass || index == mutableStringClass) && fields[stringKey]) {
            const Object string = m_plist.object(*fields[stringKey]);
            if (string.isString()) {
                return string;
            }
        }
    }
    fail(Kind::damaged, std::string(what) + " is not a string", wrapper);
}

std::string KeyedArchiveReader::name(const Object &string) const
{
    // The string is copied, and a hostile file may refer to a long one a million times.
    spendText(string);
    // Bytes that are not valid UTF-8 are escaped in UTF-16, which ASCII strings never need.
    if (string.type == Type::utf16String) {
        return tree::nameFromEscaped(m_plist.utf16(string));
    }
    return std::string(m_plist.ascii(string));
}

std::u16string KeyedArchiveReader::text(const Object &string) const
{
    spendText(string);
    if (string.type == Type::utf16String) {
        return m_plist.utf16(string);
    }
    const std::string_view ascii = m_plist.ascii(string);
    // Widened byte by byte, which is right for ASCII only. ascii() has checked that.
    return {ascii.begin(), ascii.end()};
}

std::optional<std::uint64_t> KeyedArchiveReader::unsignedNumber(Reference value,
                                                                std::string_view what) const
{
    const Object object = resolved(value);
    switch (object.type) {
    case Type::null:
        return std::nullopt;
    case Type::integer: {
        // A negative size would turn into one of exabytes.
        const BinaryPlistReader::Integer number = m_plist.integer(object);
        if (number.negative) {
            fail(Kind::damaged, std::string(what) + " is negative", object);
        }
        return number.bits;
    }
    case Type::real: {
        const double number = m_plist.real(object);
        if (!(number >= 0 && number < 0x1p64)) { // also refuses NaN
            fail(Kind::damaged, std::string(what) + " is out of range", object);
        }
        // Safe now: converting a double that is out of range would be undefined.
        return static_cast<std::uint64_t>(number);
    }
    default:
        fail(Kind::damaged, std::string(what) + " is not a number", object);
    }
}

std::optional<double> KeyedArchiveReader::date(Reference value, std::string_view what) const
{
    Object object = resolved(value);
    if (object.type == Type::null) {
        return std::nullopt;
    }
    if (object.type == Type::dictionary) {
        const Fields wrapper = fields(object, m_wrapperKeys);
        if (wrapperClass(wrapper) == dateClass && wrapper[timeKey]) {
            object = resolved(*wrapper[timeKey]);
            // Some writers store whole seconds as an integer.
            if (object.type == Type::integer) {
                const BinaryPlistReader::Integer seconds = m_plist.integer(object);
                return seconds.negative
                           ? static_cast<double>(static_cast<std::int64_t>(seconds.bits))
                           : static_cast<double>(seconds.bits);
            }
            // A real and a date have the same content. From here on both take the same path.
            object.type = object.type == Type::real ? Type::date : object.type;
        }
    }
    if (object.type != Type::date) {
        fail(Kind::damaged, std::string(what) + " is not a date", object);
    }
    const double seconds = m_plist.real(object);
    // Comparisons with NaN are all false, so a sort by date would lose its order.
    if (!std::isfinite(seconds)) {
        fail(Kind::damaged, std::string(what) + " is not a point in time", object);
    }
    return seconds;
}

std::optional<KeyedArchiveReader::Reference> KeyedArchiveReader::find(const Object &dictionary,
                                                                      std::string_view key) const
{
    // By name and not by NameMatcher: only for the few dictionaries around the instances.
    spend(dictionary.count);
    for (std::uint64_t i = 0; i < dictionary.count; ++i) {
        if (m_plist.isString(m_plist.object(m_plist.key(dictionary, i)), key)) {
            return m_plist.value(dictionary, i);
        }
    }
    return std::nullopt;
}

KeyedArchiveReader::Object KeyedArchiveReader::require(const Object &dictionary,
                                                       std::string_view key, Type type) const
{
    const std::optional<Reference> value = find(dictionary, key);
    if (!value) {
        fail(Kind::damaged, "there is no " + quoted(key), dictionary);
    }
    const Object object = m_plist.object(*value);
    if (object.type != type) {
        fail(Kind::damaged, quoted(key) + " is of the wrong type", object);
    }
    return object;
}

std::size_t KeyedArchiveReader::matchName(const Object &string, const NameMatcher &names) const
{
    std::size_t i = 0;
    // Linear: there are eight names at most, and isString() compares lengths first.
    while (i < names.m_names.size() && !m_plist.isString(string, names.m_names[i])) {
        ++i;
    }
    return i;
}

// The failures are here, out of line: the header's functions run for every node, and inline code
// that builds messages would make them large.
void KeyedArchiveReader::failUid(std::uint64_t number)
{
    throw ArchiveFailure(Kind::damaged,
                         "UID " + std::to_string(number) + " is referred to but does not exist");
}

void KeyedArchiveReader::failNoUid(Reference value, std::string_view what) const
{
    fail(Kind::damaged, std::string(what) + " is not a UID", m_plist.object(value));
}

void KeyedArchiveReader::spendText(const Object &string) const
{
    // Compared before subtracting: the unsigned budget would wrap around.
    if (string.count > m_textBudget) {
        fail(Kind::damaged, "the archive's texts are shared beyond measure", string);
    }
    m_textBudget -= string.count;
}

void KeyedArchiveReader::failBudget()
{
    throw ArchiveFailure(Kind::damaged, "the archive's objects overlap");
}

void KeyedArchiveReader::fail(ArchiveError::Kind kind, std::string message, const Object &at) const
{
    const std::uint64_t offset = m_plist.offsetOf(at); // 0 for "$null", which lies nowhere
    throw ArchiveFailure(kind, std::move(message),
                         offset == 0 ? std::nullopt : std::optional(offset));
}

} // namespace tessaly::archive
