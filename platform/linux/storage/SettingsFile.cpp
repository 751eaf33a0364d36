#include "platform/linux/storage/SettingsFile.hpp"

#include "engine/archive/AtomicFile.hpp"
#include "engine/tree/FilePath.hpp"
#include "engine/tree/PrintableText.hpp"
#include "platform/linux/storage/PrivateFolder.hpp"

#include <array>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace tessaly {

namespace {

using Kind = archive::ArchiveError::Kind;

/// Far more than settings take; a larger file is not read to its end, so that it costs no memory.
constexpr std::size_t maxSettingsBytes = std::size_t{64} << 20U;
constexpr std::chrono::milliseconds timeBetweenLockTries{10};
/// Files that are set aside in the same second need different names, of which a few do.
constexpr int nameAttempts = 100;

std::string utcNow()
{
    const std::time_t now = std::time(nullptr);
    std::tm parts = {};
    // UTC, so that names sort by time across changes of the clock for summer.
    gmtime_r(&now, &parts);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y%m%dT%H%M%SZ", &parts)};
}

bool isLackOfLocks(int errorNumber) noexcept
{
    return errorNumber == ENOLCK || errorNumber == ENOSYS || errorNumber == EOPNOTSUPP;
}

} // namespace

SettingsFile::SettingsFile(std::string path, archive::FileCalls &calls,
                           std::chrono::milliseconds timeout, Now now)
    : m_path(std::move(path)), m_calls(calls), m_timeout(timeout), m_now(std::move(now))
{
}

SettingsFile::Lock::~Lock()
{
    if (m_descriptor >= 0) {
        // Closing alone does not unlock: a child between fork() and exec() has the file open, too.
        m_calls->flock(m_descriptor, LOCK_UN);
        m_calls->close(m_descriptor);
    }
}

SettingsFile::Lock::Lock(Lock &&other) noexcept
    : m_calls(other.m_calls), m_descriptor(std::exchange(other.m_descriptor, -1))
{
}

SettingsFile::Result<SettingsFile::Lock> SettingsFile::lock()
{
    if (const std::error_code error = makePrivateFolder(folder())) {
        return unwritable("cannot make the folder of", error.value());
    }
    // A file of its own: the settings file is replaced by a rename, and a lock would stay with the
    // old one.
    const std::string path = m_path + ".lock";
    const int descriptor = archive::retried(
        [&] { return m_calls.open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600); });
    if (descriptor < 0) {
        return unwritable("cannot open the lock of", errno);
    }
    Lock lock(m_calls, descriptor);
    // A stopped holder blocks us once and not at each change.
    const auto timeout = m_hasTimedOut ? std::chrono::milliseconds(0) : m_timeout;
    const auto deadline = m_now() + timeout;
    // flock() has no timeout, so it is tried again and again.
    while (archive::retried([&] { return m_calls.flock(descriptor, LOCK_EX | LOCK_NB); }) != 0) {
        if (isLackOfLocks(errno)) {
            break; // settings that are written without a lock are better than none
        }
        if (errno != EWOULDBLOCK) {
            return unwritable("cannot lock", errno);
        }
        if (m_now() >= deadline) {
            m_hasTimedOut = true;
            return unwritable("cannot lock", EWOULDBLOCK);
        }
        // Short, since a holder replaces one file and is done.
        std::this_thread::sleep_for(timeBetweenLockTries);
    }
    m_hasTimedOut = false;
    return lock;
}

SettingsFile::Result<SettingsFile::Content> SettingsFile::read()
{
    // O_NONBLOCK: opening a FIFO would block until it has a writer.
    const int descriptor = archive::retried(
        [&] { return m_calls.open(m_path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK, 0); });
    if (descriptor < 0) {
        // The first start has no file. Everything else is an error: a new file in place of one that
        // only cannot be read now would lose it.
        return errno == ENOENT ? SettingsFile::Result<Content>(Content()) : unreadable(errno);
    }
    const auto bytes = bytesOf(descriptor);
    m_calls.close(descriptor);
    if (!bytes) {
        return bytes.error();
    }
    auto list = archive::readPropertyList(bytes.value());
    if (!list) {
        return list.error();
    }
    auto *dictionary = list.value().as<archive::PlistDictionary>();
    if (dictionary == nullptr) {
        return archive::ArchiveError{Kind::damaged, "the top object is no dictionary", {}};
    }
    return Content(std::move(*dictionary));
}

