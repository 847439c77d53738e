// The retouch brushes: the ring walk, each brush's mix at its centre and rim, the
// cases where a dab must leave the picture alone, the hard spray's hit rate, and the
// fault of a size beyond the walk's 16-bit arithmetic.

#include "core/Gdi.h"
#include "support/FakeHost.h"
#include "support/TestImages.h"
#include "tools/Retouch.h"

#include <QtTest>

#include <map>
#include <tuple>

using namespace velunta;
using namespace velunta::test;

namespace {

// The selector each tool reads its size from: airbrush 2, brighten 3, blur 8, darken
// 10, dissolve 12, enhance 15.
int sizeSelector(int tool)
{
    return tool == 6 ? 2 : tool == 11 ? 3 : tool == 13 ? 8 : tool == 15 ? 10 : tool == 18 ? 12 : 15;
}

// The selector of the pressure: airbrush 0, brighten 1, darken 11.
int pressureSelector(int tool)
{
    return tool == 11 ? 1 : tool == 15 ? 11 : 0;
}

// A bench whose picture is a colourful ramp, so that every brush has something to change.
ToolBench& rampBench(ToolBench& b)
{
    b.doc.Buffer.setImage(MakeImage(40, 30, [](int x, int y) { return RGB(6 * x, 8 * y, 255 - 5 * x); }));
    return b;
}

// One dab of the current tool at x, y through the engine.
void dab(ToolBench& b, int x, int y)
{
    double zoom = 100;
    bool drawing = true;
    ToolDispatch(b.ctx, b.doc, b.doc.Buffer, x, y, zoom, drawing, 1, false);
}

// Each pixel a walk visits, with its ring.
std::map<std::pair<int, int>, int> walked(int size, int rings, int step, int* visits = nullptr)
{
    std::map<std::pair<int, int>, int> seen;
    int count = 0;
    RingWalk(0, 0, size, rings, step, [&](int x, int y, int ring) {
        seen.emplace(std::make_pair(x, y), ring);
        ++count;
    });
    if (visits)
        *visits = count;
    return seen;
}

} // namespace

class tst_Retouch : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void ringWalkTouchesEachPixelOnceInnermostFirst_data();
    void ringWalkTouchesEachPixelOnceInnermostFirst();
    void ringWalkOrder();
    void dabKeepsColours_data();
    void dabKeepsColours();
    void mixAtTheCentre_data();
    void mixAtTheCentre();
    void mixToForegroundOuterRingKeepsThePixel_data();
    void mixToForegroundOuterRingKeepsThePixel();
    void hardSprayHitRate_data();
    void hardSprayHitRate();
    void dissolve_data();
    void dissolve();
    void dissolveNoiseStaysInItsRange();
    void enhance_data();
    void enhance();
    void enhanceDoubleStepIsASieve();
    void dabInsideSelectionPaintsTheSelection();
    void sizeAbove181EndsTheDab_data();
    void sizeAbove181EndsTheDab();
};

void tst_Retouch::ringWalkTouchesEachPixelOnceInnermostFirst_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("rings");
    QTest::addColumn<int>("step");
    QTest::newRow("size 2, one ring") << 2 << 1 << 1;
    QTest::newRow("size 10, 5 rings") << 10 << 5 << 1;
    QTest::newRow("size 7, 3 uneven rings") << 7 << 3 << 1;
    QTest::newRow("size 10, sieve") << 10 << 5 << 2;
    QTest::newRow("size 0, the centre") << 0 << 2 << 1;
}

