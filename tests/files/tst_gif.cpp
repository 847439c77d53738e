#include "files/GIF.h"

#include "support/OutsideTools.h"
#include "support/TestImages.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace velunta;
using namespace velunta::test;

namespace {

QImage indexedRow(const QList<int>& pixels)
{
    QImage image(int(pixels.size()), 1, QImage::Format_Indexed8);
    QList<QRgb> table;
    for (int i = 0; i < 256; ++i)
        table << qRgb(i, i, 255 - i);
    image.setColorTable(table);
    for (int x = 0; x < pixels.size(); ++x)
        image.scanLine(0)[x] = uchar(pixels[x]);
    return image;
}

// The 9-bit codes of the picture's data sub-blocks, read the way a decoder reads them.
QList<int> codesOf(const QByteArray& gif)
{
    qsizetype at = gif.indexOf(char(0x2C), 13 + 768) + 11;
    QByteArray data;
    while (at < gif.size() && gif[at] != 0) {
        const int n = uchar(gif[at]);
        data += gif.mid(at + 1, n);
        at += n + 1;
    }
    QList<int> codes;
    quint32 acc = 0;
    int bits = 0;
    for (char c : data) {
        acc |= quint32(uchar(c)) << bits;
        bits += 8;
        if (bits >= 9) {
            codes << int(acc & 511);
            acc >>= 9;
            bits -= 9;
        }
    }
    return codes;
}

} // namespace

class tst_gif : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

    QString path(const QString& name) const { return m_dir.filePath(name); }
    QByteArray save(const QImage& image, bool transparency = false, Color colour = kNoColor,
                    const QString& name = QStringLiteral("t.gif"))
    {
        GIF().SaveGIF(image, path(name), transparency, colour);
        return ReadFile(path(name));
    }

