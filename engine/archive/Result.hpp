#pragma once

#include <cassert>
#include <utility>
#include <variant>

namespace tessaly::archive {

/// A value, or the error that stands in its way.
template <typename Value, typename Error>
class [[nodiscard]] Result {
public:
    // NOLINTNEXTLINE(google-explicit-constructor): `return value;` is the point
    Result(Value value) : m_content(std::in_place_index<0>, std::move(value)) {}
    // NOLINTNEXTLINE(google-explicit-constructor): `return error;` likewise
    Result(Error error) : m_content(std::in_place_index<1>, std::move(error)) {}

    [[nodiscard]] bool hasValue() const noexcept { return m_content.index() == 0; }
    explicit operator bool() const noexcept { return hasValue(); }

    /// Requires: hasValue().
    [[nodiscard]] Value &value() noexcept
    {
        assert(hasValue());
        return *std::get_if<0>(&m_content);
    }
    [[nodiscard]] const Value &value() const noexcept
    {
        assert(hasValue());
        return *std::get_if<0>(&m_content);
    }

    /// Requires: !hasValue().
    [[nodiscard]] const Error &error() const noexcept
    {
        assert(!hasValue());
        return *std::get_if<1>(&m_content);
    }

private:
    std::variant<Value, Error> m_content;
};

/// Result without a value: success is `Done{}`.
struct Done {};

} // namespace tessaly::archive
