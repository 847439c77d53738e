// The clipboard is shared with other programs: a picture copied in Velunta is a
// picture on the system clipboard, and one put there by another program pastes in.

#include "core/Gdi.h"
#include "document/frmPaint.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
#include "tools/frmControls.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

class tst_Clipboard : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void roundTripWithTheSystemClipboard()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(60, 40);
        const QImage outside = MakeImage(23, 17, [](int x, int y) { return RGB(x * 10, y * 12, 77); });
        QApplication::clipboard()->setImage(outside);
        m.ValidateMenus();
        QVERIFY(m.action(QStringLiteral("Paste"))->isEnabled());
        m.action(QStringLiteral("Paste"))->trigger();
        QVERIFY(form->doc.SelectArea.Visible);
        QVERIFY(m.undo().UndoDisabled);
        QCOMPARE(DifferingPixels(form->doc.BufferSelected.Image(), outside), 0);
        QCOMPARE(GetPixel(form->doc.Buffer, 22, 16), RGB(220, 192, 77));

        QApplication::clipboard()->clear();
        m.action(QStringLiteral("Copy"))->trigger();
        const QImage copied = QApplication::clipboard()->image();
        QCOMPARE(DifferingPixels(copied.convertToFormat(QImage::Format_RGB32), outside), 0);
        m.Cmd_Click(1); // a tool change ends the time of the paste
        QVERIFY(!m.undo().UndoDisabled);
    }

    void cutLeavesBackgroundAndPasteWorksInAnotherPicture()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* first = f.newDocument(30, 30, RGB(0, 200, 0));
        m.state().BackColor = RGB(250, 250, 250);
        m.SelectAll_Click();
        m.Cut_Click();
        QVERIFY(!first->doc.SelectArea.Visible);
        QCOMPARE(GetPixel(first->doc.Buffer, 10, 10), RGB(250, 250, 250));
        frmPaint* second = f.newDocument(50, 50);
        m.Paste_Click();
        QCOMPARE(GetPixel(second->doc.Buffer, 5, 5), RGB(0, 200, 0));
        m.PasteSpecial_Click();
        QCOMPARE(m.activeDocument()->doc.Buffer.ScaleWidth(), 30);
        QCOMPARE(m.activeDocument()->doc.Caption, QStringLiteral("Untitled - 100%"));
    }

    // The float's first drag starts where its marquee stands, whatever placed it last:
    // an earlier area at (30, 20) must not pull it there.
    void floatJumpsOnFirstDrag_data()
    {
        QTest::addColumn<QString>("placedBy");
        QTest::addColumn<double>("zoom");
        QTest::newRow("paste") << "paste" << 100.0;
        QTest::newRow("select all") << "select all" << 100.0;
        QTest::newRow("zoom") << "zoom" << 200.0;
    }
    void floatJumpsOnFirstDrag()
    {
        QFETCH(QString, placedBy);
        QFETCH(double, zoom);
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(80, 60);
        Document& doc = form->doc;
        m.Cmd_Click(5);
        f.drag(*form, {30, 20}, {40, 30});
        if (placedBy == QLatin1String("paste")) {
            m.Cmd_Click(0);
            f.drag(*form, {70, 55}, {70, 55}); // a press outside drops the area
            QApplication::clipboard()->setImage(MakeImage(12, 10, [](int, int) { return RGB(200, 0, 0); }));
            m.Paste_Click();
        } else if (placedBy == QLatin1String("select all")) {
            m.SelectAll_Click();
        } else {
            form->PreDefZoom(zoom);
        }
        m.Cmd_Click(0);
        const double z = zoom / 100;
        const QPointF start(doc.SelectArea.Left + 3 * z, doc.SelectArea.Top + 3 * z);
        const QPointF before(doc.BufferSelected.Left, doc.BufferSelected.Top);
        f.drag(*form, start, start + QPointF(10 * z, 6 * z), 3);
        // The anchor is kept in whole view pixels: the float may settle half a pixel off.
        QVERIFY2(std::abs(doc.BufferSelected.Left - (before.x() + 10)) <= 1 &&
                     std::abs(doc.BufferSelected.Top - (before.y() + 6)) <= 1,
                 qPrintable(QStringLiteral("from %1, %2 to %3, %4")
                                .arg(before.x())
                                .arg(before.y())
                                .arg(doc.BufferSelected.Left)
                                .arg(doc.BufferSelected.Top)));
    }

    void keyColourPickedWithThePicker()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(40, 40, RGB(255, 255, 255));
        QApplication::clipboard()->setImage(
            MakeImage(10, 10, [](int x, int) { return x < 5 ? RGB(255, 0, 0) : RGB(0, 0, 255); }));
        m.Paste_Click();
        m.Cmd_Click(0);
        auto* transparent = m.controls()->control<QCheckBox>(QStringLiteral("ChkTransparencyColor"));
        QVERIFY(transparent && transparent->isEnabled());
        transparent->click();
        // A click on the swatch arms the pick and hands over to the colour picker.
        QWidget* swatch = m.controls()->control<QWidget>(QStringLiteral("LblTransparencyColor"));
        QTest::mouseClick(swatch, Qt::LeftButton);
        MainWindowFixture::settle();
        QCOMPARE(m.state().CurrentTool, 8);
        m.PaintAreaMouseDown(*form, 1, 0, 3, 3); // a red pixel of the float
        m.PaintAreaMouseUp(*form, 1, 0, 3, 3);
        QCOMPARE(m.state().TransparencyColor, RGB(255, 0, 0));
        QCOMPARE(m.state().CurrentTool, 0);
        // Red shows what lies under the float; blue stays.
        QCOMPARE(GetPixel(form->doc.Buffer, 2, 2), RGB(255, 255, 255));
        QCOMPARE(GetPixel(form->doc.Buffer, 7, 2), RGB(0, 0, 255));
    }
};

QTEST_MAIN(tst_Clipboard)
#include "tst_clipboard.moc"
