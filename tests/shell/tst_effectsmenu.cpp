// The one-click filters in the running window: every Ambient Light entry, and grey,
// brighten and darken from the Image menu and the toolbar, change the picture (or only
// the floating selection) as one undo step; without a picture none can be chosen.

#include "core/Gdi.h"
#include "document/frmPaint.h"
#include "effects/fx/FxOnPicture.h"
#include "support/FakeHost.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QMenu>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

QImage colourful(int w, int h)
{
    return MakeImage(w, h,
                     [](int x, int y) { return RGB(40 + 5 * x, 60 + 4 * y, (x * 7 + y * 3) % 200 + 30); });
}

// -1: every channel darker or equal, and one darker; 1: lighter; 0: grey everywhere;
// 2: some lighter and some darker; 3: unchanged.
int direction(const QImage& before, const QImage& after)
{
    bool down = false, up = false, grey = true;
    for (int y = 0; y < before.height(); ++y) {
        const auto* a = reinterpret_cast<const QRgb*>(before.constScanLine(y));
        const auto* b = reinterpret_cast<const QRgb*>(after.constScanLine(y));
        for (int x = 0; x < before.width(); ++x) {
            for (int shift : {0, 8, 16}) {
                const int va = (a[x] >> shift) & 0xFF, vb = (b[x] >> shift) & 0xFF;
                down |= vb < va;
                up |= vb > va;
            }
            grey &= qRed(b[x]) == qGreen(b[x]) && qGreen(b[x]) == qBlue(b[x]);
        }
    }
    if (grey)
        return 0;
    if (!down && !up)
        return 3;
    return down && !up ? -1 : (up && !down ? 1 : 2);
}

void collectActions(QMenu* menu, QList<QAction*>& out)
{
    for (QAction* a : menu->actions()) {
        if (a->isSeparator())
            continue;
        out.append(a);
        if (a->menu())
            collectActions(a->menu(), out);
    }
}

} // namespace

class tst_EffectsMenu : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void ambientLightPresetChangesPictureAsOneUndoStep_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("expected"); // as direction(); the tones in between (Bronze...) mix
        for (const AmbientPreset& p : AmbientPresets()) {
            const int expected = p.grey ? 0 : (p.intensity == 255 ? 1 : (p.intensity == 0 ? -1 : 2));
            QTest::newRow(qPrintable(QString::fromLatin1(p.caption).remove(u'&')))
                << p.index << QString::fromLatin1(p.caption) << expected;
        }
    }
    void ambientLightPresetChangesPictureAsOneUndoStep()
    {
        QFETCH(int, index);
        QFETCH(QString, caption);
        QFETCH(int, expected);
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(colourful(30, 20));
        const QImage before = form->doc.Buffer.Image().copy();
        const int slot = m.undo().UndoWriteSlot;
        QAction* entry = m.action(MenuId::Greyscale, index);
        QVERIFY(entry && m.isBuilt(MenuId::Greyscale, index));
        QCOMPARE(entry->text(), caption);
        entry->trigger();
        QCOMPARE(direction(before, form->doc.Buffer.Image()), expected);
        QCOMPARE(m.undo().UndoWriteSlot, slot + 1);
        QVERIFY(form->doc.Dirty);
        m.Undo_Click();
        QCOMPARE(DifferingPixels(form->doc.Buffer.Image(), before), 0);
    }

    void imageMenuAndToolbarGreyBrightenDarken_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("step"); // 0: grey, else the change of each channel
        QTest::newRow("Convert to Grayscale") << "mnugrayscale" << 10 << 0;
        QTest::newRow("Brighten by 10%") << "mnuDoBright" << 14 << 10;
        QTest::newRow("Darken by 10%") << "mnuDoDark" << 15 << -10;
    }
    void imageMenuAndToolbarGreyBrightenDarken()
    {
        QFETCH(QString, entry);
        QFETCH(int, button);
        QFETCH(int, step);
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(colourful(30, 20));
        const QImage before = form->doc.Buffer.Image().copy();
        for (bool fromToolbar : {false, true}) {
            if (fromToolbar)
                m.CmdCommands(button)->click();
            else
                m.action(entry)->trigger();
            const QImage after = form->doc.Buffer.Image();
            if (step == 0) {
                QCOMPARE(direction(before, after), 0);
            } else {
                const Color b = FromQRgb(before.pixel(3, 4)), a = FromQRgb(after.pixel(3, 4));
                QCOMPARE(ColorRed(a), Clamp255(ColorRed(b) + step));
                QCOMPARE(ColorBlue(a), Clamp255(ColorBlue(b) + step));
            }
            m.Undo_Click();
            QCOMPARE(DifferingPixels(form->doc.Buffer.Image(), before), 0);
        }
    }

    void presetOnSelectionChangesOnlyTheSelection()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(colourful(30, 20));
        Document& doc = form->doc;
        const QImage under = doc.Buffer.Image().copy();
        Surface& sel = ShowFloat(doc, {4, 5, 10, 8}, RGB(200, 120, 40));
        m.action(MenuId::Greyscale, 3)->trigger(); // "Red Dark"
        QCOMPARE(GetPixel(sel, 2, 2), RGB(200, 0, 0));
        // Outside the selection the picture is as it was.
        QCOMPARE(GetPixel(doc.Buffer, 20, 2), FromQRgb(under.pixel(20, 2)));
        QCOMPARE(GetPixel(doc.Buffer, 2, 18), FromQRgb(under.pixel(2, 18)));
    }

    void withoutDocumentEveryFilterEntryIsDisabled()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        QList<QAction*> entries;
        collectActions(m.menu(MenuId::Filters), entries);
        QVERIFY(entries.size() > 30);
        const QStringList mine = {"mnugrayscale", "mnuDoBright", "mnuDoDark", "mnuBright", "mnuDark"};
        auto check = [&](bool document) {
            m.Filters_Click();
            for (QAction* a : entries)
                if (m.isBuilt(a->objectName()) || a->menu())
                    QVERIFY2(a->isEnabled() == document, qPrintable(a->objectName()));
            for (const QString& name : mine)
                if (m.isBuilt(name))
                    QVERIFY2(m.action(name)->isEnabled() == document, qPrintable(name));
            for (int button : {10, 14, 15})
                QCOMPARE(m.CmdCommands(button)->isEnabled(), document);
        };
        check(false);
        QVERIFY(!m.menu(MenuId::Filters)->menuAction()->isEnabled());
        frmPaint* form = f.newDocument();
        check(true);
        // The reverse blends open as submenus with a picture.
        QVERIFY(m.menu(MenuId::mnuReverseBlendH)->menuAction()->isEnabled());
        QVERIFY(m.menu(MenuId::mnuReverseBlendV)->menuAction()->isEnabled());
        form->closeWithoutQuestion();
        f.settle();
        check(false);
    }
};

QTEST_MAIN(tst_EffectsMenu)
#include "tst_effectsmenu.moc"
