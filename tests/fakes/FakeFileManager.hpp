#pragma once

#include "platform/FileManager.hpp"

#include <string>
#include <vector>

namespace tessaly {

/// Shows nothing and keeps what it was to show, whatever the paths are.
class FakeFileManager final : public FileManager {
public:
    void reveal(std::string_view path) override { m_revealed.emplace_back(path); }
    void showInformation(std::string_view path) override { m_informed.emplace_back(path); }

    /// The paths so far, in order.
    [[nodiscard]] const std::vector<std::string> &revealed() const { return m_revealed; }
    [[nodiscard]] const std::vector<std::string> &informed() const { return m_informed; }

private:
    std::vector<std::string> m_revealed;
    std::vector<std::string> m_informed;
};

} // namespace tessaly
