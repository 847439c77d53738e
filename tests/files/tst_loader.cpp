#include "files/PictureLoader.h"

#include "support/OutsideTools.h"
#include "support/TestImages.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace velunta;
using namespace velunta::test;

namespace {

// Largest difference of any channel of any pixel; -1 when the sizes differ.
int maxChannelDifference(const QImage& a, const QImage& b)
{
    if (a.size() != b.size() || a.isNull())
        return -1;
    int worst = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            for (int shift : {0, 8, 16})
                worst = std::max(
                    worst, std::abs(int(a.pixel(x, y) >> shift & 255) - int(b.pixel(x, y) >> shift & 255)));
    return worst;
}

QByteArray bmpFile(qint32 width, qint32 height, int headerSize, int bpp, int compression,
                   const QByteArray& palette, const QByteArray& pixels)
{
    QByteArray info(headerSize, 0);
    auto* h = reinterpret_cast<uchar*>(info.data());
    qToLittleEndian<quint32>(quint32(headerSize), h);
    qToLittleEndian<qint32>(width, h + 4);
    qToLittleEndian<qint32>(height, h + 8);
    qToLittleEndian<quint16>(1, h + 12);
    qToLittleEndian<quint16>(quint16(bpp), h + 14);
    qToLittleEndian<quint32>(quint32(compression), h + 16);
    QByteArray file(14, 0);
    file[0] = 'B';
    file[1] = 'M';
    qToLittleEndian<quint32>(quint32(14 + headerSize + palette.size()), file.data() + 10);
    return file + info + palette + pixels;
}

} // namespace

