#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

/// The "file://" URL of an absolute path: each byte but the unreserved ones of RFC 3986 and "/" is
/// percent-encoded, so that any path comes back as the same bytes. Nothing when the path is not
/// absolute or holds a NUL byte.
[[nodiscard]] std::optional<std::string> fileUrl(std::string_view path);

/// The path of a "file:" URL (RFC 8089: no host, or "localhost"), as bytes and with "%XX" decoded.
/// Nothing when the URL has no scheme, or another one, or another host, or no absolute path, or is
/// not well-formed, or stands for a path with a NUL byte.
[[nodiscard]] std::optional<std::string> pathOfFileUrl(std::string_view url);

/// The text with each "%XX" replaced by the byte; nothing when the digits are not hexadecimal.
[[nodiscard]] std::optional<std::string> percentDecoded(std::string_view text);

} // namespace tessaly
