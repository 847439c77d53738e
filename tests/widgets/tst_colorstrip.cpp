// The colour strip in the real main window, offscreen: every way of choosing a
// colour, the sliders and boxes, the user colours and their file, Easy Mode and the
// reduction of a picture to the strip's colours.

#include "document/frmPaint.h"
#include "support/MainWindowFixture.h"
#include "widgets/ColorMath.h"
#include "widgets/ColorStrip.h"
#include "widgets/StripParts.h"
#include "widgets/frmColor.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// Answers the next modal colour dialog: with a colour, or cancelled with -1.
void AnswerNextDialog(Color answer)
{
    QTimer::singleShot(0, [answer] {
        auto* dialog = qobject_cast<frmColor*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        if (answer < 0) {
            dialog->reject();
            return;
        }
        dialog->htmlField()->setText(ColorToHTML(answer));
        QTest::keyClick(dialog->htmlField(), Qt::Key_Return);
    });
}

QByteArray FileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_ColorStrip : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void colourToSliders();
    void dragToFarRightGives255();
    void boxRules();
    void enterMovesToTheNextBox();
    void buttonsChooseForegroundOrBackground_data();
    void buttonsChooseForegroundOrBackground();
    void draggingAlongTheGraysPicksContinuously();
    void restoreAndSwap();
    void userCellDoubleClickKeepsWorkingColours_data();
    void userCellDoubleClickKeepsWorkingColours();
    void dropOnUserCellDoesNotWriteTheFile();
    void startUpReadsAShortFile();
    void readoutDoubleClickCopies();
    void rightClickOnSwatchOpensTheDialog();
    void easyModeHidesTheNumbers();
    void changePaletteReducesThePicture();
    void changePaletteReducesOnlyTheSelection();
};

void tst_ColorStrip::colourToSliders()
{
    MainWindowFixture f;
    f.main().state().ForeColor = RGB(255, 128, 7);
    f.main().ColorsChanged();
    ColorStrip* strip = f.main().colorStrip();
    const int values[3] = {255, 128, 7};
    for (int k = 0; k < 3; ++k) {
        QCOMPARE(strip->lblcolor(k)->text(), QString::number(values[k]));
        ColorSlider* bar = strip->ColorBar(k);
        QCOMPARE(bar->thumbLeft(),
                 ThumbLeftForValue(values[k], bar->barLeft(), bar->barWidth(), bar->thumbWidth()));
    }
    QCOMPARE(strip->lblcolorvalue()->text(), QString::number(RGB(255, 128, 7)));
    QCOMPARE(strip->lblcolorvalue2()->text(), QStringLiteral("#FF8007"));
}

void tst_ColorStrip::dragToFarRightGives255()
{
    MainWindowFixture f;
    frmPaint* form = f.newDocument();
    ColorStrip* strip = f.main().colorStrip();
    ColorSlider* green = strip->ColorBar(1);
    const QPoint grab(green->thumbLeft() + 3, green->height() / 2);
    QTest::mousePress(green, Qt::LeftButton, {}, grab);
    QVERIFY(strip->SliderDrag);
    QTest::mouseMove(green, QPoint(green->width() + 40, grab.y()));
    // The thumb stops at the end of the track, where the formula gives 256 ...
    QCOMPARE(green->thumbLeft(), green->barLeft() + green->barWidth() - green->thumbWidth() / 2);
    QCOMPARE(SliderValue(green->thumbLeft(), green->barLeft(), green->barWidth(), green->thumbWidth()), 256);
    // ... and the box's change rule has cut it to 255 before the colour was taken.
    QCOMPARE(strip->lblcolor(1)->text(), QStringLiteral("255"));
    QCOMPARE(f.main().state().ForeColor, RGB(0, 255, 0));
    QCOMPARE(form->doc.Buffer.ForeColor, RGB(0, 255, 0));
    QTest::mouseRelease(green, Qt::LeftButton, {}, QPoint(green->width() - 1, grab.y()));
    QVERIFY(!strip->SliderDrag);
}

