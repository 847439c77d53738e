// The effects library's operations: neutral settings, tiles, bands and in-place runs,
// range ends, transparent colours, clipping, cancelling, and golden pictures within 2
// levels a channel (VELUNTA_REGEN_GOLDEN=1 writes them anew; look at them before committing).

#include "effects/fx/Fx.h"
#include "effects/fx/FxTestImages.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

#include <climits>
#include <functional>

using namespace velunta;
using namespace velunta::fxtest;

namespace {

using Op = std::function<bool(Surface&, FxRect, const Surface&, FxRect, const ProgressFn&)>;

// An operation as an Op: d and r are the destination and its rectangle, s and q the
// source and its rectangle, p the progress.
#define FX(call) [](Surface& d, FxRect r, const Surface& s, FxRect q, const ProgressFn& p) { return call; }
struct NamedOp {
    const char* name;
    Op op;
};

constexpr Color kTeal = RGB(20, 160, 150);

// Every operation with a destination and a source rectangle, at a setting that changes
// the picture. Gridlines, scanlines and mosaic repeat every 4 pixels from the corner.
const std::vector<NamedOp>& rectOps()
{
    static const std::vector<NamedOp> ops = {
        {"brightness", FX(fxBrightness(d, r, s, q, 60, p))},
        {"gamma", FX(fxGamma(d, r, s, q, 1.8, p))},
        {"greyscale", FX(fxGreyscale(d, r, s, q, p))},
        {"invert", FX(fxInvert(d, r, s, q, p))},
        {"inversion", FX(fxInversion(d, r, s, q, 64, p))},
        {"saturation", FX(fxSaturation(d, r, s, q, 90, p))},
        {"hue", FX(fxHue(d, r, s, q, 0.33, p))},
        {"tone", FX(fxTone(d, r, s, q, kTeal, 200, p))},
        {"ambient", FX(fxAmbientLight(d, r, s, q, kTeal, 128, p))},
        {"reduce", FX(fxReduceColors(d, r, s, q, 160, p))},
        {"replace", FX(fxReplaceColors(d, r, s, q, 0, kTeal, 40, p))},
        {"blur", FX(fxBlur(d, r, s, q, p))},
        {"emboss", FX(fxEmboss(d, r, s, q, 1.28, p))},
        {"engrave", FX(fxEngrave(d, r, s, q, 1.28, p))},
        {"relief", FX(fxRelief(d, r, s, q, p))},
        {"antialias", FX(fxAntiAlias(d, r, s, q, 255, p))},
        {"alphablend", FX(fxAlphaBlend(d, r, s, q, 100, 0xFFFFFF, p))},
        {"gridelines", FX(fxGridelines(d, r, s, q, kTeal, 60, 3, p))},
        {"scanlines", FX(fxScanlines(d, r, s, q, kTeal, 60, 2, -1, p))},
        {"mosaic", FX(fxMosaic(d, r, s, q, 4, p))},
    };
    return ops;
}

// Operations over a whole surface, with a setting that changes the picture.
const std::vector<NamedOp>& surfaceOps()
{
    static const std::vector<NamedOp> ops = {
        {"light", FX(fxLight(d, 20, 10, kTeal, 120, 200, 64, 1, r, p))},
        {"rotate", FX(fxRotate(d, 17, 9, s, q, 33, 0, p))},
        {"zoom", FX(fxZoom(d, 17, 9, s, q, 1.7, 0, p))},
        {"render",
         FX(fxRender(d, 17, 9, s, q.x + 3, q.y - 2, q.x + q.width, q.y + q.height, 170, -48, 0.8, 0, p))},
    };
    return ops;
}

void addRows(const std::vector<NamedOp>& ops)
{
    for (const NamedOp& op : ops)
        QTest::newRow(op.name) << op.op;
}

QImage run(const Op& op, const QImage& start, const Surface& src, const ProgressFn& progress = {})
{
    Surface dst = SurfaceOf(start);
    op(dst, WholeOf(dst), src, WholeOf(src), progress);
    return dst.Image();
}

QString goldenFolder()
{
    return QFileInfo(QStringLiteral(__FILE__)).absolutePath() + QStringLiteral("/golden");
}

} // namespace

Q_DECLARE_METATYPE(Op)

