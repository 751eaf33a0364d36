#include "engine/archive/KeyedArchiveWriter.hpp"

#include "engine/archive/ArchiveFrame.hpp"
#include "engine/archive/BinaryPlistWriter.hpp"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <new>

namespace tessaly::archive {

namespace {

using Class = KeyedArchiveWriter::Class;

// The classes that the constructor adds, in this order.
constexpr Class arrayClass{0};
constexpr Class dateClass{1};
constexpr Class stringClass{2};
constexpr std::uint32_t timeKey = 0;

template <typename Number>
constexpr std::uint32_t indexOf(Number number) noexcept
{
    return static_cast<std::uint32_t>(number);
}

} // namespace

/// Writes the objects. They are numbered in five runs: the frame's; the names; the archived objects
/// and their UIDs in the order of "$objects", where all references to an object share one UID; and
/// the objects inside of archived ones, in the order in which they are met.
class KeyedArchiveWriter::Emitter {
public:
    Emitter(const KeyedArchiveWriter &archive, ByteSink &sink)
        : m_archive(archive), m_uidCount(archive.m_objects.size()),
          m_firstObject(firstName + archive.m_names.size()), m_firstUid(m_firstObject + m_uidCount),
          m_nextInner(m_firstUid + m_uidCount),
          m_offsets(static_cast<std::size_t>(m_nextInner + archive.m_innerCount)),
          m_plist(sink, BinaryPlistWriter::widthFor(m_offsets.size()))
    {
    }

    void write(Uid root)
    {
        // The numbers of all objects are known before the first byte, so each is written once and
        // in order.
        const ArchiveFrame::Offsets frame = ArchiveFrame::write(m_plist, numberOf(root));
        std::copy(frame.begin(), frame.end(), m_offsets.begin());
        for (const auto &[name, index] : m_archive.m_names) {
            begin(firstName + index);
            m_plist.name(name);
        }
        for (std::size_t i = 0; i < m_uidCount; ++i) {
            begin(m_firstObject + i);
            std::visit([this](const auto &object) { writeObject(object); }, m_archive.m_objects[i]);
        }
        for (std::size_t i = 0; i < m_uidCount; ++i) {
            begin(m_firstUid + i);
            m_plist.uid(static_cast<std::uint32_t>(i));
        }
        // Last but with a low number: numbers are places in the offset table, not in the file.
        begin(ArchiveFrame::objectList);
        ArchiveFrame::writeObjectList(m_plist, m_firstObject, m_uidCount);
        assert(m_nextInner == m_offsets.size());

        m_plist.finish(m_offsets, ArchiveFrame::topDictionary);
    }

private:
    static constexpr std::uint64_t firstName = ArchiveFrame::objectCount;

    void writeObject(const Nothing & /*nothing*/) { m_plist.name(ArchiveFrame::nullMarker); }

    void writeObject(const Text &text)
    {
        m_plist.name({m_archive.m_textBytes.data() + text.first, text.count});
    }

    void writeObject(const NullText & /*text*/)
    {
        beginWrapper(ArchiveFrame::stringKey);
        m_plist.reference(m_firstObject); // the string "$null" itself
        writeClassOf(stringClass);
    }

    void writeObject(const Date &date)
    {
        beginWrapper(firstName + timeKey);
        const std::uint64_t inner = referToInner();
        // The reference to the class completes the dictionary, and the inner object may only begin
        // after that.
        writeClassOf(dateClass);
        begin(inner);
        m_plist.real(date.seconds);
    }

    void writeObject(const Instance &instance)
    {
        const auto fields =
            std::span(m_archive.m_fields).subspan(instance.firstField, instance.fieldCount);
        m_plist.dictionary(fields.size() + 1);
        for (const StoredField &field : fields) {
            m_plist.reference(firstName + field.key);
        }
        m_plist.reference(ArchiveFrame::classKey);
        for (const StoredField &field : fields) {
            m_plist.reference(numberOf(field.value));
        }
        writeClassOf(instance.instanceClass);
    }

