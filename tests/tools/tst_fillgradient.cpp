// The fill tool's two modes, its brushes and its drags; the gradient's angle, its
// snaps, its direction, its short drags and its doubled index inside a selection.

#include "core/Gdi.h"
#include "support/FakeHost.h"
#include "support/TestImages.h"
#include "tools/Gradient.h"
#include "tools/PointerPipeline.h"

#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

constexpr Color kWhite = 0xFFFFFF;
constexpr Color kRed = RGB(255, 0, 0);
constexpr Color kBlue = RGB(0, 0, 255);

// One stroke of the current tool through the tool engine: press, moves, release.
void stroke(ToolBench& b, const QList<QPoint>& points)
{
    Surface& s = b.doc.Buffer;
    ++b.doc.StrokeSerial;
    s.CurrentX = points.first().x();
    s.CurrentY = points.first().y();
    double zoom = b.doc.ZoomFactor;
    bool drawing = true;
    for (const QPoint& p : points)
        ToolDispatch(b.ctx, b.doc, s, p.x(), p.y(), zoom, drawing, 1, false);
    drawing = false;
    ToolDispatch(b.ctx, b.doc, s, points.last().x(), points.last().y(), zoom, drawing, 0, false);
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

class tst_FillGradient : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void fillModes_data()
    {
        QTest::addColumn<bool>("border");
        QTest::addColumn<QList<QPoint>>("points");
        QTest::addColumn<QString>("row");
        // No blue to stop at: the red wall is filled over as well.
        QTest::newRow("to the foreground, none there: all") << true << QList<QPoint>{{3, 3}} << QString(24, u'#');
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
        QTest::newRow("upward diagonal") << 4 << ".......#......#......#......#......#......#......#......#.......";
        QTest::newRow("downward diagonal") << 5 << "#........#........#........#........#........#........#........#";
        QTest::newRow("cross") << 6 << "....#.......#.......#...########....#.......#.......#.......#...";
        QTest::newRow("diagonal cross") << 7 << "#......#.#....#...#..#.....##......##.....#..#...#....#.#......#";
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
        Surface& s = b.doc.Buffer;
        double zoom = 100;
        bool drawing = true;
        ++b.doc.StrokeSerial;
        ToolDispatch(b.ctx, b.doc, s, 5, 5, zoom, drawing, 1, false);
        const QImage filled = s.Image().copy();
        // The hatch cut the region into pieces; samples in any of them, and on the hatch,
        // repaint nothing.
        b.view.invalidated = QRect();
        for (const QPoint p : {QPoint(40, 30), QPoint(3, 3), QPoint(60, 2), QPoint(11, 1)})
            ToolDispatch(b.ctx, b.doc, s, p.x(), p.y(), zoom, drawing, 1, false);
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
        QTest::newRow("down") << QLineF(5, 0, 5, 10) << 90.0;
        QTest::newRow("down left, shallow") << QLineF(30, 0, 0, 10) << 180 - 18.434948822922;
        QTest::newRow("left") << QLineF(10, 3, 0, 3) << 180.0;
        QTest::newRow("up left") << QLineF(10, 10, 0, 0) << 225.0;
        QTest::newRow("up") << QLineF(5, 10, 5, 0) << 270.0;
        QTest::newRow("up right") << QLineF(0, 10, 10, 0) << 315.0;
        QTest::newRow("one point") << QLineF(4, 4, 4, 4) << 90.0;
    }
    void lineAngle()
    {
        QFETCH(QLineF, line);
        QFETCH(double, angle);
        QVERIFY(qAbs(LineAngle(line.x1(), line.y1(), line.x2(), line.y2()) - angle) < 1e-9);
    }

    void snapAngle_data()
    {
        QTest::addColumn<double>("angle");
        QTest::addColumn<double>("snapped");
        QTest::newRow("0.4 reads 0") << 0.4 << 0.0;
        QTest::newRow("359.5 reads 0") << 359.5 << 0.0;
        QTest::newRow("89.5 reads 90") << 89.5 << 90.0;
        QTest::newRow("89 stays") << 89.0 << 89.0;
        QTest::newRow("269.2 reads 270") << 269.2 << 270.0;
    }
    void snapAngle()
    {
        QFETCH(double, angle);
        QFETCH(double, snapped);
        QCOMPARE(SnapAngle(angle), snapped);
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

QTEST_GUILESS_MAIN(tst_FillGradient)
#include "tst_fillgradient.moc"
