// The pointer pipeline and the keyboard: view-to-image mapping, the undo points of a
// stroke, the context menu rules, the zoom tool's steps and the tool keys.

#include "support/FakeHost.h"
#include "tools/PointerPipeline.h"

#include <QtTest>

using namespace velunta;
using namespace velunta::test;

class tst_Pipeline : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void viewToImage_data();
    void viewToImage();
    void snapRoundsHalvesToEven();
    void snapOnlyWhilePressed();
    void pressAtView10_11IsImage10_10();
    void undoPointsOfAStroke_data();
    void undoPointsOfAStroke();
    void rightPress_data();
    void rightPress();
    void zoomToolSteps_data();
    void zoomToolSteps();
    void pickerReturnsToLastTool_data();
    void pickerReturnsToLastTool();
    void readoutsAtZoom100();
    void readoutsAtZoom200AreaIsZero();
    void areaReadoutSilentForTool16Pointer();
    void toolKeys_data();
    void toolKeys();
    void textToolKeepsLetters();
    void escHidesSelectionOnCleanImageElseUndoes();
    void arrowKeysDrawOneDabEach();
};

void tst_Pipeline::viewToImage_data()
{
    QTest::addColumn<double>("view");
    QTest::addColumn<double>("zoom");
    QTest::addColumn<int>("image");
    QTest::newRow("100: 10 reads 9.5 -> 10") << 10.0 << 100.0 << 10;
    QTest::newRow("100: 11 reads 10.5 -> 10") << 11.0 << 100.0 << 10;
    QTest::newRow("100: 12 reads 11.5 -> 12") << 12.0 << 100.0 << 12;
    QTest::newRow("200: 7 reads 3") << 7.0 << 200.0 << 3;
    QTest::newRow("200: 6 reads 2.5 -> 2") << 6.0 << 200.0 << 2;
    QTest::newRow("50: 10 reads 19.5 -> 20") << 10.0 << 50.0 << 20;
}

void tst_Pipeline::viewToImage()
{
    QFETCH(double, view);
    QFETCH(double, zoom);
    QFETCH(int, image);
    QCOMPARE(int(I2(ViewToImage(view, zoom))), image);
}

void tst_Pipeline::snapRoundsHalvesToEven()
{
    float x = 15, y = 25;
    SnapPoint(x, y, 10, 10); // 1.5 -> 2, 2.5 -> 2
    QCOMPARE(x, 20.f);
    QCOMPARE(y, 20.f);
    x = 14, y = 0;
    SnapPoint(x, y, 0, 4); // a step below 1 counts as 10
    QCOMPARE(x, 10.f);
    QCOMPARE(y, 0.f);
}

void tst_Pipeline::snapOnlyWhilePressed()
{
    ToolBench b;
    b.state.CurrentTool = 5;
    b.state.SnapToGrid = true;
    PaintArea_MouseMove(b.ctx, b.doc, kNoButton, 0, 13, 17);
    QCOMPARE(b.host.coords, QStringLiteral("13, 17")); // hovering is never snapped
    PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 13, 17);
    QCOMPARE(b.doc.Buffer.CurrentX, 9.5); // the press snapped to 10, 20
    QCOMPARE(b.doc.Buffer.CurrentY, 19.5);
    PaintArea_MouseUp(b.ctx, b.doc, kLeftButton, 0, 13, 17);
    QVERIFY(!b.doc.SnapPressed);
}

void tst_Pipeline::pressAtView10_11IsImage10_10()
{
    ToolBench b;
    b.state.CurrentTool = 5;
    PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 10, 11);
    QCOMPARE(b.doc.StartX, 10);
    QCOMPARE(b.doc.StartY, 10);
    QCOMPARE(b.doc.Buffer.CurrentX, 9.5);
    QCOMPARE(b.doc.Buffer.CurrentY, 10.5);
    QVERIFY(b.doc.Drawing);
}

void tst_Pipeline::undoPointsOfAStroke_data()
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

void tst_Pipeline::undoPointsOfAStroke()
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
    PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 5, 5);
    PaintArea_MouseMove(b.ctx, b.doc, kLeftButton, 0, 8, 8);
    PaintArea_MouseUp(b.ctx, b.doc, kLeftButton, 0, 8, 8);
    QCOMPARE(b.host.prepUndoCalls, expected);
}

void tst_Pipeline::rightPress_data()
{
    QTest::addColumn<int>("tool");
    QTest::addColumn<double>("zoom");
    QTest::addColumn<int>("menus");
    QTest::addColumn<bool>("drawing");
    QTest::newRow("rectangles at 100: the menu, no stroke") << 9 << 100.0 << 1 << false;
    QTest::newRow("rectangles at 200: nothing at all") << 9 << 200.0 << 0 << false;
    QTest::newRow("pencil: draws, no menu") << 1 << 100.0 << 0 << true;
    QTest::newRow("pencil at 300: draws") << 1 << 300.0 << 0 << true;
    QTest::newRow("replacer: no menu") << 17 << 100.0 << 0 << false;
    QTest::newRow("zoom tool: no menu") << 2 << 100.0 << 0 << false;
    QTest::newRow("picker tracks the right button") << 8 << 100.0 << 0 << true;
}

void tst_Pipeline::rightPress()
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

void tst_Pipeline::zoomToolSteps_data()
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

