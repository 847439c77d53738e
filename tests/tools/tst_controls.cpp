// The tool option strip: the style groups and the shared shape style, the fill
// swatches against the fill's brush, the popup slider's arithmetic and captions, the
// drop-downs, the blend box, the settings applied to the controls, and the controls
// that wait for operations of later work.

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/frmPaint.h"
#include "support/FakeServices.h"
#include "support/MainWindowFixture.h"
#include "tools/DrawState.h"
#include "tools/PanelWidgets.h"
#include "tools/frmControls.h"
#include "tools/frmFontStyle.h"
#include "tools/frmFonts.h"
#include "tools/frmSelector.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <memory>

using namespace velunta;
using namespace velunta::test;

namespace {

// A strip in a window of its own, so its pop-ups have room below it.
struct Strip {
    Strip()
    {
        host.resize(1300, 420);
        controls = std::make_unique<frmControls>(state, &host);
        controls->setPrompt(&prompt);
        host.show();
        QVERIFY(QTest::qWaitForWindowExposed(&host));
    }
    QAbstractButton* button(const QString& name) const { return controls->control<QAbstractButton>(name); }
    // The buttons of a style group that show pressed.
    QList<int> pressed(const QString& group, int count) const
    {
        QList<int> down;
        for (int i = 0; i < count; ++i)
            if (button(QStringLiteral("%1(%2)").arg(group).arg(i))->isChecked())
                down << i;
        return down;
    }

    DrawState state;
    ScriptedPrompt prompt;
    QWidget host;
    std::unique_ptr<frmControls> controls;
};

using Setter = void (frmControls::*)(int);
using StateFlag = std::function<bool(const DrawState&)>;

} // namespace

Q_DECLARE_METATYPE(Setter)
Q_DECLARE_METATYPE(StateFlag)

class tst_Controls : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void settersKeepOnePressed_data();
    void settersKeepOnePressed();
    void shapeStyleIsSharedByThreePanels_data();
    void shapeStyleIsSharedByThreePanels();
    void clickOnPressedButtonKeepsItPressed();
    void fillSwatchesUseTheBrushCells_data();
    void fillSwatchesUseTheBrushCells();
    void calcPos_data();
    void calcPos();
    void captionFormats_data();
    void captionFormats();
    void stepButtonsAndTrack();
    void dragTheThumb();
    void sameDropDownTwiceCloses();
    void pressOutsideClosesThePopup();
    void textSizeReachesTheActiveDocument();
    void textSizeWithoutDocumentDoesNothing();
    void blendPercentRoundTrip();
    void txtBlend_data();
    void txtBlend();
    void loadDrawSettings();
    void optionsWriteTheDrawState_data();
    void optionsWriteTheDrawState();
    void numberBoxesTakeDigitsOnly();
    void operationsWaitUntilAvailable_data();
    void operationsWaitUntilAvailable();
    void colorSamplesFollowTheState();
    void fontPickers();
    void zoomOptionsAndFitWindow();
    void removeAreaDropsTheSelection();
};

void tst_Controls::settersKeepOnePressed_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<int>("count");
    QTest::addColumn<Setter>("setter");
    QTest::addColumn<int>("index");
    QTest::newRow("Cmd3 pencil") << "Cmd3" << 11 << Setter(&frmControls::SetPencilStyle) << 10;
    QTest::newRow("Cmd4 brighten") << "Cmd4" << 4 << Setter(&frmControls::SetBrightStyle) << 1;
    QTest::newRow("Cmd4 darken") << "Cmd4" << 4 << Setter(&frmControls::SetBrightStyle) << 3;
    QTest::newRow("Cmd6 dissolve") << "Cmd6" << 4 << Setter(&frmControls::SetDissolveMode) << 3;
    QTest::newRow("Cmd7 arrow") << "Cmd7" << 2 << Setter(&frmControls::SetArrowStyle) << 1;
    QTest::newRow("Cmd8 enhance") << "Cmd8" << 3 << Setter(&frmControls::SetEnhanceMode) << 2;
    QTest::newRow("Cmd rectangle") << "Cmd" << 6 << Setter(&frmControls::SetShapeStyle) << 5;
}

