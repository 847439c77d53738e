// Every writer goes through a temporary file: a save that fails leaves the old
// file as it was and says why, in the system's words.

#include "files/BmpWriter.h"
#include "files/GIF.h"
#include "files/JpegWriter.h"

#include "support/TestImages.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

using namespace velunta;
using namespace velunta::test;

namespace {

bool save(const QString& writer, const QImage& image, const QString& path, QString* reason)
{
    if (writer == QLatin1String("bmp"))
        return SaveBMP(image, path, reason);
    if (writer == QLatin1String("gif"))
        return GIF().SaveGIF(image, path, false, -1, reason);
    cDIBSection dib;
    dib.CreateFromPicture(image);
    return SaveJPG(dib, path, 90, reason);
}

QByteArray contents(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("(missing)");
}

void writeOld(const QString& path)
{
    QFile old(path);
    if (old.open(QIODevice::WriteOnly))
        old.write("old picture");
}

} // namespace

class tst_safesave : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    const QImage m_noise =
        MakeImage(300, 200, [](int x, int y) { return (x * 7919 + y * 104729) % 0xFFFFFF; });

private Q_SLOTS:
    void oldFileSurvives_data()
    {
        QTest::addColumn<QString>("writer");
        QTest::addColumn<QString>("situation");
        QTest::addColumn<QString>("reason");
        for (const char* w : {"bmp", "gif", "jpeg"}) {
            QTest::addRow("%s, read-only folder", w) << w << "read-only folder"
                                                     << "Permission denied";
            QTest::addRow("%s, disk full", w) << w << "disk full"
                                              << "File too large";
            QTest::addRow("%s, parent is a file", w) << w << "parent is a file"
                                                     << "Not a directory";
        }
    }
    void oldFileSurvives()
    {
        QFETCH(QString, writer);
        QFETCH(QString, situation);
        QFETCH(QString, reason);
        const QString folder = m_dir.filePath(writer + situation);
        QDir().mkpath(folder);
        QString path = folder + QStringLiteral("/picture");
        writeOld(path);
        const QFile::Permissions writable = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

        bool saved = false;
        QString said;
        if (situation == QLatin1String("read-only folder")) {
            QFile::setPermissions(folder, writable & ~QFile::WriteOwner);
            QFile probe(folder + QStringLiteral("/probe"));
            const bool permissionsHold = !probe.open(QIODevice::WriteOnly);
            if (permissionsHold)
                saved = save(writer, m_noise, path, &said);
            probe.remove();
            QFile::setPermissions(folder, writable);
            if (!permissionsHold)
                QSKIP("permissions don't stop this user (root)");
        } else if (situation == QLatin1String("disk full")) {
            // Writes past 4 KB fail, as on a full disk.
            std::signal(SIGXFSZ, SIG_IGN);
            rlimit old{};
            getrlimit(RLIMIT_FSIZE, &old);
            rlimit limit = old;
            limit.rlim_cur = 4096;
            setrlimit(RLIMIT_FSIZE, &limit);
            saved = save(writer, m_noise, path, &said);
            setrlimit(RLIMIT_FSIZE, &old);
        } else {
            saved = save(writer, m_noise, path + QStringLiteral("/picture"), &said);
        }
        QVERIFY(!saved);
        QCOMPARE(said, reason);
        QCOMPARE(contents(path), QByteArray("old picture"));
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList{"picture"}); // no temporary file left
    }

    void cancelledGifKeepsOldFile()
    {
        const QString path = m_dir.filePath(QStringLiteral("old.gif"));
        writeOld(path);
        QList<double> heard;
        QString reason;
        const bool saved = GIF().SaveGIF(m_noise, path, false, -1, &reason, [&](double f) {
            heard << f;
            return heard.size() == 3;
        });
        QVERIFY(!saved);
        QCOMPARE(heard, (QList<double>{0.05, 0.1, 0.15})); // every tenth row of 200
        QCOMPARE(reason, QStringLiteral("Cancelled"));
        QCOMPARE(contents(path), QByteArray("old picture"));
    }
};

QTEST_GUILESS_MAIN(tst_safesave)
#include "tst_safesave.moc"
