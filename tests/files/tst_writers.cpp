// The writers against other programs' decoders, GIF byte for byte, the safe save (a
// save that fails leaves the old file and says why), and the names of Save As and the
// exports: the filter decides the format; the typed extension loses four characters.

#include "files/BmpWriter.h"
#include "files/FileNames.h"
#include "files/GIF.h"
#include "files/JpegWriter.h"
#include "support/OutsideTools.h"
#include "support/TestImages.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// Smooth colours, the kind of picture JPEG is made for.
QImage smooth(int w, int h)
{
    return MakeImage(
        w, h, [=](int x, int y) { return RGB(40 + 150 * x / w, 60 + 120 * y / h, 200 - 100 * x / w); });
}

bool save(const QString& writer, const QImage& image, const QString& path, WriteFailure* failure = nullptr,
          int quality = 90)
{
    if (writer == QLatin1String("bmp"))
        return SaveBMP(image, path, failure);
    if (writer == QLatin1String("gif"))
        return GIF().SaveGIF(image, path, false, -1, failure);
    cDIBSection dib;
    dib.CreateFromPicture(image);
    return SaveJPG(dib, path, quality, failure);
}

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

class tst_Writers : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    const QImage m_noise =
        MakeImage(300, 200, [](int x, int y) { return (x * 7919 + y * 104729) % 0xFFFFFF; });

    QByteArray jpeg(const QImage& image, int quality)
    {
        const QString path = m_dir.filePath(QStringLiteral("q%1.jpg").arg(quality));
        save(QStringLiteral("jpeg"), image, path, nullptr, quality);
        return ReadFile(path);
    }

    QByteArray gif(const QImage& image, bool transparency = false, Color colour = kNoColor)
    {
        GIF().SaveGIF(image, m_dir.filePath("t.gif"), transparency, colour);
        return ReadFile(m_dir.filePath("t.gif"));
    }