void tst_ColorStrip::boxRules()
{
    MainWindowFixture f;
    ColorStrip* strip = f.main().colorStrip();
    QLineEdit* red = strip->lblcolor(0);
    red->setText(QStringLiteral("300"));
    QCOMPARE(red->text(), QStringLiteral("255"));

    // An empty box stays empty while typing and reads "0" at the key-up, which does nothing else.
    red->setFocus();
    red->selectAll();
    QTest::keyPress(red, Qt::Key_Backspace);
    QCOMPARE(red->text(), QString());
    const Color before = f.main().state().ForeColor;
    QTest::keyRelease(red, Qt::Key_Backspace);
    QCOMPARE(red->text(), QStringLiteral("0"));
    QCOMPARE(f.main().state().ForeColor, before);

    // Typing a number takes effect at the key-up.
    red->selectAll();
    QTest::keyClicks(red, QStringLiteral("99"));
    QCOMPARE(red->text(), QStringLiteral("99"));
    QCOMPARE(f.main().state().ForeColor, RGB(99, 0, 0));
    QCOMPARE(strip->lblcolorvalue2()->text(), QStringLiteral("#630000"));
}

void tst_ColorStrip::enterMovesToTheNextBox()
{
    MainWindowFixture f;
    f.main().activateWindow();
    ColorStrip* strip = f.main().colorStrip();
    strip->lblcolor(0)->setFocus();
    QTest::keyClick(strip->lblcolor(0), Qt::Key_Return);
    QVERIFY(strip->lblcolor(1)->hasFocus());
    QCOMPARE(strip->lblcolor(1)->selectedText(), strip->lblcolor(1)->text());
}

void tst_ColorStrip::buttonsChooseForegroundOrBackground_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("selIndex");
    QTest::newRow("left: foreground") << int(Qt::LeftButton) << 0;
    QTest::newRow("right: background") << int(Qt::RightButton) << 1;
}

void tst_ColorStrip::buttonsChooseForegroundOrBackground()
{
    QFETCH(int, button);
    QFETCH(int, selIndex);
    MainWindowFixture f;
    ColorStrip* strip = f.main().colorStrip();
    DrawState& st = f.main().state();
    const Color other = selIndex == 0 ? st.BackColor : st.ForeColor;
    SwatchGrid* grid = strip->MSColors();
    QTest::mouseClick(grid, Qt::MouseButton(button), {}, grid->cellRect(9).center());
    QCOMPARE(st.SelIndex, selIndex);
    QCOMPARE(selIndex == 0 ? st.ForeColor : st.BackColor, RGB(255, 0, 0));
    QCOMPARE(selIndex == 0 ? st.BackColor : st.ForeColor, other);
    QCOMPARE(strip->lblcolor(0)->text(), QStringLiteral("255"));
    // The mirrors follow the swatches.
    QCOMPARE(strip->ColorBlend(selIndex)->color(), RGB(255, 0, 0));

    QTest::mouseClick(strip->ImgColor(), Qt::MouseButton(button), {}, QPoint(2, 15));
    QCOMPARE(ColorRed(selIndex == 0 ? st.ForeColor : st.BackColor), 255);
}

void tst_ColorStrip::draggingAlongTheGraysPicksContinuously()
{
    MainWindowFixture f;
    ColorStrip* strip = f.main().colorStrip();
    PickStrip* grays = strip->ImgGrays();
    QTest::mousePress(grays, Qt::LeftButton, {}, QPoint(1, 5));
    QCOMPARE(f.main().state().ForeColor, 0xFFFFFF);
    QTest::mouseMove(grays, QPoint(grays->width() / 2, 5));
    const int middle = ColorRed(f.main().state().ForeColor);
    QVERIFY(middle > 100 && middle < 155);
    // Beyond the end the last grey is kept.
    QTest::mouseMove(grays, QPoint(grays->width() + 30, 5));
    QCOMPARE(f.main().state().ForeColor, 0);
    QTest::mouseRelease(grays, Qt::LeftButton, {}, QPoint(grays->width() + 30, 5));
}

void tst_ColorStrip::restoreAndSwap()
{
    MainWindowFixture f;
    ColorStrip* strip = f.main().colorStrip();
    DrawState& st = f.main().state();
    st.ForeColor = RGB(1, 2, 3);
    st.BackColor = RGB(4, 5, 6);
    st.SelIndex = 1;
    f.main().ColorsChanged();
    strip->ShiftColors()->click();
    QCOMPARE(st.ForeColor, RGB(4, 5, 6));
    QCOMPARE(st.BackColor, RGB(1, 2, 3));
    QCOMPARE(strip->lblcolorvalue()->text(), QString::number(RGB(4, 5, 6)));
    strip->RestoreColors()->click();
    QCOMPARE(st.ForeColor, 0);
    QCOMPARE(st.BackColor, 0xFFFFFF);
    QCOMPARE(st.SelIndex, 0);
    // The gradient starts one step from black towards white.
    const QImage& g = strip->Gradient()->picture();
    QVERIFY(qRed(g.pixel(0, 0)) > 0 && qRed(g.pixel(0, 0)) < 5);
}

