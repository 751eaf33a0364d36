#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// The contents of a desktop file or a list of default programs: groups of keys with values. The
/// format is that of "Basic format of the file" and "Possible value types" in
/// freedesktop.org's Desktop Entry 1.5,
/// https://specifications.freedesktop.org/desktop-entry-spec/latest/.
///
/// Lines that are neither a group, nor a key with a value, nor a comment are ignored: one mistyped
/// line must not lose the user's default programs. Of several values of a key the last one counts.
/// Values in particular languages are keys of their own ("Name[de]").
///
/// Threads: any, for reading.
class KeyFile {
public:
    [[nodiscard]] static KeyFile parse(std::string_view text);

    /// Nothing when there is no such regular file, it cannot be read, or has more than a megabyte.
    /// `path`: bytes as the system takes them.
    [[nodiscard]] static std::optional<KeyFile> read(const std::string &path);

    /// A value with its escapes ("\s", "\n", "\t", "\r", "\\") replaced; empty when there is none.
    [[nodiscard]] std::string text(const std::string &group, const std::string &key) const;

    /// The parts of a value between semicolons ("\;" is one in a part), without empty ones.
    [[nodiscard]] std::vector<std::string> list(const std::string &group,
                                                const std::string &key) const;

    /// Whether the value is "true".
    [[nodiscard]] bool flag(const std::string &group, const std::string &key) const;

private:
    [[nodiscard]] std::string_view rawValue(const std::string &group, const std::string &key) const;

    std::map<std::string, std::map<std::string, std::string>> m_groups;
};

} // namespace tessaly