void tst_Retouch::ringWalkTouchesEachPixelOnceInnermostFirst()
{
    QFETCH(int, size);
    QFETCH(int, rings);
    QFETCH(int, step);
    int visits = 0;
    const auto seen = walked(size, rings, step, &visits);
    QCOMPARE(int(seen.size()), visits);
    // The disc of the outer radius, no more and no less, each pixel by the first ring
    // whose radius reaches it.
    int expected = 0;
    for (int dx = -size; dx <= size; dx += step) {
        for (int dy = -size; dy <= size; dy += step) {
            const int d2 = dx * dx + dy * dy;
            if (d2 > size * size)
                continue;
            ++expected;
            int ring = 1;
            while (I2(double(size) / rings * ring) * I2(double(size) / rings * ring) < d2)
                ++ring;
            QCOMPARE(seen.at({dx, dy}), ring);
        }
    }
    QCOMPARE(visits, expected);
}

void tst_Retouch::ringWalkOrder()
{
    // The blur's overlapping blocks make the order part of the result: rings outward,
    // dx outer, dy inner.
    QList<QPoint> order;
    RingWalk(0, 0, 2, 2, 1, [&](int x, int y, int) { order << QPoint(x, y); });
    const QList<QPoint> expected{{-1, 0}, {0, -1},  {0, 0},  {0, 1},  {1, 0},          // ring 1, r = 1
                                 {-2, 0}, {-1, -1}, {-1, 1}, {0, -2}, {0, 2}, {1, -1}, // ring 2, r = 2
                                 {1, 1},  {2, 0}};
    QCOMPARE(order, expected);
}

void tst_Retouch::dabKeepsColours_data()
{
    QTest::addColumn<int>("tool");
    QTest::addColumn<bool>("option");  // hard spray, noise, filter
    QTest::addColumn<Color>("colour"); // -1: a colour ramp
    QTest::addColumn<double>("pressure");
    QTest::addColumn<double>("size");
    // Size 1 has rings I4(0.5) = 0: the ring loop never runs.
    const std::tuple<int, bool, const char*> ringsZero[] = {{6, false, "soft spray"},
                                                            {6, true, "hard spray"},
                                                            {11, false, "brighten"},
                                                            {13, false, "blur"},
                                                            {15, false, "darken"},
                                                            {18, false, "dissolve"},
                                                            {18, true, "dissolve with noise"},
                                                            {19, false, "enhance"},
                                                            {19, true, "enhance, filter"}};
    for (const auto& [tool, option, name] : ringsZero)
        QTest::addRow("rings 0: %s", name) << tool << option << kNoColor << 100.0 << 1.0;
    // r = 2, steps = 1, step = 1: the whole dab mixes nothing in.
    QTest::newRow("brighten at 100, size 2") << 11 << false << kNoColor << 100.0 << 2.0;
    QTest::newRow("white under brighten, 100") << 11 << false << Color(0xFFFFFF) << 100.0 << 12.0;
    QTest::newRow("white under brighten, 30") << 11 << false << Color(0xFFFFFF) << 30.0 << 12.0;
    QTest::newRow("black under darken, 100") << 15 << false << Color(0) << 100.0 << 12.0;
    QTest::newRow("black under darken, 1") << 15 << false << Color(0) << 1.0 << 12.0;
}

void tst_Retouch::dabKeepsColours()
{
    QFETCH(int, tool);
    QFETCH(bool, option);
    QFETCH(Color, colour);
    QFETCH(double, pressure);
    QFETCH(double, size);
    ToolBench b;
    if (colour == kNoColor)
        rampBench(b);
    else
        b.doc.CreatePicture(42, 32, colour);
    b.state.CurrentTool = tool;
    b.state.HardSpray = b.state.AddNoise = b.state.FilterBaseColor = option;
    b.state.SelectorValues[pressureSelector(tool)].Value = pressure;
    b.state.SelectorValues[sizeSelector(tool)].Value = size;
    const QImage before = b.doc.Buffer.Image().copy();
    dab(b, 20, 15);
    QCOMPARE(DifferingPixels(before, b.doc.Buffer.Image()), 0);
    // The release never touches the picture.
    double zoom = 100;
    bool drawing = false;
    ToolDispatch(b.ctx, b.doc, b.doc.Buffer, 20, 15, zoom, drawing, 0, false);
    QCOMPARE(DifferingPixels(before, b.doc.Buffer.Image()), 0);
}

