#pragma once

#include "platform/Interface.hpp"

#include <string>

namespace tessaly {

/// Who the program runs for. Texts are bytes.
///
/// Threads: any. Errors: none; what the system does not tell is empty.
class UserAccount : public Interface {
public:
    /// The user's login name.
    [[nodiscard]] virtual std::string loginName() const = 0;
    /// The home folder of this process, without a slash at its end unless it is "/".
    [[nodiscard]] virtual std::string homeFolder() const = 0;
    /// The folder in which the system keeps the users' home folders, without a slash at its end.
    [[nodiscard]] virtual std::string usersFolder() const = 0;
};

} // namespace tessaly