void tst_Controls::settersKeepOnePressed()
{
    QFETCH(QString, group);
    QFETCH(int, count);
    QFETCH(Setter, setter);
    QFETCH(int, index);
    Strip s;
    QCOMPARE(s.pressed(group, count), QList<int>{0});
    (s.controls.get()->*setter)(index);
    QCOMPARE(s.pressed(group, count), QList<int>{index});
    // A click on another button moves the pressed look; out of range changes nothing.
    s.button(QStringLiteral("%1(0)").arg(group))->click();
    QCOMPARE(s.pressed(group, count), QList<int>{0});
    (s.controls.get()->*setter)(count);
    (s.controls.get()->*setter)(-1);
    QCOMPARE(s.pressed(group, count), QList<int>{0});
}

void tst_Controls::shapeStyleIsSharedByThreePanels_data()
{
    QTest::addColumn<QString>("clicked");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("expected");
    QTest::newRow("rectangle round fill") << "Cmd" << 4 << 4;
    QTest::newRow("circle border and fill") << "Cmd2" << 1 << 1;
    QTest::newRow("circle last pen") << "Cmd2" << 5 << 5;
    QTest::newRow("3D etched") << "Cmd5" << 3 << 3;
    // The 3D panel's no-edge buttons only show a style chosen elsewhere.
    QTest::newRow("3D no edge can't be chosen") << "Cmd5" << 4 << 0;
}

void tst_Controls::shapeStyleIsSharedByThreePanels()
{
    QFETCH(QString, clicked);
    QFETCH(int, index);
    QFETCH(int, expected);
    Strip s;
    QTest::mouseClick(s.button(QStringLiteral("%1(%2)").arg(clicked).arg(index)), Qt::LeftButton);
    QCOMPARE(s.state.ShapeStyle, expected);
    for (const char* group : {"Cmd", "Cmd2", "Cmd5"})
        QCOMPARE(s.pressed(QString::fromLatin1(group), 6), QList<int>{expected});
}

void tst_Controls::clickOnPressedButtonKeepsItPressed()
{
    Strip s;
    s.controls->SetPencilStyle(4);
    s.button(QStringLiteral("Cmd3(4)"))->click();
    QCOMPARE(s.pressed(QStringLiteral("Cmd3"), 11), QList<int>{4});
    s.button(QStringLiteral("OptFillStyle(6)"))->click();
    s.button(QStringLiteral("OptFillStyle(6)"))->click();
    QCOMPARE(s.state.FillPattern, 6);
    QCOMPARE(s.pressed(QStringLiteral("OptFillStyle"), 8), QList<int>{6});
}

void tst_Controls::fillSwatchesUseTheBrushCells_data()
{
    QTest::addColumn<int>("pattern");
    QTest::newRow("solid") << 0;
    QTest::newRow("transparent") << 1;
    QTest::newRow("horizontal") << 2;
    QTest::newRow("vertical") << 3;
    QTest::newRow("upward") << 4;
    QTest::newRow("downward") << 5;
    QTest::newRow("cross") << 6;
    QTest::newRow("diagonal cross") << 7;
}

void tst_Controls::fillSwatchesUseTheBrushCells()
{
    QFETCH(int, pattern);
    const Color ink = RGB(200, 10, 30);
    const QImage swatch = FillPatternSwatch(pattern, ink, 16, 16);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) {
            const bool h = (y & 7) == 3, v = (x & 7) == 4, up = ((x + y) & 7) == 7, down = (x & 7) == (y & 7);
            const bool inked[8] = {true, false, h, v, up, down, h || v, up || down};
            QCOMPARE(swatch.pixel(x, y), inked[pattern] ? ToQRgb(ink) : ToQRgb(RGB(255, 255, 255)));
        }
}

