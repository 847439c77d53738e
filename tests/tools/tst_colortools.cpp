// The colour picker and replacer through the pointer events, the replacer's exact swap,
// and the crop marquee's limits.

#include "core/Gdi.h"
#include "support/FakeHost.h"
#include "support/TestImages.h"
#include "tools/ColorPicker.h"

#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// Red left of x = 20, blue from there on; view x + 0.5 reads image x at zoom 100.
struct Split : ToolBench {
    explicit Split(int tool)
    {
        paint([](int x, int) { return x < 20 ? RGB(255, 0, 0) : RGB(0, 0, 255); });
        state.CurrentTool = tool;
        state.LastTool = 0; // the picker stays
    }
    // A press, moves and a release (with no move there) along row 5.
    void mouse(QList<int> xs, int button = kLeftButton)
    {
        for (int i = 0; i < xs.size(); ++i) {
            const auto step = i == 0 ? PaintArea_MouseDown : i + 1 < xs.size() ? PaintArea_MouseMove : PaintArea_MouseUp;
            step(ctx, doc, button, 0, xs[i] + 0.5f, 5.5f);
        }
        if (xs.size() == 1)
            PaintArea_MouseUp(ctx, doc, button, 0, xs[0] + 0.5f, 5.5f);
    }
};

} // namespace

