// The canvas dialogs as a user drives them: Image Size, Rotate, Brightness and Contrast.

#include "imageops/ImagePlane.h"
#include "imageops/frmBrightContrast.h"
#include "imageops/frmRotate.h"
#include "imageops/frmSize.h"
#include "support/FakeServices.h"
#include "support/TestImages.h"
#include "widgets/zolButton.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSlider>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

QImage mapped(const QImage& image, bool brightness, int value)
{
    QImage out = image.copy();
    MapChannels(image, out, image.rect(), brightness ? BrightnessTable(value) : ContrastTable(value));
    return out;
}

void dragPlane(ImagePlane* plane, QPoint from, QPoint to)
{
    QTest::mousePress(plane, Qt::LeftButton, {}, from);
    QMouseEvent move(QEvent::MouseMove, QPointF(to), plane->mapToGlobal(QPointF(to)), Qt::NoButton,
                     Qt::LeftButton, {});
    QApplication::sendEvent(plane, &move);
    QTest::mouseRelease(plane, Qt::LeftButton, {}, to);
}

// The two modes of the brightness and contrast dialog, as rows.
void bothModes()
{
    QTest::addColumn<bool>("brightness");
    QTest::newRow("brightness") << true;
    QTest::newRow("contrast") << false;
}

} // namespace

