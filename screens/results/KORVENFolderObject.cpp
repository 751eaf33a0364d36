#include "screens/results/KORVENFolderObject.hpp"

namespace tessaly {

KORVENFolderObject::KORVENFolderObject(std::string_view name, std::string_view fullPath,
                                       std::uint64_t size, bool isDirectory)
    : m_name(name),
      // The screens give the name as the path. Storing it once keeps a row small where there are a
      // million rows.
      m_otherPath(fullPath == name ? nullptr : std::make_unique<const std::string>(fullPath)),
      m_size(size), m_isDirectory(isDirectory)
{
}

double KORVENFolderObject::sizeAsPercent(double total) const noexcept
{
    // Not guarded against 0: bars and tooltips show what comes out, which is not a number for an
    // empty level.
    return static_cast<double>(m_size) / total;
}

// Required interface. The program itself sorts by the members, without comparing keys for each row.
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
