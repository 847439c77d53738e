// The real main window, offscreen: tool selection, the status read-outs, which
// commands are available, the clipboard shared with other programs, the close question
// and the command line; the View menu: the zoom marks and views, the grid as a toggle in
// view pixels, Grid SetUp's constrain and its Apply. And the windows as a user meets
// them: a new picture opens wholly inside the documents' area, one step from the one
// before; Cascade leaves every window room to work in; a picture as large as the screen
// is not shrunk on open; the scroll bars move the view the way their thumbs show; the
// message boxes; and the main window fits a 1024 x 600 netbook screen.

#include "core/Gdi.h"
#include "core/SettingsStore.h"
#include "document/PaintArea.h"
#include "document/frmPaint.h"
#include "imageops/frmNew.h"
#include "shell/QtServices.h"
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
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScreen>
#include <QScrollBar>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

QMdiSubWindow* windowOf(frmPaint* form)
{
    return qobject_cast<QMdiSubWindow*>(form->parentWidget());
}

} // namespace

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
        QVERIFY(!f.main().Cmd(9)->isChecked() && f.main().Cmd(5)->isChecked());
        QCOMPARE(f.main().state().LastTool, 9);
        // The pointer's "C" too; with Ctrl it is a copy.
        QTest::keyClick(form->paintArea(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(f.main().state().CurrentTool, 5);
        QTest::keyClick(form->paintArea(), Qt::Key_C);
        QCOMPARE(f.main().state().CurrentTool, 0);
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
        QCOMPARE(QPoint(form->doc.StartX, form->doc.StartY), QPoint(10, 10));
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

        f.newDocument();
        for (const char* name : {"Close", "mnuClose", "Image"})
            QVERIFY2(m.action(QString::fromLatin1(name))->isEnabled(), name);
        QVERIFY(m.CmdCommands(2)->isEnabled());
    }

    // A rule left on would offer Copy with nothing to copy, or Paste with nothing to paste.
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
        f.newDocument();
        if (clipboard)
            QApplication::clipboard()->setImage(MakeImage(4, 4, [](int, int) { return RGB(1, 2, 3); }));
        else
            QApplication::clipboard()->clear();
        if (selection)
            m.SelectAll_Click();
        m.ValidateMenus();
        for (const char* name : {"Copy", "Cut", "ClearSelection"})
            QVERIFY2(m.action(QString::fromLatin1(name))->isEnabled() == selection, name);
        QVERIFY(m.CmdCommands(3)->isEnabled() == selection && m.CmdCommands(4)->isEnabled() == selection);
        for (const char* name : {"Paste", "PasteSpecial"})
            QVERIFY2(m.action(QString::fromLatin1(name))->isEnabled() == clipboard, name);
        QCOMPARE(m.CmdCommands(6)->isEnabled(), clipboard);
    }

    // A picture copied here is on the system clipboard; one put there by another program pastes in.
    void roundTripWithTheSystemClipboard()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(60, 40);
        const QImage outside = MakeImage(23, 17, [](int x, int y) { return RGB(x * 10, y * 12, 77); });
        QApplication::clipboard()->setImage(outside);
        m.ValidateMenus();
        m.action(QStringLiteral("Paste"))->trigger();
        QVERIFY(form->doc.SelectArea.Visible);
        QVERIFY(m.undo().UndoDisabled);
        QCOMPARE(DifferingPixels(form->doc.BufferSelected.Image(), outside), 0);
        QCOMPARE(GetPixel(form->doc.Buffer, 22, 16), RGB(220, 192, 77));

        QApplication::clipboard()->clear();
        m.action(QStringLiteral("Copy"))->trigger();
        const QImage copied = QApplication::clipboard()->image();
        QCOMPARE(DifferingPixels(copied.convertToFormat(QImage::Format_RGB32), outside), 0);
        m.Cmd_Click(1); // a tool change ends the time of the paste
        QVERIFY(!m.undo().UndoDisabled);
    }

    void cutLeavesBackgroundAndPasteWorksInAnotherPicture()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* first = f.newDocument(30, 30, RGB(0, 200, 0));
        m.state().BackColor = RGB(250, 250, 250);
        m.SelectAll_Click();
        m.Cut_Click();
        QVERIFY(!first->doc.SelectArea.Visible);
        QCOMPARE(GetPixel(first->doc.Buffer, 10, 10), RGB(250, 250, 250));
        frmPaint* second = f.newDocument(50, 50);
        m.Paste_Click();
        QCOMPARE(GetPixel(second->doc.Buffer, 5, 5), RGB(0, 200, 0));
        m.PasteSpecial_Click();
        QCOMPARE(m.activeDocument()->doc.Buffer.ScaleWidth(), 30);
        QCOMPARE(m.activeDocument()->doc.Caption, QStringLiteral("Untitled - 100%"));
    }

    // The float's first drag starts where its marquee stands, not at an earlier area's (30, 20).
    void floatJumpsOnFirstDrag_data()
    {
        QTest::addColumn<QString>("placedBy");
        QTest::addColumn<double>("zoom");
        QTest::newRow("paste") << "paste" << 100.0;
        QTest::newRow("select all") << "select all" << 100.0;
        QTest::newRow("zoom") << "zoom" << 200.0;
    }
    void floatJumpsOnFirstDrag()
    {
        QFETCH(QString, placedBy);
        QFETCH(double, zoom);
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(80, 60);
        Document& doc = form->doc;
        m.Cmd_Click(5);
        f.drag(*form, {30, 20}, {40, 30});
        if (placedBy == QLatin1String("paste")) {
            m.Cmd_Click(0);
            f.drag(*form, {70, 55}, {70, 55}); // a press outside drops the area
            QApplication::clipboard()->setImage(MakeImage(12, 10, [](int, int) { return RGB(200, 0, 0); }));
            m.Paste_Click();
        } else if (placedBy == QLatin1String("select all")) {
            m.SelectAll_Click();
        } else {
            form->PreDefZoom(zoom);
        }
        m.Cmd_Click(0);
        const double z = zoom / 100;
        const QPointF start(doc.SelectArea.Left + 3 * z, doc.SelectArea.Top + 3 * z);
        const QPointF before(doc.BufferSelected.Left, doc.BufferSelected.Top);
        f.drag(*form, start, start + QPointF(10 * z, 6 * z), 3);
        // The anchor is kept in whole view pixels: the float may settle half a pixel off.
        QVERIFY(std::abs(doc.BufferSelected.Left - (before.x() + 10)) <= 1);
        QVERIFY(std::abs(doc.BufferSelected.Top - (before.y() + 6)) <= 1);
    }

    void keyColourPickedWithThePicker()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(40, 40, RGB(255, 255, 255));
        QApplication::clipboard()->setImage(
            MakeImage(10, 10, [](int x, int) { return x < 5 ? RGB(255, 0, 0) : RGB(0, 0, 255); }));
        m.Paste_Click();
        m.Cmd_Click(0);
        auto* transparent = m.controls()->control<QCheckBox>(QStringLiteral("ChkTransparencyColor"));
        QVERIFY(transparent && transparent->isEnabled());
        transparent->click();
        // A click on the swatch arms the pick and hands over to the colour picker.
        QWidget* swatch = m.controls()->control<QWidget>(QStringLiteral("LblTransparencyColor"));
        QTest::mouseClick(swatch, Qt::LeftButton);
        MainWindowFixture::settle();
        QCOMPARE(m.state().CurrentTool, 8);
        m.PaintAreaMouseDown(*form, 1, 0, 3, 3); // a red pixel of the float
        m.PaintAreaMouseUp(*form, 1, 0, 3, 3);
        QCOMPARE(m.state().TransparencyColor, RGB(255, 0, 0));
        QCOMPARE(m.state().CurrentTool, 0);
        // Red shows what lies under the float; blue stays.
        QCOMPARE(GetPixel(form->doc.Buffer, 2, 2), RGB(255, 255, 255));
        QCOMPARE(GetPixel(form->doc.Buffer, 7, 2), RGB(0, 0, 255));
    }

    // Quitting asks the program's question when the active picture changed, then about
    // every changed picture, the ones behind the active one too.
    void quitLosesChangedPictureBehindACleanOne_data()
    {
        QTest::addColumn<bool>("activeDirty");
        QTest::addColumn<bool>("behindDirty");
        QTest::addColumn<QList<int>>("answers");
        QTest::addColumn<QStringList>("asked"); // the boxes' titles in turn
        QTest::addColumn<bool>("closes");       // (what Yes saves: tst_Save::closeQuestion)
        const QString sure = QStringLiteral("Close Velunta?");
        QTest::newRow("nothing changed: no question")
            << false << false << QList<int>{} << QStringList{} << true;
        QTest::newRow("clean active, changed behind, No: quits")
            << false << true << QList<int>{vbNo} << QStringList{"picture"} << true;
        QTest::newRow("clean active, changed behind, Cancel: stays")
            << false << true << QList<int>{vbCancel} << QStringList{"picture"} << false;
        QTest::newRow("changed active, not sure: stays")
            << true << true << QList<int>{vbNo} << QStringList{sure} << false;
        QTest::newRow("changed active, sure, both left unsaved: quits")
            << true << true << QList<int>{vbYes, vbNo, vbNo} << QStringList{sure, "picture", "picture"}
            << true;
    }
    void quitLosesChangedPictureBehindACleanOne()
    {
        QFETCH(bool, activeDirty);
        QFETCH(bool, behindDirty);
        QFETCH(QList<int>, answers);
        QFETCH(QStringList, asked);
        QFETCH(bool, closes);
        MainWindowFixture f;
        f.newDocument()->doc.Dirty = behindDirty;
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

    void undoResizeKeepsTheFileName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("tag");
        QTest::newRow("from a file: that file again") << "/pictures/cat.bmp"
                                                      << "/pictures/cat.bmp";
        QTest::newRow("never saved: no file") << "Untitled.bmp"
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

    // A folder or a damaged file gives a message and opens nothing; dropped files open,
    // the damaged one left out.
    void openingAFolderLeavesAnEmptyWindow()
    {
        QTemporaryDir dir;
        const QString damaged = dir.filePath(QStringLiteral("damaged.bmp"));
        QVERIFY(WriteFile(damaged, "BM this is no picture at all"));
        MainWindowFixture f;
        f.main().FileToOpen = dir.path();
        f.main().Open_Click();
        QVERIFY(f.main().documents().isEmpty());
        QCOMPARE(f.prompt.shown.takeFirst().text,
                 dir.path() + QStringLiteral("- doesn't exist anymore, or has been renamed."));
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

    // The grid keeps its view pixels across zooms. A colour chosen in Grid SetUp is the
    // grid's at once, even when the dialog is cancelled, and a shown grid takes it when
    // it is laid anew for a step or the snap.
    void gridKeepsViewPixelsAcrossZooms()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(100, 50);
        m.state().GridX = 20;
        m.state().GridY = 10;
        form->PreDefZoom(200);
        m.action(QStringLiteral("mnuShowGrid"))->trigger();
        QCOMPARE(form->doc.GridColor, RGB(240, 240, 240));
        QCOMPARE(form->doc.GridColumns.first(), 20);
        QCOMPARE(form->doc.GridColumns.size(), 9); // 20..180 in a 200-pixel view
        QCOMPARE(form->doc.GridRows.size(), 9);
        form->PreDefZoom(100); // not rebuilt: the lines keep their view pixels
        QCOMPARE(form->doc.GridColumns.size(), 9);
        QTimer::singleShot(0, [] {
            auto* dialog = qobject_cast<frmGridSetup*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            Q_EMIT dialog->gridColorChosen(RGB(255, 0, 0));
            dialog->reject();
        });
        m.menuExGridSetup_Click();
        QCOMPARE(m.GridColor, RGB(255, 0, 0));
        GridSettings same{m.state().GridX, m.state().GridY, m.state().SnapToGrid, m.GridColor, false};
        m.ApplyGridSettings(same);
        QCOMPARE(form->doc.GridColor, RGB(240, 240, 240));
        same.SnapToGrid = !same.SnapToGrid;
        m.ApplyGridSettings(same);
        QCOMPARE(form->doc.GridColor, RGB(255, 0, 0));
        m.action(QStringLiteral("mnuShowGrid"))->trigger();
        QVERIFY(!form->doc.GridIsShown && form->doc.GridColumns.isEmpty());
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
        QCOMPARE(form->doc.GridColumns.first(), 25); // a shown grid is laid again
        dialog.SaveSettings();
        QCOMPARE(store.GetSetting(QStringLiteral("GridX")), QStringLiteral("25"));
        QCOMPARE(f.prompt.shown.last().title, QStringLiteral("Save Grid Settings"));
    }

    // The View menu marks the zoom by its whole part, and the view shows the nearest
    // picture pixel at each zoom, back at 100 too.
    void zoomMarksAndShowsNearestPixels_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<int>("marked"); // -1: none
        QTest::newRow("back to 100") << 100.0 << 100;
        QTest::newRow("25") << 25.0 << 25;
        QTest::newRow("75.5: the whole part") << 75.5 << 75;
        QTest::newRow("500: none") << 500.0 << -1;
        QTest::newRow("50") << 50.0 << 50;
    }
    void zoomMarksAndShowsNearestPixels()
    {
        QFETCH(double, zoom);
        QFETCH(int, marked);
        MainWindowFixture f;
        frmPaint* form = f.newDocument(
            MakeImage(30, 20, [](int x, int y) { return RGB(x * 8, y * 12, (x + y) % 2 ? 255 : 0); }));
        form->PreDefZoom(300);
        form->PreDefZoom(zoom);
        QCOMPARE(form->doc.Caption, QStringLiteral("Untitled - ") + NumberText(zoom) + QStringLiteral("%"));
        f.main().mnuView_Click();
        for (int z : {10, 25, 50, 75, 100, 150, 200})
            QCOMPARE(f.main().action(QStringLiteral("mnuZooms(%1)").arg(z))->isChecked(), z == marked);
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

    void newWindowOutsideTheWorkArea()
    {
        MainWindowFixture f;
        const QRect area = f.main().mdiArea()->viewport()->rect();
        QList<QMdiSubWindow*> windows;
        // Small ones step down and right; one larger than the area is cut to fit at its
        // step; when that would leave too little, a window starts again at the top left.
        QList<QSize> sizes{QSize(100, 80), QSize(300, 200)};
        const int large = 20;
        sizes.insert(2, large, QSize(1500, 1100)); // larger than the area
        sizes << QSize(120, 90);
        for (const QSize size : sizes)
            windows << windowOf(f.newDocument(size.width(), size.height()));
        for (QMdiSubWindow* sw : windows)
            QVERIFY(area.contains(sw->geometry()));
        bool restarted = false;
        for (int i = 1; i < windows.size(); ++i) {
            const QMdiSubWindow *sw = windows[i], *before = windows[i - 1];
            if (sw->pos() == QPoint(0, 0)) {
                restarted = true;
                continue;
            }
            QVERIFY(sw->x() > before->x() && sw->y() > before->y());
            if (i >= 2 && i < 2 + large) // a large picture keeps room to work in
                QVERIFY(sw->width() >= area.width() * 2 / 3 && sw->height() >= area.height() * 2 / 3);
        }
        QVERIFY(restarted);
        QCOMPARE(windows[2]->size(), area.size() - QSize(windows[2]->x(), windows[2]->y()));
    }

    // File > New: the dialog's size and colour make the picture, in a window inside the
    // area; a size below 2 is refused with a message and makes nothing.
    void newImageDialog()
    {
        MainWindowFixture f;
        QTimer::singleShot(0, [] {
            auto* dialog = qobject_cast<frmNew*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            QCOMPARE(dialog->txtName()->text(), QStringLiteral("Untitled"));
            dialog->TxtWidth()->setText(QStringLiteral("1"));
            dialog->Command1_Click();
            QVERIFY(dialog->isVisible());
            dialog->OptSizes(3)->click(); // 1024 x 768
            QCOMPARE(dialog->TxtWidth()->text(), QStringLiteral("1024"));
            dialog->Option1(1)->click(); // black
            dialog->Command1_Click();
        });
        f.main().NewImage_Click();
        QCOMPARE(f.prompt.shown.size(), 1);
        QCOMPARE(f.prompt.shown.first().text, QStringLiteral("Invalid size"));
        frmPaint* form = f.main().activeDocument();
        QVERIFY(form);
        QCOMPARE(QSize(form->doc.Buffer.ScaleWidth(), form->doc.Buffer.ScaleHeight()), QSize(1024, 768));
        QCOMPARE(GetPixel(form->doc.Buffer, 5, 5), Color(0));
        QCOMPARE(form->doc.Caption, QStringLiteral("Untitled - 100%"));
        QVERIFY(f.main().mdiArea()->viewport()->rect().contains(windowOf(form)->geometry()));
    }

    void cascadeShrinksWindowsToTitleBars()
    {
        MainWindowFixture f;
        for (int i = 0; i < 6; ++i)
            f.newDocument(200 + 40 * i, 150);
        f.main().Cascade_Click();
        const QRect area = f.main().mdiArea()->viewport()->rect();
        for (frmPaint* form : f.main().documents()) {
            QMdiSubWindow* sw = windowOf(form);
            QVERIFY(area.contains(sw->geometry()));
            // Room to paint in, not a title bar: at least two thirds of the area.
            QVERIFY(sw->height() >= area.height() * 2 / 3 && sw->width() >= area.width() * 2 / 3);
            QVERIFY(form->height() > sw->height() / 2);
        }
    }

    void pictureAsWideAsTheScreenIsShrunk_data()
    {
        QTest::addColumn<int>("extra"); // pixels beyond the screen's width
        QTest::addColumn<double>("zoom");
        QTest::newRow("exactly as wide: stays") << 0 << 100.0;
        QTest::newRow("one pixel wider: fitted") << 1 << 25.0;
    }
    void pictureAsWideAsTheScreenIsShrunk()
    {
        QFETCH(int, extra);
        QFETCH(double, zoom);
        QTemporaryDir dir;
        MainWindowFixture f;
        const QSize screen = f.main().screen()->size();
        const QString path = dir.filePath(QStringLiteral("wide.bmp"));
        QVERIFY(MakeImage(screen.width() + extra, 8, [](int, int) { return 0xFFFFFF; }).save(path, "BMP"));
        f.main().FitBigImages = true;
        f.main().FileToOpen = path;
        f.main().Open_Click();
        QCOMPARE(f.main().activeDocument()->doc.ZoomFactor, zoom);
    }

    // The view stands at minus the bar's value: the thumb at the left shows the left
    // edge, an arrow steps by the visible width, and a bar with nothing to do is off.
    void scrollBarsMirrored()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument(3000, 40);
        QScrollBar* h = form->HScroll1();
        QVERIFY(!form->VScroll1()->isEnabled()); // 40 pixels fit
        QCOMPARE(h->value(), h->minimum());
        QCOMPARE(form->paintArea()->x(), -h->value());
        QCOMPARE(h->singleStep(), form->back()->width());
        h->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        QCOMPARE(form->paintArea()->x(), -h->value());
        QCOMPARE(h->value(), h->minimum() + form->back()->width());
        h->setValue(h->maximum()); // the right edge of the picture at the right of the view
        QCOMPARE(form->paintArea()->x() + form->paintArea()->width(), form->back()->width());
    }

    // Each style shows its own icon and buttons; the program's own values (hexadecimal 34
    // and 44, 67) before their bits.
    void messageBoxShowsNoIcon_data()
    {
        using B = QMessageBox;
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("icon");
        QTest::addColumn<int>("buttons");
        QTest::newRow("plain") << int(vbOKOnly) << int(B::NoIcon) << int(B::Ok);
        QTest::newRow("information") << int(vbInformation) << int(B::Information) << int(B::Ok);
        QTest::newRow("critical, OK and Cancel")
            << vbCritical + vbOKCancel << int(B::Critical) << int(B::Ok | B::Cancel);
        QTest::newRow("exclamation, Yes No Cancel")
            << vbExclamation + vbYesNoCancel << int(B::Warning) << int(B::Yes | B::No | B::Cancel);
        QTest::newRow("question, OK and Cancel")
            << vbQuestion + vbOKCancel << int(B::Question) << int(B::Ok | B::Cancel);
        QTest::newRow("Yes and No") << int(vbYesNo) << int(B::NoIcon) << int(B::Yes | B::No);
        QTest::newRow("hex 34: question") << int(vbQuestionYesNo) << int(B::Question) << int(B::Yes | B::No);
        QTest::newRow("hex 44: warning") << int(vbWarningYesNo) << int(B::Warning) << int(B::Yes | B::No);
        QTest::newRow("67: question, Cancel too")
            << int(vbQuestionYesNoCancel) << int(B::Question) << int(B::Yes | B::No | B::Cancel);
    }
    void messageBoxShowsNoIcon()
    {
        QFETCH(int, style);
        QFETCH(int, icon);
        QFETCH(int, buttons);
        QtPrompt prompt;
        int shownIcon = -1, shownButtons = -1;
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(box);
            shownIcon = box->icon();
            shownButtons = box->standardButtons();
            box->button(box->standardButtons() & QMessageBox::Cancel ? QMessageBox::Cancel
                        : box->standardButtons() & QMessageBox::No   ? QMessageBox::No
                                                                     : QMessageBox::Ok)
                ->click();
        });
        const int answer = prompt.MsgBox(QStringLiteral("Text"), style, QStringLiteral("Velunta"));
        QCOMPARE(shownIcon, icon);
        QCOMPARE(shownButtons, buttons);
        QCOMPARE(answer, buttons & QMessageBox::Cancel ? int(vbCancel)
                         : buttons & QMessageBox::No   ? int(vbNo)
                                                       : int(vbOK));
    }

    void mainWindowFitsANetbook()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        // Every panel, the widest too, leaves the window within 1024 pixels.
        for (int tool = 0; tool < kToolCount; ++tool) {
            m.SelectTool(tool);
            QVERIFY2(m.minimumSizeHint().width() <= 1000, qPrintable(QString::number(tool)));
        }
        QVERIFY(m.minimumSizeHint().height() <= 560);
        m.resize(1000, 560);
        MainWindowFixture::settle();
        QVERIFY(m.width() <= 1000);
        // The read-outs keep room for "4000 x 3000" and more.
        QLabel* size = m.lblImgSize();
        size->setText(QStringLiteral("40000 x 30000"));
        QVERIFY(size->width() >= size->fontMetrics().horizontalAdvance(size->text()) + 8);
    }
};

QTEST_MAIN(tst_frmMain)
#include "tst_frmmain.moc"