class tst_CanvasDialogs : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sizeFields()
    {
        frmSize dialog(400, 300);
        QVERIFY(dialog.Check1()->isChecked());
        // Letters never reach a field; the proportion follows the width.
        dialog.TxtWidth()->clear();
        QTest::keyClicks(dialog.TxtWidth(), "8a0b0");
        QCOMPARE(dialog.TxtWidth()->text(), QStringLiteral("800"));
        QCOMPARE(dialog.TxtHeight()->text(), QStringLiteral("600"));
        dialog.TxtHeight()->selectAll();
        QTest::keyClicks(dialog.TxtHeight(), "x15");
        QCOMPARE(dialog.TxtHeight()->text(), QStringLiteral("15"));
        QCOMPARE(dialog.TxtWidth()->text(), QStringLiteral("20"));
        // Half of 5 is 2; Double and Half drop the proportion.
        dialog.TxtWidth()->setText(QStringLiteral("5"));
        dialog.TxtHeight()->setText(QStringLiteral("9"));
        dialog.Command2()->click();
        QVERIFY(!dialog.Check1()->isChecked());
        QVERIFY(dialog.Constrain()->isHidden());
        QCOMPARE(dialog.TxtWidth()->text(), QStringLiteral("2"));
        QCOMPARE(dialog.TxtHeight()->text(), QStringLiteral("4"));
        dialog.Command3()->click();
        QCOMPARE(dialog.TxtWidth()->text(), QStringLiteral("4"));
        // An offered size writes both fields; typing clears the choice.
        dialog.OptSizes(3)->click();
        QCOMPARE(dialog.TxtWidth()->text(), QStringLiteral("1024"));
        QCOMPARE(dialog.TxtHeight()->text(), QStringLiteral("768"));
        QTest::keyClicks(dialog.TxtWidth(), "0");
        QVERIFY(!dialog.OptSizes(3)->isChecked());
        // Ticking recomputes the height from the width at once.
        dialog.TxtWidth()->setText(QStringLiteral("100"));
        dialog.Check1()->click();
        QCOMPARE(dialog.TxtHeight()->text(), QStringLiteral("75"));
        // Enter is OK.
        dialog.show();
        QTest::keyClick(dialog.TxtWidth(), Qt::Key_Return);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.chosenWidth(), 100);
        QCOMPARE(dialog.chosenHeight(), 75);
    }

    void sizeBelowOneClosesWithoutChange()
    {
        frmSize dialog(40, 30);
        dialog.Check1()->setChecked(false);
        dialog.TxtHeight()->setText(QStringLiteral("0"));
        dialog.Command1_Click();
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
    }

    void rotateAngle()
    {
        ScriptedPrompt prompt;
        frmRotate refused(0, prompt);
        QVERIFY(refused.TxtAngle()->text().isEmpty());
        refused.TxtAngle()->setText(QStringLiteral("400"));
        refused.Command1_Click();
        QCOMPARE(prompt.shown.size(), 1);
        QCOMPARE(prompt.shown[0].text, QStringLiteral("invallid angle"));
        QCOMPARE(refused.result(), 0); // still open
        // The next opening shows the angle the divisor stands for.
        QCOMPARE(frmRotate(4, prompt).TxtAngle()->text(), QStringLiteral("45"));
    }

    void neutralValuesChangeNothing_data() { bothModes(); }
    void neutralValuesChangeNothing()
    {
        QFETCH(bool, brightness);
        const QImage picture = Pattern(50, 40);
        frmBrightContrast dialog(picture, brightness);
        QCOMPARE(dialog.windowTitle(),
                 brightness ? QStringLiteral("Adjust Brightness") : QStringLiteral("Adjust Contrast"));
        // One Preview button shows, the one of the mode.
        QCOMPARE(dialog.Command2()->isHidden(), !brightness);
        QCOMPARE(dialog.Command1()->isHidden(), brightness);
        dialog.HScroll1()->setValue(40);
        (brightness ? dialog.Command2() : dialog.Command1())->click();
        QVERIFY(dialog.changed());
        dialog.HScroll1()->setValue(0);
        dialog.cmdOk()->click();
        QCOMPARE(dialog.adjustedPicture(), picture);
        QVERIFY(!dialog.changed());
    }

    void okAfterPartialPreviewGivesTheWholeResult_data() { bothModes(); }
    void okAfterPartialPreviewGivesTheWholeResult()
    {
        QFETCH(bool, brightness);
        const QImage picture = Pattern(900, 700);
        frmBrightContrast dialog(picture, brightness);
        zolButton* preview = brightness ? dialog.Command2() : dialog.Command1();
        // Larger than the view both ways: it opens at its middle.
        QCOMPARE(dialog.picRight()->Left(), -900 / 4);
        QCOMPARE(dialog.picRight()->Top(), -700 / 4);
        dialog.HScroll1()->setValue(60);
        dialog.Check2()->setChecked(true);
        preview->click();
        QVERIFY(dialog.PreviewPartial());
        const QRect shown = dialog.picRight()->visibleArea();
        QCOMPARE(shown.size(), dialog.picRight()->size());
        const QImage full = mapped(picture, brightness, 60);
        QCOMPARE(dialog.Picture1().copy(shown), full.copy(shown));
        QCOMPARE(dialog.Picture1().pixel(0, 0), picture.pixel(0, 0));
        // A second partial preview elsewhere puts the first area back.
        dragPlane(dialog.picRight(), QPoint(100, 100), QPoint(250, 180));
        preview->click();
        QCOMPARE(dialog.Picture1().pixel(shown.bottomRight()), picture.pixel(shown.bottomRight()));
        dialog.cmdOk()->click();
        QVERIFY(!dialog.Check2()->isChecked());
        QCOMPARE(dialog.adjustedPicture(), full);
    }

    void brightnessPreviewsDoNotAddUp()
    {
        const QImage picture = Pattern(60, 50);
        frmBrightContrast dialog(picture, true);
        dialog.HScroll1()->setValue(30);
        dialog.Command2()->click();
        dialog.Command2()->click();
        QCOMPARE(dialog.Picture1(), mapped(picture, true, 30));
        dialog.Command4()->click(); // Reset
        QCOMPARE(dialog.Picture1(), picture);
        QVERIFY(!dialog.changed());
    }

    void planesMoveTogetherWhenLocked()
    {
        const QImage picture = Pattern(1000, 800);
        frmBrightContrast dialog(picture, false);
        ImagePlane* left = dialog.picLeft();
        ImagePlane* right = dialog.picRight();
        dragPlane(left, QPoint(200, 200), QPoint(150, 170));
        QCOMPARE(right->Left(), left->Left());
        QCOMPARE(right->Top(), left->Top());
        dialog.Check1()->setChecked(false);
        const QPoint before(right->Left(), right->Top());
        dragPlane(left, QPoint(100, 100), QPoint(120, 110));
        QCOMPARE(QPoint(right->Left(), right->Top()), before);
        // A plane can't be dragged off its picture.
        dragPlane(left, QPoint(10, 10), QPoint(300, 230));
        QCOMPARE(left->Left(), 0);
        QCOMPARE(left->Top(), 0);
    }
};

QTEST_MAIN(tst_CanvasDialogs)
#include "tst_canvasdialogs.moc"
