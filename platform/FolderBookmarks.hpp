#pragma once

#include "platform/Interface.hpp"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// Lasting grants to reach folders that the user chose, as data that can be kept in the settings.
///
/// URLs:    "file:" URLs whose path is percent-encoded byte by byte (see FileUrl.hpp).
/// Threads: any.
/// Errors:  none reach the caller but as "nothing".
class FolderBookmarks : public Interface {
public:
    using Data = std::vector<std::byte>;

    /// Data by which resolve() finds the folder again, in this process or a later one. Nothing when
    /// the URL has no scheme or names no folder that is there.
    [[nodiscard]] virtual std::optional<Data> makeBookmark(std::string_view url) = 0;

    /// The folder's URL; nothing when the folder is gone or the data is none of ours.
    [[nodiscard]] virtual std::optional<std::string> resolve(std::span<const std::byte> data) = 0;

    /// Opens the folder of a resolved URL to this process, until stopAccess() has been called as
    /// many times as startAccess() answered true.
    virtual bool startAccess(std::string_view url) = 0;
    virtual void stopAccess(std::string_view url) = 0;
};

} // namespace tessaly
