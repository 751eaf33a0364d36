#pragma once

#include "platform/UserAccount.hpp"

namespace tessaly {

/// A user that a test makes up.
class FakeUserAccount final : public UserAccount {
public:
    [[nodiscard]] std::string loginName() const override { return login; }
    [[nodiscard]] std::string homeFolder() const override { return home; }
    [[nodiscard]] std::string usersFolder() const override { return users; }

    std::string login = "ada";
    std::string home = "/home/ada";
    std::string users = "/home";
};

} // namespace tessaly
