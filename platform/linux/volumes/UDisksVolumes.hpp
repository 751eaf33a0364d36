#pragma once

#include <QDBusObjectPath>
#include <QMap>
#include <QString>
#include <QVariantMap>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// The objects of a service with their interfaces and the properties of those.
using BusObjects = QMap<QDBusObjectPath, QMap<QString, QVariantMap>>;

/// What UDisks2 says of a device with a file system.
struct UDisksVolume {
    std::vector<std::string> mountPoints;
    std::uint64_t device = 0;   ///< its number
    std::string label;          ///< empty for none
    bool isRemovable = false;   ///< drive or medium can be taken away
    bool isUnmountable = false; ///< it is none of the system's own
    QString path;               ///< the device's object
    QString encrypted;          ///< the object of the encrypted device that it is in; or empty
    QString removableDrive;     ///< the object of its drive, if it is removable; or empty

    bool operator==(const UDisksVolume &) const = default;
};

/// The devices with file systems that UDisks2 knows at one moment.
class UDisksVolumes {
public:
    /// Knows none.
    UDisksVolumes() = default;

    /// Those among the service's objects.
    explicit UDisksVolumes(const BusObjects &objects);

    /// The one that is mounted there, else the one that has the number; nullptr for none.
    [[nodiscard]] const UDisksVolume *find(std::string_view mountPoint, std::uint64_t device) const;

    bool operator==(const UDisksVolumes &) const = default;

private:
    std::vector<UDisksVolume> m_volumes;
};

} // namespace tessaly
