#include "tests/engine/tree/TreeBuilder.hpp"

#include "cli/TreeDump.hpp"

#include <sstream>
#include <utility>

namespace tessaly {

namespace {

void appendChildren(tree::NodeArena &arena, tree::LUMFileContainer &parent,
                    const std::vector<PlannedNode> &children)
{
    for (const PlannedNode &planned : children) {
        const tree::NodeArena::StoredName name =
            planned.name ? arena.storeName(*planned.name) : nullptr;
        if (!planned.isFolder) {
            parent.subitems().append(arena.make<tree::LUMFileItem>(name, planned.size));
            continue;
        }
        auto &subfolder = arena.make<tree::LUMFileContainer>(name, planned.size);
        parent.subitems().append(subfolder);
        appendChildren(arena, subfolder, planned.children);
    }
}

} // namespace

PlannedNode file(std::optional<std::string> name, std::uint64_t size)
{
    return {std::move(name), size, false, {}};
}

PlannedNode folder(std::optional<std::string> name, std::vector<PlannedNode> children,
                   std::uint64_t size)
{
    return {std::move(name), size, true, std::move(children)};
}

std::shared_ptr<tree::ScanTree> makeTree(const PlannedNode &root)
{
    auto tree = std::make_shared<tree::ScanTree>();
    const tree::ScanTree::ArenaLease arena = tree->leaseArena();
    tree->root().setStoredName(root.name ? arena->storeName(*root.name) : nullptr);
    tree->root().setItemSize(root.size);
    appendChildren(*arena, tree->root(), root.children);
    return tree;
}

std::shared_ptr<tree::ScanTree> makeTree(std::optional<std::string> name,
                                         std::vector<PlannedNode> children)
{
    return makeTree(folder(std::move(name), std::move(children)));
}

std::shared_ptr<tree::ScanTree> makeDeepTree(std::size_t depth, std::uint64_t leafByteCount)
{
    auto tree = std::make_shared<tree::ScanTree>();
    const tree::ScanTree::ArenaLease arena = tree->leaseArena();
    tree::LUMFileContainer *deepest = &tree->root();
    for (std::size_t level = 0; level < depth; ++level) {
        auto &subfolder = arena->make<tree::LUMFileContainer>("d", std::uint64_t{0});
        deepest->subitems().append(subfolder);
        deepest = &subfolder;
    }
    deepest->subitems().append(arena->make<tree::LUMFileItem>("leaf", leafByteCount));
    return tree;
}

std::string dumpOf(const tree::ScanTree &tree)
{
    std::ostringstream out;
    dumpTree(out, tree.root());
    return out.str();
}

} // namespace tessaly
