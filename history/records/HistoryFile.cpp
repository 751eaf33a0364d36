#include "history/records/HistoryFile.hpp"

#include "engine/archive/AtomicFile.hpp"
#include "engine/archive/KeyedArchiveReader.hpp"
#include "engine/archive/KeyedArchiveWriter.hpp"
#include "engine/archive/MappedFile.hpp"

#include <new>
#include <unordered_map>
#include <vector>

namespace tessaly {

namespace {

using Kind = archive::ArchiveError::Kind;

HistoryRecords recordsIn(const archive::KeyedArchiveReader &archive)
{
    const auto list = archive.rootArray();
    std::unordered_map<archive::KeyedArchiveReader::Uid, HistoryRecords::value_type> known;
    HistoryRecords records;
    for (std::uint64_t i = 0; i < list.count; ++i) {
        // Archives refer to objects by number: a record that is listed twice is one record.
        auto &record = known[archive.elementUid(list, i)];
        if (!record) {
            record =
                std::make_shared<const KORVENHistoryItem>(archive, archive.elementUid(list, i));
        }
        records.push_back(record);
    }
    return records;
}

} // namespace

archive::Result<HistoryRecords, archive::ArchiveError> readHistoryFile(const std::string &path)
{
    const auto file = archive::MappedFile::open(path);
    if (!file) {
        return file.error();
    }
    try {
        HistoryRecords records = recordsIn(archive::KeyedArchiveReader(file.value().bytes()));
        // Asked last: a file that is cut while it is mapped reads as zeros from there on, which may
        // look like a valid but shorter history.
        if (file.value().wasTruncated()) {
            return archive::ArchiveError{Kind::truncated, "the file was cut while it was read", {}};
        }
        return records;
    } catch (const archive::ArchiveFailure &failure) {
        return failure.error();
    } catch (const std::bad_alloc &) {
        return archive::ArchiveError{
            Kind::outOfMemory, "not enough memory to read the history", {}};
    }
}

archive::Result<archive::Done, archive::ArchiveError>
writeHistoryArchive(const HistoryRecords &records, archive::ByteSink &sink)
{
    try {
        archive::KeyedArchiveWriter archive;
        // Numbers are given in the order of the calls: the list first, then each record before its
        // values.
        const auto list = archive.reserve();
        std::vector<archive::KeyedArchiveWriter::Uid> places;
        places.reserve(records.size());
        for (const auto &record : records) {
            places.push_back(archive.reserve());
            record->encodeWithCoder(archive, places.back());
        }
        archive.array(list, places);
        return archive.finish(list, sink);
    } catch (const std::bad_alloc &) {
        return archive::ArchiveError{
            Kind::outOfMemory, "not enough memory to write the history", {}};
    }
}

archive::Result<archive::Done, archive::ArchiveError>
writeHistoryFile(const HistoryRecords &records, const std::string &path, archive::FileCalls &calls)
{
    archive::AtomicFile file(path, calls);
    if (auto opened = file.open(); !opened) {
        return opened;
    }
    // Without a commit the destructor removes the temporary file, and the old history stays.
    if (auto written = writeHistoryArchive(records, file); !written) {
        return written;
    }
    return file.commit();
}

} // namespace tessaly
