#pragma once

#include "engine/tree/ScanTree.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tessaly {

/// A tree of a million nodes, its scan file, and the workloads on them.
class MillionNodes {
public:
    static constexpr std::size_t nodeCount = 1'000'000;

    /// Makes both, the file at `path`. Throws std::runtime_error.
    explicit MillionNodes(std::string path);

    [[nodiscard]] const std::string &path() const noexcept { return m_path; }
    [[nodiscard]] std::size_t fileSize() const noexcept { return m_bytes.size(); }

    /// Adds the workloads, named "... 1M nodes". This must outlive them.
    void addWorkloads(int repetitions);

private:
    void addTreeWorkloads(int repetitions);
    void addFileWorkloads(int repetitions);
    void write(const std::string &path) const;
    void writePlainly(const std::string &path) const;
    void copyFile();

    std::string m_path;
    std::shared_ptr<tree::ScanTree> m_tree;
    std::vector<std::byte> m_bytes; ///< of the file
    std::vector<std::byte> m_copy;
    std::vector<std::uint64_t> m_memory; ///< as much as the nodes take
};

} // namespace tessaly
