// The real main window, offscreen: tool selection, the status read-outs, which
// commands are available, Easy Mode, the close question and the command line; and the
// View menu: the zoom marks, the grid as a toggle in view pixels, Grid SetUp's
// constrain and its Apply, the guideline style kept at once, and the zoomed views
// showing exact pixels.

#include "core/Gdi.h"
#include "core/SettingsStore.h"
#include "document/PaintArea.h"
#include "document/frmPaint.h"
#include "shell/frmGridSetup.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
#include "tools/frmControls.h"
#include "widgets/ColorStrip.h"

#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

#include <numeric>

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
        QVERIFY(!m.CmdCommands(7)->isEnabled()); // nothing to undo yet
        QVERIFY(m.CmdCommands(2)->isEnabled());
        QVERIFY(!m.action(QStringLiteral("mnugrabmask"))->isVisible());
        // Entries whose commands aren't built stay disabled, whatever the rules say.
        for (QAction* a : m.findChildren<QAction*>())
            if (a->isEnabled() && !a->isSeparator() && !a->menu() && !a->objectName().isEmpty() &&
                !a->property("windowEntry").toBool())
                QVERIFY2(m.isBuilt(a->objectName()), qPrintable(a->objectName()));

        form->doc.SelectArea.Visible = true;
        m.ValidateMenus();
        QVERIFY(m.action(QStringLiteral("mnugrabmask"))->isVisible());

        form->closeWithoutQuestion();
        MainWindowFixture::settle();
        QVERIFY(m.documents().isEmpty());
        QVERIFY(!m.action(QStringLiteral("Close"))->isEnabled());
    }

    // The selection and the clipboard switch their commands and buttons both ways; a rule
    // that left one on would offer Copy with nothing to copy.
    void copyAndPasteFollowSelectionAndClipboard_data()
    {
        QTest::addColumn<bool>("selection");
        QTest::addColumn<bool>("clipboard");
        QTest::newRow("neither") << false << false;
        QTest::newRow("selection only") << true << false;
        QTest::newRow("clipboard only") << false << true;
        QTest::newRow("both") << true << true;
    }
    void copyAndPasteFollowSelectionAndClipboard()
    {
        QFETCH(bool, selection);
        QFETCH(bool, clipboard);
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument();
        if (clipboard)
            QApplication::clipboard()->setImage(MakeImage(4, 4, [](int, int) { return RGB(1, 2, 3); }));
        else
            QApplication::clipboard()->clear();
        if (selection)
            m.SelectAll_Click();
        m.ValidateMenus();
        for (const char* name : {"Copy", "Cut", "ClearSelection"})
            QVERIFY2(m.action(QString::fromLatin1(name))->isEnabled() == selection, name);
        QCOMPARE(m.CmdCommands(3)->isEnabled(), selection);
        QCOMPARE(m.CmdCommands(4)->isEnabled(), selection);
        for (const char* name : {"Paste", "PasteSpecial"})
            QVERIFY2(m.action(QString::fromLatin1(name))->isEnabled() == clipboard, name);
        QCOMPARE(m.CmdCommands(6)->isEnabled(), clipboard);
        QVERIFY(form->doc.SelectArea.Visible == selection);
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
        for (const char* name :
             {"mnuExport", "PasteSpecial", "Cascade", "menuExGridSetup", "mnuextra3", "niks7"})
            QVERIFY2(!m.action(QString::fromLatin1(name))->isVisible(), name);
        QVERIFY(!m.chkSnapGrid()->isVisible());
        kids->trigger();
        QVERIFY(!kids->isChecked());
        for (int i = 8; i <= 22; ++i)
            QVERIFY(m.CmdCommands(i)->isVisible());
        QVERIFY(m.Cmd(17)->isVisible());
        QVERIFY(m.action(QStringLiteral("mnuExport"))->isVisible());
    }

    // Quitting asks the program's question when the active picture changed, then about
    // every changed picture, the ones behind the active one too.
    void quitLosesChangedPictureBehindACleanOne_data()
    {
        QTest::addColumn<bool>("activeDirty");
        QTest::addColumn<bool>("behindDirty");
        QTest::addColumn<QList<int>>("answers");
        QTest::addColumn<QStringList>("asked"); // the boxes' titles in turn
        QTest::addColumn<bool>("closes");
        QTest::addColumn<bool>("saved"); // the picture behind was written to its file
        const QString sure = QStringLiteral("Close Velunta?");
        QTest::newRow("nothing changed: no question")
            << false << false << QList<int>{} << QStringList{} << true << false;
        QTest::newRow("clean active, changed behind, No: quits")
            << false << true << QList<int>{vbNo} << QStringList{"picture"} << true << false;
        QTest::newRow("clean active, changed behind, Cancel: stays")
            << false << true << QList<int>{vbCancel} << QStringList{"picture"} << false << false;
        QTest::newRow("clean active, changed behind, Yes: saved, quits")
            << false << true << QList<int>{vbYes} << QStringList{"picture"} << true << true;
        QTest::newRow("changed active, not sure: stays")
            << true << true << QList<int>{vbNo} << QStringList{sure} << false << false;
        QTest::newRow("changed active, sure, both left unsaved: quits")
            << true << true << QList<int>{vbYes, vbNo, vbNo} << QStringList{sure, "picture", "picture"}
            << true << false;
    }
    void quitLosesChangedPictureBehindACleanOne()
    {
        QFETCH(bool, activeDirty);
        QFETCH(bool, behindDirty);
        QFETCH(QList<int>, answers);
        QFETCH(QStringList, asked);
        QFETCH(bool, closes);
        QFETCH(bool, saved);
        QTemporaryDir dir;
        MainWindowFixture f;
        frmPaint* behind = f.newDocument();
        const QString file = dir.filePath(QStringLiteral("behind.bmp"));
        behind->doc.Buffer.Tag = file;
        behind->doc.Dirty = behindDirty;
        frmPaint* form = f.newDocument();
        form->doc.Dirty = activeDirty;
        const QString undo = f.appFolder() + QStringLiteral("temp/undo.bmp");
        QVERIFY(WriteFile(undo, {}));
        for (int a : answers)
            f.prompt.answers.enqueue(a);
        QCloseEvent event;
        QApplication::sendEvent(&f.main(), &event);
        QStringList titles;
        for (const ShownBox& box : f.prompt.shown)
            titles << (box.title == QLatin1String("Close Velunta") && box.style == vbYesNo
                           ? QStringLiteral("Close Velunta?")
                           : QStringLiteral("picture"));
        QCOMPARE(titles, asked);
        if (!asked.isEmpty() && asked.first() == QLatin1String("Close Velunta?"))
            QCOMPARE(f.prompt.shown.first().text, QStringLiteral("Are you sure to close Velunta?"));
        QCOMPARE(event.isAccepted(), closes);
        QCOMPARE(QFile::exists(undo), !closes);
        QCOMPARE(QFile::exists(file), saved);
    }

    void exitAsksAboutChangedPictures()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument();
        form->doc.Dirty = true;
        f.prompt.answers.enqueue(vbCancel);
        f.main().Exit_Click();
        QCOMPARE(f.prompt.shown.size(), 1);
        QCOMPARE(f.prompt.shown.first().style, int(vbQuestionYesNoCancel));
        QVERIFY(f.main().isVisible()); // Cancel: Velunta stays
        QCOMPARE(f.main().documents().size(), 1);
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
            QVERIFY(f.prompt.shown.first().text.endsWith(
                QStringLiteral("- doesn't exist anymore, or has been renamed.")));
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
        // The room beside the bars, or 642 when that is under 400.
        QVERIFY2(doc.Buffer.Width() >= 400, qPrintable(QString::number(doc.Buffer.Width())));
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

    // An open text box takes a new size at the zoom it shows and the strip's colours,
    // and stays open: nothing is applied.
    void openTextBoxFollowsSizeAndColours()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(100, 80);
        m.Cmd(12)->click();
        m.PaintAreaMouseDown(*form, 1, 0, 10, 10);
        m.PaintAreaMouseUp(*form, 1, 0, 10, 10);
        QVERIFY(form->doc.textBox.InputVisible);
        form->PreDefZoom(200);
        m.state().SelectorValues[7].Value = 30;
        m.controls()->ApplyTextSize();
        QCOMPARE(form->doc.Buffer.FontSize, 30.0);
        QCOMPARE(form->doc.textBox.FontSize, 60.0); // the box shows the size at the zoom
        m.state().ForeColor = RGB(200, 0, 0);
        m.state().BackColor = RGB(0, 0, 90);
        Q_EMIT m.colorStrip()->colorsChanged(); // a colour picked in the strip
        QCOMPARE(form->doc.textBox.ForeColor, RGB(200, 0, 0));
        QCOMPARE(form->TextInput()->palette().color(QPalette::Text), QColor(200, 0, 0));
        QCOMPARE(form->TextInput()->palette().color(QPalette::Base), QColor(0, 0, 90));
        QVERIFY(form->doc.textBox.InputVisible);
    }

    // The letter keys of the tool table, the pointer's "C" too; with Ctrl it is a copy.
    void cKeyDoesNothing()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument();
        f.main().Cmd(9)->click();
        QTest::keyClick(form->paintArea(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(f.main().state().CurrentTool, 9);
        QTest::keyClick(form->paintArea(), Qt::Key_C);
        QCOMPARE(f.main().state().CurrentTool, 0);
    }

    // A stroke's release marks the picture changed whatever the tool, so Esc after a
    // marquee undoes and closing asks.
    void marqueeOrZoomClickLeavesPictureClean_data()
    {
        QTest::addColumn<int>("tool");
        QTest::newRow("marquee") << 5;
        QTest::newRow("zoom click") << 2;
    }
    void marqueeOrZoomClickLeavesPictureClean()
    {
        QFETCH(int, tool);
        MainWindowFixture f;
        frmPaint* form = f.newDocument(60, 40);
        f.main().Cmd_Click(tool);
        QVERIFY(!form->doc.Dirty);
        f.drag(*form, {10, 10}, {30, 25});
        QVERIFY(form->doc.Dirty);
    }

    void panelButtonsDoNothing()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument();
        m.SelectAll_Click();
        QTest::keyClick(form->paintArea(), Qt::Key_C); // the pointer, its panel not shown yet
        QVERIFY(!m.controls()->cursorPanelVisible());
        // The panel's tool icon chooses the tool again, which shows the float's options.
        QTest::mouseClick(m.controls()->control(QStringLiteral("ToolIcon(0)")), Qt::LeftButton);
        QVERIFY(m.controls()->cursorPanelVisible());
        // "Apply to Selection" and "Cancel" end with the area read-out at "0 x 0".
        for (const char* button : {"CmdButton(2)", "CmdButton(3)"}) {
            m.SetAreaText(QStringLiteral("12 x 7"));
            QTest::mouseClick(m.controls()->control(QString::fromLatin1(button)), Qt::LeftButton);
            QCOMPARE(m.lblArea()->text(), QStringLiteral("0 x 0"));
        }
        // The text tool's button shows its font preview.
        m.Cmd(12)->click();
        QVERIFY(m.controls()->fontPreview()->isVisible());
        QCOMPARE(m.controls()->fontPreview()->font().family(), QFont(m.state().FontName).family());
    }

    void easyModeLeavesHoleInToolStrip()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        m.action(QStringLiteral("mnuKidsMode"))->trigger();
        MainWindowFixture::settle();
        // Rows of the strip from the top: full pairs, only the last may hold one tool.
        QMap<int, int> perRow;
        for (int i = 0; i < kToolCount; ++i)
            if (m.Cmd(i)->isVisible())
                ++perRow[m.Cmd(i)->y()];
        const QList<int> counts = perRow.values();
        QCOMPARE(std::accumulate(counts.begin(), counts.end(), 0), kToolCount - 1);
        for (int i = 0; i + 1 < counts.size(); ++i)
            QCOMPARE(counts[i], 2);
        QCOMPARE(counts.last(), 1);
    }

    void undoResizeKeepsTheFileName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("tag");
        QTest::newRow("a picture from a file: its file again") << "/pictures/cat.bmp"
                                                               << "/pictures/cat.bmp";
        QTest::newRow("a page never saved keeps no file") << "Untitled.bmp"
                                                          << "";
    }
    void undoResizeKeepsTheFileName()
    {
        QFETCH(QString, name);
        QFETCH(QString, tag);
        MainWindowFixture f;
        frmPaint* form = f.newDocument(40, 30);
        QVERIFY(f.main().ResizeImage(45, 35)); // the program's own undo file, then its picture
        QVERIFY(MakeImage(50, 40, [](int, int) {
                    return RGB(9, 9, 9);
                }).save(f.appFolder() + QStringLiteral("temp/undo.bmp"), "BMP"));
        form->doc.Name = name;
        form->doc.Buffer.Tag.clear();
        f.main().UndoResize_Click();
        QCOMPARE(form->doc.Buffer.ScaleWidth(), 50);
        QCOMPARE(form->doc.Buffer.Tag, tag);
    }

    void gridColourWaitsForApply()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(60, 40);
        m.mnuShowGrid_Click();
        QCOMPARE(form->doc.GridColor, RGB(240, 240, 240));
        // The colour chosen in the dialog is the grid's at once, even when it is cancelled.
        QTimer::singleShot(0, [] {
            auto* dialog = qobject_cast<frmGridSetup*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            Q_EMIT dialog->gridColorChosen(RGB(255, 0, 0));
            dialog->reject();
        });
        m.menuExGridSetup_Click();
        QCOMPARE(m.GridColor, RGB(255, 0, 0));
        // The shown grid is laid anew when a step or the snap changes, not for a colour.
        GridSettings same{m.state().GridX, m.state().GridY, m.state().SnapToGrid, m.GridColor, false};
        m.ApplyGridSettings(same);
        QCOMPARE(form->doc.GridColor, RGB(240, 240, 240));
        same.SnapToGrid = !same.SnapToGrid;
        m.ApplyGridSettings(same);
        QCOMPARE(form->doc.GridColor, RGB(255, 0, 0));
    }

    void openingAFolderLeavesAnEmptyWindow()
    {
        QTemporaryDir dir;
        MainWindowFixture f;
        f.main().FileToOpen = dir.path();
        f.main().Open_Click();
        QVERIFY(f.main().documents().isEmpty());
        QCOMPARE(f.prompt.shown.size(), 1);
        QCOMPARE(f.prompt.shown.first().text,
                 dir.path() + QStringLiteral("- doesn't exist anymore, or has been renamed."));
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

    void zoomMenuMarks_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<int>("marked"); // -1: none
        QTest::newRow("100") << 100.0 << 100;
        QTest::newRow("25") << 25.0 << 25;
        QTest::newRow("110: none") << 110.0 << -1;
        QTest::newRow("75.5: the whole part") << 75.5 << 75;
    }
    void zoomMenuMarks()
    {
        QFETCH(double, zoom);
        QFETCH(int, marked);
        MainWindowFixture f;
        frmPaint* form = f.newDocument(40, 30);
        form->PreDefZoom(zoom);
        QCOMPARE(form->doc.Caption, QStringLiteral("Untitled - ") + NumberText(zoom) + QStringLiteral("%"));
        f.main().mnuView_Click();
        for (int z : {10, 25, 50, 75, 100, 150, 200})
            QCOMPARE(f.main().action(QStringLiteral("mnuZooms(%1)").arg(z))->isChecked(), z == marked);
    }

    void gridKeepsViewPixelsAcrossZooms()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument(100, 50);
        f.main().state().GridX = 20;
        f.main().state().GridY = 10;
        form->PreDefZoom(200);
        f.main().action(QStringLiteral("mnuShowGrid"))->trigger();
        QVERIFY(form->doc.GridIsShown);
        QCOMPARE(form->doc.GridColumns.first(), 20);
        QCOMPARE(form->doc.GridColumns.size(), 9); // 20..180 in a 200-pixel view
        QCOMPARE(form->doc.GridRows.size(), 9);
        form->PreDefZoom(100); // not rebuilt: the lines keep their view pixels
        QCOMPARE(form->doc.GridColumns.size(), 9);
        f.main().action(QStringLiteral("mnuShowGrid"))->trigger();
        QVERIFY(!form->doc.GridIsShown);
        QVERIFY(form->doc.GridColumns.isEmpty());
    }

    void gridSetupConstrainAndApply()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument(100, 100);
        form->doc.DrawGrid(10, 10, 0);
        GridSettings before;
        before.GridX = 0; // a step below 1 becomes 10
        before.GridY = 15;
        SettingsStore store;
        frmGridSetup dialog(before, f.prompt, store);
        QCOMPARE(dialog.txtGrid(0)->text(), QStringLiteral("10"));
        dialog.txtGrid(1)->setText(QStringLiteral("0")); // 0 doesn't reach the spin
        QCOMPARE(dialog.VScroll1(1)->value(), 15);
        dialog.Constrain()->click();
        QCOMPARE(dialog.VScroll1(1)->value(), 10);
        QVERIFY(!dialog.txtGrid(1)->isEnabled());
        dialog.VScroll1(0)->setValue(25);
        QCOMPARE(dialog.txtGrid(1)->text(), QStringLiteral("25"));
        dialog.chkSnap()->setChecked(true);
        f.main().ApplyGridSettings(dialog.settings());
        QVERIFY(f.main().state().SnapToGrid);
        QVERIFY(f.main().chkSnapGrid()->isChecked());
        // A shown grid is laid again with the new steps.
        QVERIFY(form->doc.GridIsShown);
        QCOMPARE(form->doc.GridColumns.first(), 25);
        dialog.SaveSettings();
        QCOMPARE(store.GetSetting(QStringLiteral("GridX")), QStringLiteral("25"));
        QCOMPARE(f.prompt.shown.last().title, QStringLiteral("Save Grid Settings"));
    }

    void guideLineStyleIsKeptAtOnce()
    {
        MainWindowFixture f;
        f.newDocument(20, 20);
        f.main().action(QStringLiteral("mnuGuideLineStyles(3)"))->trigger();
        QCOMPARE(SettingsStore().GetSetting(QStringLiteral("GuideLineStyle")), QStringLiteral("3"));
        QCOMPARE(f.main().activeDocument()->doc.Line1.BorderStyle, 3);
        QVERIFY(f.main().action(QStringLiteral("mnuGuideLineStyles(3)"))->isChecked());
        QVERIFY(!f.main().action(QStringLiteral("mnuGuideLineStyles(2)"))->isChecked());
    }

    void zoomedViewShowsNearestPixels_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::newRow("500") << 500.0;
        QTest::newRow("50") << 50.0;
        QTest::newRow("back to 100") << 100.0;
    }
    void zoomedViewShowsNearestPixels()
    {
        QFETCH(double, zoom);
        MainWindowFixture f;
        frmPaint* form = f.newDocument(30, 20);
        form->doc.Buffer.setImage(
            MakeImage(30, 20, [](int x, int y) { return RGB(x * 8, y * 12, (x + y) % 2 ? 255 : 0); }));
        form->PreDefZoom(zoom == 100.0 ? 300 : zoom);
        form->PreDefZoom(zoom);
        form->doc.Line1.Visible = form->doc.Line2.Visible = false; // the guidelines stand at 0, 0
        PaintArea* area = form->paintArea();
        // The view inside its one-pixel frame.
        const QImage shown = area->grab().toImage().copy(1, 1, area->width() - 2, area->height() - 2);
        const double z = zoom / 100.0;
        for (QPoint v : {QPoint(0, 0), QPoint(7, 3), QPoint(shown.width() - 1, shown.height() - 1)}) {
            const int sx = std::min(29, int(v.x() / z)), sy = std::min(19, int(v.y() / z));
            QCOMPARE(FromQRgb(shown.pixel(v)), GetPixel(form->doc.Buffer, sx, sy));
        }
    }
};

QTEST_MAIN(tst_frmMain)
#include "tst_frmmain.moc"
