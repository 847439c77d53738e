#include "core/AppFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace velunta {

namespace {

QString withSlash(QString path)
{
    if (!path.endsWith(u'/'))
        path += u'/';
    return path;
}

bool isWritableFolder(const QString& path)
{
    const QFileInfo info(path);
    if (!info.isDir() || !info.isWritable())
        return false;
    QFile probe(path + QStringLiteral("/.velunta-write-test"));
    if (!probe.open(QIODevice::WriteOnly))
        return false;
    probe.close();
    probe.remove();
    return true;
}

} // namespace

void CopyMissingDataFiles(const QString& from, const QString& to)
{
    if (from.isEmpty() || QDir(from) == QDir(to))
        return;
    // Beside the program the data files are listed in velunta-data.txt, so that the
    // program and its build files are never taken for data. A plain data folder is
    // copied whole.
    QStringList relatives;
    QFile manifest(QDir(from).filePath(QStringLiteral("velunta-data.txt")));
    if (manifest.open(QIODevice::ReadOnly | QIODevice::Text)) {
        while (!manifest.atEnd()) {
            const QString line = QString::fromUtf8(manifest.readLine()).trimmed();
            if (!line.isEmpty() && !line.contains(QStringLiteral("..")))
                relatives << line;
        }
    } else {
        QDirIterator it(from, QDir::Files | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (it.hasNext())
            relatives << QDir(from).relativeFilePath(it.next());
    }
    for (const QString& relative : relatives) {
        const QString source = QDir(from).filePath(relative);
        const QString target = QDir(to).filePath(relative);
        if (QFileInfo::exists(target) || !QFileInfo::exists(source))
            continue;
        QDir().mkpath(QFileInfo(target).absolutePath());
        QFile::copy(source, target);
    }
}

QString ResolveAppFolder(const QString& programFolder)
{
    QString folder;
    const QString home = qEnvironmentVariable("VELUNTA_HOME");
    if (!home.isEmpty()) {
        QDir().mkpath(home);
        folder = withSlash(QDir(home).absolutePath());
    } else if (isWritableFolder(programFolder)) {
        folder = withSlash(QDir(programFolder).absolutePath());
    } else {
        const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        folder = withSlash(data + QStringLiteral("/Zolvane/Velunta"));
        QDir().mkpath(folder);
    }
    // A relocated folder gets the shipped data files it lacks. VELUNTA_DATA names the
    // source tree's data folder when the program runs from a build or a test.
    QString shipped = qEnvironmentVariable("VELUNTA_DATA");
    if (shipped.isEmpty())
        shipped = programFolder;
    if (QDir(shipped).exists() && QDir(shipped) != QDir(folder) &&
        (!qEnvironmentVariable("VELUNTA_DATA").isEmpty() ||
         QFileInfo::exists(QDir(shipped).filePath(QStringLiteral("velunta-data.txt")))))
        CopyMissingDataFiles(shipped, folder);
    QDir().mkpath(folder + QStringLiteral("temp"));
    return folder;
}

} // namespace velunta
