#pragma once

#include <optional>
#include <string>

namespace tessaly {

/// What the system's password database says of the user whom this process runs for. Texts are the
/// bytes that stand there.
struct PasswordEntry {
    std::string loginName;
    std::string homeFolder;

    /// Nothing when the database does not know the user. Threads: any.
    [[nodiscard]] static std::optional<PasswordEntry> ofThisUser();
};

} // namespace tessaly
