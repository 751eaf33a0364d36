#include "engine/archive/ArchiveFrame.hpp"

namespace tessaly::archive {

namespace {

constexpr std::uint64_t firstString = ArchiveFrame::versionKey;

// In the order of ArchiveFrame::Object.
constexpr std::array<std::string_view, ArchiveFrame::objectCount - firstString> strings{
    "$version", "$archiver",  "$top",     "$objects",   "NSKeyedArchiver", "root",
    "$class",   "$classname", "$classes", "NS.objects", "NS.string"};
static_assert(!strings.back().empty());

} // namespace

ArchiveFrame::Offsets ArchiveFrame::write(BinaryPlistWriter &plist, std::uint64_t rootUid)
{
    Offsets offsets{};
    offsets[topDictionary] = plist.position();
    plist.dictionary(4);
    // Four keys, then their four values.
    for (const Object object : {versionKey, archiverKey, topKey, objectsKey, archiveVersion,
                                archiverName, roots, objectList}) {
        plist.reference(object);
    }
    offsets[archiveVersion] = plist.position();
    plist.integer(100000); // the only version that readers accept
    offsets[roots] = plist.position();
    plist.dictionary(1);
    plist.reference(rootKey);
    plist.reference(rootUid);
    for (std::size_t i = 0; i < strings.size(); ++i) {
        offsets[firstString + i] = plist.position();
        plist.name(strings[i]);
    }
    return offsets;
}

void ArchiveFrame::writeObjectList(BinaryPlistWriter &plist, std::uint64_t firstObject,
                                   std::uint64_t count)
{
    plist.array(count);
    for (std::uint64_t i = 0; i < count; ++i) {
        plist.reference(firstObject + i);
    }
}

void ArchiveFrame::writeClass(BinaryPlistWriter &plist, std::uint64_t name, std::uint64_t chain)
{
    plist.dictionary(2);
    // A class is a plain dictionary: a "$class" of its own would never end.
    plist.reference(classNameKey);
    plist.reference(classChainKey);
    plist.reference(name);
    plist.reference(chain);
}

} // namespace tessaly::archive