void tst_Pipeline::zoomToolSteps()
{
    QFETCH(double, zoom);
    QFETCH(int, button);
    QFETCH(double, next);
    ToolBench b;
    b.state.CurrentTool = 2;
    b.doc.ZoomFactor = zoom;
    PaintArea_MouseDown(b.ctx, b.doc, button, 0, 10, 10);
    PaintArea_MouseUp(b.ctx, b.doc, button, 0, 10, 10);
    QCOMPARE(b.doc.ZoomFactor, next);
    if (next != zoom) {
        // The clicked point keeps its share of the bars: ratios of the view before the change.
        QCOMPARE(b.view.realigns.last().first, 10.0 / b.doc.view.paintHeight);
        QCOMPARE(b.host.zoomOptionsCleared, 1);
    }
}

void tst_Pipeline::pickerReturnsToLastTool_data()
{
    QTest::addColumn<int>("lastTool");
    QTest::addColumn<int>("after");
    QTest::newRow("from lines back to lines") << 14 << 14;
    QTest::newRow("from select area: stays") << 5 << 8;
    QTest::newRow("from pointer: stays") << 0 << 8;
    QTest::newRow("from pencil back") << 1 << 1;
    QTest::newRow("from airbrush back") << 6 << 6;
    QTest::newRow("from crop: stays") << 7 << 8;
    QTest::newRow("from the replacer: stays") << 17 << 8;
}

void tst_Pipeline::pickerReturnsToLastTool()
{
    QFETCH(int, lastTool);
    QFETCH(int, after);
    ToolBench b;
    b.state.CurrentTool = 8;
    b.state.LastTool = lastTool;
    PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 3, 3);
    PaintArea_MouseUp(b.ctx, b.doc, kLeftButton, 0, 3, 3);
    QCOMPARE(b.state.CurrentTool, after);
}

void tst_Pipeline::readoutsAtZoom100()
{
    ToolBench b;
    b.state.CurrentTool = 9;
    PaintArea_MouseMove(b.ctx, b.doc, kNoButton, 0, 20, 30);
    QCOMPARE(b.host.coords, QStringLiteral("20, 30"));
    PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 10, 10);
    PaintArea_MouseMove(b.ctx, b.doc, kLeftButton, 0, 25, 40);
    // The area read-out takes the raw view position at 100.
    QCOMPARE(b.host.area, QStringLiteral("15 x 30"));
}

void tst_Pipeline::readoutsAtZoom200AreaIsZero()
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
}

void tst_Pipeline::areaReadoutSilentForTool16Pointer()
{
    ToolBench b;
    b.state.CurrentTool = 16;
    b.view.pointer = 16;
    b.host.area = QStringLiteral("unchanged");
    PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 2, 2);
    PaintArea_MouseMove(b.ctx, b.doc, kLeftButton, 0, 9, 9);
    QCOMPARE(b.host.area, QStringLiteral("unchanged"));
}

void tst_Pipeline::toolKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("tool");
    const struct {
        char key;
        int tool;
    } table[] = {{'M', 5}, {'O', 7}, {'Z', 2},  {'A', 6},  {'P', 1},  {'G', 4},  {'F', 3},  {'E', 10}, {'B', 9},
                 {'S', 13}, {'T', 12}, {'+', 11}, {'Y', 8}, {'D', 18}, {'-', 15}, {'3', 16}, {'L', 14}};
    for (const auto& row : table)
        QTest::newRow(QByteArray(1, row.key).constData()) << int(row.key) << row.tool;
}

void tst_Pipeline::toolKeys()
{
    QFETCH(int, key);
    QFETCH(int, tool);
    ToolBench b;
    b.state.CurrentTool = 1;
    Form_KeyDown(b.ctx, b.doc, key, 0);
    QCOMPARE(b.state.CurrentTool, tool);
}

void tst_Pipeline::textToolKeepsLetters()
{
    ToolBench b;
    b.state.CurrentTool = 12;
    for (int key : {int('M'), int('P'), int('Z'), int(kKeyEscape)})
        Form_KeyDown(b.ctx, b.doc, key, 0);
    QCOMPARE(b.state.CurrentTool, 12);
    QVERIFY(b.host.selected.isEmpty());
    QCOMPARE(b.host.undoCalls, 0);
}

void tst_Pipeline::escHidesSelectionOnCleanImageElseUndoes()
{
    ToolBench b;
    b.state.CurrentTool = 5;
    b.host.undoEnabled = true;
    b.doc.SelectArea.Visible = true;
    Form_KeyDown(b.ctx, b.doc, kKeyEscape, 0);
    QVERIFY(!b.doc.SelectArea.Visible);
    QCOMPARE(b.host.undoCalls, 0);
    b.doc.SelectArea.Visible = true;
    b.doc.Dirty = true;
    Form_KeyDown(b.ctx, b.doc, kKeyEscape, 0);
    QCOMPARE(b.host.undoCalls, 1);
}

void tst_Pipeline::arrowKeysDrawOneDabEach()
{
    ToolBench b;
    b.state.CurrentTool = 1;
    b.doc.LastX = 10;
    b.doc.LastY = 10;
    Form_KeyDown(b.ctx, b.doc, kKeyRight, 0);
    Form_KeyDown(b.ctx, b.doc, kKeyDown, 0);
    QVERIFY(b.doc.KeyPointerActive);
    QCOMPARE(b.doc.KeyPointerX, 11.0);
    QCOMPARE(b.doc.KeyPointerY, 11.0);
    // Each key is one press and release: two undo points each.
    QCOMPARE(b.host.prepUndoCalls, 4);
    QVERIFY(b.doc.KeyShortcutsOff);
    // Not at another zoom.
    b.doc.ZoomFactor = 200;
    Form_KeyDown(b.ctx, b.doc, kKeyRight, 0);
    QCOMPARE(b.doc.KeyPointerX, 11.0);
}

QTEST_GUILESS_MAIN(tst_Pipeline)
#include "tst_pipeline.moc"
