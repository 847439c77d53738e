// The effect engine and the one-click filters: every effect at its sliders' ends on odd
// sizes, the non-destructive preview, neutral defaults, text, mirrors and overflow.

#include "effects/fx/EffectEngine.h"
#include "effects/fx/FxOnPicture.h"
#include "effects/fx/FxTestImages.h"

#include "core/Numbers.h"

#include <QtTest>

using namespace velunta;
using namespace velunta::fxtest;

namespace {

// The Effects Browser's surfaces after opening on `picture`.
struct Browser {
    Surface PicSource, picDest, picSrc;
    EffectState state;

    explicit Browser(const QImage& picture)
    {
        for (Surface* s : {&PicSource, &picDest}) {
            s->setImage(picture);
            s->setPicture(picture);
        }
        picSrc.BackColor = RGB(240, 240, 240);
        picSrc.setScaleSize(picture.width(), picture.height());
        picSrc.Cls();
        SetPictureSize(state, PicSource, picDest);
        state.EffectColor = RGB(255, 120, 0);
        state.Text1 = QStringLiteral("Velunta\r\n");
    }
    void choose(const EffectRow& row)
    {
        state.EffectId = row.id;
        for (int i = 0; i < 6; ++i)
            if (row.sliders[i].kind == SliderRow::Set)
                state.HScroll1[i] = row.sliders[i].value;
            else if (row.sliders[i].kind == SliderRow::Reset)
                state.HScroll1[i] = 0;
    }
    const QImage& apply()
    {
        ApplyEffect(state, PicSource, picDest, picSrc);
        return picDest.Image();
    }
};

int countColour(const QImage& image, Color c)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            n += image.pixel(x, y) == ToQRgb(c);
    return n;
}

} // namespace

class tst_EffectEngine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyRowRunsAtItsSliderEnds_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("1 x 1") << QSize(1, 1);
        QTest::newRow("64 x 48") << QSize(64, 48);
        QTest::newRow("20000 x 1") << QSize(20000, 1);
    }
    void everyRowRunsAtItsSliderEnds()
    {
        QFETCH(QSize, size);
        const QImage picture = TestCard(size.width(), size.height());
        for (const EffectRow& row : EffectTable()) {
            Browser b(picture);
            b.state.chkText3d = row.id == 1040;
            b.state.TransparentColor = RGB(255, 255, 255);
            b.choose(row);
            QVERIFY(b.apply().size() == size);
            for (int i = 0; i < 6; ++i) {
                const SliderRow& slider = row.sliders[i];
                if (slider.kind != SliderRow::Set)
                    continue;
                for (const int value : {slider.min, slider.max, slider.value}) {
                    b.state.HScroll1[i] = value;
                    b.state.HScroll2 = b.state.VScroll2 = value;
                    b.state.OffsetX = b.state.OffsetY = value / 8;
                    b.apply();
                }
            }
            QCOMPARE(b.picDest.Image().size(), size);
            QCOMPARE(b.picDest.Picture(), picture); // the applied picture is never touched
        }
    }

    // Each run starts again from the applied picture: two runs give what one gives.
    void previewStartsFromTheAppliedPicture()
    {
        Browser b(TestCard(40, 30));
        b.choose(*FindEffect(1030));
        b.state.HScroll1[0] = 90;
        const QImage once = b.apply();
        QCOMPARE(b.apply(), once);
    }

    void neutralDefaultsChangeNothing_data()
    {
        QTest::addColumn<int>("id");
        for (const int id : {1000, 1030, 1040, 1070, 1100, 1150, 1170, 1200, 1210, 1230, 1240, 1260})
            QTest::newRow(qPrintable(QString::number(id))) << id;
    }
    void neutralDefaultsChangeNothing()
    {
        QFETCH(int, id);
        Browser b(TestCard(50, 40));
        b.state.Text1.clear();
        b.choose(*FindEffect(id));
        QCOMPARE(b.apply(), TestCard(50, 40));
    }

    void whiteTransparentTextIsKeptOffTheKey()
    {
        Browser b(TestCard(50, 40));
        b.choose(*FindEffect(1040));
        b.state.EffectColor = RGB(255, 255, 255);
        b.state.Text1.clear();
        b.apply();
        QCOMPARE(b.state.EffectColor, RGB(255, 255, 254));
    }

    void textDrawsInItsColourWithItsShadow()
    {
        Browser b(QImage(300, 120, QImage::Format_RGB32));
        b.PicSource.Image().fill(Qt::white);
        b.picDest.setPicture(b.PicSource.Image());
        b.choose(*FindEffect(1240));
        b.state.PointerX = 260; // text at 260 - 160 - 80 = 20
        b.state.PointerY = 200;
        b.state.EffectColor = RGB(255, 0, 0);
        b.state.ShadowColor = RGB(0, 0, 255);
        b.state.chkText3d = true;
        const QImage drawn = b.apply();
        QVERIFY(countColour(drawn, RGB(255, 0, 0)) > 20);
        QVERIFY(countColour(drawn, RGB(0, 0, 255)) > 5);
    }

    // The walk copies i to size - i over the picture itself: the right half becomes the
    // mirror of the left, the left half stays.
    void flipsMirrorTheFirstHalf()
    {
        const QImage card = TestCard(20, 10);
        Browser b(card);
        b.choose(*FindEffect(1300));
        const QImage h = b.apply();
        for (int x = 0; x < 20; ++x) {
            const int from = x <= 10 ? x : 20 - x;
            QCOMPARE(h.pixel(x, 3), card.pixel(from, 3));
        }
        b.choose(*FindEffect(1340));
        const QImage q = b.apply();
        QCOMPARE(q.pixel(17, 8), card.pixel(3, 2));
        QCOMPARE(q.pixel(3, 2), card.pixel(3, 2));
    }

    void overflowingArgumentsThrow()
    {
        Browser b(TestCard(10, 10));
        b.choose(*FindEffect(1130));
        b.state.OffsetX = 40000; // a 16-bit position
        QVERIFY_THROWS_EXCEPTION(OverflowError, b.apply());
        Surface s = TestSurface(8, 8);
        QVERIFY_THROWS_EXCEPTION(OverflowError, FxOnPicture(s, 3, 0, 70000));
        QVERIFY_THROWS_EXCEPTION(OverflowError, FxOnPicture(s, -40000, 0, 0));
        QCOMPARE(s.Image(), TestCard(8, 8));
    }

    void brightenAndDarkenByTenClipped()
    {
        Surface s = SurfaceOf(QImage(1, 1, QImage::Format_RGB32));
        s.Image().setPixel(0, 0, qRgb(100, 250, 5));
        FxOnPicture(s, 1, 0, 0);
        QCOMPARE(s.Image().pixel(0, 0), qRgb(110, 255, 15));
        FxOnPicture(s, 2, 0, 0);
        FxOnPicture(s, 2, 0, 0);
        QCOMPARE(s.Image().pixel(0, 0), qRgb(90, 235, 0));
    }
};

QTEST_MAIN(tst_EffectEngine)
#include "tst_effectengine.moc"
