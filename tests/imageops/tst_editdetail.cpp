// Detailed Editing: the area it takes, the grid's painting, picking and undo, and the
// round trip from the click that picks the area to the picture written back.

#include "core/Gdi.h"
#include "document/frmPaint.h"
#include "imageops/frmEditDetail.h"
#include "support/FakeHost.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
#include "widgets/zolButton.h"

#include <QCheckBox>
#include <QLabel>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

void click(DetailGrid& grid, QPoint cell, Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mouseClick(&grid, button, {}, grid.cellCentre(cell));
}

} // namespace

class tst_EditDetail : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void areaAroundThePoint_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QPoint>("centre");
        QTest::addColumn<QRect>("area");
        QTest::newRow("middle") << QSize(640, 480) << QPoint(100, 100) << QRect(68, 68, 64, 64);
        QTest::newRow("top left corner") << QSize(640, 480) << QPoint(3, 2) << QRect(0, 0, 64, 64);
        QTest::newRow("bottom right corner")
            << QSize(640, 480) << QPoint(639, 479) << QRect(576, 416, 64, 64);
        QTest::newRow("picture smaller than the area")
            << QSize(20, 90) << QPoint(10, 45) << QRect(0, 13, 20, 64);
        QTest::newRow("point outside") << QSize(100, 100) << QPoint(-50, 500) << QRect(0, 36, 64, 64);
        QTest::newRow("empty picture") << QSize(0, 0) << QPoint(0, 0) << QRect();
    }
    void areaAroundThePoint()
    {
        QFETCH(QSize, picture);
        QFETCH(QPoint, centre);
        QFETCH(QRect, area);
        QCOMPARE(DetailArea(picture, centre), area);
    }

    void gridPaintsPicksAndUndoes()
    {
        frmEditDetail dialog(Pattern(16, 12), RGB(255, 0, 0), RGB(0, 0, 255));
        dialog.resize(500, 400);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        DetailGrid& grid = *dialog.grid();
        const QImage before = grid.image();
        QVERIFY(!dialog.cmdUndo()->isEnabled());

        click(grid, {1, 1});
        click(grid, {2, 1}, Qt::RightButton);
        QCOMPARE(FromQRgb(grid.image().pixel(1, 1)), RGB(255, 0, 0));
        QCOMPARE(FromQRgb(grid.image().pixel(2, 1)), RGB(0, 0, 255));
        // The live preview shows the area at its real size, as painted.
        QCOMPARE(dialog.picPreview()->pixmap().toImage().convertToFormat(QImage::Format_RGB32), grid.image());

        // A fast drag leaves no gap: every cell of the line between the two positions.
        QTest::mousePress(&grid, Qt::LeftButton, {}, grid.cellCentre({0, 5}));
        QMouseEvent move(QEvent::MouseMove, grid.cellCentre({9, 5}),
                         grid.mapToGlobal(grid.cellCentre({9, 5})), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(&grid, &move);
        QTest::mouseRelease(&grid, Qt::LeftButton, {}, grid.cellCentre({9, 5}));
        for (int x = 0; x <= 9; ++x)
            QCOMPARE(FromQRgb(grid.image().pixel(x, 5)), RGB(255, 0, 0));
        QCOMPARE(grid.image().pixel(10, 5), before.pixel(10, 5));
        QCOMPARE(grid.image().pixel(0, 4), before.pixel(0, 4));

        // The picker takes a cell's colour into the button that clicks it, once.
        const QImage beforePick = grid.image();
        dialog.cmdPicker()->click();
        QVERIFY(grid.picking());
        click(grid, {7, 7}, Qt::RightButton);
        QVERIFY(!grid.picking());
        QVERIFY(!dialog.cmdPicker()->Value());
        QCOMPARE(dialog.backColor(), FromQRgb(before.pixel(7, 7)));
        QCOMPARE(grid.image(), beforePick); // picking paints nothing
        click(grid, {3, 3}, Qt::RightButton);
        QCOMPARE(grid.image().pixel(3, 3), before.pixel(7, 7));

        // Undo goes back one stroke at a time, to the area as it came.
        for (int i = 0; i < 4; ++i) {
            QVERIFY(dialog.cmdUndo()->isEnabled());
            dialog.cmdUndo()->click();
        }
        QCOMPARE(grid.image(), before);
        QVERIFY(!dialog.cmdUndo()->isEnabled());
    }

    // The click that picks the area draws nothing, even with the pencil; OK writes back
    // exactly the area as one undo step, Cancel leaves the picture.
    void pickedAreaWritesBackAsOneUndoStep_data()
    {
        QTest::addColumn<bool>("ok");
        QTest::newRow("OK") << true;
        QTest::newRow("Cancel") << false;
    }
    void pickedAreaWritesBackAsOneUndoStep()
    {
        QFETCH(bool, ok);
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(Pattern(100, 80));
        const QImage original = form->doc.Buffer.Image().copy();
        m.Cmd(1)->click();
        m.state().ForeColor = RGB(10, 200, 30);
        m.PrepEditDetail();
        auto* armed = m.findChild<QCheckBox*>(QStringLiteral("chkDetailEdit"));
        QVERIFY(m.state().DetailPickerArmed && armed->isChecked());
        const int slot = m.undo().UndoWriteSlot;
        bool shown = false;
        WhenShown<frmEditDetail>([&](frmEditDetail& d) {
            QCOMPARE(d.result(), original.copy(18, 8, 64, 64));
            d.resize(600, 500);
            QApplication::processEvents();
            click(*d.grid(), {0, 0});
            click(*d.grid(), {63, 63});
            shown = true;
            ok ? d.accept() : d.reject();
        });
        f.drag(*form, {51, 41}, {51, 41}); // the view's frame puts the picture one pixel in
        QTRY_VERIFY(shown);
        QVERIFY(!m.state().DetailPickerArmed && !armed->isChecked());
        QImage expected = original;
        if (ok) {
            expected.setPixel(18, 8, ToQRgb(RGB(10, 200, 30)));
            expected.setPixel(81, 71, ToQRgb(RGB(10, 200, 30)));
        }
        QCOMPARE(form->doc.Buffer.Image(), expected);
        QCOMPARE(form->doc.Dirty, ok);
        QCOMPARE(m.undo().UndoWriteSlot, slot + (ok ? 1 : 0));
        if (ok) {
            m.Undo_Click();
            QCOMPARE(form->doc.Buffer.Image(), original);
        }
    }
};

QTEST_MAIN(tst_EditDetail)
#include "tst_editdetail.moc"
