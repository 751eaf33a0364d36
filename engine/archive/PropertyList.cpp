#include "engine/archive/PropertyList.hpp"

#include "engine/archive/BinaryPlistReader.hpp"
#include "engine/archive/BinaryPlistWriter.hpp"
#include "engine/tree/EscapedName.hpp"

#include <algorithm>
#include <string_view>
#include <type_traits>

namespace tessaly::archive {

namespace {

using Kind = ArchiveError::Kind;

ArchiveFailure tooDeep()
{
    return {Kind::unsupported, "the values nest too deep"};
}

/// Reads the values of a file. Recursive: maxPlistDepth keeps the stack small.
class Loader {
public:
    explicit Loader(std::span<const std::byte> file)
        : m_plist(file), m_budget(freeBytes + bytesForEach * file.size())
    {
    }

    [[nodiscard]] PlistValue top()
    {
        spend(sizeof(PlistValue));
        return value(m_plist.topObject());
    }

private:
    using Object = BinaryPlistReader::Object;
    using Reference = BinaryPlistReader::Reference;
    using Type = BinaryPlistReader::Type;

    // Enough for any file that shares no containers: a reference takes at least a byte, and two
    // bytes of UTF-16 become at most three of UTF-8. A file of a kilobyte in which each array holds
    // the next one twice would otherwise need all memory there is.
    static constexpr std::uint64_t freeBytes = std::uint64_t{1} << 20U;
    static constexpr std::uint64_t bytesForEach = 64;
    static_assert(sizeof(PlistValue) <= bytesForEach);

    PlistValue value(Reference reference)
    {
        const Object object = m_plist.object(reference);
        switch (object.type) {
        case Type::null:
            break;
        case Type::boolean:
            return object.count != 0;
        case Type::integer: {
            const BinaryPlistReader::Integer number = m_plist.integer(object);
            // PlistValue takes the signed type where the number fits.
            return number.negative ? PlistValue(static_cast<std::int64_t>(number.bits))
                                   : PlistValue(number.bits);
        }
        case Type::real:
            return m_plist.real(object);
        case Type::date:
            return PlistDate{m_plist.real(object)};
        case Type::data: {
            // Before the copy, since a hostile file may refer to the same bytes again and again.
            spend(object.count);
            const auto bytes = std::as_bytes(std::span(m_plist.bytes(object)));
            return PlistData(bytes.begin(), bytes.end());
        }
        case Type::asciiString:
        case Type::utf16String:
            return text(object);
        case Type::uid:
            return uid(reference, object);
        case Type::array:
            return array(reference, object);
        case Type::dictionary:
            return dictionary(reference, object);
        }
        return {};
    }

    std::string text(const Object &string)
    {
        constexpr std::uint64_t maxBytesPerUnit = 3;
        if (string.type == Type::utf16String) {
            spend(maxBytesPerUnit * string.count);
            return tree::nameFromEscaped(m_plist.utf16(string));
        }
        spend(string.count);
        return std::string(m_plist.ascii(string));
    }

    PlistUid uid(Reference reference, const Object &object) const
    {
        const std::uint64_t number = m_plist.uidAt(reference).value_or(UINT64_MAX);
        if (number > UINT32_MAX) {
            throw ArchiveFailure(Kind::unsupported, "a UID of more than 32 bits",
                                 m_plist.offsetOf(object));
        }
        return {static_cast<std::uint32_t>(number)};
    }

    PlistArray array(Reference reference, const Object &object)
    {
        enter(reference, object);
        spend(sizeof(PlistValue) * object.count); // before reserve(): the count may be a lie
        PlistArray elements;
        elements.reserve(static_cast<std::size_t>(object.count));
        for (std::uint64_t i = 0; i < object.count; ++i) {
            elements.push_back(value(m_plist.element(object, i)));
        }
        m_open.pop_back();
        return elements;
    }

    PlistDictionary dictionary(Reference reference, const Object &object)
    {
        enter(reference, object);
        spend(2 * sizeof(PlistValue) * object.count);
        PlistDictionary pairs;
        for (std::uint64_t i = 0; i < object.count; ++i) {
            const Object key = m_plist.object(m_plist.key(object, i));
            if (!key.isString()) {
                fail("a key is not a string", key);
            }
            // The first of equal keys counts, as for other readers. The value of a later one is not
            // even read, so it may be damaged.
            const auto [pair, isNew] = pairs.try_emplace(text(key));
            if (isNew) {
                pair->second = value(m_plist.value(object, i));
            }
        }
        m_open.pop_back();
        return pairs;
    }

    void enter(Reference reference, const Object &container)
    {
        // Linear: there are at most maxPlistDepth open containers.
        if (std::find(m_open.begin(), m_open.end(), reference) != m_open.end()) {
            fail("a container holds itself", container);
        }
        if (m_open.size() == maxPlistDepth) {
            throw tooDeep();
        }
        m_open.push_back(reference);
    }

    void spend(std::uint64_t byteCount)
    {
        if (byteCount > m_budget) {
            throw ArchiveFailure(Kind::damaged, "the values are shared beyond measure");
        }
        m_budget -= byteCount;
    }

