#pragma once

#include "platform/UserAccount.hpp"

namespace tessaly {

/// The user of this process, as the password database knows them, with the home folder of the
/// environment.
///
/// Threads: any, as long as none changes the environment.
class LinuxUserAccount final : public UserAccount {
public:
    /// Empty when the password database does not know the user.
    [[nodiscard]] std::string loginName() const override;
    /// $HOME, or what the password database says when that is unset, empty or relative; empty when
    /// that does not know the user. The home folder "/" keeps its slash.
    [[nodiscard]] std::string homeFolder() const override;
    /// "/home".
    [[nodiscard]] std::string usersFolder() const override;
};

} // namespace tessaly
