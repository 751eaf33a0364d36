// Shows what a scan finds.
//
//     scan_tree FOLDER          the folder's children by size, the largest first, and the total
//     scan_tree --dump FOLDER   the whole tree, a line for each node
//
// When the folder cannot be listed, it says why on standard error and exits with status 1.

#include "cli/NodeCount.hpp"
#include "cli/ScannedFolder.hpp"
#include "cli/TreeDump.hpp"
#include "engine/tree/PrintableText.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <iomanip>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using tessaly::tree::LUMFileContainer;
using tessaly::tree::LUMFileItem;

constexpr std::size_t maxRows = 40;

struct Row {
    std::string name;
    std::uint64_t byteCount;
};

std::vector<Row> rowsBySize(const LUMFileContainer &root)
{
    std::vector<Row> rows;
    for (const LUMFileItem &child : root.subitems()) {
        const LUMFileContainer *folder = child.asContainer();
        rows.push_back(
            {tessaly::tree::printableText(child.itemName()) + (folder != nullptr ? "/" : ""),
             folder != nullptr ? folder->valueOfSubitems() : child.itemSize()});
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row &a, const Row &b) { return a.byteCount > b.byteCount; });
    return rows;
}

void show(const LUMFileContainer &root)
{
    const std::vector<Row> rows = rowsBySize(root);
    const std::string total = LUMFileItem::buildString(root.valueOfSubitems());

    const std::size_t shown = std::min(rows.size(), maxRows);
    std::size_t width = total.size();
    for (std::size_t i = 0; i < shown; ++i) {
        width = std::max(width, LUMFileItem::buildString(rows[i].byteCount).size());
    }
    const auto line = [width](std::string_view size, std::string_view text) {
        std::cout << std::setw(static_cast<int>(width)) << size << "  " << text << '\n';
    };
    for (std::size_t i = 0; i < shown; ++i) {
        line(LUMFileItem::buildString(rows[i].byteCount), rows[i].name);
    }
    if (shown < rows.size()) {
        line("", "and " + std::to_string(rows.size() - shown) + " smaller ones");
    }
    line(total, "in " + std::to_string(tessaly::nodeCount(root) - 1) + " entries");
}

enum class Output : std::uint8_t { table, dump };

int run(const std::string &path, Output output)
{
    const auto tree = tessaly::scannedFolder(path);
    if (output == Output::dump) {
        tessaly::dumpTree(std::cout, tree->root());
    } else {
        show(tree->root());
    }
    std::cout.flush();
    return std::cout.good() ? 0 : 1;
}

} // namespace

int main(int argumentCount, char **arguments)
{
    std::ios::sync_with_stdio(false);
    const std::vector<std::string> given(arguments + 1, arguments + argumentCount);
    try {
        if (given.size() == 1 && given[0] != "--dump") {
            return run(given[0], Output::table);
        }
        if (given.size() == 2 && given[0] == "--dump") {
            return run(given[1], Output::dump);
        }
        std::cerr << "usage: scan_tree [--dump] FOLDER\n";
        return 2;
    } catch (const std::exception &failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
