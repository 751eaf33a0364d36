#include "engine/scan/MountTable.hpp"

#include "engine/scan/FileDescriptor.hpp"

#include <array>
#include <charconv>
#include <cstddef>
#include <set>
#include <utility>

#include <fcntl.h>
#include <sys/sysmacros.h>

namespace tessaly::scan {

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

bool isOctal(char character)
{
    return character >= '0' && character <= '7';
}

/// Removes the text up to the separator from the front, and the separator with it.
std::string_view takeField(std::string_view &text, char separator)
{
    const std::size_t end = text.find(separator);
    const std::string_view field = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return field;
}

template <typename Number>
Number numberIn(std::string_view text)
{
    Number number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::uint64_t deviceIn(std::string_view text)
{
    const auto major = numberIn<unsigned>(takeField(text, ':'));
    return makedev(major, numberIn<unsigned>(text));
}

/// "ID PARENT MAJOR:MINOR ROOT MOUNTPOINT OPTIONS [TAG…] - TYPE SOURCE SUPEROPTIONS". Newer kernels
/// may add tags; the "-" ends them.
Mount mountIn(std::string_view line)
{
    Mount mount;
    mount.id = numberIn<int>(takeField(line, ' '));
    mount.parentId = numberIn<int>(takeField(line, ' '));
    mount.device = deviceIn(takeField(line, ' '));
    mount.root = MountTable::unescaped(takeField(line, ' '));
    mount.mountPoint = MountTable::unescaped(takeField(line, ' '));
    takeField(line, ' ');
    while (!line.empty() && takeField(line, ' ') != "-") {}
    mount.type = MountTable::unescaped(takeField(line, ' '));
    mount.source = MountTable::unescaped(takeField(line, ' '));
    mount.superOptions = MountTable::unescaped(line);
    return mount;
}

bool isAtOrBelow(std::string_view path, std::string_view folder)
{
    return path.starts_with(folder) &&
           (path.size() == folder.size() || folder == "/" || path[folder.size()] == '/');
}

} // namespace

std::optional<std::string_view> Mount::option(std::string_view name) const
{
    std::string_view options = superOptions;
    while (!options.empty()) {
        std::string_view value = takeField(options, ',');
        if (takeField(value, '=') == name) {
            return value;
        }
    }
    return std::nullopt;
}

std::optional<MountTable> MountTable::read(const std::string &path)
{
    const std::optional<std::string> text = wholeFile(path);
    return text ? std::optional(fromText(*text)) : std::nullopt;
}

MountTable MountTable::fromText(std::string_view text)
{
    std::vector<Mount> mounts;
    while (!text.empty()) {
        Mount mount = mountIn(takeField(text, '\n'));
        if (!mount.mountPoint.empty()) {
            mounts.push_back(std::move(mount));
        }
    }
    return MountTable(std::move(mounts));
}

MountTable::MountTable(std::vector<Mount> mounts) : m_mounts(std::move(mounts))
{
    // In a container or a chroot the list begins in the middle: the parents of its topmost mounts
    // are not in it. The root of a whole list is its own parent.
    std::set<int> ids;
    for (const Mount &mount : m_mounts) {
        ids.insert(mount.id);
    }
    for (const Mount &mount : m_mounts) {
        m_isTop.push_back(mount.parentId == mount.id || !ids.contains(mount.parentId));
    }
}

const Mount *MountTable::mountOf(std::string_view path) const
{
    const Mount *current = nullptr;
    std::vector<bool> isPassed(m_mounts.size()); // parents may form a cycle in a malformed list
    for (;;) {
        // As the kernel looks a path up: of the mounts on the current one, the first that the path
        // meets. A mount at the same point as its parent covers it, so string length alone is not
        // enough.
        std::size_t next = m_mounts.size();
        for (std::size_t i = 0; i < m_mounts.size(); ++i) {
            const Mount &mount = m_mounts[i];
            const bool isOnTheWay =
                !isPassed[i] && isAtOrBelow(path, mount.mountPoint) &&
                (current == nullptr ? m_isTop[i] : mount.parentId == current->id);
            if (isOnTheWay && (next == m_mounts.size() ||
                               mount.mountPoint.size() < m_mounts[next].mountPoint.size())) {
                next = i;
            }
        }
        if (next == m_mounts.size()) {
            return current;
        }
        isPassed[next] = true;
        current = &m_mounts[next];
    }
}

std::string MountTable::unescaped(std::string_view text)
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

} // namespace tessaly::scan
