#include "engine/tree/EscapedName.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tessaly::tree {

namespace {

constexpr char32_t escapeFirst = 0xEF80; ///< stands for byte 0x80
constexpr char32_t escapeLast = 0xEFFF;  ///< stands for byte 0xFF

constexpr bool isSurrogate(char32_t codePoint) noexcept
{
    return codePoint >= 0xD800 && codePoint <= 0xDFFF;
}

constexpr bool isEscape(char32_t codePoint) noexcept
{
    return codePoint >= escapeFirst && codePoint <= escapeLast;
}

struct Decoded {
    char32_t codePoint;
    std::size_t byteCount; ///< 0: what stands here is not valid UTF-8
};

/// The code point at the start of `bytes`, which are not empty. Overlong forms, surrogates and
/// values past U+10FFFF are not valid.
Decoded decodeUtf8(std::string_view bytes) noexcept
{
    constexpr Decoded invalid{0, 0};
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };

    const unsigned lead = byteAt(0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t byteCount = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    // 0xC0 and 0xC1 begin overlong forms only, and from 0xF5 on all values are too large.
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < byteCount) {
        return invalid;
    }
    char32_t codePoint = lead & (0xFFU >> (byteCount + 1));
    for (std::size_t i = 1; i < byteCount; ++i) {
        if ((byteAt(i) & 0xC0U) != 0x80U) {
            return invalid;
        }
        codePoint = codePoint << 6U | (byteAt(i) & 0x3FU);
    }
    // An overlong form would not come back as the same bytes.
    constexpr char32_t minCodePoint[] = {0, 0, 0x80, 0x800, 0x10000};
    if (codePoint < minCodePoint[byteCount] || codePoint > 0x10FFFF || isSurrogate(codePoint)) {
        return invalid;
    }
    return {codePoint, byteCount};
}

void appendUtf16(std::u16string &text, char32_t codePoint)
{
    if (codePoint < 0x10000) {
        text += static_cast<char16_t>(codePoint);
        return;
    }
    text += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10U));
    text += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FFU));
}

void appendUtf8(std::string &bytes, char32_t codePoint)
{
    const auto append = [&](char32_t value) { bytes += static_cast<char>(value); };
    if (codePoint < 0x80) {
        append(codePoint);
        return;
    }
    if (codePoint < 0x800) {
        append(0xC0 | codePoint >> 6U);
    } else {
        if (codePoint < 0x10000) {
            append(0xE0 | codePoint >> 12U);
        } else {
            append(0xF0 | codePoint >> 18U);
            append(0x80 | (codePoint >> 12U & 0x3FU));
        }
        append(0x80 | (codePoint >> 6U & 0x3FU));
    }
    append(0x80 | (codePoint & 0x3FU));
}

} // namespace

std::u16string escapedName(std::string_view name)
{
    std::u16string text;
    text.reserve(name.size());
    while (!name.empty()) {
        const Decoded decoded = decodeUtf8(name);
        const std::size_t byteCount = decoded.byteCount == 0 ? 1 : decoded.byteCount;
        if (decoded.byteCount != 0 && !isEscape(decoded.codePoint)) {
            appendUtf16(text, decoded.codePoint);
        } else {
            for (const char c : name.substr(0, byteCount)) {
                appendUtf16(text, escapeFirst + (static_cast<unsigned char>(c) - 0x80U));
            }
        }
        name.remove_prefix(byteCount);
    }
    return text;
}

std::string nameFromEscaped(std::u16string_view text)
{
    std::string name;
    name.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t codePoint = text[i];
        const bool isHigh = codePoint >= 0xD800 && codePoint <= 0xDBFF;
        if (isHigh && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
            codePoint = 0x10000 + ((codePoint - 0xD800) << 10U) + (text[i + 1] - 0xDC00U);
            ++i;
        }
        if (isEscape(codePoint)) {
            name += static_cast<char>(0x80 + (codePoint - escapeFirst));
        } else {
            appendUtf8(name, codePoint);
        }
    }
    return name;
}

bool isAscii(std::string_view name) noexcept
{
    // Eight bytes at a time: every name of a scan file passes here.
    constexpr std::uint64_t topBits = 0x8080808080808080U;
    std::uint64_t seen = 0;
    const auto lookAt = [&](const char *bytes) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, bytes, sizeof eight);
        seen |= eight;
    };
    if (name.size() >= sizeof seen) {
        for (std::size_t i = 0; i + sizeof seen < name.size(); i += sizeof seen) {
            lookAt(name.data() + i);
        }
        lookAt(name.data() + name.size() - sizeof seen); // may overlap the ones before
    } else {
        for (const char c : name) {
            seen |= static_cast<unsigned char>(c);
        }
    }
    return (seen & topBits) == 0;
}

} // namespace tessaly::tree