private Q_SLOTS:
    void exactBytes_data()
    {
        QTest::addColumn<QImage>("image");
        QTest::addColumn<bool>("transparency");
        QTest::addColumn<Color>("colour");
        QTest::addColumn<QByteArray>("signature");
        QTest::addColumn<QByteArray>("afterPalette");

        const QImage black = ImageFromRows({"#"});
        // codes 256 0 257
        QTest::newRow("1x1") << black << false << kNoColor << QByteArray("GIF87a")
                             << QByteArray::fromHex("2C 00000000 0100 0100 07 08 04 00010404 00 3B");
        // each row: clear, then the pixel: 256 124 256 4 256 0 257
        QTest::newRow("width 1") << ImageFromRows({".", "r", "#"}, {{u'r', RGB(255, 0, 0)}}) << false
                                 << kNoColor << QByteArray("GIF87a") << QByteArray::fromHex(
                                        "2C 00000000 0100 0300 07 08 08 00F90024001040 40 00 3B");
        // 256 124 4 256 4 124 257
        QTest::newRow("2x2") << ImageFromRows({".r", "r."}, {{u'r', RGB(255, 0, 0)}}) << false << kNoColor
                             << QByteArray("GIF87a")
                             << QByteArray::fromHex("2C 00000000 0200 0200 07 08 08 00F91000 48804F40 00 3B");
        // Pure red is cube entry 4.
        QTest::newRow("transparent red") << black << true << RGB(255, 0, 0) << QByteArray("GIF89a")
            << QByteArray::fromHex("21F904 09 0000 04 00"
                                   "2C 00000000 0100 0100 07 08 04 00010404 00 3B");
        // No cube entry is exactly 250, 0, 0: entry 0 becomes transparent.
        QTest::newRow("no exact match") << black << true << RGB(250, 0, 0) << QByteArray("GIF89a")
            << QByteArray::fromHex("21F904 09 0000 00 00"
                                   "2C 00000000 0100 0100 07 08 04 00010404 00 3B");
    }
    void exactBytes()
    {
        QFETCH(QImage, image);
        QFETCH(bool, transparency);
        QFETCH(Color, colour);
        QFETCH(QByteArray, signature);
        QFETCH(QByteArray, afterPalette);
        const QByteArray gif = save(image, transparency, colour);
        QCOMPARE(gif.left(6), signature);
        QByteArray screen(7, 0); // width, height, table of 256 entries, background 0, aspect 0
        screen[0] = char(image.width());
        screen[2] = char(image.height());
        screen[4] = char(0xF7);
        QCOMPARE(gif.mid(6, 7), screen);
        // The cube: blue slowest, red fastest; the rest of the table black.
        QCOMPARE(gif.mid(13 + 3 * 1, 3), QByteArray::fromHex("400000"));
        QCOMPARE(gif.mid(13 + 3 * 30, 3), QByteArray::fromHex("004040"));
        QCOMPARE(gif.mid(13 + 3 * 124, 3), QByteArray::fromHex("FFFFFF"));
        QCOMPARE(gif.mid(13 + 3 * 125, 3 * 131), QByteArray(3 * 131, 0));
        QCOMPARE(gif.mid(13 + 768).toHex(' '), afterPalette.toHex(' '));
    }

    void nearestCubeEntry_data()
    {
        QTest::addColumn<Color>("colour");
        QTest::addColumn<int>("index");
        QTest::newRow("red") << RGB(255, 0, 0) << 4;
        // 32 and 160 lie half way: the brighter level wins.
        QTest::newRow("half way up") << RGB(31, 32, 160) << 0 + 1 * 5 + 3 * 25;
        QTest::newRow("just below 255") << RGB(223, 224, 0) << 3 + 4 * 5;
    }
    void nearestCubeEntry()
    {
        QFETCH(Color, colour);
        QFETCH(int, index);
        QCOMPARE(GIF::CubeIndex(ToQRgb(colour)), index);
    }

    // When a row's dictionary fills up, the pending string goes out, then the clear
    // code; the row then goes on with a fresh dictionary.
    void resetInsideRow()
    {
        QList<int> pixels;
        for (int x = 0; x < 256; ++x)
            pixels << x;
        QList<int> expected{256};
        for (int c = 0; c <= 253; ++c)
            expected << c;
        expected << 256 << 254 << 255 << 257;
        QCOMPARE(codesOf(save(indexedRow(pixels))), expected);
    }

    // Sub-blocks are written when full and the next byte needs room; the last one with its count.
    void blockBoundary_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QByteArray>("tail");
        // 2 x 75: 226 codes, 2034 bits: exactly one full block.
        QTest::newRow("255 bytes") << QSize(2, 75) << QByteArray::fromHex("003B");
        // 1 x 113: 227 codes, 2043 bits: a full block, then one byte: bits 6..8 of the end code.
        QTest::newRow("256 bytes") << QSize(1, 113) << QByteArray::fromHex("0104003B");
    }
    void blockBoundary()
    {
        QFETCH(QSize, size);
        QFETCH(QByteArray, tail);
        const QByteArray gif = save(MakeImage(size.width(), size.height(), [](int, int) { return 0; }));
        const qsizetype data = 13 + 768 + 11;
        QCOMPARE(uchar(gif[data]), uchar(255));
        QCOMPARE(gif.mid(data + 256), tail);
        QCOMPARE(codesOf(gif).size(), size.height() * (size.width() + 1) + 1);
    }

    void otherDecodersAgree_data()
    {
        QTest::addColumn<QImage>("image");
        QRandomGenerator random(7);
        for (int width : {254, 255, 256, 257, 509, 1000, 4000}) {
            // Noise of cube colours fills the dictionary and resets it inside rows.
            QTest::addRow("noise %d", width)
                << MakeImage(width, 3, [&](int, int) { return GIF::CubeColor(int(random.bounded(125))); });
            QTest::addRow("three colours %d", width)
                << MakeImage(width, 3, [](int x, int y) { return GIF::CubeColor((x / (y + 1)) % 3 * 40); });
        }
        QTest::newRow("own table") << indexedRow({3, 200, 200, 7, 255, 3});
    }
    void otherDecodersAgree()
    {
        QFETCH(QImage, image);
        if (!HaveTool(QStringLiteral("gif2rgb")) || !HaveTool(QStringLiteral("convert")))
            QSKIP("gif2rgb and ImageMagick are needed");
        save(image);
        const QImage expected = image.convertToFormat(QImage::Format_RGB32);
        const QImage giflib =
            FromRgbBytes(RunTool(QStringLiteral("gif2rgb"), {path("t.gif")}), image.width(), image.height());
        QCOMPARE(DifferingPixels(giflib, expected), 0);
        QCOMPARE(DifferingPixels(DecodeWithMagick(path("t.gif")), expected), 0);
    }
};

QTEST_GUILESS_MAIN(tst_gif)
#include "tst_gif.moc"
