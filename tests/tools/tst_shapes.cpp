// Lines, arrows, rectangles, ellipses and 3D frames (nothing reaches the picture
// before the release), the fill tool's modes, brushes and drags, and the gradient's
// angle, snaps, direction, short drags and doubled index inside a selection.

#include "core/Gdi.h"
#include "support/FakeHost.h"
#include "support/TestImages.h"
#include "tools/Gradient.h"
#include "tools/PointerPipeline.h"
#include "tools/Shapes.h"

#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

constexpr Color kInk = RGB(0, 0, 0);

// A drag of the current tool in picture pixels: the press leaves the pen at `from`,
// a move goes by `via`, one with `shift` to `to`, and the release comes there. False
// when the picture changed before the release.
bool drag(ToolBench& b, QPointF from, QPoint to, double zoom = 100, QPoint via = {}, bool shift = false)
{
    const QImage before = b.doc.Buffer.Image().copy();
    b.doc.Buffer.CurrentX = from.x();
    b.doc.Buffer.CurrentY = from.y();
    b.dispatch(int(from.x()), int(from.y()), 1, false, zoom);
    if (!via.isNull())
        b.dispatch(via.x(), via.y(), 1, false, zoom);
    b.dispatch(to.x(), to.y(), 1, shift, zoom);
    const bool untouched = b.doc.Buffer.Image() == before;
    b.dispatch(to.x(), to.y(), 0, shift, zoom);
    return untouched && !b.doc.FollowLine.Visible && !b.doc.DrawBox.Visible && !b.doc.DrawCircle.Visible;
}

QRect inkBounds(const Surface& s)
{
    QRect r;
    for (int y = 0; y < s.ScaleHeight(); ++y)
        for (int x = 0; x < s.ScaleWidth(); ++x)
            r |= GetPixel(s, x, y) == kInk ? QRect(x, y, 1, 1) : QRect();
    return r;
}

constexpr Color kWhite = 0xFFFFFF;
constexpr Color kRed = RGB(255, 0, 0);
constexpr Color kBlue = RGB(0, 0, 255);

// One stroke of the current tool through the tool engine: press, moves, release.
void stroke(ToolBench& b, const QList<QPoint>& points)
{
    ++b.doc.StrokeSerial;
    b.doc.Buffer.CurrentX = points.first().x();
    b.doc.Buffer.CurrentY = points.first().y();
    for (const QPoint& p : points)
        b.dispatch(p.x(), p.y(), 1, false, b.doc.ZoomFactor);
    b.dispatch(points.last().x(), points.last().y(), 0, false, b.doc.ZoomFactor);
}

// A fill stroke in blue over a white 24 x 16 picture with a red wall down column 10.
QStringList filledRows(bool border, const QList<QPoint>& points)
{
    ToolBench b(24, 16);
    Line(b.doc.Buffer, 10, 0, 10, 16, kRed);
    b.state.CurrentTool = 3;
    b.state.FloodFillBorder = border;
    b.state.ForeColor = kBlue;
    stroke(b, points);
    return RowsOf(b.doc.Buffer, kBlue);
}

// A level gradient drag of 20 pixels from (10, 5), from black to (0, 0, 200).
void levelGradient(ToolBench& b)
{
    b.state.CurrentTool = 4;
    b.state.ForeColor = RGB(0, 0, 0);
    b.state.BackColor = RGB(0, 0, 200);
    stroke(b, {{10, 5}, {30, 5}});
}

} // namespace

