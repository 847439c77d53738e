#include "files/outside/DesktopViewer.h"

#include "core/OutsideProgram.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLocale>
#include <QUrl>

namespace velunta {

namespace {

// Velunta registers itself for pictures; handing a picture to itself is no hand-over.
const char* const kOwnDesktopId = "com.zolvane.Velunta.desktop";

QStringList applicationFolders()
{
    QStringList folders;
    QString home = qEnvironmentVariable("XDG_DATA_HOME");
    if (home.isEmpty())
        home = QDir::homePath() + QStringLiteral("/.local/share");
    folders << home;
    QString dirs = qEnvironmentVariable("XDG_DATA_DIRS");
    if (dirs.isEmpty())
        dirs = QStringLiteral("/usr/local/share:/usr/share");
    for (const QString& dir : dirs.split(u':', Qt::SkipEmptyParts))
        folders << dir;
    for (QString& folder : folders)
        folder += QStringLiteral("/applications/");
    return folders;
}

// The keys of the [Desktop Entry] group, values unescaped (\s \n \t \r \\).
QHash<QString, QString> desktopEntry(const QString& path)
{
    QHash<QString, QString> keys;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text) || file.size() > (1 << 20))
        return keys;
    bool inEntry = false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[')) {
            inEntry = line == QLatin1String("[Desktop Entry]");
            continue;
        }
        const qsizetype eq = line.indexOf(u'=');
        if (!inEntry || eq <= 0)
            continue;
        const QString key = line.left(eq).trimmed();
        const QString raw = line.mid(eq + 1).trimmed();
        QString value;
        for (qsizetype i = 0; i < raw.size(); ++i) {
            if (raw[i] == u'\\' && i + 1 < raw.size()) {
                const QChar c = raw[++i];
                value += c == u's'   ? QChar(u' ')
                         : c == u'n' ? QChar(u'\n')
                         : c == u't' ? QChar(u'\t')
                         : c == u'r' ? QChar(u'\r')
                                     : c;
            } else {
                value += raw[i];
            }
        }
        if (!keys.contains(key))
            keys.insert(key, value);
    }
    return keys;
}

QString localized(const QHash<QString, QString>& keys, const QString& key)
{
    const QString locale = QLocale().name(); // "de_DE"
    for (const QString& tag : {locale, locale.section(u'_', 0, 0)}) {
        const QString value = keys.value(key + u'[' + tag + u']');
        if (!value.isEmpty())
            return value;
    }
    return keys.value(key);
}

// The Exec line split into words: blanks separate, double quotes group, and inside them
// a backslash keeps the next of " ` $ \ as it is.
QStringList execWords(const QString& exec)
{
    QStringList words;
    QString word;
    bool quoted = false;
    bool inWord = false;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        const QChar c = exec[i];
        if (quoted) {
            if (c == u'\\' && i + 1 < exec.size() && QStringLiteral("\"`$\\").contains(exec[i + 1]))
                word += exec[++i];
            else if (c == u'"')
                quoted = false;
            else
                word += c;
        } else if (c.isSpace()) {
            if (inWord)
                words << word;
            word.clear();
            inWord = false;
        } else {
            inWord = true;
            if (c == u'"')
                quoted = true;
            else
                word += c;
        }
    }
    if (inWord)
        words << word;
    return words;
}

} // namespace

QString FindDesktopFile(const QString& id)
{
    if (id.isEmpty() || id.contains(u'/'))
        return {};
    for (const QString& folder : applicationFolders()) {
        if (QFileInfo::exists(folder + id))
            return folder + id;
        // "kde4-viewer.desktop" may live in kde4/viewer.desktop.
        QString relative = id;
        for (qsizetype dash = relative.indexOf(u'-'); dash > 0; dash = relative.indexOf(u'-', dash + 1)) {
            relative[dash] = u'/';
            if (QFileInfo::exists(folder + relative))
                return folder + relative;
        }
    }
    return {};
}

DesktopViewer ReadDesktopViewer(const QString& desktopFile, const QString& id)
{
    const QHash<QString, QString> keys = desktopEntry(desktopFile);
    DesktopViewer viewer;
    if (keys.value(QStringLiteral("Type"), QStringLiteral("Application")) != QLatin1String("Application") ||
        keys.value(QStringLiteral("Hidden")) == QLatin1String("true"))
        return viewer;
    const QString tryExec = keys.value(QStringLiteral("TryExec"));
    if (!tryExec.isEmpty() && FindOutsideProgram(tryExec).isEmpty())
        return viewer;
    const QStringList words = execWords(keys.value(QStringLiteral("Exec")));
    if (words.isEmpty() || FindOutsideProgram(words.first()).isEmpty())
        return viewer;
    viewer.id = id.isEmpty() ? QFileInfo(desktopFile).fileName() : id;
    viewer.name = localized(keys, QStringLiteral("Name"));
    if (viewer.name.isEmpty())
        viewer.name = QFileInfo(words.first()).fileName();
    viewer.exec = keys.value(QStringLiteral("Exec"));
    viewer.icon = keys.value(QStringLiteral("Icon"));
    viewer.desktopFile = desktopFile;
    return viewer;
}

DesktopViewer ViewerOfQuery(const QByteArray& queryOutput)
{
    const QString id = QString::fromUtf8(queryOutput.split('\n').value(0)).trimmed();
    if (!id.endsWith(QLatin1String(".desktop")) || id == QLatin1String(kOwnDesktopId))
        return {};
    const QString file = FindDesktopFile(id);
    return file.isEmpty() ? DesktopViewer() : ReadDesktopViewer(file, id);
}

QStringList ViewerCommand(const DesktopViewer& viewer, const QString& file)
{
    const QString url = QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded);
    QStringList command;
    bool fileGiven = false;
    for (const QString& word : execWords(viewer.exec)) {
        if (word == QLatin1String("%i")) {
            if (!viewer.icon.isEmpty())
                command << QStringLiteral("--icon") << viewer.icon;
            continue;
        }
        QString out;
        bool dropped = false;
        for (qsizetype i = 0; i < word.size(); ++i) {
            if (word[i] != u'%' || i + 1 == word.size()) {
                out += word[i];
                continue;
            }
            const QChar code = word[++i];
            if (code == u'f' || code == u'F') {
                out += file;
                fileGiven = true;
            } else if (code == u'u' || code == u'U') {
                out += url;
                fileGiven = true;
            } else if (code == u'c') {
                out += viewer.name;
            } else if (code == u'k') {
                out += viewer.desktopFile;
            } else if (code == u'%') {
                out += u'%';
            } else if (word.size() == 2) {
                dropped = true; // an old code (%d, %n, %m...) that stands for nothing now
            }
        }
        if (!dropped)
            command << out;
    }
    if (!fileGiven && !command.isEmpty())
        command << file;
    return command;
}

} // namespace velunta
