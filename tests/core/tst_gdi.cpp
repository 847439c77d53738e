// The drawing services on small pictures written as rows of characters: '.' white (also
// the 3D highlight), '#' black, 'r' red, 'b' blue, 'g' green, 'L' 3D light, 'S' shadow,
// 'D' dark shadow; and the surface itself.

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

// A drawing call on a surface; whether it said it drew.
using Paint = std::function<bool(Surface&)>;

// x, y, w, h as passed: extents may be negative. One picture is source and target, as
// in an in-place mirror.
Paint stretch(QRect to, QRect from)
{
    return [=](Surface& s) {
        return StretchBlt(s, to.x(), to.y(), to.width(), to.height(), s, from.x(), from.y(), from.width(),
                          from.height());
    };
}

Paint fill(QPoint at, Color colour, FloodFillType type, int style = 0)
{
    return [=](Surface& s) {
        s.FillColor = kBlue;
        s.FillStyle = style;
        return ExtFloodFill(s, at.x(), at.y(), colour, type);
    };
}

// A round pen line (Line), or a dot (PSet) where the line has no length.
Paint pen(int width, QLine line)
{
    return [=](Surface& s) {
        s.DrawWidth = width;
        if (line.p1() == line.p2())
            PSet(s, line.x1(), line.y1(), 0);
        else
            Line(s, line.x1(), line.y1(), line.x2(), line.y2(), 0);
        return true;
    };
}

// The box as left, top, right, bottom, as passed.
Paint roundRect(QRect box, int corner, int style = 0)
{
    return [=](Surface& s) {
        s.FillStyle = style;
        s.FillColor = kRed;
        return RoundRect(s, box.left(), box.top(), box.right(), box.bottom(), corner, corner);
    };
}

Paint edge(unsigned edge, unsigned sides, QLine corners = QLine(0, 0, 6, 6))
{
    return [=](Surface& s) {
        return DrawEdge(s, corners.x1(), corners.y1(), corners.x2(), corners.y2(), edge, sides);
    };
}

} // namespace

