#include "files/JpegWriter.h"

#include "support/OutsideTools.h"
#include "support/TestImages.h"

#include <QFile>
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

// Greys that change from pixel to pixel: colour subsampling can't blur them, while
// a row read from the wrong place shows at once.
QImage greys(int w, int h)
{
    return MakeImage(w, h, [=](int x, int y) {
        const int v = 30 + 20 * x + 15 * y;
        return RGB(v, v, v);
    });
}

} // namespace

class tst_jpeg : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

    QByteArray save(const QImage& image, int quality)
    {
        cDIBSection dib;
        dib.CreateFromPicture(image);
        const QString path = m_dir.filePath(QStringLiteral("q%1.jpg").arg(quality));
        QString reason;
        if (!SaveJPG(dib, path, quality, &reason))
            qWarning() << "SaveJPG failed:" << reason;
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

private Q_SLOTS:
    // The section holds the bottom row first, B G R, rows padded to four bytes.
    void sectionLayout()
    {
        const QImage image = MakeImage(3, 2, [](int x, int y) { return RGB(x + 1, 10 * y, 100 + x); });
        cDIBSection dib;
        QVERIFY(dib.CreateFromPicture(image));
        QCOMPARE(dib.BytesPerScanLine(), 12);
        const QByteArray bits(reinterpret_cast<const char*>(dib.DIBSectionBitsPtr()), 24);
        QCOMPARE(bits.toHex(' '), QByteArray::fromHex("640A01 650A02 660A03 000000"
                                                      "640001 650002 660003 000000")
                                      .toHex(' '));
        // A region copy lands at the top left, that is at the end of the memory.
        QVERIFY(dib.Create(1, 1));
        dib.LoadPictureBlt(image, 2, 1);
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(dib.DIBSectionBitsPtr()), 3).toHex(),
                 QByteArray("660a03"));
    }

    void decodesWithDjpeg_data()
    {
        QTest::addColumn<QImage>("image");
        for (int w = 1; w <= 5; ++w) // widths 1..5 need pads of 1, 2, 3, 0 and 1 bytes
            QTest::addRow("width %d", w) << greys(w, 9);
        QTest::newRow("64 x 48") << smooth(64, 48);
    }
    void decodesWithDjpeg()
    {
        QFETCH(QImage, image);
        if (!HaveTool(QStringLiteral("djpeg")))
            QSKIP("djpeg is needed");
        save(image, 90);
        const QImage decoded =
            QImage::fromData(RunTool(QStringLiteral("djpeg"), {m_dir.filePath("q90.jpg")}), "PPM");
        QCOMPARE(decoded.size(), image.size());
        QVERIFY2(Psnr(decoded, image) > 35, qPrintable(QString::number(Psnr(decoded, image))));
    }

    void qualityZeroMeansNinety()
    {
        const QImage image = smooth(40, 30);
        const QByteArray ninety = save(image, 90);
        QVERIFY(!ninety.isEmpty());
        QCOMPARE(save(image, 0), ninety);
        QCOMPARE(save(image, -5), ninety);
        QVERIFY(save(image, 50) != ninety);
    }

    void emptySectionIsRefused()
    {
        QString reason;
        QVERIFY(!SaveJPG(cDIBSection(), m_dir.filePath("empty.jpg"), 90, &reason));
        QVERIFY(!reason.isEmpty());
        QVERIFY(!QFile::exists(m_dir.filePath("empty.jpg")));
    }
};

QTEST_GUILESS_MAIN(tst_jpeg)
#include "tst_jpeg.moc"
