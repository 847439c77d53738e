// Picture commands in the running window: each, from the menu or the toolbar, on the
// picture or only the floating selection, is one undo step; every Ambient Light entry
// applies its own light; resize and Undo Resize give the exact picture back; sizes the
// memory refuses, the angle that divides by 0 and a cancelled dialog leave the picture.
// A fault half way through leaves the window usable and the picture as its undo step
// holds it, Esc stops a long command, and one that changes nothing leaves the picture
// clean. And the menu table: every entry is built or disabled by its rule, none can be
// chosen without a picture, and Easy Mode hides exactly its list.

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/ImageCommand.h"
#include "document/frmPaint.h"
#include "effects/fx/FxOnPicture.h"
#include "imageops/Blend.h"
#include "imageops/CanvasOps.h"
#include "imageops/Pictures.h"
#include "imageops/frmBrightContrast.h"
#include "imageops/frmRotate.h"
#include "imageops/frmSize.h"
#include "shell/ProgressStrip.h"
#include "support/FakeHost.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
#include "tools/frmControls.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QSet>
#include <QSlider>
#include <QtTest>

#include <functional>
#include <numeric>
#include <stdexcept>

using namespace velunta;
using namespace velunta::test;

namespace {

using Command = std::function<void(frmMain&)>;
// What the command makes of its target's pixels.
using Expected = std::function<QImage(const QImage&)>;

QImage adjusted(const QImage& image, bool brightness, int value)
{
    QImage out = image.copy();
    MapChannels(image, out, image.rect(), brightness ? BrightnessTable(value) : ContrastTable(value));
    return out;
}

Command adjust(int index, int value)
{
    return [index, value](frmMain& m) {
        WhenShown<frmBrightContrast>([value](frmBrightContrast& d) {
            d.HScroll1()->setValue(value);
            d.cmdOk()->click();
        });
        m.mnuImgeffects_Click(index);
    };
}

Command trigger(MenuId id, int index = -1)
{
    return [id, index](frmMain& m) { m.action(id, index)->trigger(); };
}

Command button(int index)
{
    return [index](frmMain& m) { m.CmdCommands(index)->click(); };
}

Expected fx(int mode)
{
    return [mode](const QImage& image) {
        return Changed(image, [mode](Surface& s) { FxOnPicture(s, mode, 0, 0); });
    };
}

Expected reversed(bool vertical, int index)
{
    return [=](const QImage& image) {
        return Changed(image, [=](Surface& s) { ReverseBlendPicture(s, vertical, index, {}); });
    };
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

Expected turned(float angle)
{
    return [angle](const QImage& image) {
        QImage out = image.copy();
        RotatePicture(out, image, angle);
        return out;
    };
}

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

Q_DECLARE_METATYPE(Command)
Q_DECLARE_METATYPE(Expected)

class tst_Commands : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void commandChangesOnlyItsTargetInOneUndoStep_data()
    {
        QTest::addColumn<Command>("command");
        QTest::addColumn<Expected>("expected");
        QTest::addColumn<bool>("selection");
        const QList<std::tuple<const char*, Command, Expected>> commands = {
            {"flip horizontal", [](frmMain& m) { m.FlipHorizontal_Click(); }, &FlippedHorizontally},
            {"flip vertical", [](frmMain& m) { m.FlipVertical_Click(); }, &FlippedVertically},
            {"invert", [](frmMain& m) { m.InvertImage_Click(); }, &Inverted},
            {"rotate 45", [](frmMain& m) { m.mnurotates_Click(0); }, turned(MenuRotationAngle(0))},
            {"rotate 90", [](frmMain& m) { m.mnurotates_Click(1); }, turned(MenuRotationAngle(1))},
            {"rotate 180", [](frmMain& m) { m.mnurotates_Click(2); }, turned(MenuRotationAngle(2))},
            {"brightness", adjust(0, 45), [](const QImage& i) { return adjusted(i, true, 45); }},
            {"contrast", adjust(1, -30), [](const QImage& i) { return adjusted(i, false, -30); }},
            {"grey from the menu", trigger(MenuId::mnugrayscale), fx(0)},
            {"grey from the toolbar", button(10), fx(0)},
            {"brighten from the menu", trigger(MenuId::mnuDoBright), fx(1)},
            {"brighten from the toolbar", button(14), fx(1)},
            {"darken from the menu", trigger(MenuId::mnuDoDark), fx(2)},
            {"darken from the toolbar", button(15), fx(2)},
            {"reverse blend, horizontal mirror", trigger(MenuId::mnuReverseBlendH1, 3), reversed(false, 3)},
            {"reverse blend, vertical blue", trigger(MenuId::mnuReverseBlendV1, 7), reversed(true, 7)},
        };
        for (const auto& [name, command, expected] : commands) {
            QTest::newRow(QByteArray(QByteArray(name) + " on the picture").constData())
                << command << expected << false;
            QTest::newRow(QByteArray(QByteArray(name) + " on a selection").constData())
                << command << expected << true;
        }
        for (const AmbientPreset& p : AmbientPresets()) // Effects > Ambient Light; "Red Dark" on a selection
            QTest::newRow(qPrintable(QString::fromLatin1(p.caption).remove(u'&')))
                << trigger(MenuId::Greyscale, p.index) << Expected([&p](const QImage& i) {
                       return Changed(i, [&p](Surface& s) { ApplyAmbientPreset(s, p); });
                   })
                << (p.index == 3);
    }
    void commandChangesOnlyItsTargetInOneUndoStep()
    {
        QFETCH(Command, command);
        QFETCH(Expected, expected);
        QFETCH(bool, selection);
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(Pattern(48, 36));
        Document& doc = form->doc;
        const QRect where(9, 5, 21, 14);
        if (selection) {
            ShowFloat(doc, where, 0).setImage(Pattern(where.width(), where.height(), 99));
            UpdateView(doc, doc.Buffer, 0, 0, 100);
        }
        const QImage before = doc.Buffer.Image().copy();
        const QImage target = selection ? doc.BufferSelected.Image().copy() : before;
        const int slot = m.undo().UndoWriteSlot;

        command(m);

        QCOMPARE(m.undo().UndoWriteSlot, slot + 1);
        QVERIFY(doc.Dirty);
        QVERIFY(m.action(MenuId::Undo)->isEnabled());
        const QImage result = expected(target);
        QVERIFY(result != target);
        if (selection) {
            QCOMPARE(doc.BufferSelected.Image(), result);
            QImage around = before;
            for (int y = 0; y < where.height(); ++y)
                for (int x = 0; x < where.width(); ++x)
                    around.setPixel(where.x() + x, where.y() + y, result.pixel(x, y));
            QCOMPARE(DifferingPixels(doc.Buffer.Image(), around), 0);
        } else {
            QCOMPARE(doc.Buffer.Image(), result);
        }
        // One undo gives the exact picture back.
        m.CmdCommands(7)->click();
        QCOMPARE(doc.Buffer.Image(), before);
    }

    // What the Ambient Light entries apply does what their names say: each "Dark" light
    // never lightens a channel, and the "Light" of its colour, just above it, never darkens.
    void ambientLightsDoWhatTheirNamesSay()
    {
        const QImage card = Pattern(24, 16);
        auto lit = [&](const AmbientPreset& p) {
            return Changed(card, [&](Surface& s) { ApplyAmbientPreset(s, p); });
        };
        int pairs = 0;
        for (const AmbientPreset& dark : AmbientPresets()) {
            if (!QByteArray(dark.caption).contains("Dark"))
                continue;
            const AmbientPreset* light = AmbientPresetAt(dark.index - 1);
            QVERIFY(light && QByteArray(light->caption).contains("Light") && light->color == dark.color);
            const QImage darker = lit(dark), lighter = lit(*light);
            QVERIFY2(darker != card && lighter != card, dark.caption);
            for (int y = 0; y < card.height(); ++y)
                for (int x = 0; x < card.width(); ++x) {
                    const QRgb o = card.pixel(x, y), d = darker.pixel(x, y), l = lighter.pixel(x, y);
                    QVERIFY2(qRed(d) <= qRed(o) && qGreen(d) <= qGreen(o) && qBlue(d) <= qBlue(o),
                             dark.caption);
                    QVERIFY2(qRed(l) >= qRed(o) && qGreen(l) >= qGreen(o) && qBlue(l) >= qBlue(o),
                             light->caption);
                }
            ++pairs;
        }
        QCOMPARE(pairs, 6);
    }

    void resizeThenUndoResizeRestoresTheExactPicture_data()
    {
        QTest::addColumn<bool>("toolbar");
        QTest::newRow("Edit > Undo Resize") << false;
        QTest::newRow("the toolbar's undo") << true;
    }
    void resizeThenUndoResizeRestoresTheExactPicture()
    {
        QFETCH(bool, toolbar);
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(Pattern(40, 30));
        Document& doc = form->doc;
        const QImage before = doc.Buffer.Image().copy();
        form->PreDefZoom(200);
        ShowFloat(doc, QRect(2, 2, 5, 5), RGB(1, 2, 3));
        WhenShown<frmSize>([](frmSize& d) {
            QCOMPARE(d.TxtWidth()->text(), QStringLiteral("40"));
            d.Check1()->setChecked(false);
            d.TxtWidth()->setText(QStringLiteral("97"));
            d.TxtHeight()->setText(QStringLiteral("13"));
            d.Command1_Click();
        });
        m.ImageSize_Click();
        // The zoom went back to 100 and the selection was put down first.
        QCOMPARE(doc.ZoomFactor, 100.0);
        QVERIFY(!doc.SelectArea.Visible);
        QCOMPARE(QSize(doc.Buffer.ScaleWidth(), doc.Buffer.ScaleHeight()), QSize(97, 13));
        QVERIFY(doc.Dirty);
        QVERIFY(m.action(MenuId::UndoResize)->isEnabled() && m.CmdCommands(7)->isEnabled());
        if (toolbar)
            m.CmdCommands_Click(7);
        else
            m.action(MenuId::UndoResize)->trigger();
        QImage expected = before;
        QPainter(&expected).fillRect(2, 2, 5, 5, QColor(1, 2, 3)); // the selection put down stays
        QCOMPARE(doc.Buffer.Image(), expected);
        QVERIFY(!m.action(MenuId::UndoResize)->isEnabled());
    }

    void sizeTheMemoryRefusesLeavesThePicture()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(40, 30);
        const QImage before = form->doc.Buffer.Image().copy();
        QVERIFY(!m.ResizeImage(100000, 100000));
        QCOMPARE(f.prompt.shown.size(), 1);
        QVERIFY(f.prompt.shown[0].text.contains(QStringLiteral("100000 x 100000")));
        QCOMPARE(form->doc.Buffer.Image(), before);
        QVERIFY(!form->doc.Dirty);
        QVERIFY(!m.action(MenuId::UndoResize)->isEnabled());
    }

