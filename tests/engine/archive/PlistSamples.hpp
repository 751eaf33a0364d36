#pragma once

#include "engine/archive/KeyedArchiveWriter.hpp"
#include "engine/archive/PropertyList.hpp"

#include <string>
#include <vector>

namespace tessaly {

/// What tests/data/property_list/every_type.bplist holds, which another writer wrote.
[[nodiscard]] archive::PlistValue sampleOfEveryType();

struct SampleRecord {
    std::string path;
    std::string total;
    std::string key;
    double date = 0;
};

/// The records that tests/data/archive/valid/history_3.bplist holds.
[[nodiscard]] std::vector<SampleRecord> sampleRecords();

/// Adds a list of the records; the UID is the list's.
[[nodiscard]] archive::KeyedArchiveWriter::Uid addRecords(archive::KeyedArchiveWriter &archive,
                                                          const std::vector<SampleRecord> &records);

} // namespace tessaly