class tst_Shapes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void arrowBarbs_data()
    {
        QTest::addColumn<QLine>("shaft");
        QTest::addColumn<double>("size");
        QTest::addColumn<QList<QPoint>>("ink");
        QTest::addColumn<QList<QPoint>>("clear");
        // Right, size 5: barbs from (30, 20) towards (25, 25) and (25, 15), their ends left out.
        QTest::newRow("right") << QLine(10, 20, 30, 20) << 5.0
                               << QList<QPoint>{{10, 20}, {29, 20}, {30, 20}, {29, 21},
                                                {26, 24}, {29, 19}, {26, 16}}
                               << QList<QPoint>{{25, 25}, {25, 15}, {31, 20}, {9, 20}};
        // Up and left, size 3: the unit direction is (-0.707, -0.707), so the barbs are
        // (4.24, 0) and (0, 4.24): along the axes from the tip.
        QTest::newRow("diagonal") << QLine(20, 20, 10, 10) << 3.0
                                  << QList<QPoint>{{10, 10}, {11, 10}, {13, 10}, {10, 11}, {10, 13}}
                                  << QList<QPoint>{{14, 10}, {10, 14}, {9, 9}};
    }
    void arrowBarbs()
    {
        QFETCH(QLine, shaft);
        QFETCH(double, size);
        QFETCH(QList<QPoint>, ink);
        QFETCH(QList<QPoint>, clear);
        Surface s = MakeSurface(40, 40);
        DrawArrowHead(s, shaft.x1(), shaft.y1(), shaft.x2(), shaft.y2(), size, true, 0, 60.0);
        for (const QPoint& p : ink + clear)
            QVERIFY2((GetPixel(s, p.x(), p.y()) == kInk) == ink.contains(p),
                     qPrintable(QStringLiteral("%1,%2").arg(p.x()).arg(p.y())));
        QVERIFY_THROWS_EXCEPTION(DivisionByZero, DrawArrowHead(s, 4, 4, 4, 4, 5, true, 0, 60.0));
    }

    void clickIsOneDotInTheLineWidth_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("arrow");
        QTest::addColumn<QPointF>("press"); // the release comes at the pixel the press is in
        QTest::newRow("7, arrow style") << 7 << 1 << QPointF(15, 15); // no arrow of no length
        // A click at 100 %: the press reads half a pixel off, and the ends meet once rounded.
        QTest::newRow("a real click at 100 %") << 3 << 0 << QPointF(14.5, 14.5);
        QTest::newRow("a real click, arrow style") << 3 << 1 << QPointF(14.5, 14.5);
    }
    void clickIsOneDotInTheLineWidth()
    {
        QFETCH(int, width);
        QFETCH(int, arrow);
        QFETCH(QPointF, press);
        const QPoint release(int(press.x()), int(press.y()));
        ToolBench b(30, 30);
        b.state.CurrentTool = 14;
        b.state.ArrowStyle = arrow;
        b.state.SelectorValues[9].Value = width;
        QVERIFY(drag(b, press, release));
        QCOMPARE(inkBounds(b.doc.Buffer).size(), QSize(width, width));
        QCOMPARE(GetPixel(b.doc.Buffer, release.x(), release.y()), kInk);
    }

    void shiftLocksNearUprightLines_data()
    {
        QTest::addColumn<QPoint>("via");
        QTest::addColumn<QPoint>("release");
        QTest::addColumn<QRect>("ink");
        // After a move within 2 view pixels of upright, Shift puts the press point above the pointer.
        QTest::newRow("near upright locks") << QPoint(11, 30) << QPoint(13, 36) << QRect(13, 10, 1, 26);
        QTest::newRow("near level locks") << QPoint(30, 11) << QPoint(36, 13) << QRect(10, 13, 26, 1);
        QTest::newRow("slanted stays free") << QPoint(20, 30) << QPoint(20, 30) << QRect(10, 10, 10, 20);
    }
    void shiftLocksNearUprightLines()
    {
        QFETCH(QPoint, via);
        QFETCH(QPoint, release);
        QFETCH(QRect, ink);
        ToolBench b(40, 40);
        b.state.CurrentTool = 14;
        QVERIFY(drag(b, {10, 10}, release, 100, via, true));
        QCOMPARE(inkBounds(b.doc.Buffer), ink);
    }

    void rectangleQuadrants_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QString>("corner");
        QTest::addColumn<QPointF>("press");
        QTest::addColumn<QPoint>("release");
        QTest::addColumn<QStringList>("expected");
        const QString empty(10, u'.');
        const QStringList box{empty, empty, "..####....", "..#..#....", "..####....", empty, empty};
        const QStringList filled{empty, empty, "..####....", "..####....", "..####....", empty, empty};
        // Whichever corner the drag starts from, the box covers 2..5 x 2..4: the far edges
        // come one pixel short of the larger coordinates.
        QTest::newRow("from top left") << 0 << "10" << QPointF(2, 2) << QPoint(6, 5) << box;
        QTest::newRow("from bottom right") << 0 << "10" << QPointF(6, 5) << QPoint(2, 2) << box;
        QTest::newRow("from bottom left") << 0 << "10" << QPointF(2, 5) << QPoint(6, 2) << box;
        QTest::newRow("from top right") << 0 << "10" << QPointF(6, 2) << QPoint(2, 5) << box;
        QTest::newRow("equal x draws nothing")
            << 0 << "10" << QPointF(4, 1) << QPoint(4, 6) << QStringList(7, empty);
        QTest::newRow("equal y draws nothing")
            << 0 << "10" << QPointF(1, 3) << QPoint(8, 3) << QStringList(7, empty);
        QTest::newRow("fill only") << 2 << "10" << QPointF(6, 5) << QPoint(2, 2) << filled;
        QTest::newRow("round, no corner text: square") << 3 << "" << QPointF(2, 2) << QPoint(6, 5) << box;
    }
    void rectangleQuadrants()
    {
        QFETCH(int, style);
        QFETCH(QString, corner);
        QFETCH(QPointF, press);
        QFETCH(QPoint, release);
        QFETCH(QStringList, expected);
        ToolBench b(10, 7);
        b.state.CurrentTool = 9;
        b.state.ShapeStyle = style;
        b.state.RoundCornersText = corner;
        b.state.SelectorValues[5].Value = 1;
        QVERIFY(drag(b, press, release));
        QCOMPARE(RowsOf(b.doc.Buffer, kInk), expected);
    }

    void ellipseComesBackFromTheZoomedBand()
    {
        // At 200 % the rubber ellipse lies in view pixels; the figure comes back from it.
        ToolBench b(40, 30);
        b.state.CurrentTool = 10;
        b.state.ShapeStyle = 2;
        QVERIFY(drag(b, {6, 4}, {30, 20}, 200));
        QCOMPARE(QRectF(b.doc.DrawCircle.Left, b.doc.DrawCircle.Top, b.doc.DrawCircle.Width,
                        b.doc.DrawCircle.Height),
                 QRectF(12, 8, 48, 32));
        const Surface& s = b.doc.Buffer;
        QCOMPARE(inkBounds(s), QRect(QPoint(6, 4), QPoint(29, 19)));
        QVERIFY(GetPixel(s, 6, 4) != kInk && GetPixel(s, 29, 19) != kInk); // round
        QCOMPARE(GetPixel(s, 18, 12), kInk);
    }

    // With a wide border the square box, the rounded one and the ellipse all take the
    // same room: the pen is centred on the dragged outline, half of it outside.
    void thickRoundShapeSmallerThanSquare_data()
    {
        QTest::addColumn<int>("tool");
        QTest::addColumn<int>("style");
        QTest::newRow("square border") << 9 << 0;
        QTest::newRow("square border and fill") << 9 << 1;
        QTest::newRow("round border") << 9 << 3;
        QTest::newRow("round border and fill") << 9 << 4;
        QTest::newRow("ellipse border") << 10 << 0;
        QTest::newRow("ellipse border and fill") << 10 << 1;
    }
    void thickRoundShapeSmallerThanSquare()
    {
        QFETCH(int, tool);
        QFETCH(int, style);
        ToolBench b(80, 60);
        b.state.CurrentTool = tool;
        b.state.ShapeStyle = style;
        b.state.RoundCornersText = QStringLiteral("12");
        b.state.BackColor = RGB(0, 200, 0);
        b.state.SelectorValues[5].Value = 9;
        b.state.SelectorValues[6].Value = 9;
        QVERIFY(drag(b, {20, 15}, {60, 45}));
        // The box 20..59 x 15..44 grown by 4 on every side.
        QCOMPARE(inkBounds(b.doc.Buffer), QRect(QPoint(16, 11), QPoint(63, 48)));
        if (style == 1 || style == 4) // the fill starts five pixels in
            QCOMPARE(GetPixel(b.doc.Buffer, 40, 20), RGB(0, 200, 0));
    }

    void frame3DPasses_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QString>("thickness");
        QTest::addColumn<bool>("backwards");
        QTest::addColumn<int>("rim"); // pixels changed from the left edge inwards
        QTest::newRow("0 is one pass") << 0 << "0" << false << 2;
        QTest::newRow("2 is three passes") << 0 << "2" << false << 4;
        QTest::newRow("dragged backwards, same frame") << 0 << "2" << true << 4;
        QTest::newRow("bump steps by 2") << 2 << "3" << false << 4;
    }
    void frame3DPasses()
    {
        QFETCH(int, style);
        QFETCH(QString, thickness);
        QFETCH(bool, backwards);
        QFETCH(int, rim);
        const Color grey = RGB(200, 100, 50);
        ToolBench b(30, 30);
        b.doc.Buffer.BackColor = grey;
        b.doc.Buffer.Cls();
        b.state.CurrentTool = 16;
        b.state.ShapeStyle = style;
        b.state.Size3DText = thickness;
        QVERIFY(backwards ? drag(b, {25, 25}, {5, 5}) : drag(b, {5, 5}, {25, 25}));
        const Surface& s = b.doc.Buffer;
        int changed = 0;
        while (changed < 10 && GetPixel(s, 5 + changed, 15) != grey)
            ++changed;
        QCOMPARE(changed, rim);
        // The frame lies within 5..24.
        QVERIFY(GetPixel(s, 24, 15) != grey && GetPixel(s, 25, 15) == grey && GetPixel(s, 4, 15) == grey);
    }

    void fillModes_data()
    {
        QTest::addColumn<bool>("border");
        QTest::addColumn<QList<QPoint>>("points");
        QTest::addColumn<QString>("row");
        // No blue to stop at: the red wall is filled over as well.
        QTest::newRow("to the foreground, none there: all")
            << true << QList<QPoint>{{3, 3}} << QString(24, u'#');
        QTest::newRow("the clicked colour")
            << false << QList<QPoint>{{3, 3}} << QString(10, u'#') + QString(14, u'.');
        QTest::newRow("a drag fills at every sample")
            << false << QList<QPoint>{{3, 3}, {15, 3}} << QString(10, u'#') + u'.' + QString(13, u'#');
    }
    void fillModes()
    {
        QFETCH(bool, border);
        QFETCH(QList<QPoint>, points);
        QFETCH(QString, row);
        QCOMPARE(filledRows(border, points), QStringList(16, row));
    }

    void patternCell_data()
    {
        QTest::addColumn<int>("pattern");
        QTest::addColumn<QString>("cell"); // eight rows of eight
        QTest::newRow("solid") << 0 << QString(64, u'#');
        QTest::newRow("transparent") << 1 << QString(64, u'.');
        QTest::newRow("horizontal") << 2 << QString(24, u'.') + QString(8, u'#') + QString(32, u'.');
        QTest::newRow("vertical") << 3 << QStringLiteral("....#...").repeated(8);
        QTest::newRow("upward diagonal")
            << 4 << ".......#......#......#......#......#......#......#......#.......";
        QTest::newRow("downward diagonal")
            << 5 << "#........#........#........#........#........#........#........#";
        QTest::newRow("cross") << 6 << "....#.......#.......#...########....#.......#.......#.......#...";
        QTest::newRow("diagonal cross")
            << 7 << "#......#.#....#...#..#.....##......##.....#..#...#....#.#......#";
    }
    void patternCell()
    {
        QFETCH(int, pattern);
        QFETCH(QString, cell);
        ToolBench b(8, 8);
        b.state.CurrentTool = 3;
        b.state.FillPattern = pattern;
        b.state.ForeColor = kBlue;
        stroke(b, {{5, 6}});
        QCOMPARE(RowsOf(b.doc.Buffer, kBlue).join(QString()), cell);
    }

    void dragRepeatsNoWorkInsideItsFill()
    {
        ToolBench b(64, 48);
        b.state.CurrentTool = 3;
        b.state.FillPattern = 7;
        b.state.ForeColor = kBlue;
        b.state.FloodFillBorder = true;
        const Surface& s = b.doc.Buffer;
        ++b.doc.StrokeSerial;
        b.dispatch(5, 5);
        const QImage filled = s.Image().copy();
        // The hatch cut the region into pieces; samples in any of them, and on the hatch,
        // repaint nothing.
        b.view.invalidated = QRect();
        for (const QPoint p : {QPoint(40, 30), QPoint(3, 3), QPoint(60, 2), QPoint(11, 1)})
            b.dispatch(p.x(), p.y());
        QCOMPARE(b.view.invalidated, QRect());
        QCOMPARE(s.Image(), filled);
        // A new stroke starts afresh: the same press fills again, in red now.
        b.state.ForeColor = kRed;
        stroke(b, {{40, 30}});
        QCOMPARE(GetPixel(s, 3, 3), kRed);
    }

    void lineAngle_data()
    {
        QTest::addColumn<QLineF>("line");
        QTest::addColumn<double>("angle");
        QTest::newRow("right") << QLineF(0, 0, 10, 0) << 0.0;
        QTest::newRow("down right") << QLineF(0, 0, 10, 10) << 45.0;
        QTest::newRow("down left, shallow") << QLineF(30, 0, 0, 10) << 180 - 18.434948822922;
        QTest::newRow("up left") << QLineF(10, 10, 0, 0) << 225.0;
        QTest::newRow("up right") << QLineF(0, 10, 10, 0) << 315.0;
        QTest::newRow("one point") << QLineF(4, 4, 4, 4) << 90.0;
    }
    void lineAngle()
    {
        QFETCH(QLineF, line);
        QFETCH(double, angle);
        QVERIFY(qAbs(LineAngle(line.x1(), line.y1(), line.x2(), line.y2()) - angle) < 1e-9);
    }

    void snapAngle()
    {
        // Within half a degree of a right angle the angle snaps to it, across 0 too.
        const QList<double> snapped{SnapAngle(0.4), SnapAngle(359.5), SnapAngle(89.5), SnapAngle(89),
                                    SnapAngle(269.2)};
        QCOMPARE(snapped, QList<double>({0, 0, 90, 89, 270}));
    }

    void shortDragChangesOnlyTheLabel()
    {
        ToolBench b(40, 30);
        b.state.CurrentTool = 4;
        b.state.ForeColor = kRed;
        // Picture (11.5, 11.5) to (12, 11): the band has no length, and a point reads 90.
        PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 12, 12);
        PaintArea_MouseMove(b.ctx, b.doc, kLeftButton, 0, 13, 12);
        QCOMPARE(qMakePair(b.host.angle, b.host.angleAlignment), qMakePair(QStringLiteral("90 °"), 1));
        PaintArea_MouseUp(b.ctx, b.doc, kLeftButton, 0, 13, 12);
        QCOMPARE(qMakePair(b.host.angle, b.host.angleAlignment), qMakePair(QStringLiteral("N/A"), 2));
        QCOMPARE(RowsOf(b.doc.Buffer, kWhite), QStringList(30, QString(40, u'#')));
    }

    void levelDragLaysRowsDown()
    {
        // A drag to the right lays level strips from the press row downwards, one band's
        // length deep: the foreground at the top, the background at its foot.
        ToolBench b(40, 40);
        levelGradient(b);
        const Surface& s = b.doc.Buffer;
        QCOMPARE(GetPixel(s, 0, 3), kWhite);
        QCOMPARE(GetPixel(s, 0, 5), RGB(0, 0, 0));
        QCOMPARE(GetPixel(s, 39, 25), RGB(0, 0, 200));
        QCOMPARE(GetPixel(s, 20, 28), kWhite);
        for (int y = 5; y < 25; ++y) {
            QCOMPARE(RowsOf(s, GetPixel(s, 0, y))[y], QString(40, u'#')); // level
            QVERIFY(ColorBlue(GetPixel(s, 0, y + 1)) >= ColorBlue(GetPixel(s, 0, y)));
        }
    }

    void selectionReachesTheBackgroundAtMidBand()
    {
        ToolBench b(40, 40);
        Surface& sel = b.doc.BufferSelected;
        sel.setScaleSize(40, 40);
        sel.Cls();
        b.doc.SelectArea.Visible = true;
        levelGradient(b);
        // Row y ends with the strip of row y + 1 over it; the strip of row 15 is ten pixels
        // down the twenty-pixel band and has index 20.
        QCOMPARE(GetPixel(sel, 0, 14), RGB(0, 0, 200));
        QCOMPARE(GetPixel(sel, 0, 9), RGB(0, 0, 90));
        // Past mid-band the index runs on beyond the background and is held at the limit.
        QCOMPARE(GetPixel(sel, 0, 24), RGB(0, 0, 255));
    }
};

QTEST_GUILESS_MAIN(tst_Shapes)
#include "tst_shapes.moc"
