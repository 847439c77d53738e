// The pointer pipeline and the keyboard: view-to-image mapping, snapping, the undo
// points of a stroke, the context menu rules, the zoom tool's steps, the picker's
// return, the read-outs above 100 % and the tool keys; and the rectangular selection:
// the lift, the drag of the float, the paste placement, the fill of Cut and Clear and
// the float's previews.

#include "core/Gdi.h"
#include "support/FakeHost.h"
#include "support/TestImages.h"
#include "tools/PointerPipeline.h"
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

class tst_Pipeline : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void viewToImage()
    {
        // View pixel v is image (v - 0.5) * 100 / zoom, rounded half to even: at 100 %
        // 10 reads 9.5 -> 10, 11 reads 10.5 -> 10; at 200 % 6 reads 2.5 -> 2.
        const auto image = [](double view, double zoom) { return int(I2(ViewToImage(view, zoom))); };
        const QList<int> read{image(10, 100), image(11, 100), image(12, 100),
                              image(7, 200),  image(6, 200),  image(10, 50)};
        QCOMPARE(read, QList<int>({10, 10, 12, 3, 2, 20}));
    }

    void snapRoundsHalvesToEvenOnlyWhilePressed()
    {
        float x = 15, y = 25;
        SnapPoint(x, y, 10, 10); // 1.5 -> 2, 2.5 -> 2
        QCOMPARE(QPointF(x, y), QPointF(20, 20));
        x = 14, y = 0;
        SnapPoint(x, y, 0, 4); // a step below 1 counts as 10
        QCOMPARE(QPointF(x, y), QPointF(10, 0));

        ToolBench b;
        b.state.CurrentTool = 5;
        b.state.SnapToGrid = true;
        PaintArea_MouseMove(b.ctx, b.doc, kNoButton, 0, 13, 17);
        QCOMPARE(b.host.coords, QStringLiteral("13, 17")); // hovering is never snapped
        PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 13, 17);
        QCOMPARE(QPointF(b.doc.Buffer.CurrentX, b.doc.Buffer.CurrentY), QPointF(9.5, 19.5)); // 10, 20
        PaintArea_MouseUp(b.ctx, b.doc, kLeftButton, 0, 13, 17);
        QVERIFY(!b.doc.SnapPressed);
    }

    void undoPointsOfAStroke_data()
    {
        QTest::addColumn<int>("tool");
        QTest::addColumn<bool>("selection");
        QTest::addColumn<int>("noUndoNext");
        QTest::addColumn<int>("expected");
        QTest::newRow("pencil: press and release") << 1 << false << 0 << 2;
        QTest::newRow("inside a selection: none") << 1 << true << 0 << 0;
        QTest::newRow("no-undo flag: none") << 1 << false << 1 << 0;
        QTest::newRow("zoom: none") << 2 << false << 0 << 0;
        QTest::newRow("picker: none") << 8 << false << 0 << 0;
        QTest::newRow("select area: press only") << 5 << false << 0 << 1;
    }
    void undoPointsOfAStroke()
    {
        QFETCH(int, tool);
        QFETCH(bool, selection);
        QFETCH(int, noUndoNext);
        QFETCH(int, expected);
        ToolBench b;
        b.state.CurrentTool = tool;
        b.state.LastTool = 0;
        b.state.NoUndoNextStroke = noUndoNext;
        b.doc.SelectArea.Visible = selection;
        b.doc.BufferSelected.setScaleSize(40, 30);
        b.mouse({{5, 5}, {8, 8}});
        QCOMPARE(b.host.prepUndoCalls, expected);
    }

    void rightPress_data()
    {
        QTest::addColumn<int>("tool");
        QTest::addColumn<double>("zoom");
        QTest::addColumn<int>("menus");
        QTest::addColumn<bool>("drawing");
        QTest::newRow("rectangles at 100: the menu, no stroke") << 9 << 100.0 << 1 << false;
        QTest::newRow("rectangles at 200: nothing at all") << 9 << 200.0 << 0 << false;
        QTest::newRow("pencil at 300: draws, no menu") << 1 << 300.0 << 0 << true;
        QTest::newRow("replacer: no menu") << 17 << 100.0 << 0 << false;
        QTest::newRow("picker tracks the right button") << 8 << 100.0 << 0 << true;
    }
    void rightPress()
    {
        QFETCH(int, tool);
        QFETCH(double, zoom);
        QFETCH(int, menus);
        QFETCH(bool, drawing);
        ToolBench b;
        b.state.CurrentTool = tool;
        b.doc.ZoomFactor = zoom;
        PaintArea_MouseDown(b.ctx, b.doc, kRightButton, 0, 4, 4);
        QCOMPARE(b.host.contextMenus, menus);
        QCOMPARE(b.doc.Drawing, drawing);
    }

    void zoomToolSteps_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<int>("button");
        QTest::addColumn<double>("next");
        QTest::newRow("90 in -> 100") << 90.0 << 1 << 100.0;
        QTest::newRow("100 in -> 200") << 100.0 << 1 << 200.0;
        QTest::newRow("200 out -> 100") << 200.0 << 2 << 100.0;
        QTest::newRow("100 out -> 90") << 100.0 << 2 << 90.0;
        QTest::newRow("500 in: stays") << 500.0 << 1 << 500.0;
        QTest::newRow("10 out: stays") << 10.0 << 2 << 10.0;
    }
    void zoomToolSteps()
    {
        QFETCH(double, zoom);
        QFETCH(int, button);
        QFETCH(double, next);
        ToolBench b;
        b.state.CurrentTool = 2;
        b.doc.ZoomFactor = zoom;
        b.mouse({{10, 10}}, button);
        QCOMPARE(b.doc.ZoomFactor, next);
        if (next != zoom) {
            // The clicked point keeps its share of the bars: ratios of the view before the change.
            QCOMPARE(b.view.realigns.last().first, 10.0 / b.doc.view.paintHeight);
            QCOMPARE(b.host.zoomOptionsCleared, 1);
        }
    }

    void pickerReturnsToLastTool_data()
    {
        QTest::addColumn<int>("lastTool");
        QTest::addColumn<int>("after");
        QTest::newRow("from lines back to lines") << 14 << 14;
        QTest::newRow("from pencil back") << 1 << 1;
        for (int stays : {0, 5, 7, 2, 17})
            QTest::addRow("from %d: stays", stays) << stays << 8;
    }
    void pickerReturnsToLastTool()
    {
        QFETCH(int, lastTool);
        QFETCH(int, after);
        ToolBench b;
        b.state.CurrentTool = 8;
        b.state.LastTool = lastTool;
        b.mouse({{3, 3}});
        QCOMPARE(b.state.CurrentTool, after);
    }

    void readoutsAtZoom200AreaIsZero()
    {
        ToolBench b(100, 100);
        b.state.CurrentTool = 9;
        b.doc.ZoomFactor = 200;
        PaintArea_MouseMove(b.ctx, b.doc, kNoButton, 0, 41, 41);
        // Across by float division, down by integer division: (41 - 1) / 200 * 100 and (41 - 1) * 100 \ 200.
        QCOMPARE(b.host.coords, QStringLiteral("20, 20"));
        PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 10, 10);
        PaintArea_MouseMove(b.ctx, b.doc, kLeftButton, 0, 60, 60);
        // 100 \ 200 is 0, so above 100 the size reads the start position itself: (10 - 1) / 2 -> 4.
        QCOMPARE(b.host.area, QStringLiteral("4 x 4"));
        // The 3D tool's pointer leaves the read-out alone.
        b.state.CurrentTool = 16;
        b.view.pointer = 16;
        b.host.area = QStringLiteral("unchanged");
        b.mouse({{2, 2}, {9, 9}});
        QCOMPARE(b.host.area, QStringLiteral("unchanged"));
    }

    void toolKeys_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("tool");
        const struct {
            char key;
            int tool;
        } table[] = {{'M', 5}, {'O', 7},  {'Z', 2},  {'A', 6},  {'P', 1},  {'G', 4},
                     {'F', 3}, {'E', 10}, {'B', 9},  {'S', 13}, {'T', 12}, {'+', 11},
                     {'Y', 8}, {'D', 18}, {'-', 15}, {'3', 16}, {'L', 14}};
        for (const auto& row : table)
            QTest::newRow(QByteArray(1, row.key).constData()) << int(row.key) << row.tool;
    }
    void toolKeys()
    {
        QFETCH(int, key);
        QFETCH(int, tool);
        ToolBench b;
        b.state.CurrentTool = 1;
        Form_KeyDown(b.ctx, b.doc, key, 0);
        QCOMPARE(b.state.CurrentTool, tool);
    }

    void escHidesSelectionOnCleanImageElseUndoes()
    {
        ToolBench b;
        b.host.undoEnabled = true;
        b.doc.Dirty = true;
        // The text tool keeps letters and Esc for its box.
        b.state.CurrentTool = 12;
        for (int key : {int('M'), int('P'), int('Z'), int(kKeyEscape)})
            Form_KeyDown(b.ctx, b.doc, key, 0);
        QCOMPARE(b.state.CurrentTool, 12);
        QVERIFY(b.host.selected.isEmpty());
        b.state.CurrentTool = 5;
        b.doc.Dirty = false;
        b.doc.SelectArea.Visible = true;
        Form_KeyDown(b.ctx, b.doc, kKeyEscape, 0);
        QVERIFY(!b.doc.SelectArea.Visible);
        QCOMPARE(b.host.undoCalls, 0);
        b.doc.SelectArea.Visible = true;
        b.doc.Dirty = true;
        Form_KeyDown(b.ctx, b.doc, kKeyEscape, 0);
        QCOMPARE(b.host.undoCalls, 1);
    }

    void arrowKeysDrawOneDabEach()
    {
        ToolBench b;
        b.state.CurrentTool = 1;
        b.doc.LastX = 10;
        b.doc.LastY = 10;
        Form_KeyDown(b.ctx, b.doc, kKeyRight, 0);
        Form_KeyDown(b.ctx, b.doc, kKeyDown, 0);
        QVERIFY(b.doc.KeyPointerActive && b.doc.KeyShortcutsOff);
        QCOMPARE(QPointF(b.doc.KeyPointerX, b.doc.KeyPointerY), QPointF(11, 11));
        QCOMPARE(b.host.prepUndoCalls, 4); // each key is one press and release
        // Not at another zoom.
        b.doc.ZoomFactor = 200;
        Form_KeyDown(b.ctx, b.doc, kKeyRight, 0);
        QCOMPARE(b.doc.KeyPointerX, 11.0);
    }

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
        // So does the pointer's press outside it.
        b.drag(5, {5, 5}, {15, 15});
        b.state.CurrentTool = 0;
        PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 30, 25);
        QVERIFY(!b.doc.SelectArea.Visible && !b.doc.SelectionLifted);
        QCOMPARE(b.host.area, QStringLiteral("0 x 0"));
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

    void moveFollowsThePointerAtEveryZoom()
    {
        for (double zoom : {50.0, 150.0, 300.0}) {
            Positions b(200, 200);
            b.doc.ZoomFactor = zoom;
            b.doc.view.paintWidth = b.doc.view.paintHeight = int(200 * zoom / 100) + 2;
            const double f = zoom / 100;
            b.drag(5, QPoint(int(20 * f), int(20 * f)), QPoint(int(60 * f), int(60 * f)));
            const double left = b.doc.BufferSelected.Left;
            // Drag the float by 40 picture pixels: 40 x zoom / 100 view pixels.
            b.drag(0, QPoint(int(30 * f), int(30 * f)), QPoint(int(70 * f), int(30 * f)));
            QVERIFY2(std::abs(b.doc.BufferSelected.Left - (left + 40)) <= 1.5,
                     qPrintable(QString::number(zoom)));
        }
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

    void preview_data()
    {
        QTest::addColumn<Color>("key"); // kNoColor: blend at the ratio instead
        QTest::addColumn<int>("ratio");
        QTest::addColumn<Color>("result"); // at the float's key-coloured pixel
        QTest::newRow("key that doesn't occur: unchanged") << RGB(1, 1, 1) << 0 << RGB(255, 0, 0);
        QTest::newRow("key shows what lies under") << RGB(255, 0, 0) << 0 << RGB(0, 0, 255);
        QTest::newRow("blend 255: the float alone") << kNoColor << 255 << RGB(255, 0, 0);
        QTest::newRow("blend 0: what lies under") << kNoColor << 0 << RGB(0, 0, 255);
        QTest::newRow("blend 127: half way, half to even") << kNoColor << 127 << RGB(127, 0, 128);
    }
    void preview()
    {
        QFETCH(Color, key);
        QFETCH(int, ratio);
        QFETCH(Color, result);
        ToolBench b;
        b.doc.Buffer.BackColor = RGB(0, 0, 255);
        b.doc.Buffer.Cls();
        PlaceFloat(b.doc, MakeImage(6, 6, [](int, int) { return RGB(255, 0, 0); }));
        QVERIFY(PreviewFloat(b.doc, key != kNoColor, key, key == kNoColor, ratio, NoProgress));
        QCOMPARE(GetPixel(b.doc.BufferSelected, 2, 2), result);
        QCOMPARE(GetPixel(b.doc.Buffer, 2, 2), result);
        CancelFloatPreview(b.doc); // the float's own pixels come back
        QCOMPARE(GetPixel(b.doc.BufferSelected, 2, 2), RGB(255, 0, 0));
    }
};

QTEST_GUILESS_MAIN(tst_Pipeline)
#include "tst_pipeline.moc"
