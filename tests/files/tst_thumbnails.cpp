// Thumbnails of picture files, their loader and the open dialog that shows them.

#include "files/BmpWriter.h"
#include "files/JpegWriter.h"
#include "files/ThumbnailLoader.h"
#include "files/frmOpenThumbnail.h"
#include "files/read/Decoders.h"
#include "support/TestImages.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

QImage photo(int w, int h)
{
    return MakeImage(w, h, [](int x, int y) { return RGB(x % 256, y % 256, (x + y) % 256); });
}

void writeJpeg(const QString& path, int w, int h)
{
    QVERIFY(SaveJPG(photo(w, h), path, 80));
}

} // namespace

class tst_Thumbnails : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

    QString path(const QString& name) const { return m_dir.filePath(name); }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        writeJpeg(path(QStringLiteral("big.jpg")), 2000, 1000);
        writeJpeg(path(QStringLiteral("small.jpg")), 100, 60);
        QVERIFY(SaveBMP(photo(300, 200), path(QStringLiteral("wide.bmp"))));
        QVERIFY(photo(50, 80).save(path(QStringLiteral("tall.png"))));
        QVERIFY(WriteFile(path(QStringLiteral("empty.png")), {}));
        QVERIFY(WriteFile(path(QStringLiteral("text.gif")), "this is no picture"));
        QByteArray cut = ReadFile(path(QStringLiteral("big.jpg")));
        cut.truncate(300);
        QVERIFY(WriteFile(path(QStringLiteral("cut.jpg")), cut));
        // A header that claims a picture of 60000 x 60000 pixels in a few bytes.
        QByteArray huge = ReadFile(path(QStringLiteral("wide.bmp"))).left(200);
        qToLittleEndian<qint32>(60000, huge.data() + 18);
        qToLittleEndian<qint32>(60000, huge.data() + 22);
        QVERIFY(WriteFile(path(QStringLiteral("huge.bmp")), huge));
        QVERIFY(WriteFile(path(QStringLiteral("notes.txt")), "not shown"));
        QVERIFY(QDir(m_dir.path()).mkdir(QStringLiteral("sub")));
        writeJpeg(path(QStringLiteral("sub/inner.jpg")), 64, 64);
    }

    void sizes_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QSize>("thumbnail"); // empty: a broken-file tile
        QTest::newRow("large JPEG reduced while decoding")
            << "big.jpg" << QSize(2000, 1000) << QSize(128, 64);
        QTest::newRow("JPEG smaller than a thumbnail") << "small.jpg" << QSize(100, 60) << QSize(100, 60);
        QTest::newRow("BMP") << "wide.bmp" << QSize(300, 200) << QSize(128, 85);
        QTest::newRow("PNG") << "tall.png" << QSize(50, 80) << QSize(50, 80);
        QTest::newRow("empty file") << "empty.png" << QSize() << QSize();
        QTest::newRow("text named .gif") << "text.gif" << QSize() << QSize();
        QTest::newRow("JPEG cut inside its header") << "cut.jpg" << QSize() << QSize();
        QTest::newRow("header of a huge picture") << "huge.bmp" << QSize() << QSize();
        QTest::newRow("no such file") << "missing.png" << QSize() << QSize();
    }
    void sizes()
    {
        QFETCH(QString, file);
        QFETCH(QSize, picture);
        QFETCH(QSize, thumbnail);
        const Thumbnail t = ReadThumbnail(path(file), 128);
        QCOMPARE(t.image.size(), thumbnail.isEmpty() ? QSize(0, 0) : thumbnail);
        QCOMPARE(t.ok(), !thumbnail.isEmpty());
        if (t.ok())
            QCOMPARE(t.pictureSize, picture);
        else
            QVERIFY(!t.error.isEmpty());
    }

    void jpegDecodesReduced_data()
    {
        QTest::addColumn<int>("side");
        QTest::addColumn<QSize>("decoded");
        QTest::newRow("thumbnail: 1/8") << 128 << QSize(250, 125);
        QTest::newRow("larger preview: 1/2") << 600 << QSize(1000, 500);
        QTest::newRow("the longer side just fits 1/4") << 500 << QSize(500, 250);
        QTest::newRow("full size") << 0 << QSize(2000, 1000);
    }
    void jpegDecodesReduced()
    {
        QFETCH(int, side);
        QFETCH(QSize, decoded);
        LoadFailure failure;
        QSize full;
        const QImage image =
            DecodeJPEGScaled(ReadFile(path(QStringLiteral("big.jpg"))), side, failure, &full);
        QCOMPARE(image.size(), decoded);
        QCOMPARE(full, QSize(2000, 1000));
        // The same picture as the full one, scaled.
        const QImage expected =
            photo(2000, 1000).scaled(decoded, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QVERIFY2(Psnr(image, expected) > 20, qPrintable(QString::number(Psnr(image, expected))));
    }

    void folderChangeCancelsTheOldFolder()
    {
        ThumbnailLoader::clearCache();
        QTemporaryDir many;
        QStringList first;
        for (int i = 0; i < 40; ++i) {
            const QString name = many.filePath(QStringLiteral("p%1.jpg").arg(i));
            writeJpeg(name, 1200, 900);
            first << name;
        }
        ThumbnailLoader loader(128);
        QStringList arrived;
        connect(&loader, &ThumbnailLoader::ready, [&](const QString& p, const Thumbnail&) { arrived << p; });
        QSignalSpy finished(&loader, &ThumbnailLoader::finished);
        const int decodesBefore = ThumbnailLoader::decodes();
        loader.load(first);
        const QStringList second{path(QStringLiteral("small.jpg")), path(QStringLiteral("tall.png"))};
        loader.load(second);
        QVERIFY(finished.wait(10000));
        QCoreApplication::processEvents();
        QCOMPARE(arrived, QStringList(arrived).filter(m_dir.path()));
        QCOMPARE(arrived.size(), 2);
        // Only the files already under way when the folder changed were decoded.
        QVERIFY2(ThumbnailLoader::decodes() - decodesBefore < 2 + QThread::idealThreadCount() + 1,
                 qPrintable(QString::number(ThumbnailLoader::decodes() - decodesBefore)));

        // The session's cache serves a folder seen before without decoding it again.
        const int decodes = ThumbnailLoader::decodes();
        loader.load(second);
        QVERIFY(finished.wait(10000));
        QCOMPARE(ThumbnailLoader::decodes(), decodes);
    }

    void dialogShowsTheFolder()
    {
        frmOpenThumbnail dialog(m_dir.path());
        dialog.show();
        QListWidget* list = dialog.lstFiles();
        QStringList names;
        for (int i = 0; i < list->count(); ++i)
            names << list->item(i)->text().section(u'\n', 0, 0);
        // Folders first, then the pictures by name; other files stay out.
        QCOMPARE(names, QStringList({"sub", "big.jpg", "cut.jpg", "empty.png", "huge.bmp", "small.jpg",
                                     "tall.png", "text.gif", "wide.bmp"}));
        QTRY_COMPARE(dialog.loader()->pending(), 0);
        QCOMPARE(dialog.itemFor(path(QStringLiteral("big.jpg")))->text().section(u'\n', 2),
                 QString("2000 x 1000"));
        QCOMPARE(dialog.itemFor(path(QStringLiteral("text.gif")))->text().section(u'\n', 2),
                 QString("can't be shown"));

        // A double click enters a folder; Up comes back; a picture is chosen.
        Q_EMIT list->itemActivated(list->item(0));
        QCOMPARE(dialog.folder(), QDir(path(QStringLiteral("sub"))).absolutePath());
        QCOMPARE(list->count(), 1);
        dialog.findChild<QAbstractButton*>(QStringLiteral("cmdUp"))->click();
        QCOMPARE(dialog.folder(), QDir(m_dir.path()).absolutePath());
        dialog.txtFolder()->setText(path(QStringLiteral("nowhere")));
        QTest::keyClick(dialog.txtFolder(), Qt::Key_Return);
        QCOMPARE(dialog.folder(), QDir(m_dir.path()).absolutePath());
        Q_EMIT list->itemActivated(dialog.itemFor(path(QStringLiteral("tall.png"))));
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.selectedFile(), path(QStringLiteral("tall.png")));
    }
};

QTEST_MAIN(tst_Thumbnails)
#include "tst_thumbnails.moc"