void tst_Retouch::mixAtTheCentre_data()
{
    QTest::addColumn<int>("tool");
    QTest::addColumn<Color>("colour");
    QTest::addColumn<Color>("centre");
    // Size 4 (rings of radius 2 and 4), pressure 100, foreground black: the inner ring
    // goes half way (127.5 rounds to even), the outer ring keeps its colour.
    QTest::newRow("brighten black") << 11 << Color(0) << RGB(128, 128, 128);
    QTest::newRow("darken white") << 15 << Color(0xFFFFFF) << RGB(128, 128, 128);
    QTest::newRow("brighten a colour") << 11 << RGB(100, 0, 255) << RGB(178, 128, 255);
    QTest::newRow("soft spray black on white") << 6 << Color(0xFFFFFF) << RGB(128, 128, 128);
}

void tst_Retouch::mixAtTheCentre()
{
    QFETCH(int, tool);
    QFETCH(Color, colour);
    QFETCH(Color, centre);
    ToolBench b;
    b.doc.CreatePicture(42, 32, colour);
    b.state.CurrentTool = tool;
    b.state.ForeColor = 0;
    b.state.SelectorValues[pressureSelector(tool)].Value = 100;
    b.state.SelectorValues[sizeSelector(tool)].Value = 4;
    dab(b, 20, 15);
    QCOMPARE(GetPixel(b.doc.Buffer, 20, 15), centre);
    QCOMPARE(GetPixel(b.doc.Buffer, 22, 15), centre);
    QCOMPARE(GetPixel(b.doc.Buffer, 24, 15), colour);
    QCOMPARE(GetPixel(b.doc.Buffer, 25, 15), colour); // outside the dab
}

void tst_Retouch::mixToForegroundOuterRingKeepsThePixel_data()
{
    QTest::addColumn<Color>("pixel");
    QTest::addColumn<Color>("fore");
    QTest::addColumn<int>("steps");
    QTest::newRow("white to black, 7 steps") << Color(0xFFFFFF) << Color(0) << 7;
    QTest::newRow("black to white, 3 steps") << Color(0) << Color(0xFFFFFF) << 3;
    QTest::newRow("colour to colour, 110 steps") << RGB(13, 200, 77) << RGB(250, 1, 128) << 110;
}

void tst_Retouch::mixToForegroundOuterRingKeepsThePixel()
{
    QFETCH(Color, pixel);
    QFETCH(Color, fore);
    QFETCH(int, steps);
    // On the outermost ring step = steps: the mix lands back on the pixel, whatever the
    // quotient's rounding.
    QCOMPARE(MixToForeground(pixel, steps, steps, fore), pixel);
    QCOMPARE(MixToForeground(pixel, 0, 1, fore), fore); // no steps: the pure colour
}

void tst_Retouch::hardSprayHitRate_data()
{
    QTest::addColumn<double>("pressure");
    QTest::addColumn<double>("low");
    QTest::addColumn<double>("high");
    // P = 1: I4(u * 100) < 2 for u below 0.015. P = 100: always.
    QTest::newRow("pressure 1") << 1.0 << 0.0135 << 0.0165;
    QTest::newRow("pressure 100") << 100.0 << 1.0 << 1.0;
}

void tst_Retouch::hardSprayHitRate()
{
    QFETCH(double, pressure);
    QFETCH(double, low);
    QFETCH(double, high);
    // Size 45 sprays within 30 pixels, with the 22 rings of the set size.
    const int disc = int(walked(30, 22, 1).size());
    Random random(20240611);
    Surface s = MakeSurface(80, 80);
    long hits = 0;
    const int dabs = 100;
    for (int n = 0; n < dabs; ++n) {
        s.Image().fill(Qt::white);
        HardSpray(s, 40, 40, 45, 22, pressure, 0, random);
        hits += RowsOf(s, 0).join(QString()).count(u'#');
    }
    const double rate = double(hits) / (double(disc) * dabs);
    QVERIFY2(rate >= low && rate <= high, qPrintable(QString::number(rate)));
    if (pressure == 100.0)
        QCOMPARE(GetPixel(s, 40 + 31, 40), Color(0xFFFFFF)); // two thirds of 45
}

