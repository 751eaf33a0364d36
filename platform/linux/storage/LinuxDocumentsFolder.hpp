#pragma once

#include "platform/DocumentsFolder.hpp"

#include <string>
#include <string_view>

namespace tessaly {

/// The documents folder among the user's data: $XDG_DATA_HOME/tessaly, by default
/// ~/.local/share/tessaly.
///
/// It has mode 0700, and so have the folders above it that had to be made. One that was there and
/// lets others look in is closed to them. A symbolic link to a folder will do.
class LinuxDocumentsFolder final : public DocumentsFolder {
public:
    [[nodiscard]] static std::string defaultPath();

    /// `path`: absolute, as bytes; slashes too many are ignored.
    explicit LinuxDocumentsFolder(std::string_view path = defaultPath());

    [[nodiscard]] std::string path() override;

private:
    const std::string m_path;
};

} // namespace tessaly