    void writeObject(const Array &array)
    {
        beginWrapper(ArchiveFrame::elementsKey);
        const std::uint64_t inner = referToInner();
        writeClassOf(arrayClass);
        begin(inner);
        m_plist.array(array.count);
        for (const Uid element :
             std::span(m_archive.m_elements).subspan(array.first, array.count)) {
            m_plist.reference(numberOf(element));
        }
    }

    void writeObject(const ClassRecord &record)
    {
        const std::vector<Name> &chain = m_archive.classOf(record.itself).chain;
        const std::uint64_t inner = m_nextInner++;
        ArchiveFrame::writeClass(m_plist, firstName + chain.front(), inner);
        begin(inner);
        m_plist.array(chain.size());
        for (const Name name : chain) {
            m_plist.reference(firstName + name);
        }
    }

    /// Starts an instance of one field; its value and its class follow.
    void beginWrapper(std::uint64_t key)
    {
        m_plist.dictionary(2);
        m_plist.reference(key);
        m_plist.reference(ArchiveFrame::classKey);
    }
    /// Numbers what stands inside of the object at hand, and refers to it.
    std::uint64_t referToInner()
    {
        m_plist.reference(m_nextInner);
        return m_nextInner++;
    }
    void writeClassOf(Class which) { m_plist.reference(numberOf(m_archive.classOf(which).place)); }

    void begin(std::uint64_t object)
    {
        m_offsets[static_cast<std::size_t>(object)] = m_plist.position();
    }
    /// Of the property-list object that an archived object's UID is.
    [[nodiscard]] std::uint64_t numberOf(Uid uid) const noexcept
    {
        return m_firstUid + indexOf(uid);
    }