void tst_Controls::calcPos_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("where"); // 0 far left, 1 far right
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("caption");
    QTest::newRow("text size far left") << 7 << 0.0 << 6.0 << "6 pt ";
    QTest::newRow("text size far right") << 7 << 1.0 << 200.0 << "200 pt ";
    QTest::newRow("text size middle") << 7 << 0.5 << 103.0 << "103 pt ";
    QTest::newRow("pencil far right") << 4 << 1.0 << 50.0 << "50 pixel ";
    QTest::newRow("airbrush size far right") << 2 << 1.0 << 100.0 << "100 pixel ";
    QTest::newRow("intensity far left") << 13 << 0.0 << 0.0 << "0 ";
    QTest::newRow("intensity far right") << 14 << 1.0 << 255.0 << "255 ";
    // 50.5 rounds half to even in the caption, the value keeps its fraction.
    QTest::newRow("pressure middle") << 0 << 0.5 << 50.5 << "50 % ";
}

void tst_Controls::calcPos()
{
    QFETCH(int, index);
    QFETCH(double, where);
    QFETCH(double, value);
    QFETCH(QString, caption);
    Strip s;
    s.controls->ClickDropDown(index);
    frmSelector* sel = s.controls->selector();
    QVERIFY(sel->isVisible());
    QCOMPARE(sel->Tag(), index);
    sel->setThumbLeft(sel->thumbMinimum() + where * (sel->thumbMaximum() - sel->thumbMinimum()));
    QCOMPARE(s.state.SelectorValues[index].Value, value);
    QCOMPARE(s.controls->lblSelector(index)->text(), caption);
    QCOMPARE(s.state.SelectorValues[index].Caption, caption);
    QCOMPARE(sel->readout(), caption);
}

void tst_Controls::captionFormats_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("caption");
    QTest::newRow("size") << 2 << 100.0 << "100 pixel ";
    QTest::newRow("border") << 5 << 1.0 << "1 pixel ";
    QTest::newRow("size half down to even") << 8 << 2.5 << "2 pixel ";
    QTest::newRow("size half up to even") << 8 << 3.5 << "4 pixel ";
    QTest::newRow("pressure") << 11 << 75.0 << "75 % ";
    QTest::newRow("text") << 7 << 12.0 << "12 pt ";
    QTest::newRow("intensity") << 13 << 3.0 << "3 ";
}

void tst_Controls::captionFormats()
{
    QFETCH(int, index);
    QFETCH(double, value);
    QFETCH(QString, caption);
    QCOMPARE(SelectorCaption(index, value), caption);
    // The brushes read intensities back from the caption.
    QCOMPARE(Val(Trim(caption)), double(I2(value)));
}

void tst_Controls::stepButtonsAndTrack()
{
    Strip s;
    s.controls->ClickDropDown(7);
    frmSelector* sel = s.controls->selector();
    QCOMPARE(s.state.SelectorValues[7].Value, 12.0);
    sel->imgMinPlus(0)->click();
    QCOMPARE(s.controls->lblSelector(7)->text(), QStringLiteral("11 pt "));
    sel->imgMinPlus(1)->click();
    sel->imgMinPlus(1)->click();
    QCOMPARE(s.state.SelectorValues[7].Value, 13.0);
    // A press on the track past its right end gives the maximum; one more step stays there.
    const QWidget* bar = sel->ScrollBar();
    QTest::mousePress(const_cast<QWidget*>(bar), Qt::LeftButton, {},
                      QPoint(bar->width() - 1, bar->height() / 2));
    QTest::mouseRelease(const_cast<QWidget*>(bar), Qt::LeftButton, {},
                        QPoint(bar->width() - 1, bar->height() / 2));
    QCOMPARE(s.state.SelectorValues[7].Value, 200.0);
    sel->imgMinPlus(1)->click();
    QCOMPARE(s.state.SelectorValues[7].Value, 200.0);
    sel->ScrollBar_MouseDown(-500);
    QCOMPARE(s.state.SelectorValues[7].Value, 6.0);
    sel->imgMinPlus(0)->click();
    QCOMPARE(s.controls->lblSelector(7)->text(), QStringLiteral("6 pt "));
}

