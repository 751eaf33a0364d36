#include "tests/engine/archive/PlistBuilder.hpp"

#include <algorithm>
#include <bit>
#include <utility>

namespace tessaly {

namespace {

void appendNumber(Bytes &bytes, std::uint64_t number, unsigned width)
{
    for (unsigned i = width; i-- > 0;) {
        bytes.push_back(i < 8 ? static_cast<std::byte>(number >> 8U * i) : std::byte{0});
    }
}

/// A marker with its count, the way it stands before strings, arrays and dictionaries.
Bytes counted(unsigned marker, std::size_t count)
{
    Bytes bytes;
    if (count < 0x0F) {
        appendNumber(bytes, marker | count, 1);
    } else {
        appendNumber(bytes, marker | 0x0FU, 1);
        appendNumber(bytes, 0x12, 1);
        appendNumber(bytes, count, 4);
    }
    return bytes;
}

Bytes marked(unsigned marker, std::uint64_t content, unsigned width)
{
    Bytes bytes;
    appendNumber(bytes, marker, 1);
    appendNumber(bytes, content, width);
    return bytes;
}

} // namespace

Bytes bytesOf(std::string_view text)
{
    Bytes bytes(text.size());
    std::transform(text.begin(), text.end(), bytes.begin(),
                   [](char c) { return static_cast<std::byte>(c); });
    return bytes;
}

PlistBuilder::Reference PlistBuilder::add(Bytes bytes, std::vector<Reference> references)
{
    m_objects.push_back({std::move(bytes), std::move(references), 0, 0, false});
    return m_objects.size() - 1;
}

PlistBuilder::Reference PlistBuilder::raw(Bytes bytes)
{
    return add(std::move(bytes));
}

PlistBuilder::Reference PlistBuilder::ascii(std::string_view text)
{
    Bytes bytes = counted(0x50, text.size());
    const Bytes content = bytesOf(text);
    bytes.insert(bytes.end(), content.begin(), content.end());
    return add(std::move(bytes));
}

PlistBuilder::Reference PlistBuilder::utf16(std::u16string_view text)
{
    Bytes bytes = counted(0x60, text.size());
    for (const char16_t unit : text) {
        appendNumber(bytes, unit, 2);
    }
    return add(std::move(bytes));
}

PlistBuilder::Reference PlistBuilder::integer(std::uint64_t number, unsigned width)
{
    return add(marked(0x10U | static_cast<unsigned>(std::countr_zero(width)), number, width));
}

PlistBuilder::Reference PlistBuilder::real(double number)
{
    return add(marked(0x23, std::bit_cast<std::uint64_t>(number), 8));
}

PlistBuilder::Reference PlistBuilder::date(double seconds)
{
    return add(marked(0x33, std::bit_cast<std::uint64_t>(seconds), 8));
}

PlistBuilder::Reference PlistBuilder::boolean(bool value)
{
    return add(marked(value ? 0x09 : 0x08, 0, 0));
}

PlistBuilder::Reference PlistBuilder::uid(std::uint64_t number, unsigned width)
{
    return add(marked(0x80U | (width - 1), number, width));
}

PlistBuilder::Reference PlistBuilder::array(std::vector<Reference> elements)
{
    Bytes marker = counted(0xA0, elements.size());
    return add(std::move(marker), std::move(elements));
}

void PlistBuilder::setArray(Reference array, std::vector<Reference> elements)
{
    m_objects[array].bytes = counted(0xA0, elements.size());
    m_objects[array].references = std::move(elements);
}

PlistBuilder::Reference PlistBuilder::dictionary(const Pairs &pairs)
{
    std::vector<Reference> references;
    for (const auto &[key, value] : pairs) {
        references.push_back(key);
    }
    for (const auto &[key, value] : pairs) {
        references.push_back(value);
    }
    return add(counted(0xD0, pairs.size()), std::move(references));
}

void PlistBuilder::placeInside(Reference object, Reference other, std::size_t byteCount)
{
    m_objects[object].isInside = true;
    m_objects[object].host = other;
    m_objects[object].hostOffset = byteCount;
}

Bytes PlistBuilder::build(Reference top, Widths widths) const
{
    Bytes file = bytesOf("bplist00");
    std::vector<std::uint64_t> offsets;
    for (const Object &object : m_objects) {
        offsets.push_back(file.size());
        if (object.isInside) {
            continue;
        }
        file.insert(file.end(), object.bytes.begin(), object.bytes.end());
        for (const Reference reference : object.references) {
            appendNumber(file, reference, widths.reference);
        }
    }
    const std::uint64_t tableOffset = file.size();
    for (std::size_t i = 0; i < m_objects.size(); ++i) {
        const Object &object = m_objects[i];
        const std::uint64_t offset =
            object.isInside ? offsets[object.host] + object.hostOffset : offsets[i];
        appendNumber(file, offset, widths.offset);
    }
    appendNumber(file, 0, 6);
    appendNumber(file, widths.offset, 1);
    appendNumber(file, widths.reference, 1);
    appendNumber(file, m_objects.size(), 8);
    appendNumber(file, top, 8);
    appendNumber(file, tableOffset, 8);
    return file;
}

ArchiveBuilder::ArchiveBuilder() : m_nullUid(archived(m_plist.ascii("$null"))) {}

ArchiveBuilder::Reference ArchiveBuilder::archived(Reference object)
{
    const Reference uid = nextUid();
    m_objects.push_back(object);
    return uid;
}

ArchiveBuilder::Reference ArchiveBuilder::nextUid()
{
    return m_plist.uid(m_objects.size(), 4);
}

ArchiveBuilder::Reference ArchiveBuilder::classNamed(const std::string &name,
                                                     const std::vector<std::string> &chain)
{
    std::vector<Reference> names;
    for (const std::string &ancestor : chain) {
        names.push_back(m_plist.ascii(ancestor));
    }
    return archived(dictionary(
        {{"$classname", m_plist.ascii(name)}, {"$classes", m_plist.array(std::move(names))}}));
}

ArchiveBuilder::Reference ArchiveBuilder::instance(Reference classUid, const Fields &fields)
{
    Fields all = fields;
    all.emplace_back("$class", classUid);
    return archived(dictionary(all));
}

ArchiveBuilder::Reference ArchiveBuilder::dictionary(const Fields &fields)
{
    PlistBuilder::Pairs pairs;
    for (const auto &[key, value] : fields) {
        pairs.emplace_back(m_plist.ascii(key), value);
    }
    return m_plist.dictionary(pairs);
}

ArchiveBuilder::Reference ArchiveBuilder::list(const std::vector<Reference> &uids,
                                               const std::string &className)
{
    return instance(classNamed(className), {{"NS.objects", m_plist.array(uids)}});
}

Bytes ArchiveBuilder::build(Reference rootUid, const Frame &frame) const
{
    ArchiveBuilder framed = *this;
    const Reference top = framed.dictionary({{"$version", framed.m_plist.integer(frame.version, 4)},
                                             {"$archiver", framed.m_plist.ascii(frame.archiver)},
                                             {"$top", framed.dictionary({{"root", rootUid}})},
                                             {"$objects", framed.m_plist.array(m_objects)}});
    return framed.m_plist.build(top, frame.widths);
}

} // namespace tessaly
