// The real main window, offscreen: tool selection, the status read-outs, which
// commands are available, Easy Mode, the close question and the command line.

#include "document/PaintArea.h"
#include "document/frmPaint.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
#include "tools/frmControls.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QMimeData>
#include <QLabel>
#include <QMdiArea>
#include <QMenu>
#include <QMdiSubWindow>
#include <QToolButton>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

class tst_frmMain : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void toolByButtonAndKey()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument();
        f.main().Cmd(9)->click();
        QCOMPARE(f.main().state().CurrentTool, 9);
        QVERIFY(f.main().Cmd(9)->isChecked());
        QCOMPARE(f.main().controls()->shownPanel(), 9);
        // A click on the current tool keeps it pressed.
        f.main().Cmd(9)->click();
        QVERIFY(f.main().Cmd(9)->isChecked());

        QTest::keyClick(form->paintArea(), Qt::Key_M);
        QCOMPARE(f.main().state().CurrentTool, 5);
        QVERIFY(!f.main().Cmd(9)->isChecked());
        QVERIFY(f.main().Cmd(5)->isChecked());
        QCOMPARE(f.main().state().LastTool, 9);

    }

    void pointerEventsReachTheEngine()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument(100, 80);
        f.main().Cmd(5)->click();
        PaintArea* area = form->paintArea();
        // Widget pixel = view pixel + 1 (the frame); view (10, 11) is image (10, 10).
        QTest::mouseMove(area, QPoint(21, 31));
        QCOMPARE(f.main().lblCoords()->text(), QStringLiteral("20, 30"));
        QTest::mousePress(area, Qt::LeftButton, {}, QPoint(11, 12));
        QCOMPARE(form->doc.StartX, 10);
        QCOMPARE(form->doc.StartY, 10);
        QMouseEvent move(QEvent::MouseMove, QPointF(26, 41), area->mapToGlobal(QPointF(26, 41)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(area, &move);
        QCOMPARE(f.main().lblArea()->text(), QStringLiteral("15 x 30"));
        QTest::mouseRelease(area, Qt::LeftButton, {}, QPoint(26, 41));
        QVERIFY(!form->doc.Drawing);
        QCOMPARE(f.main().lblImgSize()->text(), QStringLiteral("100 x 80"));
    }

    void validateMenusStates()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        m.undo().UndoWriteSlot = 3;
        m.undo().UndoCursor = 2;
        m.undo().UndoDisabled = true;
        m.ValidateMenus();
        QVERIFY(!m.action(QStringLiteral("Close"))->isEnabled());
        QVERIFY(!m.action(QStringLiteral("Image"))->isEnabled());
        QVERIFY(!m.CmdCommands(7)->isEnabled() && m.CmdCommands(0)->isEnabled());
        for (const char* name : {"NewImage", "Open", "Exit", "mnuKidsMode", "mnuextra3", "mnuhelp(9)"})
            QVERIFY2(m.action(QString::fromLatin1(name))->isEnabled(), name);
        QVERIFY(m.undo().UndoWriteSlot == 0 && m.undo().UndoCursor == 0 && !m.undo().UndoDisabled);

        frmPaint* form = f.newDocument();
        for (const char* name : {"Close", "mnuClose", "Image"})
            QVERIFY2(m.action(QString::fromLatin1(name))->isEnabled(), name);
        QVERIFY(m.CmdCommands(7)->isEnabled());
        QVERIFY(!m.action(QStringLiteral("mnugrabmask"))->isVisible());
        // Entries whose commands aren't built stay disabled, whatever the rules say.
        for (QAction* a : m.findChildren<QAction*>())
            if (a->isEnabled() && !a->isSeparator() && !a->menu() && !a->objectName().isEmpty()
                && !a->property("windowEntry").toBool())
                QVERIFY2(m.isBuilt(a->objectName()), qPrintable(a->objectName()));

        form->doc.SelectArea.Visible = true;
        m.ValidateMenus();
        QVERIFY(m.action(QStringLiteral("mnugrabmask"))->isVisible());

        form->closeWithoutQuestion();
        MainWindowFixture::settle();
        QVERIFY(m.documents().isEmpty());
        QVERIFY(!m.action(QStringLiteral("Close"))->isEnabled());
    }

    void kidsModeHidesAndRestores()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        QAction* kids = m.action(QStringLiteral("mnuKidsMode"));
        kids->trigger();
        QVERIFY(kids->isChecked());
        for (int i = 8; i <= 22; ++i)
            QCOMPARE(m.CmdCommands(i)->isVisible(), i == 17);
        QVERIFY(m.CmdCommands(7)->isVisible());
        QVERIFY(!m.Cmd(17)->isVisible());
        for (const char* name : {"mnuExport", "PasteSpecial", "Cascade", "menuExGridSetup", "mnuextra3", "niks7"})
            QVERIFY2(!m.action(QString::fromLatin1(name))->isVisible(), name);
        QVERIFY(!m.chkSnapGrid()->isVisible());
        kids->trigger();
        QVERIFY(!kids->isChecked());
        for (int i = 8; i <= 22; ++i)
            QVERIFY(m.CmdCommands(i)->isVisible());
        QVERIFY(m.Cmd(17)->isVisible());
        QVERIFY(m.action(QStringLiteral("mnuExport"))->isVisible());
    }

    void closeAsksOnlyForDirtyActiveDocument_data()
    {
        QTest::addColumn<bool>("dirty");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("boxes");
        QTest::addColumn<bool>("closes");
        QTest::newRow("clean: no question") << false << int(vbNo) << 0 << true;
        QTest::newRow("dirty, No: stays") << true << int(vbNo) << 1 << false;
        QTest::newRow("dirty, Yes: closes") << true << int(vbYes) << 1 << true;
    }
    void closeAsksOnlyForDirtyActiveDocument()
    {
        QFETCH(bool, dirty);
        QFETCH(int, answer);
        QFETCH(int, boxes);
        QFETCH(bool, closes);
        MainWindowFixture f;
        frmPaint* other = f.newDocument();
        other->doc.Dirty = true; // not the active one: never asked about
        frmPaint* form = f.newDocument();
        form->doc.Dirty = dirty;
        const QString undo = f.appFolder() + QStringLiteral("temp/undo.bmp");
        QVERIFY(WriteFile(undo, {}));
        f.prompt.answers.enqueue(answer);
        QCloseEvent event;
        QApplication::sendEvent(&f.main(), &event);
        QCOMPARE(f.prompt.shown.size(), boxes);
        if (boxes)
            QCOMPARE(f.prompt.shown.first().text, QStringLiteral("Are you sure to close Velunta?"));
        QCOMPARE(event.isAccepted(), closes);
        QCOMPARE(QFile::exists(undo), !closes);
    }

    void commandLine_data()
    {
        QTest::addColumn<QString>("args");
        QTest::addColumn<int>("documents");
        QTest::addColumn<int>("boxes");
        QTest::newRow("five characters or fewer: nothing") << QStringLiteral("a.bmp") << 0 << 0;
        QTest::newRow("a quoted path opens") << QStringLiteral("\"%1\"") << 1 << 0;
        QTest::newRow("a plain path opens") << QStringLiteral("%1") << 1 << 0;
        QTest::newRow("one quote stays: no such file") << QStringLiteral("\"%1") << 0 << 1;
        QTest::newRow("missing file: the box") << QStringLiteral("/nowhere/picture.bmp") << 0 << 1;
    }
    void commandLine()
    {
        QFETCH(QString, args);
        QFETCH(int, documents);
        QFETCH(int, boxes);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("picture one.bmp"));
        QVERIFY(MakeImage(7, 5, [](int x, int y) { return RGB(x * 30, y * 40, 0); }).save(path, "BMP"));
        MainWindowFixture f;
        f.main().Load(args.contains(QStringLiteral("%1")) ? args.arg(path) : args);
        MainWindowFixture::settle();
        QCOMPARE(f.main().documents().size(), documents);
        QCOMPARE(f.prompt.shown.size(), boxes);
        if (boxes)
            QVERIFY(f.prompt.shown.first().text.endsWith(QStringLiteral("- doesn't exist anymore, or has been renamed.")));
        if (documents) {
            const Document& doc = f.main().documents().first()->doc;
            QCOMPARE(QPoint(doc.Buffer.ScaleWidth(), doc.Buffer.Width()), QPoint(7, 9));
            QCOMPARE(doc.Buffer.Tag, path);
            QCOMPARE(doc.Caption, path + QStringLiteral(" - 100%"));
        }
    }

    void blankPageIs642x482InASmallWindow()
    {
        QCOMPARE(BlankPageSize(700, 450, 80, 120, 90), QSize(642, 482));
        QCOMPARE(BlankPageSize(1400, 900, 80, 120, 90), QSize(1030, 710));
        MainWindowFixture f;
        f.main().StartWithBlankPage();
        const Document& doc = f.main().activeDocument()->doc;
        QVERIFY(doc.Buffer.Width() >= 642);
        QCOMPARE(doc.Caption, QStringLiteral("Untitled.bmp - 100%"));
        QCOMPARE(doc.Name, QStringLiteral("Untitled.bmp"));
    }

    void lateEventsAfterCloseDoNothing()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument();
        QPointer<PaintArea> area = form->paintArea();
        f.main().Cmd(1)->click();
        QTest::mousePress(area, Qt::LeftButton, {}, QPoint(5, 5));
        form->closeWithoutQuestion();
        // The release arrives after the window went; nothing must break.
        if (area)
            QTest::mouseRelease(area, Qt::LeftButton, {}, QPoint(6, 6));
        MainWindowFixture::settle();
        QVERIFY(f.main().documents().isEmpty());
    }

    void textSizeReachesAnOpenBox()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument(100, 80);
        f.main().Cmd(12)->click();
        f.main().PaintAreaMouseDown(*form, 1, 0, 10, 10);
        f.main().PaintAreaMouseUp(*form, 1, 0, 10, 10);
        QVERIFY(form->doc.textBox.InputVisible);
        form->PreDefZoom(200);
        f.main().state().SelectorValues[7].Value = 30;
        f.main().controls()->ApplyTextSize();
        QCOMPARE(form->doc.Buffer.FontSize, 30.0);
        QCOMPARE(form->doc.textBox.FontSize, 60.0); // the box shows the size at the zoom
    }

    void damagedFileAndDroppedFile()
    {
        QTemporaryDir dir;
        const QString damaged = dir.filePath(QStringLiteral("damaged.bmp"));
        QVERIFY(WriteFile(damaged, "BM this is no picture at all"));
        MainWindowFixture f;
        f.main().FileToOpen = damaged;
        f.main().Open_Click();
        QCOMPARE(f.prompt.shown.size(), 1);
        QVERIFY(f.prompt.shown.first().text.startsWith(u"Error loading " + damaged + u". Err nr:"));
        QCOMPARE(f.main().documents().size(), 1); // the empty window stays

        const QString good = dir.filePath(QStringLiteral("good.bmp"));
        QVERIFY(MakeImage(9, 4, [](int, int) { return RGB(5, 6, 7); }).save(good, "BMP"));
        QMimeData text;
        text.setText(QStringLiteral("not a file"));
        QVERIFY(!f.main().MDIForm_OLEDragDrop(text));
        QMimeData files;
        files.setUrls({QUrl::fromLocalFile(good), QUrl::fromLocalFile(damaged)});
        QVERIFY(f.main().MDIForm_OLEDragDrop(files));
        QCOMPARE(f.main().documents().size(), 2);
        QCOMPARE(f.main().activeDocument()->doc.Buffer.Tag, good);
    }
};

QTEST_MAIN(tst_frmMain)
#include "tst_frmmain.moc"