    void typedAnglesTurnOrLeaveThePicture_data()
    {
        QTest::addColumn<QString>("angle");
        QTest::addColumn<bool>("turns");
        QTest::newRow("100 snaps to the menu's 90") << QStringLiteral("100") << true;
        QTest::newRow("360 divides by 0: nothing turns") << QStringLiteral("360") << false;
    }
    void typedAnglesTurnOrLeaveThePicture()
    {
        QFETCH(QString, angle);
        QFETCH(bool, turns);
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(Pattern(30, 20));
        const QImage before = form->doc.Buffer.Image().copy();
        const int slot = m.undo().UndoWriteSlot;
        WhenShown<frmRotate>([angle](frmRotate& d) {
            d.TxtAngle()->setText(angle);
            d.Command1_Click();
        });
        m.mnurotates_Click(4);
        QVERIFY(f.prompt.shown.isEmpty());
        QCOMPARE(form->doc.Dirty, turns);
        QCOMPARE(m.undo().UndoWriteSlot, turns ? slot + 1 : slot);
        QCOMPARE(form->doc.Buffer.Image(), turns ? turned(MenuRotationAngle(1))(before) : before);
        // Cancelled, the picture stays too.
        WhenShown<frmRotate>([](frmRotate& d) { d.reject(); });
        m.mnurotates_Click(4);
        QCOMPARE(m.RotateDivisor, -1);
    }

