#pragma once

#include "platform/ApplicationLauncher.hpp"

#include <string>
#include <vector>

namespace tessaly {

/// Keeps what it was asked to launch.
class FakeApplicationLauncher final : public ApplicationLauncher {
public:
    void launchApplication(std::string_view name) override { launched.emplace_back(name); }

    std::vector<std::string> launched;
};

} // namespace tessaly
