// The rectangular selection without a window: the lift, the copy-drag of the float,
// the paste placement, the fill of Cut and Clear, and the float's previews.

#include "core/Gdi.h"
#include "support/FakeHost.h"
#include "support/TestImages.h"
#include "tools/PointerPipeline.h"
#include "tools/Selection.h"

#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// A picture whose pixel tells its position, so moved pixels can be recognised.
void paintPositions(Document& doc)
{
    doc.Buffer.setImage(MakeImage(40, 30, [](int x, int y) { return RGB(x * 6, y * 8, 100); }));
}

void drag(ToolBench& b, int tool, QPoint from, QPoint to)
{
    b.state.CurrentTool = tool;
    PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, from.x(), from.y());
    PaintArea_MouseMove(b.ctx, b.doc, kLeftButton, 0, to.x(), to.y());
    PaintArea_MouseUp(b.ctx, b.doc, kLeftButton, 0, to.x(), to.y());
}

} // namespace

class tst_Selection : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void marqueeLiftsTheArea();
    void clickWithoutDragDropsIt();
    void moveCopiesAndCutLeavesBackground();
    void pressOutsideDropsTheSelection();
    void moveFollowsThePointerAtEveryZoom_data();
    void moveFollowsThePointerAtEveryZoom();
    void pasteLandsAtVisibleTopLeft();
    void selectAllThenClearPaintsBackground();
    void preview_data();
    void preview();
};

void tst_Selection::marqueeLiftsTheArea()
{
    ToolBench b;
    paintPositions(b.doc);
    drag(b, 5, {5, 4}, {15, 12});
    QVERIFY(b.doc.SelectArea.Visible);
    const Surface& sel = b.doc.BufferSelected;
    QCOMPARE(sel.Left, 4.5);
    QCOMPARE(sel.Width(), 10);
    QCOMPARE(sel.Height(), 8);
    QCOMPARE(GetPixel(sel, 0, 0), GetPixel(b.doc.Buffer, 4, 4)); // 4.5 rounds half to even
    QVERIFY(b.doc.SelectionLifted);
    QCOMPARE(DifferingPixels(b.doc.SelectedBack.Image(), sel.Image()), 0);
}

void tst_Selection::clickWithoutDragDropsIt()
{
    ToolBench b;
    drag(b, 5, {5, 4}, {15, 12});
    drag(b, 5, {20, 20}, {20, 20});
    QVERIFY(!b.doc.SelectArea.Visible);
}

void tst_Selection::moveCopiesAndCutLeavesBackground()
{
    ToolBench b;
    paintPositions(b.doc);
    const Color original = GetPixel(b.doc.Buffer, 6, 6);
    drag(b, 5, {5, 5}, {15, 15});
    drag(b, 0, {8, 8}, {28, 18}); // 20 across, 10 down
    // What the float covered is restored; the float now stands 20 and 10 further.
    QCOMPARE(GetPixel(b.doc.Buffer, 6, 6), original);
    QCOMPARE(GetPixel(b.doc.Buffer, 26, 16), original);
    FillSelection(b.doc, RGB(9, 9, 9));
    QCOMPARE(GetPixel(b.doc.Buffer, 26, 16), RGB(9, 9, 9));
    QCOMPARE(GetPixel(b.doc.Buffer, 6, 6), original);
}

void tst_Selection::pressOutsideDropsTheSelection()
{
    ToolBench b;
    drag(b, 5, {5, 5}, {15, 15});
    b.state.CurrentTool = 0;
    PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 30, 25);
    QVERIFY(!b.doc.SelectArea.Visible);
    QVERIFY(!b.doc.SelectionLifted);
    QCOMPARE(b.host.area, QStringLiteral("0 x 0"));
}

void tst_Selection::moveFollowsThePointerAtEveryZoom_data()
{
    QTest::addColumn<double>("zoom");
    QTest::newRow("50") << 50.0;
    QTest::newRow("150") << 150.0;
    QTest::newRow("300") << 300.0;
}