void tst_Retouch::dissolve_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<Color>("before");
    QTest::addColumn<Color>("after");
    QTest::newRow("reds, D above R gives 0")
        << 0 << QStringLiteral("50 ") << RGB(30, 100, 255) << RGB(0, 100, 255);
    QTest::newRow("reds") << 0 << QStringLiteral("50 ") << RGB(200, 100, 255) << RGB(150, 100, 255);
    QTest::newRow("greens") << 1 << QStringLiteral(" 20 pixel") << RGB(200, 100, 255) << RGB(200, 80, 255);
    QTest::newRow("blues keep the top byte") << 2 << QStringLiteral("5") << RGB(0, 0, 255) << RGB(0, 0, 250);
    // (200 + 100 + 255) / 3 + 50 / 10 = 190
    QTest::newRow("all colors: grey")
        << 3 << QStringLiteral("50 ") << RGB(200, 100, 255) << RGB(190, 190, 190);
    QTest::newRow("all colors caps at 255")
        << 3 << QStringLiteral("200") << Color(0xFFFFFF) << Color(0xFFFFFF);
    QTest::newRow("caption without a number")
        << 0 << QStringLiteral("none") << RGB(200, 1, 2) << RGB(200, 1, 2);
}

void tst_Retouch::dissolve()
{
    QFETCH(int, mode);
    QFETCH(QString, caption);
    QFETCH(Color, before);
    QFETCH(Color, after);
    ToolBench b;
    b.doc.CreatePicture(42, 32, before);
    b.state.CurrentTool = 18;
    b.state.DissolveMode = mode;
    b.state.SelectorValues[13].Value = 999; // the caption counts, not the value
    b.state.SelectorValues[13].Caption = caption;
    b.state.SelectorValues[12].Value = 6;
    dab(b, 20, 15);
    QCOMPARE(GetPixel(b.doc.Buffer, 20, 15), after);
    QCOMPARE(GetPixel(b.doc.Buffer, 26, 15), after);
    QCOMPARE(GetPixel(b.doc.Buffer, 27, 15), before);
}

void tst_Retouch::dissolveNoiseStaysInItsRange()
{
    ToolBench b;
    b.doc.CreatePicture(42, 32, RGB(255, 0, 0));
    b.state.CurrentTool = 18;
    b.state.AddNoise = true;
    b.state.random.seed(5);
    b.state.SelectorValues[13].Caption = QStringLiteral("10 ");
    b.state.SelectorValues[12].Value = 10;
    dab(b, 20, 15);
    QSet<int> reds;
    for (const auto& [p, ring] : walked(10, 5, 1)) {
        const Color c = GetPixel(b.doc.Buffer, 20 + p.first, 15 + p.second);
        QVERIFY(ColorRed(c) >= 255 - 110 && ColorRed(c) <= 255 - 10);
        reds << ColorRed(c);
    }
    QVERIFY(reds.size() > 50); // a number per pixel
}

void tst_Retouch::enhance_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("filter");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<Color>("after");
    QTest::addColumn<Color>("before");
    const Color before = RGB(90, 101, 250);
    QTest::newRow("filter, E = 0: nothing") << 0 << true << QStringLiteral("0 ") << before << before;
    QTest::newRow("filter reds, E = 1") << 0 << true << QStringLiteral("1 ") << RGB(90, 50, 125) << before;
    QTest::newRow("filter greens, E = 3") << 1 << true << QStringLiteral("3") << RGB(22, 101, 62) << before;
    QTest::newRow("filter blues, E = 1") << 2 << true << QStringLiteral("1") << RGB(45, 50, 250) << before;
    QTest::newRow("reds + 10") << 0 << false << QStringLiteral("10 ") << RGB(100, 101, 250) << before;
    QTest::newRow("greens + 10") << 1 << false << QStringLiteral("10 ") << RGB(90, 111, 250) << before;
    QTest::newRow("blues + 10 caps at 255")
        << 2 << false << QStringLiteral("10 ") << RGB(90, 101, 255) << before;
}

