#include "platform/linux/process/ReadToEnd.hpp"

#include "engine/archive/FileCalls.hpp"

#include <algorithm>
#include <array>

#include <unistd.h>

namespace tessaly {

std::optional<std::string> readToEnd(int descriptor, std::size_t maxBytes)
{
    std::string text;
    std::array<char, 4096> piece{};
    for (;;) {
        const ssize_t count =
            archive::retried([&] { return read(descriptor, piece.data(), piece.size()); });
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            return text;
        }
        // To the end even when there is enough: a program blocks when nothing reads its pipe.
        text.append(piece.data(),
                    std::min(static_cast<std::size_t>(count), maxBytes - text.size()));
    }
}

} // namespace tessaly
