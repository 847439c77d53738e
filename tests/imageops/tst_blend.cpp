// The blends against a literal pixel-by-pixel reference: the mix in double precision,
// the styles, the reflection, the common area, and a stop that leaves whole columns done.

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "imageops/Blend.h"
#include "imageops/Pictures.h"

#include <QtTest>

#include <cmath>

using namespace velunta;
using namespace velunta::test;

namespace {

// The mix as the pixel routines write it: each channel in double precision, rounded
// half to even.
Color literalMix(Color s, Color d, int k)
{
    auto ch = [&](int sc, int dc) { return int(std::nearbyint(k / 255.0 * (sc - dc) + dc)); };
    return RGB(ch(ColorRed(s), ColorRed(d)), ch(ColorGreen(s), ColorGreen(d)),
               ch(ColorBlue(s), ColorBlue(d)));
}

// BlendThePic as its steps read: the reflection of PicTexture with the selection tool,
// then the mix and its style (pinned by the hand-worked triples) over the common area.
void literalBlendThePic(Surface& target, Surface texture, int ratio, int style, int mode, bool selectionTool)
{
    const int tw = texture.ScaleWidth(), th = texture.ScaleHeight();
    if (selectionTool && (mode == -1 || mode == 2)) {
        Surface copy = texture;
        for (int x = 0; x < tw; ++x)
            for (int y = 0; y < th; ++y)
                SetPixelV(texture, x, y,
                          GetPixel(copy, mode == -1 ? tw - 1 - x : x, mode == 2 ? th - 1 - y : y));
    }
    const int w = std::min(target.ScaleWidth(), tw), h = std::min(target.ScaleHeight(), th);
    for (int x = 0; x < w; ++x)
        for (int y = 0; y < h; ++y)
            SetPixelV(target, x, y,
                      BlendStyled(literalMix(GetPixel(texture, x, y), GetPixel(target, x, y), ratio), style));
}

// The reverse blend's loop: every column and row of the target up to its scale size,
// reading its copy at the reflected place.
void literalReverse(Surface& target, bool vertical, int index)
{
    static const int ratios[8] = {30, 50, 70, 100, 65, 65, 65, 65};
    const Surface picTexture = target;
    const int w = picTexture.Width(), h = picTexture.Height();
    for (int x = 0; x <= target.ScaleWidth(); ++x)
        for (int y = 0; y <= target.ScaleHeight(); ++y) {
            const Color s =
                vertical ? GetPixel(picTexture, x, h - 1 - y) : GetPixel(picTexture, w - 1 - x, y);
            const Color d = GetPixel(target, x, y);
            if (s < 0 || d < 0)
                continue; // outside: SetPixelV writes nothing there
            const Color mixed = literalMix(s, d, ratios[index]);
            SetPixelV(target, x, y, index < 4 ? mixed : BlendStyled(mixed, index - 3));
        }
}

} // namespace

