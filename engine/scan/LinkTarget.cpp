#include "engine/scan/LinkTarget.hpp"

#include "engine/scan/KernelFileSystem.hpp"

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>

namespace tessaly::scan {

namespace {

constexpr int maxLinks = 40; // the kernel's own limit
constexpr int lookFlags = O_PATH | O_NOFOLLOW;

/// The type bits of an item's mode, or 0 when it cannot be accessed.
mode_t fileType(int folder, const char *name, int flags) noexcept
{
    struct statx facts = {};
    if (statx(folder, name, flags | AT_NO_AUTOMOUNT, STATX_TYPE, &facts) != 0) {
        return 0;
    }
    return facts.stx_mode & static_cast<mode_t>(S_IFMT);
}

/// Whether a link's target is a lone name, so that it lies in the link's own folder.
bool isPlainName(const std::string &text)
{
    return text.find('/') == std::string::npos && text != "." && text != "..";
}

std::optional<std::string> linkText(int folder, const char *name)
{
    std::array<char, 4096> text; // no link is longer than a page
    const ssize_t length = readlinkat(folder, name, text.data(), text.size());
    if (length <= 0) {
        return std::nullopt;
    }
    return std::string(text.data(), static_cast<std::size_t>(length));
}

/// Resolves a path one component at a time, links included, as the kernel would, but stops at
/// automount points.
class PathResolver {
public:
    PathResolver(int start, DescriptorShare &share) : m_start(start), m_share(share) {}

    /// Whether the path leads from the start to a folder.
    bool leadsToFolder(std::string path)
    {
        m_rest = std::move(path);
        if (!startOfRest()) {
            return false;
        }
        while (!m_rest.empty()) {
            if (!step(takeName())) {
                return false;
            }
        }
        return fileType(here(), "", AT_EMPTY_PATH) == S_IFDIR;
    }

private:
    [[nodiscard]] int here() const { return m_here.isOpen() ? m_here.number() : m_start; }

    bool startOfRest()
    {
        if (m_rest.starts_with('/')) {
            m_here = m_share.open(AT_FDCWD, "/", lookFlags);
            return m_here.isOpen();
        }
        return true;
    }

    std::string takeName()
    {
        const std::size_t end = m_rest.find('/');
        std::string name = m_rest.substr(0, end);
        m_rest.erase(0, end == std::string::npos ? end : end + 1);
        return name;
    }

    bool step(const std::string &name)
    {
        if (name.empty() || name == ".") {
            return true;
        }
        if (fileSystemKind(here()) == FileSystemKind::automount) {
            return false;
        }
        FileDescriptor next = m_share.open(here(), name.c_str(), lookFlags);
        if (!next.isOpen()) {
            return false;
        }
        if (fileType(next.number(), "", AT_EMPTY_PATH) == S_IFLNK) {
            return follow(next);
        }
        m_here = std::move(next);
        return true;
    }

    /// Continues with a link's target and then the rest of the path.
    bool follow(const FileDescriptor &link)
    {
        const std::optional<std::string> text = linkText(link.number(), "");
        if (!text || ++m_linkCount >= maxLinks) {
            return false;
        }
        m_rest = *text + '/' + m_rest;
        return startOfRest();
    }

    int m_start;
    DescriptorShare &m_share;
    FileDescriptor m_here;
    std::string m_rest;
    int m_linkCount = 0;
};

} // namespace

bool linkLeadsToFolder(int folder, const char *name) noexcept
{
    return fileType(folder, name, 0) == S_IFDIR;
}

bool linkLeadsToFolderWithoutAutomount(int folder, const char *name, DescriptorShare &share)
{
    const std::optional<std::string> text = linkText(folder, name);
    if (text && isPlainName(*text)) {
        // Most links lead to a name beside them ("libx.so" to "libx.so.1"): no folder is passed on
        // the way, and one call is enough unless that is a link again.
        const mode_t type = fileType(folder, text->c_str(), AT_SYMLINK_NOFOLLOW);
        if (type != S_IFLNK) {
            return type == S_IFDIR;
        }
    }
    return text && PathResolver(folder, share).leadsToFolder(*text);
}

} // namespace tessaly::scan
