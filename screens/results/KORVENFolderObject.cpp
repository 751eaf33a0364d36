#include "screens/results/KORVENFolderObject.hpp"

namespace tessaly {

KORVENFolderObject::KORVENFolderObject(std::string_view name, std::string_view fullPath,
                                       std::uint64_t size, bool isDirectory)
    : m_name(name),
      m_otherPath(fullPath == name ? nullptr : std::make_unique<const std::string>(fullPath)),
      m_size(size), m_isDirectory(isDirectory)
{
}

double KORVENFolderObject::sizeAsPercent(double total) const noexcept
{
    return static_cast<double>(m_size) / total;
}

KORVENFolderObject::Value KORVENFolderObject::valueForKey(std::string_view key) const
{
    if (key == "Folder") {
        return folderName();
    }
    if (key == "Size") {
        return folderSizeAsString();
    }
    if (key == "SizeNumber" || key == "SizeLevel") {
        return m_size;
    }
    return {};
}

void KORVENFolderObject::setValue(const Value & /*value*/, std::string_view /*key*/) const noexcept
{
}

} // namespace tessaly
