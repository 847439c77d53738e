// The recovery files and their sessions without a window.

#include "files/RecoveryFile.h"
#include "files/RecoveryStore.h"
#include "files/RecoveryWriter.h"
#include "support/TestImages.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

bool runRound(RecoveryWriter& writer)
{
    QSignalSpy finished(&writer, &RecoveryWriter::roundFinished);
    writer.writeChanged();
    return finished.size() > 0 || finished.wait(10000);
}

} // namespace

class tst_RecoveryFiles : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void fileGivesBackTheSameBytes_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("path");
        QTest::newRow("one pixel, never saved") << QSize(1, 1) << "Untitled.bmp" << QString();
        QTest::newRow("odd width") << QSize(3, 2) << "/home/ana/Bilder/Häuser.bmp"
                                   << "/home/ana/Bilder/Häuser.bmp";
        QTest::newRow("names long enough to pad") << QSize(17, 5) << QString(37, u'x') << QString(91, u'y');
    }
    void fileGivesBackTheSameBytes()
    {
        QFETCH(QSize, size);
        QFETCH(QString, name);
        QFETCH(QString, path);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("p.vrec"));
        const QImage picture = Pattern(size.width(), size.height(), 7);
        const QDateTime when = QDateTime::fromMSecsSinceEpoch(1700000000123);
        QVERIFY(WriteRecoveryFile(file, {name, path, when, size}, picture));
        RecoveryHeader header;
        const QImage back = ReadRecoveryPicture(file, &header);
        QCOMPARE(DifferingPixels(back, picture), 0);
        QCOMPARE(header.name, name);
        QCOMPARE(header.path, path);
        QCOMPARE(header.written, when);
        QCOMPARE(RecoveryThumbnail(file, 8).isNull(), false);
    }

    void damagedFileIsNoRecoveryFile_data()
    {
        QTest::addColumn<int>("cut");
        QTest::addColumn<QByteArray>("added");
        QTest::addColumn<int>("byte");
        QTest::newRow("cut short by a crash") << 1 << QByteArray() << -1;
        QTest::newRow("a byte too many") << 0 << QByteArray("x") << -1;
        QTest::newRow("not ours") << 0 << QByteArray() << 0;
        QTest::newRow("absurd width") << 0 << QByteArray() << 11;
    }
    void damagedFileIsNoRecoveryFile()
    {
        QFETCH(int, cut);
        QFETCH(QByteArray, added);
        QFETCH(int, byte);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("p.vrec"));
        QVERIFY(WriteRecoveryFile(
            file, {QStringLiteral("a"), QString(), QDateTime::currentDateTime(), {4, 4}}, Pattern(4, 4, 1)));
        QByteArray bytes = ReadFile(file);
        bytes.chop(cut);
        bytes += added;
        if (byte >= 0)
            bytes[byte] = 'Z';
        QVERIFY(WriteFile(file, bytes));
        QVERIFY(!ReadRecoveryHeader(file, nullptr));
        QVERIFY(ReadRecoveryPicture(file).isNull());
    }

    void runningSessionIsLeftAlone()
    {
        QTemporaryDir dir;
        RecoveryStore running(dir.path());
        QVERIFY(running.open());
        QVERIFY(WriteRecoveryFile(running.fileOf(1),
                                  {QStringLiteral("a"), QString(), QDateTime::currentDateTime(), {2, 2}},
                                  Pattern(2, 2, 3)));
        RecoveryStore second(dir.path());
        QVERIFY(second.open());
        QVERIFY(second.claimFound().isEmpty());
        QVERIFY(QFile::exists(running.fileOf(1)));

        // Ended with its pictures kept: the next start finds them, a third one started
        // at the same time doesn't get them too.
        running.close(true);
        const QList<FoundPicture> found = second.claimFound();
        QCOMPARE(found.size(), 1);
        RecoveryStore third(dir.path());
        QVERIFY(third.open());
        QVERIFY(third.claimFound().isEmpty());
        QVERIFY(second.adopt(found.first(), 5));
        second.discardFound();
        QVERIFY(QFile::exists(second.fileOf(5)));
        QCOMPARE(QDir(dir.path()).entryList({QStringLiteral("session-*")}, QDir::Dirs).size(), 2);

        second.close(false);
        third.close(false);
        QVERIFY(QDir(dir.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).isEmpty());
    }

    void writesOnlyAfterAChange()
    {
        QTemporaryDir dir;
        RecoveryStore store(dir.path());
        QVERIFY(store.open());
        QImage picture = Pattern(20, 10, 5);
        bool dirty = true;
        RecoveryWriter writer(store, [&] {
            return QList<RecoverySource>{{1, &picture, dirty, QStringLiteral("n"), QString()}};
        });
        QVERIFY(runRound(writer));
        QCOMPARE(writer.writesDone(), 1);
        QVERIFY(runRound(writer));
        QCOMPARE(writer.writesDone(), 1);
        picture.setPixel(3, 3, 0xFF00FF00); // any change, however small
        QVERIFY(runRound(writer));
        QCOMPARE(writer.writesDone(), 2);
        const QString file = store.fileOf(writer.serialOf(1));
        QCOMPARE(DifferingPixels(ReadRecoveryPicture(file), picture), 0);
        dirty = false; // saved
        writer.sweep();
        QVERIFY(!QFile::exists(file));
    }

    void pictureResizedWhileCopiedIsWrittenAtItsNewSize()
    {
        QTemporaryDir dir;
        RecoveryStore store(dir.path());
        QVERIFY(store.open());
        // Rows of 16 KB: a slice without time copies a few of them and hands over.
        QImage picture = Pattern(4096, 64, 9);
        int asked = 0;
        RecoveryWriter writer(store, [&] {
            if (++asked == 3)
                picture = Pattern(4096, 80, 11);
            return QList<RecoverySource>{{1, &picture, true, QStringLiteral("n"), QString()}};
        });
        writer.setSliceBudget(0);
        QVERIFY(runRound(writer));
        QVERIFY(asked > 3);
        const QImage back = ReadRecoveryPicture(store.fileOf(writer.serialOf(1)));
        QCOMPARE(DifferingPixels(back, picture), 0);
    }
};

QTEST_GUILESS_MAIN(tst_RecoveryFiles)
#include "tst_recoveryfiles.moc"
