#pragma once

#include "engine/tree/ScanTree.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

/// A node of a tree that a test is about to make.
struct PlannedNode {
    std::optional<std::string> name;
    std::uint64_t size = 0;
    bool isFolder = false;
    std::vector<PlannedNode> children;
};

/// Where a name stands: a node without one.
inline constexpr std::nullopt_t noName = std::nullopt;

[[nodiscard]] PlannedNode file(std::optional<std::string> name, std::uint64_t size = 0);
[[nodiscard]] PlannedNode folder(std::optional<std::string> name,
                                 std::vector<PlannedNode> children = {}, std::uint64_t size = 0);

/// `makeTree("root", {file("a", 10), folder("s", {file("c", 5)})})`: a tree as a scan makes it.
[[nodiscard]] std::shared_ptr<tree::ScanTree> makeTree(const PlannedNode &root);
[[nodiscard]] std::shared_ptr<tree::ScanTree> makeTree(std::optional<std::string> name,
                                                       std::vector<PlannedNode> children = {});

/// A root with `depth` folders in one another below it, and in the last one a file of
/// `leafByteCount` bytes named "leaf".
[[nodiscard]] std::shared_ptr<tree::ScanTree> makeDeepTree(std::size_t depth,
                                                           std::uint64_t leafByteCount = 1);

/// The tree as dumpTree() prints it.
[[nodiscard]] std::string dumpOf(const tree::ScanTree &tree);

} // namespace tessaly