void tst_ColorStrip::userCellDoubleClickKeepsWorkingColours_data()
{
    QTest::addColumn<int>("answer");
    QTest::newRow("a colour chosen") << RGB(18, 52, 86);
    QTest::newRow("cancelled") << -1;
}

void tst_ColorStrip::userCellDoubleClickKeepsWorkingColours()
{
    QFETCH(int, answer);
    MainWindowFixture f;
    ColorStrip* strip = f.main().colorStrip();
    DrawState& st = f.main().state();
    st.ForeColor = RGB(9, 8, 7);
    st.BackColor = RGB(200, 201, 202);
    f.main().ColorsChanged();
    SwatchGrid* cells = strip->PicUserColors();
    const Color cellBefore = cells->color(3);
    const QPoint at = cells->cellRect(3).center();

    QTest::mouseClick(cells, Qt::LeftButton, {}, at);
    QCOMPARE(st.ForeColor, cellBefore); // the first click chose the cell's colour
    AnswerNextDialog(answer);
    QTest::mouseDClick(cells, Qt::LeftButton, {}, at);
    QTest::mouseRelease(cells, Qt::LeftButton, {}, at);

    QCOMPARE(st.ForeColor, RGB(9, 8, 7));
    QCOMPARE(st.BackColor, RGB(200, 201, 202));
    QCOMPARE(strip->ColorDialogResult, -1);
    const QString file = f.appFolder() + QStringLiteral("UserColors.ini");
    if (answer < 0) {
        QCOMPARE(cells->color(3), cellBefore);
        QVERIFY(!QFile::exists(file));
        return;
    }
    QCOMPARE(cells->color(3), answer);
    const QByteArray text = FileBytes(file);
    QVERIFY(text.startsWith("[User Defined Colors]\r\n"));
    QCOMPARE(text.split('\n').at(4), QByteArray(" ") + QByteArray::number(answer) + " \r");
}

