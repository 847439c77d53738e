// The colour strip's arithmetic without widgets: slider mapping, box rules, the HTML
// form, the gradient preview, the user colours file, the swatch layout and the
// reduction to a palette.

#include "core/Color.h"
#include "support/TestImages.h"
#include "widgets/ColorMath.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

class tst_ColorMath : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sliderValue_data()
    {
        QTest::addColumn<int>("thumbLeft");
        QTest::addColumn<int>("expected");
        // Track from 5 to 5 + 100, thumb 10 wide: the thumb moves between 0 and 100.
        QTest::newRow("past the left") << -3 << 0;
        QTest::newRow("middle") << 50 << 128;
        QTest::newRow("one step in") << 1 << 3; // 2.56 rounds up
        QTest::newRow("far right gives 256") << 100 << 256;
    }
    void sliderValue()
    {
        QFETCH(int, thumbLeft);
        QFETCH(int, expected);
        QCOMPARE(SliderValue(thumbLeft, 5, 100, 10), expected);
    }

    void sliderRoundTripStaysWithinOneStep()
    {
        // Colour to thumb and back: the two factors differ, yet no value moves by more
        // than one track pixel's worth.
        const int barWidth = 105, thumb = 10;
        for (int v = 0; v <= 255; ++v) {
            const int back = std::min(255, SliderValue(ThumbLeftForValue(v, 5, barWidth, thumb), 5, barWidth, thumb));
            QVERIFY2(std::abs(back - v) <= 3, qPrintable(QStringLiteral("%1 came back as %2").arg(v).arg(back)));
        }
        QCOMPARE(ThumbLeftForValue(255, 5, barWidth, thumb), barWidth);
        QCOMPARE(ThumbLeftForValue(0, 5, barWidth, thumb), 0);
    }

    void boxText_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<int>("value");
        QTest::newRow("256 of the far right") << "256" << "255" << 255;
        QTest::newRow("negative") << "-4" << "0" << 0;
        QTest::newRow("empty waits for key up") << "" << "" << 0;
        QTest::newRow("no number counts as 0") << "x" << "x" << 0;
    }
    void boxText()
    {
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(int, value);
        QCOMPARE(ClampedBoxText(typed), shown);
        QCOMPARE(BoxValue(shown), value);
    }

    void html_data()
    {
        QTest::addColumn<int>("color");
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("typed"); // read back as `color`, or -1 when refused
        QTest::newRow("red is the low byte") << RGB(255, 0, 0) << "#FF0000" << "#FF0000";
        QTest::newRow("blue is the high byte") << RGB(0, 0, 255) << "#0000FF" << "  0000ff ";
        QTest::newRow("mixed") << RGB(0x12, 0xAB, 0x0C) << "#12AB0C" << "12ab0c";
        QTest::newRow("no colour reads as its last six digits") << -1 << "#FFFFFF" << "#FF80";
        QTest::newRow("not hex") << -1 << "#FFFFFF" << "#GG0000";
        QTest::newRow("too long") << -1 << "#FFFFFF" << "#FF80001";
    }
    void html()
    {
        QFETCH(int, color);
        QFETCH(QString, html);
        QFETCH(QString, typed);
        QCOMPARE(ColorToHTML(color), html);
        QCOMPARE(ParseHTMLColor(typed), color);
    }

    void gradientFirstColumnIsOneStepFromForeground_data()
    {
        QTest::addColumn<int>("fore");
        QTest::addColumn<int>("back");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        // Black to white over 100: the step is 2.55, so column 0 is 3 (2.55 rounded).
        QTest::newRow("black to white") << 0 << 0xFFFFFF << RGB(3, 3, 3) << 0xFFFFFF;
        QTest::newRow("white to black") << 0xFFFFFF << 0 << RGB(252, 252, 252) << 0;
        // Only the channels that differ step: red falls 2 a column, green and blue stay.
        QTest::newRow("one channel") << RGB(200, 40, 90) << RGB(0, 40, 90) << RGB(198, 40, 90) << RGB(0, 40, 90);
        QTest::newRow("equal colours: one colour") << RGB(10, 200, 30) << RGB(10, 200, 30) << RGB(10, 200, 30)
                                                   << RGB(10, 200, 30);
    }
    void gradientFirstColumnIsOneStepFromForeground()
    {
        QFETCH(int, fore);
        QFETCH(int, back);
        QFETCH(int, first);
        QFETCH(int, last);
        const QVector<Color> columns = SelectedGradient(fore, back, 100);
        QCOMPARE(columns.size(), 101);
        QCOMPARE(columns.first(), first);
        // The column after the last step runs one step past the background and is held at the limit.
        QCOMPARE(columns.last(), last);
        if (fore == back)
            QCOMPARE(columns.count(fore), 101);
        QVERIFY(SelectedGradient(0, 0xFFFFFF, 0).isEmpty());
    }

    void userColorsFileIsExact()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("UserColors.ini"));
        std::array<Color, kUserColorCount> cells{};
        for (int i = 0; i < kUserColorCount; ++i)
            cells[i] = i * 1000;
        cells[11] = 0xFFFFFF;
        QVERIFY(WriteUserColors(path, cells));
        const QByteArray text = ReadFile(path);
        QVERIFY(text.startsWith("[User Defined Colors]\r\n 0 \r\n 1000 \r\n 2000 \r\n"));
        QVERIFY(text.endsWith(" 10000 \r\n 16777215 \r\n"));
        QCOMPARE(text.count("\r\n"), 13);
        std::array<Color, kUserColorCount> back = DefaultUserColors();
        QCOMPARE(ReadUserColors(path, back), kUserColorCount);
        QCOMPARE(back, cells);
    }

    void userColorsShortFileKeepsTheRest_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("read");
        QTest::newRow("missing file") << QByteArray() << 0;
        QTest::newRow("five numbers") << QByteArray("[User Defined Colors]\r\n 1 \r\n 2 \r\n 3 \r\n 4 \r\n 5 \r\n") << 5;
        QTest::newRow("unix line ends") << QByteArray("[User Defined Colors]\n 1 \n 2 \n") << 2;
        QTest::newRow("stops at a bad number") << QByteArray("[User Defined Colors]\r\n 1 \r\n red \r\n 3 \r\n") << 1;
        QTest::newRow("stops at a colour out of range") << QByteArray("[User Defined Colors]\r\n 1 \r\n 16777216 \r\n")
                                                        << 1;
    }
    void userColorsShortFileKeepsTheRest()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, read);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("UserColors.ini"));
        if (!content.isNull())
            QVERIFY(WriteFile(path, content));
        const std::array<Color, kUserColorCount> defaults = DefaultUserColors();
        std::array<Color, kUserColorCount> cells = defaults;
        QCOMPARE(ReadUserColors(path, cells), read);
        for (int i = 0; i < kUserColorCount; ++i)
            QCOMPARE(cells[i], i < read ? i + 1 : defaults[i]);
    }

    void swatchPlacesCoverTheGridOnce()
    {
        QSet<QPoint> taken;
        for (int i = 0; i < kMSColorCount; ++i) {
            const QPoint p = MSColorPlace(i);
            taken.insert(p);
            QCOMPARE(MSColorAt(p.y(), p.x()), i);
            QCOMPARE(MSColorGroup(i).isEmpty(), p.y() == 6);
        }
        QCOMPARE(taken.size(), 42);
        // The seventh row runs right to left.
        QCOMPARE(MSColorAt(6, 0), 41);
        QCOMPARE(MSColorAt(6, 5), 6);
        QCOMPARE(MSColorValue(41), RGB(0xC0, 0xFF, 0xFF));
        QCOMPARE(MSColorGroup(9), QStringLiteral("Reds"));
        QCOMPARE(MSColorValue(9), RGB(255, 0, 0));
    }

    void reduceToPalette_data()
    {
        QTest::addColumn<int>("pixel");
        QTest::addColumn<int>("expected");
        QTest::newRow("near red") << RGB(240, 20, 10) << RGB(255, 0, 0);
        QTest::newRow("mid grey goes to grey") << RGB(120, 130, 125) << RGB(128, 128, 128);
        QTest::newRow("palette colour stays") << RGB(0, 0, 255) << RGB(0, 0, 255);
    }
    void reduceToPalette()
    {
        QFETCH(int, pixel);
        QFETCH(int, expected);
        const QVector<Color> palette = {0, 0xFFFFFF, RGB(255, 0, 0), RGB(0, 0, 255), RGB(128, 128, 128)};
        QImage img(5, 3, QImage::Format_RGB32);
        img.fill(ToQRgb(pixel));
        img.setPixel(4, 2, ToQRgb(0xFFFFFF));
        ReduceToPalette(img, palette);
        QCOMPARE(FromQRgb(img.pixel(3, 2)), expected);
        QCOMPARE(FromQRgb(img.pixel(4, 2)), 0xFFFFFF);
        const QImage once = img.copy(); // reducing again changes nothing
        ReduceToPalette(img, palette);
        QCOMPARE(img, once);
    }
};

QTEST_GUILESS_MAIN(tst_ColorMath)
#include "tst_colormath.moc"
