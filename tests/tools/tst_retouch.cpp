// The pencil and the retouch tools: the pencil's colour sequence of each mix style,
// its one-pixel press, right button and release; the ring walk, each brush's mix at its
// centre and rim, the cases where a dab must leave the picture alone, the hard spray's
// hit rate and the fault of a size beyond the walk's 16-bit arithmetic; the colour
// picker and replacer through the pointer events, the replacer's exact swap, and the
// crop marquee's limits.

#include "core/Gdi.h"
#include "support/FakeHost.h"
#include "support/TestImages.h"
#include "tools/ColorPicker.h"
#include "tools/Pencil.h"
#include "tools/Retouch.h"

#include <QtTest>

#include <map>
#include <tuple>

using namespace velunta;
using namespace velunta::test;

namespace {

// A stroke along row 5: a press at x = 2, then moves of 4 pixels. Returns the colour of
// the press pixel and of the first pixel of each segment.
QList<Color> strokeColours(ToolBench& b, int moves, int button = 1)
{
    Surface& s = b.doc.Buffer;
    s.CurrentX = 2;
    s.CurrentY = 5;
    QList<Color> colours;
    PencilStroke(b.ctx, b.doc, s, 2, 5, 100, true, button);
    colours << GetPixel(s, 2, 5);
    for (int i = 1; i <= moves; ++i) {
        const int from = 2 + 4 * (i - 1);
        PencilStroke(b.ctx, b.doc, s, 2 + 4 * i, 5, 100, true, button);
        colours << GetPixel(s, from + 1, 5);
    }
    return colours;
}

// The selectors of each brush's size and pressure: airbrush 2 and 0, brighten 3 and 1,
// blur 8, darken 10 and 11, dissolve 12, enhance 15.
int sizeSelector(int tool)
{
    return tool == 6 ? 2 : tool == 11 ? 3 : tool == 13 ? 8 : tool == 15 ? 10 : tool == 18 ? 12 : 15;
}
int pressureSelector(int tool)
{
    return tool == 11 ? 1 : tool == 15 ? 11 : 0;
}

// A bench of one colour (kNoColor: a colourful ramp) with `tool` of the given size.
struct Brush : ToolBench {
    Brush(int tool, double size, Color colour = kNoColor)
    {
        if (colour == kNoColor)
            paint([](int x, int y) { return RGB(6 * x, 8 * y, 255 - 5 * x); });
        else
            doc.CreatePicture(42, 32, colour);
        state.CurrentTool = tool;
        state.SelectorValues[sizeSelector(tool)].Value = size;
    }
    Color at(int x, int y) const { return GetPixel(doc.Buffer, x, y); }
};

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

// Red left of x = 20, blue from there on; view x + 0.5 reads image x at zoom 100.
struct Split : ToolBench {
    explicit Split(int tool)
    {
        paint([](int x, int) { return x < 20 ? RGB(255, 0, 0) : RGB(0, 0, 255); });
        state.CurrentTool = tool;
        state.LastTool = 0; // the picker stays
    }
    // A press, moves and a release (with no move there) along row 5.
    void mouse(QList<int> xs, int button = kLeftButton)
    {
        PaintArea_MouseDown(ctx, doc, button, 0, xs.first() + 0.5f, 5.5f);
        for (int x : xs.mid(1, xs.size() - 2))
            PaintArea_MouseMove(ctx, doc, button, 0, x + 0.5f, 5.5f);
        PaintArea_MouseUp(ctx, doc, button, 0, xs.last() + 0.5f, 5.5f);
    }
};

} // namespace