void tst_Controls::dragTheThumb()
{
    Strip s;
    s.controls->ClickDropDown(2);
    frmSelector* sel = s.controls->selector();
    QWidget* block = sel->ScrollBlock();
    const QPoint grip(block->width() / 2, block->height() / 2);
    QTest::mousePress(block, Qt::LeftButton, {}, grip);
    // Dragged far past the right end: the thumb stops at the end of the track.
    QMouseEvent move(QEvent::MouseMove, QPointF(grip + QPoint(1000, 0)), block->mapToGlobal(QPointF(grip)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(block, &move);
    QCOMPARE(sel->thumbLeft(), sel->thumbMaximum());
    QCOMPARE(s.state.SelectorValues[2].Value, 100.0);
    QTest::mouseRelease(block, Qt::LeftButton, {}, grip);
}

void tst_Controls::sameDropDownTwiceCloses()
{
    Strip s;
    QAbstractButton* drop4 = s.controls->CmdDropDown(4);
    QTest::mouseClick(drop4, Qt::LeftButton);
    QVERIFY(s.controls->selector()->isVisible());
    QCOMPARE(s.controls->droppedDown(), 4);
    QVERIFY(drop4->isChecked());
    // Another drop-down moves the slider to its selector.
    QTest::mouseClick(s.controls->CmdDropDown(5), Qt::LeftButton);
    QCOMPARE(s.controls->selector()->Tag(), 5);
    QVERIFY(!drop4->isChecked());
    QTest::mouseClick(s.controls->CmdDropDown(5), Qt::LeftButton);
    QVERIFY(!s.controls->selector()->isVisible());
    QCOMPARE(s.controls->droppedDown(), -1);
    QVERIFY(!s.controls->CmdDropDown(5)->isChecked());
    // The read-out opens and closes its slider the same way.
    s.controls->ShowPanel(14);
    QTest::mouseClick(s.controls->lblSelector(9), Qt::LeftButton);
    QCOMPARE(s.controls->droppedDown(), 9);
    s.controls->UnClickButton();
    QVERIFY(!s.controls->selector()->isVisible());
}

void tst_Controls::pressOutsideClosesThePopup()
{
    Strip s;
    s.controls->ClickDropDown(4);
    QTest::mouseClick(s.controls->selector()->imgMinPlus(1), Qt::LeftButton);
    QVERIFY(s.controls->selector()->isVisible());
    QTest::mouseClick(&s.host, Qt::LeftButton, {}, QPoint(1200, 400));
    QVERIFY(!s.controls->selector()->isVisible());
    QCOMPARE(s.controls->droppedDown(), -1);
    s.controls->ShowHideFonts();
    QVERIFY(s.controls->fonts()->isVisible());
    QTest::keyClick(s.controls->fonts()->list(), Qt::Key_Escape);
    QVERIFY(!s.controls->fonts()->isVisible());
}

void tst_Controls::textSizeReachesTheActiveDocument()
{
    MainWindowFixture f;
    frmPaint* form = f.newDocument();
    frmControls& c = *f.main().controls();
    c.ClickDropDown(7);
    c.selector()->setThumbLeft(c.selector()->thumbMaximum());
    QCOMPARE(form->doc.Buffer.FontSize, 200.0);
    c.selector()->imgMinPlus_Click(0);
    QCOMPARE(form->doc.Buffer.FontSize, 199.0);
    // Other selectors leave the font alone.
    c.ClickDropDown(4);
    c.selector()->setThumbLeft(c.selector()->thumbMinimum());
    QCOMPARE(form->doc.Buffer.FontSize, 199.0);
}

void tst_Controls::textSizeWithoutDocumentDoesNothing()
{
    MainWindowFixture f;
    frmControls& c = *f.main().controls();
    QSignalSpy fontChanges(&c, &frmControls::textFontChanged);
    c.ClickDropDown(7);
    c.selector()->setThumbLeft(c.selector()->thumbMaximum());
    QCOMPARE(f.main().state().SelectorValues[7].Value, 200.0);
    QCOMPARE(fontChanges.count(), 0);
    // A document opened later starts from its own font, untouched by the slider.
    frmPaint* form = f.newDocument();
    QCOMPARE(form->doc.Buffer.FontSize, Surface().FontSize);
}

void tst_Controls::blendPercentRoundTrip()
{
    for (int percent = 0; percent <= 100; ++percent) {
        const int blend = BlendFromPercent(percent);
        QVERIFY(blend >= 1 && blend <= 255);
        QCOMPARE(BlendPercent(blend), percent);
    }
    QCOMPARE(BlendFromPercent(100), 255);
    QCOMPARE(BlendPercent(128), 50);
}

void tst_Controls::txtBlend_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<int>("blend");
    QTest::newRow("100") << "100" << true << 255;
    QTest::newRow("0") << "0" << true << 1;
    QTest::newRow("37 with blanks") << " 37 " << true << BlendFromPercent(37);
    QTest::newRow("101") << "101" << false << 0;
    QTest::newRow("-1") << "-1" << false << 0;
    QTest::newRow("letters") << "abc" << false << 0;
    QTest::newRow("empty") << "" << false << 0;
    QTest::newRow("fraction") << "12.5" << false << 0;
}

void tst_Controls::txtBlend()
{
    QFETCH(QString, typed);
    QFETCH(bool, accepted);
    QFETCH(int, blend);
    Strip s;
    s.controls->ShowPanel(0);
    s.controls->ShowCursorPanel(true);
    s.state.SelectionBlend = 128;
    s.controls->SetBlendText(QStringLiteral("50"));
    auto* box = s.controls->control<QLineEdit>(QStringLiteral("TxtBlend"));
    auto* bar = s.controls->control<QAbstractSlider>(QStringLiteral("ScrllBlend"));
    box->setText(typed);
    QTest::keyClick(box, Qt::Key_Return);
    if (accepted) {
        QVERIFY(s.prompt.shown.isEmpty());
        QCOMPARE(s.state.SelectionBlend, blend);
        QCOMPARE(bar->value(), blend);
    } else {
        QCOMPARE(s.prompt.shown.size(), 1);
        QCOMPARE(s.prompt.shown[0].text, QStringLiteral("Incorrect Blend value! Valid values are 0...100"));
        QCOMPARE(s.state.SelectionBlend, 128);
        QCOMPARE(bar->value(), 128);
        QCOMPARE(box->text(), QStringLiteral("50"));
    }
}

void tst_Controls::loadDrawSettings()
{
    Strip s;
    QCOMPARE(s.controls->lblSelector(4)->text(), QStringLiteral("2 pixel "));
    QCOMPARE(s.controls->lblSelector(0)->text(), QStringLiteral("50 % "));
    QCOMPARE(s.controls->lblSelector(7)->text(), QStringLiteral("12 pt "));
    QCOMPARE(s.controls->lblSelector(13)->text(), QStringLiteral("3 "));
    // Stored values beyond a selector's range come back inside it: a brush above 181
    // would overflow the ring walk.
    s.state.SelectorValues[2].Value = 500;
    s.state.SelectorValues[7].Value = 1;
    s.state.ScatterColors = true;
    s.state.DoubleStep = true;
    s.state.ShapeStyle = 2;
    s.state.FillPattern = 5;
    s.state.RoundCornersText = QStringLiteral("25");
    s.state.Size3DText = QStringLiteral("7");
    s.state.FontStyle = QStringLiteral("Italic");
    s.controls->LoadDrawSettings();
    QCOMPARE(s.state.SelectorValues[2].Value, 100.0);
    QCOMPARE(s.controls->lblSelector(2)->text(), QStringLiteral("100 pixel "));
    QCOMPARE(s.controls->lblSelector(7)->text(), QStringLiteral("6 pt "));
    QVERIFY(s.controls->control<QCheckBox>(QStringLiteral("chkRan"))->isChecked());
    QVERIFY(s.button(QStringLiteral("OptStep(1)"))->isChecked());
    QVERIFY(!s.button(QStringLiteral("OptStep(0)"))->isChecked());
    QCOMPARE(s.pressed(QStringLiteral("Cmd2"), 6), QList<int>{2});
    QCOMPARE(s.pressed(QStringLiteral("OptFillStyle"), 8), QList<int>{5});
    QCOMPARE(s.controls->control<QLineEdit>(QStringLiteral("TxtRoundCorners"))->text(), QStringLiteral("25"));
    QCOMPARE(s.controls->control<QComboBox>(QStringLiteral("cmb3Dsize"))->currentText(), QStringLiteral("7"));
    QCOMPARE(s.controls->control<QLabel>(QStringLiteral("lblFontStyle"))->text(), QStringLiteral("Italic"));
}

void tst_Controls::optionsWriteTheDrawState_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<StateFlag>("field");
    using F = StateFlag;
    QTest::newRow("chkRan") << "chkRan" << F([](const DrawState& s) { return s.ScatterColors; });
    QTest::newRow("chkSmoothEdge") << "chkSmoothEdge" << F([](const DrawState& s) { return s.SmoothEdge; });
    QTest::newRow("chkAirOldSchool") << "chkAirOldSchool"
                                     << F([](const DrawState& s) { return s.HardSpray; });
    QTest::newRow("ChkFloodfill") << "ChkFloodfill"
                                  << F([](const DrawState& s) { return s.FloodFillBorder; });
    QTest::newRow("chkFilter") << "chkFilter" << F([](const DrawState& s) { return s.FilterBaseColor; });
    QTest::newRow("chkSolidText") << "chkSolidText" << F([](const DrawState& s) { return s.SolidText; });
    QTest::newRow("chkTransparentTXT")
        << "chkTransparentTXT" << F([](const DrawState& s) { return s.TransparentText; });
    QTest::newRow("OptCenterFont") << "OptCenterFont" << F([](const DrawState& s) { return s.CenterText; });
    QTest::newRow("OptNoise(1)") << "OptNoise(1)" << F([](const DrawState& s) { return s.AddNoise; });
    QTest::newRow("OptStep(1)") << "OptStep(1)" << F([](const DrawState& s) { return s.DoubleStep; });
}

