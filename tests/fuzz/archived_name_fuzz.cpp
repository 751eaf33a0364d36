// Any bytes as a file name, and any bytes as an archived text: both ways and back.

#include "engine/tree/EscapedName.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

bool isSurrogate(char16_t unit, char16_t first)
{
    return unit >= first && unit < first + 0x400;
}

bool isValidUtf16(std::u16string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isSurrogate(text[i], 0xDC00)) {
            return false;
        }
        if (isSurrogate(text[i], 0xD800) && (++i == text.size() || !isSurrogate(text[i], 0xDC00))) {
            return false;
        }
    }
    return true;
}

void require(bool isTrue)
{
    if (!isTrue) {
        std::abort();
    }
}

void checkName(std::string_view name)
{
    const std::u16string text = tessaly::tree::escapedName(name);
    require(isValidUtf16(text));
    require(tessaly::tree::nameFromEscaped(text) == name);
    if (tessaly::tree::isAscii(name)) {
        require(text == std::u16string(name.begin(), name.end()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    checkName({reinterpret_cast<const char *>(data), size});

    std::u16string text(size / 2, u'\0');
    if (!text.empty()) {
        std::memcpy(text.data(), data, text.size() * sizeof(char16_t));
    }
    checkName(tessaly::tree::nameFromEscaped(text));
    return 0;
}
