#include "platform/linux/applications/KeyFile.hpp"

#include "engine/scan/FileDescriptor.hpp"
#include "platform/linux/process/ReadToEnd.hpp"

#include <algorithm>
#include <cstddef>

#include <fcntl.h>
#include <sys/stat.h>

namespace tessaly {

namespace {

/// Real ones have some kilobytes.
constexpr std::size_t maxFileBytes = std::size_t{1} << 20U;

std::string_view trimmed(std::string_view text)
{
    // "\r" comes from files that were edited on other systems.
    constexpr std::string_view blanks = " \t\r";
    const std::size_t begin = std::min(text.find_first_not_of(blanks), text.size());
    const std::size_t end = text.find_last_not_of(blanks) + 1;
    return text.substr(begin, end > begin ? end - begin : 0);
}

/// The character that a backslash and this letter stand for.
char unescaped(char letter)
{
    switch (letter) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    default:
        return letter;
    }
}

bool isEscape(char letter)
{
    constexpr std::string_view escapes = "sntr\\;";
    return escapes.find(letter) != std::string_view::npos;
}

/// Replaces the escapes, and splits a list at its semicolons. A backslash that begins no escape
/// stands for itself.
std::vector<std::string> partsOf(std::string_view value, bool isList)
{
    std::vector<std::string> parts(1);
    for (std::size_t i = 0; i < value.size(); ++i) {
        // An Exec line has escapes of its own behind these, with letters that are left alone here.
        if (value[i] == '\\' && i + 1 < value.size() && isEscape(value[i + 1])) {
            ++i;
            parts.back() += unescaped(value[i]);
        } else if (isList && value[i] == ';') {
            parts.emplace_back();
        } else {
            parts.back() += value[i];
        }
    }
    return parts;
}

} // namespace

KeyFile KeyFile::parse(std::string_view text)
{
    KeyFile file;
    std::map<std::string, std::string> *group = nullptr;
    while (!text.empty()) {
        const std::string_view line = trimmed(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
        // The first one, since values may have more of them.
        const std::size_t equals = line.find('=');
        if (line.starts_with('#')) {
            continue;
        }
        if (line.starts_with('[') && line.ends_with(']')) {
            // A group that stands twice is continued.
            group = &file.m_groups[std::string(line.substr(1, line.size() - 2))];
        } else if (group != nullptr && equals != std::string_view::npos) {
            (*group)[std::string(trimmed(line.substr(0, equals)))] =
                trimmed(line.substr(equals + 1));
        }
    }
    return file;
}

std::optional<KeyFile> KeyFile::read(const std::string &path)
{
    // O_NONBLOCK: opening a FIFO would block until it has a writer.
    const scan::FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode) ||
        static_cast<std::size_t>(status.st_size) > maxFileBytes) {
        return std::nullopt;
    }
    const auto text = readToEnd(file.number(), maxFileBytes);
    return text ? std::optional(parse(*text)) : std::nullopt;
}

std::string KeyFile::text(const std::string &group, const std::string &key) const
{
    return partsOf(rawValue(group, key), false).front(); // there is always one part
}

std::vector<std::string> KeyFile::list(const std::string &group, const std::string &key) const
{
    std::vector<std::string> parts = partsOf(rawValue(group, key), true);
    // A list usually ends with a semicolon, which begins an empty part.
    std::erase(parts, std::string());
    return parts;
}

bool KeyFile::flag(const std::string &group, const std::string &key) const
{
    return rawValue(group, key) == "true";
}

std::string_view KeyFile::rawValue(const std::string &group, const std::string &key) const
{
    const auto keys = m_groups.find(group);
    if (keys == m_groups.end()) {
        return {};
    }
    const auto value = keys->second.find(key);
    return value == keys->second.end() ? std::string_view() : std::string_view(value->second);
}

} // namespace tessaly