void tst_Controls::optionsWriteTheDrawState()
{
    QFETCH(QString, name);
    QFETCH(StateFlag, field);
    Strip s;
    QAbstractButton* b = s.button(name);
    QVERIFY(b && b->isEnabled());
    QVERIFY(!field(s.state));
    b->click();
    QVERIFY(field(s.state));
    // Option pairs go back through their other option, check boxes by a second click.
    QAbstractButton* other = name.endsWith(QLatin1String("(1)"))
                                 ? s.button(QString(name).replace(QLatin1String("(1)"), QLatin1String("(0)")))
                                 : b;
    other->click();
    QVERIFY(!field(s.state));
}

void tst_Controls::numberBoxesTakeDigitsOnly()
{
    Strip s;
    auto* corners = s.controls->control<QLineEdit>(QStringLiteral("TxtRoundCorners"));
    auto* arrow = s.controls->control<QLineEdit>(QStringLiteral("TxtArrowSize"));
    corners->clear();
    QTest::keyClicks(corners, QStringLiteral("2x5"));
    QCOMPARE(s.state.RoundCornersText, QStringLiteral("25"));
    arrow->clear();
    QCOMPARE(s.state.ArrowSizeText, QString());
    QTest::keyClicks(arrow, QStringLiteral("-12"));
    QCOMPARE(s.state.ArrowSizeText, QStringLiteral("12"));
}

