// The pencil: the colour sequence of each mix style, the one-pixel press, the right
// button's colour, the release step, and the smoothing brush it shares with Blur.

#include "core/Gdi.h"
#include "support/FakeHost.h"
#include "support/TestImages.h"
#include "tools/Pencil.h"
#include "tools/Retouch.h"

#include <QtTest>

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

} // namespace

class tst_Pencil : public QObject {
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
        QTest::newRow("size 1") << 1.0 << 0;
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
};

QTEST_GUILESS_MAIN(tst_Pencil)
#include "tst_pencil.moc"
