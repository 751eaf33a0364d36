#pragma once

#include "platform/DocumentsFolder.hpp"

#include <atomic>
#include <string>
#include <utility>

namespace tessaly {

/// A path that is given, which nobody makes a folder at. Counts how often it was asked for.
class FakeDocumentsFolder final : public DocumentsFolder {
public:
    explicit FakeDocumentsFolder(std::string path) : m_path(std::move(path)) {}

    [[nodiscard]] std::string path() override
    {
        ++m_callCount;
        return m_path;
    }

    [[nodiscard]] int callCount() const { return m_callCount; }

private:
    const std::string m_path;
    std::atomic<int> m_callCount = 0;
};

} // namespace tessaly
