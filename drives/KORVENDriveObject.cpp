#include "drives/KORVENDriveObject.hpp"

namespace tessaly {

namespace {

// The kinds are part of the required interface. The usual file systems of Linux are all "other".
KORVENDriveObject::DiskType diskTypeOf(std::string_view typeName)
{
    if (typeName == "hfs") {
        return KORVENDriveObject::hfsType;
    }
    if (typeName == "afpfs") {
        return KORVENDriveObject::afpfsType;
    }
    if (typeName == "msdos") {
        return KORVENDriveObject::msdosType;
    }
    return KORVENDriveObject::otherType;
}

} // namespace

KORVENDriveObject::KORVENDriveObject(std::string_view name, std::string_view fullPath,
                                     std::uint64_t numTotal, std::uint64_t numFree, double numUsed)
    : m_diskName(name), m_diskFullPath(fullPath), m_diskTotal(numTotal), m_diskFree(numFree),
      // The texts are made once here: the table asks for them each time a row comes into sight.
      m_diskUsed(numUsed), m_totalText(buildString(numTotal)), m_freeText(buildString(numFree)),
      m_usedText(buildString(numUsed))
{
}

KORVENDriveObject::KORVENDriveObject(std::string_view name, std::string_view fullPath,
                                     std::uint64_t numTotal, std::uint64_t numFree, double numUsed,
                                     bool isRemovable, bool isUnmountable,
                                     std::string_view typeName)
    : KORVENDriveObject(name, fullPath, numTotal, numFree, numUsed)
{
    setIsRemoveable(isRemovable);
    setIsUnmountable(isUnmountable);
    setDiskType(diskTypeOf(typeName));
}

double KORVENDriveObject::sizeAsPercent() const noexcept
{
    const auto total = static_cast<double>(m_diskTotal);
    // 0 / 0, which is not a number, for a volume that has not answered. sortDrives() and the bars
    // expect that.
    return (total - static_cast<double>(m_diskFree)) / total;
}

// Required interface; nothing in the program reads rows by key.
KORVENDriveObject::Value KORVENDriveObject::valueForKey(std::string_view key) const
{
    if (key == "Disk") {
        return m_diskName;
    }
    if (key == "FullPath") {
        return m_diskFullPath;
    }
    if (key == "SizeTotalAsString") {
        return m_totalText;
    }
    if (key == "SizeFreeAsString") {
        return m_freeText;
    }
    if (key == "SizeTotal") {
        return m_diskTotal;
    }
    if (key == "SizeFree") {
        return m_diskFree;
    }
    if (key == "SizeUsed") {
        return sizeAsPercent();
    }
    if (key == "DiskType") {
        return m_diskType;
    }
    return {};
}

void KORVENDriveObject::setValue(const Value & /*value*/, std::string_view /*key*/) const noexcept
{
}

} // namespace tessaly
