#pragma once

#include "engine/archive/Result.hpp"

#include <QDateTime>
#include <QFile>

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace tessaly {

/// What stat() knows about a file.
struct PreviewFileStatus {
    enum class Kind : std::uint8_t { regular, folder, pipe, socket, device, missing, unknown };

    Kind kind = Kind::unknown;
    std::uint64_t byteCount = 0;
    QDateTime modified; ///< invalid when not known; so is the next
    QDateTime created;

    /// Follows links. Paths are bytes.
    [[nodiscard]] static PreviewFileStatus of(const std::string &path);
};

/// A regular file that is open for reading, and whose reads fail once a stop is requested: that
/// ends a decoder whose result is no longer needed.
///
/// Opening does not block: pipes and devices are not opened at all.
///
/// Threads: one at a time.
class PreviewFile final : public QFile {
public:
    enum class Error : std::uint8_t { missing, forbidden, notRegular, failed };

    /// Opens the file at `path` (bytes), following links.
    [[nodiscard]] static archive::Result<std::unique_ptr<PreviewFile>, Error>
    openPath(const std::string &path, std::stop_token stop = {});

    [[nodiscard]] bool isStopped() const { return m_stop.stop_requested(); }

protected:
    qint64 readData(char *data, qint64 byteCount) override;

private:
    explicit PreviewFile(std::stop_token stop);

    std::stop_token m_stop;
};

} // namespace tessaly
