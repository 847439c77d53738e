// The programs Velunta hands pictures to: bmpExport's BMP variants as other decoders
// read them, the Bezier and polygon editors driven by the mouse, and the effect programs.

#include "bmpExport/ColorDepth.h"
#include "bmpExport/frmColorDepth.h"
#include "core/SettingsStore.h"
#include "drawing/PointCanvas.h"
#include "drawing/frmShapeEditor.h"
#include "exchange/CompanionSettings.h"
#include "exchange/ExchangeFile.h"
#include "files/BmpWriter.h"
#include "files/read/PictureLoader.h"
#include "support/OutsideTools.h"
#include "support/TestImages.h"
#include "widgets/zolButton.h"

#include <QProcess>
#include <QRadioButton>
#include <QSet>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// Soft gradients with a few hard edges, like a small photo.
QImage photo(int w = 48, int h = 32)
{
    return MakeImage(w, h, [w, h](int x, int y) {
        const int r = 255 * x / (w - 1), g = 255 * y / (h - 1), b = (x * y) % 256;
        return x > w / 2 && y > h / 2 ? RGB(g, b, r) : RGB(r, g, b);
    });
}

QString companion(const QString& name)
{
    return qEnvironmentVariable("VELUNTA_COMPANIONS") + u'/' + name;
}

int run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return -1;
    return process.exitCode();
}

int distinctColours(const QImage& picture)
{
    QSet<QRgb> seen;
    const QImage rgb = picture.convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < rgb.height(); ++y)
        for (int x = 0; x < rgb.width(); ++x)
            seen.insert(rgb.pixel(x, y));
    return int(seen.size());
}

zolButton* button(QWidget& window, const char* name)
{
    return window.findChild<zolButton*>(QLatin1String(name));
}

// The bits a pixel of the BMP file.
int bitsOf(const QString& path)
{
    return qFromLittleEndian<quint16>(ReadFile(path).constData() + 28);
}

QRgb at(const QString& path, int x, int y)
{
    return LoadPicture(path).pixel(x, y) & 0xFFFFFF;
}

} // namespace