SettingsFile::Result<std::vector<std::byte>> SettingsFile::bytesOf(int descriptor)
{
    struct stat status = {};
    if (m_calls.fstat(descriptor, &status) != 0) {
        return unreadable(errno);
    }
    if (!S_ISREG(status.st_mode)) { // a device may never end
        return archive::ArchiveError{Kind::unreadable,
                                     "cannot read " + tree::printableText(m_path) +
                                         ": not a regular file",
                                     {}};
    }
    std::vector<std::byte> bytes;
    std::array<std::byte, 16384> piece{};
    while (bytes.size() <= maxSettingsBytes) {
        const ssize_t count =
            archive::retried([&] { return m_calls.read(descriptor, piece.data(), piece.size()); });
        if (count < 0) {
            return unreadable(errno);
        }
        if (count == 0) {
            return bytes;
        }
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + count);
    }
    return archive::ArchiveError{Kind::damaged, "the file is far too large", {}};
}

bool SettingsFile::isDamage(const archive::ArchiveError &error) noexcept
{
    return error.kind == Kind::notAnArchive || error.kind == Kind::truncated ||
           error.kind == Kind::damaged || error.kind == Kind::unsupported;
}

SettingsFile::Result<std::string> SettingsFile::setAside()
{
    const std::string target = linkTarget();
    const std::string firstName = target + ".damaged-" + utcNow();
    // Damaged files are kept side by side: an older one may be the better one.
    for (int attempt = 1; attempt <= nameAttempts; ++attempt) {
        std::string name = attempt == 1 ? firstName : firstName + '-' + std::to_string(attempt);
        // An empty file reserves the name first, since rename() would replace a file of that name.
        const int taken = archive::retried([&] {
            return m_calls.open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        });
        if (taken < 0 && errno == EEXIST) {
            continue;
        }
        if (taken < 0) {
            return unwritable("cannot set aside", errno);
        }
        m_calls.close(taken);
        if (m_calls.rename(target.c_str(), name.c_str()) == 0) {
            return name;
        }
        // Kept, since unlink() may change it.
        const int errorNumber = errno;
        m_calls.unlink(name.c_str());
        return unwritable("cannot set aside", errorNumber);
    }
    return unwritable("cannot set aside", EEXIST);
}

SettingsFile::Result<archive::Done> SettingsFile::write(const archive::PlistValue &content)
{
    // Beside the link's target, as rename() would replace the link itself.
    archive::AtomicFile file(linkTarget(), m_calls);
    if (auto opened = file.open(); !opened) {
        return opened;
    }
    if (auto written = archive::writePropertyList(content, file); !written) {
        return written;
    }
    return file.commit();
}

std::string SettingsFile::folder() const
{
    return tree::containingFolder(m_path);
}

std::string SettingsFile::folderOfFile() const
{
    return tree::containingFolder(linkTarget());
}

/// The path at the end of the links; the path of the file itself when it is none. Links in a circle
/// lead nowhere: then it is one of them, which cannot be opened.
std::string SettingsFile::linkTarget() const
{
    constexpr int maxLinkCount = 40; // as many as the kernel follows
    std::filesystem::path path = m_path;
    for (int count = 0; count < maxLinkCount; ++count) {
        std::error_code isNoLink;
        const std::filesystem::path target = std::filesystem::read_symlink(path, isNoLink);
        if (isNoLink) {
            break;
        }
        path = path.parent_path() / target; // an absolute target replaces all of it
    }
    return path;
}

archive::ArchiveError SettingsFile::unreadable(int errorNumber) const
{
    return archive::systemError(Kind::unreadable, "cannot read " + tree::printableText(m_path),
                                errorNumber);
}

archive::ArchiveError SettingsFile::unwritable(const std::string &what, int errorNumber) const
{
    return archive::systemError(Kind::unwritable, what + ' ' + tree::printableText(m_path),
                                errorNumber);
}

} // namespace tessaly
