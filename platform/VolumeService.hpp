#pragma once

#include "platform/Interface.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// The space of a file system, in bytes.
struct VolumeFigures {
    std::uint64_t total = 0;
    std::uint64_t free = 0; ///< what the user may still fill

    bool operator==(const VolumeFigures &) const = default;
};

/// What is known about a volume.
struct VolumeInformation {
    /// Nothing when they were never read in time.
    std::optional<VolumeFigures> figures;
    bool isRemovable = false;   ///< the medium can be taken out
    bool isUnmountable = false; ///< the user may unmount it
    std::string typeName; ///< of the file system: "hfs", "afpfs", "msdos", or other; may be empty
    bool areFiguresOld = false; ///< they were read before, and could not be read in time now

    bool operator==(const VolumeInformation &) const = default;
};

/// Walks the entries that stand for volumes, one by one, as they were when it was made.
class VolumeEnumerator : public Interface {
public:
    /// The next entry's name, as bytes: "name", or "parent/child" for what lies within an entry
    /// whose contents were not skipped. "/" is the root file system. Nothing after the last. Reads
    /// folders only then, and only on local disks.
    [[nodiscard]] virtual std::optional<std::string> next() = 0;
    /// Leaves out what lies within the entry that next() gave last.
    virtual void skipDescendants() = 0;
};

/// The mounted volumes that hold a user's data.
///
/// Threads: the main thread, but for unmount().
/// Errors:  none reach the caller; they go to the log.
class VolumeService : public Interface {
public:
    /// Takes one answer for each path that was asked for, in their order.
    using Answer = std::function<void(std::vector<VolumeInformation>)>;
    /// Takes the figures of one path, by its number in the question.
    using LateFigures =
        std::function<void(std::size_t index, const std::optional<VolumeFigures> &figures)>;

    /// The entries as they are now. Does not wait for any file system.
    [[nodiscard]] virtual std::unique_ptr<VolumeEnumerator> enumerator() = 0;

    /// The path of the entry of this name: where it is mounted, but "/Volumes//" for "/". An entry
    /// that is not there (any more) has a path that does not exist.
    [[nodiscard]] virtual std::string pathOf(std::string_view name) const = 0;

    /// Asks the volumes at the paths, all at once, and answers on the main thread once all have
    /// answered, or two seconds later at the latest. A volume that has not answered by then, or has
    /// answered with an error, keeps the figures that it had the last time. Never answers before it
    /// returns.
    ///
    /// Figures that come after that are told to `late`, on the main thread, until something is
    /// asked again.
    virtual void readInformation(std::vector<std::string> paths, Answer answer,
                                 LateFigures late) = 0;

    /// Asks for the volume that is mounted at the path to be unmounted and its medium to be
    /// ejected. Returns at once. The log is told of the outcome, and the refusal listener when the
    /// volume stays.
    virtual void unmountAndEject(std::string_view path) = 0;

    /// Unmounts the volume and waits for the outcome, which is told in the same way. Any thread but
    /// the main thread.
    virtual void unmount(std::string_view path) = 0;

    /// Calls this on the main thread when an unmounting has failed, with the path that was asked
    /// for; never before that request has returned. Replaces the previous listener.
    virtual void setRefusalListener(std::function<void(const std::string &path)> refused) = 0;

    /// Calls this on the main thread after volumes were mounted or unmounted, or when one has got
    /// another name or other flags; changes that come close together are one. Replaces the previous
    /// listener.
    virtual void setChangeListener(std::function<void()> changed) = 0;
};

} // namespace tessaly
