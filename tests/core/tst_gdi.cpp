// Pixel results of the drawing services on small pictures written as rows of
// characters: '.' white (also the 3D highlight), '#' black, 'r' red, 'b' blue, 'g'
// green, and the other 3D colours 'L' light, 'S' shadow, 'D' dark shadow; wide lines
// against the round pen's definition, and Lines against one Line after another; and
// the surface itself: sizes, the frame, Cls and allocation failure.

#include "core/Gdi.h"
#include "core/Surface.h"
#include "support/TestImages.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <cmath>

using namespace velunta;
using namespace velunta::test;

Q_DECLARE_METATYPE(std::vector<velunta::LineSegment>)

namespace {

constexpr Color kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255), kGreen = RGB(0, 255, 0);
const QHash<QChar, Color> kPalette{{u'.', 0xFFFFFF},       {u'#', 0},
                                   {u'r', kRed},           {u'b', kBlue},
                                   {u'g', kGreen},         {u'L', kColor3DLight},
                                   {u'S', kColor3DShadow}, {u'D', kColor3DDarkShadow}};

Surface surfaceOf(const QStringList& rows)
{
    Surface s;
    s.setImage(ImageFromRows(rows, kPalette));
    s.takeTouched();
    return s;
}

QStringList charsOf(const Surface& s)
{
    QStringList rows;
    for (int y = 0; y < s.ScaleHeight(); ++y) {
        QString row;
        for (int x = 0; x < s.ScaleWidth(); ++x)
            row += kPalette.key(GetPixel(s, x, y), u'?');
        rows << row;
    }
    return rows;
}

QStringList blank(int w, int h)
{
    return QStringList(h, QString(w, u'.'));
}

// "x,y x,y ..." in row order.
QList<QPoint> pointsOf(const QString& text)
{
    QList<QPoint> points;
    for (const QString& p : text.split(u' ', Qt::SkipEmptyParts))
        points << QPoint(p.section(u',', 0, 0).toInt(), p.section(u',', 1, 1).toInt());
    std::sort(points.begin(), points.end(),
              [](QPoint a, QPoint b) { return std::pair(a.y(), a.x()) < std::pair(b.y(), b.x()); });
    return points;
}

QList<QPoint> pixelsOf(const Surface& s, Color c)
{
    QList<QPoint> points;
    for (int y = 0; y < s.ScaleHeight(); ++y)
        for (int x = 0; x < s.ScaleWidth(); ++x)
            if (GetPixel(s, x, y) == c)
                points << QPoint(x, y);
    return points;
}

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

