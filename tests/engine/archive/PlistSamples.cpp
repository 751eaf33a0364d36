#include "tests/engine/archive/PlistSamples.hpp"

#include <limits>

namespace tessaly {

PlistValue sampleOfEveryType()
{
    using Signed = std::numeric_limits<std::int64_t>;
    const PlistData everyByte = [] {
        PlistData bytes;
        for (unsigned byte = 0; byte < 256; ++byte) {
            bytes.push_back(static_cast<std::byte>(byte));
        }
        return bytes;
    }();
    return PlistDictionary{
        {"null", PlistValue()},
        {"booleans", PlistArray{false, true}},
        {"integers", PlistArray{0, 255, 256, 65'536, Signed::max(), -1, -256, Signed::min(),
                                std::uint64_t{1} << 63U, std::uint64_t{UINT64_MAX}}},
        {"reals", PlistArray{0.0, 1.5, -1e300, std::numeric_limits<double>::infinity()}},
        {"dates", PlistArray{PlistDate{0}, PlistDate{730'857'600.5}, PlistDate{-31'708'800}}},
        {"data", PlistArray{PlistData{}, everyByte}},
        {"texts", PlistArray{"", "1", "\u00E9 \U0001F600", std::string(300, 'x')}},
        {"uids", PlistArray{PlistUid{0}, PlistUid{255}, PlistUid{256}, PlistUid{UINT32_MAX}}},
        {"containers", PlistArray{PlistArray{}, PlistDictionary{},
                                  PlistDictionary{{"\u00E9", PlistArray{PlistArray{1}}}}}},
    };
}

std::vector<SampleRecord> sampleRecords()
{
    return {{"/", "1.2 TB", "key-1", 730'857'600.5},
            {"/Users/\u00E9lo\u00EFse", "35 bytes", "key-2", -31'708'800},
            {"/media/\U0001F600", "0", "key-3", 700'000'000.123}};
}

KeyedArchiveWriter::Uid addRecords(KeyedArchiveWriter &archive,
                                   const std::vector<SampleRecord> &records)
{
    const auto recordClass = archive.classNamed("KORVENHistoryItem", {"NSObject"});
    const auto list = archive.reserve();
    std::vector<KeyedArchiveWriter::Uid> children;
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
