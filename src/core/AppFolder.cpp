#include "core/AppFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

// The build gives the paths of an install relative to its bin/ folder.
#ifndef VELUNTA_BIN_TO_DATA
#define VELUNTA_BIN_TO_DATA "../share/velunta"
#endif
#ifndef VELUNTA_BIN_TO_LIBEXEC
#define VELUNTA_BIN_TO_LIBEXEC "../libexec/velunta"
#endif

namespace velunta {

namespace {

const QString kDataList = QStringLiteral("velunta-data.txt");

QString withSlash(QString path)
{
    if (!path.endsWith(u'/'))
        path += u'/';
    return path;
}

QString folderBelow(const QString& folder, const char* relative)
{
    return withSlash(QDir::cleanPath(folder + QLatin1String(relative)));
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

QString perUserDataFolder()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return withSlash(data + QStringLiteral("/Zolvane/Velunta"));
}

QString stateHome()
{
    // Qt 6.4 has no name for it yet; the XDG rule: a relative value is ignored.
    const QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (QDir::isAbsolutePath(state))
        return state;
    return QDir::homePath() + QStringLiteral("/.local/state");
}

bool isExecutableFile(const QString& path)
{
    const QFileInfo info(path);
    return info.isFile() && info.isExecutable();
}

} // namespace

ProgramLayout LayoutOf(const QString& programFolder)
{
    ProgramLayout layout;
    layout.programFolder = withSlash(QDir(programFolder).absolutePath());
    const QString& folder = layout.programFolder;
    const QString installedData = folderBelow(folder, VELUNTA_BIN_TO_DATA);
    if (!QFileInfo::exists(folder + kDataList) && QFileInfo::exists(installedData + kDataList)) {
        layout.installed = true;
        layout.data = installedData;
        layout.companions = folderBelow(folder, VELUNTA_BIN_TO_LIBEXEC);
        layout.effects = layout.companions + QStringLiteral("effects/");
        layout.translations = installedData + QStringLiteral("translations/");
        return layout;
    }
    if (QFileInfo::exists(folder + kDataList))
        layout.data = folder;
    layout.companions = folder;
    layout.effects = folder + QStringLiteral("effects/");
    layout.translations = folder + QStringLiteral("translations/");
    return layout;
}

void CopyMissingDataFiles(const QString& from, const QString& to)
{
    if (from.isEmpty() || QDir(from) == QDir(to))
        return;
    // Beside the program the data files are listed in velunta-data.txt, so that the
    // program and its build files are never taken for data. A plain data folder is
    // copied whole.
    QStringList relatives;
    QFile manifest(QDir(from).filePath(kDataList));
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

void LinkMissingPrograms(const QString& from, const QString& to)
{
    if (from.isEmpty() || !QFileInfo(from).isDir() || QDir(from) == QDir(to))
        return;
    const QFileInfoList programs = QDir(from).entryInfoList(QDir::Files | QDir::Executable);
    if (programs.isEmpty())
        return;
    QDir().mkpath(to);
    for (const QFileInfo& program : programs) {
        const QString link = QDir(to).filePath(program.fileName());
        // symLinkTarget() also sees a link whose program was removed: it stays as it is.
        if (QFileInfo::exists(link) || !QFileInfo(link).symLinkTarget().isEmpty())
            continue;
        QFile::link(program.absoluteFilePath(), link);
    }
}

QString ResolveAppFolder(const QString& programFolder)
{
    const ProgramLayout layout = LayoutOf(programFolder);
    QString folder;
    const QString home = qEnvironmentVariable("VELUNTA_HOME");
    if (!home.isEmpty()) {
        QDir().mkpath(home);
        folder = withSlash(QDir(home).absolutePath());
    } else if (!layout.installed && isWritableFolder(programFolder)) {
        // An installed program never writes beside itself, not even when it could
        // (started by root, say): its folder belongs to the package manager.
        folder = layout.programFolder;
    } else {
        folder = perUserDataFolder();
        QDir().mkpath(folder);
    }
    // A relocated folder gets the shipped data files it lacks. VELUNTA_DATA names the
    // source tree's data folder when the program runs from a build or a test; such a
    // run gets no effect programs linked, so a test's effects folder is its own.
    const QString testData = qEnvironmentVariable("VELUNTA_DATA");
    if (!testData.isEmpty()) {
        if (QDir(testData).exists())
            CopyMissingDataFiles(testData, folder);
    } else if (!layout.data.isEmpty()) {
        CopyMissingDataFiles(layout.data, folder);
        LinkMissingPrograms(layout.effects, folder + QStringLiteral("effects"));
    }
    QDir().mkpath(folder + QStringLiteral("temp"));
    return folder;
}

QString CompanionProgram(const QString& appFolder, const QString& name, const QString& programFolder)
{
    // VELUNTA_COMPANIONS names the build's program folder for the tests, whose own
    // programs lie elsewhere.
    QStringList folders{withSlash(appFolder)};
    if (const QString built = qEnvironmentVariable("VELUNTA_COMPANIONS"); !built.isEmpty())
        folders << withSlash(built);
    folders << LayoutOf(programFolder).companions;
    for (const QString& folder : folders) {
        if (isExecutableFile(folder + name))
            return folder + name;
    }
    return QString();
}

QString CompanionProgram(const QString& appFolder, const QString& name)
{
    return CompanionProgram(appFolder, name, QCoreApplication::applicationDirPath());
}

QString RecoveryFolder(const QString& appFolder)
{
    if (QDir(appFolder) == QDir(perUserDataFolder()))
        return withSlash(stateHome() + QStringLiteral("/Zolvane/Velunta/recovery"));
    return withSlash(appFolder) + QStringLiteral("recovery/");
}

} // namespace velunta
