#include "files/read/Decoders.h"
#include "files/read/PictureLoader.h"

#include "support/OutsideTools.h"
#include "support/PictureBytes.h"
#include "support/TestImages.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>

using namespace velunta;
using namespace velunta::test;

#if defined(__SANITIZE_ADDRESS__)
#define VELUNTA_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VELUNTA_ASAN 1
#endif
#endif

namespace {

// Largest difference of any channel of any pixel; -1 when the sizes differ.
int maxChannelDifference(const QImage& a, const QImage& b)
{
    if (a.size() != b.size() || a.isNull())
        return -1;
    int worst = 0;
    for (int y = 0; y < a.height(); ++y) {
        const auto* pa = reinterpret_cast<const QRgb*>(a.constScanLine(y));
        const auto* pb = reinterpret_cast<const QRgb*>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x)
            for (int shift : {0, 8, 16})
                worst = std::max(worst, std::abs(int(pa[x] >> shift & 255) - int(pb[x] >> shift & 255)));
    }
    return worst;
}

const QByteArray kPalette = QByteArray::fromHex("FFFFFF00 00000000 0000FF00"); // white, black, red
const QHash<QChar, Color> kRed = {{u'r', RGB(255, 0, 0)}, {u'b', RGB(0, 0, 255)}};

QByteArray be16(quint16 v)
{
    QByteArray b(2, 0);
    qToBigEndian(v, b.data());
    return b;
}

QByteArray samples16(std::initializer_list<quint16> values)
{
    QByteArray row;
    for (quint16 v : values)
        row += be16(v);
    return row;
}

// The same bytes with the frame size of the JPEG's first SOF marker changed.
QByteArray withJpegSize(QByteArray jpeg, int width, int height)
{
    for (qsizetype at = 2; at + 9 < jpeg.size(); ++at) {
        const uchar m = uchar(jpeg[at + 1]);
        if (uchar(jpeg[at]) == 0xFF && m >= 0xC0 && m <= 0xC2) {
            qToBigEndian<quint16>(quint16(height), jpeg.data() + at + 5);
            qToBigEndian<quint16>(quint16(width), jpeg.data() + at + 7);
            return jpeg;
        }
    }
    return {};
}

// The result of a load, short enough to compare across processes.
QString outcome(const LoadedPicture& loaded)
{
    return QStringLiteral("%1 %2x%3")
        .arg(loaded.errorNumber)
        .arg(loaded.image.width())
        .arg(loaded.image.height());
}

qint64 addressSpaceNow()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmSize:"))
            return line.mid(7).trimmed().split(' ').first().toLongLong() * 1024;
    return 0;
}

// The child's side of the memory tests: loads each file under an address-space
// limit and prints its outcome. `cap` is a limit in MB, or "bound": for each file
// what the process holds already plus the file, its allowance and 64 MB to spare.
int loadCapped(const QStringList& arguments)
{
    const QString cap = arguments.value(0);
    for (const QString& path : arguments.mid(1)) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return 2;
        const QByteArray bytes = file.readAll();
        const qint64 limit = cap == QStringLiteral("bound") ? addressSpaceNow() + bytes.size() +
                                                                  UnprovenAllowance(bytes.size()) + (64 << 20)
                                                            : cap.toLongLong() << 20;
        rlimit r{};
        getrlimit(RLIMIT_AS, &r);
        r.rlim_cur = rlim_t(limit);
        setrlimit(RLIMIT_AS, &r);
        const QString result = outcome(DecodePicture(bytes));
        r.rlim_cur = r.rlim_max;
        setrlimit(RLIMIT_AS, &r);
        std::printf("%s\n", qPrintable(result));
    }
    return 0;
}

} // namespace

