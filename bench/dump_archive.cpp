// dump_archive FILE            prints the tree of a scan file (see TreeDump.hpp)
// dump_archive --history FILE  prints the records of a history file, a line each, tab separated:
//                              "H", path, total and key as JSON strings, the date in seconds since
//                              2001-01-01; "-" for what a record lacks
//
// A file that cannot be read gives one line of reason on standard error and exit status 1.

#include "bench/TreeDump.hpp"
#include "engine/KeyedArchiveReader.hpp"
#include "engine/MappedFile.hpp"
#include "engine/ScanFileReader.hpp"

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

namespace {

using namespace tessaly;

int complain(const ArchiveError &error)
{
    std::cerr << error.text() << '\n';
    return 1;
}

/// The exit status once everything has been printed.
int finish()
{
    std::cout.flush();
    return std::cout.good()
               ? 0
               : complain({ArchiveError::Kind::unwritable, "cannot write the output", {}});
}

int dumpScan(const std::string &path)
{
    ScanFileDetails details;
    const auto tree = readScanFile(path, &details);
    if (!tree) {
        return complain(tree.error());
    }
    dumpTree(std::cout, tree.value()->root(), details);
    return finish();
}

enum RecordKey : std::size_t { classKey, pathKey, totalKey, scanKey, dateKey };

/// All lines or none: a damaged record must not leave half a dump.
std::string historyLines(const KeyedArchiveReader &archive)
{
    KeyedArchiveReader::NameMatcher keys{"$class", "scanPath", "scanTotal", "scanKey", "scanDate"};
    KeyedArchiveReader::NameMatcher classes{"KORVENHistoryItem"};
    std::string lines;
    const auto records = archive.rootArray();
    for (std::uint64_t i = 0; i < records.count; ++i) {
        const auto record = archive.fields(archive.object(archive.elementUid(records, i)), keys);
        if (!record[classKey] || archive.classIndex(*record[classKey], classes) != 0) {
            throw ArchiveFailure(ArchiveError::Kind::unsupported, "a record of an unknown class");
        }
        lines += 'H';
        for (const RecordKey key : {pathKey, totalKey, scanKey}) {
            const auto value = record[key];
            const auto string =
                value ? archive.string(*value, "a text") : KeyedArchiveReader::Object{};
            const bool isMissing = string.type == KeyedArchiveReader::Type::null;
            lines += '\t';
            lines += isMissing ? "-" : jsonString(archive.text(string));
        }
        const auto value = record[dateKey];
        const auto date = value ? archive.date(*value, "\"scanDate\"") : std::nullopt;
        std::array<char, 400> seconds{'-', '\0'};
        if (date) {
            std::snprintf(seconds.data(), seconds.size(), "%.3f", *date);
        }
        lines += '\t';
        lines += seconds.data();
        lines += '\n';
    }
    return lines;
}

int dumpHistory(const std::string &path)
{
    const auto file = MappedFile::open(path);
    if (!file) {
        return complain(file.error());
    }
    try {
        const std::string lines = historyLines(KeyedArchiveReader(file.value().bytes()));
        if (file.value().wasCut()) {
            return complain(
                {ArchiveError::Kind::truncated, "the file was cut while it was read", {}});
        }
        std::cout << lines;
        return finish();
    } catch (const ArchiveFailure &failure) {
        return complain(failure.error());
    }
}

} // namespace

int main(int argumentCount, char **arguments)
{
    try {
        if (argumentCount == 2) {
            return dumpScan(arguments[1]);
        }
        if (argumentCount == 3 && std::strcmp(arguments[1], "--history") == 0) {
            return dumpHistory(arguments[2]);
        }
        std::cerr << "usage: dump_archive [--history] FILE\n";
        return 2;
    } catch (const std::exception &failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