void tst_Controls::operationsWaitUntilAvailable_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("operation");
    QTest::newRow("Apply Text") << "CmdButton(0)" << op::ApplyText;
    QTest::newRow("Cancel Text") << "CmdButton(1)" << op::CancelText;
    QTest::newRow("Apply to Selection") << "CmdButton(2)" << op::ApplySelection;
    QTest::newRow("Cancel selection") << "CmdButton(3)" << op::CancelSelection;
    QTest::newRow("Replace colors") << "CmdButton(4)" << op::Replacecolors;
    QTest::newRow("Cancel replace") << "CmdButton(5)" << op::CancelReplace;
    QTest::newRow("chkblendit") << "chkblendit" << op::BlendThePic;
    QTest::newRow("ChkTransparencyColor") << "ChkTransparencyColor" << op::DoTransparent;
    QTest::newRow("imgBlendfile") << "imgBlendfile" << op::PasteBlend;
    QTest::newRow("Image3 textures") << "Image3" << op::Texturefill;
    QTest::newRow("Image4 Bezier") << "Image4" << op::Bezier;
    QTest::newRow("Image5 Polygons") << "Image5" << op::Polygons;
    QTest::newRow("Image6 Picture Frames") << "Image6" << op::PicFrames;
    QTest::newRow("cmdDetailEdit") << "cmdDetailEdit" << op::DetailEdit;
}