class tst_FxOps : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void neutralSettingsChangeNothing_data()
    {
        QTest::addColumn<Op>("op");
        const auto row = [](const char* name, Op op) { QTest::newRow(name) << op; };
        row("brightness 0", FX(fxBrightness(d, r, s, q, 0, p)));
        row("gamma 1", FX(fxGamma(d, r, s, q, 1.0, p)));
        row("inversion 0", FX(fxInversion(d, r, s, q, 0, p)));
        row("saturation 255", FX(fxSaturation(d, r, s, q, 255, p)));
        row("hue 0", FX(fxHue(d, r, s, q, 0.0, p)));
        row("hue NaN", FX(fxHue(d, r, s, q, std::nan(""), p)));
        row("tone 0", FX(fxTone(d, r, s, q, kTeal, 0, p)));
        row("ambient white 0", FX(fxAmbientLight(d, r, s, q, 0xFFFFFF, 0, p)));
        row("ambient black 255", FX(fxAmbientLight(d, r, s, q, 0, 255, p)));
        row("reduce 0", FX(fxReduceColors(d, r, s, q, 0, p)));
        row("replace none", FX(fxReplaceColors(d, r, s, q, kNoColor, 0, 255, p)));
        row("antialias 0", FX(fxAntiAlias(d, r, s, q, 0, p)));
        row("alpha 0", FX(fxAlphaBlend(d, r, TestSurface(5, 5), q, 0, kNoColor, p)));
        row("gridelines clear", FX(fxGridelines(d, r, s, q, kTeal, 255, 3, p)));
        row("scanlines 0", FX(fxScanlines(d, r, s, q, kTeal, 0, 0, -1, p)));
        row("mosaic 1", FX(fxMosaic(d, r, s, q, 1, p)));
        row("light 0", FX(fxLight(d, 9, 9, kTeal, 200, 0, 50, 1, r, p)));
        row("rotate 0", FX(fxRotate(d, 40, 40, Surface(s), q, 0, kNoColor, p)));
        row("rotate 360", FX(fxRotate(d, 3, 7, Surface(s), q, -360, kNoColor, p)));
        row("zoom 1", FX(fxZoom(d, 11, 5, Surface(s), q, 1.0, kNoColor, p)));
        row("render 0", FX(fxRender(d, 9, 9, Surface(s), 0, 0, q.width, q.height, 255, 0, 1, kNoColor, p)));
        row("render blending 0", FX(fxRender(d, 9, 9, TestSurface(3, 3), 0, 0, 3, 3, 0, 20, 2, kNoColor, p)));
    }
    void neutralSettingsChangeNothing()
    {
        QFETCH(Op, op);
        Surface s = TestSurface(37, 23);
        const QImage before = s.Image().copy();
        QVERIFY(op(s, WholeOf(s), s, WholeOf(s), {}));
        QCOMPARE(s.Image(), before);
    }

    void tiledRunEqualsWholeRun_data()
    {
        QTest::addColumn<Op>("op");
        addRows(rectOps());
        QTest::newRow("light") << surfaceOps().front().op;
    }
    void tiledRunEqualsWholeRun()
    {
        QFETCH(Op, op);
        const Surface src = TestSurface(40, 30);
        const QImage start = TestCard(40, 30).mirrored(true, false);
        const QImage whole = run(op, start, src);
        QVERIFY(whole != start);

        Surface tiled = SurfaceOf(start);
        for (int y = 0; y < 30; y += 8)
            for (int x = 0; x < 40; x += 12)
                op(tiled, {x, y, 12, 8}, src, {x, y, 12, 8}, {});
        QCOMPARE(tiled.Image(), whole);

        // In place, the picture is its own source as if it had been copied first, also
        // when the rectangles are shifted against each other.
        for (const FxRect d : {FxRect{0, 0, 40, 30}, FxRect{0, -1, 41, 31}, FxRect{3, 2, 30, 20}}) {
            const FxRect s{0, 0, 40, 30};
            Surface inPlace = SurfaceOf(src.Image());
            op(inPlace, d, inPlace, s, {});
            Surface fromCopy = SurfaceOf(src.Image());
            op(fromCopy, d, Surface(src), s, {});
            QCOMPARE(inPlace.Image(), fromCopy.Image());
        }
    }

    // Two threads and sixteen bands (with progress) against the halves of one run; a
    // progress that asks to stop ends the run.
    void bandsGiveTheWholeRun_data()
    {
        QTest::addColumn<Op>("op");
        addRows(rectOps());
        addRows(surfaceOps());
    }
    void bandsGiveTheWholeRun()
    {
        QFETCH(Op, op);
        const Surface src = TestSurface(640, 300);
        const QImage start = TestCard(640, 300).mirrored(true, true);
        int calls = 0;
        const QImage banded = run(op, start, src, [&calls](double) { return ++calls < 0; });
        QVERIFY(calls > 1);
        QCOMPARE(banded, run(op, start, src));
        // In place, bands must not read what a neighbouring band has already written,
        // also with the source a row below the destination.
        for (const FxRect d : {FxRect{0, 0, 640, 300}, FxRect{0, -1, 641, 301}}) {
            Surface inPlace = SurfaceOf(src.Image()), fromCopy = SurfaceOf(src.Image());
            op(inPlace, d, inPlace, WholeOf(src), [](double) { return false; });
            op(fromCopy, d, Surface(src), WholeOf(src), {});
            QCOMPARE(inPlace.Image(), fromCopy.Image());
        }
        Surface stopped = SurfaceOf(start);
        QVERIFY(!op(stopped, WholeOf(stopped), src, WholeOf(src), [](double) { return true; }));
    }

    // The plain operations at their ends, against the picture they must give.
    void plainEndsGiveTheirPicture()
    {
        const QImage start = TestCard(30, 20).mirrored(true, true);
        const Surface src = TestSurface(30, 20);
        QImage inverted = start;
        inverted.invertPixels();
        QCOMPARE(run(FX(fxInvert(d, r, s, q, p)), start, SurfaceOf(start)), inverted);
        QCOMPARE(run(FX(fxAlphaBlend(d, r, s, q, 255, kNoColor, p)), start, src), src.Image());
        for (const int level : {255, -255, 4000, -4000}) {
            QImage flat(30, 20, QImage::Format_RGB32);
            flat.fill(level > 0 ? 0xFFFFFFFFu : 0xFF000000u);
            Surface s = SurfaceOf(start);
            fxBrightness(s, WholeOf(s), s, WholeOf(s), level);
            QCOMPARE(s.Image(), flat);
        }
    }

    // A source made only of the transparent colour leaves the destination as it was.
    void transparentColourIsNeverWritten_data()
    {
        QTest::addColumn<Op>("op");
        const auto row = [](const char* name, Op op) { QTest::newRow(name) << op; };
        row("alphablend", FX(fxAlphaBlend(d, r, s, q, 200, kTeal, p)));
        row("rotate", FX(fxRotate(d, 10, 10, s, q, 30, kTeal, p)));
        row("zoom", FX(fxZoom(d, 10, 10, s, q, 1.5, kTeal, p)));
        row("render", FX(fxRender(d, 10, 10, s, 0, 0, q.width, q.height, 255, 30, 0.5, kTeal, p)));
    }
    void transparentColourIsNeverWritten()
    {
        QFETCH(Op, op);
        Surface key = TestSurface(25, 25);
        key.Image().fill(ToQRgb(kTeal));
        const QImage start = TestCard(25, 25).mirrored(true, false);
        QCOMPARE(run(op, start, key), start);
        // and the same source with the key off does draw
        QVERIFY(run(op, start, TestSurface(25, 25)) != start);
    }

    // Outside the clipped destination rectangle nothing changes, whatever the rectangles.
    void rectanglesAreClipped_data()
    {
        QTest::addColumn<FxRect>("d");
        QTest::addColumn<FxRect>("s");
        QTest::newRow("inside") << FxRect{5, 4, 10, 6} << FxRect{5, 4, 10, 6};
        QTest::newRow("over the left top") << FxRect{-7, -3, 12, 9} << FxRect{0, 0, 12, 9};
        QTest::newRow("over the right bottom") << FxRect{20, 10, 50, 50} << FxRect{20, 10, 50, 50};
        QTest::newRow("source far away") << FxRect{2, 2, 8, 8} << FxRect{INT_MAX - 3, INT_MIN + 1, 8, 8};
        QTest::newRow("wholly outside") << FxRect{100, 3, 10, 10} << FxRect{0, 0, 10, 10};
        QTest::newRow("ends of int") << FxRect{INT_MAX - 2, INT_MAX - 2, INT_MAX, INT_MAX}
                                     << FxRect{0, 0, 5, 5};
        QTest::newRow("far negative")
            << FxRect{INT_MIN, INT_MIN, INT_MAX, INT_MAX} << FxRect{INT_MIN, 0, 1, 1};
        QTest::newRow("zero width") << FxRect{0, 0, 0, 20} << FxRect{0, 0, 30, 20};
        QTest::newRow("negative height") << FxRect{0, 0, 30, -5} << FxRect{0, 0, 30, 20};
        QTest::newRow("empty source") << FxRect{0, 0, 30, 20} << FxRect{0, 0, 30, 0};
    }
    void rectanglesAreClipped()
    {
        QFETCH(FxRect, d);
        QFETCH(FxRect, s);
        const QImage start = TestCard(30, 20);
        const Surface src = TestSurface(30, 20);
        const qint64 left = std::max<qint64>(d.x, 0), right = std::min<qint64>(qint64(d.x) + d.width, 30);
        const qint64 top = std::max<qint64>(d.y, 0), bottom = std::min<qint64>(qint64(d.y) + d.height, 20);
        const auto inside = [&](int x, int y) { return x >= left && x < right && y >= top && y < bottom; };
        for (const NamedOp& op : rectOps()) {
            Surface dst = SurfaceOf(start);
            op.op(dst, d, src, s, {});
            for (int y = 0; y < 20; ++y)
                for (int x = 0; x < 30; ++x)
                    if (!inside(x, y) && dst.Image().pixel(x, y) != start.pixel(x, y))
                        QFAIL(qPrintable(QStringLiteral("%1 wrote %2, %3").arg(op.name).arg(x).arg(y)));
        }
    }

    void emptySurfacesDoNothing()
    {
        Surface empty;
        const Surface src = TestSurface(4, 4);
        for (const NamedOp& op : rectOps()) {
            QVERIFY(op.op(empty, {0, 0, 4, 4}, src, WholeOf(src), {}));
            Surface dst = TestSurface(4, 4);
            op.op(dst, WholeOf(dst), empty, {0, 0, 4, 4}, {});
            QCOMPARE(dst.Image(), TestCard(4, 4));
        }
        for (const NamedOp& op : surfaceOps())
            QVERIFY(op.op(empty, {}, src, WholeOf(src), {}));
    }

    void hueTurnsTheColourWheel()
    {
        Surface s = SurfaceOf(QImage(2, 1, QImage::Format_RGB32));
        s.Image().setPixel(0, 0, qRgb(255, 0, 0));
        s.Image().setPixel(1, 0, qRgb(0, 255, 0));
        fxHue(s, WholeOf(s), s, WholeOf(s), 2.0 / 3); // a third of a turn
        QCOMPARE(s.Image().pixel(0, 0), qRgb(0, 255, 0));
        QCOMPARE(s.Image().pixel(1, 0), qRgb(0, 0, 255));
        Surface a = TestSurface(16, 16), b = TestSurface(16, 16);
        fxHue(a, WholeOf(a), a, WholeOf(a), 1.0);
        fxHue(b, WholeOf(b), b, WholeOf(b), -1.0);
        QCOMPARE(a.Image(), b.Image()); // half a turn either way
    }

    // Four quarter turns about a pixel corner give the picture back exactly; a quarter
    // turn takes the pixel right of the pivot to above it.
    void quarterTurnsAreExact()
    {
        Surface s = TestSurface(24, 24);
        const QImage start = s.Image().copy();
        for (int i = 0; i < 4; ++i) {
            const Surface before(s);
            fxRotate(s, 12, 12, before, WholeOf(before), 90, kNoColor);
            if (i == 0)
                QCOMPARE(s.Image().pixel(12, 11), start.pixel(12, 12));
        }
        QCOMPARE(s.Image(), start);
    }

    void golden_data()
    {
        QTest::addColumn<Op>("op");
        // The operations whose arithmetic is plain (brightness, invert, the overlays) are
        // pinned by the other tests.
        const QStringList plain{"brightness", "invert", "alphablend", "replace", "gridelines", "scanlines"};
        for (const NamedOp& op : rectOps())
            if (!plain.contains(QLatin1String(op.name)))
                QTest::newRow(op.name) << op.op;
        addRows(surfaceOps());
    }
    void golden()
    {
        QFETCH(Op, op);
        const QImage result = run(op, TestCard(32, 32).mirrored(false, true), TestSurface(32, 32));
        const QString path = goldenFolder() + u'/' + QString::fromLatin1(QTest::currentDataTag()) + ".png";
        if (qEnvironmentVariableIsSet("VELUNTA_REGEN_GOLDEN")) {
            QDir().mkpath(goldenFolder());
            QVERIFY(result.save(path));
            return;
        }
        const QImage expected = QImage(path).convertToFormat(QImage::Format_RGB32);
        QVERIFY2(!expected.isNull(), qPrintable(path + " is missing; set VELUNTA_REGEN_GOLDEN to make it"));
        QVERIFY2(MaxDifference(result, expected) <= 2,
                 qPrintable(QString::number(MaxDifference(result, expected))));
    }
};

QTEST_GUILESS_MAIN(tst_FxOps)
#include "tst_fxops.moc"