Q_DECLARE_METATYPE(Paint)

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

    // clang-format off
    void callsPaintTheirRows_data()
    {
        QTest::addColumn<QStringList>("picture");
        QTest::addColumn<Paint>("paint");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QStringList>("expected");
        const QStringList rb{"rb.."}, four{"rbg#"}, blue6(6, "bbbbbb");
        QTest::newRow("stretch twice") << rb << stretch({0, 0, 4, 1}, {0, 0, 2, 1}) << true << QStringList{"rrbb"};
        QTest::newRow("stretch two to three") << rb << stretch({0, 0, 3, 1}, {0, 0, 2, 1}) << true << QStringList{"rbb."};
        QTest::newRow("stretch halved") << four << stretch({0, 0, 2, 1}, {0, 0, 4, 1}) << true << QStringList{"b#g#"};
        QTest::newRow("stretch mirrored to") << rb << stretch({4, 0, -4, 1}, {0, 0, 2, 1}) << true << QStringList{"bbrr"};
        QTest::newRow("stretch mirrored from") << rb << stretch({0, 0, 4, 1}, {2, 0, -2, 1}) << true << QStringList{"bbrr"};
        QTest::newRow("stretch mirror in place") << four << stretch({4, 0, -4, 1}, {0, 0, 4, 1}) << true << QStringList{"#gbr"};
        QTest::newRow("stretch upside down") << QStringList{"r.", "b."} << stretch({0, 2, 2, -2}, {0, 0, 1, 2}) << true << QStringList{"bb", "rr"};
        const QStringList ring{"......", ".####.", ".#..#.", ".#r.#.", ".####.", "......"};
        const auto surface = FLOODFILLSURFACE, border = FLOODFILLBORDER;
        QTest::newRow("fill surface in a ring") << ring << fill({2, 2}, 0xFFFFFF, surface) << true << QStringList{"......", ".####.", ".#bb#.", ".#rb#.", ".####.", "......"};
        QTest::newRow("fill surface round a ring") << ring << fill({0, 0}, 0xFFFFFF, surface) << true << QStringList{"bbbbbb", "b####b", "b#..#b", "b#r.#b", "b####b", "bbbbbb"};
        QTest::newRow("fill no diagonal leak") << QStringList{"..#", ".#.", "#.."} << fill({0, 0}, 0xFFFFFF, surface) << true << QStringList{"bb#", "b#.", "#.."};
        QTest::newRow("fill surface start differs") << ring << fill({1, 1}, 0xFFFFFF, surface) << false << ring;
        QTest::newRow("fill border in a ring") << ring << fill({3, 3}, 0, border) << true << QStringList{"......", ".####.", ".#bb#.", ".#bb#.", ".####.", "......"};
        QTest::newRow("fill no border colour fills all") << QStringList{"r..", ".g.", "..r"} << fill({1, 1}, 0, border) << true << QStringList{"bbb", "bbb", "bbb"};
        QTest::newRow("fill start on the border") << ring << fill({1, 1}, 0, border) << false << ring;
        QTest::newRow("fill hollow") << ring << fill({0, 0}, 0xFFFFFF, surface, 1) << true << ring;
        QTest::newRow("pen line 2") << blank(8, 6) << pen(2, {2, 4, 5, 4}) << true << QStringList{"........", "........", "........", ".#####..", ".#####..", "........"};
        QTest::newRow("pen line 3") << blank(8, 6) << pen(3, {2, 3, 5, 3}) << true << QStringList{"........", "........", ".######.", ".######.", ".######.", "........"};
        QTest::newRow("pen line 5") << blank(8, 6) << pen(5, {3, 2, 3, 3}) << true << QStringList{"..###...", ".#####..", ".#####..", ".#####..", ".#####..", "..###..."};
        QTest::newRow("pen dot 1") << blank(3, 3) << pen(1, {2, 2, 2, 2}) << true << QStringList{"...", "...", "..#"};
        QTest::newRow("pen dot 2") << blank(3, 3) << pen(2, {2, 2, 2, 2}) << true << QStringList{"...", ".##", ".##"};
        QTest::newRow("pen dot 5") << blank(5, 5) << pen(5, {2, 2, 2, 2}) << true << QStringList{".###.", "#####", "#####", "#####", ".###."};
        QTest::newRow("ellipse 4 x 4") << blank(6, 6) << roundRect(QRect(QPoint(1, 1), QPoint(5, 5)), 99) << true << QStringList{"......", "..##..", ".#rr#.", ".#rr#.", "..##..", "......"};
        QTest::newRow("round corner 4") << blank(8, 6) << roundRect(QRect(QPoint(0, 0), QPoint(8, 6)), 4) << true << QStringList{".######.", "#rrrrrr#", "#rrrrrr#", "#rrrrrr#", "#rrrrrr#", ".######."};
        QTest::newRow("round corner 0, reversed") << blank(8, 6) << roundRect(QRect(QPoint(7, 5), QPoint(0, 1)), 0) << true << QStringList{"........", "#######.", "#rrrrr#.", "#rrrrr#.", "#######.", "........"};
        QTest::newRow("round corner 0, hatched") << blank(8, 6) << roundRect(QRect(QPoint(0, 1), QPoint(7, 5)), 0, 3) << true << QStringList{"........", "#######.", "#...r.#.", "#...r.#.", "#######.", "........"};
        QTest::newRow("edge raised") << blue6 << edge(EDGE_RAISED, BF_RECT) << true << QStringList{"LLLLLD", "L...SD", "L.bbSD", "L.bbSD", "LSSSSD", "DDDDDD"};
        QTest::newRow("edge sunken") << blue6 << edge(EDGE_SUNKEN, BF_RECT) << true << QStringList{"SSSSS.", "SDDDL.", "SDbbL.", "SDbbL.", "SLLLL.", "......"};
        QTest::newRow("edge etched") << blue6 << edge(EDGE_ETCHED, BF_RECT) << true << QStringList{"SSSSS.", "S...S.", "S.bbS.", "S.bbS.", "SSSSS.", "......"};
        QTest::newRow("edge bump") << blue6 << edge(EDGE_BUMP, BF_RECT) << true << QStringList{"LLLLLD", "LDDDLD", "LDbbLD", "LDbbLD", "LLLLLD", "DDDDDD"};
        QTest::newRow("edge raised top") << blue6 << edge(EDGE_RAISED, BF_TOP) << true << QStringList{"LLLLLL", "......", "bbbbbb", "bbbbbb", "bbbbbb", "bbbbbb"};
        QTest::newRow("edge sunken right") << blue6 << edge(EDGE_SUNKEN, BF_RIGHT) << true << QStringList{"bbbbL.", "bbbbL.", "bbbbL.", "bbbbL.", "bbbbL.", "bbbbL."};
        QTest::newRow("edge of no width") << blue6 << edge(EDGE_RAISED, BF_RECT, {2, 2, 2, 4}) << false << blue6;
    }
    // clang-format on
    void callsPaintTheirRows()
    {
        QFETCH(QStringList, picture);
        QFETCH(Paint, paint);
        QFETCH(bool, result);
        QFETCH(QStringList, expected);
        Surface s = surfaceOf(picture);
        QCOMPARE(paint(s), result);
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

    // A hatch in the border's own colour, tiled from the origin: lines painted during the
    // search must not cut the region short. The two crosses hold every kind of line.
    void hatchInTheBorderColour_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QString>("cell"); // eight rows of eight
        QTest::newRow("cross") << 6 << "....#.......#.......#...########....#.......#.......#.......#...";
        QTest::newRow("diagonal cross")
            << 7 << "#......#.#....#...#..#.....##......##.....#..#...#....#.#......#";
    }
    void hatchInTheBorderColour()
    {
        QFETCH(int, style);
        QFETCH(QString, cell);
        Surface s = MakeSurface(16, 16);
        s.FillColor = 0;
        s.FillStyle = style;
        QVERIFY(ExtFloodFill(s, 13, 9, 0, FLOODFILLBORDER));
        const QStringList rows = charsOf(s);
        for (int y = 0; y < 16; ++y)
            QCOMPARE(rows[y], cell.mid(y % 8 * 8, 8).repeated(2));
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

    void border()
    {
        // Outer size, border, drawable size: the document's frame, none, and all frame.
        for (const auto& [outer, border, drawable] : {std::tuple{QSize(642, 482), 1, QSize(640, 480)},
                                                      {QSize(10, 4), 0, QSize(10, 4)},
                                                      {QSize(4, 9), 2, QSize(0, 0)}}) {
            Surface s(border);
            s.setSize(outer.width(), outer.height());
            QCOMPARE(QSize(s.ScaleWidth(), s.ScaleHeight()), drawable);
        }
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
