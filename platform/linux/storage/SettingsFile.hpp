#pragma once

#include "engine/archive/ArchiveError.hpp"
#include "engine/archive/FileCalls.hpp"
#include "engine/archive/PropertyList.hpp"
#include "engine/archive/Result.hpp"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

/// The file in which settings lie, as a binary property list, and the lock that keeps two processes
/// from changing it at once.
///
/// Mode:    0600, in a folder that is made on demand (0700).
/// Links:   the path may be a symbolic link, also one to a file that does not exist yet. The file
///          that it leads to is read, replaced and set aside; the link stays. The lock lies beside
///          the link.
/// Lock:    flock() on a file beside it, named like it with ".lock" added, which stays there. The
///          system releases the lock when its holder ends, however that happens. On file systems
///          without locks there is none.
/// Threads: one at a time for each object. Other objects and processes may use the same file.
class SettingsFile {
public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;
    template <typename Value>
    using Result = archive::Result<Value, archive::ArchiveError>;

    /// `path`:     bytes as the system takes them.
    /// `calls`:    must outlive the file.
    /// `timeout`: how long lock() tries while another process holds the lock. A holder replaces the
    ///             file once, which is quick; one that was stopped meanwhile must not block us.
    ///             After a timeout, lock() tries only once each time until it succeeds.
    /// `now`:     the clock of the timeout.
    SettingsFile(std::string path, archive::FileCalls &calls, std::chrono::milliseconds timeout,
                 Now now = Clock::now);

    /// Holds the lock until it is destroyed.
    class Lock {
    public:
        Lock(archive::FileCalls &calls, int descriptor) noexcept
            : m_calls(&calls), m_descriptor(descriptor)
        {
        }
        ~Lock();
        Lock(Lock &&other) noexcept;
        Lock &operator=(Lock &&) = delete;
        Lock(const Lock &) = delete;
        Lock &operator=(const Lock &) = delete;

    private:
        archive::FileCalls *m_calls;
        int m_descriptor; ///< −1 after a move
    };

    /// Makes the folder too. An error when the lock cannot be had in time.
    [[nodiscard]] Result<Lock> lock();

    /// What the file holds; nothing when there is no file. When it is damaged (isDamage()), it may
    /// be set aside; after other errors its content may be sound.
    using Content = std::optional<archive::PlistDictionary>;
    [[nodiscard]] Result<Content> read();

    /// Whether the error says that the file holds no settings, and not that it cannot be read.
    [[nodiscard]] static bool isDamage(const archive::ArchiveError &error) noexcept;

    /// Renames the file to a new name beside it and returns that: "NAME.damaged-20240229T235959Z",
    /// with a number added when that is taken. Requires: the lock.
    [[nodiscard]] Result<std::string> setAside();

    /// Replaces the file, all at once. Requires: the lock.
    [[nodiscard]] Result<archive::Done> write(const archive::PlistValue &content);

    [[nodiscard]] const std::string &path() const noexcept { return m_path; }
    /// Of the path, where the lock lies.
    [[nodiscard]] std::string folder() const;
    /// Where the file lies, and temporary files with it: another folder when the path is a link.
    [[nodiscard]] std::string folderOfFile() const;

private:
    [[nodiscard]] std::string linkTarget() const;
    [[nodiscard]] Result<std::vector<std::byte>> bytesOf(int descriptor);
    [[nodiscard]] archive::ArchiveError unreadable(int errorNumber) const;
    [[nodiscard]] archive::ArchiveError unwritable(const std::string &what, int errorNumber) const;

    std::string m_path;
    archive::FileCalls &m_calls;
    std::chrono::milliseconds m_timeout;
    Now m_now;
    bool m_hasTimedOut = false; ///< since the last lock that was taken
};

} // namespace tessaly
