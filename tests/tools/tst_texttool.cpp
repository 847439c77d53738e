// The text tool in a real window: the box at the click, its colours and typing, the
// text applied where the box showed it or dropped; and a whole picture the way a child
// draws it (with VELUNTA_DRAWING_PNG set, the window is saved there).

#include "core/Gdi.h"
#include "document/PaintArea.h"
#include "document/frmPaint.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// The rectangle of dark pixels of a picture, within `inside`.
QRect darkBounds(const QImage& image, const QRect& inside)
{
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    QRect r;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        for (int x = inside.left(); x <= inside.right(); ++x)
            if (qGray(line[x]) < 100)
                r |= QRect(x, y, 1, 1);
    }
    return r;
}

// A drag in picture pixels through the window's pointer events, at the document's
// zoom; a click when both ends are the same.
void drag(MainWindowFixture& fx, frmPaint& form, QPointF from, QPointF to)
{
    const double f = form.doc.ZoomFactor / 100;
    fx.drag(form, from * f + QPointF(f / 2, f / 2), to * f + QPointF(f / 2, f / 2), 4);
}

} // namespace

class tst_TextTool : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // The box opens at the click, legible whatever the colours, and takes the typing, tool
    // letters and lines included; "Apply Text" draws the text where the box showed it.
    void appliedTextLandsWhereTheBoxShowedIt_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<bool>("background"); // "Show background in text window"
        QTest::addColumn<bool>("centred");
        QTest::addColumn<Color>("fore");
        QTest::addColumn<Color>("back");
        QTest::addColumn<Color>("box");
        const Color black = 0, white = 0xFFFFFF, red = RGB(255, 0, 0), yellow = RGB(255, 255, 0);
        QTest::newRow("100, the box in the background colour")
            << 100.0 << false << false << black << yellow << yellow;
        QTest::newRow("200, both red: a white box") << 200.0 << false << false << red << red << white;
        QTest::newRow("200, label over the picture") << 200.0 << true << false << black << white << white;
        QTest::newRow("100, centred") << 100.0 << false << true << black << white << white;
    }
    void appliedTextLandsWhereTheBoxShowedIt()
    {
        QFETCH(double, zoom);
        QFETCH(bool, background);
        QFETCH(bool, centred);
        QFETCH(Color, fore);
        QFETCH(Color, back);
        QFETCH(Color, box);
        MainWindowFixture fx;
        frmPaint* form = fx.newDocument(160, 90);
        form->PreDefZoom(zoom);
        DrawState& st = fx.main().state();
        st.TransparentText = background;
        st.CenterText = centred;
        st.SelectorValues[7].Value = 16;
        st.ForeColor = fore;
        st.BackColor = back;
        fx.main().Cmd_Click(12);
        drag(fx, *form, {25, 30}, {25, 30});
        QPlainTextEdit* input = form->TextInput();
        const double f = zoom / 100;
        if (!background) // the label shows the text instead, and the box is out of sight
            QCOMPARE(input->pos(), QPoint(int(25 * f) + 1, int(30 * f) + 1)); // inside the view's frame
        QCOMPARE(FromQColor(input->palette().color(QPalette::Base)), box);
        QCOMPARE(FromQColor(input->palette().color(QPalette::Text)), fore);
        if (centred) {
            QTest::keyClicks(input, QStringLiteral("Ho"));
            QTest::keyClick(input, Qt::Key_Return);
        }
        QTest::keyClicks(input, QStringLiteral("Hello"));
        QCOMPARE(form->doc.textBox.Text, centred ? QStringLiteral("Ho\r\nHello") : QStringLiteral("Hello"));
        QCOMPARE(fx.main().state().CurrentTool, 12);
        if (centred)
            QVERIFY(input->height() >= 2 * TextBoxLineHeight(form->doc.textBox));

        // Where the text shows on the view, in view pixels from the picture's origin.
        QWidget* shown = background ? static_cast<QWidget*>(form->lblTextInput()) : input;
        QVERIFY(shown->isVisible());
        form->paintArea()->setFocus(); // no text cursor in the picture of the box
        const QImage view = shown->grab().toImage();
        const int frame = background ? 0 : 1;
        const QRect inkInView = darkBounds(view, view.rect().adjusted(frame, frame, -frame, -frame))
                                    .translated(shown->pos() - QPoint(1, 1));
        QVERIFY(!inkInView.isEmpty());
        fx.main().ApplyText();
        QVERIFY(!input->isVisible());
        const QImage& picture = form->doc.Buffer.Image();
        const QRect ink = darkBounds(picture, picture.rect());
        QVERIFY(qAbs(ink.left() - inkInView.left() / f) <= 1.0 &&
                qAbs(ink.top() - inkInView.top() / f) <= 1.0);
        QVERIFY(form->doc.Dirty);
    }

    void pointerButtonAppliesOtherToolsDrop_data()
    {
        QTest::addColumn<int>("nextTool"); // -1: "Cancel Text"
        QTest::newRow("pointer button applies") << 0;
        QTest::newRow("another tool drops") << 1;
        QTest::newRow("Cancel Text drops") << -1;
    }
    void pointerButtonAppliesOtherToolsDrop()
    {
        QFETCH(int, nextTool);
        MainWindowFixture fx;
        frmPaint* form = fx.newDocument(80, 60);
        fx.main().Cmd_Click(12);
        drag(fx, *form, {10, 10}, {10, 10});
        QTest::keyClicks(form->TextInput(), QStringLiteral("Zoe"));
        if (nextTool < 0)
            fx.main().CancelText();
        else
            fx.main().Cmd_Click(nextTool);
        const QImage& picture = form->doc.Buffer.Image();
        QCOMPARE(!darkBounds(picture, picture.rect()).isEmpty(), nextTool == 0);
        QVERIFY(!form->TextInput()->isVisible());
        QVERIFY(form->doc.textBox.Text.isEmpty());
        QVERIFY(fx.main().builtOperations().contains(QStringLiteral("CancelText")));
    }

    // A gradient sky 200 rows deep, the white below it filled green, a red house in a
    // black border, a roof of two thick lines, a round sun filled only, and a name.
    void aChildsPicture()
    {
        MainWindowFixture fx;
        frmMain& main = fx.main();
        frmPaint* form = fx.newDocument(400, 320);
        DrawState& st = main.state();
        const Surface& picture = form->doc.Buffer;
        st.SelectorValues[5].Value = 2;
        st.SelectorValues[9].Value = 4;
        st.SelectorValues[7].Value = 20;
        st.FontStyle = QStringLiteral("Bold");
        const struct {
            int tool, shape;
            Color fore, back;
            QPointF from, to;
        } steps[] = {{4, 1, RGB(40, 90, 210), RGB(200, 230, 255), {0, 0}, {200, 0}},
                     {3, 1, RGB(70, 170, 60), 0, {10, 300}, {10, 300}},
                     {9, 1, 0, RGB(210, 60, 40), {120, 150}, {260, 250}},
                     {14, 1, 0, 0, {110, 152}, {190, 90}},
                     {14, 1, 0, 0, {190, 90}, {270, 152}},
                     {10, 2, RGB(255, 210, 0), 0, {300, 25}, {360, 85}},
                     {12, 2, RGB(20, 20, 120), 0, {150, 262}, {150, 262}}};
        for (const auto& step : steps) {
            st.ForeColor = step.fore;
            st.BackColor = step.back;
            st.ShapeStyle = step.shape;
            main.Cmd_Click(step.tool);
            drag(fx, *form, step.from, step.to);
        }
        QTest::keyClicks(form->TextInput(), QStringLiteral("Mia"));
        main.Cmd_Click(0); // the pointer button applies the text
        // Row 0 of the sky ends under the second strip: a step or two past the foreground.
        const Color top = GetPixel(picture, 5, 0);
        QVERIFY(qAbs(ColorRed(top) - 40) <= 2 && qAbs(ColorGreen(top) - 90) <= 2 &&
                qAbs(ColorBlue(top) - 210) <= 2);
        QCOMPARE(GetPixel(picture, 5, 199), RGB(200, 230, 255));
        QCOMPARE(GetPixel(picture, 10, 300), RGB(70, 170, 60));
        QCOMPARE(GetPixel(picture, 140, 180), RGB(210, 60, 40));
        QCOMPARE(GetPixel(picture, 120, 200), RGB(0, 0, 0));
        QCOMPARE(GetPixel(picture, 330, 55), RGB(255, 210, 0));
        QVERIFY(GetPixel(picture, 301, 26) != RGB(255, 210, 0));
        QVERIFY(RowsOf(picture, RGB(20, 20, 120)).mid(262, 40).join(QString()).count(u'#') > 30);
        QVERIFY(!form->TextInput()->isVisible());

        const QString shot = qEnvironmentVariable("VELUNTA_DRAWING_PNG");
        if (!shot.isEmpty()) {
            MainWindowFixture::settle();
            QVERIFY(main.grab().save(shot));
        }
    }
};

QTEST_MAIN(tst_TextTool)
#include "tst_texttool.moc"
