#include "bench/BareWalk.hpp"

#include "engine/scan/DirectoryListing.hpp"
#include "engine/scan/FileDescriptor.hpp"
#include "engine/scan/LinkTarget.hpp"
#include "engine/scan/ScanThread.hpp"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace tessaly {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

/// Counts one entry. True when it is a folder to walk.
bool countEntry(int folder, const scan::DirectoryEntry &entry, BareCount &count)
{
    unsigned char type = entry.type;
    if (type == DT_DIR) {
        ++count.folders;
        return true;
    }
    if (type == DT_LNK) {
        count.folders += scan::linkLeadsToFolder(folder, entry.name.data()) ? 1U : 0U;
        return false;
    }
    struct statx facts = {};
    if (statx(folder, entry.name.data(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
              type == DT_UNKNOWN ? STATX_TYPE | STATX_SIZE : STATX_SIZE, &facts) == 0) {
        count.byteCount += facts.stx_size;
    }
    ++count.files;
    return false;
}

/// The names of folders to walk, last in, first out, without an allocation for each.
class NameStack {
public:
    void push(std::string_view name)
    {
        m_starts.push_back(m_names.size());
        m_names.insert(m_names.end(), name.begin(), name.end());
        m_names.push_back('\0');
    }
    [[nodiscard]] const char *top() const { return m_names.data() + m_starts.back(); }
    void pop()
    {
        m_names.resize(m_starts.back());
        m_starts.pop_back();
    }
    [[nodiscard]] std::size_t size() const { return m_starts.size(); }

private:
    std::vector<char> m_names;
    std::vector<std::size_t> m_starts;
};

struct Level {
    scan::FileDescriptor descriptor;
    std::size_t firstPending = 0;
};

BareCount walkSubfolder(int scanRoot, const char *name)
{
    BareCount count;
    scan::DirectoryListing listing;
    NameStack pending;
    std::vector<Level> levels;
    scan::FileDescriptor folder(openat(scanRoot, name, folderFlags));
    for (;;) {
        const std::size_t first = pending.size();
        if (folder.isOpen()) {
            listing.open(folder.number());
            while (const scan::DirectoryEntry *entry = listing.next()) {
                if (countEntry(folder.number(), *entry, count)) {
                    pending.push(entry->name);
                }
            }
        }
        if (pending.size() > first) {
            levels.push_back({std::move(folder), first});
        }
        if (levels.empty()) {
            return count;
        }
        folder = scan::FileDescriptor(
            openat(levels.back().descriptor.number(), pending.top(), folderFlags));
        pending.pop();
        if (pending.size() == levels.back().firstPending) {
            levels.pop_back();
        }
    }
}

/// What the threads of one walk share; each holds it, so the last one may end after bareWalk().
struct Walk {
    scan::FileDescriptor root;
    std::atomic<int> running = 1;
    std::mutex mutex; ///< guards the total
    BareCount total;

    void finish(const BareCount &count)
    {
        {
            const std::lock_guard lock(mutex);
            total.folders += count.folders;
            total.files += count.files;
            total.byteCount += count.byteCount;
        }
        if (running.fetch_sub(1) == 1) {
            running.notify_all();
        }
    }
};

} // namespace

BareCount bareWalk(const std::string &path)
{
    const auto walk = std::make_shared<Walk>();
    walk->root =
        scan::FileDescriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC));
    const int root = walk->root.number();

    BareCount own;
    scan::DirectoryListing listing;
    listing.open(root);
    while (const scan::DirectoryEntry *entry = listing.next()) {
        if (countEntry(root, *entry, own)) {
            walk->running.fetch_add(1);
            const auto work = [walk, root, name = std::string(entry->name)] {
                walk->finish(walkSubfolder(root, name.c_str()));
            };
            if (!scan::startDetachedThread(work)) {
                std::abort(); // a figure from fewer threads would mean nothing
            }
        }
    }
    walk->finish(own);
    for (int now = walk->running.load(); now > 0; now = walk->running.load()) {
        walk->running.wait(now);
    }
    return walk->total;
}

} // namespace tessaly
