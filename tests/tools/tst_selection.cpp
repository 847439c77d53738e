// The rectangular selection without a window: the lift, the copy-drag of the float,
// the paste placement, the fill of Cut and Clear, and the float's previews.

#include "core/Gdi.h"
#include "support/FakeHost.h"
#include "support/TestImages.h"
#include "tools/Selection.h"

#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// A bench whose pixels tell their position, so moved pixels can be recognised.
struct Positions : ToolBench {
    Positions(int w = 40, int h = 30) : ToolBench(w, h)
    {
        paint([](int x, int y) { return RGB(x * 6 % 256, y * 8 % 256, 100); });
    }
    void drag(int tool, QPointF from, QPointF to)
    {
        state.CurrentTool = tool;
        mouse({from, to});
    }
    Color at(int x, int y) const { return GetPixel(doc.Buffer, x, y); }
};

} // namespace

class tst_Selection : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void marqueeLiftsTheAreaAndAClickDropsIt()
    {
        Positions b;
        b.drag(5, {5, 4}, {15, 12});
        const Surface& sel = b.doc.BufferSelected;
        QVERIFY(b.doc.SelectArea.Visible && b.doc.SelectionLifted);
        QCOMPARE(QRectF(sel.Left, sel.Top, sel.Width(), sel.Height()), QRectF(4.5, 3.5, 10, 8));
        QCOMPARE(GetPixel(sel, 0, 0), b.at(4, 4)); // 4.5 rounds half to even
        QCOMPARE(DifferingPixels(b.doc.SelectedBack.Image(), sel.Image()), 0);
        b.drag(5, {20, 20}, {20, 20});
        QVERIFY(!b.doc.SelectArea.Visible);
    }

    void moveCopiesAndCutLeavesBackground()
    {
        Positions b;
        const Color original = b.at(6, 6);
        b.drag(5, {5, 5}, {15, 15});
        b.drag(0, {8, 8}, {28, 18}); // 20 across, 10 down
        // What the float covered is restored; the float now stands 20 and 10 further.
        QCOMPARE(b.at(6, 6), original);
        QCOMPARE(b.at(26, 16), original);
        FillSelection(b.doc, RGB(9, 9, 9));
        QCOMPARE(b.at(26, 16), RGB(9, 9, 9));
        QCOMPARE(b.at(6, 6), original);
    }

    void pressOutsideDropsTheSelection()
    {
        Positions b;
        b.drag(5, {5, 5}, {15, 15});
        b.state.CurrentTool = 0;
        PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 30, 25);
        QVERIFY(!b.doc.SelectArea.Visible && !b.doc.SelectionLifted);
        QCOMPARE(b.host.area, QStringLiteral("0 x 0"));
    }

    void moveFollowsThePointerAtEveryZoom_data()
    {
        QTest::addColumn<double>("zoom");
        for (double zoom : {50.0, 150.0, 300.0})
            QTest::addRow("%g", zoom) << zoom;
    }
    void moveFollowsThePointerAtEveryZoom()
    {
        QFETCH(double, zoom);
        Positions b(200, 200);
        b.doc.ZoomFactor = zoom;
        b.doc.view.paintWidth = b.doc.view.paintHeight = int(200 * zoom / 100) + 2;
        const double f = zoom / 100;
        b.drag(5, QPoint(int(20 * f), int(20 * f)), QPoint(int(60 * f), int(60 * f)));
        const double left = b.doc.BufferSelected.Left;
        // Drag the float by 40 picture pixels: 40 x zoom / 100 view pixels.
        b.drag(0, QPoint(int(30 * f), int(30 * f)), QPoint(int(70 * f), int(30 * f)));
        QVERIFY(std::abs(b.doc.BufferSelected.Left - (left + 40)) <= 1.5);
    }

    void pasteLandsAtVisibleTopLeft()
    {
        ToolBench b(200, 150);
        b.doc.ZoomFactor = 200;
        b.doc.view.paintLeft = -100; // scrolled: the view shows from view pixel 100
        b.doc.view.paintTop = -60;
        PlaceFloat(b.doc, MakeImage(10, 8, [](int x, int) { return RGB(x * 20, 0, 0); }));
        QCOMPARE(QPointF(b.doc.BufferSelected.Left, b.doc.BufferSelected.Top), QPointF(50, 30));
        QCOMPARE(QSizeF(b.doc.SelectArea.Width, b.doc.SelectArea.Height), QSizeF(20, 16)); // twice the clip
        QCOMPARE(GetPixel(b.doc.Buffer, 53, 31), RGB(60, 0, 0));
        QVERIFY(b.doc.SelectionLifted);
    }

    void selectAllThenClearPaintsBackground()
    {
        Positions b;
        SelectAll(b.doc);
        FillSelection(b.doc, RGB(1, 2, 3));
        QCOMPARE(RowsOf(b.doc.Buffer, RGB(1, 2, 3)).join(QString()).count(u'.'), 0);
    }

    void preview_data()
    {
        QTest::addColumn<bool>("transparent");
        QTest::addColumn<Color>("key");
        QTest::addColumn<bool>("blend");
        QTest::addColumn<int>("ratio");
        QTest::addColumn<Color>("result"); // at the float's key-coloured pixel
        QTest::newRow("key that doesn't occur: unchanged")
            << true << RGB(1, 1, 1) << false << 0 << RGB(255, 0, 0);
        QTest::newRow("key shows what lies under") << true << RGB(255, 0, 0) << false << 0 << RGB(0, 0, 255);
        QTest::newRow("blend 255: the float alone") << false << kNoColor << true << 255 << RGB(255, 0, 0);
        QTest::newRow("blend 0: what lies under") << false << kNoColor << true << 0 << RGB(0, 0, 255);
        QTest::newRow("blend 127: half way, half to even")
            << false << kNoColor << true << 127 << RGB(127, 0, 128);
    }
    void preview()
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
};

QTEST_GUILESS_MAIN(tst_Selection)
#include "tst_selection.moc"
