// Effect programs outside Velunta, in the running window: the menus list what the
// folders hold; a result comes back as one undo step, on the selection when one shows;
// every way a program can fail leaves the picture, says why, and gives the window back.

#include "core/Gdi.h"
#include "core/SettingsStore.h"
#include "document/frmPaint.h"
#include "effects/ExternalEffect.h"
#include "exchange/CompanionSettings.h"
#include "shell/ProgressStrip.h"
#include "support/FakeHost.h"
#include "support/MainWindowFixture.h"
#include "support/PictureBytes.h"
#include "support/TestImages.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMdiArea>
#include <QMenu>
#include <QPainter>
#include <QTimer>
#include <QtTest>

#include <csignal>

using namespace velunta;
using namespace velunta::test;

namespace {

QImage inverted(QImage image)
{
    image.invertPixels();
    return image;
}

const QString kInvert = QStringLiteral("convert \"$1\" -negate \"BMP3:$1\"");

} // namespace

class tst_External : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        if (!HaveTool(QStringLiteral("convert")))
            QSKIP("ImageMagick's convert makes the test programs");
    }

    void captions_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("caption");
        const auto row = [](const char* name, QString file, QString caption) {
            QTest::newRow(name) << file << caption;
        };
        row("plain", "Sepia", "Sepia");
        row("first letter up", "oil paint", "Oil paint");
        row("cut at .exe", "blur.exe", "Blur");
        row("cut at the first .exe", "my.exe tool.exe", "My");
        row(".exe is matched as written", "Gray.EXE", "Gray.EXE");
        row("leading degree sign", QStringLiteral("\u00b0special.exe"), "Special");
        row("only an extension", ".exe", "");
        row("other extensions stay", "frame.sh", "Frame.sh");
    }
    void captions()
    {
        QFETCH(QString, file);
        QFETCH(QString, caption);
        QCOMPARE(EffectCaption(file), caption);
    }

    void menusListTheProgramsFound()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        const QString effects = f.appFolder() + QStringLiteral("effects");
        for (const char* name : {"effects/b effect", "effects/A.exe", "effects/Tom & Jerry",
                                 "effects/.hidden", "Plugin_Zoom.exe", "Plugin_frame", "NoPlugin_x"})
            WriteScript(f.appFolder() + QLatin1String(name), QStringLiteral("exit 0"));
        QVERIFY(WriteFile(effects + QStringLiteral("/readme.txt"), "not a program"));
        QDir(effects).mkdir(QStringLiteral("folder"));
        QFile::link(effects + QStringLiteral("/gone"), effects + QStringLiteral("/dangling"));
        m.ScanEffects();
        QStringList captions, names;
        for (QAction* a : m.Filter()) {
            captions << a->text();
            names << a->data().toString();
            QCOMPARE(a->parent(), m.menu(MenuId::Filters));
            QVERIFY(!a->isEnabled()); // no picture open
        }
        QCOMPARE(captions, QStringList({"A", "B effect", "Tom && Jerry"}));
        QCOMPARE(names, QStringList({"A.exe", "b effect", "Tom & Jerry"}));
        QVERIFY(m.action(MenuId::split060)->isVisible());
        QVERIFY(m.action(MenuId::mnuextraplugin)->isVisible());
        QCOMPARE(m.PluginEntry(4)->text(), QStringLiteral("Frame"));
        QCOMPARE(m.PluginEntry(5)->text(), QStringLiteral("Zoom"));
        QCOMPARE(m.PluginEntry(5)->data().toString(), QStringLiteral("Zoom.exe"));
        QVERIFY(!m.PluginEntry(6));
        QVERIFY(!m.PluginEntry(5)->isEnabled());
        f.newDocument();
        for (QAction* a : m.Filter())
            QVERIFY(a->isEnabled());
        QVERIFY(m.PluginEntry(4)->isEnabled() && m.PluginEntry(5)->isEnabled());

        // Emptied folders: no entries, no empty submenu, no separator at the end.
        QDir(effects).removeRecursively();
        QFile::remove(f.appFolder() + QStringLiteral("Plugin_Zoom.exe"));
        QFile::remove(f.appFolder() + QStringLiteral("Plugin_frame"));
        m.ScanEffects();
        QVERIFY(m.Filter().isEmpty());
        QVERIFY(!m.action(MenuId::split060)->isVisible());
        QVERIFY(!m.action(MenuId::mnuextraplugin)->isVisible());
        QVERIFY(!m.PluginEntry(4));
    }

    void oldEffectsGoOnAFirstRunOnly()
    {
        QTemporaryDir dir;
        const QString effects = dir.path() + QStringLiteral("/effects");
        for (const char* name : {"Blur.exe", "Brighten.exe", "Darken.exe", "Emboss.exe", "GrayScale.exe",
                                 "Blur", "Sepia", "blur.exe"})
            WriteScript(effects + u'/' + QLatin1String(name), QStringLiteral("exit 0"));
        RemoveOldEffects(dir.path(), QStringLiteral("3.0.0"));
        QCOMPARE(QDir(effects).entryList(QDir::Files).size(), 8);
        RemoveOldEffects(dir.path(), QString());
        QCOMPARE(QDir(effects).entryList(QDir::Files, QDir::Name),
                 QStringList({"Blur", "Sepia", "blur.exe"}));
    }

    // Every way a program can end, from the one that works to the ones that fail.
    void runEffect_data()
    {
        QTest::addColumn<QString>("body"); // null: no program; "-": a file that can't run
        QTest::addColumn<bool>("changes");
        QTest::addColumn<QString>("message"); // a part of the box's text; empty: no box
        QTest::newRow("is not there") << QString() << false << "effect err:53";
        QTest::newRow("is no program") << "-" << false << "effect err:70";
        QTest::newRow("inverts") << kInvert << true << "";
        QTest::newRow("exits at once") << "exit 0" << false << "";
        QTest::newRow("crashes") << "kill -SEGV $$" << false << "stopped unexpectedly";
        QTest::newRow("exits with an error") << "exit 3" << false << "ended with error 3";
        QTest::newRow("writes garbage")
            << "printf 'no picture at all' > \"$1\"" << false << "did not give back a BMP picture";
        QTest::newRow("writes an empty file") << ": > \"$1\"" << false << "did not give back a BMP picture";
        QTest::newRow("writes another format")
            << "convert \"$1\" \"PNG:$1\"" << false << "did not give back a BMP picture";
        QTest::newRow("writes a cut-short BMP")
            << "head -c 300 \"$1\" > \"$1.part\" && mv \"$1.part\" \"$1\"" << false << "can't be read";
        QTest::newRow("writes a 100000 x 100000 header") << "cp \"$HUGE\" \"$1\"" << false << "can't be read";
        QTest::newRow("deletes the file") << "rm \"$1\"" << false << "removed the picture";
        QTest::newRow("writes, then keeps its window open")
            << kInvert + QStringLiteral("\nexec sleep 30") << true << "";
        QTest::newRow("writes slowly in pieces")
            << "convert \"$1\" -negate \"BMP3:$1.new\" && head -c 100 \"$1.new\" > \"$1\" && sleep 0.4 && "
               "cat \"$1.new\" > \"$1\" && rm \"$1.new\""
            << true << "";
    }
    void runEffect()
    {
        QFETCH(QString, body);
        QFETCH(bool, changes);
        QFETCH(QString, message);
        MainWindowFixture f;
        frmMain& m = f.main();
        const QString huge = f.appFolder() + QStringLiteral("huge.bmp");
        QVERIFY(WriteFile(huge, BmpFile(100000, 100000, 40, 24, 0, {}, {}))); // and no pixels
        qputenv("HUGE", QFile::encodeName(huge));
        const QString program = f.appFolder() + QStringLiteral("effects/effect");
        if (body == u'-')
            QVERIFY(WriteFile(program, "#!/bin/sh\n"));
        else if (!body.isNull())
            WriteScript(program, body);
        frmPaint* form = f.newDocument(24, 16);
        Document& doc = form->doc;
        doc.Buffer.setPicture(Pattern(24, 16));
        const QImage before = doc.Buffer.Image().copy();
        const int slot = m.undo().UndoWriteSlot;

        QElapsedTimer clock;
        clock.start();
        m.RunEffect(QStringLiteral("effect"), false);
        QVERIFY(clock.elapsed() < 10000); // a program that stays open after writing holds nothing up
        QVERIFY(WindowUsable(m));
        QVERIFY(!m.externalEffect().EffectRunning);
        const QString exchange = f.appFolder() + QStringLiteral("temp/effect.bmp");
        if (changes) {
            QCOMPARE(DifferingPixels(doc.Buffer.Image(), inverted(before)), 0);
            QVERIFY(doc.Dirty);
            QVERIFY(m.UndoEnabled());
            QVERIFY(!QFile::exists(exchange)); // deleted after the load
            m.Undo_Click();
            QCOMPARE(DifferingPixels(doc.Buffer.Image(), before), 0);
        } else {
            QCOMPARE(DifferingPixels(doc.Buffer.Image(), before), 0);
            QVERIFY(!doc.Dirty);
            QCOMPARE(m.undo().UndoWriteSlot, slot); // no undo step was taken
        }
        if (message.isEmpty()) {
            QVERIFY2(f.prompt.shown.isEmpty(), qPrintable(f.prompt.shown.value(0).text));
        } else {
            QCOMPARE(f.prompt.shown.size(), 1);
            QVERIFY2(f.prompt.shown[0].text.contains(message), qPrintable(f.prompt.shown[0].text));
            QCOMPARE(f.prompt.shown[0].title, QStringLiteral("Error loading effect"));
            QCOMPARE(f.prompt.shown[0].style, int(vbExclamation));
        }
        if (body == QLatin1String("exit 0"))
            QVERIFY(QFile::exists(exchange)); // left as it stood
    }

    void selectionAloneIsHandedOverAndReplaced()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        const QString effects = f.appFolder() + QStringLiteral("effects");
        // The program records the size it was given.
        WriteScript(effects + QStringLiteral("/invert"),
                    QStringLiteral("identify -format '%w %h' \"$1\" > \"$1.size\"\n") + kInvert);
        frmPaint* form = f.newDocument(40, 30);
        Document& doc = form->doc;
        doc.Buffer.setPicture(Pattern(40, 30));
        const QRect where(8, 4, 10, 12);
        ShowFloat(doc, where, RGB(200, 10, 10));
        doc.SelectionLifted = false;
        const QImage around = doc.Buffer.Image().copy();
        m.ScanEffects();
        m.Filter().first()->trigger();
        QCOMPARE(ReadFile(f.appFolder() + QStringLiteral("temp/effect.bmp.size")), QByteArray("10 12"));
        QCOMPARE(GetPixel(doc.BufferSelected, 3, 3), RGB(55, 245, 245));
        QImage expected = around;
        QPainter(&expected).fillRect(where, QColor(55, 245, 245));
        QCOMPARE(DifferingPixels(doc.Buffer.Image(), expected), 0);
    }

    void resultOfAnotherSize()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        WriteScript(f.appFolder() + QStringLiteral("effects/half"),
                    QStringLiteral("convert \"$1\" -sample 50% \"BMP3:$1\""));
        frmPaint* form = f.newDocument(40, 30);
        Document& doc = form->doc;
        doc.Buffer.setPicture(Pattern(40, 30));
        // On a selection the size can't change: nothing does.
        ShowFloat(doc, QRect(2, 2, 10, 10), RGB(0, 0, 255));
        m.RunEffect(QStringLiteral("half"), false);
        QCOMPARE(f.prompt.shown.size(), 1);
        QVERIFY(f.prompt.shown[0].text.contains(QLatin1String("5 x 5 pixels for a selection of 10 x 10")));
        QCOMPARE(doc.BufferSelected.Image().size(), QSize(10, 10));
        // The whole picture takes the new size, and Undo Resize has the old one.
        doc.SelectArea.Visible = false;
        m.RunEffect(QStringLiteral("half"), false);
        QCOMPARE(doc.Buffer.Image().size(), QSize(20, 15));
        QVERIFY(m.action(MenuId::UndoResize)->isEnabled());
        m.UndoResize_Click();
        QCOMPARE(doc.Buffer.Image().size(), QSize(40, 30));
    }

    void namesWithBlanksAndShellCharactersRunWithoutAShell()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        const QString name = QStringLiteral("it's a \"b\" $(touch PWNED); & `touch PWNED2` x.exe y");
        WriteScript(f.appFolder() + QStringLiteral("effects/") + name, kInvert);
        frmPaint* form = f.newDocument(12, 8);
        const QImage before = form->doc.Buffer.Image().copy();
        m.ScanEffects();
        QCOMPARE(m.Filter().size(), 1);
        QCOMPARE(m.Filter()[0]->text(), QStringLiteral("It's a \"b\" $(touch PWNED); && `touch PWNED2` x"));
        m.Filter()[0]->trigger();
        QCOMPARE(DifferingPixels(form->doc.Buffer.Image(), inverted(before)), 0);
        QVERIFY(!QFile::exists(f.appFolder() + QStringLiteral("PWNED")));
        QVERIFY(!QFile::exists(f.appFolder() + QStringLiteral("PWNED2")));
    }

    void escapeStopsAProgramThatHangs()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        const QString pidFile = f.appFolder() + QStringLiteral("pid");
        // A script whose child does the waiting: Esc must stop both.
        WriteScript(f.appFolder() + QStringLiteral("effects/hang"),
                    QStringLiteral("sleep 60 &\necho $! > \"%1\"\nwait").arg(pidFile));
        frmPaint* form = f.newDocument(12, 8);
        const QImage before = form->doc.Buffer.Image().copy();
        bool strip = false;
        QTimer::singleShot(600, &m, [&] {
            strip = m.progress()->isVisible() && m.externalEffect().EffectRunning;
            QTest::keyClick(m.progress(), Qt::Key_Escape);
        });
        QElapsedTimer clock;
        clock.start();
        m.RunEffect(QStringLiteral("hang"), false);
        QVERIFY(clock.elapsed() < 5000);
        QVERIFY(strip); // the strip showed while it waited
        QVERIFY(WindowUsable(m));
        QVERIFY(f.prompt.shown.isEmpty());
        QCOMPARE(DifferingPixels(form->doc.Buffer.Image(), before), 0);
        const pid_t child = pid_t(ReadFile(pidFile).trimmed().toInt());
        QVERIFY(child > 0);
        QTRY_VERIFY(::kill(child, 0) != 0);
    }

    // The outside editor has the focus when it writes: the picture is still the one
    // it was given, and the result comes back with its undo step.
    void resultComesBackWhileAnotherWindowHasTheFocus()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        WriteScript(f.appFolder() + QStringLiteral("effects/slow"), QStringLiteral("sleep 0.5\n") + kInvert);
        frmPaint* form = f.newDocument(12, 8);
        form->doc.Buffer.setPicture(Pattern(12, 8));
        const QImage before = form->doc.Buffer.Image().copy();
        QApplication::setActiveWindow(&m);
        QTRY_VERIFY(m.isActiveWindow());
        // The focus goes to another program's window.
        QTimer::singleShot(200, &m, [] {
            QApplication::setActiveWindow(nullptr);
            QEvent away(QEvent::ApplicationDeactivate);
            QCoreApplication::sendEvent(qApp, &away);
        });
        m.RunEffect(QStringLiteral("slow"), false);
        QVERIFY(!m.isActiveWindow());
        QVERIFY(f.prompt.shown.isEmpty());
        QCOMPARE(DifferingPixels(form->doc.Buffer.Image(), inverted(before)), 0);
        QVERIFY(m.UndoEnabled());
        m.Undo_Click();
        QCOMPARE(DifferingPixels(form->doc.Buffer.Image(), before), 0);
    }

    void programsReadColoursAndThicknessFromTheSettings()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        // Fake editors beside the program, which a user's own copies would be.
        WriteScript(f.appFolder() + QStringLiteral("VeluntaExt1"), QStringLiteral("exit 0"));
        WriteScript(f.appFolder() + QStringLiteral("VeluntaExt2"), QStringLiteral("exit 0"));
        f.newDocument(8, 8);
        m.state().ForeColor = RGB(10, 20, 30);
        m.state().BackColor = RGB(40, 50, 60);
        m.state().SelectorValues[6].Value = 7;
        m.action(MenuId::mnuBezier)->trigger();
        CompanionSettings seen = ReadCompanionSettings();
        QCOMPARE(seen.SelectedColor, RGB(10, 20, 30));
        QCOMPARE(seen.SelectedBackColor, RGB(40, 50, 60));
        QCOMPARE(seen.CircleThickness, 7);
        m.state().SelectorValues[6].Value = 9;
        m.CmdCommands(22)->click();
        seen = ReadCompanionSettings();
        QCOMPARE(seen.LineThickness, 9);
        QVERIFY(f.prompt.shown.isEmpty());
    }

    // Last: the close ends the application's event loops for the rest of the process.
    void closingVeluntaEndsTheWait()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        WriteScript(f.appFolder() + QStringLiteral("effects/hang"), QStringLiteral("exec sleep 60"));
        f.newDocument(12, 8);
        QTimer::singleShot(500, &m, [&] { m.close(); });
        QElapsedTimer clock;
        clock.start();
        m.RunEffect(QStringLiteral("hang"), false);
        QVERIFY(clock.elapsed() < 5000);
        QVERIFY(!m.externalEffect().EffectRunning);
        QVERIFY(f.prompt.shown.isEmpty());
    }
};

QTEST_MAIN(tst_External)
#include "tst_external.moc"
