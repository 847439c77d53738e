// Unsaved pictures survive the end of the program: a program killed with SIGKILL leaves
// its changed picture, which the next start brings back byte for byte, dirty and with
// its names; a close or Exit asks about every changed picture, and only an end
// without one keeps them; the offer's answers;
// and painting goes on while the writer copies a 12 MP picture.

#include "document/frmPaint.h"
#include "files/RecoveryWriter.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <cstdio>

using namespace velunta;
using namespace velunta::test;

namespace {

const char* const kChildFolder = "VELUNTA_RECOVERY_CHILD";

QByteArray pixelBytes(const QImage& image)
{
    QByteArray bytes;
    for (int y = 0; y < image.height(); ++y)
        bytes.append(reinterpret_cast<const char*>(image.constScanLine(y)), image.width() * 4);
    return bytes;
}

frmPaint* namedDocument(MainWindowFixture& f, const QString& name, bool dirty)
{
    frmPaint* form = f.newDocument(32, 24);
    form->doc.Name = name;
    form->doc.SetCaption(name);
    form->doc.Dirty = dirty;
    return form;
}

// How a run ends: the close (the user sure, each changed picture left unsaved), Exit
// (each left unsaved too), or the program gone without a close, as when the desktop
// session ends it.
enum class End { Close, Exit, Gone };

// A run that leaves these pictures, the last one active, and ends as `end` says.
void endRun(const QString& folder, const QStringList& names, bool dirty, End end)
{
    ScriptedRecovery recovery;
    MainWindowFixture f(true, &recovery, folder);
    for (const QString& name : names)
        namedDocument(f, name, dirty);
    if (end == End::Exit) {
        f.main().Exit_Click();
    } else if (end == End::Close) {
        f.prompt.answers.enqueue(vbYes);
        f.main().close();
    } else {
        f.endWithoutClose();
    }
}

QStringList offeredNames(const ScriptedRecovery& recovery)
{
    QStringList names;
    for (const RecoveryOffer& offer : recovery.offered)
        names << offer.name;
    names.sort();
    return names;
}

bool runRound(RecoveryWriter* writer)
{
    QSignalSpy finished(writer, &RecoveryWriter::roundFinished);
    writer->writeChanged();
    return finished.size() > 0 || finished.wait(20000);
}

// The program that gets killed: it draws, lets its picture be kept, tells the test
// which bytes to expect and waits.
int childMain(const QString& folder)
{
    ScriptedRecovery recovery;
    MainWindowFixture f(true, &recovery, folder);
    frmPaint* form = f.newDocument(64, 48);
    form->doc.Name = QStringLiteral("drawing.bmp");
    form->doc.SetCaption(QStringLiteral("drawing.bmp"));
    form->doc.Buffer.Tag = QStringLiteral("/pictures/drawing.bmp");
    f.drag(*form, {6, 6}, {60, 44}, 8);
    form->doc.Dirty = true;
    if (!runRound(f.main().recoveryWriter()))
        return 1;
    WriteFile(folder + QStringLiteral("expected.raw"), pixelBytes(form->doc.Buffer.Image()));
    std::printf("ready\n");
    std::fflush(stdout);
    return QApplication::exec();
}

} // namespace

