#include "files/BmpWriter.h"

#include "support/OutsideTools.h"
#include "support/TestImages.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace velunta;
using namespace velunta::test;

class tst_bmp : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

private Q_SLOTS:
    void magickReadsTheSamePixels_data()
    {
        QTest::addColumn<QImage>("image");
        QTest::addColumn<qint64>("fileSize");
        const auto colours = [](int x, int y) { return RGB(37 * x % 256, 59 * y % 256, (x * y) % 256); };
        for (int w : {1, 2, 3, 4, 5, 7})
            QTest::addRow("%d x 3", w) << MakeImage(w, 3, colours) << 54 + 3 * ((3 * w + 3) / 4 * 4ll);
        // Other formats are written as their colours.
        QImage indexed = MakeImage(6, 5, colours).convertToFormat(QImage::Format_Indexed8);
        QTest::newRow("indexed") << indexed << 54 + 5 * 20ll;
    }
    void magickReadsTheSamePixels()
    {
        QFETCH(QImage, image);
        QFETCH(qint64, fileSize);
        const QString path = m_dir.filePath(QStringLiteral("t.bmp"));
        QString reason;
        QVERIFY2(SaveBMP(image, path, &reason), qPrintable(reason));
        QCOMPARE(QFileInfo(path).size(), fileSize);
        if (!HaveTool(QStringLiteral("convert")))
            QSKIP("ImageMagick is needed");
        QCOMPARE(DifferingPixels(DecodeWithMagick(path), image), 0);
    }
};

QTEST_GUILESS_MAIN(tst_bmp)
#include "tst_bmp.moc"