class tst_loader : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_base;
    struct Regression {
        const char* name;
        QByteArray bytes;
        int number;
        QString words;
    };
    QList<Regression> m_regressions;

    QString write(const QString& name, const QByteArray& bytes)
    {
        const QString path = m_dir.filePath(name);
        WriteFile(path, bytes);
        return path;
    }
    // The file ImageMagick makes of the base picture with these arguments.
    QByteArray magick(const QString& name, const QStringList& arguments)
    {
        const QString out = m_dir.filePath(name);
        QStringList args = QStringList{m_base} + arguments;
        if (!args.isEmpty() && args.last().endsWith(u':'))
            args.last() += out;
        else
            args << out;
        RunTool(QStringLiteral("convert"), args);
        return ReadFile(out);
    }

    // One file for each fault that was found in the loader, with what opening it must give:
    // the error number and, for a refusal, words of the message.
    QList<Regression> makeRegressions()
    {
        const QByteArray jpeg =
            magick(QStringLiteral("r.jpg"), {QStringLiteral("-quality"), QStringLiteral("85")});
        const QByteArray progressive =
            magick(QStringLiteral("rp.jpg"), {QStringLiteral("-interlace"), QStringLiteral("JPEG")});
        QByteArray lossless = jpeg;
        lossless.replace("\xFF\xC0", "\xFF\xC3");
        QByteArray rle8Cut = BmpFile(20000, 20000, 40, 8, 1, kPalette, QByteArray(1024, '\x01'));
        const QByteArray pngRow(20000 * 3, 0); // zeros: filter bytes too, however the rows are cut
        const QString tooSmall = QStringLiteral("too small for its picture");
        const QString cutShort = QStringLiteral("cut short");
        return {
            // Memory before data: files whose headers ask for far more than their data fills.
            {"gif screen 20000 x 20000",
             GifFile({20000, 20000, 0, 0, 1, 1, 2, QByteArray::fromHex("000000FF0000"), QByteArray(1, 1)}),
             ErrInvalidPicture, tooSmall},
            {"rle8 of 1 KB stating 20000 x 20000", rle8Cut, ErrInvalidPicture, cutShort},
            {"rle8 10000 x 10000 ending at once",
             BmpFile(10000, 10000, 40, 8, 1, kPalette, QByteArray::fromHex("0001")), ErrInvalidPicture,
             tooSmall},
            {"jpeg stating 20000 x 20000", withJpegSize(jpeg, 20000, 20000), ErrInvalidPicture,
             QStringLiteral("too early for a picture this large")},
            {"progressive jpeg stating 20000 x 20000", withJpegSize(progressive, 20000, 20000),
             ErrInvalidPicture, tooSmall},
            {"png stating 20000 x 20000 with one row", PngFile(20000, 20000, 8, 2, {pngRow}),
             ErrInvalidPicture, cutShort},
            {"interlaced png stating 20000 x 20000", PngFile(20000, 20000, 8, 2, {pngRow}, {}, true),
             ErrInvalidPicture, cutShort},
            {"png 2147483647 pixels wide", PngFile(0x7FFFFFFF, 1, 8, 6, {}), ErrOutOfMemory,
             QStringLiteral("too large: 2147483647 x 1")},
            {"png text chunk stating 1.3 GB",
             PngFile(24, 16, 8, 2, {}, QByteArray::fromHex("4d600125") + "tEXtkey"), ErrInvalidPicture,
             cutShort},
            // GIF canvas.
            {"gif image partly outside the screen",
             GifFile({4, 3, 2, 2, 3, 2, 2, QByteArray::fromHex("000000FF0000"), QByteArray(6, 1)}),
             0,
             {}},
            {"gif image wholly outside the screen",
             GifFile({3, 2, 5, 5, 2, 2, 2, QByteArray::fromHex("000000FF0000"), QByteArray(4, 1)}),
             0,
             {}},
            {"gif minimum code size 11",
             GifFile({16, 4, 0, 0, 16, 4, 11, QByteArray::fromHex("000000FF0000"), QByteArray(64, 1)}),
             0,
             {}},
            {"gif 65535 pixels wide",
             GifFile(
                 {65535, 1, 0, 0, 65535, 1, 2, QByteArray::fromHex("000000FF0000"), QByteArray(65535, 1)}),
             0,
             {}},
            // JPEG warnings.
            {"progressive jpeg cut short", progressive.left(progressive.size() * 6 / 10), 0, {}},
            {"lossless jpeg", lossless, ErrInvalidPicture, QStringLiteral("lossless JPEG is not supported")},
            // BMP edge cases.
            {"bmp offset inside the headers",
             BmpFile(2, 1, 40, 8, 0, kPalette, QByteArray::fromHex("02010000"), 20, 3),
             0,
             {}},
            {"bmp offset inside a stated palette",
             BmpFile(2, 1, 40, 8, 0, kPalette, QByteArray::fromHex("02010000"), 14 + 40 + 4, 3),
             0,
             {}},
            {"bmp colour count above the depth",
             BmpFile(2, 1, 40, 1, 0, kPalette.left(8), QByteArray::fromHex("40000000"), -1, 1000),
             0,
             {}},
            {"rle8 runs past the row",
             BmpFile(4, 3, 40, 8, 1, kPalette,
                     QByteArray::fromHex("0602 0000 0202 000300000000 0000 00020500 0202 0001")),
             0,
             {}},
            {"rle4 runs past the row",
             BmpFile(4, 3, 40, 4, 2, kPalette,
                     QByteArray::fromHex("0622 0000 0222 00030000 0000 00020500 0222 0001")),
             0,
             {}},
            {"rle8 jump past the picture",
             BmpFile(2, 3, 40, 8, 1, kPalette, QByteArray::fromHex("0202 0000 00020009")),
             0,
             {}},
            // Formats that open.
            {"cursor", cursorFile(), 0, {}},
            {"packed dib",
             BmpFile(2, 1, 40, 8, 0, kPalette, QByteArray::fromHex("02010000"), -1, 3).mid(14),
             0,
             {}},
            {"placeable wmf", QByteArray::fromHex("D7CDC69A0000000000001000100060000000") + QByteArray(40, 0),
             ErrInvalidPicture, QStringLiteral("Windows Metafile (WMF)")},
            {"emf",
             [] {
                 QByteArray emf(88, 0);
                 emf[0] = 1;
                 emf.replace(40, 4, " EMF");
                 return emf;
             }(),
             ErrInvalidPicture, QStringLiteral("Enhanced Metafile (EMF)")},
            // 16-bit PNG with a transparent colour.
            {"png 16-bit rgb with trns", png16Rgb(), 0, {}},
            {"png 16-bit grey with trns", png16Grey(), 0, {}},
        };
    }
    static QByteArray cursorFile()
    {
        // 2 x 2, one bit a pixel, palette red and blue; rows from the bottom, then the mask.
        QByteArray dib = BmpFile(2, 4, 40, 1, 0, QByteArray::fromHex("0000FF00 FF000000"),
                                 QByteArray::fromHex("40000000 80000000 00000000 40000000"))
                             .mid(14);
        return IconFile(2, {{2, 2, 0x0101, dib}});
    }
    static QByteArray png16Rgb()
    {
        return PngFile(3, 1, 16, 2,
                       {samples16({0x1234, 0x5678, 0x9ABC, 0x1234, 0x5678, 0x9ABD, 0xFFFF, 0x0000, 0x8000})},
                       PngChunk("tRNS", samples16({0x1234, 0x5678, 0x9ABC})));
    }
    static QByteArray png16Grey()
    {
        return PngFile(3, 1, 16, 0, {samples16({0x8001, 0x8000, 0x0101})},
                       PngChunk("tRNS", samples16({0x8001})));
    }
    QByteArray fault(const char* name) const
    {
        for (const Regression& r : m_regressions)
            if (qstrcmp(r.name, name) == 0)
                return r.bytes;
        return {};
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (!HaveTool(QStringLiteral("convert")))
            QSKIP("ImageMagick is needed for the fixtures");
        m_base = m_dir.filePath(QStringLiteral("base.png"));
        MakeImage(37, 23, [](int x, int y) { return RGB(7 * x, 11 * y, (x * y) % 256); }).save(m_base);
        m_regressions = makeRegressions();
    }

    void magickFixtures_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("frame");     // the frame ImageMagick shows of the expected picture
        QTest::addColumn<int>("tolerance"); // decoders may round differently
        const QString alpha = QStringLiteral("-alpha set -channel A -fx i/w +channel");
        const auto row = [](const char* name, const char* file, const QString& args, int frame = 0,
                            int tol = 0) {
            QTest::newRow(name) << QString::fromLatin1(file) << args.split(u' ', Qt::SkipEmptyParts) << frame
                                << tol;
        };
        row("bmp 24", "b24.bmp", "BMP3:");
        row("bmp 32", "b32.bmp", "-alpha set -define bmp3:alpha=true BMP3:");
        row("bmp 8", "b8.bmp", "-colors 200 -type Palette -compress none BMP3:");
        row("bmp rle8", "rle8.bmp", "-colors 200 -type Palette -compress RLE BMP3:");
        row("bmp 4", "b4.bmp", "-colors 16 BMP3:");
        row("bmp 1", "b1.bmp", "-monochrome BMP3:");
        row("bmp rgb565", "b565.bmp", "-define bmp:subtype=RGB565 BMP:", 0, 1);
        row("bmp v5 alpha", "b5a.bmp", alpha + " BMP:", 0, 1);
        // ImageMagick widens 4-bit channels by a shift (15 -> 240); the loader scales them (15 -> 255).
        row("bmp argb4444", "b4444.bmp", alpha + " -define bmp:subtype=ARGB4444 BMP:", 0, 15);
        row("os2 24", "os24.bmp", "BMP2:");
        row("os2 8", "os8.bmp", "-colors 200 -type Palette BMP2:");
        row("dib name", "b.dib", "BMP3:");
        row("jpeg", "b.jpg", "-quality 90", 0, 1);
        row("jpeg progressive", "p.jpg", "-interlace JPEG", 0, 1);
        row("jpeg grey", "g.jpg", "-colorspace Gray", 0, 1);
        row("jpeg cmyk", "c.jpg", "-colorspace CMYK", 0, 2);
        row("gif", "b.gif", "");
        row("gif interlaced", "i.gif", "-interlace GIF");
        row("gif transparent", "t.gif", "-fill red -draw point_3,3 -transparent red");
        row("ico largest", "b.ico", "-define icon:auto-resize=16,48,32", 1);
        row("cur", "b.cur", "CUR:");
        row("png alpha", "a.png", alpha, 0, 1);
        row("png 16-bit", "p16.png", "-depth 16 PNG48:");
        row("png interlaced", "pi.png", "-interlace PNG PNG:");
        row("png palette", "p8.png", "PNG8:");
        row("png grey", "pg.png", "-colorspace Gray PNG:");
        row("png named jpg", "png.jpg", "PNG:");
    }
    void magickFixtures()
    {
        QFETCH(QString, file);
        QFETCH(QStringList, arguments);
        QFETCH(int, frame);
        QFETCH(int, tolerance);
        // "point_3,3" stands for one argument with a blank.
        arguments.replaceInStrings(QStringLiteral("point_"), QStringLiteral("point "));
        QVERIFY(!magick(file, arguments).isEmpty());
        const QString out = m_dir.filePath(file);
        const QImage expected = DecodeWithMagick(out, frame);
        QVERIFY(!expected.isNull());
        QString error;
        int number = -1;
        const QImage loaded = LoadPicture(out, &error, &number);
        QVERIFY2(!loaded.isNull(), qPrintable(error));
        QCOMPARE(number, 0);
        QCOMPARE(loaded.format(), QImage::Format_RGB32);
        QVERIFY2(maxChannelDifference(loaded, expected) <= tolerance,
                 qPrintable(QString::number(maxChannelDifference(loaded, expected))));
    }

    // The picture of a BMP file and of the same bytes without the file header.
    void packedDib_data()
    {
        QTest::addColumn<QStringList>("arguments");
        for (const char* arguments : {"BMP3:", "-colors 200 BMP3:", "-colors 200 -compress RLE BMP3:",
                                      "-define bmp:subtype=RGB565 BMP:", "BMP2:"})
            QTest::newRow(arguments) << QString::fromLatin1(arguments).split(u' ');
    }
    void packedDib()
    {
        QFETCH(QStringList, arguments);
        const QByteArray bmp = magick(QStringLiteral("packed.bmp"), arguments);
        const LoadedPicture whole = DecodePicture(bmp);
        const LoadedPicture packed = DecodePicture(bmp.mid(14));
        QVERIFY2(!whole.image.isNull(), qPrintable(whole.error));
        QCOMPARE(packed.format, PictureFormat::Dib);
        QVERIFY2(!packed.image.isNull(), qPrintable(packed.error));
        QCOMPARE(DifferingPixels(packed.image, whole.image), 0);
    }

    // Variants ImageMagick doesn't write, and the faults found in the loader, with their pixels.
    void handMade_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("rows");
        // Rows from the bottom: a run of alternating pixels; an absolute run and a run,
        // then the line ends early; a jump of two pixels, a run, and the end of the picture.
        // Pixels nothing was written to stay black.
        QTest::newRow("rle4 with a jump") << BmpFile(6, 3, 40, 4, 2, kPalette,
                                                     QByteArray::fromHex("0612 0000"
                                                                         "0003 2020 0122 0000"
                                                                         "0002 0200 0222 0001"))
                                          << QStringList{"##rr##", "r.rr##", "#r#r#r"};
        QTest::newRow("top-down 24") << BmpFile(2, -2, 40, 24, 0, {},
                                                QByteArray::fromHex("0000FF FFFFFF 0000"
                                                                    "000000 0000FF 0000"))
                                     << QStringList{"r.", "#r"};
        QTest::newRow("os2 2.x header")
            << BmpFile(2, 2, 64, 8, 0, kPalette, QByteArray::fromHex("0201 0000 0100 0000"))
            << QStringList{"#.", "r#"};
        QTest::newRow("offset inside the headers")
            << fault("bmp offset inside the headers") << QStringList{"r#"};
        QTest::newRow("offset inside a stated palette")
            << fault("bmp offset inside a stated palette") << QStringList{"r#"};
        QTest::newRow("colour count above the depth")
            << fault("bmp colour count above the depth") << QStringList{".#"};
        // A run of six and an absolute run of three on rows four wide, a jump past the row's
        // end: what lies past the end is dropped, the rest of the row stays background.
        QTest::newRow("rle8 runs past the row")
            << fault("rle8 runs past the row") << QStringList{"####", "rr..", "rrrr"};
        QTest::newRow("rle4 runs past the row")
            << fault("rle4 runs past the row") << QStringList{"####", "rr..", "rrrr"};
        QTest::newRow("rle8 jump past the picture")
            << fault("rle8 jump past the picture") << QStringList{"##", "##", "rr"};
        QTest::newRow("top-down rle8")
            << BmpFile(2, -2, 40, 8, 1, kPalette, QByteArray::fromHex("0202 0000 0200 0001"))
            << QStringList{"rr", ".."};
        QTest::newRow("cursor with a mask") << cursorFile() << QStringList{"b.", "rb"};
        QTest::newRow("packed dib") << fault("packed dib") << QStringList{"r#"};
        QTest::newRow("gif image partly outside the screen")
            << fault("gif image partly outside the screen") << QStringList{"....", "....", "..rr"};
        QTest::newRow("gif image wholly outside the screen")
            << fault("gif image wholly outside the screen") << QStringList{"...", "..."};
        QTest::newRow("gif without a screen size")
            << GifFile({0, 0, 1, 0, 1, 2, 2, QByteArray::fromHex("000000FF0000"), QByteArray(2, 1)})
            << QStringList{".r", ".r"};
    }
    void handMade()
    {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, rows);
        const LoadedPicture loaded = DecodePicture(file);
        QVERIFY2(!loaded.image.isNull(), qPrintable(loaded.error));
        QCOMPARE(DifferingPixels(loaded.image, ImageFromRows(rows, kRed)), 0);
    }

    // A picture decoded into the memory of one that was let go (the next file opened)
    // must show none of the old pixels where its file leaves the picture black.
    void reusedMemoryShowsNoOldPixels()
    {
        constexpr int side = 1024;
        QImage red(side, side, QImage::Format_RGB32);
        red.fill(qRgb(255, 0, 0));
        const QByteArray redFile =
            BmpFile(side, side, 40, 32, 0, {},
                    QByteArray(reinterpret_cast<const char*>(red.constBits()), red.sizeInBytes()));
        const uchar* oldPixels = nullptr;
        {
            const LoadedPicture first = DecodePicture(redFile);
            QVERIFY2(!first.image.isNull(), qPrintable(first.error));
            oldPixels = first.image.constBits();
        }
        // Ten white pixels, then the end of the picture: the rest is black.
        const LoadedPicture second =
            DecodePicture(BmpFile(side, side, 40, 8, 1, kPalette, QByteArray::fromHex("0A00 0001")));
        QVERIFY2(!second.image.isNull(), qPrintable(second.error));
        QCOMPARE(second.image.constBits(), oldPixels);
        QImage expected(side, side, QImage::Format_RGB32);
        expected.fill(qRgb(0, 0, 0));
        std::fill_n(reinterpret_cast<QRgb*>(expected.scanLine(side - 1)), 10, qRgb(255, 255, 255));
        QCOMPARE(DifferingPixels(second.image, expected), 0);
    }

    // Minimum code sizes above 8 code the same pixels in wider codes.
    void gifCodeSizes_data()
    {
        QTest::addColumn<int>("minCodeSize");
        for (int size : {2, 8, 9, 10, 11})
            QTest::addRow("%d", size) << size;
    }
    void gifCodeSizes()
    {
        QFETCH(int, minCodeSize);
        QByteArray palette, pixels;
        for (int i = 0; i < 4; ++i)
            palette += QByteArray::fromHex(QByteArray::number(0x102030 * (i + 1), 16).rightJustified(6, '0'));
        for (int i = 0; i < 700; ++i)
            pixels += char((i * 7 / 3) % 4);
        const LoadedPicture loaded =
            DecodePicture(GifFile({35, 20, 0, 0, 35, 20, minCodeSize, palette, pixels}));
        QVERIFY2(!loaded.image.isNull(), qPrintable(loaded.error));
        const QImage expected = MakeImage(35, 20, [&](int x, int y) {
            const int i = (y * 35 + x) * 7 / 3 % 4;
            return RGB(0x10 * (i + 1), 0x20 * (i + 1), 0x30 * (i + 1));
        });
        QCOMPARE(DifferingPixels(loaded.image, expected), 0);
    }

    void gifSides()
    {
        const LoadedPicture wide = DecodePicture(fault("gif 65535 pixels wide"));
        QVERIFY2(!wide.image.isNull(), qPrintable(wide.error));
        QCOMPARE(wide.image.size(), QSize(65535, 1));
        QCOMPARE(wide.image.pixel(65534, 0), qRgb(255, 0, 0));
    }

    // Transparent samples are the ones equal to the tRNS colour in all 16 bits; the
    // rest scale to 8 bits by v * 255 / 65535, rounded.
    void png16WithTransparentColour_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QList<QRgb>>("pixels");
        QTest::newRow("rgb") << png16Rgb()
                             << QList<QRgb>{qRgb(255, 255, 255), qRgb(18, 86, 154), qRgb(255, 0, 128)};
        QTest::newRow("grey") << png16Grey()
                              << QList<QRgb>{qRgb(255, 255, 255), qRgb(128, 128, 128), qRgb(1, 1, 1)};
    }
    void png16WithTransparentColour()
    {
        QFETCH(QByteArray, file);
        QFETCH(QList<QRgb>, pixels);
        const LoadedPicture loaded = DecodePicture(file);
        QVERIFY2(!loaded.image.isNull(), qPrintable(loaded.error));
        QCOMPARE(loaded.image.width(), pixels.size());
        for (int x = 0; x < pixels.size(); ++x)
            QCOMPARE(QColor(loaded.image.pixel(x, 0)), QColor(pixels[x]));
    }

    // A progressive JPEG that ends early opens as djpeg shows it.
    void jpegCutShortOpensAsDjpeg()
    {
        if (!HaveTool(QStringLiteral("djpeg")))
            QSKIP("djpeg is needed");
        const QByteArray bytes = fault("progressive jpeg cut short");
        const LoadedPicture loaded = DecodePicture(bytes);
        QVERIFY2(!loaded.image.isNull(), qPrintable(loaded.error));
        QVERIFY(!loaded.warning.isEmpty());
        // djpeg ends with a warning status on a file cut short: its output is read as it is.
        QProcess djpeg;
        djpeg.start(QStringLiteral("djpeg"),
                    {QStringLiteral("-ppm"), write(QStringLiteral("cut.jpg"), bytes)});
        QVERIFY(djpeg.waitForFinished());
        const QImage expected = QImage::fromData(djpeg.readAllStandardOutput(), "PPM");
        QCOMPARE(DifferingPixels(loaded.image, expected.convertToFormat(QImage::Format_RGB32)), 0);
    }

    // Cut short files are refused, but JPEG, which shows what arrived of its picture data;
    // damaged ones are refused or shown, never a crash or a hang.
    void brokenFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("arguments");
        const auto row = [](const char* name, QString file, QString arguments) {
            QTest::newRow(name) << file << arguments;
        };
        row("rle8", "rle8.bmp", "-colors 200 -compress RLE BMP3:");
        row("os2 8", "os8.bmp", "-colors 200 -type Palette BMP2:");
        row("rgb565", "b565.bmp", "-define bmp:subtype=RGB565 BMP:");
        row("jpeg progressive", "p.jpg", "-interlace JPEG");
        row("jpeg", "b.jpg", "-quality 80");
        row("gif interlaced", "i.gif", "-interlace GIF");
        row("ico", "b.ico", "-define icon:auto-resize=16,48,32");
        row("cur", "b.cur", "CUR:");
        row("png", "a.png", "-alpha set -channel A -fx i/w +channel -strip");
        row("png interlaced", "pi.png", "-interlace PNG -strip PNG:");
    }
    void brokenFiles()
    {
        QFETCH(QString, file);
        QFETCH(QString, arguments);
        const QByteArray whole = magick(QStringLiteral("broken-") + file, arguments.split(u' '));
        QVERIFY(!whole.isEmpty());
        const bool jpeg = file.endsWith(QStringLiteral(".jpg"));
        for (qsizetype cut : {qsizetype(0), qsizetype(5), whole.size() / 2, whole.size() * 9 / 10}) {
            const LoadedPicture loaded = DecodePicture(whole.left(cut));
            if (jpeg && cut > 5 && (cut > whole.size() / 2 || !loaded.image.isNull())) {
                QVERIFY2(!loaded.image.isNull(), qPrintable(loaded.error));
                continue;
            }
            QVERIFY2(loaded.image.isNull(), qPrintable(QString::number(cut)));
            QCOMPARE(loaded.errorNumber, int(ErrInvalidPicture));
            QVERIFY2(loaded.error.contains(cut ? QStringLiteral("cut short") : QStringLiteral("empty")),
                     qPrintable(loaded.error));
        }
        QRandomGenerator random(42);
        for (int round = 0; round < 300; ++round) {
            QByteArray damaged = whole;
            for (int flips = 1 + round % 4; flips > 0; --flips)
                damaged[random.bounded(int(damaged.size()))] = char(random.bounded(256));
            const LoadedPicture loaded = DecodePicture(damaged);
            QVERIFY(loaded.image.isNull()
                        ? !loaded.error.isEmpty()
                        : loaded.errorNumber == 0 && loaded.image.format() == QImage::Format_RGB32);
        }
    }

    // Headers that ask for too many pixels are refused before any memory is taken.
    void oversizedHeaders_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("size");
        QTest::newRow("bmp too wide") << BmpFile(65536, 1, 40, 24, 0, {}, {}) << QStringLiteral("65536 x 1");
        QTest::newRow("bmp too many pixels")
            << BmpFile(25000, -25000, 40, 32, 0, {}, {}) << QStringLiteral("25000 x 25000");
        QTest::newRow("gif too many pixels")
            << GifFile({65535, 65535, 0, 0, 1, 1, 2, QByteArray::fromHex("000000FFFFFF"), QByteArray(1, 0)})
            << QStringLiteral("65535 x 65535");
        QTest::newRow("jpeg too many pixels")
            << withJpegSize(ReadFile(m_dir.filePath(QStringLiteral("b.jpg"))), 25000, 25000)
            << QStringLiteral("25000 x 25000");
        QTest::newRow("png too wide")
            << PngFile(70000, 1, 8, 0, {QByteArray(70000, 0)}) << QStringLiteral("70000 x 1");
    }
    void oversizedHeaders()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, size);
        const LoadedPicture loaded = DecodePicture(file);
        QVERIFY(loaded.image.isNull());
        QCOMPARE(loaded.errorNumber, int(ErrOutOfMemory));
        QCOMPARE(loaded.error,
                 QStringLiteral("The picture is too large: %1 pixels, the limit is 65535 pixels a "
                                "side and 400 megapixels.")
                     .arg(size));
    }

    void notAPicture_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("words");
        QTest::newRow("missing") << m_dir.filePath(QStringLiteral("nothing.bmp")) << int(ErrFileNotFound)
                                 << QStringLiteral("not found");
        QTest::newRow("folder") << m_dir.path() << int(ErrFileAccess) << QStringLiteral("not a file");
        QTest::newRow("text") << write(QStringLiteral("text.bmp"), "just some text") << int(ErrInvalidPicture)
                              << QStringLiteral("not a picture file");
        QTest::newRow("empty") << write(QStringLiteral("empty.gif"), {}) << int(ErrInvalidPicture)
                               << QStringLiteral("empty");
        QTest::newRow("tiff") << write(QStringLiteral("t.bmp"), QByteArray("II*\0\x08\0\0\0", 8))
                              << int(ErrInvalidPicture) << QStringLiteral("TIFF picture");
        QTest::newRow("plain wmf") << write(QStringLiteral("p.wmf"),
                                            QByteArray::fromHex("010009000003") + QByteArray(30, 0))
                                   << int(ErrInvalidPicture) << QStringLiteral("Windows Metafile (WMF)");
    }
    void notAPicture()
    {
        QFETCH(QString, path);
        QFETCH(int, number);
        QFETCH(QString, words);
        int got = 0;
        QString error;
        QVERIFY(LoadPicture(path, &error, &got).isNull());
        QCOMPARE(got, number);
        QVERIFY2(error.contains(words), qPrintable(error));
    }

    // Every fault's file gives what it must, and those that ask for more memory than
    // their data fills are refused before they take it: under a cap of the file, its
    // allowance and little more, the same refusal comes, not a lack of memory.
    void regressionFiles_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("words");
        for (const Regression& r : m_regressions)
            QTest::newRow(r.name) << r.bytes << r.number << r.words;
    }
    void regressionFiles()
    {
        QFETCH(QByteArray, file);
        QFETCH(int, number);
        QFETCH(QString, words);
        QVERIFY(!file.isEmpty());
        const LoadedPicture loaded = DecodePicture(file);
        QCOMPARE(loaded.errorNumber, number);
        QVERIFY2(loaded.error.contains(words), qPrintable(loaded.error));
        if (IsMetafile(DetectPictureFormat(file)))
            QVERIFY(IsMetafile(loaded.format));
#ifdef VELUNTA_ASAN
        QSKIP("the address sanitizer reserves more address space than any cap");
#endif
        const QStringList capped = runCapped(QStringLiteral("bound"), {write(QStringLiteral("fault"), file)});
        QCOMPARE(capped, QStringList{outcome(loaded)});
    }

    // Every file of the fuzzers' seed corpus and of the faults' set opens under 1 GB of
    // address space just as it does without a limit.
    void memoryCap()
    {
#ifdef VELUNTA_ASAN
        QSKIP("the address sanitizer reserves more address space than any cap");
#endif
        QStringList files;
        QStringList expected;
        const QString seeds = m_dir.filePath(QStringLiteral("seeds"));
        QProcess script;
        script.start(QStringLiteral(VELUNTA_SOURCE_DIR "/scripts/fuzz-seeds"),
                     {seeds, QStringLiteral(VELUNTA_SEEDWRITER)});
        QVERIFY(script.waitForFinished(300000));
        QVERIFY2(script.exitCode() == 0, script.readAllStandardError().constData());
        QDirIterator it(seeds, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext())
            files << it.next();
        QVERIFY(files.size() > 40);
        int i = 0;
        for (const Regression& r : m_regressions)
            files << write(QStringLiteral("regression%1").arg(i++), r.bytes);
        for (const QString& f : files)
            expected << outcome(DecodePicture(ReadFile(f)));
        QCOMPARE(runCapped(QStringLiteral("1024"), files), expected);
    }

private:
    QStringList runCapped(const QString& cap, const QStringList& files)
    {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(),
                    QStringList{QStringLiteral("--capped"), cap} + files);
        if (!child.waitForFinished(300000) || child.exitCode() != 0)
            return {QStringLiteral("the child failed: ") +
                    QString::fromLocal8Bit(child.readAllStandardError())};
        return QString::fromLocal8Bit(child.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    }
};

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.value(1) == QStringLiteral("--capped"))
        return loadCapped(arguments.mid(2));
    tst_loader test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_loader.moc"
