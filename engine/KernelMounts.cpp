#include "engine/KernelMounts.hpp"

#include "engine/FileDescriptor.hpp"

#include <array>
#include <cstddef>
#include <optional>

#include <fcntl.h>

namespace tessaly {

namespace {

std::optional<std::string> wholeFile(const std::string &path)
{
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen()) {
        return std::nullopt;
    }
    std::string text;
    std::array<char, 16384> piece;
    for (;;) {
        const ssize_t byteCount = ::read(file.number(), piece.data(), piece.size());
        if (byteCount == 0) {
            return text;
        }
        if (byteCount < 0 && errno != EINTR) {
            return std::nullopt;
        }
        if (byteCount > 0) {
            text.append(piece.data(), static_cast<std::size_t>(byteCount));
        }
    }
}

/// The kernel tells no path longer than a page; such a folder has none here.
std::optional<std::string> realPath(int folder)
{
    std::array<char, 4096> path;
    const std::string link = "/proc/self/fd/" + std::to_string(folder);
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    if (length <= 0 || static_cast<std::size_t>(length) == path.size() || path[0] != '/') {
        return std::nullopt;
    }
    return std::string(path.data(), static_cast<std::size_t>(length));
}

bool isOctal(char character)
{
    return character >= '0' && character <= '7';
}

/// Blanks, line ends and backslashes stand in the list as a backslash and three octal digits.
std::string unescaped(std::string_view text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && isOctal(text[i + 1]) &&
            isOctal(text[i + 2]) && isOctal(text[i + 3])) {
            const int value =
                (text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0');
            plain += static_cast<char>(value);
            i += 3;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

/// Takes what stands before the separator off the front of a text.
std::string_view takeField(std::string_view &text, char separator)
{
    const std::size_t end = text.find(separator);
    const std::string_view field = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return field;
}

} // namespace

KernelMounts KernelMounts::below(int folder, const std::string &mountInfoPath)
{
    const std::optional<std::string> mountInfo = wholeFile(mountInfoPath);
    const std::optional<std::string> path = realPath(folder);
    return mountInfo && path ? fromText(*mountInfo, *path) : KernelMounts();
}

KernelMounts KernelMounts::fromText(std::string_view mountInfo, std::string_view folderPath)
{
    KernelMounts mounts;
    mounts.m_top = std::make_unique<Place>();
    mounts.m_mayAutomount = false;
    const std::string prefix =
        folderPath == "/" ? std::string(folderPath) : std::string(folderPath) + '/';
    while (!mountInfo.empty()) {
        std::string_view line = takeField(mountInfo, '\n');
        const std::size_t typeMark = line.find(" - ");
        if (typeMark != std::string_view::npos) {
            std::string_view type = line.substr(typeMark + 3);
            if (takeField(type, ' ') == "autofs") {
                mounts.m_mayAutomount = true;
            }
        }
        for (int skipped = 0; skipped < 4; ++skipped) {
            takeField(line, ' ');
        }
        const std::string mountPoint = unescaped(takeField(line, ' '));
        if (mountPoint.size() > prefix.size() && mountPoint.starts_with(prefix)) {
            mounts.add(std::string_view(mountPoint).substr(prefix.size()));
        }
    }
    return mounts;
}

void KernelMounts::add(std::string_view relativePath)
{
    Place *place = m_top.get();
    while (!relativePath.empty()) {
        const std::string_view name = takeField(relativePath, '/');
        std::unique_ptr<Place> &next = place->inside[std::string(name)];
        if (next == nullptr) {
            next = std::make_unique<Place>();
        }
        place = next.get();
    }
}

const KernelMounts::Place *KernelMounts::find(const Place &place, std::string_view name)
{
    const auto found = place.inside.find(name);
    return found == place.inside.end() ? nullptr : found->second.get();
}

} // namespace tessaly
