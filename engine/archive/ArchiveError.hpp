#pragma once

#include "engine/archive/Result.hpp"

#include <cstdint>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>

namespace tessaly::archive {

/// Why a file could not be read or written: a kind to branch on, and a line for the log that says
/// what is wrong and where. Texts for users are made by the screens.
struct ArchiveError {
    enum class Kind : std::uint8_t {
        unreadable,   ///< the system refused: missing file, permissions, I/O error
        unwritable,   ///< likewise for writing: full disk, read-only folder
        notAnArchive, ///< a file of another kind
        truncated,    ///< the file ends too early, or was truncated while it was read
        damaged,      ///< an archive whose content contradicts itself
        unsupported,  ///< valid as far as known, but of an unknown version, class or type
        outOfMemory,
    };

    Kind kind = Kind::damaged;
    std::string message;
    std::optional<std::uint64_t> offset; ///< the byte of the file that the message is about

    /// The message with its place: "byte 233: the string runs past the end of the objects".
    [[nodiscard]] std::string text() const;
};

/// How an ArchiveError is passed up inside the codec, where every call may fail. It never leaves
/// the functions that read or write a whole file: they return what resultOf() makes of it.
class ArchiveFailure : public std::runtime_error {
public:
    explicit ArchiveFailure(ArchiveError error);
    ArchiveFailure(ArchiveError::Kind kind, std::string message,
                   std::optional<std::uint64_t> offset = std::nullopt);

    [[nodiscard]] const ArchiveError &error() const noexcept { return m_error; }

private:
    ArchiveError m_error;
};

/// What `work` returns, or the error that it throws; `noMemory` is the message of std::bad_alloc.
template <typename Value, typename Work>
[[nodiscard]] Result<Value, ArchiveError> resultOf(const char *noMemory, Work work)
{
    try {
        return work();
    } catch (const ArchiveFailure &failure) {
        return failure.error();
    } catch (const std::bad_alloc &) {
        return ArchiveError{ArchiveError::Kind::outOfMemory, noMemory, {}};
    }
}

/// The error for a system call that failed with `errorNumber`: "cannot open FILE: No such file…".
[[nodiscard]] ArchiveError systemError(ArchiveError::Kind kind, const std::string &what,
                                       int errorNumber);

} // namespace tessaly::archive
