#include "platform/FileUrl.hpp"

#include <algorithm>
#include <cstddef>

namespace tessaly {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

/// The "unreserved" characters of RFC 3986, whatever the locale, and the separator of paths.
bool standsForItself(char byte) noexcept
{
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
           (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' || byte == '_' ||
           byte == '~' || byte == '/';
}

/// Not tolower(), which depends on the locale.
char lowered(char byte) noexcept
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

bool beginsWith(std::string_view text, std::string_view lowerCaseStart) noexcept
{
    return text.size() >= lowerCaseStart.size() &&
           std::equal(lowerCaseStart.begin(), lowerCaseStart.end(), text.begin(),
                      [](char wanted, char byte) { return wanted == lowered(byte); });
}

std::optional<unsigned> hexValue(char digit) noexcept
{
    const char upper = digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
    const std::size_t value = hexDigits.find(upper);
    return value == std::string_view::npos ? std::nullopt
                                           : std::optional(static_cast<unsigned>(value));
}

} // namespace

std::optional<std::string> fileUrl(std::string_view path)
{
    if (!path.starts_with('/') || path.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    // Byte by byte, since a name need not be valid in any encoding.
    std::string url = "file://";
    for (const char byte : path) {
        if (standsForItself(byte)) {
            url += byte;
        } else {
            const auto value = static_cast<unsigned char>(byte);
            url += '%';
            url += hexDigits[value >> 4U];
            url += hexDigits[value & 0x0FU];
        }
    }
    return url;
}

std::optional<std::string> percentDecoded(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            bytes += text[i];
            continue;
        }
        if (text.size() - i < 3) {
            return std::nullopt;
        }
        const auto high = hexValue(text[i + 1]);
        const auto low = hexValue(text[i + 2]);
        if (!high || !low) {
            return std::nullopt;
        }
        bytes += static_cast<char>(*high * 16 + *low);
        i += 2;
    }
    return bytes;
}

std::optional<std::string> pathOfFileUrl(std::string_view url)
{
    constexpr std::string_view scheme = "file:";
    constexpr std::string_view authorityMark = "//";
    constexpr std::string_view thisHost = "localhost";
    if (!beginsWith(url, scheme)) {
        return std::nullopt;
    }
    std::string_view rest = url.substr(scheme.size());
    if (rest.starts_with(authorityMark)) {
        rest.remove_prefix(authorityMark.size());
        if (beginsWith(rest, thisHost)) {
            rest.remove_prefix(thisHost.size());
        }
    }
    // A query or a fragment names a part of a file, which is nothing that the file system knows.
    if (!rest.starts_with('/') || rest.find_first_of("?#") != std::string_view::npos) {
        return std::nullopt;
    }
    auto path = percentDecoded(rest);
    return path && path->find('\0') == std::string::npos ? path : std::nullopt;
}

} // namespace tessaly
