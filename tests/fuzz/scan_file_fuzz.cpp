// Any bytes as a scan file: they give an error or a tree, and a tree can be written and read again.

#include "engine/archive/ScanFileReader.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "engine/tree/TreeWalk.hpp"
#include "tests/fakes/MemorySink.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <tuple>
#include <vector>

namespace {

using namespace tessaly;

/// What a tree holds, in preorder.
struct Facts {
    using Node = std::tuple<std::size_t, bool, bool, std::uint64_t, std::string_view>;

    std::vector<Node> nodes;
    std::size_t depth = 0;
    std::size_t nameByteCount = 0;

    explicit Facts(const tree::ScanTree &tree) { tree::walkTree(tree.root(), *this); }

    void file(const tree::LUMFileItem &item) { add(item); }
    void enter(const tree::LUMFileContainer &folder)
    {
        add(folder);
        ++depth;
    }
    void leave(const tree::LUMFileContainer & /*folder*/) { --depth; }

private:
    void add(const tree::LUMFileItem &node)
    {
        nodes.emplace_back(depth, node.isContainer(), node.hasItemName(), node.itemSize(),
                           node.itemName());
        nameByteCount += node.itemName().size();
    }
};

void require(bool isTrue)
{
    if (!isTrue) {
        std::abort();
    }
}

std::shared_ptr<tree::ScanTree> writtenAndRead(const tree::ScanTree &tree)
{
    MemorySink sink;
    require(archive::writeScanArchive(tree.root(), sink).hasValue());
    archive::ScanFileDetails details;
    auto read = archive::readScanArchive(sink.bytes(), &details);
    require(read.hasValue() && details.isEmpty());
    return read.value();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // Names that nodes share are written once for each: this is as much as the test waits for.
    constexpr std::size_t maxNameBytes = std::size_t{1} << 20U;

    const auto archive = std::as_bytes(std::span(data, size));
    const auto tree = archive::readScanArchive(archive);
    archive::ScanFileDetails details;
    const auto detailed = archive::readScanArchive(archive, &details);
    require(tree.hasValue() == detailed.hasValue());
    if (!tree) {
        require(!tree.error().message.empty());
        return 0;
    }

    const Facts facts(*tree.value());
    (void)tree.value()->root().valueOfSubitems();
    if (facts.nameByteCount <= maxNameBytes) {
        require(!tree.value()->root().description().empty());
        const auto again = writtenAndRead(*tree.value());
        require(Facts(*again).nodes == facts.nodes);
    }
    return 0;
}