void tst_Controls::operationsWaitUntilAvailable()
{
    QFETCH(QString, name);
    QFETCH(QString, operation);
    Strip s;
    QAbstractButton* b = s.button(name);
    QVERIFY(b);
    QVERIFY(!b->isEnabled());
    QVERIFY(s.controls->operationNames().contains(operation));
    QSignalSpy asked(s.controls.get(), &frmControls::operationRequested);
    s.controls->setOperationAvailable(operation, true);
    QVERIFY(b->isEnabled());
    b->click();
    QCOMPARE(asked.count(), 1);
    QCOMPARE(asked[0][0].toString(), operation);
    s.controls->setOperationAvailable(operation, false);
    QVERIFY(!b->isEnabled());
}

void tst_Controls::colorSamplesFollowTheState()
{
    Strip s;
    s.controls->ShowPickedColor(RGB(10, 200, 255));
    QCOMPARE(s.controls->control<ColorSwatch>(QStringLiteral("ColorPick"))->color(), RGB(10, 200, 255));
    QCOMPARE(s.controls->control<QLabel>(QStringLiteral("lblRed"))->text(), QStringLiteral("10"));
    QCOMPARE(s.controls->control<QLabel>(QStringLiteral("lblGreen"))->text(), QStringLiteral("200"));
    QCOMPARE(s.controls->control<QLabel>(QStringLiteral("lblBlue"))->text(), QStringLiteral("255"));
    s.state.ReplaceColors = {RGB(1, 2, 3), kNoColor};
    s.state.TransparencyColor = RGB(0, 255, 0);
    s.controls->ColorsChanged();
    QCOMPARE(s.controls->control<ColorSwatch>(QStringLiteral("LblReplaceCol(0)"))->color(), RGB(1, 2, 3));
    QCOMPARE(s.controls->control<ColorSwatch>(QStringLiteral("LblReplaceCol(1)"))->color(), kNoColor);
    QCOMPARE(s.controls->control<ColorSwatch>(QStringLiteral("LblTransparencyColor"))->color(),
             RGB(0, 255, 0));
}

