#pragma once

#include <stdexcept>
#include <string>

namespace tessaly {

/// A failure that a class raises by contract: a name to tell it by, and a reason in words.
class NamedException : public std::runtime_error {
public:
    NamedException(std::string name, const std::string &reason);

    [[nodiscard]] const std::string &name() const noexcept { return m_name; }
    /// The same as what().
    [[nodiscard]] std::string reason() const { return what(); }

private:
    std::string m_name;
};

} // namespace tessaly