    [[noreturn]] void fail(const char *message, const Object &at) const
    {
        throw ArchiveFailure(Kind::damaged, message, m_plist.offsetOf(at));
    }

    BinaryPlistReader m_plist;
    std::uint64_t m_budget;        ///< bytes of memory that values may still take
    std::vector<Reference> m_open; ///< the containers that are being made, outermost first
};

/// The number of objects that a value is written as.
std::uint64_t objectCount(const PlistValue &value, std::size_t depth = 1)
{
    const auto *array = value.as<PlistArray>();
    const auto *dictionary = value.as<PlistDictionary>();
    if (array == nullptr && dictionary == nullptr) {
        return 1;
    }
    // Refused when written, so that no file is written that cannot be read.
    if (depth > maxPlistDepth) {
        throw tooDeep();
    }
    std::uint64_t count = 1;
    if (array != nullptr) {
        for (const PlistValue &element : *array) {
            count += objectCount(element, depth + 1);
        }
    } else {
        for (const auto &[key, element] : *dictionary) {
            count += 1 + objectCount(element, depth + 1);
        }
    }
    return count;
}

/// Writes the values, each after its contents, whose numbers it needs: the top object comes last.
/// Nothing is shared: settings are small, and equal values may come to differ.
class Storer {
public:
    Storer(std::uint64_t count, ByteSink &sink) : m_plist(sink, BinaryPlistWriter::widthFor(count))
    {
        m_offsets.reserve(static_cast<std::size_t>(count));
    }

    void write(const PlistValue &top)
    {
        const std::uint64_t topObject = writeValue(top);
        m_plist.finish(m_offsets, topObject);
    }

private:
    using Reference = std::uint64_t;

    Reference writeValue(const PlistValue &value)
    {
        return std::visit([this](const auto &content) { return writeContent(content); },
                          value.content());
    }

    template <typename Scalar>
    Reference writeContent(const Scalar &scalar)
    {
        const Reference reference = beginObject();
        if constexpr (std::same_as<Scalar, PlistNull>) {
            m_plist.null();
        } else if constexpr (std::same_as<Scalar, bool>) {
            m_plist.boolean(scalar);
        } else if constexpr (std::same_as<Scalar, std::int64_t>) {
            m_plist.signedInteger(scalar);
        } else if constexpr (std::same_as<Scalar, std::uint64_t>) {
            m_plist.integer(scalar);
        } else if constexpr (std::same_as<Scalar, double>) {
            m_plist.real(scalar);
        } else if constexpr (std::same_as<Scalar, PlistDate>) {
            m_plist.date(scalar.secondsSince2001);
        } else if constexpr (std::same_as<Scalar, PlistData>) {
            m_plist.data(scalar);
        } else if constexpr (std::same_as<Scalar, std::string>) {
            m_plist.name(scalar);
        } else {
            static_assert(std::same_as<Scalar, PlistUid>);
            m_plist.uid(scalar.number);
        }
        return reference;
    }

    Reference writeContent(const PlistArray &array)
    {
        const std::size_t first = m_references.size();
        for (const PlistValue &element : array) {
            m_references.push_back(writeValue(element));
        }
        // Only now: the elements have written objects of their own.
        const Reference reference = beginObject();
        m_plist.array(array.size());
        takeReferences(first);
        return reference;
    }

    Reference writeContent(const PlistDictionary &dictionary)
    {
        const std::size_t first = m_references.size();
        for (const auto &[key, value] : dictionary) {
            // The keys first, then the values: a dictionary lists them in this order.
            m_references.push_back(writeContent(key));
        }
        for (const auto &[key, value] : dictionary) {
            m_references.push_back(writeValue(value));
        }
        const Reference reference = beginObject();
        m_plist.dictionary(dictionary.size());
        takeReferences(first);
        return reference;
    }

    Reference beginObject()
    {
        m_offsets.push_back(m_plist.position());
        return m_offsets.size() - 1;
    }

    void takeReferences(std::size_t first)
    {
        for (std::size_t i = first; i < m_references.size(); ++i) {
            m_plist.reference(m_references[i]);
        }
        m_references.resize(first);
    }

    BinaryPlistWriter m_plist;
    std::vector<std::uint64_t> m_offsets;
    std::vector<Reference> m_references; ///< of the open containers, to what has been written
};

} // namespace

bool operator==(const PlistValue &a, const PlistValue &b)
{
    // By the bits: a setting that is NaN must not count as changed at every comparison.
    const auto *real = a.as<double>();
    const auto *other = b.as<double>();
    if (real != nullptr && other != nullptr) {
        return std::bit_cast<std::uint64_t>(*real) == std::bit_cast<std::uint64_t>(*other);
    }
    return a.m_content == b.m_content;
}

Result<PlistValue, ArchiveError> readPropertyList(std::span<const std::byte> file)
{
    return resultOf<PlistValue>("not enough memory to read the values",
                                [&] { return Loader(file).top(); });
}

Result<Done, ArchiveError> writePropertyList(const PlistValue &value, ByteSink &sink)
{
    return resultOf<Done>("not enough memory to write the values", [&] {
        Storer(objectCount(value), sink).write(value);
        return Done{};
    });
}

} // namespace tessaly::archive
