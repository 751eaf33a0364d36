#pragma once

#include <cstdint>
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
        truncated,    ///< the file ends too early, or was cut while it was read
        damaged,      ///< an archive whose content contradicts itself
        unsupported,  ///< sound as far as seen, but of a version, class or type unknown here
        outOfMemory,
    };

    Kind kind = Kind::damaged;
    std::string message;
    std::optional<std::uint64_t> offset; ///< byte of the file that the message speaks of

    /// The message with its place: "byte 233: the string runs past the end of the objects".
    [[nodiscard]] std::string text() const;
};

/// How an ArchiveError travels inside the codec. Functions that read or write a whole file catch it
/// and return the error; it never leaves them.
class ArchiveFailure : public std::runtime_error {
public:
    explicit ArchiveFailure(ArchiveError error);
    ArchiveFailure(ArchiveError::Kind kind, std::string message,
                   std::optional<std::uint64_t> offset = std::nullopt);

    [[nodiscard]] const ArchiveError &error() const noexcept { return m_error; }

private:
    ArchiveError m_error;
};

/// The error for a system call that failed with `errorNumber`: "cannot open FILE: No such file…".
[[nodiscard]] ArchiveError systemError(ArchiveError::Kind kind, const std::string &what,
                                       int errorNumber);

} // namespace tessaly::archive