void tst_ColorStrip::dropOnUserCellDoesNotWriteTheFile()
{
    MainWindowFixture f;
    SwatchGrid* cells = f.main().colorStrip()->PicUserColors();
    const QPoint at = cells->cellRect(5).center();
    auto drop = [&](const QString& text) {
        QMimeData data;
        data.setText(text);
        QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(cells, &enter);
        QDropEvent dropped(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(cells, &dropped);
    };
    drop(QString::number(RGB(1, 200, 3)));
    QCOMPARE(cells->color(5), RGB(1, 200, 3));
    const Color kept = cells->color(5);
    drop(QStringLiteral("not a colour"));
    QCOMPARE(cells->color(5), kept);
    QVERIFY(!QFile::exists(f.appFolder() + QStringLiteral("UserColors.ini")));
}

void tst_ColorStrip::startUpReadsAShortFile()
{
    MainWindowFixture f;
    ColorStrip* strip = f.main().colorStrip();
    QFile file(f.appFolder() + QStringLiteral("UserColors.ini"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[User Defined Colors]\r\n 255 \r\n 65280 \r\n");
    file.close();
    strip->LoadUserColors();
    QCOMPARE(strip->UserColor(0), RGB(255, 0, 0));
    QCOMPARE(strip->UserColor(1), RGB(0, 255, 0));
    for (int i = 2; i < kUserColorCount; ++i)
        QCOMPARE(strip->UserColor(i), DefaultUserColors()[i]);
    // The palette of the strip: the fixed swatches, then the user colours.
    const QVector<Color> palette = strip->palette();
    QCOMPARE(palette.size(), kMSColorCount + kUserColorCount);
    QCOMPARE(palette.at(kMSColorCount), RGB(255, 0, 0));
}

void tst_ColorStrip::readoutDoubleClickCopies()
{
    MainWindowFixture f;
    ColorStrip* strip = f.main().colorStrip();
    f.main().state().ForeColor = RGB(0x12, 0x34, 0x56);
    f.main().state().SelIndex = 1; // the read-outs still show the foreground
    f.main().ColorsChanged();
    QTest::mouseDClick(strip->lblcolorvalue2(), Qt::LeftButton);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("#123456"));
    QTest::mouseDClick(strip->lblcolorvalue(), Qt::LeftButton);
    QCOMPARE(QApplication::clipboard()->text(), QString::number(RGB(0x12, 0x34, 0x56)));
}

void tst_ColorStrip::rightClickOnSwatchOpensTheDialog()
{
    MainWindowFixture f;
    frmPaint* form = f.newDocument();
    ColorStrip* strip = f.main().colorStrip();
    f.main().SelColor_MouseDown(1, 2);
    frmColor* dialog = strip->openDialog();
    QVERIFY(dialog);
    QCOMPARE(dialog->windowModality(), Qt::WindowModal);
    QCOMPARE(dialog->color(), 0xFFFFFF);
    dialog->spin(0)->setValue(10);
    dialog->accept();
    QCOMPARE(f.main().state().BackColor, RGB(10, 255, 255));
    QVERIFY(!strip->openDialog());

    // Image2(1) edits the foreground; a cancel changes nothing.
    strip->Image2(1)->click();
    QVERIFY(strip->openDialog());
    QCOMPARE(strip->openDialog()->color(), 0);
    strip->openDialog()->spin(2)->setValue(99);
    strip->openDialog()->reject();
    QCOMPARE(f.main().state().ForeColor, 0);
    QCOMPARE(form->doc.Buffer.ForeColor, 0);
}

void tst_ColorStrip::easyModeHidesTheNumbers()
{
    MainWindowFixture f;
    ColorStrip* strip = f.main().colorStrip();
    QAction* easy = f.main().action(QStringLiteral("mnuKidsMode"));
    easy->setChecked(true);
    f.main().KidsMode();
    QVERIFY(!strip->lblcolorvalue()->isVisible());
    QVERIFY(!strip->lblcolorvalue2()->isVisible());
    QVERIFY(!strip->findChild<QLabel*>(QStringLiteral("lblcolorvaluelabel2"))->isVisible());
    for (int k = 0; k < 3; ++k) {
        QVERIFY(!strip->lblcolor(k)->isVisible());
        QVERIFY(strip->ColorBar(k)->isVisible());
    }
    easy->setChecked(false);
    f.main().KidsMode();
    QVERIFY(strip->lblcolorvalue2()->isVisible());
    QVERIFY(strip->lblcolor(2)->isVisible());
}

void tst_ColorStrip::changePaletteReducesThePicture()
{
    MainWindowFixture f;
    QPushButton* button = f.main().colorStrip()->PaletteButton();
    QVERIFY(!button->isEnabled());
    frmPaint* form = f.newDocument(4, 3);
    QVERIFY(button->isEnabled());
    QImage& img = form->doc.Buffer.Image();
    img.fill(ToQRgb(RGB(250, 10, 5)));
    img.setPixel(1, 1, ToQRgb(RGB(3, 3, 250)));
    const QImage before = img.copy();

    button->click();
    QVERIFY(f.main().undo().UndoWriteSlot > 0);
    QCOMPARE(FromQRgb(img.pixel(0, 0)), RGB(255, 0, 0));
    QCOMPARE(FromQRgb(img.pixel(1, 1)), RGB(0, 0, 255));
    QVERIFY(form->doc.Dirty);
    // The undo ring has the picture before; the resize undo file is not touched.
    QCOMPARE(form->doc.UndoSlots[f.main().undo().UndoWriteSlot - 1].Image(), before);
    QVERIFY(!QFile::exists(f.appFolder() + QStringLiteral("temp/undo.bmp")));
}

void tst_ColorStrip::changePaletteReducesOnlyTheSelection()
{
    MainWindowFixture f;
    frmPaint* form = f.newDocument(6, 6);
    Document& doc = form->doc;
    doc.Buffer.Image().fill(ToQRgb(RGB(250, 250, 10)));
    doc.BufferSelected.setSize(2, 2);
    doc.BufferSelected.Image().fill(ToQRgb(RGB(5, 5, 5)));
    doc.BufferSelected.Move(1, 1);
    doc.SelectArea.Visible = true;
    doc.BufferSelected.Image().setPixel(0, 0, ToQRgb(RGB(250, 5, 250)));
    f.main().ChangePalette();
    QCOMPARE(FromQRgb(doc.BufferSelected.Image().pixel(0, 0)), RGB(255, 0, 255));
    QCOMPARE(FromQRgb(doc.BufferSelected.Image().pixel(1, 1)), 0);
    // The picture outside the selection keeps its colour.
    QCOMPARE(FromQRgb(doc.Buffer.Image().pixel(5, 5)), RGB(250, 250, 10));
}

QTEST_MAIN(tst_ColorStrip)
#include "tst_colorstrip.moc"
