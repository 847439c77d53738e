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