void tst_Selection::moveFollowsThePointerAtEveryZoom()
{
    QFETCH(double, zoom);
    ToolBench b(200, 200);
    b.doc.ZoomFactor = zoom;
    b.doc.view.paintWidth = b.doc.view.paintHeight = int(200 * zoom / 100) + 2;
    const double f = zoom / 100;
    drag(b, 5, QPoint(int(20 * f), int(20 * f)), QPoint(int(60 * f), int(60 * f)));
    const double left = b.doc.BufferSelected.Left;
    // Drag the float by 40 picture pixels: 40 x zoom / 100 view pixels.
    drag(b, 0, QPoint(int(30 * f), int(30 * f)), QPoint(int(70 * f), int(30 * f)));
    QVERIFY2(std::abs(b.doc.BufferSelected.Left - (left + 40)) <= 1.5, qPrintable(QString::number(b.doc.BufferSelected.Left)));
}

void tst_Selection::pasteLandsAtVisibleTopLeft()
{
    ToolBench b(200, 150);
    b.doc.ZoomFactor = 200;
    b.doc.view.paintLeft = -100; // scrolled: the view shows from view pixel 100
    b.doc.view.paintTop = -60;
    const QImage clip = MakeImage(10, 8, [](int x, int) { return RGB(x * 20, 0, 0); });
    PlaceFloat(b.doc, clip);
    QCOMPARE(b.doc.BufferSelected.Left, 50.0);
    QCOMPARE(b.doc.BufferSelected.Top, 30.0);
    QCOMPARE(b.doc.SelectArea.Width, 20.0); // twice the clip at 200 %
    QCOMPARE(b.doc.SelectArea.Height, 16.0);
    QCOMPARE(GetPixel(b.doc.Buffer, 53, 31), RGB(60, 0, 0));
    QVERIFY(b.doc.SelectionLifted);
}

void tst_Selection::selectAllThenClearPaintsBackground()
{
    ToolBench b;
    paintPositions(b.doc);
    SelectAll(b.doc);
    FillSelection(b.doc, RGB(1, 2, 3));
    QCOMPARE(RowsOf(b.doc.Buffer, RGB(1, 2, 3)).join(QString()).count(u'.'), 0);
}

void tst_Selection::preview_data()
{
    QTest::addColumn<bool>("transparent");
    QTest::addColumn<Color>("key");
    QTest::addColumn<bool>("blend");
    QTest::addColumn<int>("ratio");
    QTest::addColumn<Color>("result"); // at the float's key-coloured pixel
    QTest::newRow("key that doesn't occur: unchanged") << true << RGB(1, 1, 1) << false << 0 << RGB(255, 0, 0);
    QTest::newRow("key shows what lies under") << true << RGB(255, 0, 0) << false << 0 << RGB(0, 0, 255);
    QTest::newRow("blend 255: the float alone") << false << kNoColor << true << 255 << RGB(255, 0, 0);
    QTest::newRow("blend 0: what lies under") << false << kNoColor << true << 0 << RGB(0, 0, 255);
    QTest::newRow("blend 127: half way, half to even") << false << kNoColor << true << 127 << RGB(127, 0, 128);
}

void tst_Selection::preview()
{
    QFETCH(bool, transparent);
    QFETCH(Color, key);
    QFETCH(bool, blend);
    QFETCH(int, ratio);
    QFETCH(Color, result);
    ToolBench b;
    b.doc.Buffer.BackColor = RGB(0, 0, 255);
    b.doc.Buffer.Cls();
    PlaceFloat(b.doc, MakeImage(6, 6, [](int, int) { return RGB(255, 0, 0); }));
    QVERIFY(PreviewFloat(b.doc, transparent, key, blend, ratio, NoProgress));
    QCOMPARE(GetPixel(b.doc.BufferSelected, 2, 2), result);
    QCOMPARE(GetPixel(b.doc.Buffer, 2, 2), result);
    CancelFloatPreview(b.doc); // the float's own pixels come back
    QCOMPARE(GetPixel(b.doc.BufferSelected, 2, 2), RGB(255, 0, 0));
}

QTEST_GUILESS_MAIN(tst_Selection)
#include "tst_selection.moc"
