// Lines, arrows, rectangles, ellipses and 3D frames: the barbs of an arrow, the
// one-pixel quadrant rule, the click that is one dot, the Shift lock and the frames'
// passes; and in every drag, nothing reaches the picture before the release.

#include "core/Gdi.h"
#include "support/FakeHost.h"
#include "support/TestImages.h"
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
            QVERIFY2((GetPixel(s, p.x(), p.y()) == kInk) == ink.contains(p), qPrintable(QStringLiteral("%1,%2").arg(p.x()).arg(p.y())));
        QVERIFY_THROWS_EXCEPTION(DivisionByZero, DrawArrowHead(s, 4, 4, 4, 4, 5, true, 0, 60.0));
    }

    void clickIsOneDotInTheLineWidth_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("arrow");
        QTest::addColumn<QPointF>("press");
        QTest::addColumn<QPoint>("release");
        QTest::newRow("7, arrow style") << 7 << 1 << QPointF(15, 15) << QPoint(15, 15); // no arrow of no length
        // A click at 100 %: the press reads half a pixel off, and the ends meet once rounded.
        QTest::newRow("a real click at 100 %") << 3 << 0 << QPointF(14.5, 14.5) << QPoint(14, 14);
        QTest::newRow("a real click, arrow style") << 3 << 1 << QPointF(14.5, 14.5) << QPoint(14, 14);
    }
    void clickIsOneDotInTheLineWidth()
    {
        QFETCH(int, width);
        QFETCH(int, arrow);
        QFETCH(QPointF, press);
        QFETCH(QPoint, release);
        ToolBench b(30, 30);
        b.state.CurrentTool = 14;
        b.state.ArrowStyle = arrow;
        b.state.SelectorValues[9].Value = width;
        QVERIFY(drag(b, press, release));
        const QRect dot = inkBounds(b.doc.Buffer);
        QCOMPARE(dot.size(), QSize(width, width));
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
        QTest::newRow("equal x draws nothing") << 0 << "10" << QPointF(4, 1) << QPoint(4, 6) << QStringList(7, empty);
        QTest::newRow("equal y draws nothing") << 0 << "10" << QPointF(1, 3) << QPoint(8, 3) << QStringList(7, empty);
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
        QCOMPARE(
            QRectF(b.doc.DrawCircle.Left, b.doc.DrawCircle.Top, b.doc.DrawCircle.Width, b.doc.DrawCircle.Height),
            QRectF(12, 8, 48, 32));
        const Surface& s = b.doc.Buffer;
        QCOMPARE(inkBounds(s), QRect(QPoint(6, 4), QPoint(29, 19)));
        QVERIFY(GetPixel(s, 6, 4) != kInk && GetPixel(s, 29, 19) != kInk); // round
        QCOMPARE(GetPixel(s, 18, 12), kInk);
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
};

QTEST_GUILESS_MAIN(tst_Shapes)
#include "tst_shapes.moc"
