// The colour picker and replacer through the pointer events, the replacer's exact swap,
// and the crop marquee's limits.

#include "core/Gdi.h"
#include "support/FakeHost.h"
#include "support/TestImages.h"
#include "tools/ColorPicker.h"
#include "tools/PointerPipeline.h"

#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// Two colours side by side: red left of x = 20, blue from there on.
void splitPicture(ToolBench& b)
{
    b.doc.Buffer.setImage(
        MakeImage(40, 30, [](int x, int) { return x < 20 ? RGB(255, 0, 0) : RGB(0, 0, 255); }));
}

// The view position at zoom 100 that reads exactly image position x.
float view(int x)
{
    return float(x) + 0.5f;
}

} // namespace

class tst_ColorTools : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void pickerSetsTheSwatchByButton_data();
    void pickerSetsTheSwatchByButton();
    void dragShowsTheColourUnderThePointer();
    void pickOutsideThePictureDoesNothing();
    void replacerPicksSourceAndNewColour();
    void armedTransparencyPick();
    void replaceColor_data();
    void replaceColor();
    void cropMarqueeStaysInTheView_data();
    void cropMarqueeStaysInTheView();
    void cropOfAClickOrALineDoesNothing_data();
    void cropOfAClickOrALineDoesNothing();
};

void tst_ColorTools::pickerSetsTheSwatchByButton_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("selIndex");
    QTest::addColumn<Color>("fore");
    QTest::addColumn<Color>("back");
    // Left press on red, release on blue: the release picks last.
    QTest::newRow("left: foreground") << 1 << 0 << RGB(0, 0, 255) << Color(0xFFFFFF);
    QTest::newRow("left, sliders on the background") << 1 << 1 << Color(0) << RGB(0, 0, 255);
    // Right: only the drag picks; the right release runs no tool.
    QTest::newRow("right: background") << 2 << 0 << Color(0) << RGB(255, 0, 0);
}

void tst_ColorTools::pickerSetsTheSwatchByButton()
{
    QFETCH(int, button);
    QFETCH(int, selIndex);
    QFETCH(Color, fore);
    QFETCH(Color, back);
    ToolBench b;
    splitPicture(b);
    b.state.CurrentTool = 8;
    b.state.LastTool = 0; // stays on the picker
    b.state.SelIndex = selIndex;
    PaintArea_MouseDown(b.ctx, b.doc, button, 0, view(5), view(5));
    PaintArea_MouseMove(b.ctx, b.doc, button, 0, view(10), view(5));
    PaintArea_MouseUp(b.ctx, b.doc, button, 0, view(30), view(5));
    QCOMPARE(b.state.ForeColor, fore);
    QCOMPARE(b.state.BackColor, back);
    // The floating selection's transparency colour follows the foreground.
    QCOMPARE(b.state.TransparencyColor, fore);
    QCOMPARE(b.host.transparencyShown, fore);
    QVERIFY(b.host.colorChanges > 0);
    QCOMPARE(b.host.prepUndoCalls, 0);
}

void tst_ColorTools::dragShowsTheColourUnderThePointer()
{
    for (int tool : {8, 17}) {
        ToolBench b;
        splitPicture(b);
        b.state.CurrentTool = tool;
        b.state.LastTool = 0;
        PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, view(5), view(5));
        const Color source = b.state.ReplaceColors[0];
        PaintArea_MouseMove(b.ctx, b.doc, kLeftButton, 0, view(25), view(5));
        QCOMPARE(b.host.picked, RGB(0, 0, 255));
        // The drag moves the read-out only: the replacer's swatch keeps the click.
        QCOMPARE(b.state.ReplaceColors[0], source);
    }
}

void tst_ColorTools::pickOutsideThePictureDoesNothing()
{
    ToolBench b;
    b.state.CurrentTool = 8;
    b.state.ForeColor = RGB(1, 2, 3);
    PickColorAt(b.ctx, b.doc, 40, 3, 1);
    PickColorAt(b.ctx, b.doc, -1, 3, 2);
    double zoom = 100;
    bool drawing = true;
    ToolDispatch(b.ctx, b.doc, b.doc.Buffer, 40, 3, zoom, drawing, 1, false);
    QCOMPARE(b.host.picked, kNoColor);
    QCOMPARE(b.state.ReplaceColors[0], kNoColor);
    QCOMPARE(b.state.ReplaceColors[1], kNoColor);
    QCOMPARE(b.state.ForeColor, RGB(1, 2, 3));
}

void tst_ColorTools::replacerPicksSourceAndNewColour()
{
    ToolBench b;
    splitPicture(b);
    b.state.CurrentTool = 17;
    PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, view(3), view(3));
    PaintArea_MouseUp(b.ctx, b.doc, kLeftButton, 0, view(3), view(3));
    PaintArea_MouseDown(b.ctx, b.doc, kRightButton, 0, view(30), view(3));
    PaintArea_MouseUp(b.ctx, b.doc, kRightButton, 0, view(30), view(3));
    QCOMPARE(b.state.ReplaceColors[0], RGB(255, 0, 0));
    QCOMPARE(b.state.ReplaceColors[1], RGB(0, 0, 255));
    QCOMPARE(b.host.replaceShown[0], RGB(255, 0, 0));
    QCOMPARE(b.host.replaceShown[1], RGB(0, 0, 255));
    QCOMPARE(b.host.contextMenus, 0); // the replacer's right click opens no menu
    QCOMPARE(b.state.CurrentTool, 17);
}

