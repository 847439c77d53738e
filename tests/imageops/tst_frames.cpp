// Picture frames and borders: the rings against literal ring-by-ring drawing, the
// transparency amounts, the preview against the full-size frame, the border's tiles.

#include "core/Gdi.h"
#include "imageops/Borders.h"
#include "imageops/Frames.h"
#include "imageops/Pictures.h"

#include <QtTest>

#include <cmath>

using namespace velunta;
using namespace velunta::test;

namespace {

// Ring i drawn as the outline of the rectangle i pixels in: the top row and the
// bottom row across, then the two columns between them. `near` and `far` give the
// colour (or the change) of the top/left and of the bottom/right sides.
void literalRings(Surface& s, int thickness, int layout, const std::function<Color(int, bool, Color)>& paint)
{
    const int w = s.ScaleWidth(), h = s.ScaleHeight();
    auto put = [&](int x, int y, int i, bool far) { SetPixelV(s, x, y, paint(i, far, GetPixel(s, x, y))); };
    for (int i = 0; i <= thickness; ++i) {
        if (layout != kFrameLeftRight) {
            const int from = layout == kFrameTopBottom ? 0 : i,
                      to = layout == kFrameTopBottom ? w - 1 : w - 1 - i;
            if (i <= h - 1 - i)
                for (int x = from; x <= to; ++x)
                    put(x, i, i, false);
            if (h - 1 - i > i)
                for (int x = from; x <= to; ++x)
                    put(x, h - 1 - i, i, true);
        }
        if (layout != kFrameTopBottom) {
            const int from = layout == kFrameLeftRight ? 0 : i + 1;
            const int to = layout == kFrameLeftRight ? h - 1 : h - 2 - i;
            if (i <= w - 1 - i)
                for (int y = from; y <= to; ++y)
                    put(i, y, i, false);
            if (w - 1 - i > i)
                for (int y = from; y <= to; ++y)
                    put(w - 1 - i, y, i, true);
        }
    }
}

Color literalRingColor(int i, int thickness, Color a, Color b)
{
    auto ch = [&](int x, int y) {
        return thickness ? int(std::nearbyint(x + double(y - x) * i / thickness)) : x;
    };
    return RGB(ch(ColorRed(a), ColorRed(b)), ch(ColorGreen(a), ColorGreen(b)),
               ch(ColorBlue(a), ColorBlue(b)));
}

} // namespace

