#include "tests/engine/archive/PlistSamples.hpp"

#include <limits>

namespace tessaly {

archive::PlistValue sampleOfEveryType()
{
    using Signed = std::numeric_limits<std::int64_t>;
    const archive::PlistData everyByte = [] {
        archive::PlistData bytes;
        for (unsigned byte = 0; byte < 256; ++byte) {
            bytes.push_back(static_cast<std::byte>(byte));
        }
        return bytes;
    }();
    return archive::PlistDictionary{
        {"null", archive::PlistValue()},
        {"booleans", archive::PlistArray{false, true}},
        {"integers",
         archive::PlistArray{0, 255, 256, 65'536, Signed::max(), -1, -256, Signed::min(),
                             std::uint64_t{1} << 63U, std::uint64_t{UINT64_MAX}}},
        {"reals", archive::PlistArray{0.0, 1.5, -1e300, std::numeric_limits<double>::infinity()}},
        {"dates", archive::PlistArray{archive::PlistDate{0}, archive::PlistDate{730'857'600.5},
                                      archive::PlistDate{-31'708'800}}},
        {"data", archive::PlistArray{archive::PlistData{}, everyByte}},
        {"texts", archive::PlistArray{"", "1", "\u00E9 \U0001F600", std::string(300, 'x')}},
        {"uids", archive::PlistArray{archive::PlistUid{0}, archive::PlistUid{255},
                                     archive::PlistUid{256}, archive::PlistUid{UINT32_MAX}}},
        {"containers",
         archive::PlistArray{
             archive::PlistArray{}, archive::PlistDictionary{},
             archive::PlistDictionary{{"\u00E9", archive::PlistArray{archive::PlistArray{1}}}}}},
    };
}

std::vector<SampleRecord> sampleRecords()
{
    return {{"/", "1.2 TB", "key-1", 730'857'600.5},
            {"/Users/\u00E9lo\u00EFse", "35 bytes", "key-2", -31'708'800},
            {"/media/\U0001F600", "0", "key-3", 700'000'000.123}};
}

archive::KeyedArchiveWriter::Uid addRecords(archive::KeyedArchiveWriter &archive,
                                            const std::vector<SampleRecord> &records)
{
    const auto recordClass = archive.classNamed("KORVENHistoryItem", {"NSObject"});
    const auto list = archive.reserve();
    std::vector<archive::KeyedArchiveWriter::Uid> children;
    for (const SampleRecord &record : records) {
        const auto child = archive.reserve();
        const auto path = archive.string(record.path);
        const auto total = archive.string(record.total);
        const auto key = archive.string(record.key);
        const auto date = archive.date(record.date);
        archive.instance(
            child, recordClass,
            {{"scanPath", path}, {"scanTotal", total}, {"scanKey", key}, {"scanDate", date}});
        children.push_back(child);
    }
    archive.array(list, children);
    return list;
}

} // namespace tessaly
