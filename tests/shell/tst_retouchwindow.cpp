// The retouch tools in the running window: a crop undone by Undo Resize, the colour
// replacer's command and its undo step, and a brush size beyond the ring arithmetic
// ending the dab while the program runs on.

#include "core/Gdi.h"
#include "document/PaintArea.h"
#include "document/frmPaint.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QAction>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// A picture in which every pixel differs from its neighbours.
QImage pattern(int w, int h)
{
    return MakeImage(w, h, [](int x, int y) { return RGB(4 * x, 5 * y, (x * 7 + y * 3) % 256); });
}

void drag(frmMain& m, frmPaint* form, QPointF from, QPointF to)
{
    m.PaintAreaMouseDown(*form, 1, 0, float(from.x()), float(from.y()));
    m.PaintAreaMouseMove(*form, 1, 0, float(to.x()), float(to.y()));
    m.PaintAreaMouseUp(*form, 1, 0, float(to.x()), float(to.y()));
}

} // namespace

class tst_RetouchWindow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cropThenUndoResizeRestores_data();
    void cropThenUndoResizeRestores();
    void replaceColorsIsOneUndoStep();
    void replaceWithEqualColoursOrAfterCancelChangesNothing();
    void replaceInsideTheFloatingSelection();
    void sizeAbove181EndsTheDabAndTheProgramRunsOn();
};

void tst_RetouchWindow::cropThenUndoResizeRestores_data()
{
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QPointF>("from"); // view positions
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<QRect>("block"); // the picture's block that remains
    // At 100 view x + 0.5 reads image x; at 200 view 2x + 1 does.
    QTest::newRow("zoom 100") << 100.0 << QPointF(10.5, 8.5) << QPointF(40.5, 30.5) << QRect(10, 8, 30, 22);
    QTest::newRow("zoom 100, dragged up")
        << 100.0 << QPointF(40.5, 30.5) << QPointF(10.5, 8.5) << QRect(10, 8, 30, 22);
    QTest::newRow("zoom 200") << 200.0 << QPointF(21, 17) << QPointF(81, 61) << QRect(10, 8, 30, 22);
}

void tst_RetouchWindow::cropThenUndoResizeRestores()
{
    QFETCH(double, zoom);
    QFETCH(QPointF, from);
    QFETCH(QPointF, to);
    QFETCH(QRect, block);
    MainWindowFixture f;
    frmMain& m = f.main();
    frmPaint* form = f.newDocument(60, 40);
    const QImage original = pattern(60, 40);
    form->doc.Buffer.setImage(original);
    if (zoom != 100)
        form->PreDefZoom(zoom);
    m.Cmd_Click(7);
    drag(m, form, from, to);

    const Surface& buffer = form->doc.Buffer;
    QCOMPARE(buffer.Image().size(), block.size());
    QCOMPARE(DifferingPixels(buffer.Image(), original.copy(block)), 0);
    QVERIFY(!form->doc.CropArea.Visible);
    QCOMPARE(form->paintArea()->width(), int(block.width() * zoom / 100) + 2);
    QVERIFY(m.action(QStringLiteral("UndoResize"))->isEnabled());

    m.Undo_Click(); // a pending resize undo goes first
    QCOMPARE(buffer.Image().size(), original.size());
    QCOMPARE(DifferingPixels(buffer.Image(), original), 0);
    QCOMPARE(form->paintArea()->width(), int(60 * zoom / 100) + 2);
    QVERIFY(!m.action(QStringLiteral("UndoResize"))->isEnabled());
}

void tst_RetouchWindow::replaceColorsIsOneUndoStep()
{
    MainWindowFixture f;
    frmMain& m = f.main();
    frmPaint* form = f.newDocument(20, 10);
    form->doc.Buffer.setImage(
        MakeImage(20, 10, [](int x, int) { return x < 8 ? RGB(255, 0, 0) : RGB(0, 0, 255); }));
    m.state().ReplaceColors = {RGB(255, 0, 0), RGB(0, 255, 0)};
    const int slot = m.undo().UndoWriteSlot;
    m.Replacecolors();
    QCOMPARE(RowsOf(form->doc.Buffer, RGB(0, 255, 0))[0], QStringLiteral("########............"));
    QCOMPARE(m.undo().UndoWriteSlot, slot + 1);
    QVERIFY(form->doc.Dirty);
    m.Undo_Click();
    QCOMPARE(GetPixel(form->doc.Buffer, 3, 3), RGB(255, 0, 0));
    QVERIFY(m.builtOperations().contains(QStringLiteral("Replacecolors")));
}

void tst_RetouchWindow::replaceWithEqualColoursOrAfterCancelChangesNothing()
{
    MainWindowFixture f;
    frmMain& m = f.main();
    frmPaint* form = f.newDocument(20, 10);
    form->doc.Buffer.setImage(pattern(20, 10));
    const QImage before = form->doc.Buffer.Image().copy();
    const int slot = m.undo().UndoWriteSlot;
    const Color c = GetPixel(form->doc.Buffer, 4, 4);
    m.state().ReplaceColors = {c, c};
    m.Replacecolors();
    m.state().ReplaceColors = {c, RGB(1, 2, 3)};
    m.CancelReplace();
    QCOMPARE(m.state().ReplaceColors[0], kNoColor);
    m.Replacecolors();
    QCOMPARE(DifferingPixels(before, form->doc.Buffer.Image()), 0);
    QCOMPARE(m.undo().UndoWriteSlot, slot);
    QVERIFY(!form->doc.Dirty);
    QVERIFY(m.builtOperations().contains(QStringLiteral("CancelReplace")));
}

void tst_RetouchWindow::replaceInsideTheFloatingSelection()
{
    MainWindowFixture f;
    frmMain& m = f.main();
    frmPaint* form = f.newDocument(20, 10, RGB(255, 0, 0));
    Document& doc = form->doc;
    doc.BufferSelected.BackColor = RGB(255, 0, 0);
    doc.BufferSelected.setScaleSize(4, 4);
    doc.BufferSelected.Cls();
    doc.BufferSelected.Left = 10;
    doc.BufferSelected.Top = 2;
    doc.SelectArea.Visible = true;
    m.state().ReplaceColors = {RGB(255, 0, 0), RGB(0, 0, 0)};
    m.Replacecolors();
    QCOMPARE(GetPixel(doc.BufferSelected, 0, 0), Color(0));
    // The view's refresh stamps the selection; the picture around it keeps its red.
    QCOMPARE(GetPixel(doc.Buffer, 11, 3), Color(0));
    QCOMPARE(GetPixel(doc.Buffer, 3, 3), RGB(255, 0, 0));
}

void tst_RetouchWindow::sizeAbove181EndsTheDabAndTheProgramRunsOn()
{
    MainWindowFixture f;
    frmMain& m = f.main();
    frmPaint* form = f.newDocument(60, 40);
    form->doc.Buffer.setImage(pattern(60, 40));
    const QImage before = form->doc.Buffer.Image().copy();
    m.Cmd_Click(13);
    m.state().SelectorValues[8].Value = 200;
    drag(m, form, {20.5, 20.5}, {30.5, 20.5});
    QCOMPARE(DifferingPixels(before, form->doc.Buffer.Image()), 0);
    QVERIFY(!form->doc.Drawing);
    // The next dab of a size the walk can count works as ever.
    m.state().SelectorValues[8].Value = 10;
    drag(m, form, {20.5, 20.5}, {30.5, 20.5});
    QVERIFY(DifferingPixels(before, form->doc.Buffer.Image()) > 0);
}

QTEST_MAIN(tst_RetouchWindow)
#include "tst_retouchwindow.moc"