class TestGdi : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void rop_data()
    {
        QTest::addColumn<uint>("rop");
        QTest::addColumn<QList<int>>("psd"); // brush, source, destination
        QTest::addColumn<int>("expected");
        QTest::newRow("SRCCOPY") << uint(SRCCOPY) << QList{0, 0x123456, 0xABCDEF} << 0x123456;
        QTest::newRow("SRCPAINT") << uint(SRCPAINT) << QList{0, 0x0F0F0F, 0xF00000} << 0xFF0F0F;
        QTest::newRow("SRCAND") << uint(SRCAND) << QList{0, 0x0F0F0F, 0x3C3C3C} << 0x0C0C0C;
        QTest::newRow("SRCINVERT") << uint(SRCINVERT) << QList{0, 0x0F0F0F, 0x3C3C3C} << 0x333333;
        QTest::newRow("NOTSRCCOPY") << uint(NOTSRCCOPY) << QList{0, 0x0F0F0F, 0x3C3C3C} << 0xF0F0F0;
        QTest::newRow("NOTSRCERASE") << uint(NOTSRCERASE) << QList{0, 0x0F0F0F, 0x3C3C3C} << 0xC0C0C0;
        QTest::newRow("MERGEPAINT") << uint(MERGEPAINT) << QList{0, 0x0F0F0F, 0x3C3C3C} << 0xFCFCFC;
        QTest::newRow("PATCOPY") << uint(PATCOPY) << QList{0x123456, 0x0F0F0F, 0x3C3C3C} << 0x123456;
        QTest::newRow("BLACKNESS") << uint(BLACKNESS) << QList{0xFFFFFF, 0xFFFFFF, 0xFFFFFF} << 0;
        QTest::newRow("WHITENESS") << uint(WHITENESS) << QList{0, 0, 0} << 0xFFFFFF;
        QTest::newRow("P and S and D") << kRopMaskedBrush << QList{0x00FF0F, 0x0F0F0F, 0x3C3C3C} << 0x000C0C;
        QTest::newRow("P xor D") << 0x005A0049u << QList{0x0F0F0F, 0x123456, 0x3C3C3C} << 0x333333;
        QTest::newRow("not D") << 0x00550009u << QList{0, 0x123456, 0x3C3C3C} << 0xC3C3C3;
    }
    void rop()
    {
        QFETCH(uint, rop);
        QFETCH(QList<int>, psd);
        QFETCH(int, expected);
        Surface dst = MakeSurface(3, 2, psd[2]);
        dst.FillColor = psd[0];
        QVERIFY(BitBlt(dst, 0, 0, 3, 2, MakeSurface(3, 2, psd[1]), 0, 0, rop));
        QCOMPARE(pixelsOf(dst, expected).size(), 6);
        QCOMPARE(dst.Image().pixel(2, 1) >> 24, 0xFFu); // alpha stays opaque
    }

    void selfOverlap_data()
    {
        QTest::addColumn<QPoint>("to");
        QTest::addColumn<QPoint>("from");
        QTest::newRow("right down") << QPoint(2, 1) << QPoint(0, 0);
        QTest::newRow("left up") << QPoint(0, 0) << QPoint(1, 2);
    }
    void selfOverlap()
    {
        QFETCH(QPoint, to);
        QFETCH(QPoint, from);
        Surface s, copy, expected;
        s.setImage(MakeImage(7, 7, [](int x, int y) { return RGB(x * 30, y * 30, x + y); }));
        s.keepImageAsPicture(); // pixels shared with the picture must not leak in either way
        copy.setImage(s.Image().copy());
        expected.setImage(s.Image().copy());
        BitBlt(expected, to.x(), to.y(), 5, 5, copy, from.x(), from.y());
        BitBlt(s, to.x(), to.y(), 5, 5, s, from.x(), from.y());
        QCOMPARE(DifferingPixels(s.Image(), expected.Image()), 0);
        QCOMPARE(DifferingPixels(s.Picture(), copy.Image()), 0);
    }

    void clipping_data()
    {
        QTest::addColumn<QPoint>("to");
        QTest::addColumn<QPoint>("from");
        QTest::addColumn<QRect>("written");
        QTest::newRow("left edge") << QPoint(-2, 1) << QPoint(0, 0) << QRect(0, 1, 2, 4);
        QTest::newRow("right edge") << QPoint(4, 1) << QPoint(0, 0) << QRect(4, 1, 2, 4);
        QTest::newRow("bottom edge") << QPoint(1, 4) << QPoint(0, 0) << QRect(1, 4, 4, 2);
        QTest::newRow("source left of its picture") << QPoint(1, 1) << QPoint(-1, 0) << QRect(2, 1, 3, 4);
        QTest::newRow("wholly outside") << QPoint(6, 0) << QPoint(0, 0) << QRect();
    }
    void clipping()
    {
        QFETCH(QPoint, to);
        QFETCH(QPoint, from);
        QFETCH(QRect, written);
        Surface src, dst = surfaceOf(blank(6, 6));
        src.setImage(MakeImage(4, 4, [](int x, int y) { return RGB(x, y, 7); }));
        BitBlt(dst, to.x(), to.y(), 4, 4, src, from.x(), from.y());
        for (int y = 0; y < 6; ++y)
            for (int x = 0; x < 6; ++x)
                QCOMPARE(GetPixel(dst, x, y), written.contains(x, y)
                                                  ? RGB(x - to.x() + from.x(), y - to.y() + from.y(), 7)
                                                  : 0xFFFFFF);
        QCOMPARE(dst.touched(), written);
    }

    void stretch_data()
    {
        QTest::addColumn<QStringList>("source");
        QTest::addColumn<QRect>("to"); // x, y, w, h as passed: extents may be negative
        QTest::addColumn<QRect>("from");
        QTest::addColumn<QStringList>("expected");
        const QStringList rb{"rb.."}, four{"rbg#"};
        QTest::newRow("twice") << rb << QRect(0, 0, 4, 1) << QRect(0, 0, 2, 1) << QStringList{"rrbb"};
        QTest::newRow("two to three") << rb << QRect(0, 0, 3, 1) << QRect(0, 0, 2, 1) << QStringList{"rbb."};
        QTest::newRow("halved") << four << QRect(0, 0, 2, 1) << QRect(0, 0, 4, 1) << QStringList{"b#g#"};
        QTest::newRow("mirrored to") << rb << QRect(4, 0, -4, 1) << QRect(0, 0, 2, 1) << QStringList{"bbrr"};
        QTest::newRow("mirrored from")
            << rb << QRect(0, 0, 4, 1) << QRect(2, 0, -2, 1) << QStringList{"bbrr"};
        QTest::newRow("mirror in place")
            << four << QRect(4, 0, -4, 1) << QRect(0, 0, 4, 1) << QStringList{"#gbr"};
        QTest::newRow("upside down") << QStringList{"r.", "b."} << QRect(0, 2, 2, -2) << QRect(0, 0, 1, 2)
                                     << QStringList{"bb", "rr"};
    }
    void stretch()
    {
        QFETCH(QStringList, source);
        QFETCH(QRect, to);
        QFETCH(QRect, from);
        QFETCH(QStringList, expected);
        Surface s = surfaceOf(source); // copies within one picture, like an in-place mirror
        StretchBlt(s, to.x(), to.y(), to.width(), to.height(), s, from.x(), from.y(), from.width(),
                   from.height());
        QCOMPARE(charsOf(s), expected);
    }

    void pixels()
    {
        Surface s = surfaceOf({"r.", ".b"});
        for (const QPoint p : {QPoint(-1, 0), QPoint(0, -1), QPoint(2, 0), QPoint(0, 2)})
            QVERIFY(GetPixel(s, p.x(), p.y()) == kNoColor && !SetPixelV(s, p.x(), p.y(), 0));
        QVERIFY(SetPixelV(s, 1, 0, kGreen));
        QCOMPARE(charsOf(s), (QStringList{"rg", ".b"}));
    }

    // clang-format off
    void floodFill_data()
    {
        QTest::addColumn<QStringList>("picture");
        QTest::addColumn<QPoint>("start");
        QTest::addColumn<int>("colour");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("style");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QStringList>("expected");
        const QStringList ring{"......", ".####.", ".#..#.", ".#r.#.", ".####.", "......"};
        const int surface = FLOODFILLSURFACE, border = FLOODFILLBORDER, white = 0xFFFFFF;
        QTest::newRow("surface in a ring") << ring << QPoint(2, 2) << white << surface << 0 << true << QStringList{"......", ".####.", ".#bb#.", ".#rb#.", ".####.", "......"};
        QTest::newRow("surface round a ring") << ring << QPoint(0, 0) << white << surface << 0 << true << QStringList{"bbbbbb", "b####b", "b#..#b", "b#r.#b", "b####b", "bbbbbb"};
        QTest::newRow("no diagonal leak") << QStringList{"..#", ".#.", "#.."} << QPoint(0, 0) << white << surface << 0 << true << QStringList{"bb#", "b#.", "#.."};
        QTest::newRow("surface start differs") << ring << QPoint(1, 1) << white << surface << 0 << false << ring;
        QTest::newRow("border in a ring") << ring << QPoint(3, 3) << 0 << border << 0 << true << QStringList{"......", ".####.", ".#bb#.", ".#bb#.", ".####.", "......"};
        QTest::newRow("no border colour fills all") << QStringList{"r..", ".g.", "..r"} << QPoint(1, 1) << 0 << border << 0 << true << QStringList{"bbb", "bbb", "bbb"};
        QTest::newRow("start on the border") << ring << QPoint(1, 1) << 0 << border << 0 << false << ring;
        QTest::newRow("hollow") << ring << QPoint(0, 0) << white << surface << 1 << true << ring;
    }
    // clang-format on
    void floodFill()
    {
        QFETCH(QStringList, picture);
        QFETCH(QPoint, start);
        QFETCH(int, colour);
        QFETCH(int, type);
        QFETCH(int, style);
        QFETCH(bool, result);
        QFETCH(QStringList, expected);
        Surface s = surfaceOf(picture);
        s.FillColor = kBlue;
        s.FillStyle = style;
        QCOMPARE(ExtFloodFill(s, start.x(), start.y(), colour, FloodFillType(type)), result);
        QCOMPARE(charsOf(s), expected);
    }

    // Each hatch's 8 x 8 cell, tiled from the origin. The brush has the border's
    // colour, so lines painted during the search would cut the region short.
    void hatch_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QStringList>("cell");
        const QString none(8, u'.'), full(8, u'#'), column4 = "....#...";
        QStringList up, down, both, cross = QStringList(8, column4);
        cross[3] = full;
        for (int y = 0; y < 8; ++y) {
            up << QString(none).replace(7 - y, 1, u'#');
            down << QString(none).replace(y, 1, u'#');
            both << QString(up[y]).replace(y, 1, u'#');
        }
        QTest::newRow("horizontal") << 2 << QStringList{none, none, none, full, none, none, none, none};
        QTest::newRow("vertical") << 3 << QStringList(8, column4);
        QTest::newRow("upward") << 4 << up;
        QTest::newRow("downward") << 5 << down;
        QTest::newRow("cross") << 6 << cross;
        QTest::newRow("diagonal cross") << 7 << both;
    }
    void hatch()
    {
        QFETCH(int, style);
        QFETCH(QStringList, cell);
        Surface s = MakeSurface(16, 16);
        s.FillColor = 0;
        s.FillStyle = style;
        QVERIFY(ExtFloodFill(s, 13, 9, 0, FLOODFILLBORDER));
        const QStringList rows = charsOf(s);
        for (int y = 0; y < 16; ++y)
            QCOMPARE(rows[y], cell[y & 7] + cell[y & 7]);
    }
    void thinLine_data()
    {
        QTest::addColumn<QLineF>("line");
        QTest::addColumn<QString>("pixels");
        QTest::newRow("east south east") << QLineF(3, 3, 6, 4) << "3,3 4,3 5,4";
        QTest::newRow("west south west") << QLineF(3, 3, 0, 4) << "3,3 2,3 1,4";
        QTest::newRow("west north west") << QLineF(3, 3, 0, 2) << "3,3 2,3 1,2";
        QTest::newRow("south south east") << QLineF(3, 3, 4, 6) << "3,3 3,4 4,5";
        QTest::newRow("north north west") << QLineF(3, 3, 2, 0) << "3,3 3,2 2,1";
        QTest::newRow("halves stay near the start") << QLineF(0, 0, 4, 2) << "0,0 1,0 2,1 3,1";
        QTest::newRow("reversed") << QLineF(4, 2, 0, 0) << "4,2 3,2 2,1 1,1";
        QTest::newRow("clipped start") << QLineF(-2, -1, 3, 1) << "0,0 1,0 2,1";
        QTest::newRow("zero length") << QLineF(2, 2, 2, 2) << "";
        QTest::newRow("0.5 to 2.5 is 0 to 2") << QLineF(0.5, 0, 2.5, 0) << "0,0 1,0";
        QTest::newRow("both ends round to 2") << QLineF(2.4, 1, 1.6, 1) << "";
    }
    void thinLine()
    {
        QFETCH(QLineF, line);
        QFETCH(QString, pixels);
        Surface s = surfaceOf(blank(7, 7));
        Line(s, line.x1(), line.y1(), line.x2(), line.y2(), 0);
        const QList<QPoint> expected = pointsOf(pixels);
        QCOMPARE(pixelsOf(s, 0), expected);
        QRect bounds;
        for (const QPoint p : expected)
            bounds |= QRect(p, p);
        QCOMPARE(s.touched(), bounds);
        QCOMPARE(QPointF(s.CurrentX, s.CurrentY), line.p2());
    }

    // Round pen lines (Line) and dots (PSet, when `dot`) of each width.
    // clang-format off
    void pen_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<QLine>("line");
        QTest::addColumn<bool>("dot");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("line 2") << 2 << QLine(2, 4, 5, 4) << false << QStringList{"........", "........", "........", ".#####..", ".#####..", "........"};
        QTest::newRow("line 3") << 3 << QLine(2, 3, 5, 3) << false << QStringList{"........", "........", ".######.", ".######.", ".######.", "........"};
        QTest::newRow("line 5") << 5 << QLine(3, 2, 3, 3) << false << QStringList{"..###...", ".#####..", ".#####..", ".#####..", ".#####..", "..###..."};
        QTest::newRow("dot 1") << 1 << QLine(2, 2, 2, 2) << true << QStringList{"...", "...", "..#"};
        QTest::newRow("dot 2") << 2 << QLine(2, 2, 2, 2) << true << QStringList{"...", ".##", ".##"};
        QTest::newRow("dot 5") << 5 << QLine(2, 2, 2, 2) << true << QStringList{".###.", "#####", "#####", "#####", ".###."};
    }
    // clang-format on
    void pen()
    {
        QFETCH(int, width);
        QFETCH(QLine, line);
        QFETCH(bool, dot);
        QFETCH(QStringList, expected);
        Surface s = surfaceOf(blank(expected[0].size(), expected.size()));
        s.DrawWidth = width;
        if (dot)
            PSet(s, line.x1(), line.y1(), 0);
        else
            Line(s, line.x1(), line.y1(), line.x2(), line.y2(), 0);
        QCOMPARE(charsOf(s), expected);
    }

    void longAndFarLinesMatchTheDistance_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<QLine>("line");
        QTest::addColumn<int>("size"); // of the square picture looked at
        for (int width : {2, 3, 5, 8})
            for (const QLine& line : {QLine(3, 4, 17, 9), QLine(15, 2, 6, 18), QLine(-4, 10, 25, 12)})
                QTest::addRow("%d, %d,%d to %d,%d", width, line.x1(), line.y1(), line.x2(), line.y2())
                    << width << line << 30;
        // A row below the band where only the end disc reaches: its span once took the
        // band's stale limit and painted past the disc.
        QTest::newRow("8, the end disc's rows alone") << 8 << QLine(15, 2, 6, 18) << 30;
        QTest::newRow("3, across and far beyond") << 3 << QLine(-3000, -1700, 3100, 1900) << 40;
        QTest::newRow("6, ends beyond 2^24") << 6 << QLine(30, -40000000, 2, 40000000) << 40;
    }
    void longAndFarLinesMatchTheDistance()
    {
        QFETCH(int, width);
        QFETCH(QLine, line);
        QFETCH(int, size);
        Surface s = MakeSurface(size, size);
        s.DrawWidth = width;
        Line(s, line.x1(), line.y1(), line.x2(), line.y2(), 0);
        const long double c = width % 2 ? 0.5L : 0.0L, dx = line.dx(), dy = line.dy();
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) {
                const long double u = x + 0.5L - line.x1() - c, v = y + 0.5L - line.y1() - c;
                const long double t = std::clamp((u * dx + v * dy) / (dx * dx + dy * dy), 0.0L, 1.0L);
                const long double d = std::hypot(u - t * dx, v - t * dy);
                if (std::fabs(d - width / 2.0L) < 1e-6L)
                    continue; // too near the edge for this check's own rounding
                QCOMPARE(GetPixel(s, x, y) == 0, d <= width / 2.0L);
            }
    }

    void linesPaintAsLineAfterLine_data()
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
            << 3 << QSize(20, 20)
            << std::vector<LineSegment>{{5, 5, 5, 5, 0}, {2, 3, 17, 3, 0}, {9, 9, 9, 9, 0}};
    }
    void linesPaintAsLineAfterLine()
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
        QCOMPARE(QPointF(together.CurrentX, together.CurrentY),
                 QPointF(oneByOne.CurrentX, oneByOne.CurrentY));
        QVERIFY(together.touched().contains(oneByOne.touched()));
    }

    void box_data()
    {
        QTest::addColumn<QLine>("corners");
        QTest::newRow("top left first") << QLine(1, 1, 4, 3);
        QTest::newRow("bottom right first") << QLine(4, 3, 1, 1);
        QTest::newRow("bottom left first") << QLine(1, 3, 4, 1);
        QTest::newRow("top right first") << QLine(4, 1, 1, 3);
    }
    void box()
    {
        QFETCH(QLine, corners);
        Surface s = MakeSurface(6, 5);
        s.FillStyle = 0;
        s.FillColor = kRed;
        LineBox(s, corners.x1(), corners.y1(), corners.x2(), corners.y2(), 0);
        QCOMPARE(charsOf(s), (QStringList{"......", ".####.", ".#rr#.", ".####.", "......"}));
        LineBoxFilled(s, corners.x1(), corners.y1(), corners.x2(), corners.y2(), kBlue);
        QCOMPARE(charsOf(s), (QStringList{"......", ".bbbb.", ".bbbb.", ".bbbb.", "......"}));
        QCOMPARE(QPointF(s.CurrentX, s.CurrentY), QPointF(corners.p2()));
    }

    // clang-format off
    void roundRect_data()
    {
        QTest::addColumn<QRect>("box"); // left, top, right, bottom as passed
        QTest::addColumn<int>("corner");
        QTest::addColumn<int>("style");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("ellipse 4 x 4") << QRect(QPoint(1, 1), QPoint(5, 5)) << 99 << 0 << QStringList{"......", "..##..", ".#rr#.", ".#rr#.", "..##..", "......"};
        QTest::newRow("corner 4") << QRect(QPoint(0, 0), QPoint(8, 6)) << 4 << 0 << QStringList{".######.", "#rrrrrr#", "#rrrrrr#", "#rrrrrr#", "#rrrrrr#", ".######."};
        QTest::newRow("corner 0, reversed") << QRect(QPoint(7, 5), QPoint(0, 1)) << 0 << 0 << QStringList{"........", "#######.", "#rrrrr#.", "#rrrrr#.", "#######.", "........"};
        QTest::newRow("corner 0, hatched") << QRect(QPoint(0, 1), QPoint(7, 5)) << 0 << 3 << QStringList{"........", "#######.", "#...r.#.", "#...r.#.", "#######.", "........"};
    }
    // clang-format on
    void roundRect()
    {
        QFETCH(QRect, box);
        QFETCH(int, corner);
        QFETCH(int, style);
        QFETCH(QStringList, expected);
        Surface s = surfaceOf(blank(expected[0].size(), expected.size()));
        s.FillStyle = style;
        s.FillColor = kRed;
        QVERIFY(RoundRect(s, box.left(), box.top(), box.right(), box.bottom(), corner, corner));
        QCOMPARE(charsOf(s), expected);
    }
    void ellipseAroundItsBoxAndSymmetric_data()
    {
        QTest::addColumn<QSize>("size");
        for (const QSize size :
             {QSize(11, 7), QSize(10, 10), QSize(1, 5), QSize(20, 3), QSize(2, 2), QSize(23, 18)})
            QTest::addRow("%dx%d", size.width(), size.height()) << size;
    }
    void ellipseAroundItsBoxAndSymmetric()
    {
        QFETCH(QSize, size);
        Surface s = MakeSurface(30, 24);
        s.FillStyle = 0;
        s.FillColor = kRed;
        s.DrawWidth = 2;
        RoundRect(s, 2, 3, 2 + size.width(), 3 + size.height(), 1000, 1000);
        const QStringList rows = charsOf(s);
        const QRect box(2, 3, size.width(), size.height());
        QRect painted;
        for (int y = 0; y < rows.size(); ++y)
            for (int x = 0; x < rows[y].size(); ++x)
                if (rows[y][x] != u'.') {
                    painted |= QRect(x, y, 1, 1);
                    QCOMPARE(rows[y][box.left() + box.right() - x], rows[y][x]);
                    QCOMPARE(rows[box.top() + box.bottom() - y][x], rows[y][x]);
                }
        QCOMPARE(painted, box.adjusted(-1, -1, 1, 1)); // the pen of 2 reaches one pixel past every side
    }

    // clang-format off
    void drawEdge_data()
    {
        QTest::addColumn<uint>("edge");
        QTest::addColumn<uint>("sides");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("raised") << uint(EDGE_RAISED) << uint(BF_RECT) << QStringList{"LLLLLD", "L...SD", "L.bbSD", "L.bbSD", "LSSSSD", "DDDDDD"};
        QTest::newRow("sunken") << uint(EDGE_SUNKEN) << uint(BF_RECT) << QStringList{"SSSSS.", "SDDDL.", "SDbbL.", "SDbbL.", "SLLLL.", "......"};
        QTest::newRow("etched") << uint(EDGE_ETCHED) << uint(BF_RECT) << QStringList{"SSSSS.", "S...S.", "S.bbS.", "S.bbS.", "SSSSS.", "......"};
        QTest::newRow("bump") << uint(EDGE_BUMP) << uint(BF_RECT) << QStringList{"LLLLLD", "LDDDLD", "LDbbLD", "LDbbLD", "LLLLLD", "DDDDDD"};
        QTest::newRow("raised top") << uint(EDGE_RAISED) << uint(BF_TOP) << QStringList{"LLLLLL", "......", "bbbbbb", "bbbbbb", "bbbbbb", "bbbbbb"};
        QTest::newRow("sunken right") << uint(EDGE_SUNKEN) << uint(BF_RIGHT) << QStringList{"bbbbL.", "bbbbL.", "bbbbL.", "bbbbL.", "bbbbL.", "bbbbL."};
    }
    // clang-format on
    void drawEdge()
    {
        QFETCH(uint, edge);
        QFETCH(uint, sides);
        QFETCH(QStringList, expected);
        Surface s = surfaceOf(QStringList(6, "bbbbbb"));
        QVERIFY(DrawEdge(s, 0, 0, 6, 6, edge, sides));
        QCOMPARE(charsOf(s), expected);
        QVERIFY(!DrawEdge(s, 2, 2, 2, 4, edge, sides));
    }

    void invertTwiceIsIdentity()
    {
        Surface s;
        s.setImage(MakeImage(5, 5, [](int x, int y) { return RGB(x * 50, y * 40, 99); }));
        const QImage before = s.Image().copy();
        s.takeTouched();
        QVERIFY(InvertRect(s, -2, 1, 3, 9));
        QCOMPARE(GetPixel(s, 1, 1), RGB(255 - 50, 255 - 40, 255 - 99));
        QCOMPARE(DifferingPixels(s.Image(), before), 3 * 4);
        QCOMPARE(s.takeTouched(), QRect(0, 1, 3, 4));
        InvertRect(s, -2, 1, 3, 9);
        QCOMPARE(DifferingPixels(s.Image(), before), 0);
        QVERIFY(!InvertRect(s, 3, 0, 3, 5));
    }

    void text()
    {
        Surface s = surfaceOf(blank(200, 120));
        s.FontName = "Liberation Sans";
        const QSize one = TextExtent(s, "Wide line");
        QVERIFY(one.height() >= 16 && one.height() <= 22); // 12 points at 96 dpi are 16 pixels
        QCOMPARE(TextExtent(s, "x\r\nWide line\nAB"), QSize(one.width(), 3 * one.height()));
        s.FontSize = 24;
        QVERIFY(std::abs(TextExtent(s, "Wide line").height() - 2 * one.height()) <= 3);
        s.FontSize = 12;
        s.BackColor = kGreen;
        DrawText(s, 10, 20, "Wide line\nx", true, true);
        QCOMPARE(GetPixel(s, 10, 20), kGreen);                  // opaque fills the cell
        QCOMPARE(GetPixel(s, 10, 20 + one.height()), 0xFFFFFF); // the short line is centred
        QCOMPARE(s.CurrentY, 20.0 + 2 * one.height());
        int dark = 0;
        for (int y = 0; y < 120; ++y)
            for (int x = 0; x < 200; ++x)
                if (ColorGreen(GetPixel(s, x, y)) < 128) {
                    ++dark;
                    QVERIFY(s.touched().contains(x, y));
                }
        QVERIFY(dark > 20);
    }

    void resizeKeepsTopLeft_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("grow") << QSize(6, 5);
        QTest::newRow("shrink") << QSize(2, 2);
        QTest::newRow("wider, shorter") << QSize(5, 1);
    }
    void resizeKeepsTopLeft()
    {
        QFETCH(QSize, size);
        Surface s;
        s.setImage(MakeImage(3, 3, [](int x, int y) { return RGB(x, y, 1); }));
        s.BackColor = RGB(9, 9, 9);
        s.takeTouched();
        s.setScaleSize(size.width(), size.height());
        QCOMPARE(s.Image().size(), size);
        QCOMPARE(s.Image().format(), QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x)
                QCOMPARE(GetPixel(s, x, y), x < 3 && y < 3 ? RGB(x, y, 1) : RGB(9, 9, 9));
        QCOMPARE(s.touched(), QRect(QPoint(0, 0), size));
    }

    void border_data()
    {
        QTest::addColumn<int>("border");
        QTest::addColumn<QSize>("outer");
        QTest::addColumn<QSize>("drawable");
        QTest::newRow("document frame") << 1 << QSize(642, 482) << QSize(640, 480);
        QTest::newRow("no frame") << 0 << QSize(10, 4) << QSize(10, 4);
        QTest::newRow("all frame") << 2 << QSize(4, 9) << QSize(0, 0);
    }
    void border()
    {
        QFETCH(int, border);
        QFETCH(QSize, outer);
        QFETCH(QSize, drawable);
        Surface s(border);
        s.setSize(outer.width(), outer.height());
        QCOMPARE(QSize(s.ScaleWidth(), s.ScaleHeight()), drawable);
        if (!drawable.isEmpty())
            QCOMPARE(QSize(s.Width(), s.Height()), outer);
    }

    void clsRestoresPicture()
    {
        Surface s = MakeSurface(4, 3, RGB(0, 0, 255));
        s.setPicture(MakeImage(2, 2, [](int, int) { return RGB(255, 0, 0); }));
        SetPixelV(s, 0, 0, 0);
        SetPixelV(s, 3, 2, 0);
        s.CurrentX = 5;
        s.Cls();
        QCOMPARE(GetPixel(s, 0, 0), RGB(255, 0, 0));
        QCOMPARE(GetPixel(s, 1, 1), RGB(255, 0, 0));
        QCOMPARE(GetPixel(s, 3, 2), RGB(0, 0, 255));
        QCOMPARE(s.CurrentX, 0.0);
        s.clearPicture();
        s.Cls();
        QCOMPARE(GetPixel(s, 0, 0), RGB(0, 0, 255));
    }

    void impossibleSizeThrows()
    {
        Surface s = MakeSurface(4, 4);
        QVERIFY_THROWS_EXCEPTION(AllocationError, s.setScaleSize(100000, 100000));
        QCOMPARE(s.Image().size(), QSize(4, 4)); // the old picture stays
    }
};

QTEST_MAIN(TestGdi)
#include "tst_gdi.moc"
