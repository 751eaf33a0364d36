// dump_archive FILE            prints the tree of a scan file (see TreeDump.hpp)
// dump_archive --history FILE  prints the records of a history file, a line each, tab separated:
//                              "H", path, total and key as JSON strings, the date in seconds since
//                              2001-01-01; "-" for what a record lacks
//
// When the file cannot be read, it says why in one line on standard error and exits with status 1.

#include "cli/TreeDump.hpp"
#include "engine/archive/ScanFileReader.hpp"
#include "engine/tree/EscapedName.hpp"
#include "history/records/HistoryFile.hpp"

#include <array>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <optional>
#include <string>

namespace {

using namespace tessaly;

int complain(const archive::ArchiveError &error)
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
               : complain({archive::ArchiveError::Kind::unwritable, "cannot write the output", {}});
}

int dumpScan(const std::string &path)
{
    archive::ScanFileDetails details;
    const auto tree = archive::readScanFile(path, &details);
    if (!tree) {
        return complain(tree.error());
    }
    dumpTree(std::cout, tree.value()->root(), details);
    return finish();
}

std::string textOrDash(const std::optional<std::string> &text)
{
    return text ? jsonString(tree::escapedName(*text)) : "-";
}

int dumpHistory(const std::string &path)
{
    const auto records = readHistoryFile(path);
    if (!records) {
        return complain(records.error());
    }
    for (const auto &record : records.value()) {
        std::array<char, 400> seconds{'-', '\0'};
        if (const auto date = record->scanDate()) {
            std::snprintf(seconds.data(), seconds.size(), "%.3f", date->secondsSince2001);
        }
        std::cout << "H\t" << textOrDash(record->scanPath()) << '\t'
                  << textOrDash(record->scanTotal()) << '\t' << textOrDash(record->scanKey())
                  << '\t' << seconds.data() << '\n';
    }
    return finish();
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
