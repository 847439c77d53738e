// What lasts from one run to the next. The settings: a first run writes every key,
// closing keeps the window and view settings but not the draw presets, the Extra menu's
// commands, and values edited by hand with garbage in them. Unsaved pictures: a program
// killed with SIGKILL leaves its changed picture, which the next start brings back byte
// for byte, dirty and with its names; a close or Exit asks about every changed picture,
// and only an end without one keeps them; the offer's answers; and painting goes on
// while the writer copies a 12 MP picture.

#include "core/SettingsStore.h"
#include "document/frmPaint.h"
#include "files/RecoveryWriter.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <cstdio>

using namespace velunta;
using namespace velunta::test;

namespace {

QSettings store()
{
    return QSettings(QStringLiteral("Zolvane"), QStringLiteral("Velunta"));
}

void closeWindow(frmMain& m)
{
    QCloseEvent event;
    QApplication::sendEvent(&m, &event);
}

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

class tst_NextRun : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Every key with the value it must have (a wrong default is caught), and no other.
    void firstRunWritesEveryDefault()
    {
        MainWindowFixture f;
        const QRect g = f.main().normalGeometry().isValid() ? f.main().normalGeometry() : f.main().geometry();
        QMap<QString, QString> expected{{"MainLeft", QString::number(g.x() * 15)},
                                        {"MainTop", QString::number(g.y() * 15)},
                                        {"MainWidth", QString::number(g.width() * 15)},
                                        {"MainHeight", QString::number(g.height() * 15)},
                                        {"Version", QStringLiteral(VELUNTA_VERSION)},
                                        {"GuideLinesColor", QString::number(RGB(128, 128, 128))},
                                        {"GridColor", QString::number(RGB(240, 240, 240))}};
        const QString fixed = QStringLiteral(
            "AutoSizePos=0|KidsMode=False|FitBigImage=False|MaxOnOpen=0|StartBlankPage=0|SelectedColor=0|"
            "FrameColorSheme=0|FormColorSheme=0|CircleThickness=1|LineThickness=1|SelectedBackColor=16777215|"
            "UseGuideLines=-1|GuideLineStyle=2|MRUD0= |MRUD1= |MRUD2= |MRUD3= |NewImageSize=640x480|"
            "LastFolder=|TextFont=Arial|TextStyle=Normal|Blend=50|SquareCorner=10|ArrowSize=6|"
            "DrawForeColor=0|DrawBackColor=16777215|GridX=10|GridY=10|SnapToGrid=False|NoURLupdate=|"
            "StepUndo=False|UseCounter=2");
        for (const QString& pair : fixed.split(u'|'))
            expected.insert(pair.section(u'=', 0, 0), pair.section(u'=', 1));
        const int options[16] = {50, 75, 6, 10, 2, 1, 1, 12, 6, 1, 10, 75, 6, 3, 10, 6};
        for (int i = 0; i < 16; ++i)
            expected.insert(QStringLiteral("LastOptionValue%1").arg(i), QString::number(options[i]));
        QSettings s = store();
        QStringList keys = s.allKeys();
        for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
            QVERIFY2(keys.removeOne(it.key()), qPrintable(it.key()));
            QCOMPARE(s.value(it.key()).toString(), it.value());
        }
        QVERIFY2(keys.isEmpty(), qPrintable(keys.join(u' '))); // and nothing else
    }

    void closingKeepsViewButNotDrawPresets()
    {
        {
            MainWindowFixture f;
            f.main().state().SelectorValues[4].Value = 20;
            f.newDocument(10, 10);
            f.main().action(QStringLiteral("mnuGuideLineStyles(4)"))->trigger();
            // A guideline style is kept at once, shown at once, and marked alone.
            QCOMPARE(store().value(QStringLiteral("GuideLineStyle")).toString(), QStringLiteral("4"));
            QCOMPARE(f.main().activeDocument()->doc.Line1.BorderStyle, 4);
            QVERIFY(!f.main().action(QStringLiteral("mnuGuideLineStyles(2)"))->isChecked());
            f.main().action(QStringLiteral("mnuKidsMode"))->trigger();
            closeWindow(f.main());
        }
        MainWindowFixture next(false);
        QCOMPARE(next.main().state().SelectorValues[4].Value, 2.0);
        QCOMPARE(next.main().GuideLineStyle, 4);
        QVERIFY(next.main().action(QStringLiteral("mnuKidsMode"))->isChecked());
        QVERIFY(!next.main().Cmd(17)->isVisible());
    }

    void savedDrawPresetsComeBack()
    {
        {
            MainWindowFixture f;
            f.newDocument(10, 10); // the draw presets' entries are there with a picture
            f.main().state().SelectorValues[9].Value = 7;
            f.main().state().ForeColor = RGB(1, 2, 3);
            f.main().action(QStringLiteral("mnuextra1"))->trigger();
            QCOMPARE(f.prompt.shown.last().text, QStringLiteral("Settings of your draw-tools are saved"));
            f.main().state().SelectorValues[9].Value = 30;
            f.main().action(QStringLiteral("mnuextra2"))->trigger();
            QCOMPARE(f.main().state().SelectorValues[9].Value, 7.0);
            QCOMPARE(f.prompt.shown.last().title, QStringLiteral("Load Draw Settings"));
        }
        MainWindowFixture next(false);
        QCOMPARE(next.main().state().SelectorValues[9].Value, 7.0);
        QCOMPARE(next.main().state().ForeColor, RGB(1, 2, 3));
    }

    void restoreDefaults_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("restored");
        QTest::newRow("No changes nothing") << int(vbNo) << false;
        QTest::newRow("Cancel changes nothing") << int(vbCancel) << false;
        QTest::newRow("Yes restores") << int(vbYes) << true;
    }
    void restoreDefaults()
    {
        QFETCH(int, answer);
        QFETCH(bool, restored);
        MainWindowFixture f;
        frmMain& m = f.main();
        m.state().SelectorValues[2].Value = 40;
        m.state().ArrowSizeText = QStringLiteral("20");
        m.SaveSettings(true);
        m.MRUDlist(2, QStringLiteral("/pictures/one.bmp"));
        m.SaveSettings(false);
        f.prompt.answers.enqueue(answer);
        m.action(QStringLiteral("mnuextra3"))->trigger();
        QCOMPARE(f.prompt.shown.last().title, QStringLiteral("Restore Velunta Default Settings"));
        QCOMPARE(m.state().SelectorValues[2].Value, restored ? 6.0 : 40.0);
        QCOMPARE(store().value(QStringLiteral("ArrowSize")).toString(),
                 restored ? QStringLiteral("6") : QStringLiteral("20"));
        QCOMPARE(m.recentFile(0).isEmpty(), restored);
        QCOMPARE(m.action(QStringLiteral("mnuMrud(0)"))->isVisible(), !restored);
    }

    void garbageValuesAreTolerated()
    {
        {
            QSettings s = store();
            s.clear();
            const QString garbage =
                QStringLiteral("LastOptionValue4=abc|LastOptionValue5=99999|DrawForeColor=|GridX=99999999999|"
                               "NewImageSize=axb|GuideLineStyle=9|AutoSizePos=-1|MainLeft=-3000|"
                               "MainWidth=lots|KidsMode=maybe");
            for (const QString& pair : garbage.split(u'|'))
                s.setValue(pair.section(u'=', 0, 0), pair.section(u'=', 1));
        }
        MainWindowFixture f(false);
        frmMain& m = f.main();
        QCOMPARE(m.state().SelectorValues[4].Value, 2.0);
        QCOMPARE(m.state().SelectorValues[5].Value, 1.0);
        QCOMPARE(m.state().ForeColor, Color(0));
        QCOMPARE(m.state().GridX, 10);
        QCOMPARE(m.NewImageWidth, 640);
        QCOMPARE(m.GuideLineStyle, 2);
        QVERIFY(!m.action(QStringLiteral("mnuKidsMode"))->isChecked());
        QVERIFY(m.geometry().x() >= 0); // a negative position is taken as 0
    }

    void unwritableStoreDoesNotStopTheProgram()
    {
        QTemporaryDir dir;
        QVERIFY(WriteFile(dir.filePath(QStringLiteral("Zolvane")), {})); // where the store's folder should be
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, dir.path());
        SettingsStore unwritable;
        unwritable.SaveSetting(QStringLiteral("Test"), QStringLiteral("x"));
        QVERIFY(!unwritable.sync());
        {
            MainWindowFixture f(false);
            QVERIFY(f.main().isVisible());
            f.main().SaveSettings(true);
        }
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    }

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
    tst_NextRun test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_nextrun.moc"
