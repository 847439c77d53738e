// The True Color Palette: its answer, the fields agreeing with each other, bad HTML
// text, the old colour, the recent row and the eyedropper.

#include "core/Color.h"
#include "widgets/StripParts.h"
#include "widgets/frmColor.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

using namespace velunta;

class tst_frmColor : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cancelReturnsMinusOne();
    void okReturnsTheColourAndRemembersIt();
    void hsvFieldsGiveRgb_data();
    void hsvFieldsGiveRgb();
    void greyKeepsTheHue();
    void badHtmlChangesNothing_data();
    void badHtmlChangesNothing();
    void oldSampleBringsTheStartBack();
    void eyedropperTakesAProgramWindowsColour();
};

namespace {

void AnswerNextDialog(const std::function<void(frmColor*)>& answer)
{
    QTimer::singleShot(0, [answer] {
        auto* dialog = qobject_cast<frmColor*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        answer(dialog);
    });
}

} // namespace

void tst_frmColor::cancelReturnsMinusOne()
{
    const QVector<Color> recent = frmColor::recentColors();
    AnswerNextDialog([](frmColor* d) {
        d->spin(1)->setValue(77);
        d->reject();
    });
    QCOMPARE(frmColor::pick(RGB(1, 2, 3), nullptr), -1);
    AnswerNextDialog([](frmColor* d) { QTest::keyClick(d, Qt::Key_Escape); });
    QCOMPARE(frmColor::pick(RGB(1, 2, 3), nullptr), -1);
    QCOMPARE(frmColor::recentColors(), recent);
}

void tst_frmColor::okReturnsTheColourAndRemembersIt()
{
    AnswerNextDialog([](frmColor* d) {
        QCOMPARE(d->color(), RGB(1, 2, 3));
        d->spin(2)->setValue(200);
        d->accept();
    });
    QCOMPARE(frmColor::pick(RGB(1, 2, 3), nullptr), RGB(1, 2, 200));
    QCOMPARE(frmColor::recentColors().value(0), RGB(1, 2, 200));

    frmColor next;
    QVERIFY(!next.recentSample(0)->isHidden());
    QCOMPARE(next.recentSample(0)->color(), RGB(1, 2, 200));
    QTest::mouseClick(next.recentSample(0), Qt::LeftButton);
    QCOMPARE(next.color(), RGB(1, 2, 200));
}

void tst_frmColor::hsvFieldsGiveRgb_data()
{
    QTest::addColumn<int>("h");
    QTest::addColumn<int>("s");
    QTest::addColumn<int>("v");
    QTest::addColumn<int>("rgb");
    QTest::newRow("red") << 0 << 100 << 100 << RGB(255, 0, 0);
    QTest::newRow("green") << 120 << 100 << 100 << RGB(0, 255, 0);
    QTest::newRow("dark blue") << 240 << 100 << 50 << RGB(0, 0, 128);
    QTest::newRow("white") << 300 << 0 << 100 << RGB(255, 255, 255);
    QTest::newRow("orange") << 30 << 100 << 100 << RGB(255, 128, 0);
}

void tst_frmColor::hsvFieldsGiveRgb()
{
    QFETCH(int, h);
    QFETCH(int, s);
    QFETCH(int, v);
    QFETCH(int, rgb);
    frmColor d;
    d.setColor(RGB(0, 0, 1));
    d.spin(3)->setValue(h);
    d.spin(4)->setValue(s);
    d.spin(5)->setValue(v);
    QCOMPARE(d.color(), rgb);
    QCOMPARE(d.spin(0)->value(), ColorRed(rgb));
    QCOMPARE(d.spin(1)->value(), ColorGreen(rgb));
    QCOMPARE(d.spin(2)->value(), ColorBlue(rgb));
    QCOMPARE(d.htmlField()->text(), ColorToHTML(rgb));
}

void tst_frmColor::greyKeepsTheHue()
{
    frmColor d;
    d.setColor(RGB(0, 128, 255));
    const int hue = d.spin(3)->value();
    QVERIFY(hue > 200 && hue < 220);
    d.htmlField()->selectAll();
    QTest::keyClicks(d.htmlField(), QStringLiteral("#5a5a5a"));
    QCOMPARE(d.color(), RGB(90, 90, 90));
    QCOMPARE(d.spin(4)->value(), 0);
    QCOMPARE(d.spin(3)->value(), hue);
    // Colour comes back with the hue it had.
    d.spin(4)->setValue(100);
    QVERIFY(ColorBlue(d.color()) > ColorRed(d.color()));
}

void tst_frmColor::badHtmlChangesNothing_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("too short") << "#12";
    QTest::newRow("a word") << "hello";
    QTest::newRow("not hex") << "#GGHHII";
}

void tst_frmColor::badHtmlChangesNothing()
{
    QFETCH(QString, text);
    frmColor d;
    d.setColor(RGB(10, 20, 30));
    d.show();
    d.htmlField()->selectAll();
    QTest::keyClicks(d.htmlField(), text);
    QTest::keyClick(d.htmlField(), Qt::Key_Return);
    QVERIFY(d.isVisible()); // Enter on a bad text does not close the dialog
    QCOMPARE(d.result(), 0);
    QCOMPARE(d.color(), RGB(10, 20, 30));
    QCOMPARE(d.spin(0)->value(), 10);
    QVERIFY(d.messageLabel()->text().contains(QStringLiteral("#FF8000")));

    // A good text is taken as it is typed, and the message goes.
    d.htmlField()->selectAll();
    QTest::keyClicks(d.htmlField(), QStringLiteral("#00ff80"));
    QCOMPARE(d.color(), RGB(0, 255, 128));
    QVERIFY(d.messageLabel()->text().isEmpty());
}

void tst_frmColor::oldSampleBringsTheStartBack()
{
    frmColor d;
    d.setColor(RGB(5, 6, 7));
    d.spin(0)->setValue(250);
    QCOMPARE(d.oldColor(), RGB(5, 6, 7));
    QCOMPARE(d.color(), RGB(250, 6, 7));
    auto* old = d.findChildren<ColorSample*>().value(0);
    QVERIFY(old);
    QCOMPARE(old->color(), RGB(5, 6, 7));
    QTest::mouseClick(old, Qt::LeftButton);
    QCOMPARE(d.color(), RGB(5, 6, 7));
}

void tst_frmColor::eyedropperTakesAProgramWindowsColour()
{
    QWidget other;
    other.setAutoFillBackground(true);
    QPalette pal;
    pal.setColor(QPalette::Window, QColor(12, 200, 99));
    other.setPalette(pal);
    other.setGeometry(400, 300, 80, 60);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    const QPoint global = other.mapToGlobal(QPoint(40, 30));
    QCOMPARE(frmColor::ProgramColorAt(global), RGB(12, 200, 99));

    frmColor d;
    d.setGeometry(0, 0, 300, 200);
    d.show();
    d.eyedropper()->click();
    QVERIFY(d.picking());
    QTest::mousePress(&d, Qt::LeftButton, {}, d.mapFromGlobal(global));
    QVERIFY(!d.picking());
    QCOMPARE(d.color(), RGB(12, 200, 99));

    // Esc ends the picking and keeps the colour.
    d.eyedropper()->click();
    QTest::keyClick(&d, Qt::Key_Escape);
    QVERIFY(!d.picking());
    QVERIFY(d.isVisible());
    QCOMPARE(d.color(), RGB(12, 200, 99));
}

QTEST_MAIN(tst_frmColor)
#include "tst_frmcolor.moc"