class tst_Blend : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void mixEqualsTheDoublePrecisionFormulaForEveryRatioAndPair()
    {
        for (int k = 0; k <= 255; ++k)
            for (int s = 0; s <= 255; ++s)
                for (int d = 0; d <= 255; ++d) {
                    const int expected = int(std::nearbyint(k / 255.0 * (s - d) + d));
                    if (BlendChannel(s, d, k) != expected)
                        QFAIL(qPrintable(QString::asprintf("k %d, s %d, d %d: %d, not %d", k, s, d,
                                                           BlendChannel(s, d, k), expected)));
                }
    }

    void mixAndStylesOnHandWorkedTriples_data()
    {
        QTest::addColumn<Color>("source");
        QTest::addColumn<Color>("destination");
        QTest::addColumn<int>("ratio");
        QTest::addColumn<int>("style");
        QTest::addColumn<Color>("expected");
        // 127 / 255 of the way from 100 to 200 is 149.8.
        QTest::newRow("normal 127") << RGB(200, 0, 255) << RGB(100, 0, 0) << 127 << 0 << RGB(150, 0, 127);
        QTest::newRow("normal 64") << RGB(255, 255, 255) << RGB(0, 0, 0) << 64 << 0 << RGB(64, 64, 64);
        QTest::newRow("normal 30 down")
            << RGB(0, 0, 0) << RGB(255, 255, 255) << 30 << 0 << RGB(225, 225, 225);
        QTest::newRow("inverted") << RGB(10, 200, 37) << RGB(0, 0, 0) << 255 << 1 << RGB(245, 55, 218);
        QTest::newRow("red") << RGB(10, 200, 37) << RGB(0, 0, 0) << 255 << 2 << RGB(245, 200, 37);
        QTest::newRow("green") << RGB(10, 200, 37) << RGB(0, 0, 0) << 255 << 3 << RGB(10, 55, 37);
        QTest::newRow("blue") << RGB(10, 200, 37) << RGB(0, 0, 0) << 255 << 4 << RGB(10, 200, 218);
        // 10 | 200 = 202, 200 | 37 = 237, 10 | 37 = 47.
        QTest::newRow("scramble") << RGB(10, 200, 37) << RGB(0, 0, 0) << 255 << 5 << RGB(202, 237, 47);
        QTest::newRow("inverted after the mix")
            << RGB(255, 255, 255) << RGB(0, 0, 0) << 64 << 1 << RGB(191, 191, 191);
    }
    void mixAndStylesOnHandWorkedTriples()
    {
        QFETCH(Color, source);
        QFETCH(Color, destination);
        QFETCH(int, ratio);
        QFETCH(int, style);
        QFETCH(Color, expected);
        Surface target = MakeSurface(1, 1, destination);
        const Surface texture = MakeSurface(1, 1, source);
        BlendPictures(target, texture, ratio, style, BlendSource::Same, {});
        QCOMPARE(GetPixel(target, 0, 0), expected);
        QCOMPARE(BlendStyled(literalMix(source, destination, ratio), style), expected);
    }

    void percentagesBecomeRatios_data()
    {
        QTest::addColumn<double>("percent");
        QTest::addColumn<int>("ratio");
        QTest::newRow("100") << 100.0 << 255;
        QTest::newRow("50") << 50.0 << 127;
        QTest::newRow("25") << 25.0 << 63;
        QTest::newRow("1") << 1.0 << 2;
        QTest::newRow("0.5") << 0.5 << 1;
    }
    void percentagesBecomeRatios()
    {
        QFETCH(double, percent);
        QFETCH(int, ratio);
        QCOMPARE(BlendRatioOfPercent(percent), ratio);
    }

    void theShownPercentageGivesTheSameRatioBack()
    {
        QCOMPARE(BlendPercentText(127), QStringLiteral("50"));
        QCOMPARE(BlendPercentText(255), QStringLiteral("100"));
        for (int ratio = 1; ratio <= 255; ++ratio)
            QCOMPARE(BlendRatioOfPercent(Val(BlendPercentText(ratio))), ratio);
    }

    void blendThePicEqualsTheLiteralSteps_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("selectionTool");
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("ratio");
        QTest::addColumn<QSize>("textureSize");
        for (int style = 0; style < kBlendStyleCount; ++style)
            QTest::addRow("style %d", style) << -1 << false << style << 127 << QSize(41, 29);
        QTest::newRow("reflected left to right") << -1 << true << 0 << 200 << QSize(41, 29);
        QTest::newRow("reflected top to bottom") << 2 << true << 3 << 90 << QSize(41, 29);
        QTest::newRow("file, not reflected") << 3 << true << 5 << 170 << QSize(41, 29);
        QTest::newRow("file larger than the selection") << 3 << false << 0 << 127 << QSize(60, 50);
        QTest::newRow("file smaller than the selection") << 3 << false << 1 << 127 << QSize(13, 7);
        QTest::newRow("ratio 0") << -1 << false << 0 << 0 << QSize(41, 29);
        QTest::newRow("ratio 255") << -1 << false << 0 << 255 << QSize(41, 29);
    }
    void blendThePicEqualsTheLiteralSteps()
    {
        QFETCH(int, mode);
        QFETCH(bool, selectionTool);
        QFETCH(int, style);
        QFETCH(int, ratio);
        QFETCH(QSize, textureSize);
        const QImage under = NoisePicture(41, 29, 3);
        const QImage other = NoisePicture(textureSize.width(), textureSize.height(), 4);
        Surface fast = SurfaceOf(under), literal = SurfaceOf(under);
        Surface texture = SurfaceOf(other);
        BlendThePicture(fast, texture, {ratio, mode, style}, selectionTool, {});
        literalBlendThePic(literal, SurfaceOf(other), ratio, style, mode, selectionTool);
        QCOMPARE(fast.Image(), literal.Image());
        // Outside the common area the selection keeps its pixels.
        if (textureSize.width() < 41)
            QCOMPARE(fast.Image().copy(13, 0, 28, 29), under.copy(13, 0, 28, 29));
    }

    void reverseBlendsEqualTheLiteralLoop_data()
    {
        QTest::addColumn<bool>("vertical");
        QTest::addColumn<int>("index");
        for (int index = 0; index < 8; ++index) {
            QTest::addRow("horizontal %s", ReverseBlends()[index].caption) << false << index;
            QTest::addRow("vertical %s", ReverseBlends()[index].caption) << true << index;
        }
    }
    void reverseBlendsEqualTheLiteralLoop()
    {
        QFETCH(bool, vertical);
        QFETCH(int, index);
        const QImage picture = NoisePicture(33, 21, 5);
        Surface fast = SurfaceOf(picture), literal = SurfaceOf(picture);
        QVERIFY(ReverseBlendPicture(fast, vertical, index, {}));
        literalReverse(literal, vertical, index);
        QCOMPARE(fast.Image(), literal.Image());
    }

    void stopLeavesTheFinishedColumnsAndTheRestUntouched()
    {
        const QImage picture = NoisePicture(2100, 6, 6);
        Surface s = SurfaceOf(picture), whole = SurfaceOf(picture);
        ReverseBlendPicture(whole, false, 2, {});
        double first = -1;
        int calls = 0;
        ReverseBlendPicture(s, false, 2, [&](double fraction) {
            if (first < 0)
                first = fraction;
            ++calls;
            return true; // Esc at once
        });
        QCOMPARE(calls, 1);
        const int done = int(std::lround(first * 2101));
        QVERIFY(done > 0 && done < 2100);
        QCOMPARE(s.Image().copy(0, 0, done, 6), whole.Image().copy(0, 0, done, 6));
        QCOMPARE(s.Image().copy(done, 0, 2100 - done, 6), picture.copy(done, 0, 2100 - done, 6));
    }

    void progressRisesColumnBandByColumnBand()
    {
        Surface s = SurfaceOf(NoisePicture(8200, 2, 7));
        QList<double> fractions;
        BlendPictures(s, SurfaceOf(NoisePicture(8200, 2, 8)), 100, 0, BlendSource::Same, [&](double f) {
            fractions << f;
            return false;
        });
        QVERIFY(fractions.size() > 5);
        QVERIFY(std::is_sorted(fractions.begin(), fractions.end()));
        QVERIFY(fractions.last() < 1.0);
    }

    void anEmptyCommonAreaChangesNothing()
    {
        Surface s = MakeSurface(5, 5, RGB(1, 2, 3));
        QVERIFY(!BlendPictures(s, Surface(), 255, 0, BlendSource::Same, {}));
        QCOMPARE(GetPixel(s, 2, 2), RGB(1, 2, 3));
        QVERIFY(!ReverseBlendPicture(s, true, 8, {}));
    }
};

QTEST_GUILESS_MAIN(tst_Blend)
#include "tst_blend.moc"
