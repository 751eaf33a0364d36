#include "platform/linux/volumes/DeviceLabels.hpp"

#include <charconv>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace tessaly {

namespace {

/// The names of the links have "\x" and two digits for bytes that are awkward in a name.
std::string unescapedLabel(std::string_view text)
{
    constexpr std::string_view mark = "\\x";
    constexpr std::size_t digitCount = 2;
    constexpr int radix = 16;
    std::string plain;
    while (!text.empty()) {
        if (text.starts_with(mark) && text.size() >= mark.size() + digitCount) {
            unsigned char byte = 0;
            const char *digits = text.data() + mark.size();
            if (std::from_chars(digits, digits + digitCount, byte, radix).ptr ==
                digits + digitCount) {
                plain += static_cast<char>(byte);
                text.remove_prefix(mark.size() + digitCount);
                continue;
            }
        }
        plain += text.front();
        text.remove_prefix(1);
    }
    return plain;
}

} // namespace

DeviceLabels::DeviceLabels(const std::string &devices)
{
    std::error_code error;
    std::filesystem::directory_iterator link(devices + "/disk/by-label", error);
    for (; !error && link != std::filesystem::directory_iterator(); link.increment(error)) {
        std::error_code isNoLink;
        // Only the last part of "../../sda1" counts; the link is not followed to the device.
        const std::filesystem::path device = std::filesystem::read_symlink(*link, isNoLink);
        if (!isNoLink) {
            m_labels.emplace(device.filename(), unescapedLabel(link->path().filename().native()));
        }
    }
}

std::optional<std::string> DeviceLabels::of(const std::string &device) const
{
    const auto found = m_labels.find(device);
    return found == m_labels.end() ? std::nullopt : std::optional(found->second);
}

} // namespace tessaly
