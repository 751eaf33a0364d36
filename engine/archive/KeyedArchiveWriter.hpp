#pragma once

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/ByteSink.hpp"
#include "engine/archive/Result.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tessaly::archive {

/// Makes a keyed archive (see KeyedArchiveReader for the format) of strings, dates, arrays and
/// instances of any class:
///
///     KeyedArchiveWriter archive;
///     const auto pointClass = archive.classNamed("Point", {"NSObject"});
///     const auto list = archive.reserve();
///     const auto point = archive.reserve();
///     const auto name = archive.string("A");
///     archive.instance(point, pointClass, {{"name", name}});
///     archive.array(list, std::array{point});
///     const auto done = archive.finish(list, file);
///
/// Objects are written in the order in which they are added. An object that holds others is
/// reserved before them and filled after them. The record of a class is added by itself, after the
/// contents of its first instance.
///
/// Memory:  24 bytes for each object, 8 for each field, 4 for each element and the strings' bytes,
///          until the writer is destroyed; in finish() up to 24 more for each object. They are kept
///          in a few vectors: no object is an allocation of its own.
/// Errors:  std::bad_alloc while objects are added; all others are finish()'s.
/// Threads: one at a time for each writer.
class KeyedArchiveWriter {
public:
    /// An object of this archive: its place in "$objects". `null` stands for none.
    enum class Uid : std::uint32_t { null = 0 };
    enum class Class : std::uint32_t {};

    struct Field {
        std::string_view key;
        Uid value = Uid::null;
    };

    KeyedArchiveWriter();

    /// The class of that name, with its superclasses from the nearest to the farthest. Asked for
    /// again, it is the same one; requires: the superclasses are the same then, too.
    [[nodiscard]] Class classNamed(std::string_view name,
                                   std::initializer_list<std::string_view> superclasses);

    /// Takes the next place for an instance or an array. Requires: it is filled before finish().
    [[nodiscard]] Uid reserve();

    /// Fills a place with an instance of these fields. A field without value is left out, or null.
    /// Requires: the fields' names are distinct and none is "$class"; the place was reserved and is
    /// not filled yet.
    void instance(Uid place, Class instanceClass, std::span<const Field> fields);
    void instance(Uid place, Class instanceClass, std::initializer_list<Field> fields)
    {
        instance(place, instanceClass, std::span(fields.begin(), fields.size()));
    }

    /// Fills a place with an NSMutableArray. Requires: the place was reserved and is not filled
    /// yet.
    void array(Uid place, std::span<const Uid> elements);

    /// Adds a text of any bytes (see escapedName()).
    [[nodiscard]] Uid string(std::string_view name);

    /// Adds an NSDate. What is no point in time (infinite, or not a number) is null.
    [[nodiscard]] Uid date(double secondsSince2001);

    /// Writes the archive. Changes nothing: after an error it can be tried with another sink.
    /// Requires: every reserved place is filled, the root among them.
    [[nodiscard]] Result<Done, ArchiveError> finish(Uid root, ByteSink &sink) const;

private:
    class Emitter;

    /// Number of a name, of a key or a class, in m_names.
    using Name = std::uint32_t;

    struct StoredField {
        Name key;
        Uid value;
    };
    struct StoredClass {
        std::vector<Name> chain; ///< its own name first
        Uid place = Uid::null;   ///< null before the first instance
    };

    // The objects; ranges are those of the vectors below.
    struct Nothing {}; ///< "$null", and places that are reserved
    struct Text {
        std::size_t first, count;
    };
    struct NullText {}; ///< the text "$null", which plainly would stand for nothing
    struct Date {
        double seconds;
    };
    struct Instance {
        Class instanceClass;
        std::uint32_t fieldCount;
        std::size_t firstField;
    };
    struct Array {
        std::size_t first, count;
    };
    struct ClassRecord {
        Class itself;
    };
    using Object = std::variant<Nothing, Text, NullText, Date, Instance, Array, ClassRecord>;

    Uid add(Object object);
    void fill(Uid place, Object object);
    void addClassOnce(Class instanceClass);
    Name nameOf(std::string_view name);
    [[nodiscard]] bool isFilled(Uid uid) const noexcept;
    [[nodiscard]] bool isWhole() const noexcept;
    [[nodiscard]] bool isSound(std::span<const Field> fields) const noexcept;
    [[nodiscard]] StoredClass &classOf(Class which) noexcept;
    [[nodiscard]] const StoredClass &classOf(Class which) const noexcept;

    std::map<std::string, Name, std::less<>> m_names;
    std::vector<StoredClass> m_classes;
    std::vector<Object> m_objects; ///< by UID
    std::vector<char> m_textBytes;
    std::vector<StoredField> m_fields;
    std::vector<Uid> m_elements;
    /// How many property-list objects stand inside of archived ones, without a UID of their own.
    std::uint64_t m_innerCount = 0;
};

} // namespace tessaly::archive
