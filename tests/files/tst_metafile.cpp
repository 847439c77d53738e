// Windows metafiles through their converters: the size each header asks for, the
// drawing rendered at that size, and broken files, a missing converter and a hanging
// one refused with a message in bounded time.

#include "files/OpenPicture.h"
#include "files/outside/Metafile.h"
#include "support/OutsideFixtures.h"
#include "support/TestImages.h"

#include <QElapsedTimer>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

QString writeTemp(QTemporaryDir& dir, const QString& name, const QByteArray& bytes)
{
    const QString path = dir.filePath(name);
    WriteFile(path, bytes);
    return path;
}

bool near(QRgb p, QRgb want)
{
    return qAbs(qRed(p) - qRed(want)) < 40 && qAbs(qGreen(p) - qGreen(want)) < 40 &&
           qAbs(qBlue(p) - qBlue(want)) < 40;
}

} // namespace

class tst_Metafile : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sizeFromHeader_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QSize>("size");
        QTest::newRow("placeable, twips")
            << SmallWmf(2000, 1000, 1440) << int(PictureFormat::Wmf) << QSize(133, 67);
        QTest::newRow("placeable, pixels")
            << SmallWmf(320, 200, 96) << int(PictureFormat::Wmf) << QSize(320, 200);
        // No units per inch: the window extent stands in.
        QTest::newRow("placeable, inch 0")
            << SmallWmf(300, 150, 0) << int(PictureFormat::Wmf) << QSize(300, 150);
        QTest::newRow("plain") << SmallWmf(640, 400, 0, false) << int(PictureFormat::Wmf) << QSize(640, 400);
        QTest::newRow("emf frame") << SmallEmf({0, 0, 200, 100}, {0, 0, 5293, 2647})
                                   << int(PictureFormat::Emf) << QSize(200, 100);
        // A frame of nothing: the bounds (both edges included) decide.
        QTest::newRow("emf bounds") << SmallEmf({10, 10, 209, 59}, {0, 0, 0, 0}) << int(PictureFormat::Emf)
                                    << QSize(200, 50);
        QTest::newRow("emf no size") << SmallEmf({0, 0, -1, -1}, {0, 0, 0, 0}) << int(PictureFormat::Emf)
                                     << QSize();
        QTest::newRow("not a metafile") << QByteArray("BM not a drawing at all, just some bytes to read")
                                        << int(PictureFormat::Bmp) << QSize();
    }
    void sizeFromHeader()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, kind);
        QFETCH(QSize, size);
        QCOMPARE(int(DetectPictureFormat(bytes)), kind);
        QCOMPARE(MetafileSize(bytes, PictureFormat(kind)), size);
    }

    void renderSizeStaysSane_data()
    {
        QTest::addColumn<QSize>("stated");
        QTest::addColumn<QSize>("converted");
        QTest::addColumn<QSize>("size");
        QTest::newRow("stated") << QSize(133, 67) << QSize(768, 384) << QSize(133, 67);
        QTest::newRow("converter's") << QSize() << QSize(768, 384) << QSize(768, 384);
        QTest::newRow("neither") << QSize() << QSize() << QSize(640, 480);
        QTest::newRow("huge, shape kept") << QSize(40000, 20000) << QSize() << QSize(4096, 2048);
        QTest::newRow("thin") << QSize(65535, 1) << QSize() << QSize(4096, 1);
    }
    void renderSizeStaysSane()
    {
        QFETCH(QSize, stated);
        QFETCH(QSize, converted);
        QFETCH(QSize, size);
        QCOMPARE(RenderSize(stated, converted), size);
    }

    void drawingRenderedAtItsOwnSize_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QSize>("size");
        QTest::newRow("placeable wmf") << SmallWmf(2000, 1000, 1440) << "a.wmf" << QSize(133, 67);
        QTest::newRow("plain wmf") << SmallWmf(200, 100, 0, false) << "b.wmf" << QSize(200, 100);
        QTest::newRow("emf") << SmallEmf({0, 0, 199, 99}, {0, 0, 5292, 2646}) << "c.emf" << QSize(200, 100);
        // Known by their content, whatever the name says.
        QTest::newRow("emf named .bmp")
            << SmallEmf({0, 0, 199, 99}, {0, 0, 5292, 2646}) << "d.bmp" << QSize(200, 100);
    }
    void drawingRenderedAtItsOwnSize()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, name);
        QFETCH(QSize, size);
        QTemporaryDir dir;
        QString error;
        int number = -1;
        const QImage picture = OpenPicture(writeTemp(dir, name, bytes), &error, &number);
        QVERIFY2(!picture.isNull(), qPrintable(error));
        QCOMPARE(number, 0);
        QCOMPARE(picture.size(), size);
        QCOMPARE(picture.format(), QImage::Format_RGB32);
        const int w = size.width(), h = size.height();
        // Red top left, green ellipse's middle bottom right, white paper bottom left.
        QVERIFY(near(picture.pixel(w / 4, h / 4), qRgb(255, 0, 0)));
        QVERIFY(near(picture.pixel(3 * w / 4, 3 * h / 4), qRgb(0, 255, 0)));
        QVERIFY(near(picture.pixel(w / 4, 3 * h / 4), qRgb(255, 255, 255)));
    }

    void brokenDrawingSaysSo_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray wmf = SmallWmf(2000, 1000, 1440);
        const QByteArray emf = SmallEmf({0, 0, 199, 99}, {0, 0, 5292, 2646});
        QTest::newRow("wmf header only") << wmf.left(30);
        QTest::newRow("emf header only") << emf.left(60);
        QByteArray lying = emf;
        lying.replace(4, 4, QByteArray("\xFF\xFF\xFF\x7F", 4)); // a header record "2 GB" long
        QTest::newRow("emf record past the end") << lying;
        QByteArray garbage = wmf.left(40);
        for (int i = 0; i < 2000; ++i)
            garbage += char((i * 7919) & 0xFF);
        QTest::newRow("wmf garbage records") << garbage;
    }
    void brokenDrawingSaysSo()
    {
        QFETCH(QByteArray, bytes);
        QTemporaryDir dir;
        QString error;
        int number = 0;
        const QImage picture = OpenPicture(writeTemp(dir, QStringLiteral("x.wmf"), bytes), &error, &number);
        // Either the converter makes something of it, or the user is told why not.
        if (picture.isNull()) {
            QCOMPARE(number, 481);
            QVERIFY(!error.isEmpty());
        } else {
            QVERIFY(picture.width() <= kMaxMetafileSide && picture.height() <= kMaxMetafileSide);
        }
    }

    void missingConverterNamesThePackage_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("package");
        QTest::newRow("wmf") << SmallWmf(200, 100, 96) << "libwmf-bin";
        QTest::newRow("emf") << SmallEmf({0, 0, 199, 99}, {0, 0, 5292, 2646}) << "emf2svg";
    }
    void missingConverterNamesThePackage()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, package);
        QTemporaryDir dir;
        const QString path = writeTemp(dir, QStringLiteral("x.bin"), bytes);
        FakePrograms fakes;
        fakes.onlyFakes();
        const MetafilePicture drawing = ConvertMetafile(path);
        QCOMPARE(drawing.failure, MetafilePicture::ConverterMissing);
        QVERIFY2(drawing.error.contains(u'"' + package + u'"'), qPrintable(drawing.error));
    }

    void hangingConverterIsStopped()
    {
        QTemporaryDir dir;
        const QString path = writeTemp(dir, QStringLiteral("x.wmf"), SmallWmf(200, 100, 96));
        FakePrograms fakes;
        fakes.add(QStringLiteral("wmf2svg"), QStringLiteral("exec /bin/sleep 60"));
        QElapsedTimer timer;
        timer.start();
        const MetafilePicture drawing = ConvertMetafile(path, {}, 1000);
        QCOMPARE(drawing.failure, MetafilePicture::TimedOut);
        QVERIFY(timer.elapsed() < 10000);
        // Esc on the progress strip ends the wait as well.
        const MetafilePicture stopped = ConvertMetafile(
            path, [](double) { return false; }, 30000);
        QCOMPARE(stopped.failure, MetafilePicture::Stopped);
    }
};

QTEST_MAIN(tst_Metafile)
#include "tst_metafile.moc"
