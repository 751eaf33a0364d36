#include "tests/platform/linux/volumes/UDisksObjects.hpp"

#include <QByteArrayList>

namespace tessaly {

namespace {

QVariant pathProperty(const std::string &name, QString (*pathOf)(const std::string &))
{
    return QVariant::fromValue(QDBusObjectPath(name.empty() ? QStringLiteral("/") : pathOf(name)));
}

QVariantMap blockProperties(const UDisksObjects::Device &device)
{
    return {{QStringLiteral("DeviceNumber"), static_cast<qulonglong>(device.number)},
            {QStringLiteral("IdLabel"), QString::fromStdString(device.label)},
            {QStringLiteral("HintSystem"), device.isSystem},
            {QStringLiteral("Drive"), pathProperty(device.drive, UDisksObjects::drivePath)},
            {QStringLiteral("CryptoBackingDevice"),
             pathProperty(device.encryptedIn, UDisksObjects::devicePath)}};
}

} // namespace

void UDisksObjects::addDevice(const Device &device)
{
    QByteArrayList mountPoints;
    for (const std::string &path : device.mountPoints) {
        mountPoints.append(QByteArray(path.data(), static_cast<qsizetype>(path.size())) + '\0');
    }
    auto &object = m_objects[QDBusObjectPath(devicePath(device.name))];
    object[QStringLiteral("org.freedesktop.UDisks2.Block")] = blockProperties(device);
    object[QStringLiteral("org.freedesktop.UDisks2.Filesystem")] = {
        {QStringLiteral("MountPoints"), QVariant::fromValue(mountPoints)}};
}

void UDisksObjects::addEncryptedDevice(const std::string &name, const std::string &drive)
{
    Device device;
    device.name = name;
    device.drive = drive;
    auto &object = m_objects[QDBusObjectPath(devicePath(name))];
    object[QStringLiteral("org.freedesktop.UDisks2.Block")] = blockProperties(device);
    object[QStringLiteral("org.freedesktop.UDisks2.Encrypted")] = {};
}

void UDisksObjects::addDrive(const Drive &drive)
{
    m_objects[QDBusObjectPath(drivePath(drive.name))][QStringLiteral(
        "org.freedesktop.UDisks2.Drive")] = {{QStringLiteral("Removable"), drive.isRemovable},
                                             {QStringLiteral("Ejectable"), drive.isEjectable}};
}

QString UDisksObjects::devicePath(const std::string &name)
{
    return QStringLiteral("/org/freedesktop/UDisks2/block_devices/") + QString::fromStdString(name);
}

QString UDisksObjects::drivePath(const std::string &name)
{
    return QStringLiteral("/org/freedesktop/UDisks2/drives/") + QString::fromStdString(name);
}

} // namespace tessaly
