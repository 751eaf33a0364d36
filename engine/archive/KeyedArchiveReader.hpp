#pragma once

#include "engine/archive/BinaryPlistReader.hpp"

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly::archive {

/// The objects of a keyed archive: a property list whose top dictionary holds "$archiver"
/// "NSKeyedArchiver", "$version" 100000, "$objects" (all objects; the first one, "$null", stands
/// for none) and "$top" with the root. Objects refer to one another by UID, the place in
/// "$objects". An instance of a class is a dictionary of its keys and "$class", which refers to
/// {"$classname", "$classes"}: the name, and the names of the class and its superclasses.
///
/// This layer knows strings, numbers, dates, arrays and instances, and no class of ours. Records
/// are read with fields(), which looks keys up by a NameMatcher and ignores keys that it lacks.
///
/// The work on a hostile file is limited. Its objects may overlap, so that together they are larger
/// than the file, and may be referred to many times: so the dictionary entries read are limited to
/// the file's size in bytes, and the texts returned to 64 times that.
///
/// Errors:  ArchiveFailure.
/// Threads: one at a time for each reader.
class KeyedArchiveReader {
public:
    using Object = BinaryPlistReader::Object;
    using Reference = BinaryPlistReader::Reference;
    using Type = BinaryPlistReader::Type;
    /// An object's place in "$objects".
    using Uid = std::uint32_t;

    /// Finds out which of a list of names an object has, with a cache: an archive has few keys and
    /// classes, and millions of references to them.
    class NameMatcher {
        static constexpr std::size_t recentCount = 32;
        static constexpr std::size_t maxShapeSize = 8;
        static constexpr std::size_t maxNames = 8;

    public:
        /// Eight names at most.
        NameMatcher(std::initializer_list<std::string_view> names) : m_names(names)
        {
            assert(names.size() <= maxNames);
        }

        /// Number of names, which is also the index for "none of them".
        [[nodiscard]] std::size_t none() const noexcept { return m_names.size(); }

    private:
        friend class KeyedArchiveReader;
        static constexpr std::uint64_t noQuestion = UINT64_MAX;
        struct Answer {
            std::uint64_t question = noQuestion;
            std::size_t index = 0;

            /// noQuestion marks an empty entry; a file may hold that number all the same.
            [[nodiscard]] bool answers(std::uint64_t asked) const noexcept
            {
                return question == asked && asked != noQuestion;
            }
        };
        /// The positions of the names' values in dictionaries with these key references.
        struct Shape {
            std::string_view keyReferences;
            std::array<std::uint32_t, maxNames> positions{};
        };

        Answer &recent(std::uint64_t question) noexcept { return m_recent[question % recentCount]; }

        std::vector<std::string_view> m_names;
        Answer m_last; ///< by reference; of no use in files that share no references
        std::array<Answer, recentCount> m_recent{};     ///< by key reference or class UID
        std::array<Shape, maxShapeSize + 1> m_shapes{}; ///< the last one of each size
    };

    /// The value of each key of a NameMatcher in one instance; nothing for a key that is missing.
    class Fields {
    public:
        [[nodiscard]] std::optional<Reference> operator[](std::size_t key) const noexcept
        {
            const std::uint32_t position = m_positions[key];
            return position == missing ? std::nullopt
                                       : std::optional(m_plist->value(m_instance, position));
        }

    private:
        friend class KeyedArchiveReader;
        using Positions = std::array<std::uint32_t, NameMatcher::maxNames>;
        static constexpr std::uint32_t missing = UINT32_MAX;

        Fields(const BinaryPlistReader &plist, const Object &instance, const Positions &positions)
            : m_plist(&plist), m_instance(instance), m_positions(positions)
        {
        }

        const BinaryPlistReader *m_plist;
        Object m_instance;
        Positions m_positions;
    };

    /// Checks that the file is a keyed archive. The bytes must outlive the reader.
    explicit KeyedArchiveReader(std::span<const std::byte> file);

    [[nodiscard]] Uid root() const noexcept { return m_root; }

    /// Number of entries of "$objects": every UID is below it.
    [[nodiscard]] std::uint64_t objectCount() const noexcept { return m_objects.count; }

    /// The object of a UID; Type::null for "$null".
    [[nodiscard]] Object object(Uid uid) const
    {
        if (uid == 0) {
            return {};
        }
        if (uid >= m_objects.count) {
            failUid(uid);
        }
        const Object object = m_plist.object(m_plist.element(m_objects, uid));
        return isNullMarker(object) ? Object{} : object;
    }

    /// A value: the object that it is, or when it is a UID, the object of that. Type::null for
    /// "$null".
    [[nodiscard]] Object resolved(Reference value) const
    {
        if (const auto uid = m_plist.uidAt(value)) {
            return object(checkedUid(*uid));
        }
        return inlineObject(value);
    }

    /// The UID that a value is. `what` names the value in the error when it is something else.
    [[nodiscard]] Uid uid(Reference value, std::string_view what) const
    {
        if (const auto uid = m_plist.uidAt(value)) {
            return checkedUid(*uid);
        }
        failNoUid(value, what);
    }

    /// The values of an instance's keys. Of a key that stands twice the first counts.
    [[nodiscard]] Fields fields(const Object &instance, NameMatcher &keys) const
    {
        if (instance.type != Type::dictionary || instance.count > NameMatcher::maxShapeSize) {
            return unusualFields(instance, keys);
        }
        spend(instance.count);
        // Most instances have the same keys as the last one of their size.
        NameMatcher::Shape &shape = keys.m_shapes[static_cast<std::size_t>(instance.count)];
        const std::string_view references = m_plist.keyReferences(instance);
        if (shape.keyReferences != references || references.empty()) {
            shape = {references, positions(instance, keys)};
        }
        return {m_plist, instance, shape.positions};
    }

    /// Which of the classes an instance's "$class" value names, or descends from when its own name
    /// is not among them; classes.none() if none.
    [[nodiscard]] std::size_t classIndex(Reference classValue, NameMatcher &classes) const
    {
        if (!classes.m_last.answers(classValue)) {
            classes.m_last = {classValue, classIndexOf(uid(classValue, "\"$class\""), classes)};
        }
        return classes.m_last.index;
    }

    /// The class name behind an instance's "$class" value, for messages: shortened, and without
    /// control characters.
    [[nodiscard]] std::string className(Reference classValue) const;

    /// The elements of an archived array: a property-list array of UIDs. Nothing for "$null".
    [[nodiscard]] std::optional<Object> array(Reference value, std::string_view what) const;

    /// The elements of the array that the root is, for archives of a list.
    [[nodiscard]] Object rootArray() const;

    /// Element `i` of such an array. Requires: i < elements.count.
    [[nodiscard]] Uid elementUid(const Object &elements, std::uint64_t i) const
    {
        return uid(m_plist.element(elements, i), "an element");
    }

    /// The string that a value is, plain or an NSString or NSMutableString instance; Type::null for
    /// "$null". Read its content with name() or text().
    [[nodiscard]] Object string(Reference value, std::string_view what) const
    {
        const Object object = resolved(value);
        return object.isString() || object.type == Type::null ? object : unwrapped(object, what);
    }

    /// A string object's content as a file name (see nameFromEscaped()).
    [[nodiscard]] std::string name(const Object &string) const;

    /// A string object's content as archived.
    [[nodiscard]] std::u16string text(const Object &string) const;

    /// An integer of 0 to 2^64 − 1, or a real number in that range, cut; nothing for "$null".
    [[nodiscard]] std::optional<std::uint64_t> unsignedNumber(Reference value,
                                                              std::string_view what) const;

    /// Seconds since 2001-01-01 00:00 UTC, finite; nothing for "$null".
    [[nodiscard]] std::optional<double> date(Reference value, std::string_view what) const;

    [[nodiscard]] const BinaryPlistReader &propertyList() const noexcept { return m_plist; }

    /// Throws an ArchiveFailure that says where the object lies.
    [[noreturn]] void fail(ArchiveError::Kind kind, std::string message, const Object &at) const;

private:
    static constexpr std::string_view nullMarker = "$null";

    static Uid checkedUid(std::uint64_t number)
    {
        if (number > UINT32_MAX) {
            failUid(number);
        }
        return static_cast<Uid>(number);
    }
    [[nodiscard]] bool isNullMarker(const Object &object) const
    {
        return object.count == nullMarker.size() && m_plist.isString(object, nullMarker);
    }
    [[nodiscard]] Object inlineObject(Reference value) const;
    [[noreturn]] static void failUid(std::uint64_t number);
    [[noreturn]] void failNoUid(Reference value, std::string_view what) const;
    [[nodiscard]] Fields unusualFields(const Object &instance, NameMatcher &keys) const;
    [[nodiscard]] Object unwrapped(const Object &wrapper, std::string_view what) const;
    [[nodiscard]] std::size_t keyIndex(Reference key, NameMatcher &keys) const;
    [[nodiscard]] Fields::Positions positions(const Object &instance, NameMatcher &keys) const;

    [[nodiscard]] std::optional<Reference> find(const Object &dictionary,
                                                std::string_view key) const;
    [[nodiscard]] Object require(const Object &dictionary, std::string_view key, Type type) const;
    [[nodiscard]] std::size_t matchName(const Object &string, const NameMatcher &names) const;
    [[nodiscard]] Object elementsOf(const Object &instance, std::string_view what) const;
    [[nodiscard]] std::size_t wrapperClass(const Fields &wrapper) const;
    [[nodiscard]] std::size_t classIndexOf(Uid classUid, NameMatcher &classes) const;
    [[nodiscard]] Object classDescription(Uid classUid) const;
    void spend(std::uint64_t pairs) const
    {
        if (pairs > m_budget) {
            failBudget();
        }
        m_budget -= pairs;
    }
    [[noreturn]] static void failBudget();
    void spendText(const Object &string) const;

    BinaryPlistReader m_plist;
    Object m_objects;
    Uid m_root = 0;
    /// An archive may use one text in many places, but not without limit.
    static constexpr std::uint64_t textFactor = 64;

    mutable std::uint64_t m_budget;     ///< dictionary entries and class names that may be read yet
    mutable std::uint64_t m_textBudget; ///< characters of texts that may be returned yet
    mutable NameMatcher m_wrapperKeys{"$class", "NS.objects", "NS.string", "NS.time"};
    mutable NameMatcher m_wrapperClasses{"NSArray", "NSMutableArray", "NSString", "NSMutableString",
                                         "NSDate"};
};

} // namespace tessaly::archive
