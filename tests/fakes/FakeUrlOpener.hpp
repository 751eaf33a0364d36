#pragma once

#include "platform/UrlOpener.hpp"

#include <string>
#include <vector>

namespace tessaly {

/// Keeps what it was asked to open.
class FakeUrlOpener final : public UrlOpener {
public:
    void openUrl(std::string_view url) override { opened.emplace_back(url); }

    std::vector<std::string> opened;
};

} // namespace tessaly
