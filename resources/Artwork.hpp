#pragma once

#include <QIcon>
#include <QString>

/// What the program shows and carries with it, below ":/tessaly/". Every program that links this
/// library has it, without a call.
///
/// The images come at one and at two pixels a point ("folder.png", "folder@2x.png"). An icon picks
/// the better one by itself.
///
/// Threads: the paths any thread, the icons the main thread.
namespace tessaly {

/// Where an image lies: artworkPath(u"folder.png") is ":/tessaly/folder.png".
[[nodiscard]] QString artworkPath(QStringView fileName);

/// Where an interface file lies: interfacePath(u"KORVENFolderCell") is
/// ":/tessaly/interface/KORVENFolderCell.ui".
[[nodiscard]] QString interfacePath(QStringView name);

/// An icon without an image if there is no such file.
[[nodiscard]] QIcon artworkIcon(QStringView fileName);

/// The program's own icon: the one of the user's icon theme, if it has one, or ours in all sizes. A
/// theme knows it by the name of the desktop file, see QGuiApplication::setDesktopFileName().
[[nodiscard]] QIcon applicationIcon();

} // namespace tessaly