class tst_Frames : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void transparencyAmounts_data()
    {
        QTest::addColumn<int>("i");
        QTest::addColumn<int>("thickness");
        QTest::addColumn<int>("level");
        QTest::addColumn<int>("fade");
        QTest::addColumn<int>("amount");
        QTest::newRow("no fade") << 9 << 20 << 50 << 0 << 50;
        QTest::newRow("thickness 27 steps by 2") << 10 << 27 << 50 << 1 << 70;
        QTest::newRow("thickness 28 steps by 1") << 10 << 28 << 50 << 1 << 60;
        QTest::newRow("level 0 falls back to 30") << 0 << 20 << 0 << 0 << 30;
        QTest::newRow("level -5 falls back to 30") << 2 << 20 << -5 << 1 << 34;
        QTest::newRow("darken fade") << 10 << 27 << 50 << 2 << 30;
        QTest::newRow("darken fade stops at 1") << 40 << 50 << 20 << 2 << 1;
        QTest::newRow("darken fade, level 1, first ring") << 0 << 5 << 1 << 2 << 1;
    }
    void transparencyAmounts()
    {
        QFETCH(int, i);
        QFETCH(int, thickness);
        QFETCH(int, level);
        QFETCH(int, fade);
        QFETCH(int, amount);
        QCOMPARE(TransparencyAmount(i, thickness, level, fade), amount);
    }

    void ringColours_data()
    {
        QTest::addColumn<int>("i");
        QTest::addColumn<int>("thickness");
        QTest::addColumn<Color>("expected");
        QTest::newRow("start") << 0 << 10 << RGB(0, 255, 100);
        QTest::newRow("end") << 10 << 10 << RGB(200, 55, 101);
        // 0 + 200 * 3 / 8 = 75; 255 - 200 * 3 / 8 = 180; 100 + 3 / 8 = 100.375.
        QTest::newRow("between") << 3 << 8 << RGB(75, 180, 100);
        // 100 + 1 / 2 rounds to the even 100; 0 + 200 / 2 = 100.
        QTest::newRow("half to even") << 4 << 8 << RGB(100, 155, 100);
        QTest::newRow("no thickness") << 0 << 0 << RGB(0, 255, 100);
    }
    void ringColours()
    {
        QFETCH(int, i);
        QFETCH(int, thickness);
        QFETCH(Color, expected);
        QCOMPARE(FrameColorAt(i, thickness, RGB(0, 255, 100), RGB(200, 55, 101)), expected);
    }

    void gradientFrameEqualsRingByRingDrawing_data()
    {
        QTest::addColumn<int>("layout");
        QTest::addColumn<int>("thickness");
        QTest::addColumn<QSize>("size");
        for (int layout = 0; layout < kFrameLayoutCount; ++layout) {
            QTest::addRow("layout %d", layout) << layout << 6 << QSize(30, 20);
            QTest::addRow("layout %d, rings meet", layout) << layout << 12 << QSize(17, 9);
        }
        QTest::newRow("thickness 0") << 0 << 0 << QSize(10, 10);
    }
    void gradientFrameEqualsRingByRingDrawing()
    {
        QFETCH(int, layout);
        QFETCH(int, thickness);
        QFETCH(QSize, size);
        const Color a = RGB(90, 20, 250), b = RGB(250, 200, 10);
        const QImage picture = NoisePicture(size.width(), size.height(), 11);
        Surface fast = SurfaceOf(picture), literal = SurfaceOf(picture);
        DrawGradientFrame(fast, thickness, a, b, layout);
        literalRings(literal, thickness, layout, [&](int i, bool far, Color) {
            return literalRingColor(layout == kFrameRaised && far ? thickness - i : i, thickness, a, b);
        });
        QCOMPARE(fast.Image(), literal.Image());
    }

    void transparencyFrameEqualsRingByRingDrawing_data()
    {
        QTest::addColumn<int>("thickness");
        QTest::addColumn<int>("level");
        QTest::addColumn<int>("fade");
        QTest::newRow("27, lighten") << 27 << 40 << 1;
        QTest::newRow("28, lighten") << 28 << 40 << 1;
        QTest::newRow("darken") << 30 << 60 << 2;
        QTest::newRow("level 0") << 8 << 0 << 0;
        QTest::newRow("wider than the picture") << 60 << 200 << 1;
    }
    void transparencyFrameEqualsRingByRingDrawing()
    {
        QFETCH(int, thickness);
        QFETCH(int, level);
        QFETCH(int, fade);
        const QImage picture = NoisePicture(70, 50, 12);
        Surface fast = SurfaceOf(picture), literal = SurfaceOf(picture);
        DrawTransparencyFrame(fast, thickness, level, fade);
        literalRings(literal, thickness, kFrameAllSides, [&](int i, bool, Color c) {
            const int amount = TransparencyAmount(i, thickness, level, fade);
            return RGB(std::min(255, ColorRed(c) + amount), std::min(255, ColorGreen(c) + amount),
                       std::min(255, ColorBlue(c) + amount));
        });
        QCOMPARE(fast.Image(), literal.Image());
        // Inside the band nothing changes.
        if (thickness < 24)
            QCOMPARE(fast.Image().copy(30, 20, 10, 10), picture.copy(30, 20, 10, 10));
    }

    void previewShowsTheFullSizeFrameAtItsSamples_data()
    {
        QTest::addColumn<bool>("transparency");
        QTest::addColumn<int>("style");
        QTest::newRow("gradient") << false << 0;
        QTest::newRow("raised") << false << 1;
        QTest::newRow("transparency") << true << 0;
    }
    void previewShowsTheFullSizeFrameAtItsSamples()
    {
        QFETCH(bool, transparency);
        QFETCH(int, style);
        const QImage picture = NoisePicture(400, 300, 13);
        FrameSettings settings;
        settings.transparency = transparency;
        settings.style = style;
        settings.thickness = settings.transThickness = 37;
        settings.fade = true;
        FramePreview preview(picture, QSize(160, 160));
        const QImage shown = preview.render(settings);
        QCOMPARE(shown.size(), QSize(160, 120));
        Surface full = SurfaceOf(picture);
        DrawFrame(full, settings);
        // The nearest samples, as a stretched copy takes them.
        Surface sampled = MakeSurface(160, 120);
        StretchBlt(sampled, 0, 0, 160, 120, full, 0, 0, 400, 300);
        QCOMPARE(shown, sampled.Image());
    }

    void aOnePixelBrushDrawsTheOutermostRing()
    {
        Surface s = MakeSurface(6, 4);
        const Surface brush = MakeSurface(1, 1, 0);
        DrawBorder(s, brush, kBorderAllSides, kBorderNormal, 0);
        QCOMPARE(RowsOf(s, 0), QStringList({"######", "#....#", "#....#", "######"}));
        Surface corners = MakeSurface(6, 4);
        DrawBorder(corners, brush, kBorderCorners, kBorderNormal, 0);
        QCOMPARE(RowsOf(corners, 0), QStringList({"#....#", "......", "......", "#....#"}));
    }

    void layoutsPlaceWholeTilesFromTheCorners_data()
    {
        QTest::addColumn<int>("layout");
        QTest::addColumn<QStringList>("rows");
        // A 3 x 2 brush on 10 x 7: tiles step from the top left, the far rows and
        // columns stand against the far edges, each pixel takes at most one tile.
        QTest::newRow("all sides") << int(kBorderAllSides)
                                   << QStringList{"ABCABCABCA", "DEFDEFDEFD", "ABC....ABC", "DEF....DEF",
                                                  "ABC....ABC", "ABCABCABCA", "DEFDEFDEFD"};
        QTest::newRow("top and bottom")
            << int(kBorderTopBottom) << QStringList{"ABCABCABCA", "DEFDEFDEFD", "..........", "..........",
                                                    "..........", "ABCABCABCA", "DEFDEFDEFD"};
        QTest::newRow("left and right")
            << int(kBorderLeftRight) << QStringList{"ABC....ABC", "DEF....DEF", "ABC....ABC", "DEF....DEF",
                                                    "ABC....ABC", "DEF....DEF", "ABC....ABC"};
        QTest::newRow("corners") << int(kBorderCorners)
                                 << QStringList{"ABC....ABC", "DEF....DEF", "..........", "..........",
                                                "..........", "ABC....ABC", "DEF....DEF"};
    }
    void layoutsPlaceWholeTilesFromTheCorners()
    {
        QFETCH(int, layout);
        QFETCH(QStringList, rows);
        const QHash<QChar, Color> palette{{u'A', 1}, {u'B', 2}, {u'C', 3},       {u'D', 4},
                                          {u'E', 5}, {u'F', 6}, {u'.', 0xFFFFFF}};
        Surface s = MakeSurface(10, 7);
        DrawBorder(s, SurfaceOf(ImageFromRows({"ABC", "DEF"}, palette)), layout, kBorderNormal, 0);
        QCOMPARE(s.Image(), ImageFromRows(rows, palette));
    }

    void effectsPutEachTileDownOnceThroughTheirOperation_data()
    {
        QTest::addColumn<int>("effect");
        QTest::newRow("combine") << int(kBorderCombine);
        QTest::newRow("merge") << int(kBorderMerge);
        QTest::newRow("paint") << int(kBorderPaint);
        QTest::newRow("inverse") << int(kBorderInverse);
        QTest::newRow("past the list: normal") << 9;
    }
    void effectsPutEachTileDownOnceThroughTheirOperation()
    {
        QFETCH(int, effect);
        const QImage picture = NoisePicture(29, 23, 14);
        const Surface brush = SurfaceOf(NoisePicture(5, 4, 15));
        const Color drawing = RGB(200, 120, 255);
        // Where a tile lands: the normal border on black and on white agree there.
        Surface onBlack = MakeSurface(29, 23, 0), onWhite = MakeSurface(29, 23, 0xFFFFFF);
        DrawBorder(onBlack, brush, kBorderAllSides, kBorderNormal, drawing);
        DrawBorder(onWhite, brush, kBorderAllSides, kBorderNormal, drawing);
        Surface s = SurfaceOf(picture);
        DrawBorder(s, brush, kBorderAllSides, effect, drawing);
        for (int y = 0; y < 23; ++y)
            for (int x = 0; x < 29; ++x) {
                const Color d = GetPixel(SurfaceOf(picture), x, y), got = GetPixel(s, x, y);
                const Color tileColor = GetPixel(onBlack, x, y);
                if (tileColor != GetPixel(onWhite, x, y)) {
                    QCOMPARE(got, d);
                    continue;
                }
                const Color expected = effect == kBorderCombine   ? (d & tileColor)
                                       : effect == kBorderMerge   ? (d & tileColor & drawing)
                                       : effect == kBorderPaint   ? (~(tileColor | d) & 0xFFFFFF)
                                       : effect == kBorderInverse ? (~tileColor & 0xFFFFFF)
                                                                  : tileColor;
                QCOMPARE(got, expected);
            }
    }

    void theBrushShowsItsBackgroundThroughItsClearParts()
    {
        QImage art(2, 1, QImage::Format_ARGB32);
        art.setPixel(0, 0, qRgba(255, 0, 0, 255));
        art.setPixel(1, 0, qRgba(0, 0, 0, 0));
        const QImage brush = BorderBrush(art, RGB(0, 0, 255), QSize(2, 1));
        QCOMPARE(FromQRgb(brush.pixel(0, 0)), RGB(255, 0, 0));
        QCOMPARE(FromQRgb(brush.pixel(1, 0)), RGB(0, 0, 255));
        QVERIFY(BorderBrush(art, 0, QSize(0, 3)).isNull());
    }
};

QTEST_GUILESS_MAIN(tst_Frames)
#include "tst_frames.moc"
