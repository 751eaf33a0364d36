#pragma once

#include "app/controls/tables/KORVENDiskObject.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace tessaly {

/// One row of the drives screen: a mounted volume.
///
/// Names:   bytes, as the system gives them.
/// Units:   figures are bytes; those of a volume that cannot be read are 0. The texts are made of
///          them once, when the row is made.
/// Threads: made, changed and read by one thread at a time.
class KORVENDriveObject final : public KORVENDiskObject {
public:
    /// What valueForKey() answers: nothing, a text, a number of bytes, a fraction or a kind.
    using Value =
        std::variant<std::monostate, std::string_view, std::uint64_t, double, std::int32_t>;

    /// The kinds of file system, by the type's name.
    enum DiskType : std::int32_t { hfsType = 0, afpfsType = 1, msdosType = 2, otherType = 3 };

    /// Of neither a removable nor an unmountable volume, of the kind 0.
    KORVENDriveObject(std::string_view name, std::string_view fullPath, std::uint64_t numTotal,
                      std::uint64_t numFree, double numUsed);
    /// `typeName`: the file system's type, spelled exactly as the kinds are; any other text is the
    /// kind of all other file systems.
    KORVENDriveObject(std::string_view name, std::string_view fullPath, std::uint64_t numTotal,
                      std::uint64_t numFree, double numUsed, bool isRemovable, bool isUnmountable,
                      std::string_view typeName);

    // Required interface: that each figure and text can be set and read by itself.

    [[nodiscard]] const std::string &diskName() const noexcept { return m_diskName; }
    void setDiskName(std::string name) { m_diskName = std::move(name); }
    [[nodiscard]] const std::string &diskFullPath() const noexcept { return m_diskFullPath; }
    void setDiskFullPath(std::string path) { m_diskFullPath = std::move(path); }

    [[nodiscard]] std::uint64_t diskTotal() const noexcept { return m_diskTotal; }
    void setDiskTotal(std::uint64_t byteCount) noexcept { m_diskTotal = byteCount; }
    [[nodiscard]] std::uint64_t diskFree() const noexcept { return m_diskFree; }
    void setDiskFree(std::uint64_t byteCount) noexcept { m_diskFree = byteCount; }
    /// As it was given; below 0 for a file system that says it has more free than it has.
    [[nodiscard]] double diskUsed() const noexcept { return m_diskUsed; }
    void setDiskUsed(double byteCount) noexcept { m_diskUsed = byteCount; }

    // Not updated when a figure is set.
    [[nodiscard]] const std::string &diskTotalAsString() const noexcept { return m_totalText; }
    void setDiskTotalAsString(std::string text) { m_totalText = std::move(text); }
    [[nodiscard]] const std::string &diskFreeAsString() const noexcept { return m_freeText; }
    void setDiskFreeAsString(std::string text) { m_freeText = std::move(text); }
    [[nodiscard]] const std::string &diskUsedAsString() const noexcept { return m_usedText; }
    void setDiskUsedAsString(std::string text) { m_usedText = std::move(text); }

    [[nodiscard]] bool isRemoveable() const noexcept { return m_isRemoveable; }
    void setIsRemoveable(bool isRemoveable) noexcept { m_isRemoveable = isRemoveable; }
    [[nodiscard]] bool isUnmountable() const noexcept { return m_isUnmountable; }
    void setIsUnmountable(bool isUnmountable) noexcept { m_isUnmountable = isUnmountable; }
    [[nodiscard]] std::int32_t diskType() const noexcept { return m_diskType; }
    void setDiskType(std::int32_t type) noexcept { m_diskType = type; }

    /// The figures were read before: the volume has not answered in time since.
    [[nodiscard]] bool areFiguresOld() const noexcept { return m_areFiguresOld; }
    void setFiguresOld(bool areOld) noexcept { m_areFiguresOld = areOld; }

    /// The used part of the volume as a fraction, 0 to 1, from total and free alone. Not a number
    /// when the total is 0.
    [[nodiscard]] double sizeAsPercent() const noexcept;

    /// The values to sort by and to show. "SizeUsed" is sizeAsPercent(). A key that is not known
    /// has none. A text is valid as long as the row and unchanged.
    [[nodiscard]] Value valueForKey(std::string_view key) const;
    /// Does nothing: rows are read-only to keys.
    void setValue(const Value &value, std::string_view key) const noexcept;

private:
    std::string m_diskName;
    std::string m_diskFullPath;
    std::uint64_t m_diskTotal;
    std::uint64_t m_diskFree;
    double m_diskUsed;
    std::string m_totalText;
    std::string m_freeText;
    std::string m_usedText;
    bool m_isRemoveable = false;
    bool m_isUnmountable = false;
    std::int32_t m_diskType = hfsType;
    bool m_areFiguresOld = false;
};

} // namespace tessaly
