#include "resources/Artwork.hpp"

#include <QGuiApplication>

namespace tessaly {

using namespace Qt::StringLiterals;

QString artworkPath(QStringView fileName)
{
    return u":/tessaly/%1"_s.arg(fileName);
}

QString interfacePath(QStringView name)
{
    return u":/tessaly/interface/%1.ui"_s.arg(name);
}

QIcon artworkIcon(QStringView fileName)
{
    QIcon icon(artworkPath(fileName));
    // Qt adds the larger one itself only where a large screen is there already.
    QString larger = fileName.toString();
    larger.replace(u".png"_s, u"@2x.png"_s);
    icon.addFile(artworkPath(larger));
    return icon;
}

QIcon applicationIcon()
{
    QIcon ours;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        ours.addFile(u":/tessaly/icons/hicolor/%1x%1/apps/tessaly.png"_s.arg(size),
                     QSize(size, size));
    }
    return QIcon::fromTheme(QGuiApplication::desktopFileName(), ours);
}

} // namespace tessaly
