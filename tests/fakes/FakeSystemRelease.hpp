#pragma once

#include "platform/SystemRelease.hpp"

#include <atomic>

namespace tessaly {

/// The release that a test wants.
class FakeSystemRelease final : public SystemRelease {
public:
    FakeSystemRelease() = default;
    explicit FakeSystemRelease(Version version) : m_version(version) {}

    void setVersion(Version version) { m_version = version; }
    [[nodiscard]] Version version() const override { return m_version; }

private:
    std::atomic<Version> m_version{};
};

} // namespace tessaly