class tst_loader : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_base;

    QString write(const QString& name, const QByteArray& bytes)
    {
        const QString path = m_dir.filePath(name);
        WriteFile(path, bytes);
        return path;
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (!HaveTool(QStringLiteral("convert")))
            QSKIP("ImageMagick is needed for the fixtures");
        m_base = m_dir.filePath(QStringLiteral("base.png"));
        MakeImage(37, 23, [](int x, int y) { return RGB(7 * x, 11 * y, (x * y) % 256); }).save(m_base);
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
        row("png alpha", "a.png", alpha, 0, 1);
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
        const QString out = m_dir.filePath(file);
        QStringList args = arguments;
        if (!args.isEmpty() && args.last().endsWith(u':'))
            args.last() += out;
        else
            args << out;
        RunTool(QStringLiteral("convert"), QStringList{m_base} + args);
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

    // Variants ImageMagick doesn't write.
    void handMadeBmp_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("rows");
        const QByteArray palette = QByteArray::fromHex("FFFFFF00 00000000 0000FF00"); // white, black, red
        // Rows from the bottom: a run of alternating pixels; an absolute run and a run,
        // then the line ends early; a jump of two pixels, a run, and the end of the picture.
        // Pixels nothing was written to stay black.
        QTest::newRow("rle4 with a jump") << bmpFile(6, 3, 40, 4, 2, palette,
                                                     QByteArray::fromHex("0612 0000"
                                                                         "0003 2020 0122 0000"
                                                                         "0002 0200 0222 0001"))
                                          << QStringList{"##rr##", "r.rr##", "#r#r#r"};
        QTest::newRow("top-down 24") << bmpFile(2, -2, 40, 24, 0, {},
                                                QByteArray::fromHex("0000FF FFFFFF 0000"
                                                                    "000000 0000FF 0000"))
                                     << QStringList{"r.", "#r"};
        QTest::newRow("os2 2.x header")
            << bmpFile(2, 2, 64, 8, 0, palette, QByteArray::fromHex("0201 0000 0100 0000"))
            << QStringList{"#.", "r#"};
    }
    void handMadeBmp()
    {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, rows);
        QString error;
        const QImage loaded = LoadPicture(write(QStringLiteral("hand.bmp"), file), &error);
        QVERIFY2(!loaded.isNull(), qPrintable(error));
        QCOMPARE(DifferingPixels(loaded, ImageFromRows(rows, {{u'r', RGB(255, 0, 0)}})), 0);
    }

    // Cut short files are refused; damaged ones are refused or shown, never a crash or a hang.
    void brokenFiles_data()
    {
        QTest::addColumn<QString>("file");
        for (const char* f : {"rle8.bmp", "os8.bmp", "p.jpg", "i.gif", "b.ico", "a.png"})
            QTest::newRow(f) << QString::fromLatin1(f);
    }
    void brokenFiles()
    {
        QFETCH(QString, file);
        const QByteArray whole = ReadFile(m_dir.filePath(file));
        QVERIFY(!whole.isEmpty());
        for (qsizetype cut : {qsizetype(0), qsizetype(5), whole.size() / 2, whole.size() * 9 / 10}) {
            int number = 0;
            QString error;
            QVERIFY(LoadPicture(write(QStringLiteral("cut"), whole.left(cut)), &error, &number).isNull());
            QCOMPARE(number, int(ErrInvalidPicture));
            QVERIFY(error.startsWith(QStringLiteral("Invalid picture")));
        }
        QRandomGenerator random(42);
        for (int round = 0; round < 300; ++round) {
            QByteArray damaged = whole;
            for (int flips = 1 + round % 4; flips > 0; --flips)
                damaged[random.bounded(int(damaged.size()))] = char(random.bounded(256));
            int number = 0;
            const QImage loaded = LoadPicture(write(QStringLiteral("flip"), damaged), nullptr, &number);
            QVERIFY(loaded.isNull() ? (number == ErrInvalidPicture || number == ErrOutOfMemory)
                                    : number == 0 && loaded.format() == QImage::Format_RGB32);
        }
    }

    // Headers that ask for too many pixels are refused before any memory is taken.
    void oversizedHeaders_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("bmp too wide") << bmpFile(30001, 1, 40, 24, 0, {}, {});
        QTest::newRow("bmp too many pixels") << bmpFile(25000, -25000, 40, 32, 0, {}, {});
        QTest::newRow("gif too wide") << QByteArray::fromHex("474946383961 6079 0100 00 0000"
                                                             "2C 00000000 6079 0100 80 000000FFFFFF 08");
        // 25000 x 25000 in the JPEG frame header of a real file.
        QByteArray jpeg = ReadFile(m_dir.filePath(QStringLiteral("b.jpg")));
        const qsizetype sof = jpeg.indexOf("\xFF\xC0");
        QVERIFY(sof > 0);
        qToBigEndian<quint16>(25000, jpeg.data() + sof + 5);
        qToBigEndian<quint16>(25000, jpeg.data() + sof + 7);
        QTest::newRow("jpeg too many pixels") << jpeg;
    }
    void oversizedHeaders()
    {
        QFETCH(QByteArray, file);
        QString error;
        int number = 0;
        QVERIFY(LoadPicture(write(QStringLiteral("big"), file), &error, &number).isNull());
        QCOMPARE(number, int(ErrOutOfMemory));
        QVERIFY2(error.contains(QStringLiteral("30000 x 30000")) &&
                     error.contains(QStringLiteral("400 megapixels")),
                 qPrintable(error));
    }

    void notAPicture_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("number");
        QTest::newRow("missing") << m_dir.filePath(QStringLiteral("nothing.bmp")) << int(ErrFileNotFound);
        QTest::newRow("folder") << m_dir.path() << int(ErrFileAccess);
        QTest::newRow("text") << write(QStringLiteral("text.bmp"), "just some text")
                              << int(ErrInvalidPicture);
        QTest::newRow("empty") << write(QStringLiteral("empty.gif"), {}) << int(ErrInvalidPicture);
    }
    void notAPicture()
    {
        QFETCH(QString, path);
        QFETCH(int, number);
        int got = 0;
        QString error;
        QVERIFY(LoadPicture(path, &error, &got).isNull());
        QCOMPARE(got, number);
        QVERIFY(!error.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_loader)
#include "tst_loader.moc"