class tst_ColorTools : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void pickerSetsTheSwatchByButton_data()
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
    void pickerSetsTheSwatchByButton()
    {
        QFETCH(int, button);
        QFETCH(int, selIndex);
        QFETCH(Color, fore);
        QFETCH(Color, back);
        Split b(8);
        b.state.SelIndex = selIndex;
        b.mouse({5, 10, 30}, button);
        QCOMPARE(b.state.ForeColor, fore);
        QCOMPARE(b.state.BackColor, back);
        // The floating selection's transparency colour follows the foreground.
        QCOMPARE(b.state.TransparencyColor, fore);
        QCOMPARE(b.host.transparencyShown, fore);
        QVERIFY(b.host.colorChanges > 0);
        QCOMPARE(b.host.prepUndoCalls, 0);
    }

    void dragShowsTheColourUnderThePointer()
    {
        for (int tool : {8, 17}) {
            Split b(tool);
            PaintArea_MouseDown(b.ctx, b.doc, kLeftButton, 0, 5.5, 5.5);
            const Color source = b.state.ReplaceColors[0];
            PaintArea_MouseMove(b.ctx, b.doc, kLeftButton, 0, 25.5, 5.5);
            QCOMPARE(b.host.picked, RGB(0, 0, 255));
            QCOMPARE(b.state.ReplaceColors[0], source); // the replacer's swatch keeps the click
        }
    }

    void pickOutsideThePictureDoesNothing()
    {
        ToolBench b;
        b.state.CurrentTool = 8;
        b.state.ForeColor = RGB(1, 2, 3);
        PickColorAt(b.ctx, b.doc, 40, 3, 1);
        PickColorAt(b.ctx, b.doc, -1, 3, 2);
        b.dispatch(40, 3);
        QCOMPARE(b.host.picked, kNoColor);
        QCOMPARE(b.state.ReplaceColors, (std::array<Color, 2>{kNoColor, kNoColor}));
        QCOMPARE(b.state.ForeColor, RGB(1, 2, 3));
    }

    void replacerPicksSourceAndNewColour()
    {
        Split b(17);
        b.mouse({3});
        b.mouse({30}, kRightButton);
        QCOMPARE(b.state.ReplaceColors, (std::array<Color, 2>{RGB(255, 0, 0), RGB(0, 0, 255)}));
        QCOMPARE(b.host.replaceShown[1], RGB(0, 0, 255));
        QCOMPARE(b.host.contextMenus, 0); // the replacer's right click opens no menu
        QCOMPARE(b.state.CurrentTool, 17);
    }

    void armedTransparencyPick()
    {
        Split b(8);
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

    void replaceColor_data()
    {
        QTest::addColumn<Color>("from");
        QTest::addColumn<Color>("to");
        QTest::addColumn<int>("changed");
        QTest::newRow("red to green") << RGB(255, 0, 0) << RGB(0, 255, 0) << 3;
        QTest::newRow("equal colours: nothing") << RGB(255, 0, 0) << RGB(255, 0, 0) << 0;
        QTest::newRow("a colour not in the picture") << RGB(1, 2, 3) << RGB(0, 255, 0) << 0;
        QTest::newRow("nothing picked") << kNoColor << RGB(0, 255, 0) << 0;
    }
    void replaceColor()
    {
        QFETCH(Color, from);
        QFETCH(Color, to);
        QFETCH(int, changed);
        // Red, and its neighbours one step off in each channel, which must stay.
        const QHash<QChar, Color> palette{
            {u'r', RGB(255, 0, 0)}, {u'a', RGB(254, 0, 0)}, {u'b', RGB(255, 1, 0)}, {u'c', RGB(255, 0, 1)}};
        Surface s;
        s.setImage(ImageFromRows({"r.a.", ".rb.", "c..r"}, palette));
        const QImage before = s.Image().copy();
        QCOMPARE(ReplaceColor(s, from, to), changed);
        QCOMPARE(DifferingPixels(before, s.Image()), changed);
        if (changed)
            QCOMPARE(RowsOf(s, to), (QStringList{"#...", ".#..", "...#"}));
    }

    void cropMarqueeStaysInTheView_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QPointF>("press"); // image position of the pen
        QTest::addColumn<QPoint>("pointer");
        QTest::addColumn<QRectF>("box"); // in view pixels
        QTest::newRow("dragged up and left") << 100.0 << QPointF(15, 20) << QPoint(5, 6) << QRectF(5, 6, 10, 14);
        QTest::newRow("past the right and bottom") << 100.0 << QPointF(30, 20) << QPoint(55, 45)
                                                   << QRectF(30, 20, 10, 10);
        QTest::newRow("past the left and top") << 100.0 << QPointF(4, 3) << QPoint(-6, -2) << QRectF(0, 0, 4, 3);
        QTest::newRow("zoom 200") << 200.0 << QPointF(5, 6) << QPoint(15, 20) << QRectF(10, 12, 20, 28);
    }
    void cropMarqueeStaysInTheView()
    {
        QFETCH(double, zoom);
        QFETCH(QPointF, press);
        QFETCH(QPoint, pointer);
        QFETCH(QRectF, box);
        ToolBench b;
        b.doc.view.paintWidth = int(40 * zoom / 100) + 2;
        b.doc.view.paintHeight = int(30 * zoom / 100) + 2;
        b.doc.ZoomFactor = zoom;
        b.doc.SelectArea.Visible = true;
        b.state.CurrentTool = 7;
        b.doc.Buffer.CurrentX = press.x();
        b.doc.Buffer.CurrentY = press.y();
        b.dispatch(pointer.x(), pointer.y(), kLeftButton, false, zoom);
        const RectOverlay& c = b.doc.CropArea;
        QVERIFY(c.Visible && !b.doc.SelectArea.Visible);
        QCOMPARE(QRectF(c.Left, c.Top, c.Width, c.Height), box);
    }

    void cropOfAClickOrALineDoesNothing_data()
    {
        QTest::addColumn<QPointF>("release");
        QTest::newRow("a click") << QPointF(10.5, 10.5);
        QTest::newRow("straight down") << QPointF(10.5, 25.5);
        QTest::newRow("straight across") << QPointF(30.5, 10.5);
    }
    void cropOfAClickOrALineDoesNothing()
    {
        QFETCH(QPointF, release);
        ToolBench b;
        b.state.CurrentTool = 7;
        b.mouse({{10.5, 10.5}, release});
        QCOMPARE(QSize(b.doc.Buffer.ScaleWidth(), b.doc.Buffer.ScaleHeight()), QSize(40, 30));
        QCOMPARE(b.host.undoBitmaps, 0);
    }
};

QTEST_GUILESS_MAIN(tst_ColorTools)
#include "tst_colortools.moc"