class tst_Retouch : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void colourSequence_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QList<int>>("start"); // ColorMixState before the stroke
        QTest::addColumn<QList<Color>>("colours");
        // From 0 the step becomes +2: levels 2, 4, 6.
        QTest::newRow("deep red") << 1 << QList<int>{0, 0, 0}
                                  << QList<Color>{RGB(27, 0, 0), RGB(29, 0, 0), RGB(31, 0, 0)};
        QTest::newRow("deep green") << 2 << QList<int>{0, 0, 0}
                                    << QList<Color>{RGB(0, 27, 0), RGB(0, 29, 0), RGB(0, 31, 0)};
        QTest::newRow("deept blue, above 255 counts 255")
            << 3 << QList<int>{240, 2, 0} << QList<Color>{RGB(0, 0, 255), RGB(0, 0, 255), RGB(0, 0, 255)};
        QTest::newRow("gray bounces at the top")
            << 8 << QList<int>{254, 2, 0}
            << QList<Color>{RGB(255, 255, 255), RGB(254, 254, 254), RGB(252, 252, 252)};
        QTest::newRow("gray bounces at the bottom")
            << 8 << QList<int>{1, -2, 0} << QList<Color>{RGB(3, 3, 3), RGB(5, 5, 5), RGB(7, 7, 7)};
        QTest::newRow("blue pastel") << 5 << QList<int>{10, 2, 0}
                                     << QList<Color>{RGB(12, 255, 255), RGB(14, 255, 255), RGB(16, 255, 255)};
        QTest::newRow("pink pastel") << 6 << QList<int>{10, 2, 0}
                                     << QList<Color>{RGB(255, 12, 255), RGB(255, 14, 255), RGB(255, 16, 255)};
        QTest::newRow("yellow pastel")
            << 7 << QList<int>{10, 2, 0}
            << QList<Color>{RGB(255, 255, 12), RGB(255, 255, 14), RGB(255, 255, 16)};
        // Rainbow: the level step first (10 + 20), then each counter + 2 mod 255.
        QTest::newRow("rainbow") << 4 << QList<int>{10, 20, 30}
                                 << QList<Color>{RGB(32, 22, 32), RGB(56, 24, 34), RGB(82, 26, 36)};
        // Fore (100, 0, 50) + back (255, 255, 255) times level / 255.
        QTest::newRow("user mix") << 9 << QList<int>{100, 2, 0}
                                  << QList<Color>{RGB(142, 102, 122), RGB(145, 104, 124), RGB(148, 106, 127)};
        QTest::newRow("one colour") << 0 << QList<int>{0, 0, 0}
                                    << QList<Color>{RGB(100, 0, 50), RGB(100, 0, 50), RGB(100, 0, 50)};
    }
    void colourSequence()
    {
        QFETCH(int, style);
        QFETCH(QList<int>, start);
        QFETCH(QList<Color>, colours);
        ToolBench b;
        b.state.PencilStyle = style;
        b.state.ForeColor = RGB(100, 0, 50);
        b.state.SelectorValues[4].Value = 1;
        for (int k = 0; k < 3; ++k)
            b.state.ColorMixState[k] = start[k];
        QCOMPARE(strokeColours(b, 2), colours);
    }

    void scatterLeavesTheStep()
    {
        ToolBench b;
        b.state.ScatterColors = true;
        b.state.PencilStyle = 1;
        b.state.random.seed(7);
        b.state.ColorMixState = {300, -2, 0};
        const QList<Color> colours = strokeColours(b, 3);
        QCOMPARE(b.state.ColorMixState[1], -2); // no bounce with scatter on
        QVERIFY(colours.count(colours.first()) < colours.size());
        // Switching from the rainbow to deep red goes on with what the rainbow left.
        ToolBench c;
        c.state.PencilStyle = 4;
        c.state.ColorMixState = {10, 20, 30};
        strokeColours(c, 0);
        c.state.PencilStyle = 1;
        Surface& s = c.doc.Buffer;
        PencilStroke(c.ctx, c.doc, s, 12, 8, 100, true, 1);
        QCOMPARE(c.state.ColorMixState[0], 32 + 22);
    }

    void pressWithoutMoveIsOnePixel_data()
    {
        QTest::addColumn<double>("size");
        QTest::addColumn<int>("style");
        QTest::newRow("size 40") << 40.0 << 0;
        QTest::newRow("size 8, mix") << 8.0 << 4;
    }
    void pressWithoutMoveIsOnePixel()
    {
        QFETCH(double, size);
        QFETCH(int, style);
        ToolBench b;
        b.state.SelectorValues[4].Value = size;
        b.state.PencilStyle = style;
        Surface& s = b.doc.Buffer;
        s.CurrentX = 10;
        s.CurrentY = 10;
        PencilStroke(b.ctx, b.doc, s, 10, 10, 100, true, 1);
        QCOMPARE(RowsOf(s, 0xFFFFFF, u'w').join(QString()).count(u'.'), 1);
    }

    void rightButtonColour_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<Color>("colour");
        QTest::newRow("one colour: background") << 0 << RGB(0, 128, 255);
        QTest::newRow("dots: background") << 10 << RGB(0, 128, 255);
        QTest::newRow("deep red: its own colour") << 1 << RGB(27, 0, 0);
    }
    void rightButtonColour()
    {
        QFETCH(int, style);
        QFETCH(Color, colour);
        ToolBench b;
        b.state.PencilStyle = style;
        b.state.BackColor = RGB(0, 128, 255);
        b.state.ForeColor = RGB(9, 9, 9);
        QCOMPARE(strokeColours(b, 0, 2).first(), colour);
    }

    void releaseDrawsOnlyWhenMoved()
    {
        ToolBench b;
        b.state.ForeColor = RGB(255, 0, 0);
        Surface& s = b.doc.Buffer;
        s.CurrentX = 4;
        s.CurrentY = 4;
        PencilStroke(b.ctx, b.doc, s, 4, 4, 100, false, 0);
        QCOMPARE(GetPixel(s, 4, 4), Color(0xFFFFFF));
        PencilStroke(b.ctx, b.doc, s, 14, 4, 100, false, 0);
        QCOMPARE(GetPixel(s, 9, 4), RGB(255, 0, 0));
    }

    void strokeInsideSelectionDrawsOnIt()
    {
        ToolBench b;
        b.state.ForeColor = RGB(0, 0, 255);
        Surface& sel = ShowFloat(b.doc, {20, 10, 10, 10}, 0xFFFFFF);
        Surface& s = b.doc.Buffer;
        s.CurrentX = 22;
        s.CurrentY = 12;
        sel.CurrentX = 2;
        sel.CurrentY = 2;
        PencilStroke(b.ctx, b.doc, s, 26, 12, 100, true, 1);
        QCOMPARE(GetPixel(sel, 3, 2), RGB(0, 0, 255));
        // The refresh stamps the selection into the picture.
        QCOMPARE(GetPixel(s, 23, 12), RGB(0, 0, 255));
    }

    void blurBrush_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("rings");
        QTest::addColumn<int>("changed");
        QTest::newRow("size 0: the one block") << 0 << 2 << 4;
        QTest::newRow("size 2 rings 1: 13 blocks, 24 pixels") << 2 << 1 << 24;
    }
    void blurBrush()
    {
        QFETCH(int, size);
        QFETCH(int, rings);
        QFETCH(int, changed);
        // A chequer board: every blurred block changes colour.
        Surface s = MakeSurface(12, 12);
        s.setImage(MakeImage(12, 12, [](int x, int y) { return (x + y) % 2 ? 0 : 0xFFFFFF; }));
        const QImage before = s.Image().copy();
        BlurBrush(s, 6, 6, size, rings);
        QCOMPARE(DifferingPixels(before, s.Image()), changed);
        if (changed == 4) {
            // The average of two black and two white pixels, written to the whole block.
            for (QPoint p : {QPoint(6, 6), QPoint(6, 5), QPoint(5, 5), QPoint(5, 6)})
                QCOMPARE(GetPixel(s, p.x(), p.y()), RGB(128, 128, 128));
        }
    }

    void ringWalkTouchesTheDiscOnce_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("rings");
        QTest::addColumn<int>("step");
        QTest::addColumn<int>("pixels");
        QTest::newRow("size 7, 3 uneven rings") << 7 << 3 << 1 << 149;
        QTest::newRow("size 10, sieve") << 10 << 5 << 2 << 81;
    }
    void ringWalkTouchesTheDiscOnce()
    {
        QFETCH(int, size);
        QFETCH(int, rings);
        QFETCH(int, step);
        QFETCH(int, pixels);
        int visits = 0;
        const auto seen = walked(size, rings, step, &visits);
        QCOMPARE(visits, pixels);
        QCOMPARE(int(seen.size()), visits);
        for (const auto& [p, ring] : seen) {
            QVERIFY(p.first * p.first + p.second * p.second <= size * size);
            QVERIFY(p.first % step == 0 && p.second % step == 0);
        }
    }

    void ringWalkOrder()
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

    void dabKeepsColours_data()
    {
        QTest::addColumn<int>("tool");
        QTest::addColumn<bool>("option");  // hard spray, noise, filter
        QTest::addColumn<Color>("colour"); // kNoColor: a colour ramp
        QTest::addColumn<double>("pressure");
        QTest::addColumn<double>("size");
        // Size 1 has rings I4(0.5) = 0: the ring loop never runs, whatever the option.
        for (int tool : {6, 11, 13, 15, 18, 19})
            for (bool option : {false, true})
                QTest::addRow("rings 0: tool %d, option %d", tool, option)
                    << tool << option << kNoColor << 100.0 << 1.0;
        // r = 2, steps = 1, step = 1: the whole dab mixes nothing in.
        QTest::newRow("brighten at 100, size 2") << 11 << false << kNoColor << 100.0 << 2.0;
        QTest::newRow("white under brighten") << 11 << false << Color(0xFFFFFF) << 30.0 << 12.0;
        QTest::newRow("black under darken") << 15 << false << Color(0) << 100.0 << 12.0;
    }
    void dabKeepsColours()
    {
        QFETCH(int, tool);
        QFETCH(bool, option);
        QFETCH(Color, colour);
        QFETCH(double, pressure);
        QFETCH(double, size);
        Brush b(tool, size, colour);
        b.state.HardSpray = b.state.AddNoise = b.state.FilterBaseColor = option;
        b.state.SelectorValues[pressureSelector(tool)].Value = pressure;
        const QImage before = b.doc.Buffer.Image().copy();
        b.dispatch(20, 15);
        b.dispatch(20, 15, 0); // the release never touches the picture
        QCOMPARE(DifferingPixels(before, b.doc.Buffer.Image()), 0);
    }

    void mixAtTheCentre_data()
    {
        QTest::addColumn<int>("tool");
        QTest::addColumn<Color>("colour");
        QTest::addColumn<Color>("centre");
        // Size 4 (rings of radius 2 and 4), pressure 100, foreground black: the inner ring
        // goes half way (127.5 rounds to even), the outer ring keeps its colour.
        QTest::newRow("darken white") << 15 << Color(0xFFFFFF) << RGB(128, 128, 128);
        QTest::newRow("brighten a colour") << 11 << RGB(100, 0, 255) << RGB(178, 128, 255);
        QTest::newRow("soft spray black on white") << 6 << Color(0xFFFFFF) << RGB(128, 128, 128);
    }
    void mixAtTheCentre()
    {
        QFETCH(int, tool);
        QFETCH(Color, colour);
        QFETCH(Color, centre);
        Brush b(tool, 4, colour);
        b.state.ForeColor = 0;
        b.state.SelectorValues[pressureSelector(tool)].Value = 100;
        b.dispatch(20, 15);
        QCOMPARE(QList<Color>({b.at(20, 15), b.at(22, 15), b.at(24, 15), b.at(25, 15)}),
                 QList<Color>({centre, centre, colour, colour}));
    }

    // On the outermost ring (step = steps) the mix lands back on the pixel whatever the
    // quotient's rounding; with no steps it is the pure colour.
    void mixToForegroundOuterRingKeepsThePixel()
    {
        const struct {
            Color pixel, fore;
            int steps;
        } cases[] = {{0xFFFFFF, 0, 7}, {0, 0xFFFFFF, 3}, {RGB(13, 200, 77), RGB(250, 1, 128), 110}};
        for (const auto& c : cases) {
            QCOMPARE(MixToForeground(c.pixel, c.steps, c.steps, c.fore), c.pixel);
            QCOMPARE(MixToForeground(c.pixel, 0, 1, c.fore), c.fore);
        }
    }

    // One step of three toward the limit is a third of the way, in whole thirds of 255;
    // at the limit, on the outer ring and with no steps the pixel stays.
    void brightenMixAtItsLimit()
    {
        const QList<Color> mixed{MixToLimit(0, 3, 1, false),
                                 MixToLimit(0xFFFFFF, 3, 1, true),
                                 MixToLimit(0xFFFFFF, 3, 1, false),
                                 MixToLimit(0, 3, 1, true),
                                 MixToLimit(RGB(10, 20, 30), 3, 3, false),
                                 MixToLimit(RGB(10, 20, 30), 0, 1, false)};
        QCOMPARE(mixed, QList<Color>({RGB(170, 170, 170), RGB(85, 85, 85), 0xFFFFFF, 0, RGB(10, 20, 30),
                                      RGB(10, 20, 30)}));
    }

    void hardSprayHitRate_data()
    {
        QTest::addColumn<double>("pressure");
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        // P = 1: I4(u * 100) < 2 for u below 0.015. P = 100: always.
        QTest::newRow("pressure 1") << 1.0 << 0.0135 << 0.0165;
        QTest::newRow("pressure 100") << 100.0 << 1.0 << 1.0;
    }
    void hardSprayHitRate()
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
        QCOMPARE(GetPixel(s, 40 + 31, 40), Color(0xFFFFFF)); // two thirds of 45
    }

    void dissolve_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<Color>("before");
        QTest::addColumn<Color>("after");
        QTest::newRow("reds, D above R gives 0") << 0 << "50 " << RGB(30, 100, 255) << RGB(0, 100, 255);
        QTest::newRow("greens") << 1 << " 20 pixel" << RGB(200, 100, 255) << RGB(200, 80, 255);
        QTest::newRow("blues keep the top byte") << 2 << "5" << RGB(0, 0, 255) << RGB(0, 0, 250);
        // (200 + 100 + 255) / 3 + 50 / 10 = 190
        QTest::newRow("all colors: grey") << 3 << "50 " << RGB(200, 100, 255) << RGB(190, 190, 190);
        QTest::newRow("all colors caps at 255") << 3 << "200" << Color(0xFFFFFF) << Color(0xFFFFFF);
        QTest::newRow("caption without a number") << 0 << "none" << RGB(200, 1, 2) << RGB(200, 1, 2);
    }
    void dissolve()
    {
        QFETCH(int, mode);
        QFETCH(QString, caption);
        QFETCH(Color, before);
        QFETCH(Color, after);
        Brush b(18, 6, before);
        b.state.DissolveMode = mode;
        b.state.SelectorValues[13].Value = 999; // the caption counts, not the value
        b.state.SelectorValues[13].Caption = caption;
        b.dispatch(20, 15);
        QCOMPARE(QList<Color>({b.at(20, 15), b.at(26, 15), b.at(27, 15)}),
                 QList<Color>({after, after, before}));
    }

    void dissolveNoiseStaysInItsRange()
    {
        Brush b(18, 10, RGB(255, 0, 0));
        b.state.AddNoise = true;
        b.state.random.seed(5);
        b.state.SelectorValues[13].Caption = QStringLiteral("10 ");
        b.dispatch(20, 15);
        QSet<int> reds;
        for (const auto& [p, ring] : walked(10, 5, 1)) {
            const int red = ColorRed(b.at(20 + p.first, 15 + p.second));
            QVERIFY(red >= 255 - 110 && red <= 255 - 10);
            reds << red;
        }
        QVERIFY(reds.size() > 50); // a number per pixel
    }

    void enhance_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("filter");
        QTest::addColumn<bool>("doubleStep"); // a sieve: the pixel right of the centre stays
        QTest::addColumn<QString>("caption");
        QTest::addColumn<Color>("after");
        QTest::newRow("filter, E = 0: nothing") << 0 << true << false << "0 " << RGB(90, 101, 250);
        QTest::newRow("filter reds, E = 1") << 0 << true << false << "1 " << RGB(90, 50, 125);
        QTest::newRow("filter greens, E = 3") << 1 << true << false << "3" << RGB(22, 101, 62);
        QTest::newRow("reds + 10") << 0 << false << false << "10 " << RGB(100, 101, 250);
        QTest::newRow("blues + 10 caps at 255") << 2 << false << false << "10 " << RGB(90, 101, 255);
        QTest::newRow("double step is a sieve") << 0 << true << true << "1" << RGB(90, 50, 125);
    }
    void enhance()
    {
        QFETCH(int, mode);
        QFETCH(bool, filter);
        QFETCH(bool, doubleStep);
        QFETCH(QString, caption);
        QFETCH(Color, after);
        const Color before = RGB(90, 101, 250);
        Brush b(19, 8, before);
        b.state.EnhanceMode = mode;
        b.state.FilterBaseColor = filter;
        b.state.DoubleStep = doubleStep;
        b.state.SelectorValues[14].Caption = caption;
        b.dispatch(20, 15);
        QCOMPARE(QList<Color>({b.at(20, 15), b.at(22, 13), b.at(21, 15)}),
                 QList<Color>({after, after, doubleStep ? before : after}));
    }

    void dabInsideSelectionPaintsTheSelection()
    {
        Brush b(11, 4);
        Surface& sel = ShowFloat(b.doc, {20, 10, 10, 10}, 0);
        b.state.SelectorValues[1].Value = 100;
        b.dispatch(25, 15);
        QCOMPARE(GetPixel(sel, 5, 5), RGB(128, 128, 128));
        // The refresh stamps the selection into the picture.
        QCOMPARE(b.at(25, 15), RGB(128, 128, 128));
        QCOMPARE(b.at(20, 10), Color(0));
    }

    void sizeAbove181EndsTheDab_data()
    {
        QTest::addColumn<int>("tool");
        for (int tool : {6, 11, 13, 15, 18, 19})
            QTest::addRow("tool %d", tool) << tool;
    }
    void sizeAbove181EndsTheDab()
    {
        QFETCH(int, tool);
        Brush b(tool, 182);
        const QImage before = b.doc.Buffer.Image().copy();
        QVERIFY_THROWS_EXCEPTION(OverflowError, b.dispatch(20, 15));
        // The fault comes before the first pixel: the picture is as it was.
        QCOMPARE(DifferingPixels(before, b.doc.Buffer.Image()), 0);
        b.state.SelectorValues[sizeSelector(tool)].Value = 181;
        b.dispatch(20, 15);
    }

    void pickerSetsTheSwatchByButton_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("selIndex");
        QTest::addColumn<Color>("fore");
        QTest::addColumn<Color>("back");
        // Left press on red, release on blue: the release picks last.
        QTest::newRow("left: foreground") << 1 << 0 << RGB(0, 0, 255) << Color(0xFFFFFF);
        QTest::newRow("left, sliders on the background") << 1 << 1 << Color(0) << RGB(0, 0, 255);
        // Right: only the drag picks; the right release runs no tool.
        QTest::newRow("right: background") << 2 << 0 << Color(0) << RGB(255, 0, 0);
    }
    void pickerSetsTheSwatchByButton()
    {
        QFETCH(int, button);
        QFETCH(int, selIndex);
        QFETCH(Color, fore);
        QFETCH(Color, back);
        Split b(8);
        b.state.SelIndex = selIndex;
        b.mouse({5, 10, 30}, button);
        QCOMPARE(b.state.ForeColor, fore);
        QCOMPARE(b.state.BackColor, back);
        // The floating selection's transparency colour follows the foreground.
        QCOMPARE(b.state.TransparencyColor, fore);
        QCOMPARE(b.host.transparencyShown, fore);
        QVERIFY(b.host.colorChanges > 0);
    }

    void dragShowsTheColourUnderThePointer()
    {
        for (int tool : {8, 17}) {
            Split b(tool);
            PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 5.5, 5.5);
            const Color source = b.state.ReplaceColors[0];
            PaintArea_MouseMove(b.ctx, b.doc, kLeftButton, 0, 25.5, 5.5);
            QCOMPARE(b.host.picked, RGB(0, 0, 255));
            QCOMPARE(b.state.ReplaceColors[0], source); // the replacer's swatch keeps the click
        }
    }

    void pickOutsideThePictureDoesNothing()
    {
        ToolBench b;
        b.state.CurrentTool = 8;
        b.state.ForeColor = RGB(1, 2, 3);
        PickColorAt(b.ctx, b.doc, 40, 3, 1);
        PickColorAt(b.ctx, b.doc, -1, 3, 2);
        b.dispatch(40, 3);
        QCOMPARE(b.host.picked, kNoColor);
        QCOMPARE(b.state.ReplaceColors, (std::array<Color, 2>{kNoColor, kNoColor}));
        QCOMPARE(b.state.ForeColor, RGB(1, 2, 3));
    }

    void armedTransparencyPickAndTheReplacersColours()
    {
        Split b(8);
        b.state.TransparencyPickArmed = true;
        b.view.pointer = 8;
        PickColorAt(b.ctx, b.doc, 30, 3, 1);
        QCOMPARE(b.state.TransparencyColor, RGB(0, 0, 255));
        QVERIFY(!b.state.TransparencyPickArmed);
        QCOMPARE(b.view.pointer, -1);
        QCOMPARE(b.state.ReplaceColors[0], kNoColor);
        // The replacer's own click is never a transparency pick: it picks the source,
        // and the right button the new colour.
        b.state.CurrentTool = 17;
        b.state.TransparencyPickArmed = true;
        b.mouse({3});
        b.mouse({30}, kRightButton);
        QCOMPARE(b.state.TransparencyColor, RGB(0, 0, 255));
        QCOMPARE(b.state.ReplaceColors, (std::array<Color, 2>{RGB(255, 0, 0), RGB(0, 0, 255)}));
        QCOMPARE(b.host.replaceShown[1], RGB(0, 0, 255));
        QCOMPARE(b.state.CurrentTool, 17);
    }

    void replaceColor_data()
    {
        QTest::addColumn<Color>("from");
        QTest::addColumn<Color>("to");
        QTest::addColumn<int>("changed");
        QTest::newRow("red to green") << RGB(255, 0, 0) << RGB(0, 255, 0) << 3;
        QTest::newRow("a colour not in the picture") << RGB(1, 2, 3) << RGB(0, 255, 0) << 0;
    }
    void replaceColor()
    {
        QFETCH(Color, from);
        QFETCH(Color, to);
        QFETCH(int, changed);
        // Red, and its neighbours one step off in each channel, which must stay.
        const QHash<QChar, Color> palette{
            {u'r', RGB(255, 0, 0)}, {u'a', RGB(254, 0, 0)}, {u'b', RGB(255, 1, 0)}, {u'c', RGB(255, 0, 1)}};
        Surface s;
        s.setImage(ImageFromRows({"r.a.", ".rb.", "c..r"}, palette));
        const QImage before = s.Image().copy();
        QCOMPARE(ReplaceColor(s, from, to), changed);
        QCOMPARE(DifferingPixels(before, s.Image()), changed);
        if (changed)
            QCOMPARE(RowsOf(s, to), (QStringList{"#...", ".#..", "...#"}));
    }

    void cropMarqueeStaysInTheView_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QPointF>("press"); // image position of the pen
        QTest::addColumn<QPoint>("pointer");
        QTest::addColumn<QRectF>("box"); // in view pixels
        QTest::newRow("dragged up and left")
            << 100.0 << QPointF(15, 20) << QPoint(5, 6) << QRectF(5, 6, 10, 14);
        QTest::newRow("past the right and bottom")
            << 100.0 << QPointF(30, 20) << QPoint(55, 45) << QRectF(30, 20, 10, 10);
        QTest::newRow("past the left and top")
            << 100.0 << QPointF(4, 3) << QPoint(-6, -2) << QRectF(0, 0, 4, 3);
        QTest::newRow("zoom 200") << 200.0 << QPointF(5, 6) << QPoint(15, 20) << QRectF(10, 12, 20, 28);
    }
    void cropMarqueeStaysInTheView()
    {
        QFETCH(double, zoom);
        QFETCH(QPointF, press);
        QFETCH(QPoint, pointer);
        QFETCH(QRectF, box);
        ToolBench b;
        b.doc.view.paintWidth = int(40 * zoom / 100) + 2;
        b.doc.view.paintHeight = int(30 * zoom / 100) + 2;
        b.doc.ZoomFactor = zoom;
        b.doc.SelectArea.Visible = true;
        b.state.CurrentTool = 7;
        b.doc.Buffer.CurrentX = press.x();
        b.doc.Buffer.CurrentY = press.y();
        b.dispatch(pointer.x(), pointer.y(), kLeftButton, false, zoom);
        const RectOverlay& c = b.doc.CropArea;
        QVERIFY(c.Visible && !b.doc.SelectArea.Visible);
        QCOMPARE(QRectF(c.Left, c.Top, c.Width, c.Height), box);
    }

    void cropOfAClickOrALineDoesNothing()
    {
        for (QPointF release : {QPointF(10.5, 10.5), QPointF(10.5, 25.5), QPointF(30.5, 10.5)}) {
            ToolBench b;
            b.state.CurrentTool = 7;
            b.mouse({{10.5, 10.5}, release});
            QCOMPARE(QSize(b.doc.Buffer.ScaleWidth(), b.doc.Buffer.ScaleHeight()), QSize(40, 30));
            QCOMPARE(b.host.undoBitmaps, 0);
        }
    }
};

QTEST_GUILESS_MAIN(tst_Retouch)
#include "tst_retouch.moc"
