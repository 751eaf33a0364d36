#pragma once

#include "drives/KORVENDriveObject.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

class VolumeEnumerator;
struct VolumeFigures;
struct VolumeInformation;

enum class DriveOrder : std::uint8_t {
    size, ///< the fullest first, by the used fraction; those that have none last
    name, ///< by code unit, upper case first
};

/// The names of the entries that are listed as volumes. Two are not, ".DS_Store" and
/// "MobileBackups" in upper or lower case; what lies within such an entry is listed, and what lies
/// within any other is not.
[[nodiscard]] std::vector<std::string> listedVolumes(VolumeEnumerator &entries);

/// The row of a volume. One without figures counts as having no space at all.
[[nodiscard]] KORVENDriveObject driveRow(const std::string &name, const std::string &fullPath,
                                         const VolumeInformation &information);

/// The same row with the figures that its volume has now; as driveRow() has them when it has none.
[[nodiscard]] KORVENDriveObject withFigures(const KORVENDriveObject &row,
                                            const std::optional<VolumeFigures> &figures);

/// Rows that compare equal keep their order.
void sortDrives(std::vector<KORVENDriveObject> &rows, DriveOrder order);

} // namespace tessaly
