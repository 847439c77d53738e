// The View menu on a real window: the zoom marks, the grid as a toggle in view pixels,
// Grid SetUp's constrain and its Apply, the guideline style kept at once, and the
// zoomed views showing exact pixels.

#include "core/Gdi.h"
#include "core/SettingsStore.h"
#include "document/PaintArea.h"
#include "document/frmPaint.h"
#include "shell/frmGridSetup.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

class tst_View : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void zoomMenuMarks_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<int>("marked"); // -1: none
        QTest::newRow("100") << 100.0 << 100;
        QTest::newRow("25") << 25.0 << 25;
        QTest::newRow("110: none") << 110.0 << -1;
        QTest::newRow("75.5: the whole part") << 75.5 << 75;
    }
    void zoomMenuMarks()
    {
        QFETCH(double, zoom);
        QFETCH(int, marked);
        MainWindowFixture f;
        frmPaint* form = f.newDocument(40, 30);
        form->PreDefZoom(zoom);
        QCOMPARE(form->doc.Caption, QStringLiteral("Untitled - ") + NumberText(zoom) + QStringLiteral("%"));
        f.main().mnuView_Click();
        for (int z : {10, 25, 50, 75, 100, 150, 200})
            QCOMPARE(f.main().action(QStringLiteral("mnuZooms(%1)").arg(z))->isChecked(), z == marked);
    }

    void gridKeepsViewPixelsAcrossZooms()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument(100, 50);
        f.main().state().GridX = 20;
        f.main().state().GridY = 10;
        form->PreDefZoom(200);
        f.main().action(QStringLiteral("mnuShowGrid"))->trigger();
        QVERIFY(form->doc.GridIsShown);
        QCOMPARE(form->doc.GridColumns.first(), 20);
        QCOMPARE(form->doc.GridColumns.size(), 9); // 20..180 in a 200-pixel view
        QCOMPARE(form->doc.GridRows.size(), 9);
        form->PreDefZoom(100); // not rebuilt: the lines keep their view pixels
        QCOMPARE(form->doc.GridColumns.size(), 9);
        f.main().action(QStringLiteral("mnuShowGrid"))->trigger();
        QVERIFY(!form->doc.GridIsShown);
        QVERIFY(form->doc.GridColumns.isEmpty());
    }

    void gridSetupConstrainAndApply()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument(100, 100);
        form->doc.DrawGrid(10, 10, 0);
        GridSettings before;
        before.GridX = 0; // a step below 1 becomes 10
        before.GridY = 15;
        SettingsStore store;
        frmGridSetup dialog(before, f.prompt, store);
        QCOMPARE(dialog.txtGrid(0)->text(), QStringLiteral("10"));
        dialog.txtGrid(1)->setText(QStringLiteral("0")); // 0 doesn't reach the spin
        QCOMPARE(dialog.VScroll1(1)->value(), 15);
        dialog.Constrain()->click();
        QCOMPARE(dialog.VScroll1(1)->value(), 10);
        QVERIFY(!dialog.txtGrid(1)->isEnabled());
        dialog.VScroll1(0)->setValue(25);
        QCOMPARE(dialog.txtGrid(1)->text(), QStringLiteral("25"));
        dialog.chkSnap()->setChecked(true);
        f.main().ApplyGridSettings(dialog.settings());
        QVERIFY(f.main().state().SnapToGrid);
        QVERIFY(f.main().chkSnapGrid()->isChecked());
        // A shown grid is laid again with the new steps.
        QVERIFY(form->doc.GridIsShown);
        QCOMPARE(form->doc.GridColumns.first(), 25);
        dialog.SaveSettings();
        QCOMPARE(store.GetSetting(QStringLiteral("GridX")), QStringLiteral("25"));
        QCOMPARE(f.prompt.shown.last().title, QStringLiteral("Save Grid Settings"));
    }

    void guideLineStyleIsKeptAtOnce()
    {
        MainWindowFixture f;
        f.newDocument(20, 20);
        f.main().action(QStringLiteral("mnuGuideLineStyles(3)"))->trigger();
        QCOMPARE(SettingsStore().GetSetting(QStringLiteral("GuideLineStyle")), QStringLiteral("3"));
        QCOMPARE(f.main().activeDocument()->doc.Line1.BorderStyle, 3);
        QVERIFY(f.main().action(QStringLiteral("mnuGuideLineStyles(3)"))->isChecked());
        QVERIFY(!f.main().action(QStringLiteral("mnuGuideLineStyles(2)"))->isChecked());
    }

    void zoomedViewShowsNearestPixels_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::newRow("500") << 500.0;
        QTest::newRow("50") << 50.0;
        QTest::newRow("back to 100") << 100.0;
    }
    void zoomedViewShowsNearestPixels()
    {
        QFETCH(double, zoom);
        MainWindowFixture f;
        frmPaint* form = f.newDocument(30, 20);
        form->doc.Buffer.setImage(MakeImage(30, 20, [](int x, int y) { return RGB(x * 8, y * 12, (x + y) % 2 ? 255 : 0); }));
        form->PreDefZoom(zoom == 100.0 ? 300 : zoom);
        form->PreDefZoom(zoom);
        form->doc.Line1.Visible = form->doc.Line2.Visible = false; // the guidelines stand at 0, 0
        PaintArea* area = form->paintArea();
        // The view inside its one-pixel frame.
        const QImage shown = area->grab().toImage().copy(1, 1, area->width() - 2, area->height() - 2);
        const double z = zoom / 100.0;
        for (QPoint v : {QPoint(0, 0), QPoint(7, 3), QPoint(shown.width() - 1, shown.height() - 1)}) {
            const int sx = std::min(29, int(v.x() / z)), sy = std::min(19, int(v.y() / z));
            QCOMPARE(FromQRgb(shown.pixel(v)), GetPixel(form->doc.Buffer, sx, sy));
        }
    }
};

QTEST_MAIN(tst_View)
#include "tst_view.moc"
