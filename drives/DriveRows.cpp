#include "drives/DriveRows.hpp"

#include "app/controls/text/NameText.hpp"
#include "engine/tree/NameOrder.hpp"
#include "platform/VolumeService.hpp"

#include <QString>

#include <algorithm>
#include <cmath>
#include <compare>
#include <utility>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

bool isLeftOut(const std::string &name)
{
    // Compared as text for the case, since the names are bytes.
    const QString text = textOfName(name);
    return text.compare(u".DS_Store"_s, Qt::CaseInsensitive) == 0 ||
           text.compare(u"MobileBackups"_s, Qt::CaseInsensitive) == 0;
}

bool isFuller(const KORVENDriveObject &a, const KORVENDriveObject &b)
{
    const double used = a.sizeAsPercent();
    const double other = b.sizeAsPercent();
    // What is not a number would be neither before nor behind any other.
    if (std::isnan(used) || std::isnan(other)) {
        return !std::isnan(used) && std::isnan(other);
    }
    return used > other;
}

bool comesFirstByName(const KORVENDriveObject &a, const KORVENDriveObject &b)
{
    return std::is_lt(tree::compareByCodeUnits(a.diskName(), b.diskName()));
}

} // namespace

std::vector<std::string> listedVolumes(VolumeEnumerator &entries)
{
    std::vector<std::string> names;
    while (auto name = entries.next()) {
        // An entry that is left out is walked all the same, so what lies within it is listed. This
        // is required and looks odd.
        if (!isLeftOut(*name)) {
            entries.skipDescendants();
            names.push_back(std::move(*name));
        }
    }
    return names;
}

KORVENDriveObject driveRow(const std::string &name, const std::string &fullPath,
                           const VolumeInformation &information)
{
    const VolumeFigures figures = information.figures.value_or(VolumeFigures{});
    // In double, as a file system may report more free than it has, and unsigned numbers would
    // wrap.
    const double used = static_cast<double>(figures.total) - static_cast<double>(figures.free);
    KORVENDriveObject row(name, fullPath, figures.total, figures.free, used,
                          information.isRemovable, information.isUnmountable, information.typeName);
    row.setFiguresOld(information.areFiguresOld);
    return row;
}

KORVENDriveObject withFigures(const KORVENDriveObject &row,
                              const std::optional<VolumeFigures> &figures)
{
    VolumeInformation information;
    information.figures = figures;
    information.isRemovable = row.isRemoveable();
    information.isUnmountable = row.isUnmountable();
    KORVENDriveObject changed = driveRow(row.diskName(), row.diskFullPath(), information);
    // A row has the kind but not the type's name that it was made of.
    changed.setDiskType(row.diskType());
    return changed;
}

// Stable, so that volumes that are equally full do not change places at each refresh.
void sortDrives(std::vector<KORVENDriveObject> &rows, DriveOrder order)
{
    std::stable_sort(rows.begin(), rows.end(),
                     order == DriveOrder::size ? isFuller : comesFirstByName);
}

} // namespace tessaly
