#pragma once

#include <chrono>
#include <compare>
#include <string>

namespace tessaly::archive {

/// A moment, in the form in which archives keep dates.
///
/// Units: seconds since 2001-01-01 00:00 UTC, leap seconds left out; a finite number.
struct Timestamp {
    double secondsSince2001 = 0;

    [[nodiscard]] static Timestamp now();

    /// Rounded down to a second, and limited to the years -9999 to 9999.
    [[nodiscard]] std::chrono::sys_seconds systemTime() const noexcept;

    /// "2026-11-21 12:18:19 +0000": year, month, day, hours, minutes and seconds in UTC.
    [[nodiscard]] std::string description() const;

    // NOLINTNEXTLINE(modernize-use-nullptr): it takes the defaulted operator for a 0
    auto operator<=>(const Timestamp &) const noexcept = default;
};

} // namespace tessaly::archive
