#include "engine/archive/ArchiveError.hpp"

#include <system_error>
#include <utility>

namespace tessaly::archive {

std::string ArchiveError::text() const
{
    return offset ? "byte " + std::to_string(*offset) + ": " + message : message;
}

ArchiveFailure::ArchiveFailure(ArchiveError error)
    : std::runtime_error(error.message), m_error(std::move(error))
{
}

ArchiveFailure::ArchiveFailure(ArchiveError::Kind kind, std::string message,
                               std::optional<std::uint64_t> offset)
    : ArchiveFailure(ArchiveError{kind, std::move(message), offset})
{
}

ArchiveError systemError(ArchiveError::Kind kind, const std::string &what, int errorNumber)
{
    return {kind, what + ": " + std::system_category().message(errorNumber), std::nullopt};
}

} // namespace tessaly::archive
