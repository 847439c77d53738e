#pragma once
// The desktop's default picture viewer, which "Copy To" hands a picture to: the
// application the file-type store names for BMP pictures (`xdg-mime query default
// image/bmp`), read from its .desktop file.

#include <QString>
#include <QStringList>

namespace velunta {

struct DesktopViewer {
    QString id;   // "org.gnome.eog.desktop"
    QString name; // as the desktop names it, in the user's language when it says
    QString exec; // the Exec line, field codes and all
    QString icon;
    QString desktopFile; // the file it was read from
    bool known() const { return !exec.isEmpty(); }
};

// The .desktop file of an application id in the XDG data folders ($XDG_DATA_HOME, then
// $XDG_DATA_DIRS, each in applications/); a "-" in the id may stand for a subfolder.
// Empty when none.
QString FindDesktopFile(const QString& id);

// The viewer a .desktop file describes; not known when the file is hidden, is no
// application, or its program isn't there.
DesktopViewer ReadDesktopViewer(const QString& desktopFile, const QString& id = QString());

// The viewer xdg-mime named in `queryOutput` (its first line), not known when it names
// none, names Velunta itself, or can't be read.
DesktopViewer ViewerOfQuery(const QByteArray& queryOutput);

// The viewer's Exec line for one file: the program first, then its arguments, with the
// field codes filled in (%f, %F the path; %u, %U its URL; %i, %c, %k as the desktop
// entry rules say); the path is added at the end when the line asks for no file.
QStringList ViewerCommand(const DesktopViewer& viewer, const QString& file);

} // namespace velunta