void tst_ColorTools::armedTransparencyPick()
{
    ToolBench b;
    splitPicture(b);
    b.state.CurrentTool = 8;
    b.state.TransparencyPickArmed = true;
    b.view.pointer = 8;
    PickColorAt(b.ctx, b.doc, 30, 3, 1);
    QCOMPARE(b.state.TransparencyColor, RGB(0, 0, 255));
    QCOMPARE(b.host.transparencyShown, RGB(0, 0, 255));
    QVERIFY(!b.state.TransparencyPickArmed);
    QCOMPARE(b.state.CurrentTool, 0);
    QCOMPARE(b.view.pointer, -1);
    QCOMPARE(b.state.ReplaceColors[0], kNoColor);
    // The replacer's own click is never a transparency pick.
    b.state.CurrentTool = 17;
    b.state.TransparencyPickArmed = true;
    PickColorAt(b.ctx, b.doc, 3, 3, 1);
    QCOMPARE(b.state.TransparencyColor, RGB(0, 0, 255));
    QCOMPARE(b.state.ReplaceColors[0], RGB(255, 0, 0));
}

void tst_ColorTools::replaceColor_data()
{
    QTest::addColumn<Color>("from");
    QTest::addColumn<Color>("to");
    QTest::addColumn<int>("changed");
    QTest::newRow("red to green") << RGB(255, 0, 0) << RGB(0, 255, 0) << 3;
    QTest::newRow("equal colours: nothing") << RGB(255, 0, 0) << RGB(255, 0, 0) << 0;
    QTest::newRow("a colour not in the picture") << RGB(1, 2, 3) << RGB(0, 255, 0) << 0;
    QTest::newRow("nothing picked") << kNoColor << RGB(0, 255, 0) << 0;
}

void tst_ColorTools::replaceColor()
{
    QFETCH(Color, from);
    QFETCH(Color, to);
    QFETCH(int, changed);
    // Red, and its neighbours one step off in each channel, which must stay.
    const QHash<QChar, Color> palette{{u'r', RGB(255, 0, 0)},
                                      {u'a', RGB(254, 0, 0)},
                                      {u'b', RGB(255, 1, 0)},
                                      {u'c', RGB(255, 0, 1)},
                                      {u'.', 0xFFFFFF}};
    Surface s = MakeSurface(4, 3);
    s.setImage(ImageFromRows({"r.a.", ".rb.", "c..r"}, palette));
    const QImage before = s.Image().copy();
    QCOMPARE(ReplaceColor(s, from, to), changed);
    QCOMPARE(DifferingPixels(before, s.Image()), changed);
    if (changed)
        QCOMPARE(RowsOf(s, to), (QStringList{"#...", ".#..", "...#"}));
}

void tst_ColorTools::cropMarqueeStaysInTheView_data()
{
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QPointF>("press"); // image position of the pen
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<QRectF>("box"); // in view pixels
    QTest::newRow("inside") << 100.0 << QPointF(5, 6) << QPoint(15, 20) << QRectF(5, 6, 10, 14);
    QTest::newRow("dragged up and left") << 100.0 << QPointF(15, 20) << QPoint(5, 6) << QRectF(5, 6, 10, 14);
    QTest::newRow("past the right and bottom")
        << 100.0 << QPointF(30, 20) << QPoint(55, 45) << QRectF(30, 20, 10, 10);
    QTest::newRow("past the left and top") << 100.0 << QPointF(4, 3) << QPoint(-6, -2) << QRectF(0, 0, 4, 3);
    QTest::newRow("zoom 200") << 200.0 << QPointF(5, 6) << QPoint(15, 20) << QRectF(10, 12, 20, 28);
}

void tst_ColorTools::cropMarqueeStaysInTheView()
{
    QFETCH(double, zoom);
    QFETCH(QPointF, press);
    QFETCH(QPoint, pointer);
    QFETCH(QRectF, box);
    ToolBench b;
    b.doc.ZoomFactor = zoom;
    b.doc.view.paintWidth = int(40 * zoom / 100) + 2;
    b.doc.view.paintHeight = int(30 * zoom / 100) + 2;
    b.doc.SelectArea.Visible = true;
    b.state.CurrentTool = 7;
    b.doc.Buffer.CurrentX = press.x();
    b.doc.Buffer.CurrentY = press.y();
    bool drawing = true;
    ToolDispatch(b.ctx, b.doc, b.doc.Buffer, pointer.x(), pointer.y(), zoom, drawing, 1, false);
    const RectOverlay& c = b.doc.CropArea;
    QVERIFY(c.Visible);
    QVERIFY(!b.doc.SelectArea.Visible);
    QCOMPARE(QRectF(c.Left, c.Top, c.Width, c.Height), box);
}

void tst_ColorTools::cropOfAClickOrALineDoesNothing_data()
{
    QTest::addColumn<QPoint>("release");
    QTest::newRow("a click") << QPoint(10, 10);
    QTest::newRow("straight down") << QPoint(10, 25);
    QTest::newRow("straight across") << QPoint(30, 10);
}

void tst_ColorTools::cropOfAClickOrALineDoesNothing()
{
    QFETCH(QPoint, release);
    ToolBench b;
    b.state.CurrentTool = 7;
    PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, view(10), view(10));
    PaintArea_MouseMove(b.ctx, b.doc, kLeftButton, 0, view(release.x()), view(release.y()));
    PaintArea_MouseUp(b.ctx, b.doc, kLeftButton, 0, view(release.x()), view(release.y()));
    QCOMPARE(b.doc.Buffer.ScaleWidth(), 40);
    QCOMPARE(b.doc.Buffer.ScaleHeight(), 30);
    QCOMPARE(b.host.undoBitmaps, 0);
}

QTEST_GUILESS_MAIN(tst_ColorTools)
#include "tst_colortools.moc"
