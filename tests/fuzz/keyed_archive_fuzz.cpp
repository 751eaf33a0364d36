// Any bytes as a keyed archive of a list of records, each value of which is taken for everything
// that it might be.

#include "engine/archive/KeyedArchiveReader.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace tessaly;

template <typename Work>
void tolerant(Work work)
{
    try {
        work();
    } catch (const archive::ArchiveFailure &failure) {
        if (failure.error().message.empty()) {
            std::abort();
        }
    }
}

class Records {
public:
    explicit Records(std::span<const std::byte> file) : m_archive(file) {}

    void readAll()
    {
        const auto records = m_archive.rootArray();
        for (std::uint64_t i = 0; i < records.count; ++i) {
            tolerant([&] { readRecord(m_archive.object(m_archive.elementUid(records, i))); });
        }
    }

private:
    void readRecord(const archive::KeyedArchiveReader::Object &record)
    {
        const auto fields = m_archive.fields(record, m_keys);
        if (const auto classValue = fields[0]) {
            tolerant([&] { (void)m_archive.classIndex(*classValue, m_classes); });
            tolerant([&] { (void)m_archive.className(*classValue); });
        }
        for (std::size_t key = 1; key < m_keys.none(); ++key) {
            if (const auto value = fields[key]) {
                readValue(*value);
            }
        }
    }

    void readValue(archive::KeyedArchiveReader::Reference value)
    {
        tolerant([&] {
            const auto string = m_archive.string(value, "a text");
            if (string.type != archive::KeyedArchiveReader::Type::null &&
                string.count <= maxTextLength) {
                (void)m_archive.text(string); // longer ones, which records share, are for callers
                (void)m_archive.name(string); // to limit
            }
        });
        tolerant([&] { (void)m_archive.unsignedNumber(value, "a number"); });
        tolerant([&] { (void)m_archive.date(value, "a date"); });
        tolerant([&] { (void)m_archive.array(value, "a list"); });
    }

    static constexpr std::uint64_t maxTextLength = 4096;

    archive::KeyedArchiveReader m_archive;
    archive::KeyedArchiveReader::NameMatcher m_keys{"$class",  "scanPath", "scanTotal",
                                                    "scanKey", "scanDate", "itemName"};
    archive::KeyedArchiveReader::NameMatcher m_classes{"LUMFileItem", "LUMFileContainer"};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    tolerant([&] { Records(std::as_bytes(std::span(data, size))).readAll(); });
    return 0;
}
