#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessaly {

using Bytes = std::vector<std::byte>;

/// The bytes of a literal: bytesOf("\x10\x05").
[[nodiscard]] Bytes bytesOf(std::string_view text);

/// Makes property lists for tests, sound ones and others: objects of any content, references and
/// offsets of any width.
class PlistBuilder {
public:
    using Reference = std::uint64_t;
    using Pairs = std::vector<std::pair<Reference, Reference>>;

    /// An object as it is to stand in the file, marker and all.
    Reference raw(Bytes bytes);
    Reference ascii(std::string_view text);
    Reference utf16(std::u16string_view text);
    Reference integer(std::uint64_t number, unsigned width);
    Reference real(double number);
    Reference date(double seconds);
    Reference boolean(bool value);
    Reference uid(std::uint64_t number, unsigned width = 1);
    Reference array(std::vector<Reference> elements);
    Reference dictionary(const Pairs &pairs);

    /// Objects that refer to one another need to be known before they are complete.
    void setArray(Reference array, std::vector<Reference> elements);
    /// Moves an object's entry of the offset table `byteCount` bytes into another object.
    void placeInside(Reference object, Reference other, std::size_t byteCount);

    [[nodiscard]] std::size_t count() const { return m_objects.size(); }

    struct Widths {
        unsigned offset = 4;
        unsigned reference = 2;
    };
    [[nodiscard]] Bytes build(Reference top, Widths widths) const;
    [[nodiscard]] Bytes build(Reference top) const { return build(top, Widths{}); }

private:
    struct Object {
        Bytes bytes;
        std::vector<Reference> references; ///< follow the bytes
        Reference host = 0;                ///< not placeless: lies inside this object…
        std::size_t hostOffset = 0;        ///< …so many bytes in
        bool isInside = false;
    };

    Reference add(Bytes bytes, std::vector<Reference> references = {});

    std::vector<Object> m_objects;
};

/// The same for keyed archives: keeps "$objects" and puts the frame around it.
class ArchiveBuilder {
public:
    using Reference = PlistBuilder::Reference;
    using Fields = std::vector<std::pair<std::string, Reference>>;

    ArchiveBuilder();

    /// The parts of the archive's frame that a test may want to be wrong or missing.
    struct Frame {
        std::string archiver = "NSKeyedArchiver";
        std::uint64_t version = 100000;
        PlistBuilder::Widths widths{};
    };

    [[nodiscard]] PlistBuilder &plist() { return m_plist; }

    /// Puts an object in "$objects"; the reference is that of a UID that stands for it.
    Reference archived(Reference object);
    /// The place in "$objects" that the next archived object gets, as a reference to its UID.
    [[nodiscard]] Reference nextUid();
    [[nodiscard]] Reference null() const { return m_nullUid; }

    /// A class description: its name, and the names in its "$classes".
    Reference classNamed(const std::string &name, const std::vector<std::string> &chain = {});
    /// An archived instance; "$class" comes last.
    Reference instance(Reference classUid, const Fields &fields);
    /// A dictionary with these keys, not archived.
    Reference dictionary(const Fields &fields);
    /// An archived array of the given UIDs.
    Reference list(const std::vector<Reference> &uids, const std::string &className = "NSArray");

    [[nodiscard]] Bytes build(Reference rootUid, const Frame &frame) const;
    [[nodiscard]] Bytes build(Reference rootUid) const { return build(rootUid, Frame{}); }

private:
    PlistBuilder m_plist;
    std::vector<Reference> m_objects;
    Reference m_nullUid;
};

} // namespace tessaly