class tst_Recovery : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void killedProgramsPictureComesBackByteForByte()
    {
        QTemporaryDir dir;
        const QString folder = dir.filePath(QStringLiteral("app/"));
        QProcess child;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QLatin1String(kChildFolder), folder);
        child.setProcessEnvironment(env);
        child.start(QCoreApplication::applicationFilePath(), {});
        QVERIFY(child.waitForStarted());
        QElapsedTimer waited;
        waited.start();
        while (!child.readAllStandardOutput().contains("ready") && waited.elapsed() < 60000)
            QVERIFY(child.waitForReadyRead(60000));
        ::kill(pid_t(child.processId()), SIGKILL);
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitStatus(), QProcess::CrashExit);

        ScriptedRecovery recovery;
        recovery.answer = RecoveryPrompt::Restore;
        MainWindowFixture f(false, &recovery, folder);
        QCOMPARE(recovery.asked, 1);
        QCOMPARE(recovery.offered.size(), 1);
        const RecoveryOffer& offer = recovery.offered.first();
        QCOMPARE(offer.size, QSize(64, 48));
        QVERIFY(!offer.thumbnail.isNull());
        QVERIFY(qAbs(offer.written.secsTo(QDateTime::currentDateTime())) < 120);
        QCOMPARE(f.main().documents().size(), 1);
        const Document& doc = f.main().documents().first()->doc;
        QCOMPARE(doc.Name, QStringLiteral("drawing.bmp"));
        QCOMPARE(doc.Caption, QStringLiteral("drawing.bmp - 100%"));
        QCOMPARE(doc.Buffer.Tag, QStringLiteral("/pictures/drawing.bmp"));
        QVERIFY(doc.Dirty);
        QCOMPARE(pixelBytes(doc.Buffer.Image()), ReadFile(folder + QStringLiteral("expected.raw")));
        // The file moved into this run's session; the dead one is gone.
        const QStringList sessions =
            QDir(folder + QStringLiteral("recovery")).entryList({QStringLiteral("session-*")}, QDir::Dirs);
        QCOMPARE(sessions.size(), 1);
        QCOMPARE(QDir(folder + QStringLiteral("recovery/") + sessions.first()).entryList(QDir::Files).size(),
                 1);
    }

    void whatTheCloseKeeps_data()
    {
        QTest::addColumn<int>("end");
        QTest::addColumn<bool>("dirty");
        QTest::addColumn<QStringList>("kept");
        QTest::newRow("close: every picture asked about, left unsaved, goes")
            << int(End::Close) << true << QStringList{};
        QTest::newRow("close: nothing changed, nothing kept") << int(End::Close) << false << QStringList{};
        QTest::newRow("Exit asks too: left unsaved, goes") << int(End::Exit) << true << QStringList{};
        QTest::newRow("gone without a close: every change kept")
            << int(End::Gone) << true << QStringList{"first", "second"};
    }
    void whatTheCloseKeeps()
    {
        QFETCH(int, end);
        QFETCH(bool, dirty);
        QFETCH(QStringList, kept);
        QTemporaryDir dir;
        const QString folder = dir.filePath(QStringLiteral("app/"));
        endRun(folder, {QStringLiteral("first"), QStringLiteral("second")}, dirty, End(end));
        ScriptedRecovery next;
        MainWindowFixture g(false, &next, folder);
        QCOMPARE(offeredNames(next), kept);
        QCOMPARE(next.asked, kept.isEmpty() ? 0 : 1);
    }

    void offerAnswers_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<QList<bool>>("ticks");
        QTest::addColumn<QStringList>("restored");
        QTest::addColumn<QStringList>("offeredAgain");
        QTest::newRow("Restore the ticked, delete the other")
            << int(RecoveryPrompt::Restore) << QList<bool>{false, true} << QStringList{"two"}
            << QStringList{};
        QTest::newRow("Discard all") << int(RecoveryPrompt::Discard) << QList<bool>{} << QStringList{}
                                     << QStringList{};
        QTest::newRow("Decide later")
            << int(RecoveryPrompt::Later) << QList<bool>{} << QStringList{} << QStringList{"one", "two"};
    }
    void offerAnswers()
    {
        QFETCH(int, answer);
        QFETCH(QList<bool>, ticks);
        QFETCH(QStringList, restored);
        QFETCH(QStringList, offeredAgain);
        QTemporaryDir dir;
        const QString folder = dir.filePath(QStringLiteral("app/"));
        endRun(folder, {QStringLiteral("one"), QStringLiteral("two")}, true, End::Gone);
        {
            ScriptedRecovery recovery;
            recovery.answer = RecoveryPrompt::Answer(answer);
            recovery.ticks = ticks;
            MainWindowFixture f(false, &recovery, folder);
            QCOMPARE(offeredNames(recovery), (QStringList{"one", "two"}));
            QStringList names;
            for (frmPaint* form : f.main().documents())
                names << form->doc.Name;
            QCOMPARE(names, restored);
            // Gone from this run without a close: what it restored is not asked about.
            for (frmPaint* form : f.main().documents())
                form->doc.Dirty = false;
        }
        ScriptedRecovery last;
        MainWindowFixture g(false, &last, folder);
        QCOMPARE(offeredNames(last), offeredAgain);
    }

    void paintingGoesOnWhileTheWriterCopies()
    {
        QTemporaryDir dir;
        ScriptedRecovery recovery;
        MainWindowFixture f(true, &recovery, dir.filePath(QStringLiteral("app/")));
        frmPaint* form = f.newDocument(4000, 3000);
        form->doc.Dirty = true;
        RecoveryWriter* writer = f.main().recoveryWriter();
        QSignalSpy finished(writer, &RecoveryWriter::roundFinished);
        writer->writeChanged();
        int strokes = 0;
        QElapsedTimer clock;
        clock.start();
        while (finished.isEmpty() && clock.elapsed() < 60000) {
            f.drag(*form, QPointF(10 + strokes % 200, 10), QPointF(30 + strokes % 200, 40), 2);
            ++strokes;
            QCoreApplication::processEvents();
        }
        QVERIFY(!finished.isEmpty());
        QVERIFY2(strokes > 1, "the round ran without the events getting a turn");
        // Generous against a loaded machine; bench_recovery measures the real figure.
        QVERIFY2(writer->longestSliceMs() < 100, qPrintable(QString::number(writer->longestSliceMs())));
        QCOMPARE(writer->writesDone(), 1);
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (qEnvironmentVariableIsSet(kChildFolder))
        return childMain(qEnvironmentVariable(kChildFolder));
    tst_Recovery test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_recovery.moc"