    const KeyedArchiveWriter &m_archive;
    std::uint64_t m_uidCount;
    std::uint64_t m_firstObject;
    std::uint64_t m_firstUid;
    std::uint64_t m_nextInner;
    std::vector<std::uint64_t> m_offsets; ///< by number
    BinaryPlistWriter m_plist;
};

KeyedArchiveWriter::KeyedArchiveWriter() : m_objects(1)
{
    // Gets number 0, which timeKey relies on. The classes below rely on their order, too.
    (void)nameOf("NS.time");
    (void)classNamed("NSMutableArray", {"NSArray", "NSObject"});
    (void)classNamed("NSDate", {"NSObject"});
    (void)classNamed("NSMutableString", {"NSString", "NSObject"});
}

KeyedArchiveWriter::Class
KeyedArchiveWriter::classNamed(std::string_view name,
                               std::initializer_list<std::string_view> superclasses)
{
    std::vector<Name> chain{nameOf(name)};
    for (const std::string_view superclass : superclasses) {
        chain.push_back(nameOf(superclass));
    }
    // A linear search: an archive has a handful of classes.
    const auto known =
        std::find_if(m_classes.begin(), m_classes.end(), [&](const StoredClass &other) {
            return other.chain.front() == chain.front();
        });
    const auto found = static_cast<Class>(known - m_classes.begin());
    if (known == m_classes.end()) {
        m_classes.push_back({std::move(chain)});
    } else {
        assert(known->chain == chain);
    }
    return found;
}

KeyedArchiveWriter::Uid KeyedArchiveWriter::reserve()
{
    return add(Nothing{});
}

void KeyedArchiveWriter::instance(Uid place, Class instanceClass, std::span<const Field> fields)
{
    assert(indexOf(instanceClass) < m_classes.size());
    assert(isSound(fields));
    const std::size_t firstField = m_fields.size();
    for (const Field &field : fields) {
        // All fields lie in one vector, since records are many and small.
        m_fields.push_back({nameOf(field.key), field.value});
    }
    // Into a place that was reserved before, so that objects can refer to one another in cycles.
    fill(place, Instance{instanceClass, indexOf(fields.size()), firstField});
    addClassOnce(instanceClass);
}

void KeyedArchiveWriter::array(Uid place, std::span<const Uid> elements)
{
    assert(std::all_of(elements.begin(), elements.end(),
                       [this](Uid element) { return indexOf(element) < m_objects.size(); }));
    const std::size_t first = m_elements.size();
    m_elements.insert(m_elements.end(), elements.begin(), elements.end());
    fill(place, Array{first, elements.size()});
    ++m_innerCount;
    addClassOnce(arrayClass);
}

KeyedArchiveWriter::Uid KeyedArchiveWriter::string(std::string_view name)
{
    // A plain "$null" would be read as no string at all.
    if (name == ArchiveFrame::nullMarker) {
        const Uid place = add(NullText{});
        addClassOnce(stringClass);
        return place;
    }
    const std::size_t first = m_textBytes.size();
    // Copied, as the caller's text may end before finish().
    m_textBytes.insert(m_textBytes.end(), name.begin(), name.end());
    return add(Text{first, name.size()});
}

KeyedArchiveWriter::Uid KeyedArchiveWriter::date(double secondsSince2001)
{
    // Readers refuse an archive with such a date, so one bad date would cost all records.
    if (!std::isfinite(secondsSince2001)) {
        return Uid::null;
    }
    const Uid place = add(Date{secondsSince2001});
    ++m_innerCount;
    addClassOnce(dateClass);
    return place;
}

Result<Done, ArchiveError> KeyedArchiveWriter::finish(Uid root, ByteSink &sink) const
{
    assert(isFilled(root) && isWhole());
    return resultOf<Done>("not enough memory to write the archive", [&] {
        Emitter(*this, sink).write(root);
        return Done{};
    });
}

KeyedArchiveWriter::Uid KeyedArchiveWriter::add(Object object)
{
    // UIDs have 32 bits. So many objects would not fit into memory on most machines, so no error of
    // its own.
    if (m_objects.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw std::bad_alloc();
    }
    m_objects.push_back(object);
    return static_cast<Uid>(m_objects.size() - 1);
}

void KeyedArchiveWriter::fill(Uid place, Object object)
{
    assert(place != Uid::null && indexOf(place) < m_objects.size() && !isFilled(place));
    m_objects[indexOf(place)] = object;
}

void KeyedArchiveWriter::addClassOnce(Class instanceClass)
{
    // After the instance: readers do not care, but archives of other writers have this order.
    if (classOf(instanceClass).place == Uid::null) {
        classOf(instanceClass).place = add(ClassRecord{instanceClass});
        ++m_innerCount;
    }
}

KeyedArchiveWriter::Name KeyedArchiveWriter::nameOf(std::string_view name)
{
    const auto known = m_names.find(name);
    return known != m_names.end()
               ? known->second
               : m_names.emplace(name, static_cast<Name>(m_names.size())).first->second;
}

bool KeyedArchiveWriter::isFilled(Uid uid) const noexcept
{
    return indexOf(uid) < m_objects.size() &&
           !std::holds_alternative<Nothing>(m_objects[indexOf(uid)]);
}

bool KeyedArchiveWriter::isWhole() const noexcept
{
    return std::none_of(m_objects.begin() + 1, m_objects.end(), [](const Object &object) {
        return std::holds_alternative<Nothing>(object);
    });
}

/// Whether no key stands twice or is the writer's own, and all values are there.
bool KeyedArchiveWriter::isSound(std::span<const Field> fields) const noexcept
{
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        const bool isRepeated = std::any_of(
            fields.begin(), field, [&](const Field &other) { return other.key == field->key; });
        if (isRepeated || field->key == "$class" || indexOf(field->value) >= m_objects.size()) {
            return false;
        }
    }
    return true;
}

KeyedArchiveWriter::StoredClass &KeyedArchiveWriter::classOf(Class which) noexcept
{
    return m_classes[indexOf(which)];
}

const KeyedArchiveWriter::StoredClass &KeyedArchiveWriter::classOf(Class which) const noexcept
{
    return m_classes[indexOf(which)];
}

} // namespace tessaly::archive