    void eraseImagePutsDownTheSelectionAndFillsThePicture_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("colour");
        QTest::newRow("white") << 0 << RGB(255, 255, 255);
        QTest::newRow("black") << 1 << RGB(0, 0, 0);
        QTest::newRow("background colour") << 2 << RGB(12, 34, 56);
    }
    void eraseImagePutsDownTheSelectionAndFillsThePicture()
    {
        QFETCH(int, index);
        QFETCH(int, colour);
        MainWindowFixture f;
        frmMain& m = f.main();
        m.state().BackColor = RGB(12, 34, 56);
        frmPaint* form = f.newDocument(Pattern(30, 20));
        Document& doc = form->doc;
        ShowFloat(doc, QRect(3, 3, 6, 6), RGB(9, 9, 9));
        UpdateView(doc, doc.Buffer, 0, 0, 100);
        const QImage before = doc.Buffer.Image().copy();
        m.EraseImage_Click(index);
        QVERIFY(!doc.SelectArea.Visible);
        QVERIFY(!m.action(MenuId::Copy)->isEnabled());
        QImage expected(30, 20, QImage::Format_RGB32);
        expected.fill(ToQRgb(colour));
        QCOMPARE(doc.Buffer.Image(), expected);
        m.Undo_Click();
        QCOMPARE(doc.Buffer.Image(), before);
    }

    // Without a picture no picture command nor its button can be chosen, nor Undo; with
    // one, all of them, a selection or not (Blend only with one), and Undo once a step is
    // taken there.
    void entriesFollowTheDocument()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        QList<QAction*> filters;
        collectActions(m.menu(MenuId::Filters), filters);
        QVERIFY(filters.size() > 30);
        const QList<std::pair<MenuId, int>> entries = {
            {MenuId::ImageSize, -1},     {MenuId::FlipHorizontal, -1}, {MenuId::FlipVertical, -1},
            {MenuId::InvertImage, -1},   {MenuId::mnurotates, 0},      {MenuId::mnurotates, 1},
            {MenuId::mnurotates, 2},     {MenuId::mnurotates, 4},      {MenuId::EraseImage, 0},
            {MenuId::EraseImage, 1},     {MenuId::EraseImage, 2},      {MenuId::mnuImgeffects, 0},
            {MenuId::mnuImgeffects, 1},  {MenuId::mnuBright, -1},      {MenuId::mnuDark, -1},
            {MenuId::mnugrayscale, -1},  {MenuId::mnuDoBright, -1},    {MenuId::mnuDoDark, -1},
            {MenuId::mnuPasteBlend, -1}, {MenuId::mnusymbols, 2},      {MenuId::mnusymbols, 3}};
        auto check = [&](bool document) {
            m.Filters_Click();
            for (QAction* a : filters)
                if (m.isBuilt(a->objectName()) || a->menu())
                    QVERIFY2(a->isEnabled() == document, qPrintable(a->objectName()));
            for (const auto& [id, index] : entries)
                QVERIFY2(m.action(id, index)->isEnabled() == document,
                         qPrintable(m.action(id, index)->objectName()));
            for (int i : {8, 10, 11, 12, 13, 14, 15, 16, 20})
                QCOMPARE(m.CmdCommands(i)->isEnabled(), document);
        };
        check(false);
        QVERIFY(!m.menu(MenuId::Filters)->menuAction()->isEnabled());
        frmPaint* form = f.newDocument(20, 20);
        check(true);
        for (const AmbientPreset& p : AmbientPresets()) // the menu names the light it gives
            QCOMPARE(m.action(MenuId::Greyscale, p.index)->text(), QString::fromLatin1(p.caption));
        QVERIFY(m.menu(MenuId::mnuReverseBlendH)->menuAction()->isEnabled() &&
                m.menu(MenuId::mnuReverseBlendV)->menuAction()->isEnabled());
        for (const char* name : {"imgBlendfile", "Image6"}) // the panels' ways to blends and borders
            QVERIFY2(m.controls()->control<QWidget>(QString::fromLatin1(name))->isEnabled(), name);
        QVERIFY(!m.action(MenuId::Undo)->isEnabled() && !m.CmdCommands(7)->isEnabled());
        QVERIFY(!m.action(MenuId::mnuBlendIt)->isEnabled() && !m.CmdCommands(19)->isEnabled());
        ShowFloat(form->doc, QRect(1, 1, 4, 4), 0);
        m.ValidateMenus();
        check(true);
        QVERIFY(m.action(MenuId::mnuBlendIt)->isEnabled() && m.CmdCommands(19)->isEnabled());
        m.InvertImage_Click();
        QVERIFY(m.action(MenuId::Undo)->isEnabled() && m.CmdCommands(7)->isEnabled());
        // Another picture has nothing to undo yet.
        frmPaint* other = f.newDocument(20, 20);
        QVERIFY(!m.action(MenuId::Undo)->isEnabled() && !m.CmdCommands(7)->isEnabled());
        other->closeWithoutQuestion();
        form->closeWithoutQuestion();
        MainWindowFixture::settle();
        check(false);
        QVERIFY(!m.action(MenuId::Undo)->isEnabled() && !m.CmdCommands(7)->isEnabled());
    }

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
        // The rules, by one entry of each (Copy and Paste: tst_frmMain).
        QVERIFY(m.action(MenuId::mnugrabmask)->isVisible());
        QVERIFY(m.action(MenuId::ArrHorizontal)->isEnabled());
        QVERIFY(!m.action(MenuId::UndoResize)->isEnabled());
        form->doc.SelectArea.Visible = false;
        m.ValidateMenus();
        QVERIFY(!m.action(MenuId::mnugrabmask)->isVisible());
        // The option panels ask for commands by name: each is an operation of the window,
        // one of the float's check boxes, or a menu entry.
        for (const QString& name : m.controls()->operationNames())
            QVERIFY2(m.builtOperations().contains(name) || name == op::BlendThePic ||
                         name == op::DoTransparent || m.action(name),
                     qPrintable(name));
    }

    // Easy Mode hides exactly its menu entries, the toolbar's buttons but Undo and Revert,
    // and one tool, leaving the strip in full pairs; turned off, everything is back.
    void easyModeHidesExactlyItsList()
    {
        const QStringList list =
            QStringLiteral(
                "mnuExport mnuImport split022 mnuSelTwain mnuAcquire split033 mnuBezier mnuPolygons niks002 "
                "mnuCopyTo mnuPasteFrom split023 PasteSpecial mnuPasteBlend mnuBlendIt split052 split003 "
                "mnuWindowAutoSizePosition ArrHorizontal ArrVertival Cascade split045 mnufitbigimages "
                "mnustartblankpage mnumaximizeonopen mnuextra1 mnuextra2 mnuextra3 niks052 niks036 "
                "mnucolordepth menuExGridSetup niks12 niks7")
                .split(u' ');
        MainWindowFixture f;
        frmMain& m = f.main();
        QList<QAction*> shown;
        for (const MenuRow& row : frmMain::MenuRows())
            if (m.action(row.id, row.index)->isVisible())
                shown << m.action(row.id, row.index);
        m.action(MenuId::mnuKidsMode)->trigger();
        MainWindowFixture::settle();
        QSet<QString> hidden;
        for (QAction* a : shown)
            if (!a->isVisible())
                hidden.insert(a->objectName());
        QCOMPARE(hidden, QSet<QString>(list.begin(), list.end()));
        for (int i = 7; i <= 22; ++i)
            QCOMPARE(m.CmdCommands(i)->isVisible(), i == 7 || i == 17);
        QVERIFY(!m.chkSnapGrid()->isVisible());
        // Rows of the tool strip from the top: full pairs, only the last may hold one tool.
        QMap<int, int> perRow;
        for (int i = 0; i < kToolCount; ++i)
            if (m.Cmd(i)->isVisible())
                ++perRow[m.Cmd(i)->y()];
        QVERIFY(!m.Cmd(17)->isVisible());
        const QList<int> counts = perRow.values();
        QCOMPARE(std::accumulate(counts.begin(), counts.end(), 0), kToolCount - 1);
        QCOMPARE(counts.count(2), counts.size() - 1);
        QCOMPARE(counts.last(), 1);
        m.action(MenuId::mnuKidsMode)->trigger();
        for (QAction* a : shown)
            QVERIFY2(a->isVisible(), qPrintable(a->objectName()));
        for (int i = 8; i <= 22; ++i)
            QVERIFY(m.CmdCommands(i)->isVisible());
        QVERIFY(m.Cmd(17)->isVisible());
    }
};

QTEST_MAIN(tst_Commands)
#include "tst_commands.moc"
