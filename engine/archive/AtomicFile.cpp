#include "engine/archive/AtomicFile.hpp"

#include "engine/tree/FilePath.hpp"
#include "engine/tree/PrintableText.hpp"

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>

namespace tessaly::archive {

namespace {

using Kind = ArchiveError::Kind;

// Short, so that it fits wherever the target's own name does.
constexpr std::string_view temporaryPrefix = ".tessaly-";
constexpr std::string_view temporarySuffix = ".tmp";
constexpr std::size_t temporaryDigits = 16;
constexpr std::string_view digits = "0123456789abcdef";
constexpr int nameAttempts = 100;

std::string temporaryName()
{
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, GRND_NONBLOCK) != sizeof number) {
        // Early in the boot there may be no random numbers yet. The time will do: a name that
        // exists is only tried again.
        number =
            static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    }
    std::string name(temporaryPrefix);
    for (std::size_t i = 0; i < temporaryDigits; ++i, number >>= 4U) {
        name += digits[number & 0xFU];
    }
    name += temporarySuffix;
    return name;
}

bool isTemporaryName(std::string_view name)
{
    return name.size() == temporaryPrefix.size() + temporaryDigits + temporarySuffix.size() &&
           name.starts_with(temporaryPrefix) && name.ends_with(temporarySuffix) &&
           name.find_first_not_of(digits, temporaryPrefix.size()) ==
               name.size() - temporarySuffix.size();
}

} // namespace

AtomicFile::AtomicFile(std::string path, FileCalls &calls)
    : m_path(std::move(path)), m_folder(tree::containingFolder(m_path)), m_calls(calls)
{
}

AtomicFile::~AtomicFile()
{
    discard();
}

Result<Done, ArchiveError> AtomicFile::open()
{
    struct stat target = {};
    // rename() would replace a device or a FIFO without a word.
    if (m_calls.lstat(m_path.c_str(), &target) == 0 && !S_ISREG(target.st_mode) &&
        !S_ISLNK(target.st_mode)) {
        return ArchiveError{Kind::unwritable,
                            "cannot replace " + tree::printableText(m_path) +
                                ": not a regular file",
                            {}};
    }
    // O_EXCL: never a file or link that another process has put there.
    for (int attempt = 0; attempt < nameAttempts; ++attempt) {
        std::string name = tree::joinPath(m_folder, temporaryName());
        m_descriptor = retried([&] {
            return m_calls.open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        });
        if (m_descriptor < 0) {
            if (errno == EEXIST) {
                continue;
            }
            return failure("cannot write in the folder of", errno);
        }
        m_temporary = std::move(name);
        if (lockNewFile()) {
            return Done{};
        }
        discard();
    }
    return failure("cannot find a temporary name beside", EEXIST);
}

/// Locks the new file, which marks it as being written. False when removeLeftovers() of another
/// process found it between open() and the lock, and removes it as a leftover.
bool AtomicFile::lockNewFile()
{
    if (retried([&] { return m_calls.flock(m_descriptor, LOCK_EX | LOCK_NB); }) != 0 &&
        errno == EWOULDBLOCK) {
        return false;
    }
    // A file system without locks is no reason to fail: the lock only protects from the sweep.
    struct stat status = {};
    return m_calls.fstat(m_descriptor, &status) != 0 || status.st_nlink > 0;
}

Result<Done, ArchiveError> AtomicFile::write(std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const ssize_t count =
            retried([&] { return m_calls.write(m_descriptor, bytes.data(), bytes.size()); });
        if (count <= 0) { // 0 should not happen, but would loop for ever on a broken file system
            return failure("cannot write", count < 0 ? errno : EIO);
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return Done{};
}

Result<Done, ArchiveError> AtomicFile::commit()
{
    // Before the rename: some file systems write the new name to disk before the content, and a
    // power cut would leave an empty file in place of the old one.
    if (retried([&] { return m_calls.fsync(m_descriptor); }) != 0) {
        const int errorNumber = errno;
        discard();
        return failure("cannot write", errorNumber);
    }
    // Atomic: readers see the old file or the new one, and a process that has the old one open
    // keeps it.
    if (m_calls.rename(m_temporary.c_str(), m_path.c_str()) != 0) {
        const int errorNumber = errno;
        discard();
        return failure("cannot replace", errorNumber);
    }
    m_temporary.clear();
    // An error of close() would mean nothing: the content is on disk already.
    m_calls.close(std::exchange(m_descriptor, -1));
    // The name is an entry of the folder, which has to reach the disk as well.
    return flushFolder();
}

Result<Done, ArchiveError> AtomicFile::flushFolder()
{
    const int folder = retried(
        [&] { return m_calls.open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0); });
    if (folder < 0) {
        // A folder with write but without read permission cannot be opened, so not flushed either.
        return errno == EACCES ? Result<Done, ArchiveError>(Done{})
                               : failure("cannot flush the folder of", errno);
    }
    const int answer = retried([&] { return m_calls.fsync(folder); });
    const int errorNumber = errno;
    m_calls.close(folder);
    // Some file systems cannot flush folders and say so with EINVAL.
    if (answer != 0 && errorNumber != EINVAL && errorNumber != EROFS) {
        return failure("cannot flush the folder of", errorNumber);
    }
    return Done{};
}

void AtomicFile::discard() noexcept
{
    if (!m_temporary.empty()) {
        m_calls.unlink(m_temporary.c_str());
        m_temporary.clear();
    }
    if (m_descriptor >= 0) {
        m_calls.close(std::exchange(m_descriptor, -1));
    }
}

ArchiveError AtomicFile::failure(const std::string &what, int errorNumber) const
{
    return systemError(Kind::unwritable, what + ' ' + tree::printableText(m_path), errorNumber);
}

void AtomicFile::removeLeftovers(const std::string &folder, FileCalls &calls)
{
    std::error_code unreadable; // a folder that is not there has no leftovers
    std::filesystem::directory_iterator entry(folder, unreadable);
    for (; entry != std::filesystem::directory_iterator(); entry.increment(unreadable)) {
        const std::string name = entry->path().filename().native();
        if (!isTemporaryName(name)) {
            continue;
        }
        const std::string path = entry->path().native();
        const int descriptor =
            calls.open(path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, 0);
        if (descriptor < 0) {
            continue;
        }
        // While its writer runs the file is locked; a kill releases the lock. A writer that commits
        // just now has renamed the file, so that unlink() finds nothing under this name.
        if (calls.flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
            calls.unlink(path.c_str());
        }
        calls.close(descriptor);
    }
}

} // namespace tessaly::archive
