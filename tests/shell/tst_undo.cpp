// Undo and the retouch commands in the running window: the stroke after an undo, the
// wrap to the saved file, resize undo files, "Undo to last saved image", a crop undone by
// Undo Resize, the colour replacer's undo step, and a brush size beyond the ring
// arithmetic ending the dab while the program runs on.

#include "core/Gdi.h"
#include "document/PaintArea.h"
#include "document/frmPaint.h"
#include "support/FakeHost.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// A window with a w x h document whose pixels all differ from their neighbours.
struct Window : MainWindowFixture {
    Window(int w, int h, Color fill = kNoColor)
        : form(*newDocument(w, h, fill == kNoColor ? 0xFFFFFF : fill)), doc(form.doc)
    {
        if (fill == kNoColor)
            doc.Buffer.setImage(original = Pattern(w, h));
    }
    frmPaint& form;
    Document& doc;
    QImage original;
};

} // namespace

class tst_Undo : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void strokeAfterUndoRecordsNothing()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(40, 30);
        m.Cmd(1)->click();
        f.drag(*form, {2, 2}, {20, 2});
        QCOMPARE(m.undo().UndoWriteSlot, 2);
        m.Undo_Click();
        QCOMPARE(GetPixel(form->doc.Buffer, 10, 2), Color(0xFFFFFF)); // slot 1: before the stroke
        f.drag(*form, {2, 10}, {20, 10});
        QCOMPARE(m.undo().UndoWriteSlot, 2); // recorded nothing
        QVERIFY(!m.undo().UndoSuppressed);
        f.drag(*form, {2, 20}, {20, 20});
        QCOMPARE(m.undo().UndoWriteSlot, 4); // records again
    }

    // Another program had the focus and put something on the clipboard: the picture
    // stayed the one to undo on, and its steps stayed.
    void undoStepsSurviveTheFocusLeavingVelunta()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(40, 30);
        QApplication::setActiveWindow(&m);
        m.Cmd(1)->click();
        f.drag(*form, {2, 2}, {20, 2});
        QCOMPARE(m.undo().UndoWriteSlot, 2);
        QApplication::setActiveWindow(nullptr);
        QEvent away(QEvent::ApplicationDeactivate);
        QCoreApplication::sendEvent(qApp, &away);
        QApplication::clipboard()->setText(QStringLiteral("from another program"));
        MainWindowFixture::settle();
        QCOMPARE(m.activeDocument(), form);
        QCOMPARE(m.undo().UndoWriteSlot, 2);
        QVERIFY(m.UndoEnabled());
    }

    void wrapReloadsTheSavedFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("saved.bmp"));
        QVERIFY(MakeImage(8, 6, [](int, int) { return RGB(200, 0, 0); }).save(path, "BMP"));
        MainWindowFixture f;
        frmMain& m = f.main();
        m.FileToOpen = path;
        m.Open_Click();
        frmPaint* form = m.activeDocument();
        QVERIFY(form);
        QCOMPARE(m.undo().UndoWriteSlot, 0); // the load is no step to undo to
        QVERIFY(MakeImage(8, 6, [](int, int) { return RGB(0, 0, 200); }).save(path, "BMP"));
        // No slot holds a picture: Undo goes round to the file at once.
        m.Undo_Click();
        QCOMPARE(GetPixel(form->doc.Buffer, 3, 3), RGB(0, 0, 200));
        QCOMPARE(m.undo().UndoCursor, 1);
    }

    void smallUndoFileCountsAsNone()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(10, 10);
        QVERIFY(m.ResizeImage(14, 10));
        // The program's own file, cut short.
        QVERIFY(WriteFile(f.appFolder() + QStringLiteral("temp/undo.bmp"), QByteArray(1999, 'x')));
        m.ValidateMenus();
        QVERIFY(m.action(QStringLiteral("UndoResize"))->isEnabled());
        m.Undo_Click();
        QVERIFY(!m.action(QStringLiteral("UndoResize"))->isEnabled());
        QCOMPARE(form->doc.Buffer.ScaleWidth(), 14);
        m.ValidateMenus();
        QVERIFY(!m.action(QStringLiteral("UndoResize"))->isEnabled());
    }

    // A resize undo file left in the shared temp folder by an earlier program (killed,
    // so it never removed it; or ended by Exit) or by one still running brought that
    // program's picture into a new one.
    void undoFileOfAnotherProgramIsNeverOffered_data()
    {
        QTest::addColumn<int>("end");
        QTest::newRow("left by a program that was killed") << 0;
        QTest::newRow("left by Exit") << 1;
        QTest::newRow("of a program still running") << 2;
    }
    void undoFileOfAnotherProgramIsNeverOffered()
    {
        QFETCH(int, end);
        QTemporaryDir dir;
        const QString folder = dir.path() + QStringLiteral("/app/");
        const QString file = folder + QStringLiteral("temp/undo.bmp");
        auto first = std::make_unique<MainWindowFixture>(true, nullptr, folder);
        first->newDocument(40, 30);
        QVERIFY(first->main().ResizeImage(60, 50));
        QVERIFY(QFileInfo::exists(file));
        if (end == 0) {
            first->endWithoutClose();
        } else if (end == 1) {
            first->prompt.answers.enqueue(vbNo); // don't save the changed picture
            first->main().Exit_Click();
            QVERIFY(!QFileInfo::exists(file));
        }
        MainWindowFixture second(false, nullptr, folder);
        frmMain& m = second.main();
        frmPaint* form = second.newDocument(20, 10);
        const QSize size(form->doc.Buffer.ScaleWidth(), form->doc.Buffer.ScaleHeight());
        m.ValidateMenus();
        QVERIFY(!m.action(QStringLiteral("UndoResize"))->isEnabled());
        m.Undo_Click();
        QCOMPARE(QSize(form->doc.Buffer.ScaleWidth(), form->doc.Buffer.ScaleHeight()), size);
        if (end == 2) {
            // The second program's start left the first one's undo alone.
            first->main().ValidateMenus();
            QVERIFY(first->main().action(QStringLiteral("UndoResize"))->isEnabled());
            first->main().UndoResize_Click();
            QCOMPARE(first->main().activeDocument()->doc.Buffer.ScaleWidth(), 40);
        }
    }

    void revertOfANeverSavedPageKeepsIt()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(12, 12, RGB(1, 2, 3));
        form->doc.Name = QStringLiteral("Untitled.bmp");
        m.CmdCommands(17)->click();
        QCOMPARE(GetPixel(form->doc.Buffer, 5, 5), RGB(1, 2, 3));
        QVERIFY(form->doc.Buffer.Tag.isEmpty());
        QCOMPARE(form->doc.Caption, QStringLiteral("Untitled.bmp - 100%"));
        QCOMPARE(m.undo().UndoWriteSlot, 1); // the button records after reverting
    }

    void cropThenUndoResizeRestores_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QPointF>("from"); // view positions: at 100 view x + 0.5 reads image x,
        QTest::addColumn<QPointF>("to");   // at 200 view 2x + 1 does
        QTest::newRow("zoom 100") << 100.0 << QPointF(10.5, 8.5) << QPointF(40.5, 30.5);
        QTest::newRow("zoom 100, dragged up") << 100.0 << QPointF(40.5, 30.5) << QPointF(10.5, 8.5);
        QTest::newRow("zoom 200") << 200.0 << QPointF(21, 17) << QPointF(81, 61);
    }
    void cropThenUndoResizeRestores()
    {
        QFETCH(double, zoom);
        QFETCH(QPointF, from);
        QFETCH(QPointF, to);
        Window f(60, 40);
        frmMain& m = f.main();
        f.form.PreDefZoom(zoom);
        m.Cmd_Click(7);
        f.drag(f.form, from, to);
        QCOMPARE(DifferingPixels(f.doc.Buffer.Image(), f.original.copy(10, 8, 30, 22)), 0);
        QVERIFY(!f.doc.CropArea.Visible);
        QCOMPARE(f.form.paintArea()->width(), int(30 * zoom / 100) + 2);
        QVERIFY(m.action(QStringLiteral("UndoResize"))->isEnabled());
        m.Undo_Click(); // a pending resize undo goes first
        QCOMPARE(DifferingPixels(f.doc.Buffer.Image(), f.original), 0);
        QCOMPARE(f.form.paintArea()->width(), int(60 * zoom / 100) + 2);
        QVERIFY(!m.action(QStringLiteral("UndoResize"))->isEnabled());
    }

    // The replacer's command is one undo step when it changes a pixel, and none for equal
    // colours or after Cancel forgot them.
    void replaceColorsIsOneUndoStep_data()
    {
        QTest::addColumn<Color>("to");
        QTest::addColumn<bool>("cancelled");
        QTest::addColumn<bool>("changes");
        QTest::newRow("red to green") << RGB(0, 255, 0) << false << true;
        QTest::newRow("equal colours") << RGB(255, 0, 0) << false << false;
        QTest::newRow("after Cancel") << RGB(0, 255, 0) << true << false;
    }
    void replaceColorsIsOneUndoStep()
    {
        QFETCH(Color, to);
        QFETCH(bool, cancelled);
        QFETCH(bool, changes);
        Window f(20, 10, RGB(255, 0, 0));
        frmMain& m = f.main();
        Line(f.doc.Buffer, 8, 0, 8, 10, RGB(0, 0, 255));
        const QImage before = f.doc.Buffer.Image().copy();
        const int slot = m.undo().UndoWriteSlot;
        m.state().ReplaceColors = {RGB(255, 0, 0), to};
        if (cancelled)
            m.CancelReplace();
        m.Replacecolors();
        QCOMPARE(m.undo().UndoWriteSlot, changes ? slot + 1 : slot);
        QCOMPARE(f.doc.Dirty, changes);
        if (changes) {
            QCOMPARE(RowsOf(f.doc.Buffer, to)[0], QStringLiteral("########.###########"));
            m.Undo_Click();
        }
        QCOMPARE(f.doc.Buffer.Image(), before);
    }

    void replaceInsideTheFloatingSelection()
    {
        Window f(20, 10, RGB(255, 0, 0));
        Surface& sel = ShowFloat(f.doc, {10, 2, 4, 4}, RGB(255, 0, 0));
        f.main().state().ReplaceColors = {RGB(255, 0, 0), RGB(0, 0, 0)};
        f.main().Replacecolors();
        QCOMPARE(GetPixel(sel, 0, 0), Color(0));
        // The view's refresh stamps the selection; the picture around it keeps its red.
        QCOMPARE(GetPixel(f.doc.Buffer, 11, 3), Color(0));
        QCOMPARE(GetPixel(f.doc.Buffer, 3, 3), RGB(255, 0, 0));
    }

    void sizeAbove181EndsTheDabAndTheProgramRunsOn()
    {
        Window f(60, 40);
        f.main().Cmd_Click(13);
        f.main().state().SelectorValues[8].Value = 200;
        f.drag(f.form, {20.5, 20.5}, {30.5, 20.5});
        QCOMPARE(DifferingPixels(f.original, f.doc.Buffer.Image()), 0);
        QVERIFY(!f.doc.Drawing);
        // The next dab of a size the walk can count works as ever.
        f.main().state().SelectorValues[8].Value = 10;
        f.drag(f.form, {20.5, 20.5}, {30.5, 20.5});
        QVERIFY(DifferingPixels(f.original, f.doc.Buffer.Image()) > 0);
    }
};

QTEST_MAIN(tst_Undo)
#include "tst_undo.moc"
