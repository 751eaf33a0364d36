#pragma once

#include "app/controls/tables/KORVENDiskObject.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

namespace tessaly {

/// One row of a scan's result: a folder or a file at the level that is shown. A row never changes;
/// there may be a million of them, so it holds no more than it must.
///
/// Names:   bytes, as in the scan tree.
/// Units:   sizes are bytes; for a folder the total of its tree.
/// Threads: made and read by one thread at a time.
class KORVENFolderObject final : public KORVENDiskObject {
public:
    /// What valueForKey() answers: nothing, a name, a size text or a size.
    using Value = std::variant<std::monostate, std::string_view, std::string, std::uint64_t>;

    /// Copies what it is given. The screens give the name as the path, too.
    KORVENFolderObject(std::string_view name, std::string_view fullPath, std::uint64_t size,
                       bool isDirectory);

    [[nodiscard]] bool folderIsDirectory() const noexcept { return m_isDirectory; }
    [[nodiscard]] std::string_view folderName() const noexcept { return m_name; }
    [[nodiscard]] std::string folderSizeAsString() const { return buildString(m_size); }
    [[nodiscard]] std::uint64_t folderSizeAsNumber() const noexcept { return m_size; }
    [[nodiscard]] std::string_view folderFullPath() const noexcept
    {
        return m_otherPath ? *m_otherPath : m_name;
    }

    /// The row's share of a total, as a fraction and not rounded: 0.25 is a quarter. Infinite or
    /// not a number when the total is 0.
    [[nodiscard]] double sizeAsPercent(double total) const noexcept;

    /// The values to sort by and to show: "Folder" is the name, "Size" the size text, "SizeNumber"
    /// and "SizeLevel" the size. Any other key has none. A name is valid as long as the row.
    [[nodiscard]] Value valueForKey(std::string_view key) const;
    /// Does nothing: rows are read-only.
    void setValue(const Value &value, std::string_view key) const noexcept;

private:
    std::string m_name;
    std::unique_ptr<const std::string> m_otherPath; ///< nullptr: the name is the path
    std::uint64_t m_size;
    bool m_isDirectory;
};

} // namespace tessaly
