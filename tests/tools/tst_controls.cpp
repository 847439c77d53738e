// The tool option strip: style groups, fill swatches, the popup slider and its
// captions, drop-downs, the blend box, settings, panels made late and operations.

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/frmPaint.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
#include "tools/PanelWidgets.h"
#include "tools/frmControls.h"
#include "tools/frmFontStyle.h"
#include "tools/frmFonts.h"
#include "tools/frmSelector.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QApplication>
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
using namespace Qt::StringLiterals;

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
    frmSelector* slider(int index)
    {
        controls->ClickDropDown(index);
        return controls->selector();
    }

    DrawState state;
    ScriptedPrompt prompt;
    QWidget host;
    std::unique_ptr<frmControls> controls;
};

using Setter = void (frmControls::*)(int);
using Tell = std::function<void(frmControls&, DrawState&)>;
using Shows = std::function<bool(frmControls&)>;

} // namespace

Q_DECLARE_METATYPE(Setter)
Q_DECLARE_METATYPE(Tell)
Q_DECLARE_METATYPE(Shows)

class tst_Controls : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void settersKeepOnePressed_data()
    {
        QTest::addColumn<QString>("group");
        QTest::addColumn<int>("count");
        QTest::addColumn<Setter>("setter");
        QTest::addColumn<int>("index");
        QTest::newRow("Cmd3 pencil") << "Cmd3" << 11 << Setter(&frmControls::SetPencilStyle) << 10;
        QTest::newRow("Cmd4 darken") << "Cmd4" << 4 << Setter(&frmControls::SetBrightStyle) << 3;
        QTest::newRow("Cmd6 dissolve") << "Cmd6" << 4 << Setter(&frmControls::SetDissolveMode) << 3;
        QTest::newRow("Cmd7 arrow") << "Cmd7" << 2 << Setter(&frmControls::SetArrowStyle) << 1;
        QTest::newRow("Cmd8 enhance") << "Cmd8" << 3 << Setter(&frmControls::SetEnhanceMode) << 2;
        QTest::newRow("Cmd rectangle") << "Cmd" << 6 << Setter(&frmControls::SetShapeStyle) << 5;
    }
    void settersKeepOnePressed()
    {
        QFETCH(QString, group);
        QFETCH(int, count);
        QFETCH(Setter, setter);
        QFETCH(int, index);
        Strip s;
        QCOMPARE(s.pressed(group, count), QList<int>{0});
        (s.controls.get()->*setter)(index);
        QCOMPARE(s.pressed(group, count), QList<int>{index});
        // A click on the pressed button keeps it; a click on another moves the pressed
        // look; out of range changes nothing.
        s.button(QStringLiteral("%1(%2)").arg(group).arg(index))->click();
        QCOMPARE(s.pressed(group, count), QList<int>{index});
        s.button(QStringLiteral("%1(0)").arg(group))->click();
        QCOMPARE(s.pressed(group, count), QList<int>{0});
        (s.controls.get()->*setter)(count);
        (s.controls.get()->*setter)(-1);
        QCOMPARE(s.pressed(group, count), QList<int>{0});
    }

    void shapeStyleIsSharedByThreePanels_data()
    {
        QTest::addColumn<QString>("clicked");
        QTest::addColumn<int>("index");
        QTest::newRow("rectangle round fill") << "Cmd" << 4;
        QTest::newRow("circle last pen") << "Cmd2" << 5;
        QTest::newRow("3D etched") << "Cmd5" << 3;
        // Every style of the 3D panel can be chosen, the two that draw no edge too.
        QTest::newRow("3D no edge 4") << "Cmd5" << 4;
        QTest::newRow("3D no edge 5") << "Cmd5" << 5;
    }
    void shapeStyleIsSharedByThreePanels()
    {
        QFETCH(QString, clicked);
        QFETCH(int, index);
        Strip s;
        QTest::mouseClick(s.button(QStringLiteral("%1(%2)").arg(clicked).arg(index)), Qt::LeftButton);
        QCOMPARE(s.state.ShapeStyle, index);
        for (const char* group : {"Cmd", "Cmd2", "Cmd5"})
            QCOMPARE(s.pressed(QString::fromLatin1(group), 6), QList<int>{index});
    }

    void fillSwatchesShowTheFillsBrush()
    {
        const Color ink = RGB(200, 10, 30);
        for (int pattern = 0; pattern < 8; ++pattern) {
            Surface fill = MakeSurface(16, 16);
            fill.FillColor = ink;
            fill.FillStyle = pattern;
            ExtFloodFill(fill, 13, 9, ink, FLOODFILLBORDER);
            QCOMPARE(DifferingPixels(FillPatternSwatch(pattern, ink, 16, 16), fill.Image()), 0);
        }
    }

    void calcPos_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<double>("where"); // 0 far left, 1 far right
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("caption");
        QTest::newRow("text size far left") << 7 << 0.0 << 6.0 << "6 pt ";
        QTest::newRow("text size middle") << 7 << 0.5 << 103.0 << "103 pt ";
        QTest::newRow("pencil far right") << 4 << 1.0 << 50.0 << "50 pixel ";
        QTest::newRow("intensity far right") << 14 << 1.0 << 255.0 << "255 ";
        // 50.5 rounds half to even in the caption, the value keeps its fraction.
        QTest::newRow("pressure middle") << 0 << 0.5 << 50.5 << "50 % ";
    }
    void calcPos()
    {
        QFETCH(int, index);
        QFETCH(double, where);
        QFETCH(double, value);
        QFETCH(QString, caption);
        Strip s;
        frmSelector* sel = s.slider(index);
        sel->setThumbLeft(sel->thumbMinimum() + where * (sel->thumbMaximum() - sel->thumbMinimum()));
        QCOMPARE(s.state.SelectorValues[index].Value, value);
        QCOMPARE(s.controls->lblSelector(index)->text(), caption);
        QCOMPARE(s.state.SelectorValues[index].Caption, caption);
        QCOMPARE(sel->readout(), caption);
    }

    void captionFormats()
    {
        // Sizes round half to even; the brushes read intensities back from the caption.
        const QStringList captions{SelectorCaption(8, 2.5), SelectorCaption(8, 3.5), SelectorCaption(13, 3)};
        QCOMPARE(captions, QStringList({"2 pixel ", "4 pixel ", "3 "}));
        QCOMPARE(QList<double>({Val(Trim(captions[0])), Val(Trim(captions[1])), Val(Trim(captions[2]))}),
                 QList<double>({2, 4, 3}));
    }

    void stepButtonsTrackAndThumb()
    {
        Strip s;
        frmSelector* sel = s.slider(7);
        QCOMPARE(s.state.SelectorValues[7].Value, 12.0);
        sel->imgMinPlus(0)->click();
        QCOMPARE(s.controls->lblSelector(7)->text(), QStringLiteral("11 pt "));
        sel->imgMinPlus(1)->click();
        sel->imgMinPlus(1)->click();
        QCOMPARE(s.state.SelectorValues[7].Value, 13.0);
        // A press on the track past its right end gives the maximum; one more step stays there.
        QWidget* bar = const_cast<QWidget*>(sel->ScrollBar());
        const QPoint end(bar->width() - 1, bar->height() / 2);
        QTest::mousePress(bar, Qt::LeftButton, {}, end);
        QTest::mouseRelease(bar, Qt::LeftButton, {}, end);
        QCOMPARE(s.state.SelectorValues[7].Value, 200.0);
        sel->imgMinPlus(1)->click();
        QCOMPARE(s.state.SelectorValues[7].Value, 200.0);
        sel->ScrollBar_MouseDown(-500);
        sel->imgMinPlus(0)->click();
        QCOMPARE(s.controls->lblSelector(7)->text(), QStringLiteral("6 pt "));

        // The thumb dragged far past the right end stops at the end of the track.
        sel = s.slider(2);
        QWidget* block = sel->ScrollBlock();
        const QPoint grip(block->width() / 2, block->height() / 2);
        QTest::mousePress(block, Qt::LeftButton, {}, grip);
        QMouseEvent move(QEvent::MouseMove, QPointF(grip + QPoint(1000, 0)),
                         block->mapToGlobal(QPointF(grip)), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(block, &move);
        QCOMPARE(sel->thumbLeft(), sel->thumbMaximum());
        QCOMPARE(s.state.SelectorValues[2].Value, 100.0);
        QTest::mouseRelease(block, Qt::LeftButton, {}, grip);
    }

    void sameDropDownTwiceCloses()
    {
        Strip s;
        QAbstractButton* drop4 = s.controls->CmdDropDown(4);
        QTest::mouseClick(drop4, Qt::LeftButton);
        QVERIFY(s.controls->selector()->isVisible());
        QVERIFY(drop4->isChecked());
        // Another drop-down moves the slider to its selector.
        QTest::mouseClick(s.controls->CmdDropDown(5), Qt::LeftButton);
        QCOMPARE(s.controls->selector()->Tag(), 5);
        QVERIFY(!drop4->isChecked());
        QTest::mouseClick(s.controls->CmdDropDown(5), Qt::LeftButton);
        QVERIFY(!s.controls->selector()->isVisible());
        QCOMPARE(s.controls->droppedDown(), -1);
        QVERIFY(!s.controls->CmdDropDown(5)->isChecked());
        // The read-out opens its slider the same way; UnClickButton closes all.
        s.controls->ShowPanel(14);
        QTest::mouseClick(s.controls->lblSelector(9), Qt::LeftButton);
        QCOMPARE(s.controls->droppedDown(), 9);
        s.controls->UnClickButton();
        QVERIFY(!s.controls->selector()->isVisible());
    }

    void textSizeAndFontsReachOnlyADocument()
    {
        MainWindowFixture f;
        frmControls& c = *f.main().controls();
        QSignalSpy fontChanges(&c, &frmControls::textFontChanged);
        c.ClickDropDown(7);
        c.selector()->setThumbLeft(c.selector()->thumbMaximum());
        QCOMPARE(f.main().state().SelectorValues[7].Value, 200.0);
        QCOMPARE(fontChanges.count(), 0);
        // A document opened later starts from its own font; the next change reaches it.
        frmPaint* form = f.newDocument();
        QCOMPARE(form->doc.Buffer.FontSize, Surface().FontSize);
        c.selector()->imgMinPlus_Click(0);
        QCOMPARE(form->doc.Buffer.FontSize, 199.0);
        // Other selectors leave the font alone.
        c.ClickDropDown(4);
        c.selector()->setThumbLeft(c.selector()->thumbMinimum());
        QCOMPARE(form->doc.Buffer.FontSize, 199.0);
        c.UnClickButton();

        // The font lists: each name in its own face, and the choice reaches the document.
        c.ShowHideFonts();
        frmFonts* fonts = c.fonts();
        QVERIFY(fonts->isVisible());
        const QStringList families = fonts->rows();
        QVERIFY(!families.isEmpty());
        QListWidgetItem* row = fonts->list()->item(families.size() - 1);
        QCOMPARE(row->font().family(), row->text());
        QVERIFY(fonts->pick(families.last()));
        QCOMPARE(f.main().state().FontName, families.last());
        QVERIFY(!fonts->isVisible());
        c.ShowHideFontStyle();
        QCOMPARE(c.fontStyles()->rows(), (QStringList{"Normal", "Bold", "Italic", "Bold Italic"}));
        QVERIFY(c.fontStyles()->pick(QStringLiteral("Bold Italic")));
        QCOMPARE(c.control<QLabel>(QStringLiteral("lblFontStyle"))->text(), QStringLiteral("Bold Italic"));
        QVERIFY(form->doc.Buffer.FontBold && form->doc.Buffer.FontItalic);
        c.ShowHideFontStyle();
        QVERIFY(c.fontStyles()->pick(QStringLiteral("Italic")));
        QVERIFY(!form->doc.Buffer.FontBold && form->doc.Buffer.FontItalic);
    }

    void blendPercentRoundTrip()
    {
        for (int percent = 0; percent <= 100; ++percent) {
            const int blend = BlendFromPercent(percent);
            QVERIFY(blend >= 1 && blend <= 255);
            QCOMPARE(BlendPercent(blend), percent);
        }
        QCOMPARE(BlendPercent(128), 50);
    }

    void txtBlend_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("blend"); // 0: refused
        QTest::newRow("100") << "100" << 255;
        QTest::newRow("0") << "0" << 1;
        QTest::newRow("37 with blanks") << " 37 " << BlendFromPercent(37);
        QTest::newRow("101") << "101" << 0;
        QTest::newRow("-1") << "-1" << 0;
        QTest::newRow("letters") << "abc" << 0;
        QTest::newRow("fraction") << "12.5" << 0;
    }
    void txtBlend()
    {
        QFETCH(QString, typed);
        QFETCH(int, blend);
        Strip s;
        s.controls->ShowPanel(0);
        s.controls->ShowCursorPanel(true);
        s.state.SelectionBlend = 128;
        s.controls->SetBlendText(QStringLiteral("50"));
        auto* box = s.controls->control<QLineEdit>(QStringLiteral("TxtBlend"));
        box->setText(typed);
        QTest::keyClick(box, Qt::Key_Return);
        const int kept = blend ? blend : 128;
        QCOMPARE(s.state.SelectionBlend, kept);
        QCOMPARE(s.controls->control<QAbstractSlider>(QStringLiteral("ScrllBlend"))->value(), kept);
        QCOMPARE(s.prompt.shown.size(), blend ? 0 : 1);
        if (!blend) {
            QCOMPARE(s.prompt.shown[0].text,
                     QStringLiteral("Incorrect Blend value! Valid values are 0...100"));
            QCOMPARE(box->text(), QStringLiteral("50"));
        }
    }

    void loadDrawSettings()
    {
        Strip s;
        QCOMPARE(s.controls->lblSelector(0)->text(), QStringLiteral("50 % "));
        // Stored values beyond a selector's range come back inside it: a brush above 181
        // would overflow the ring walk.
        s.state.SelectorValues[2].Value = 500;
        s.state.SelectorValues[7].Value = 1;
        s.state.DoubleStep = true;
        s.state.ShapeStyle = 2;
        s.state.FillPattern = 5;
        s.state.Size3DText = QStringLiteral("7");
        s.state.FontStyle = QStringLiteral("Italic");
        s.controls->LoadDrawSettings();
        QCOMPARE(s.state.SelectorValues[2].Value, 100.0);
        QCOMPARE(s.controls->lblSelector(2)->text(), QStringLiteral("100 pixel "));
        QCOMPARE(s.controls->lblSelector(7)->text(), QStringLiteral("6 pt "));
        QVERIFY(s.button(QStringLiteral("OptStep(1)"))->isChecked() &&
                !s.button(QStringLiteral("OptStep(0)"))->isChecked());
        QCOMPARE(s.pressed(QStringLiteral("Cmd2"), 6), QList<int>{2});
        QCOMPARE(s.pressed(QStringLiteral("OptFillStyle"), 8), QList<int>{5});
        QCOMPARE(s.controls->control<QComboBox>(QStringLiteral("cmb3Dsize"))->currentText(),
                 QStringLiteral("7"));
        QCOMPARE(s.controls->control<QLabel>(QStringLiteral("lblFontStyle"))->text(),
                 QStringLiteral("Italic"));
    }

    // A panel is made when it first shows; what the strip was told before then shows on it.
    void panelMadeLaterShowsWhatItWasTold_data()
    {
        QTest::addColumn<int>("tool");
        QTest::addColumn<Tell>("tell");
        QTest::addColumn<Shows>("shows");
        const auto text = [](const char* name, const QString& expected) {
            return Shows([=](frmControls& c) {
                return c.control<QLabel>(QString::fromLatin1(name))->text() == expected;
            });
        };
        QTest::newRow("zoom text") << 2 << Tell([](frmControls& c, DrawState&) { c.SetZoomText(u"250%"_s); })
                                   << text("lblZoom", u"250%"_s);
        QTest::newRow("zoom option") << 2 << Tell([](frmControls& c, DrawState&) { c.SetZoomOption(50); })
                                     << Shows([](frmControls& c) {
                                            return c.control<QAbstractButton>(u"optZoomss(2)"_s)->isChecked();
                                        });
        QTest::newRow("angle") << 4 << Tell([](frmControls& c, DrawState&) { c.SetAngleText(u"45"_s, 2); })
                               << Shows([](frmControls& c) {
                                      auto* l = c.control<QLabel>(u"lblAngle"_s);
                                      return l->text() == u"45"_s && (l->alignment() & Qt::AlignHCenter);
                                  });
        QTest::newRow("picked colour")
            << 8 << Tell([](frmControls& c, DrawState&) { c.ShowPickedColor(RGB(10, 20, 30)); })
            << text("lblBlue", u"30"_s);
        QTest::newRow("blend") << 0 << Tell([](frmControls& c, DrawState&) {
            c.SetBlendText(u"30"_s);
        }) << Shows([](frmControls& c) { return c.control<QLineEdit>(u"TxtBlend"_s)->text() == u"30"_s; });
        QTest::newRow("float options")
            << 0 << Tell([](frmControls& c, DrawState&) { c.ShowCursorPanel(true); })
            << Shows([](frmControls& c) { return !c.control(u"PicCursorCMD"_s)->isHidden(); });
        QTest::newRow("shape style") << 10 << Tell([](frmControls& c, DrawState& s) {
            s.ShapeStyle = 2;
            c.LoadDrawSettings();
        }) << Shows([](frmControls& c) { return c.control<QAbstractButton>(u"Cmd2(2)"_s)->isChecked(); });
        QTest::newRow("selector caption")
            << 13 << Tell([](frmControls& c, DrawState&) { c.SetSelectorCaption(8, u"9 pixel "_s); })
            << text("lblSelector(8)", u"9 pixel "_s);
        QTest::newRow("operation") << 12 << Tell([](frmControls& c, DrawState&) {
            c.setOperationAvailable(op::ApplyText, true);
        }) << Shows([](frmControls& c) { return c.control(u"CmdButton(0)"_s)->isEnabled(); });
    }
    void panelMadeLaterShowsWhatItWasTold()
    {
        QFETCH(int, tool);
        QFETCH(Tell, tell);
        QFETCH(Shows, shows);
        Strip s;
        QVERIFY(!s.controls->panelBuilt(tool));
        tell(*s.controls, s.state);
        QVERIFY(!s.controls->panelBuilt(tool));
        s.controls->ShowPanel(tool);
        for (int other = 0; other < 20; ++other)
            QCOMPARE(s.controls->panelBuilt(other), other == tool);
        QVERIFY(shows(*s.controls));
    }

    void operationsWaitUntilAvailable_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("operation");
        QTest::newRow("Apply Text") << "CmdButton(0)" << op::ApplyText;
        QTest::newRow("Replace colors") << "CmdButton(4)" << op::Replacecolors;
        QTest::newRow("ChkTransparencyColor") << "ChkTransparencyColor" << op::DoTransparent;
        QTest::newRow("Image4 Bezier") << "Image4" << op::Bezier;
    }
    void operationsWaitUntilAvailable()
    {
        QFETCH(QString, name);
        QFETCH(QString, operation);
        Strip s;
        QAbstractButton* b = s.button(name);
        QVERIFY(b && !b->isEnabled());
        QSignalSpy asked(s.controls.get(), &frmControls::operationRequested);
        s.controls->setOperationAvailable(operation, true);
        QVERIFY(b->isEnabled());
        b->click();
        QCOMPARE(asked.count(), 1);
        QCOMPARE(asked[0][0].toString(), operation);
        s.controls->setOperationAvailable(operation, false);
        QVERIFY(!b->isEnabled());
    }

    void zoomOptionsFitWindowAndRemoveArea()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument(100, 50);
        frmControls& c = *f.main().controls();
        const auto option = [&](int i) {
            return c.control<QAbstractButton>(QStringLiteral("optZoomss(%1)").arg(i));
        };
        f.main().Cmd(2)->click();
        QVERIFY(option(3)->isChecked());
        option(4)->click();
        QCOMPARE(form->doc.ZoomFactor, 200.0);
        QCOMPARE(c.zoomText(), QStringLiteral("200%"));
        c.control<QAbstractButton>(QStringLiteral("cmdFitWindow"))->click();
        QCOMPARE(form->doc.ZoomFactor, std::min(500.0, form->width() / 100.0 * 100));
        c.SetZoomOption(150);
        for (int i = 0; i < 6; ++i)
            QVERIFY(!option(i)->isChecked());
        // The pointer's "Remove area" drops the selection.
        f.main().Cmd(0)->click();
        form->doc.SelectArea.Visible = true;
        f.main().ShowCursorPanel(true);
        QVERIFY(c.cursorPanelVisible());
        c.control<QAbstractButton>(QStringLiteral("cmdRemoveArea"))->click();
        QVERIFY(!form->doc.SelectArea.Visible);
        QVERIFY(!c.cursorPanelVisible());
        QCOMPARE(f.main().lblArea()->text(), QStringLiteral("0 x 0"));
    }
};

QTEST_MAIN(tst_Controls)
#include "tst_controls.moc"