void tst_Retouch::enhance()
{
    QFETCH(int, mode);
    QFETCH(bool, filter);
    QFETCH(QString, caption);
    QFETCH(Color, after);
    QFETCH(Color, before);
    ToolBench b;
    b.doc.CreatePicture(42, 32, before);
    b.state.CurrentTool = 19;
    b.state.EnhanceMode = mode;
    b.state.FilterBaseColor = filter;
    b.state.SelectorValues[14].Caption = caption;
    b.state.SelectorValues[15].Value = 6;
    dab(b, 20, 15);
    QCOMPARE(GetPixel(b.doc.Buffer, 20, 15), after);
    QCOMPARE(GetPixel(b.doc.Buffer, 14, 15), after);
}

void tst_Retouch::enhanceDoubleStepIsASieve()
{
    ToolBench b;
    b.state.CurrentTool = 19;
    b.state.DoubleStep = true;
    b.state.EnhanceMode = 0;
    b.state.FilterBaseColor = true;
    b.state.SelectorValues[14].Caption = QStringLiteral("1");
    b.state.SelectorValues[15].Value = 8;
    dab(b, 20, 15);
    QCOMPARE(GetPixel(b.doc.Buffer, 20, 15), RGB(255, 128, 128));
    QCOMPARE(GetPixel(b.doc.Buffer, 22, 13), RGB(255, 128, 128));
    QCOMPARE(GetPixel(b.doc.Buffer, 21, 15), Color(0xFFFFFF));
    QCOMPARE(GetPixel(b.doc.Buffer, 20, 16), Color(0xFFFFFF));
}

void tst_Retouch::dabInsideSelectionPaintsTheSelection()
{
    ToolBench b;
    Surface& sel = b.doc.BufferSelected;
    sel.BackColor = 0;
    sel.setScaleSize(10, 10);
    sel.Cls();
    sel.Left = 20;
    sel.Top = 10;
    b.doc.SelectArea.Visible = true;
    b.state.CurrentTool = 11;
    b.state.SelectorValues[1].Value = 100;
    b.state.SelectorValues[3].Value = 4;
    dab(b, 25, 15);
    QCOMPARE(GetPixel(sel, 5, 5), RGB(128, 128, 128));
    // The refresh stamps the selection into the picture.
    QCOMPARE(GetPixel(b.doc.Buffer, 25, 15), RGB(128, 128, 128));
    QCOMPARE(GetPixel(b.doc.Buffer, 20, 10), Color(0));
}

void tst_Retouch::sizeAbove181EndsTheDab_data()
{
    QTest::addColumn<int>("tool");
    QTest::newRow("soft spray") << 6;
    QTest::newRow("brighten") << 11;
    QTest::newRow("blur") << 13;
    QTest::newRow("darken") << 15;
    QTest::newRow("dissolve") << 18;
    QTest::newRow("enhance") << 19;
}

void tst_Retouch::sizeAbove181EndsTheDab()
{
    QFETCH(int, tool);
    ToolBench b;
    rampBench(b);
    b.state.CurrentTool = tool;
    b.state.SelectorValues[sizeSelector(tool)].Value = 182;
    const QImage before = b.doc.Buffer.Image().copy();
    QVERIFY_THROWS_EXCEPTION(OverflowError, dab(b, 20, 15));
    // The fault comes before the first pixel: the picture is as it was.
    QCOMPARE(DifferingPixels(before, b.doc.Buffer.Image()), 0);
    b.state.SelectorValues[sizeSelector(tool)].Value = 181;
    dab(b, 20, 15);
}

QTEST_GUILESS_MAIN(tst_Retouch)
#include "tst_retouch.moc"
