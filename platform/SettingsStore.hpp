#pragma once

#include "platform/Interface.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// The user's settings: values of three types under keys, kept from run to run.
///
/// A value stays of the type that it was set as: the text "4" is not the integer 4. Reading a key
/// as another type than its own gives what a missing key gives, and changes nothing. Only numbers
/// of all kinds that other programs may have stored read as integers.
///
/// A change is seen at once by this process; flush() makes it last. Other processes may change the
/// same settings: what they flushed shows here after the next flush().
///
/// Keys and texts: UTF-8.
/// Threads:        any.
/// Errors:         flush() answers false when the changes could not be stored; they stay pending
///                 and are tried again by the next one. The reason goes to the log.
class SettingsStore : public Interface {
public:
    using Data = std::vector<std::byte>;

    /// Whether there is a value of any type.
    [[nodiscard]] virtual bool hasKey(std::string_view key) const = 0;

    /// 0 when there is no value, or none that is a number. A boolean reads as 0 or 1, a real
    /// without its fraction, what is past an end of the integers as that end, and NaN as 0.
    [[nodiscard]] virtual std::int64_t integer(std::string_view key) const = 0;
    [[nodiscard]] virtual std::optional<std::string> text(std::string_view key) const = 0;
    [[nodiscard]] virtual std::optional<Data> data(std::string_view key) const = 0;

    virtual void setInteger(std::string_view key, std::int64_t value) = 0;
    /// Like setInteger(), but gives way to a value of any type: to one that this process sees
    /// already, and to one that another process stored or that could not be read before, which
    /// shows after the next flush() that succeeds.
    virtual void setDefault(std::string_view key, std::int64_t value) = 0;
    virtual void setText(std::string_view key, std::string_view value) = 0;
    virtual void setData(std::string_view key, std::span<const std::byte> value) = 0;
    /// Does nothing when there is no value.
    virtual void remove(std::string_view key) = 0;

    virtual bool flush() = 0;
};

} // namespace tessaly