void tst_Controls::fontPickers()
{
    MainWindowFixture f;
    frmPaint* form = f.newDocument();
    frmControls& c = *f.main().controls();
    QSignalSpy fontChanges(&c, &frmControls::textFontChanged);
    c.ShowHideFonts();
    frmFonts* fonts = c.fonts();
    QVERIFY(fonts->isVisible());
    QVERIFY(fonts->parentWidget() == &f.main());
    const QStringList families = fonts->rows();
    QVERIFY(!families.isEmpty());
    QListWidgetItem* row = fonts->list()->item(families.size() - 1);
    QCOMPARE(row->font().family(), row->text());
    QVERIFY(fonts->pick(families.last()));
    QCOMPARE(f.main().state().FontName, families.last());
    QVERIFY(c.control<QLabel>(QStringLiteral("lblFont"))->toolTip().contains(families.last()));
    QVERIFY(!fonts->isVisible());

    c.ShowHideFontStyle();
    QCOMPARE(c.fontStyles()->rows(), (QStringList{QStringLiteral("Normal"), QStringLiteral("Bold"),
                                                  QStringLiteral("Italic"), QStringLiteral("Bold Italic")}));
    QVERIFY(c.fontStyles()->pick(QStringLiteral("Bold Italic")));
    QCOMPARE(c.control<QLabel>(QStringLiteral("lblFontStyle"))->text(), QStringLiteral("Bold Italic"));
    QVERIFY(form->doc.Buffer.FontBold && form->doc.Buffer.FontItalic);
    QVERIFY(c.fontStyles()->pick(QStringLiteral("Italic")));
    QVERIFY(!form->doc.Buffer.FontBold && form->doc.Buffer.FontItalic);
    QCOMPARE(fontChanges.count(), 3);
    // Each button opens its own list and closes it again.
    c.ShowHideFontStyle();
    c.ShowHideFontStyle();
    QVERIFY(!c.fontStyles()->isVisible());
}

void tst_Controls::zoomOptionsAndFitWindow()
{
    MainWindowFixture f;
    frmPaint* form = f.newDocument(100, 50);
    frmControls& c = *f.main().controls();
    f.main().Cmd(2)->click();
    QVERIFY(c.control<QAbstractButton>(QStringLiteral("optZoomss(3)"))->isChecked());
    c.control<QAbstractButton>(QStringLiteral("optZoomss(4)"))->click();
    QCOMPARE(form->doc.ZoomFactor, 200.0);
    QCOMPARE(c.zoomText(), QStringLiteral("200%"));
    for (int i = 0; i < 6; ++i)
        QCOMPARE(c.control<QAbstractButton>(QStringLiteral("optZoomss(%1)").arg(i))->isChecked(), i == 4);
    c.control<QAbstractButton>(QStringLiteral("cmdFitWindow"))->click();
    QCOMPARE(form->doc.ZoomFactor, std::min(500.0, form->width() / 100.0 * 100));
    c.SetZoomOption(150);
    for (int i = 0; i < 6; ++i)
        QVERIFY(!c.control<QAbstractButton>(QStringLiteral("optZoomss(%1)").arg(i))->isChecked());
}

void tst_Controls::removeAreaDropsTheSelection()
{
    MainWindowFixture f;
    frmPaint* form = f.newDocument();
    frmControls& c = *f.main().controls();
    f.main().Cmd(0)->click();
    form->doc.SelectArea.Visible = true;
    f.main().ShowCursorPanel(true);
    f.main().lblArea()->setText(QStringLiteral("20 x 10"));
    QVERIFY(c.cursorPanelVisible());
    c.control<QAbstractButton>(QStringLiteral("cmdRemoveArea"))->click();
    QVERIFY(!form->doc.SelectArea.Visible);
    QVERIFY(!c.cursorPanelVisible());
    QVERIFY(!f.main().state().CursorPanelVisible);
    QCOMPARE(f.main().lblArea()->text(), QStringLiteral("0 x 0"));
}

QTEST_MAIN(tst_Controls)
#include "tst_controls.moc"
