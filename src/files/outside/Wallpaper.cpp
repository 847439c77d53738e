#include "files/outside/Wallpaper.h"

#include "core/OutsideProgram.h"

#include <QUrl>

namespace velunta {

namespace {

constexpr int kSetterTimeLimitMs = 15000;

const QString kXfconf = QStringLiteral("xfconf-query");

WallpaperStep gsettings(const char* schema, const char* key, const QString& value, bool required = true)
{
    return {QStringLiteral("gsettings"),
            {QStringLiteral("set"), QLatin1String(schema), QLatin1String(key), value},
            required};
}

// Xfce keeps one wallpaper per monitor and workspace, named by properties that end in
// "last-image"; all of them take the picture. A desktop that has never set one gets
// the first monitor's.
std::vector<WallpaperStep> xfceSteps(const QByteArray& listing, const QString& path)
{
    std::vector<WallpaperStep> steps;
    for (const QByteArray& line : listing.split('\n')) {
        const QString property = QString::fromUtf8(line.trimmed());
        if (property.startsWith(QLatin1String("/backdrop/")) &&
            property.endsWith(QLatin1String("/last-image")))
            steps.push_back({kXfconf,
                             {QStringLiteral("-c"), QStringLiteral("xfce4-desktop"), QStringLiteral("-p"),
                              property, QStringLiteral("-s"), path}});
    }
    if (steps.empty())
        steps.push_back(
            {kXfconf,
             {QStringLiteral("-c"), QStringLiteral("xfce4-desktop"), QStringLiteral("-p"),
              QStringLiteral("/backdrop/screen0/monitor0/workspace0/last-image"), QStringLiteral("-n"),
              QStringLiteral("-t"), QStringLiteral("string"), QStringLiteral("-s"), path}});
    return steps;
}

bool isXfceListing(const WallpaperStep& step)
{
    return step.program == kXfconf && step.arguments.contains(QStringLiteral("-l"));
}

} // namespace

DesktopKind DetectDesktop(const QString& currentDesktop, const QString& session)
{
    const QStringList names =
        (currentDesktop.isEmpty() ? session : currentDesktop).toLower().split(u':', Qt::SkipEmptyParts);
    const auto has = [&](const char* name) { return names.contains(QLatin1String(name)); };
    // Budgie and Cinnamon also name GNOME, so they are looked for first.
    if (has("x-cinnamon") || has("cinnamon"))
        return DesktopKind::Cinnamon;
    if (has("budgie") || has("budgie-desktop"))
        return DesktopKind::Budgie;
    if (has("mate"))
        return DesktopKind::Mate;
    if (has("kde") || has("plasma") || has("plasmawayland"))
        return DesktopKind::Kde;
    if (has("xfce") || has("xfce4"))
        return DesktopKind::Xfce;
    if (has("lxqt"))
        return DesktopKind::Lxqt;
    if (has("lxde"))
        return DesktopKind::Lxde;
    if (has("gnome") || has("unity") || has("pantheon") || has("gnome-classic") || has("ubuntu"))
        return DesktopKind::Gnome;
    return DesktopKind::Other;
}

DesktopKind RunningDesktop()
{
    return DetectDesktop(qEnvironmentVariable("XDG_CURRENT_DESKTOP"),
                         qEnvironmentVariable("DESKTOP_SESSION"));
}

std::vector<std::vector<WallpaperStep>> WallpaperSetters(DesktopKind desktop, const QString& path)
{
    const QString uri = QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
    switch (desktop) {
    case DesktopKind::Gnome:
    case DesktopKind::Budgie:
        return {{gsettings("org.gnome.desktop.background", "picture-uri", uri),
                 gsettings("org.gnome.desktop.background", "picture-uri-dark", uri, false)}};
    case DesktopKind::Cinnamon:
        return {{gsettings("org.cinnamon.desktop.background", "picture-uri", uri)}};
    case DesktopKind::Mate:
        return {{gsettings("org.mate.background", "picture-filename", path)}};
    case DesktopKind::Kde:
        return {{{QStringLiteral("plasma-apply-wallpaperimage"), {path}}}};
    case DesktopKind::Xfce:
        // A channel that holds nothing yet lists nothing and says so by failing.
        return {{{kXfconf,
                  {QStringLiteral("-c"), QStringLiteral("xfce4-desktop"), QStringLiteral("-l")},
                  false}}};
    case DesktopKind::Lxqt:
        return {{{QStringLiteral("pcmanfm-qt"), {QStringLiteral("--set-wallpaper=") + path}}}};
    case DesktopKind::Lxde:
        return {{{QStringLiteral("pcmanfm"), {QStringLiteral("--set-wallpaper=") + path}}}};
    case DesktopKind::Other:
        break;
    }
    return {{{QStringLiteral("feh"), {QStringLiteral("--bg-fill"), path}}},
            {{QStringLiteral("xwallpaper"), {QStringLiteral("--zoom"), path}}}};
}

QString CommandText(const WallpaperStep& step)
{
    QStringList words{step.program};
    for (const QString& argument : step.arguments)
        words << (argument.contains(u' ') ? u'"' + argument + u'"' : argument);
    return words.join(u' ');
}

WallpaperResult SetDesktopWallpaper(const QString& path, DesktopKind desktop)
{
    WallpaperResult result;
    OutsideOptions options;
    options.timeLimitMs = kSetterTimeLimitMs;
    QStringList tried;
    for (std::vector<WallpaperStep> steps : WallpaperSetters(desktop, path)) {
        bool working = true;
        for (size_t i = 0; i < steps.size() && working; ++i) {
            const WallpaperStep step = steps[i];
            tried << CommandText(step);
            const QString program = FindOutsideProgram(step.program);
            if (program.isEmpty()) {
                result.error = QStringLiteral("%1 is not installed.").arg(step.program);
                working = false;
                break;
            }
            const OutsideRun run = RunOutsideProgram(program, step.arguments, options);
            if (!run.ok() && step.required) {
                result.error = run.firstErrorLine();
                if (result.error.isEmpty())
                    result.error = run.outcome == OutsideRun::TimedOut
                                       ? QStringLiteral("%1 did not answer.").arg(step.program)
                                       : QStringLiteral("%1 failed.").arg(step.program);
                working = false;
            } else if (isXfceListing(step)) {
                const std::vector<WallpaperStep> more = xfceSteps(run.output, path);
                steps.insert(steps.end(), more.begin(), more.end());
            }
        }
        if (working) {
            result.set = true;
            result.error.clear();
            break;
        }
    }
    result.tried = tried.join(u'\n');
    return result;
}

} // namespace velunta
