// Picture commands in the running window: a fault half way through leaves the window
// usable and the picture as its undo step holds it, a command on a selection changes
// only the selection, Esc stops a long one, and a command that changes nothing leaves
// the picture clean. And the menu table: every entry is built or disabled by its rule,
// and Easy Mode hides exactly its list.

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/ImageCommand.h"
#include "document/frmPaint.h"
#include "shell/ProgressStrip.h"
#include "support/FakeHost.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
#include "tools/frmControls.h"

#include <QApplication>
#include <QClipboard>
#include <QMenuBar>
#include <QSet>
#include <QToolButton>
#include <QtTest>

#include <stdexcept>

using namespace velunta;
using namespace velunta::test;

namespace {

// Every pixel of the target inverted, a column at a time.
void invertColumns(ImageCommand& c, int columns)
{
    QImage& image = c.target().Image();
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < std::min(columns, image.width()); ++x)
            line[x] ^= 0x00FFFFFF;
    }
}

} // namespace

class tst_Commands : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void faultHalfWayLeavesWindowUsableAndPictureAsUndoHoldsIt_data()
    {
        QTest::addColumn<int>("fault");
        QTest::addColumn<bool>("progress");
        QTest::addColumn<bool>("selection");
        QTest::newRow("overflow, long, picture") << 0 << true << false;
        QTest::newRow("overflow, instant, selection") << 0 << false << true;
        QTest::newRow("no memory, long, selection") << 1 << true << true;
        QTest::newRow("any fault, instant, picture") << 2 << false << false;
    }
    void faultHalfWayLeavesWindowUsableAndPictureAsUndoHoldsIt()
    {
        QFETCH(int, fault);
        QFETCH(bool, progress);
        QFETCH(bool, selection);
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(Pattern(40, 30));
        Document& doc = form->doc;
        if (selection) {
            ShowFloat(doc, {5, 6, 12, 10}, RGB(9, 99, 199));
            UpdateView(doc, doc.Buffer, 0, 0, 100);
        }
        const QImage picture = doc.Buffer.Image().copy();
        const QImage floating = doc.BufferSelected.Image().copy();
        bool busyInside = false;
        const bool changed = RunImageCommand(m, {.name = "test", .progress = progress}, [&](ImageCommand& c) {
            invertColumns(c, 6);
            c.progress(0.5);
            busyInside = QApplication::overrideCursor() && m.progress()->isVisible() == progress &&
                         m.menuBar()->isEnabled() == !progress;
            if (fault == 0)
                I2(40000.0);
            if (fault == 1)
                throw std::bad_alloc();
            throw std::runtime_error("refused");
        });
        QVERIFY(busyInside);
        QVERIFY(!changed);
        QVERIFY(WindowUsable(m));
        QVERIFY(!doc.Dirty);
        const QImage slot = doc.UndoSlots[m.undo().UndoWriteSlot - 1]->toImage();
        QCOMPARE(DifferingPixels(slot, picture), 0);
        QCOMPARE(DifferingPixels(doc.Buffer.Image(), picture), 0);
        QCOMPARE(DifferingPixels(doc.BufferSelected.Image(), floating), 0);
        // The next command runs as ever.
        QVERIFY(RunImageCommand(m, {}, [](ImageCommand& c) { invertColumns(c, 1); }));
        QVERIFY(doc.Dirty);
    }

    void commandOnSelectionChangesOnlyTheSelection()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(Pattern(40, 30));
        Document& doc = form->doc;
        const QRect where(8, 4, 10, 12);
        Surface& sel = ShowFloat(doc, where, RGB(200, 10, 10));
        doc.SelectionLifted = false;
        const QImage around = doc.Buffer.Image().copy();
        QVERIFY(RunImageCommand(m, {.name = "invert"}, [&](ImageCommand& c) {
            QCOMPARE(&c.target(), &sel);
            invertColumns(c, 100);
        }));
        QCOMPARE(GetPixel(sel, 3, 3), RGB(55, 245, 245));
        // The stamp put the changed float in the picture; around it nothing moved.
        QImage expected = around;
        for (int y = where.top(); y <= where.bottom(); ++y)
            for (int x = where.left(); x <= where.right(); ++x)
                expected.setPixel(x, y, ToQRgb(RGB(55, 245, 245)));
        QCOMPARE(DifferingPixels(doc.Buffer.Image(), expected), 0);
        // The float's pixels before the command were kept to move back from.
        QCOMPARE(GetPixel(doc.SelectedBack, 3, 3), RGB(200, 10, 10));
        // Asked for the whole picture, a command takes Buffer though a selection shows.
        RunImageCommand(m, {.wholePicture = true},
                        [&](ImageCommand& c) { QCOMPARE(&c.target(), &doc.Buffer); });
    }

    void escapeStopsALongCommand()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        f.newDocument(20, 20);
        int columns = 0;
        RunImageCommand(m, {.progress = true}, [&](ImageCommand& c) {
            for (; columns < 20; ++columns) {
                if (columns == 5)
                    QTest::keyClick(m.progress(), Qt::Key_Escape);
                if (c.progress(columns / 20.0))
                    break;
            }
        });
        QCOMPARE(columns, 5);
        QVERIFY(WindowUsable(m));
    }

    void commandThatChangesNothingLeavesPictureClean()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(20, 20);
        const int slot = m.undo().UndoWriteSlot;
        // Decided against before it ran (a cancelled dialog): no undo step either.
        ImageCommand cancelled(m, {});
        QVERIFY(cancelled);
        QCOMPARE(m.undo().UndoWriteSlot, slot);
        QVERIFY(!RunImageCommand(m, {}, [](ImageCommand&) { return false; }));
        QVERIFY(!form->doc.Dirty);
        form->closeWithoutQuestion();
        MainWindowFixture::settle();
        // Without a picture there is nothing to run on.
        bool ran = false;
        QVERIFY(!RunImageCommand(m, {}, [&](ImageCommand&) { ran = true; }));
        QVERIFY(!ran);
    }

    void toolCommandRunsOnItsHost()
    {
        // The crop's runner takes the resize undo through its host, and says the size changed.
        ToolBench b(40, 30);
        b.state.CurrentTool = 7;
        b.mouse({{5.5, 5.5}, {20.5, 15.5}});
        QCOMPARE(b.doc.Buffer.ScaleWidth(), 15);
        QCOMPARE(b.host.undoBitmaps, 1);
        QCOMPARE(b.host.resizes, 1);
        QCOMPARE(b.host.prepUndoCalls, 2); // the stroke's press and release, none of the crop's own
        QVERIFY(b.host.busy.isEmpty());
    }

    void menuTableIsConsistent()
    {
        QSet<QString> names;
        QHash<int, QString> nameOfId;
        QSet<int> menus = {int(MenuId::None)};
        for (const MenuRow& row : frmMain::MenuRows()) {
            const QString name = QString::fromLatin1(row.name) +
                                 (row.index < 0 ? QString() : QStringLiteral("(%1)").arg(row.index));
            QVERIFY2(!names.contains(name), qPrintable(name));
            names.insert(name);
            QCOMPARE(nameOfId.value(int(row.id), QString::fromLatin1(row.name)),
                     QString::fromLatin1(row.name));
            nameOfId.insert(int(row.id), QString::fromLatin1(row.name));
            QVERIFY2(menus.contains(int(row.menu)), qPrintable(name)); // its menu stands before it
            if (row.kind == MenuKind::Submenu)
                menus.insert(int(row.id));
        }
    }

    void everyEntryIsBuiltOrDisabledByItsRule()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        auto check = [&](const char* state) {
            for (const MenuRow& row : frmMain::MenuRows()) {
                QAction* a = m.action(row.id, row.index);
                QVERIFY2(a, row.name);
                if (row.kind == MenuKind::Command && !row.handler)
                    QVERIFY2(!a->isEnabled(), qPrintable(a->objectName() + u' ' + QLatin1String(state)));
            }
            for (int i = 0; i < int(frmMain::ToolbarRows().size()); ++i)
                if (!frmMain::ToolbarRows()[i].handler)
                    QVERIFY(!m.CmdCommands(i)->isEnabled());
        };
        check("with no picture");
        frmPaint* form = f.newDocument();
        form->doc.SelectArea.Visible = true;
        QApplication::clipboard()->setImage(Pattern(4, 4));
        m.ValidateMenus();
        check("with everything");
        // The rules, by one entry of each.
        QVERIFY(m.action(MenuId::Cut)->isEnabled());
        QVERIFY(m.action(MenuId::Paste)->isEnabled());
        QVERIFY(m.action(MenuId::mnugrabmask)->isVisible());
        QVERIFY(m.action(MenuId::ArrHorizontal)->isEnabled());
        QVERIFY(!m.action(MenuId::UndoResize)->isEnabled());
        form->doc.SelectArea.Visible = false;
        QApplication::clipboard()->clear();
        m.ValidateMenus();
        QVERIFY(!m.action(MenuId::Cut)->isEnabled() && !m.CmdCommands(4)->isEnabled());
        QVERIFY(!m.action(MenuId::Paste)->isEnabled() && !m.CmdCommands(6)->isEnabled());
        QVERIFY(!m.action(MenuId::mnugrabmask)->isVisible());
        QVERIFY(m.action(MenuId::mnuExportBMP)->isEnabled());
        // The option panels ask for commands by name: each is an operation of the window,
        // one of the float's check boxes, or a menu entry.
        for (const QString& name : m.controls()->operationNames())
            QVERIFY2(m.builtOperations().contains(name) || name == op::BlendThePic ||
                         name == op::DoTransparent || m.action(name),
                     qPrintable(name));
    }

    void easyModeHidesExactlyItsList()
    {
        const QSet<QString> expected = {"mnuExport",
                                        "mnuImport",
                                        "split022",
                                        "mnuSelTwain",
                                        "mnuAcquire",
                                        "split033",
                                        "mnuBezier",
                                        "mnuPolygons",
                                        "niks002",
                                        "mnuCopyTo",
                                        "mnuPasteFrom",
                                        "split023",
                                        "PasteSpecial",
                                        "mnuPasteBlend",
                                        "mnuBlendIt",
                                        "split052",
                                        "split003",
                                        "mnuWindowAutoSizePosition",
                                        "ArrHorizontal",
                                        "ArrVertival",
                                        "Cascade",
                                        "split045",
                                        "mnufitbigimages",
                                        "mnustartblankpage",
                                        "mnumaximizeonopen",
                                        "mnuextra1",
                                        "mnuextra2",
                                        "mnuextra3",
                                        "niks052",
                                        "niks036",
                                        "mnucolordepth",
                                        "menuExGridSetup",
                                        "niks12",
                                        "niks7"};
        MainWindowFixture f;
        frmMain& m = f.main();
        QList<QAction*> shown;
        for (const MenuRow& row : frmMain::MenuRows())
            if (m.action(row.id, row.index)->isVisible())
                shown << m.action(row.id, row.index);
        m.action(MenuId::mnuKidsMode)->trigger();
        QSet<QString> hidden;
        for (QAction* a : shown)
            if (!a->isVisible())
                hidden.insert(a->objectName());
        QCOMPARE(hidden, expected);
        m.action(MenuId::mnuKidsMode)->trigger();
        for (QAction* a : shown)
            QVERIFY2(a->isVisible(), qPrintable(a->objectName()));
    }
};

QTEST_MAIN(tst_Commands)
#include "tst_commands.moc"
