#include "platform/linux/volumes/UDisksVolumes.hpp"

#include <QByteArrayList>
#include <QDBusArgument>

#include <algorithm>

namespace tessaly {

namespace {

using Interfaces = QMap<QString, QVariantMap>;

const QString blockInterface = QStringLiteral("org.freedesktop.UDisks2.Block");
const QString driveInterface = QStringLiteral("org.freedesktop.UDisks2.Drive");
const QString fileSystemInterface = QStringLiteral("org.freedesktop.UDisks2.Filesystem");

/// Where an object has a path to another one and there is none.
constexpr auto noObject = "/";

/// Lists of paths: bytes, ended by NUL.
std::vector<std::string> pathsIn(const QVariant &property)
{
    // Qt leaves lists inside of variants packed when they come from the bus.
    const auto list = property.userType() == qMetaTypeId<QDBusArgument>()
                          ? qdbus_cast<QByteArrayList>(property.value<QDBusArgument>())
                          : property.value<QByteArrayList>();
    std::vector<std::string> paths;
    for (const QByteArray &path : list) {
        paths.emplace_back(path.constData());
    }
    return paths;
}

/// An empty path when there is none.
QDBusObjectPath objectIn(const QVariant &property)
{
    auto path = property.value<QDBusObjectPath>();
    return path.path() == QLatin1String(noObject) ? QDBusObjectPath() : path;
}

} // namespace

UDisksVolumes::UDisksVolumes(const BusObjects &objects)
{
    for (auto object = objects.begin(); object != objects.end(); ++object) {
        if (!object->contains(blockInterface) || !object->contains(fileSystemInterface)) {
            continue;
        }
        const QVariantMap block = object->value(blockInterface);
        const auto valueOf = [](const QVariantMap &properties, const char *name) {
            return properties.value(QLatin1String(name));
        };
        UDisksVolume volume;
        volume.mountPoints = pathsIn(valueOf(object->value(fileSystemInterface), "MountPoints"));
        volume.device = valueOf(block, "DeviceNumber").toULongLong();
        volume.label = valueOf(block, "IdLabel").toString().toStdString();
        volume.isUnmountable = !valueOf(block, "HintSystem").toBool();
        volume.path = object.key().path();

        // What is encrypted has no drive, but the device that it is in has one.
        const QDBusObjectPath encrypted = objectIn(valueOf(block, "CryptoBackingDevice"));
        volume.encrypted = encrypted.path();
        const QVariantMap outermost =
            encrypted.path().isEmpty() ? block : objects.value(encrypted).value(blockInterface);
        const QDBusObjectPath drivePath = objectIn(valueOf(outermost, "Drive"));
        const QVariantMap drive = objects.value(drivePath).value(driveInterface);
        // Card readers are not removable, but their cards are: "Ejectable" or "Removable" will do.
        volume.isRemovable =
            valueOf(drive, "Removable").toBool() || valueOf(drive, "Ejectable").toBool();
        volume.removableDrive = volume.isRemovable ? drivePath.path() : QString();
        m_volumes.push_back(std::move(volume));
    }
}

const UDisksVolume *UDisksVolumes::find(std::string_view mountPoint, std::uint64_t device) const
{
    const auto firstWith = [this](const auto &condition) {
        const auto found = std::find_if(m_volumes.begin(), m_volumes.end(), condition);
        return found == m_volumes.end() ? nullptr : &*found;
    };
    const UDisksVolume *there = firstWith([&](const UDisksVolume &volume) {
        const auto &paths = volume.mountPoints;
        return std::find(paths.begin(), paths.end(), mountPoint) != paths.end();
    });
    return there != nullptr ? there : firstWith([&](const UDisksVolume &volume) {
        return device != 0 && volume.device == device;
    });
}

} // namespace tessaly
