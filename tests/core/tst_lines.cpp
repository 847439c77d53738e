// Wide lines: the round pen against its definition on long and far-off segments, and
// Lines, which paints many segments row by row, against one Line after another.

#include "core/Gdi.h"
#include "support/TestImages.h"

#include <QRandomGenerator>
#include <QtTest>

#include <cmath>

using namespace velunta;
using namespace velunta::test;

Q_DECLARE_METATYPE(std::vector<velunta::LineSegment>)

namespace {

// The strips of a gradient: parallel segments across the picture, moved a half step
// at a time across their direction, each as long as twice `reach`, in runs of colours.
std::vector<LineSegment> strips(double angle, QPointF from, double reach, double length, int colours)
{
    const double t = angle * M_PI / 180, sx = -std::sin(t), sy = std::cos(t);
    std::vector<LineSegment> result;
    for (double s = 0; s <= length; s += 0.5) {
        const double cx = from.x() + sx * s, cy = from.y() + sy * s;
        const Color c = RGB(int(s * colours / (length + 1)) * 7 % 256, 0, 0);
        result.push_back(
            {int(std::lround(cx - std::cos(t) * reach)), int(std::lround(cy - std::sin(t) * reach)),
             int(std::lround(cx + std::cos(t) * reach)), int(std::lround(cy + std::sin(t) * reach)), c});
    }
    return result;
}

std::vector<LineSegment> randomSegments(QRandomGenerator& random, int count, int w, int h)
{
    std::vector<LineSegment> result;
    for (int i = 0; i < count; ++i) {
        const auto coordinate = [&](int size) { return random.bounded(-size / 2, size + size / 2); };
        result.push_back({coordinate(w), coordinate(h), coordinate(w), coordinate(h),
                          Color(random.bounded(4)) * 0x3F3F3F});
    }
    return result;
}

} // namespace

class tst_Lines : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void longAndFarLinesMatchTheDistance_data();
    void longAndFarLinesMatchTheDistance();
    void linesPaintAsLineAfterLine_data();
    void linesPaintAsLineAfterLine();
};

void tst_Lines::longAndFarLinesMatchTheDistance_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QLine>("line");
    QTest::newRow("3, across and far beyond") << 3 << QLine(-3000, -1700, 3100, 1900);
    QTest::newRow("6, ends beyond 2^24") << 6 << QLine(30, -40000000, 2, 40000000);
}

void tst_Lines::longAndFarLinesMatchTheDistance()
{
    QFETCH(int, width);
    QFETCH(QLine, line);
    Surface s = MakeSurface(40, 40);
    s.DrawWidth = width;
    Line(s, line.x1(), line.y1(), line.x2(), line.y2(), 0);
    const long double c = width % 2 ? 0.5L : 0.0L, dx = line.dx(), dy = line.dy();
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x) {
            const long double u = x + 0.5L - line.x1() - c, v = y + 0.5L - line.y1() - c;
            const long double t = std::clamp((u * dx + v * dy) / (dx * dx + dy * dy), 0.0L, 1.0L);
            const long double d = std::hypot(u - t * dx, v - t * dy);
            if (std::fabs(d - width / 2.0L) < 1e-6L)
                continue; // too near the edge for this check's own rounding
            QCOMPARE(GetPixel(s, x, y) == 0, d <= width / 2.0L);
        }
}

void tst_Lines::linesPaintAsLineAfterLine_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<std::vector<LineSegment>>("segments");
    for (const double angle : {0.0, 1.5, 33.7, 45.0, 90.0, 137.2, 180.0, 269.3, 300.0})
        QTest::addRow("strips at %g", angle)
            << 3 << QSize(160, 120) << strips(angle, QPointF(120, 10), 210, 170, 23);
    QTest::newRow("strips, width 2") << 2 << QSize(90, 70) << strips(61, QPointF(80, 5), 120, 100, 9);
    QTest::newRow("strips, width 6") << 6 << QSize(90, 70) << strips(14, QPointF(3, 60), 120, 100, 40);
    QRandomGenerator random(7);
    for (int width : {2, 3, 5, 9})
        for (int set = 0; set < 3; ++set)
            QTest::addRow("random, width %d, set %d", width, set)
                << width << QSize(70, 50) << randomSegments(random, 60, 70, 50);
    // One colour, one direction, first points on one row: one class, its members apart.
    QTest::newRow("a class with gaps")
        << 3 << QSize(60, 30)
        << std::vector<LineSegment>{
               {2, 4, 9, 25, 0}, {20, 4, 27, 25, 0}, {11, 4, 18, 25, 0}, {45, 4, 52, 25, 0}};
    QTest::newRow("zero lengths and one colour")
        << 3 << QSize(20, 20) << std::vector<LineSegment>{{5, 5, 5, 5, 0}, {2, 3, 17, 3, 0}, {9, 9, 9, 9, 0}};
}

void tst_Lines::linesPaintAsLineAfterLine()
{
    QFETCH(int, width);
    QFETCH(QSize, size);
    QFETCH(std::vector<LineSegment>, segments);
    Surface together = MakeSurface(size.width(), size.height(), RGB(0, 90, 0));
    Surface oneByOne = MakeSurface(size.width(), size.height(), RGB(0, 90, 0));
    together.DrawWidth = oneByOne.DrawWidth = width;
    Lines(together, segments);
    for (const LineSegment& g : segments)
        Line(oneByOne, g.x1, g.y1, g.x2, g.y2, g.color);
    QCOMPARE(DifferingPixels(together.Image(), oneByOne.Image()), 0);
    QCOMPARE(QPointF(together.CurrentX, together.CurrentY), QPointF(oneByOne.CurrentX, oneByOne.CurrentY));
    QVERIFY(together.touched().contains(oneByOne.touched()));
}

QTEST_GUILESS_MAIN(tst_Lines)
#include "tst_lines.moc"