private Q_SLOTS:
    void bmpReadsBackInMagick_data()
    {
        QTest::addColumn<QImage>("image");
        QTest::addColumn<qint64>("fileSize");
        const auto colours = [](int x, int y) { return RGB(37 * x % 256, 59 * y % 256, (x * y) % 256); };
        for (int w : {1, 2, 3, 4, 5, 7})
            QTest::addRow("%d x 3", w) << MakeImage(w, 3, colours) << 54 + 3 * ((3 * w + 3) / 4 * 4ll);
        // Other formats are written as their colours.
        QTest::newRow("indexed") << MakeImage(6, 5, colours).convertToFormat(QImage::Format_Indexed8)
                                 << 54 + 5 * 20ll;
    }
    void bmpReadsBackInMagick()
    {
        QFETCH(QImage, image);
        QFETCH(qint64, fileSize);
        const QString path = m_dir.filePath(QStringLiteral("t.bmp"));
        WriteFailure failure;
        QVERIFY2(SaveBMP(image, path, &failure), qPrintable(failure.reason));
        QCOMPARE(QFileInfo(path).size(), fileSize);
        if (!HaveTool(QStringLiteral("convert")))
            QSKIP("ImageMagick is needed");
        QCOMPARE(DifferingPixels(DecodeWithMagick(path), image), 0);
    }

    // The save path hands libjpeg the picture's own 32-bit rows: the file must be the one the
    // bottom-up 24-bit section gives, byte for byte, and one that djpeg reads back.
    void jpegRowsAndSectionGiveWhatDjpegReads_data()
    {
        QTest::addColumn<QImage>("image");
        QTest::addColumn<int>("quality");
        // Greys that change from pixel to pixel: colour subsampling can't blur them, while
        // a row read from the wrong place shows at once. Widths 1..5 need pads of 1, 2, 3, 0, 1.
        const auto grey = [](int v) { return RGB(v % 256, v % 256, v % 256); };
        for (int w = 1; w <= 5; ++w)
            QTest::addRow("width %d", w)
                << MakeImage(w, 9, [&](int x, int y) { return grey(30 + 20 * x + 15 * y); }) << 90;
        QTest::newRow("1 x 1") << smooth(1, 1) << 90;
        QTest::newRow("64 x 48") << smooth(64, 48) << 90;
        QTest::newRow("odd width, q75") << smooth(37, 23) << 75;
        QTest::newRow("ARGB32 picture") << smooth(20, 18).convertToFormat(QImage::Format_ARGB32) << 90;
        QTest::newRow("noise, q100") << MakeImage(61, 45, [&](int x, int y) {
            return grey(x * 7919 + y * 104729);
        }) << 100;
    }
    void jpegRowsAndSectionGiveWhatDjpegReads()
    {
        QFETCH(QImage, image);
        QFETCH(int, quality);
        const QByteArray section = jpeg(image, quality);
        const QString path = m_dir.filePath("rows.jpg");
        QVERIFY(SaveJPG(image, path, quality));
        QVERIFY(!section.isEmpty());
        QCOMPARE(ReadFile(path), section);
        if (!HaveTool(QStringLiteral("djpeg")))
            QSKIP("djpeg is needed");
        const QImage decoded = QImage::fromData(RunTool(QStringLiteral("djpeg"), {path}), "PPM");
        QCOMPARE(decoded.size(), image.size());
        QVERIFY2(Psnr(decoded, image) > 35, qPrintable(QString::number(Psnr(decoded, image))));
    }

    void jpegQualityZeroMeansNinety()
    {
        const QImage image = smooth(40, 30);
        const QByteArray ninety = jpeg(image, 90);
        QVERIFY(!ninety.isEmpty());
        QCOMPARE(jpeg(image, 0), ninety);
        QCOMPARE(jpeg(image, -5), ninety);
        QVERIFY(jpeg(image, 50) != ninety);
        WriteFailure failure; // an empty section is refused
        QVERIFY(!SaveJPG(cDIBSection(), m_dir.filePath("empty.jpg"), 90, &failure) &&
                !failure.reason.isEmpty());
        QVERIFY(!QFile::exists(m_dir.filePath("empty.jpg")));
    }

    void oldFileSurvives_data()
    {
        QTest::addColumn<QString>("writer");
        QTest::addColumn<QString>("situation");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<WriteError>("error");
        // A file small enough to wait in the file's buffer used to be renamed over the old one
        // cut short: the buffer's failing write at the close went unnoticed.
        const std::tuple<const char*, const char*, WriteError> situations[] = {
            {"read-only folder", "Permission denied", WriteError::PermissionDenied},
            {"disk full", "File too large", WriteError::DiskFull},
            {"small file on a full disk", "File too large", WriteError::DiskFull},
            {"parent is a file", "Not a directory", WriteError::Refused},
            {"no such folder", "No such file or directory", WriteError::PathNotFound}};
        for (const char* w : {"bmp", "gif", "jpeg"})
            for (const auto& [situation, reason, error] : situations)
                QTest::addRow("%s, %s", w, situation) << w << situation << reason << error;
    }
    void oldFileSurvives()
    {
        QFETCH(QString, writer);
        QFETCH(QString, situation);
        QFETCH(QString, reason);
        QFETCH(WriteError, error);
        const QString folder = m_dir.filePath(writer + situation);
        QDir().mkpath(folder);
        QString path = folder + QStringLiteral("/picture");
        QVERIFY(WriteFile(path, "old picture"));
        const QFile::Permissions writable = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
        bool saved = false;
        WriteFailure said;
        if (situation == QLatin1String("read-only folder")) {
            QFile::setPermissions(folder, writable & ~QFile::WriteOwner);
            QFile probe(folder + QStringLiteral("/probe"));
            const bool permissionsHold = !probe.open(QIODevice::WriteOnly);
            if (permissionsHold)
                saved = save(writer, m_noise, path, &said);
            probe.remove();
            QFile::setPermissions(folder, writable);
            if (!permissionsHold)
                QSKIP("permissions don't stop this user (root)");
        } else if (situation == QLatin1String("disk full")) {
            WithFullDisk(4096, [&] { saved = save(writer, m_noise, path, &said); });
        } else if (situation == QLatin1String("small file on a full disk")) {
            // Larger than 1 KB, smaller than the file's buffer.
            WithFullDisk(1024, [&] { saved = save(writer, m_noise.copy(0, 0, 48, 40), path, &said); });
        } else if (situation == QLatin1String("no such folder")) {
            saved = save(writer, m_noise, folder + QStringLiteral("/gone/picture"), &said);
        } else {
            saved = save(writer, m_noise, path + QStringLiteral("/picture"), &said);
        }
        QVERIFY(!saved);
        QCOMPARE(said.reason, reason);
        QCOMPARE(said.error, error);
        QCOMPARE(ReadFile(path), QByteArray("old picture"));
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList{"picture"}); // no temporary file left
    }

    void cancelledGifKeepsOldFile()
    {
        const QString path = m_dir.filePath(QStringLiteral("old.gif"));
        QVERIFY(WriteFile(path, "old picture"));
        QList<double> heard;
        WriteFailure failure;
        QVERIFY(!GIF().SaveGIF(m_noise, path, false, -1, &failure, [&](double f) {
            heard << f;
            return heard.size() == 3;
        }));
        QCOMPARE(heard, (QList<double>{0.05, 0.1, 0.15})); // every tenth row of 200
        QCOMPARE(failure.error, WriteError::Cancelled);
        QCOMPARE(ReadFile(path), QByteArray("old picture"));
    }

    void saveAsName_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("filter");
        QTest::addColumn<QString>("written");
        QTest::newRow("no dot gets the filter's extension") << "picture" << 3 << "picture.jpg";
        QTest::newRow("Picture Files makes x.jpg a BMP") << "x.jpg" << 1 << "x.bmp";
        QTest::newRow("case counts: X.JPG") << "X.JPG" << 3 << "X.jpg";
        QTest::newRow(".jpeg loses four characters") << "a.jpeg" << 3 << "a..jpg";
        QTest::newRow("report.v2 by count") << "report.v2" << 1 << "repor.bmp";
        QTest::newRow("the right one stays") << "dog.gif" << 4 << "dog.gif";
        QTest::newRow("All Files adds nothing") << "notes" << 5 << "notes";
        // The rules read the file's name only: a full stop in a folder is no extension.
        QTest::newRow("dot in a folder name")
            << "/home/jo.doe/Pictures/cat" << 1 << "/home/jo.doe/Pictures/cat.bmp";
        QTest::newRow("dot in a folder, other extension")
            << "/home/jo.doe/Pictures/cat.png" << 4 << "/home/jo.doe/Pictures/cat.gif";
    }
    void saveAsName()
    {
        QFETCH(QString, typed);
        QFETCH(int, filter);
        QFETCH(QString, written);
        QCOMPARE(SaveAsFileName(typed, filter), written);
    }

    void filterOfName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("knowsJpeg");
        QTest::addColumn<int>("filter");
        QTest::newRow("gif") << "/a/B.GIF" << false << 4;
        QTest::newRow("jpg") << "b.jpg" << false << 3;
        QTest::newRow("jpeg unknown to Save") << "photo.jpeg" << false << 9;
        QTest::newRow("jpeg known to Save As") << "photo.jpeg" << true << 3;
        QTest::newRow("bmp") << "c.bmp" << false << 1;
        QTest::newRow("png keeps the last") << "d.png" << true << 9;
    }
    void filterOfName()
    {
        QFETCH(QString, name);
        QFETCH(bool, knowsJpeg);
        QFETCH(int, filter);
        QCOMPARE(FilterIndexOfName(name, 9, knowsJpeg), filter);
    }

    void exportNames_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<QString>("proposal");
        QTest::addColumn<QString>("written");
        const auto row = [](const char* name, QString caption, QString chosen, QString proposal,
                            QString written) {
            QTest::newRow(name) << caption << chosen << proposal << written;
        };
        row("a bmp becomes jpg", "/p/photo.bmp - 100%", "/p/out", "/p/photo.jpg", "/p/out.jpg");
        row("new picture: the name is cut", "Untitled - 100%", "x.jpeg", "Unti.jpg", "x..jpg");
        row("other zooms cut differently", "/p/dog.jpg - 25%", "a.jpg", "/p/do.jpg", "a.jpg");
        // An upper-case extension counts as the right one; another is replaced.
        row("upper-case name", "/p/CAT.JPG - 100%", "/p/OUT.JPG", "/p/CAT.JPG", "/p/OUT.JPG");
        row("upper-case other extension", "/p/CAT.BMP - 100%", "/p/OUT.BMP", "/p/CAT.jpg", "/p/OUT.jpg");
        row("dot in a folder name", "/home/jo.doe/Pictures/cat.bmp - 100%", "/home/jo.doe/Pictures/out",
            "/home/jo.doe/Pictures/cat.jpg", "/home/jo.doe/Pictures/out.jpg");
    }
    void exportNames()
    {
        QFETCH(QString, caption);
        QFETCH(QString, chosen);
        QFETCH(QString, proposal);
        QFETCH(QString, written);
        QCOMPARE(ExportProposal(caption, QStringLiteral(".jpg")), proposal);
        QCOMPARE(ExportFileName(chosen, QStringLiteral(".jpg")), written);
    }

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
                                 << kNoColor << QByteArray("GIF87a")
                                 << QByteArray::fromHex(
                                        "2C 00000000 0100 0300 07 08 08 00F90024001040 40 00 3B");
        // 256 124 4 256 4 124 257
        QTest::newRow("2x2") << ImageFromRows({".r", "r."}, {{u'r', RGB(255, 0, 0)}}) << false << kNoColor
                             << QByteArray("GIF87a")
                             << QByteArray::fromHex("2C 00000000 0200 0200 07 08 08 00F91000 48804F40 00 3B");
        // Pure red is cube entry 4.
        QTest::newRow("transparent red")
            << black << true << RGB(255, 0, 0) << QByteArray("GIF89a")
            << QByteArray::fromHex("21F904 09 0000 04 00"
                                   "2C 00000000 0100 0100 07 08 04 00010404 00 3B");
        // No cube entry is exactly 250, 0, 0: entry 0 becomes transparent.
        QTest::newRow("no exact match")
            << black << true << RGB(250, 0, 0) << QByteArray("GIF89a")
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
        const QByteArray gif = this->gif(image, transparency, colour);
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
        QCOMPARE(codesOf(gif(indexedRow(pixels))), expected);
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
        const QByteArray gif = this->gif(MakeImage(size.width(), size.height(), [](int, int) { return 0; }));
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
        gif(image);
        const QImage expected = image.convertToFormat(QImage::Format_RGB32);
        const QImage giflib = FromRgbBytes(RunTool(QStringLiteral("gif2rgb"), {m_dir.filePath("t.gif")}),
                                           image.width(), image.height());
        QCOMPARE(DifferingPixels(giflib, expected), 0);
        QCOMPARE(DifferingPixels(DecodeWithMagick(m_dir.filePath("t.gif")), expected), 0);
    }
};

QTEST_GUILESS_MAIN(tst_Writers)
#include "tst_writers.moc"
