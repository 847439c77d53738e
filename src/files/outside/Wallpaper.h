#pragma once
// The desktop's wallpaper, set by the running desktop's own setter: gsettings for
// GNOME, Budgie, Cinnamon and MATE (each its own schema), plasma-apply-wallpaperimage
// for KDE Plasma, xfconf-query for Xfce, pcmanfm(-qt) for LXDE and LXQt, and feh or
// xwallpaper on any other X11 desktop. The picture file stays where it is: desktops
// read it again later (at the next login, say).

#include <QString>
#include <QStringList>

#include <vector>

namespace velunta {

enum class DesktopKind { Gnome, Budgie, Cinnamon, Mate, Kde, Xfce, Lxqt, Lxde, Other };

// The desktop that runs, from $XDG_CURRENT_DESKTOP (a list such as "ubuntu:GNOME"),
// else $DESKTOP_SESSION.
DesktopKind DetectDesktop(const QString& currentDesktop, const QString& session);
DesktopKind RunningDesktop();

// One command of a setter; a step that isn't required may fail (the dark-style key that
// older GNOME lacks).
struct WallpaperStep {
    QString program;
    QStringList arguments;
    bool required = true;
};

// The ways to try, in order, for a desktop: one for the known desktops, feh then
// xwallpaper for the others. Xfce's setter is found at run time (it names one property
// per monitor and workspace), so its list holds only the listing step.
std::vector<std::vector<WallpaperStep>> WallpaperSetters(DesktopKind desktop, const QString& path);

// A command as a user would type it, for a message.
QString CommandText(const WallpaperStep& step);

struct WallpaperResult {
    bool set = false;
    QString tried; // the commands tried, one a line
    QString error; // what the last one said, or why none could run
};

// Sets the picture at `path` (absolute) as the running desktop's wallpaper.
WallpaperResult SetDesktopWallpaper(const QString& path, DesktopKind desktop);

} // namespace velunta
