// Where the program keeps its files and finds its companions in each layout, and that a
// whole-file write that fails leaves the old file as it was.

#include "core/AppFolder.h"
#include "core/SafeFile.h"
#include "support/OutsideFixtures.h"
#include "support/TestImages.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// A prefix as `cmake --install` lays it out, with one data file and one effect program.
void makeInstall(const QString& prefix)
{
    QDir().mkpath(prefix + QStringLiteral("/bin"));
    WriteFile(prefix + QStringLiteral("/share/velunta/velunta-data.txt"), "brushes/round.bmp\n");
    WriteFile(prefix + QStringLiteral("/share/velunta/brushes/round.bmp"), "round");
    WriteScript(prefix + QStringLiteral("/libexec/velunta/effects/Blur"), {});
    WriteScript(prefix + QStringLiteral("/libexec/velunta/png"), {});
}

// The test harness names a home and a data folder; these tests need the plain start.
struct PlainStart {
    explicit PlainStart(const QString& base)
        : data("XDG_DATA_HOME", (base + QStringLiteral("/data")).toUtf8()),
          state("XDG_STATE_HOME", (base + QStringLiteral("/state")).toUtf8())
    {
    }
    EnvScope home{"VELUNTA_HOME", {}}, shipped{"VELUNTA_DATA", {}}, built{"VELUNTA_COMPANIONS", {}}, data,
        state;
};

} // namespace

class tst_AppFolder : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void installedProgramKeepsItsFilesInTheUserFolder()
    {
        QTemporaryDir dir;
        const QString prefix = dir.filePath(QStringLiteral("usr"));
        makeInstall(prefix);
        PlainStart plain(dir.path());
        // The program's folder can be written (tests may run as root), yet it is left alone.
        const QString folder = ResolveAppFolder(prefix + QStringLiteral("/bin"));
        QCOMPARE(folder, dir.filePath(QStringLiteral("data/Zolvane/Velunta/")));
        QCOMPARE(ReadFile(folder + QStringLiteral("brushes/round.bmp")), QByteArray("round"));
        QVERIFY(QFileInfo(folder + QStringLiteral("temp")).isDir());
        QCOMPARE(QFileInfo(folder + QStringLiteral("effects/Blur")).symLinkTarget(),
                 prefix + QStringLiteral("/libexec/velunta/effects/Blur"));
        QCOMPARE(QDir(prefix + QStringLiteral("/bin")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
                 QStringList());
        QCOMPARE(RecoveryFolder(folder), dir.filePath(QStringLiteral("state/Zolvane/Velunta/recovery/")));
        QCOMPARE(CompanionProgram(folder, QStringLiteral("png"), prefix + QStringLiteral("/bin")),
                 prefix + QStringLiteral("/libexec/velunta/png"));

        // A user's own program of that name wins; an effect the package no longer ships
        // leaves a link to nothing, which is no program.
        WriteScript(folder + QStringLiteral("png"), {});
        QCOMPARE(CompanionProgram(folder, QStringLiteral("png"), prefix + QStringLiteral("/bin")),
                 folder + QStringLiteral("png"));
        QFile::remove(prefix + QStringLiteral("/libexec/velunta/effects/Blur"));
        ResolveAppFolder(prefix + QStringLiteral("/bin"));
        QVERIFY(!QFileInfo(folder + QStringLiteral("effects/Blur")).exists());
    }

    void portableFolderIsItsOwnAppFolder()
    {
        QTemporaryDir dir;
        const QString program = dir.filePath(QStringLiteral("Velunta"));
        WriteFile(program + QStringLiteral("/velunta-data.txt"), "\n");
        WriteScript(program + QStringLiteral("/VeluntaExt1"), {});
        WriteFile(program + QStringLiteral("/bmpExport"), "not a program");
        PlainStart plain(dir.path());
        const QString folder = ResolveAppFolder(program);
        QCOMPARE(folder, program + u'/');
        QCOMPARE(RecoveryFolder(folder), program + QStringLiteral("/recovery/"));
        QCOMPARE(CompanionProgram(folder, QStringLiteral("VeluntaExt1"), program),
                 program + QStringLiteral("/VeluntaExt1"));
        QCOMPARE(CompanionProgram(folder, QStringLiteral("bmpExport"), program), QString());
        QVERIFY(!LayoutOf(program).installed);
    }

    void failedWriteKeepsTheOldFile_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::addColumn<QString>("reason");
        QTest::newRow("disk full") << "disk full"
                                   << "File too large";
        QTest::newRow("folder is a file") << "folder is a file"
                                          << "Not a directory";
    }
    void failedWriteKeepsTheOldFile()
    {
        QFETCH(QString, situation);
        QFETCH(QString, reason);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("UserColors.ini"));
        QVERIFY(WriteFile(path, "old colours"));
        QString said;
        bool written = false;
        if (situation == QLatin1String("disk full")) {
            WithFullDisk(4096, [&] { written = WriteFileSafely(path, QByteArray(10000, 'n'), &said); });
        } else {
            written = WriteFileSafely(path + QStringLiteral("/inside.ini"), "new", &said);
        }
        QVERIFY(!written);
        QCOMPARE(said, reason);
        QCOMPARE(ReadFile(path), QByteArray("old colours"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"UserColors.ini"});
    }
};

QTEST_GUILESS_MAIN(tst_AppFolder)
#include "tst_appfolder.moc"
