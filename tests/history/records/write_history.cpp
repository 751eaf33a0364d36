// write_history FILE  writes a history of four records, for another program to read

#include "history/records/HistoryFile.hpp"

#include <iostream>
#include <optional>

namespace {

using namespace tessaly;

std::shared_ptr<const KORVENHistoryItem> record(std::optional<std::string> path,
                                                std::optional<std::string> total,
                                                std::optional<std::string> key,
                                                std::optional<archive::Timestamp> date)
{
    auto item = std::make_shared<KORVENHistoryItem>("", "");
    item->setScanPath(std::move(path));
    item->setScanTotal(std::move(total));
    item->setScanKey(std::move(key));
    item->setScanDate(date);
    return item;
}

} // namespace

int main(int argumentCount, char **arguments)
{
    if (argumentCount != 2) {
        std::cerr << "usage: write_history FILE\n";
        return 2;
    }
    const HistoryRecords records{
        record("/home/ada", "12.34 GB", "6F1C2D3E-0A4B-4C5D-8E9F-0123456789AB",
               archive::Timestamp{0.5}),
        record("/m\xC3\xA9"
               "dia/\xF0\x9F\x98\x80\n",
               "1.00 KB", "KEY 2", archive::Timestamp{-86400}),
        record("$null", "", "\xFF", archive::Timestamp{1e9}),
        record(std::nullopt, std::nullopt, std::nullopt, std::nullopt),
    };
    if (const auto written = writeHistoryFile(records, arguments[1]); !written) {
        std::cerr << written.error().text() << '\n';
        return 1;
    }
    return 0;
}
