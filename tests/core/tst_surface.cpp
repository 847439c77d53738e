// Surface sizes, the frame, Cls and allocation failure.

#include "core/Gdi.h"
#include "core/Surface.h"
#include "support/TestImages.h"

#include <QtTest>

using namespace velunta;
using namespace velunta::test;

class TestSurface : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void resizeKeepsTopLeft_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("grow") << QSize(6, 5);
        QTest::newRow("shrink") << QSize(2, 2);
        QTest::newRow("wider, shorter") << QSize(5, 1);
    }
    void resizeKeepsTopLeft()
    {
        QFETCH(QSize, size);
        Surface s;
        s.setImage(MakeImage(3, 3, [](int x, int y) { return RGB(x, y, 1); }));
        s.BackColor = RGB(9, 9, 9);
        s.takeTouched();
        s.setScaleSize(size.width(), size.height());
        QCOMPARE(s.Image().size(), size);
        QCOMPARE(s.Image().format(), QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x)
                QCOMPARE(GetPixel(s, x, y), x < 3 && y < 3 ? RGB(x, y, 1) : RGB(9, 9, 9));
        QCOMPARE(s.touched(), QRect(QPoint(0, 0), size));
    }

    void border_data()
    {
        QTest::addColumn<int>("border");
        QTest::addColumn<QSize>("outer");
        QTest::addColumn<QSize>("drawable");
        QTest::newRow("document frame") << 1 << QSize(642, 482) << QSize(640, 480);
        QTest::newRow("no frame") << 0 << QSize(10, 4) << QSize(10, 4);
        QTest::newRow("all frame") << 2 << QSize(4, 9) << QSize(0, 0);
    }
    void border()
    {
        QFETCH(int, border);
        QFETCH(QSize, outer);
        QFETCH(QSize, drawable);
        Surface s(border);
        s.setSize(outer.width(), outer.height());
        QCOMPARE(QSize(s.ScaleWidth(), s.ScaleHeight()), drawable);
        if (!drawable.isEmpty())
            QCOMPARE(QSize(s.Width(), s.Height()), outer);
    }

    void clsRestoresPicture()
    {
        Surface s = MakeSurface(4, 3, RGB(0, 0, 255));
        s.setPicture(MakeImage(2, 2, [](int, int) { return RGB(255, 0, 0); }));
        SetPixelV(s, 0, 0, 0);
        SetPixelV(s, 3, 2, 0);
        s.CurrentX = 5;
        s.Cls();
        QCOMPARE(GetPixel(s, 0, 0), RGB(255, 0, 0));
        QCOMPARE(GetPixel(s, 1, 1), RGB(255, 0, 0));
        QCOMPARE(GetPixel(s, 3, 2), RGB(0, 0, 255));
        QCOMPARE(s.CurrentX, 0.0);
        s.clearPicture();
        s.Cls();
        QCOMPARE(GetPixel(s, 0, 0), RGB(0, 0, 255));
    }

    void impossibleSizeThrows()
    {
        Surface s = MakeSurface(4, 4);
        QVERIFY_THROWS_EXCEPTION(AllocationError, s.setScaleSize(100000, 100000));
        QCOMPARE(s.Image().size(), QSize(4, 4)); // the old picture stays
    }
};

QTEST_GUILESS_MAIN(TestSurface)
#include "tst_surface.moc"
