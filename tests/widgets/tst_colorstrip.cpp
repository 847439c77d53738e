// The colour strip in the real main window (every way of choosing a colour, the user
// colours, Easy Mode, the reduction to the strip's colours), its arithmetic without
// widgets, and the True Color Palette dialog.

#include "core/Color.h"
#include "document/frmPaint.h"
#include "support/FakeHost.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
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
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;
using namespace Qt::StringLiterals;

namespace {

// A main window with its strip and drawing state at hand.
struct Strip : MainWindowFixture {
    ColorStrip& strip = *main().colorStrip();
    DrawState& st = main().state();
    void colours(Color fore, Color back)
    {
        st.ForeColor = fore;
        st.BackColor = back;
        main().ColorsChanged();
    }
};

} // namespace

class tst_ColorStrip : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void colourToSlidersReadoutsSwapAndRestore()
    {
        Strip f;
        f.colours(RGB(255, 128, 7), 0xFFFFFF);
        const int values[3] = {255, 128, 7};
        for (int k = 0; k < 3; ++k) {
            QCOMPARE(f.strip.lblcolor(k)->text(), QString::number(values[k]));
            ColorSlider* bar = f.strip.ColorBar(k);
            QCOMPARE(bar->thumbLeft(),
                     ThumbLeftForValue(values[k], bar->barLeft(), bar->barWidth(), bar->thumbWidth()));
        }
        // The read-outs show the colour and copy it on a double click.
        QTest::mouseDClick(f.strip.lblcolorvalue2(), Qt::LeftButton);
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("#FF8007"));
        QTest::mouseDClick(f.strip.lblcolorvalue(), Qt::LeftButton);
        QCOMPARE(QApplication::clipboard()->text(), QString::number(RGB(255, 128, 7)));
        // Swap and restore; the read-outs show the foreground whichever colour is chosen.
        f.st.SelIndex = 1;
        f.colours(RGB(1, 2, 3), RGB(4, 5, 6));
        f.strip.ShiftColors()->click();
        QCOMPARE(QList<Color>({f.st.ForeColor, f.st.BackColor}), QList<Color>({RGB(4, 5, 6), RGB(1, 2, 3)}));
        QCOMPARE(f.strip.lblcolorvalue()->text(), QString::number(RGB(4, 5, 6)));
        f.strip.RestoreColors()->click();
        QCOMPARE(QList<Color>({f.st.ForeColor, f.st.BackColor}), QList<Color>({0, 0xFFFFFF}));
        QCOMPARE(f.st.SelIndex, 0);
    }

    void dragToFarRightGives255()
    {
        Strip f;
        frmPaint* form = f.newDocument();
        ColorSlider* green = f.strip.ColorBar(1);
        const QPoint grab(green->thumbLeft() + 3, green->height() / 2);
        QTest::mousePress(green, Qt::LeftButton, {}, grab);
        QVERIFY(f.strip.SliderDrag);
        QTest::mouseMove(green, QPoint(green->width() + 40, grab.y()));
        // The thumb stops at the end of the track, where the formula gives 256; the box's
        // change rule cuts it to 255 before the colour is taken.
        QCOMPARE(green->thumbLeft(), green->barLeft() + green->barWidth() - green->thumbWidth() / 2);
        QCOMPARE(f.strip.lblcolor(1)->text(), QStringLiteral("255"));
        QCOMPARE(f.st.ForeColor, RGB(0, 255, 0));
        QCOMPARE(form->doc.Buffer.ForeColor, RGB(0, 255, 0));
        QTest::mouseRelease(green, Qt::LeftButton, {}, QPoint(green->width() - 1, grab.y()));
        QVERIFY(!f.strip.SliderDrag);
    }

    void boxesTakeEffectAtKeyUp()
    {
        Strip f;
        f.main().activateWindow();
        QLineEdit* red = f.strip.lblcolor(0);
        // An empty box stays empty while typing and reads "0" at the key-up, which does nothing else.
        red->setFocus();
        red->selectAll();
        QTest::keyPress(red, Qt::Key_Backspace);
        QCOMPARE(red->text(), QString());
        const Color before = f.st.ForeColor;
        QTest::keyRelease(red, Qt::Key_Backspace);
        QCOMPARE(red->text(), QStringLiteral("0"));
        QCOMPARE(f.st.ForeColor, before);
        red->selectAll();
        QTest::keyClicks(red, QStringLiteral("99"));
        QCOMPARE(f.st.ForeColor, RGB(99, 0, 0));
        QCOMPARE(f.strip.lblcolorvalue2()->text(), QStringLiteral("#630000"));
        // Enter moves to the next box with its text selected.
        QTest::keyClick(red, Qt::Key_Return);
        QVERIFY(f.strip.lblcolor(1)->hasFocus());
        QCOMPARE(f.strip.lblcolor(1)->selectedText(), f.strip.lblcolor(1)->text());
    }

    void buttonsChooseForegroundOrBackground_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("selIndex");
        QTest::newRow("left: foreground") << int(Qt::LeftButton) << 0;
        QTest::newRow("right: background") << int(Qt::RightButton) << 1;
    }
    void buttonsChooseForegroundOrBackground()
    {
        QFETCH(int, button);
        QFETCH(int, selIndex);
        Strip f;
        Color& chosen = selIndex == 0 ? f.st.ForeColor : f.st.BackColor;
        const Color other = selIndex == 0 ? f.st.BackColor : f.st.ForeColor;
        SwatchGrid* grid = f.strip.MSColors();
        QTest::mouseClick(grid, Qt::MouseButton(button), {}, grid->cellRect(9).center());
        QCOMPARE(f.st.SelIndex, selIndex);
        QCOMPARE(chosen, RGB(255, 0, 0));
        QCOMPARE(selIndex == 0 ? f.st.BackColor : f.st.ForeColor, other);
        QCOMPARE(f.strip.lblcolor(0)->text(), QStringLiteral("255"));
        QCOMPARE(f.strip.ColorBlend(selIndex)->color(), RGB(255, 0, 0)); // the mirrors follow
        QTest::mouseClick(f.strip.ImgColor(), Qt::MouseButton(button), {}, QPoint(2, 15));
        QCOMPARE(ColorRed(chosen), 255);
    }

    void draggingAlongTheGraysPicksContinuously()
    {
        Strip f;
        PickStrip* grays = f.strip.ImgGrays();
        QTest::mousePress(grays, Qt::LeftButton, {}, QPoint(1, 5));
        QCOMPARE(f.st.ForeColor, 0xFFFFFF);
        QTest::mouseMove(grays, QPoint(grays->width() / 2, 5));
        const int middle = ColorRed(f.st.ForeColor);
        QVERIFY(middle > 100 && middle < 155);
        // Beyond the end the last grey is kept.
        QTest::mouseMove(grays, QPoint(grays->width() + 30, 5));
        QCOMPARE(f.st.ForeColor, 0);
        QTest::mouseRelease(grays, Qt::LeftButton, {}, QPoint(grays->width() + 30, 5));
    }

    void userCellDoubleClickKeepsWorkingColours_data()
    {
        QTest::addColumn<int>("answer");
        QTest::newRow("a colour chosen") << RGB(18, 52, 86);
        QTest::newRow("cancelled") << -1;
    }
    void userCellDoubleClickKeepsWorkingColours()
    {
        QFETCH(int, answer);
        Strip f;
        f.colours(RGB(9, 8, 7), RGB(200, 201, 202));
        SwatchGrid* cells = f.strip.PicUserColors();
        const Color cellBefore = cells->color(3);
        const QPoint at = cells->cellRect(3).center();
        QTest::mouseClick(cells, Qt::LeftButton, {}, at);
        QCOMPARE(f.st.ForeColor, cellBefore); // the first click chose the cell's colour
        WhenShown<frmColor>([answer](frmColor& d) {
            if (answer < 0)
                return d.reject();
            d.htmlField()->setText(ColorToHTML(answer));
            QTest::keyClick(d.htmlField(), Qt::Key_Return);
        });
        QTest::mouseDClick(cells, Qt::LeftButton, {}, at);
        QTest::mouseRelease(cells, Qt::LeftButton, {}, at);
        QCOMPARE(QList<Color>({f.st.ForeColor, f.st.BackColor}),
                 QList<Color>({RGB(9, 8, 7), RGB(200, 201, 202)}));
        QCOMPARE(f.strip.ColorDialogResult, -1);
        QCOMPARE(cells->color(3), answer < 0 ? cellBefore : answer);
        const QByteArray text = ReadFile(f.appFolder() + QStringLiteral("UserColors.ini"));
        QCOMPARE(text.isEmpty(), answer < 0);
        if (answer >= 0)
            QCOMPARE(text.split('\n').at(4), " " + QByteArray::number(answer) + " \r");
    }

    // The user colours come from a short file at start; a drop on a cell takes the
    // colour without writing the file.
    void userColoursReadAtStartAndDropped()
    {
        Strip f;
        const QString file = f.appFolder() + QStringLiteral("UserColors.ini");
        const QByteArray text = "[User Defined Colors]\r\n 255 \r\n 65280 \r\n";
        QVERIFY(WriteFile(file, text));
        f.strip.LoadUserColors();
        QCOMPARE(f.strip.UserColor(1), RGB(0, 255, 0));
        QCOMPARE(f.strip.UserColor(2), DefaultUserColors()[2]);
        // The strip's palette: the fixed swatches, then the user colours.
        QCOMPARE(f.strip.palette().mid(kMSColorCount, 2), QVector<Color>({RGB(255, 0, 0), RGB(0, 255, 0)}));
        SwatchGrid* cells = f.strip.PicUserColors();
        const QPoint at = cells->cellRect(5).center();
        for (const QString& text : {QString::number(RGB(1, 200, 3)), QStringLiteral("not a colour")}) {
            QMimeData data;
            data.setText(text);
            QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, {});
            QApplication::sendEvent(cells, &enter);
            QDropEvent dropped(at, Qt::CopyAction, &data, Qt::LeftButton, {});
            QApplication::sendEvent(cells, &dropped);
            QCOMPARE(cells->color(5), RGB(1, 200, 3));
        }
        QCOMPARE(ReadFile(file), text);
    }

    void rightClickOnSwatchOpensTheDialog()
    {
        Strip f;
        f.newDocument();
        f.main().SelColor_MouseDown(1, 2);
        frmColor* dialog = f.strip.openDialog();
        QVERIFY(dialog);
        QCOMPARE(dialog->windowModality(), Qt::WindowModal);
        QCOMPARE(dialog->color(), 0xFFFFFF);
        dialog->spin(0)->setValue(10);
        dialog->accept();
        QCOMPARE(f.st.BackColor, RGB(10, 255, 255));
        // Image2(1) edits the foreground; a cancel changes nothing.
        f.strip.Image2(1)->click();
        QCOMPARE(f.strip.openDialog()->color(), 0);
        f.strip.openDialog()->spin(2)->setValue(99);
        f.strip.openDialog()->reject();
        QCOMPARE(f.st.ForeColor, 0);
    }

    void easyModeHidesTheNumbers()
    {
        Strip f;
        QAction* easy = f.main().action(QStringLiteral("mnuKidsMode"));
        for (bool on : {true, false}) {
            easy->setChecked(on);
            f.main().KidsMode();
            QCOMPARE(f.strip.lblcolorvalue()->isVisible(), !on);
            QCOMPARE(f.strip.findChild<QLabel*>(QStringLiteral("lblcolorvaluelabel2"))->isVisible(), !on);
            QCOMPARE(f.strip.lblcolor(2)->isVisible(), !on);
            QVERIFY(f.strip.ColorBar(2)->isVisible());
        }
    }

    void changePaletteReducesThePictureOrTheSelection()
    {
        Strip f;
        QPushButton* button = f.strip.PaletteButton();
        QVERIFY(!button->isEnabled());
        frmPaint* form = f.newDocument(6, 6);
        QVERIFY(button->isEnabled());
        Document& doc = form->doc;
        QImage& img = doc.Buffer.Image();
        img.fill(ToQRgb(RGB(250, 10, 5)));
        const QImage before = img.copy();
        button->click();
        QCOMPARE(FromQRgb(img.pixel(0, 0)), RGB(255, 0, 0));
        QVERIFY(doc.Dirty);
        // The undo ring has the picture before; the resize undo file is not touched.
        QCOMPARE(doc.UndoSlots[f.main().undo().UndoWriteSlot - 1]->toImage(), before);
        QVERIFY(!QFile::exists(f.appFolder() + QStringLiteral("temp/undo.bmp")));

        // With a selection, only the selection.
        img.fill(ToQRgb(RGB(250, 250, 10)));
        ShowFloat(doc, {1, 1, 2, 2}, RGB(5, 5, 5)).Image().setPixel(0, 0, ToQRgb(RGB(250, 5, 250)));
        f.main().ChangePalette();
        QCOMPARE(FromQRgb(doc.BufferSelected.Image().pixel(0, 0)), RGB(255, 0, 255));
        QCOMPARE(FromQRgb(img.pixel(5, 5)), RGB(250, 250, 10));
    }

    // Cancel and Esc answer -1 and remember nothing; OK answers the colour, and the next
    // dialog offers it in its recent row.
    void pickAnswersTheColourOrMinusOne()
    {
        const QVector<Color> recent = frmColor::recentColors();
        WhenShown<frmColor>([](frmColor& d) {
            d.spin(1)->setValue(77);
            d.reject();
        });
        QCOMPARE(frmColor::pick(RGB(1, 2, 3), nullptr), -1);
        WhenShown<frmColor>([](frmColor& d) { QTest::keyClick(&d, Qt::Key_Escape); });
        QCOMPARE(frmColor::pick(RGB(1, 2, 3), nullptr), -1);
        QCOMPARE(frmColor::recentColors(), recent);
        WhenShown<frmColor>([](frmColor& d) {
            QCOMPARE(d.color(), RGB(1, 2, 3));
            d.spin(2)->setValue(200);
            d.accept();
        });
        QCOMPARE(frmColor::pick(RGB(1, 2, 3), nullptr), RGB(1, 2, 200));
        frmColor next;
        QVERIFY(!next.recentSample(0)->isHidden());
        QCOMPARE(next.recentSample(0)->color(), RGB(1, 2, 200));
        QTest::mouseClick(next.recentSample(0), Qt::LeftButton);
        QCOMPARE(next.color(), RGB(1, 2, 200));
    }

    void hsvFieldsGiveRgb_data()
    {
        QTest::addColumn<QList<int>>("hsv");
        QTest::addColumn<int>("rgb");
        QTest::newRow("red") << QList<int>{0, 100, 100} << RGB(255, 0, 0);
        QTest::newRow("dark blue") << QList<int>{240, 100, 50} << RGB(0, 0, 128);
        QTest::newRow("orange") << QList<int>{30, 100, 100} << RGB(255, 128, 0);
    }
    void hsvFieldsGiveRgb()
    {
        QFETCH(QList<int>, hsv);
        QFETCH(int, rgb);
        frmColor d;
        d.setColor(RGB(0, 0, 1));
        for (int k = 0; k < 3; ++k)
            d.spin(3 + k)->setValue(hsv[k]);
        QCOMPARE(d.color(), rgb);
        QCOMPARE(RGB(d.spin(0)->value(), d.spin(1)->value(), d.spin(2)->value()), rgb);
        QCOMPARE(d.htmlField()->text(), ColorToHTML(rgb));
        // The old sample shows the colour the dialog started with and brings it back.
        auto* old = d.findChildren<ColorSample*>().value(0);
        QCOMPARE(QList<Color>({d.oldColor(), old->color()}), QList<Color>({RGB(0, 0, 1), RGB(0, 0, 1)}));
        QTest::mouseClick(old, Qt::LeftButton);
        QCOMPARE(d.color(), RGB(0, 0, 1));
    }

    void badHtmlChangesNothingAndGreyKeepsTheHue()
    {
        frmColor d;
        d.setColor(RGB(0, 128, 255));
        d.show();
        const int hue = d.spin(3)->value();
        QVERIFY(hue > 200 && hue < 220);
        d.htmlField()->selectAll();
        QTest::keyClicks(d.htmlField(), QStringLiteral("#GGHHII"));
        QTest::keyClick(d.htmlField(), Qt::Key_Return);
        QVERIFY(d.isVisible()); // Enter on a bad text does not close the dialog
        QCOMPARE(d.result(), 0);
        QCOMPARE(d.color(), RGB(0, 128, 255));
        QVERIFY(d.messageLabel()->text().contains(QStringLiteral("#FF8000")));
        // A good text is taken as it is typed, and the message goes; a grey keeps the
        // hue, and colour comes back with it.
        d.htmlField()->selectAll();
        QTest::keyClicks(d.htmlField(), QStringLiteral("#5a5a5a"));
        QCOMPARE(d.color(), RGB(90, 90, 90));
        QVERIFY(d.messageLabel()->text().isEmpty());
        QCOMPARE(d.spin(4)->value(), 0);
        QCOMPARE(d.spin(3)->value(), hue);
        d.spin(4)->setValue(100);
        QVERIFY(ColorBlue(d.color()) > ColorRed(d.color()));
    }

    void eyedropperTakesAProgramWindowsColour()
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

    void sliderValueAndBack()
    {
        // Track from 5 to 5 + 100, thumb 10 wide: the thumb moves between 0 and 100, 2.56
        // a pixel rounded up, and the far right gives 256.
        const auto value = [](int thumbLeft) { return SliderValue(thumbLeft, 5, 100, 10); };
        QCOMPARE(QList<int>({value(-3), value(1), value(50), value(100)}), QList<int>({0, 3, 128, 256}));
        // Colour to thumb and back: the two factors differ, yet no value moves by more
        // than one track pixel's worth.
        const int barWidth = 105, thumb = 10;
        for (int v = 0; v <= 255; ++v) {
            const int back =
                std::min(255, SliderValue(ThumbLeftForValue(v, 5, barWidth, thumb), 5, barWidth, thumb));
            QVERIFY2(std::abs(back - v) <= 3,
                     qPrintable(QStringLiteral("%1 came back as %2").arg(v).arg(back)));
        }
        QCOMPARE(ThumbLeftForValue(255, 5, barWidth, thumb), barWidth);
        QCOMPARE(ThumbLeftForValue(0, 5, barWidth, thumb), 0);
    }

    void boxTextAndHtml()
    {
        // The box cuts the far right's 256 and negatives into range; an empty box waits
        // for the key-up, and no number counts as 0.
        const QStringList shown{ClampedBoxText(u"256"_s), ClampedBoxText(u"-4"_s), ClampedBoxText(QString()),
                                ClampedBoxText(u"x"_s)};
        QCOMPARE(shown, QStringList({"255", "0", "", "x"}));
        QCOMPARE(QList<int>({BoxValue(u"255"_s), BoxValue(u"0"_s), BoxValue(QString()), BoxValue(u"x"_s)}),
                 QList<int>({255, 0, 0, 0}));
        // Red is the low byte; no colour reads as its last six digits.
        QCOMPARE(QStringList({ColorToHTML(RGB(255, 0, 0)), ColorToHTML(RGB(0, 0, 255)), ColorToHTML(-1)}),
                 QStringList({"#FF0000", "#0000FF", "#FFFFFF"}));
        // Blanks, small letters and no '#' are taken; short, long or not hex is refused.
        const QList<int> parsed{ParseHTMLColor(u"#FF0000"_s), ParseHTMLColor(u"  0000ff "_s),
                                ParseHTMLColor(u"#FF80"_s), ParseHTMLColor(u"#GG0000"_s),
                                ParseHTMLColor(u"#FF80001"_s)};
        QCOMPARE(parsed, QList<int>({RGB(255, 0, 0), RGB(0, 0, 255), -1, -1, -1}));
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
        QTest::newRow("one channel") << RGB(200, 40, 90) << RGB(0, 40, 90) << RGB(198, 40, 90)
                                     << RGB(0, 40, 90);
        QTest::newRow("equal colours: one colour")
            << RGB(10, 200, 30) << RGB(10, 200, 30) << RGB(10, 200, 30) << RGB(10, 200, 30);
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
        std::array<Color, kUserColorCount> cells{}, back = DefaultUserColors();
        for (int i = 0; i < kUserColorCount; ++i)
            cells[i] = i == 11 ? 0xFFFFFF : i * 1000;
        QVERIFY(WriteUserColors(path, cells));
        const QByteArray text = ReadFile(path);
        QVERIFY(text.startsWith("[User Defined Colors]\r\n 0 \r\n 1000 \r\n"));
        QVERIFY(text.endsWith(" 10000 \r\n 16777215 \r\n"));
        QCOMPARE(ReadUserColors(path, back), kUserColorCount);
        QCOMPARE(back, cells);
    }

    void userColorsShortFileKeepsTheRest_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("read");
        QTest::newRow("missing file") << QByteArray() << 0;
        QTest::newRow("unix line ends") << QByteArray("[User Defined Colors]\n 1 \n 2 \n") << 2;
        QTest::newRow("stops at a bad number")
            << QByteArray("[User Defined Colors]\r\n 1 \r\n red \r\n 3 \r\n") << 1;
        QTest::newRow("stops at a colour out of range")
            << QByteArray("[User Defined Colors]\r\n 1 \r\n 16777216 \r\n") << 1;
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

QTEST_MAIN(tst_ColorStrip)
#include "tst_colorstrip.moc"