class tst_Companions : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void bmpVariantsReadEverywhere_data()
    {
        QTest::addColumn<int>("bits");
        QTest::addColumn<int>("dither");
        for (int bits : {1, 4, 8, 24})
            for (int dither = 0; dither < (bits == 24 ? 1 : 3); ++dither)
                QTest::addRow("%d bits, dither %d", bits, dither) << bits << dither;
    }
    void bmpVariantsReadEverywhere()
    {
        QFETCH(int, bits);
        QFETCH(int, dither);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("odd width.bmp"));
        const QImage picture = photo(37, 21); // odd width: every row is padded
        QVERIFY(WriteBMPVariant(picture, {bits, Dither(dither)}, path));
        QCOMPARE(bitsOf(path), bits);
        const QImage ours = LoadPicture(path);
        QCOMPARE(ours.size(), picture.size());
        QCOMPARE(DifferingPixels(ours, QImage(path)), 0);
        if (HaveTool(QStringLiteral("convert")))
            QCOMPARE(DifferingPixels(ours, DecodeWithMagick(path)), 0);
        if (bits == 24)
            QCOMPARE(DifferingPixels(ours, picture), 0);
        else
            QVERIFY(distinctColours(ours) <= 1 << bits);
        // The colours stand for the picture: more bits come closer (dithering trades
        // closeness pixel by pixel for the look from a distance).
        const double least = bits == 1 ? 5 : bits == 4 ? 15 : 22;
        QVERIFY2(Psnr(ours, picture) > least, qPrintable(QString::number(Psnr(ours, picture))));
    }

    void fewColoursAreKeptExactly()
    {
        const QImage picture = MakeImage(9, 7, [](int x, int y) {
            return (x + y) % 3 == 0 ? RGB(200, 30, 30) : (x % 2 ? RGB(30, 200, 30) : RGB(1, 2, 3));
        });
        for (Dither d : {Dither::None, Dither::FloydSteinberg})
            QCOMPARE(DifferingPixels(ReduceColors(picture, {4, d}), picture), 0);
    }

    void bmpExportConvertsWithTheRememberedChoice()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("picture.bmp"));
        // Any picture the loader reads becomes a plain BMP.
        QVERIFY(photo().save(path, "PNG"));
        RememberChoice({24, Dither::None});
        QCOMPARE(run(companion(QStringLiteral("bmpExport")), {path}), 0);
        QCOMPARE(ReadFile(path).left(2), QByteArray("BM"));
        QCOMPARE(DifferingPixels(LoadPicture(path), photo()), 0);
        RememberChoice({4, Dither::FloydSteinberg});
        QCOMPARE(run(companion(QStringLiteral("bmpExport")), {path}), 0);
        QCOMPARE(bitsOf(path), 4);
        // No picture named, or none there: nothing is written.
        QCOMPARE(run(companion(QStringLiteral("bmpExport")), {}), 1);
        QCOMPARE(run(companion(QStringLiteral("bmpExport")), {dir.filePath(QStringLiteral("none.bmp"))}), 2);
        RememberChoice({24, Dither::None});
    }

    void colourDepthWindowWritesWhatItShows()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("picture.bmp"));
        QVERIFY(SaveBMP(photo(), path));
        const QByteArray original = ReadFile(path);
        {
            frmColorDepth window(photo(), path, {24, Dither::None});
            window.show();
            window.findChild<QRadioButton*>(QStringLiteral("OptDepth(8)"))->click();
            window.findChild<QRadioButton*>(QStringLiteral("OptDither(2)"))->click();
            QCOMPARE(window.choice(), (DepthChoice{8, Dither::Ordered}));
            // The preview is the picture as it will be written.
            QCOMPARE(DifferingPixels(window.preview(), ReduceColors(photo(), window.choice())), 0);
            QTest::mouseClick(button(window, "cmdCancel"), Qt::LeftButton);
        }
        QCOMPARE(ReadFile(path), original);
        {
            frmColorDepth window(photo(), path, {24, Dither::None});
            window.show();
            // True colour has nothing to dither.
            QVERIFY(!window.findChild<QRadioButton*>(QStringLiteral("OptDither(1)"))->isEnabled());
            window.findChild<QRadioButton*>(QStringLiteral("OptDepth(1)"))->click();
            QVERIFY(window.findChild<QRadioButton*>(QStringLiteral("OptDither(1)"))->isEnabled());
            window.findChild<QRadioButton*>(QStringLiteral("OptDither(1)"))->click();
            QTest::mouseClick(button(window, "cmdOK"), Qt::LeftButton);
        }
        QCOMPARE(bitsOf(path), 1);
        QCOMPARE(RememberedChoice(), (DepthChoice{1, Dither::FloydSteinberg}));
        RememberChoice({24, Dither::None});
    }

    void bezierEditorDrawsWhatWasPlaced()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("white.bmp"));
        QVERIFY(SaveBMP(MakeImage(60, 40, [](int, int) { return RGB(255, 255, 255); }), path));
        const QByteArray original = ReadFile(path);
        CompanionSettings settings;
        settings.SelectedColor = RGB(255, 0, 0);
        settings.CircleThickness = 3;
        {
            frmShapeEditor window(ShapeKind::Bezier, LoadPicture(path), path, settings);
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            PointCanvas* canvas = window.canvas();
            auto click = [&](QPointF p, Qt::MouseButton b = Qt::LeftButton) {
                QTest::mouseClick(canvas, b, {}, canvas->toView(p).toPoint());
            };
            click({5, 35});
            click({30, 0});
            click({55, 35});
            click({40, 20});
            QCOMPARE(canvas->current.points.size(), 4);
            // The right button takes back the last point; a drag moves one.
            click({40, 20}, Qt::RightButton);
            QCOMPARE(canvas->current.points.size(), 3);
            QTest::mousePress(canvas, Qt::LeftButton, {}, canvas->toView({55, 35}).toPoint());
            QTest::mouseMove(canvas, canvas->toView({50, 30}).toPoint());
            QTest::mouseRelease(canvas, Qt::LeftButton, {}, canvas->toView({50, 30}).toPoint());
            QCOMPARE(canvas->current.points.last(), QPointF(50, 30));
            QCOMPARE(canvas->current.points.size(), 3);
            QTest::mouseClick(button(window, "cmdCancel"), Qt::LeftButton);
        }
        QCOMPARE(ReadFile(path), original);
        {
            frmShapeEditor window(ShapeKind::Bezier, LoadPicture(path), path, settings);
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            PointCanvas* canvas = window.canvas();
            for (QPointF p : {QPointF(5, 35), QPointF(30, -20), QPointF(55, 35)})
                QTest::mouseClick(canvas, Qt::LeftButton, {}, canvas->toView(p).toPoint());
            // A point placed beyond the picture stays on its edge.
            QCOMPARE(canvas->current.points[1], QPointF(30, 0));
            QTest::mouseClick(button(window, "cmdNew"), Qt::LeftButton);
            QTest::mouseClick(canvas, Qt::LeftButton, {}, canvas->toView({2, 2}).toPoint());
            QCOMPARE(canvas->done.size(), 1);
            QTest::mouseClick(button(window, "cmdOK"), Qt::LeftButton);
        }
        // The curve runs through its ends and the top of its arch; the dot of the
        // second figure is there too; the middle below the arch stays white.
        QCOMPARE(at(path, 5, 35), 0xFF0000u);
        QCOMPARE(at(path, 55, 35), 0xFF0000u);
        QCOMPARE(at(path, 30, 17), 0xFF0000u); // (35 + 2 * 0 + 35) / 4 ~ 17.5 at t = 1/2
        QCOMPARE(at(path, 2, 2), 0xFF0000u);
        QCOMPARE(at(path, 30, 32), 0xFFFFFFu);
    }

    void polygonEditorFillsAndOutlines_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<uint>("inside");
        QTest::addColumn<uint>("edge");
        QTest::newRow("outline") << 0 << 0xFFFFFFu << 0x00FF00u;
        QTest::newRow("filled") << 1 << 0x0000FFu << 0x0000FFu;
        QTest::newRow("both") << 2 << 0x0000FFu << 0x00FF00u;
    }
    void polygonEditorFillsAndOutlines()
    {
        QFETCH(int, style);
        QFETCH(uint, inside);
        QFETCH(uint, edge);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("white.bmp"));
        QVERIFY(SaveBMP(MakeImage(50, 50, [](int, int) { return RGB(255, 255, 255); }), path));
        CompanionSettings settings;
        settings.SelectedColor = RGB(0, 255, 0);
        settings.SelectedBackColor = RGB(0, 0, 255);
        settings.LineThickness = 3;
        frmShapeEditor window(ShapeKind::Polygon, LoadPicture(path), path, settings);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.findChild<QRadioButton*>(QStringLiteral("OptStyle(%1)").arg(style))->click();
        PointCanvas* canvas = window.canvas();
        for (QPointF p : {QPointF(10, 10), QPointF(40, 10), QPointF(40, 40), QPointF(10, 40)})
            QTest::mouseClick(canvas, Qt::LeftButton, {}, canvas->toView(p).toPoint());
        QTest::mouseClick(button(window, "cmdOK"), Qt::LeftButton);
        QCOMPARE(at(path, 25, 25), inside);
        QCOMPARE(at(path, 25, 11), edge);
        QCOMPARE(at(path, 11, 25), edge); // the shape closes back to its first corner
        QCOMPARE(at(path, 3, 3), 0xFFFFFFu);
    }

    void settingsAreReadAsVeluntaLeftThem()
    {
        {
            SettingsStore store;
            store.SaveSetting(QStringLiteral("SelectedColor"), RGB(1, 2, 3));
            store.SaveSetting(QStringLiteral("SelectedBackColor"), QStringLiteral("not a colour"));
            store.SaveSetting(QStringLiteral("CircleThickness"), 12);
            store.SaveSetting(QStringLiteral("LineThickness"), -4);
        }
        const CompanionSettings s = ReadCompanionSettings();
        QCOMPARE(s.SelectedColor, RGB(1, 2, 3));
        QCOMPARE(s.SelectedBackColor, Color(0xFFFFFF));
        QCOMPARE(s.CircleThickness, 12);
        QCOMPARE(s.LineThickness, 1);
    }

    void effectProgramsDoWhatTheyAreNamedFor_data()
    {
        QTest::addColumn<QString>("program");
        for (const char* name : {"Sepia", "Oil paint", "Pencil sketch", "Posterize", "Vignette", "Old photo"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void effectProgramsDoWhatTheyAreNamedFor()
    {
        QFETCH(QString, program);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("picture.bmp"));
        // A flat grey field with a dark square in it.
        const QImage before = MakeImage(64, 48, [](int x, int y) {
            return x >= 24 && x < 40 && y >= 16 && y < 32 ? RGB(30, 30, 30) : RGB(160, 160, 160);
        });
        QVERIFY(SaveBMP(before, path));
        QCOMPARE(run(companion(QStringLiteral("effects/") + program), {path}), 0);
        const QImage after = LoadPicture(path);
        QCOMPARE(after.size(), before.size());
        QVERIFY(DifferingPixels(after, before) > 0);
        const QColor field = after.pixelColor(5, 24), middle = after.pixelColor(32, 24),
                     corner = after.pixelColor(0, 0), centre = after.pixelColor(12, 24);
        if (program == QLatin1String("Sepia") || program == QLatin1String("Old photo"))
            QVERIFY(field.red() > field.green() && field.green() > field.blue());
        if (program == QLatin1String("Vignette") || program == QLatin1String("Old photo"))
            QVERIFY(corner.value() < centre.value() - 20);
        if (program == QLatin1String("Posterize")) {
            QSet<int> levels;
            for (int y = 0; y < after.height(); ++y)
                for (int x = 0; x < after.width(); ++x)
                    levels.insert(qRed(after.pixel(x, y)));
            QVERIFY(levels.size() <= 4);
        }
        if (program == QLatin1String("Pencil sketch")) {
            // Paper where the picture is flat, a line along the square's edge.
            QCOMPARE(field, QColor(255, 255, 255));
            QCOMPARE(middle, QColor(255, 255, 255));
            QVERIFY(after.pixelColor(24, 24).value() < 200);
        }
        if (program == QLatin1String("Oil paint")) {
            // Flat areas stay as they are; the square keeps its edges.
            QCOMPARE(field, QColor(160, 160, 160));
            QCOMPARE(middle, QColor(30, 30, 30));
        }
    }

    void effectProgramsLeaveWhatTheyCantRead()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("broken.bmp"));
        QVERIFY(WriteFile(path, "BMnot really"));
        QCOMPARE(run(companion(QStringLiteral("effects/Sepia")), {path}), 2);
        QCOMPARE(ReadFile(path), QByteArray("BMnot really"));
        QCOMPARE(run(companion(QStringLiteral("effects/Sepia")), {}), 1);
    }
};

QTEST_MAIN(tst_Companions)
#include "tst_companions.moc"
