#pragma once

#include "engine/archive/KeyedArchiveReader.hpp"
#include "engine/archive/KeyedArchiveWriter.hpp"
#include "engine/archive/Timestamp.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tessaly {

/// The record of one completed folder scan: which folder, how much it held, when, and the key under
/// which its tree is kept. The key names the scan's file and the folder's bookmark in the settings.
///
/// A record that was read from a damaged or foreign history file may lack any of its values.
///
/// Texts:   UTF-8, but for the path: it is the bytes of a path, which may be no text at all.
/// Threads: one at a time for a record that changes; a const one, any.
class KORVENHistoryItem {
public:
    /// What valueForKey() answers: nothing, a text or a moment.
    using Value = std::variant<std::monostate, std::string, archive::Timestamp>;

    /// The name of the class in archives.
    static constexpr std::string_view className = "KORVENHistoryItem";

    /// A new random UUID: 32 upper-case hexadecimal digits in groups of 8-4-4-4-12.
    [[nodiscard]] static std::string UUIDString();

    /// The record of a scan that has ended now, with a new key.
    KORVENHistoryItem(std::string scanPath, std::string scanTotal);

    /// Reads a record from an archive; a value that is missing there is empty.
    /// Errors: ArchiveFailure when the object is no record, or a value of another type.
    KORVENHistoryItem(const archive::KeyedArchiveReader &archive,
                      archive::KeyedArchiveReader::Uid object);

    /// Writes the values that there are, in the order path, total, key, date.
    /// `place`: reserved in the archive for this record.
    void encodeWithCoder(archive::KeyedArchiveWriter &archive,
                         archive::KeyedArchiveWriter::Uid place) const;

    /// Absolute path of the scanned folder, as bytes.
    [[nodiscard]] const std::optional<std::string> &scanPath() const noexcept { return m_scanPath; }
    void setScanPath(std::optional<std::string> path) { m_scanPath = std::move(path); }
    /// The total as it was shown: a size text.
    [[nodiscard]] const std::optional<std::string> &scanTotal() const noexcept
    {
        return m_scanTotal;
    }
    void setScanTotal(std::optional<std::string> total) { m_scanTotal = std::move(total); }
    /// The key. It is never changed once the record is in a history.
    [[nodiscard]] const std::optional<std::string> &scanKey() const noexcept { return m_scanKey; }
    void setScanKey(std::optional<std::string> key) { m_scanKey = std::move(key); }
    [[nodiscard]] std::optional<archive::Timestamp> scanDate() const noexcept { return m_scanDate; }
    void setScanDate(std::optional<archive::Timestamp> date) noexcept { m_scanDate = date; }

    /// The path of the file with this scan's tree: the key and ".archive", in the application's
    /// folder; "(null).archive" for a record without a key.
    ///
    /// Nothing when the key, which a damaged history may hold, would lead out of that folder, or to
    /// another one of the application's own files, or is no file name.
    [[nodiscard]] std::optional<std::string> scanFilePath() const;

    /// The values to sort by: "scanPath" and "scanDate". Any other key has none.
    [[nodiscard]] Value valueForKey(std::string_view key) const;

    /// Four lines, each after a line break, with path, total, key and date. Diagnostic.
    [[nodiscard]] std::string description() const;

private:
    std::optional<std::string> m_scanPath;
    std::optional<std::string> m_scanTotal;
    std::optional<std::string> m_scanKey;
    std::optional<archive::Timestamp> m_scanDate;
};

} // namespace tessaly
