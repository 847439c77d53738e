// The program's number rules.

#include "core/Numbers.h"

#include <QtTest>

#include <cmath>

using namespace velunta;

class TestNumbers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void rounding_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("expected");
        QTest::newRow("0.5") << 0.5 << 0;
        QTest::newRow("1.5") << 1.5 << 2;
        QTest::newRow("2.5") << 2.5 << 2;
        QTest::newRow("-1.5") << -1.5 << -2;
        QTest::newRow("-32768.5") << -32768.5 << -32768;
        QTest::newRow("32767.4") << 32767.4 << 32767;
    }
    void rounding()
    {
        QFETCH(double, value);
        QFETCH(int, expected);
        QCOMPARE(int(I2(value)), expected);
        QCOMPARE(I4(value), expected);
    }

    void overflow_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("fitsI4");
        QTest::newRow("32767.5 rounds to 32768") << 32767.5 << true;
        QTest::newRow("-32769") << -32769.0 << true;
        QTest::newRow("NaN") << std::nan("") << false;
        QTest::newRow("2^31") << 2147483648.0 << false;
        QTest::newRow("-2^31 - 0.5 rounds to even") << -2147483648.5 << true;
    }
    void overflow()
    {
        QFETCH(double, value);
        QFETCH(bool, fitsI4);
        QVERIFY_THROWS_EXCEPTION(OverflowError, I2(value));
        if (fitsI4)
            I4(value);
        else
            QVERIFY_THROWS_EXCEPTION(OverflowError, I4(value));
    }

    void intDiv_data()
    {
        QTest::addColumn<double>("a");
        QTest::addColumn<double>("b");
        QTest::addColumn<int>("expected");
        QTest::newRow("7 \\ 2") << 7.0 << 2.0 << 3;
        QTest::newRow("-7 \\ 2 truncates") << -7.0 << 2.0 << -3;
        QTest::newRow("operands round first") << 7.5 << 2.5 << 4; // 8 \ 2
        QTest::newRow("zoom below 100") << 50.0 << 100.0 << 0;
    }
    void intDiv()
    {
        QFETCH(double, a);
        QFETCH(double, b);
        QFETCH(int, expected);
        QCOMPARE(IntDiv(a, b), expected);
    }
    void intDivByZero()
    {
        QVERIFY_THROWS_EXCEPTION(DivisionByZero, IntDiv(5, 0));
        QVERIFY_THROWS_EXCEPTION(DivisionByZero, IntDiv(5, 0.4)); // rounds to 0
    }

    void val_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected");
        QTest::newRow("unit after") << "50 pixel" << 50.0;
        QTest::newRow("blanks, exponent, tail") << "  12.5e1x" << 125.0;
        QTest::newRow("hex") << "&HFF" << 255.0;
        QTest::newRow("hex 16-bit signed") << "&HFFFF" << -1.0;
        QTest::newRow("octal") << "&O17" << 15.0;
        QTest::newRow("letters") << "abc" << 0.0;
        QTest::newRow("exponent without digits") << "3e" << 3.0;
        QTest::newRow("second point") << "1.2.3" << 1.2;
    }
    void val()
    {
        QFETCH(QString, text);
        QFETCH(double, expected);
        QCOMPARE(Val(text), expected);
    }

    void numberText_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("expected");
        QTest::newRow("half") << 12.5 << "12.5";
        QTest::newRow("third") << 1.0 / 3 << "0.333333333333333";
        QTest::newRow("small third") << 1e-5 / 3 << "0.00000333333333333333";
        QTest::newRow("two thirds of 1000") << 2000.0 / 3 << "666.666666666667";
    }
    void numberText()
    {
        QFETCH(double, value);
        QFETCH(QString, expected);
        QCOMPARE(NumberText(value), expected);
    }

    void randomIsReproducibleAndInRange()
    {
        Random a(7), b(7);
        for (int i = 0; i < 1000; ++i) {
            const double v = a.Rnd();
            QCOMPARE(v, b.Rnd());
            QVERIFY(v >= 0 && v < 1);
        }
    }
};

QTEST_GUILESS_MAIN(TestNumbers)
#include "tst_numbers.moc"
