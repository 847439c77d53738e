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
const QByteArray kBlackRed = QByteArray::fromHex("000000FF0000");
// The pixels of the hand-made files: red, blue, and the 16-bit PNGs' samples scaled to 8 bits.
const QHash<QChar, Color> kLetters = {{u'r', RGB(255, 0, 0)},     {u'b', RGB(0, 0, 255)},
                                      {u'1', RGB(18, 86, 154)},   {u'2', RGB(255, 0, 128)},
                                      {u'3', RGB(128, 128, 128)}, {u'4', RGB(1, 1, 1)}};

QByteArray samples16(std::initializer_list<quint16> values)
{
    QByteArray row(qsizetype(values.size()) * 2, 0);
    qToBigEndian<quint16>(values.begin(), qsizetype(values.size()), row.data());
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
        const QByteArray bytes = ReadFile(path);
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
    // A file built here and what opening it must give: the error number and, for a
    // refusal, words of the message; for a picture, its pixels as rows of kLetters.
    struct Made {
        const char* name;
        QByteArray bytes;
        int number = 0;
        QString words;
        QStringList rows;
    };
    QList<Made> m_made;

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
    static Made shows(const char* name, const QByteArray& bytes, const QStringList& rows = {})
    {
        return {name, bytes, 0, {}, rows};
    }
    static Made refused(const char* name, const QByteArray& bytes, int number, const QString& words)
    {
        return {name, bytes, number, words, {}};
    }

    // Variants no tool writes, and one file for each fault that was found in the loader.
    QList<Made> makeFiles()
    {
        const QByteArray jpeg =
            magick(QStringLiteral("r.jpg"), {QStringLiteral("-quality"), QStringLiteral("85")});
        const QByteArray progressive =
            magick(QStringLiteral("rp.jpg"), {QStringLiteral("-interlace"), QStringLiteral("JPEG")});
        QByteArray lossless = jpeg;
        lossless.replace("\xFF\xC0", "\xFF\xC3");
        QByteArray emf(88, 0);
        emf[0] = 1;
        emf.replace(40, 4, " EMF");
        const QByteArray pngRow(20000 * 3, 0); // zeros: filter bytes too, however the rows are cut
        const QString tooSmall = QStringLiteral("too small for its picture");
        const QString cutShort = QStringLiteral("cut short");
        const int invalid = ErrInvalidPicture, memory = ErrOutOfMemory;
        const auto tooLarge = [](const char* size) {
            return QStringLiteral("The picture is too large: %1 pixels, the limit is 65535 pixels a side and "
                                  "400 megapixels.")
                .arg(QLatin1String(size));
        };
        return {
            // Memory before data: files whose headers ask for far more than their data fills.
            refused("gif screen 20000 x 20000",
                    GifFile({20000, 20000, 0, 0, 1, 1, 2, kBlackRed, QByteArray(1, 1)}), invalid, tooSmall),
            refused("rle8 of 1 KB stating 20000 x 20000",
                    BmpFile(20000, 20000, 40, 8, 1, kPalette, QByteArray(1024, '\x01')), invalid, cutShort),
            refused("rle8 10000 x 10000 ending at once",
                    BmpFile(10000, 10000, 40, 8, 1, kPalette, QByteArray::fromHex("0001")), invalid,
                    tooSmall),
            refused("jpeg stating 20000 x 20000", withJpegSize(jpeg, 20000, 20000), invalid,
                    QStringLiteral("too early for a picture this large")),
            refused("progressive jpeg stating 20000 x 20000", withJpegSize(progressive, 20000, 20000),
                    invalid, tooSmall),
            refused("png stating 20000 x 20000 with one row", PngFile(20000, 20000, 8, 2, {pngRow}), invalid,
                    cutShort),
            refused("interlaced png stating 20000 x 20000", PngFile(20000, 20000, 8, 2, {pngRow}, {}, true),
                    invalid, cutShort),
            refused("png text chunk stating 1.3 GB",
                    PngFile(24, 16, 8, 2, {}, QByteArray::fromHex("4d600125") + "tEXtkey"), invalid,
                    cutShort),
            // Too many pixels: refused before any memory is taken.
            refused("png 2147483647 pixels wide", PngFile(0x7FFFFFFF, 1, 8, 6, {}), memory,
                    tooLarge("2147483647 x 1")),
            refused("bmp too wide", BmpFile(65536, 1, 40, 24, 0, {}, {}), memory, tooLarge("65536 x 1")),
            refused("bmp too many pixels", BmpFile(25000, -25000, 40, 32, 0, {}, {}), memory,
                    tooLarge("25000 x 25000")),
            refused("gif too many pixels",
                    GifFile({65535, 65535, 0, 0, 1, 1, 2, kBlackRed, QByteArray(1, 0)}), memory,
                    tooLarge("65535 x 65535")),
            refused("jpeg too many pixels", withJpegSize(jpeg, 25000, 25000), memory,
                    tooLarge("25000 x 25000")),
            refused("png too wide", PngFile(70000, 1, 8, 0, {QByteArray(70000, 0)}), memory,
                    tooLarge("70000 x 1")),
            // GIF canvas.
            shows("gif image partly outside the screen",
                  GifFile({4, 3, 2, 2, 3, 2, 2, kBlackRed, QByteArray(6, 1)}), {"....", "....", "..rr"}),
            shows("gif image wholly outside the screen",
                  GifFile({3, 2, 5, 5, 2, 2, 2, kBlackRed, QByteArray(4, 1)}), {"...", "..."}),
            shows("gif without a screen size", GifFile({0, 0, 1, 0, 1, 2, 2, kBlackRed, QByteArray(2, 1)}),
                  {".r", ".r"}),
            shows("gif 65535 pixels wide",
                  GifFile({65535, 1, 0, 0, 65535, 1, 2, kBlackRed, QByteArray(65535, 1)}),
                  {QString(65535, u'r')}),
            // JPEG warnings.
            shows("progressive jpeg cut short", progressive.left(progressive.size() * 6 / 10)),
            refused("lossless jpeg", lossless, invalid, QStringLiteral("lossless JPEG is not supported")),
            // BMP, rows from the bottom: a run of alternating pixels; an absolute run and a run,
            // then the line ends early; a jump of two pixels, a run, and the end of the picture.
            // Pixels nothing was written to stay black.
            shows("rle4 with a jump",
                  BmpFile(6, 3, 40, 4, 2, kPalette,
                          QByteArray::fromHex("0612 0000 0003 2020 0122 0000 0002 0200 0222 0001")),
                  {"##rr##", "r.rr##", "#r#r#r"}),
            shows("top-down 24",
                  BmpFile(2, -2, 40, 24, 0, {}, QByteArray::fromHex("0000FF FFFFFF 0000 000000 0000FF 0000")),
                  {"r.", "#r"}),
            shows("top-down rle8",
                  BmpFile(2, -2, 40, 8, 1, kPalette, QByteArray::fromHex("0202 0000 0200 0001")),
                  {"rr", ".."}),
            shows("os2 2.x header",
                  BmpFile(2, 2, 64, 8, 0, kPalette, QByteArray::fromHex("0201 0000 0100 0000")),
                  {"#.", "r#"}),
            shows("bmp offset inside the headers",
                  BmpFile(2, 1, 40, 8, 0, kPalette, QByteArray::fromHex("02010000"), 20, 3), {"r#"}),
            shows("bmp offset inside a stated palette",
                  BmpFile(2, 1, 40, 8, 0, kPalette, QByteArray::fromHex("02010000"), 14 + 40 + 4, 3), {"r#"}),
            shows("bmp colour count above the depth",
                  BmpFile(2, 1, 40, 1, 0, kPalette.left(8), QByteArray::fromHex("40000000"), -1, 1000),
                  {".#"}),
            // A run of six and an absolute run of three on rows four wide, a jump past the row's
            // end: what lies past the end is dropped, the rest of the row stays background.
            shows("rle8 runs past the row",
                  BmpFile(4, 3, 40, 8, 1, kPalette,
                          QByteArray::fromHex("0602 0000 0202 000300000000 0000 00020500 0202 0001")),
                  {"####", "rr..", "rrrr"}),
            shows("rle4 runs past the row",
                  BmpFile(4, 3, 40, 4, 2, kPalette,
                          QByteArray::fromHex("0622 0000 0222 00030000 0000 00020500 0222 0001")),
                  {"####", "rr..", "rrrr"}),
            shows("rle8 jump past the picture",
                  BmpFile(2, 3, 40, 8, 1, kPalette, QByteArray::fromHex("0202 0000 00020009")),
                  {"##", "##", "rr"}),
            shows("packed dib",
                  BmpFile(2, 1, 40, 8, 0, kPalette, QByteArray::fromHex("02010000"), -1, 3).mid(14), {"r#"}),
            // 2 x 2, one bit a pixel, palette red and blue; rows from the bottom, then the mask.
            shows("cursor with a mask",
                  IconFile(2, {{2, 2, 0x0101,
                                BmpFile(2, 4, 40, 1, 0, QByteArray::fromHex("0000FF00 FF000000"),
                                        QByteArray::fromHex("40000000 80000000 00000000 40000000"))
                                    .mid(14)}}),
                  {"b.", "rb"}),
            // Metafiles are known for what they are.
            refused("placeable wmf",
                    QByteArray::fromHex("D7CDC69A0000000000001000100060000000") + QByteArray(40, 0), invalid,
                    QStringLiteral("Windows Metafile (WMF)")),
            refused("emf", emf, invalid, QStringLiteral("Enhanced Metafile (EMF)")),
            // Samples equal to the tRNS colour in all 16 bits are transparent (white); the rest
            // scale to 8 bits by v * 255 / 65535, rounded.
            shows(
                "png 16-bit rgb with trns",
                PngFile(3, 1, 16, 2,
                        {samples16({0x1234, 0x5678, 0x9ABC, 0x1234, 0x5678, 0x9ABD, 0xFFFF, 0x0000, 0x8000})},
                        PngChunk("tRNS", samples16({0x1234, 0x5678, 0x9ABC}))),
                {".12"}),
            shows("png 16-bit grey with trns",
                  PngFile(3, 1, 16, 0, {samples16({0x8001, 0x8000, 0x0101})},
                          PngChunk("tRNS", samples16({0x8001}))),
                  {".34"}),
        };
    }
    QByteArray made(const char* name) const
    {
        for (const Made& m : m_made)
            if (qstrcmp(m.name, name) == 0)
                return m.bytes;
        return {};
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (!HaveTool(QStringLiteral("convert")))
            QSKIP("ImageMagick is needed for the fixtures");
        m_base = m_dir.filePath(QStringLiteral("base.png"));
        MakeImage(37, 23, [](int x, int y) { return RGB(7 * x, 11 * y, (x * y) % 256); }).save(m_base);
        m_made = makeFiles();
    }

    // Files ImageMagick writes open as it shows them. Those marked `broken` are also cut
    // short, which is refused but for JPEG, which shows what arrived of its picture data,
    // and damaged, which is refused or shown, never a crash or a hang.
    void magickFixtures_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("broken");
        QTest::addColumn<int>("frame");     // the frame ImageMagick shows of the expected picture
        QTest::addColumn<int>("tolerance"); // decoders may round differently
        const QString alpha = QStringLiteral("-alpha set -channel A -fx i/w +channel");
        const auto row = [](const char* name, const char* file, const QString& args, bool broken = false,
                            int frame = 0, int tol = 0) {
            QTest::newRow(name) << QString::fromLatin1(file) << args.split(u' ', Qt::SkipEmptyParts) << broken
                                << frame << tol;
        };
        row("bmp 24", "b24.bmp", "BMP3:");
        row("bmp 32", "b32.bmp", "-alpha set -define bmp3:alpha=true BMP3:");
        row("bmp 8", "b8.bmp", "-colors 200 -type Palette -compress none BMP3:");
        row("bmp rle8", "rle8.bmp", "-colors 200 -type Palette -compress RLE BMP3:", true);
        row("bmp 4", "b4.bmp", "-colors 16 BMP3:");
        row("bmp 1", "b1.bmp", "-monochrome BMP3:");
        row("bmp rgb565", "b565.bmp", "-define bmp:subtype=RGB565 BMP:", true, 0, 1);
        row("bmp v5 alpha", "b5a.bmp", alpha + " BMP:", false, 0, 1);
        // ImageMagick widens 4-bit channels by a shift (15 -> 240); the loader scales them (15 -> 255).
        row("bmp argb4444", "b4444.bmp", alpha + " -define bmp:subtype=ARGB4444 BMP:", false, 0, 15);
        row("os2 24", "os24.bmp", "BMP2:");
        row("os2 8", "os8.bmp", "-colors 200 -type Palette BMP2:", true);
        row("dib name", "b.dib", "BMP3:");
        row("jpeg", "b.jpg", "-quality 90", true, 0, 1);
        row("jpeg progressive", "p.jpg", "-interlace JPEG", true, 0, 1);
        row("jpeg grey", "g.jpg", "-colorspace Gray", false, 0, 1);
        row("jpeg cmyk", "c.jpg", "-colorspace CMYK", false, 0, 2);
        row("gif", "b.gif", "");
        row("gif interlaced", "i.gif", "-interlace GIF", true);
        row("gif transparent", "t.gif", "-fill red -draw point_3,3 -transparent red");
        row("ico largest", "b.ico", "-define icon:auto-resize=16,48,32", true, 1);
        row("cur", "b.cur", "CUR:", true);
        // Stripped: no chunks after the picture data, so that a cut always reaches it.
        row("png alpha", "a.png", alpha + " -strip", true, 0, 1);
        row("png 16-bit", "p16.png", "-depth 16 PNG48:");
        row("png interlaced", "pi.png", "-interlace PNG -strip PNG:", true);
        row("png palette", "p8.png", "PNG8:");
        row("png grey", "pg.png", "-colorspace Gray PNG:");
        row("png named jpg", "png.jpg", "PNG:");
    }
    void magickFixtures()
    {
        QFETCH(QString, file);
        QFETCH(QStringList, arguments);
        QFETCH(bool, broken);
        QFETCH(int, frame);
        QFETCH(int, tolerance);
        // "point_3,3" stands for one argument with a blank.
        arguments.replaceInStrings(QStringLiteral("point_"), QStringLiteral("point "));
        const QByteArray whole = magick(file, arguments);
        QVERIFY(!whole.isEmpty());
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
        // A BMP's bytes without the file header open as a packed DIB, the same picture.
        if (file.endsWith(QStringLiteral("bmp")) || file.endsWith(QStringLiteral("dib"))) {
            const LoadedPicture packed = DecodePicture(whole.mid(14));
            QCOMPARE(packed.format, PictureFormat::Dib);
            QCOMPARE(DifferingPixels(packed.image, loaded), 0);
        }
        if (!broken)
            return;
        const bool jpeg = file.endsWith(QStringLiteral(".jpg"));
        for (qsizetype cut : {qsizetype(0), qsizetype(5), whole.size() / 2, whole.size() * 9 / 10}) {
            const LoadedPicture got = DecodePicture(whole.left(cut));
            if (jpeg && cut > 5 && (cut > whole.size() / 2 || !got.image.isNull())) {
                QVERIFY2(!got.image.isNull(), qPrintable(got.error));
                continue;
            }
            QVERIFY2(got.image.isNull(), qPrintable(QString::number(cut)));
            QCOMPARE(got.errorNumber, int(ErrInvalidPicture));
            QVERIFY2(got.error.contains(cut ? QStringLiteral("cut short") : QStringLiteral("empty")),
                     qPrintable(got.error));
        }
        QRandomGenerator random(42);
        for (int round = 0; round < 300; ++round) {
            QByteArray damaged = whole;
            for (int flips = 1 + round % 4; flips > 0; --flips)
                damaged[random.bounded(int(damaged.size()))] = char(random.bounded(256));
            const LoadedPicture got = DecodePicture(damaged);
            QVERIFY(got.image.isNull() ? !got.error.isEmpty()
                                       : got.errorNumber == 0 && got.image.format() == QImage::Format_RGB32);
        }
    }

    // A picture decoded into the memory of one that was let go (the next file opened)
    // must show none of the old pixels where its file leaves the picture black.
    void reusedMemoryShowsNoOldPixels()
    {
        constexpr int side = 1024;
        const QImage red = MakeImage(side, side, [](int, int) { return RGB(255, 0, 0); });
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
        const QImage expected =
            MakeImage(side, side, [](int x, int y) { return y == side - 1 && x < 10 ? 0xFFFFFF : 0; });
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

    // A progressive JPEG that ends early opens as djpeg shows it.
    void jpegCutShortOpensAsDjpeg()
    {
        if (!HaveTool(QStringLiteral("djpeg")))
            QSKIP("djpeg is needed");
        const QByteArray bytes = made("progressive jpeg cut short");
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

    void notAPicture_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("words");
        const auto row = [](const char* name, const QString& path, int number, const char* words) {
            QTest::newRow(name) << path << number << QString::fromLatin1(words);
        };
        row("missing", m_dir.filePath(QStringLiteral("nothing.bmp")), ErrFileNotFound, "not found");
        row("folder", m_dir.path(), ErrFileAccess, "not a file");
        row("text", write(QStringLiteral("text.bmp"), "just some text"), ErrInvalidPicture,
            "not a picture file");
        row("empty", write(QStringLiteral("empty.gif"), {}), ErrInvalidPicture, "empty");
        row("tiff", write(QStringLiteral("t.bmp"), QByteArray("II*\0\x08\0\0\0", 8)), ErrInvalidPicture,
            "TIFF picture");
        row("plain wmf",
            write(QStringLiteral("p.wmf"), QByteArray::fromHex("010009000003") + QByteArray(30, 0)),
            ErrInvalidPicture, "Windows Metafile (WMF)");
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

    // Every made file gives what it must, and those that ask for more memory than their
    // data fills are refused before they take it: under a cap of the file, its allowance
    // and little more, the same refusal comes, not a lack of memory.
    void madeFiles_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("words");
        QTest::addColumn<QStringList>("rows");
        for (const Made& m : m_made)
            QTest::newRow(m.name) << m.bytes << m.number << m.words << m.rows;
    }
    void madeFiles()
    {
        QFETCH(QByteArray, file);
        QFETCH(int, number);
        QFETCH(QString, words);
        QFETCH(QStringList, rows);
        QVERIFY(!file.isEmpty());
        const LoadedPicture loaded = DecodePicture(file);
        QCOMPARE(loaded.errorNumber, number);
        QCOMPARE(loaded.image.isNull(), number != 0);
        QVERIFY2(loaded.error.contains(words), qPrintable(loaded.error));
        if (!rows.isEmpty())
            QCOMPARE(DifferingPixels(loaded.image, ImageFromRows(rows, kLetters)), 0);
        if (IsMetafile(DetectPictureFormat(file)))
            QVERIFY(IsMetafile(loaded.format));
#ifdef VELUNTA_ASAN
        QSKIP("the address sanitizer reserves more address space than any cap");
#endif
        const QStringList capped = runCapped(QStringLiteral("bound"), {write(QStringLiteral("made"), file)});
        QCOMPARE(capped, QStringList{outcome(loaded)});
    }

    // Every file of the fuzzers' seed corpus and every made file opens under 1 GB of
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
        for (const Made& m : m_made)
            files << write(QStringLiteral("made%1").arg(i++), m.bytes);
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
