// The canvas commands in the running window: each on the floating selection changes
// only the selection and is one undo step; resize and Undo Resize give the exact
// picture back; sizes the memory refuses, the angle that divides by 0 and a cancelled
// dialog leave the picture; and the entries are enabled by the rules.

#include "core/Gdi.h"
#include "document/frmPaint.h"
#include "imageops/CanvasOps.h"
#include "imageops/frmBrightContrast.h"
#include "imageops/frmRotate.h"
#include "imageops/frmSize.h"
#include "support/FakeHost.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
#include "widgets/zolButton.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QSlider>
#include <QTimer>
#include <QtTest>

#include <functional>

using namespace velunta;
using namespace velunta::test;

namespace {

using Command = std::function<void(frmMain&)>;
// What the command makes of the selection's pixels.
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

Expected turned(float angle)
{
    return [angle](const QImage& image) {
        QImage out = image.copy();
        RotatePicture(out, image, angle);
        return out;
    };
}

} // namespace

Q_DECLARE_METATYPE(Command)
Q_DECLARE_METATYPE(Expected)

class tst_Canvas : public QObject {
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
        };
        for (const auto& [name, command, expected] : commands) {
            QTest::newRow(QByteArray(QByteArray(name) + " on the picture").constData())
                << command << expected << false;
            QTest::newRow(QByteArray(QByteArray(name) + " on a selection").constData())
                << command << expected << true;
        }
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
        m.Undo_Click();
        QCOMPARE(doc.Buffer.Image(), before);
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
        QCOMPARE(doc.Buffer.ScaleWidth(), 97);
        QCOMPARE(doc.Buffer.ScaleHeight(), 13);
        QVERIFY(doc.Dirty);
        QVERIFY(m.action(MenuId::UndoResize)->isEnabled());
        QVERIFY(m.CmdCommands(7)->isEnabled());
        QVERIFY(QFileInfo::exists(f.appFolder() + QStringLiteral("temp/undo.bmp")));
        if (toolbar)
            m.CmdCommands_Click(7);
        else
            m.action(MenuId::UndoResize)->trigger();
        QCOMPARE(doc.Buffer.ScaleWidth(), 40);
        QCOMPARE(doc.Buffer.ScaleHeight(), 30);
        QImage expected = before;
        for (int y = 2; y < 7; ++y)
            for (int x = 2; x < 7; ++x)
                expected.setPixel(x, y, ToQRgb(RGB(1, 2, 3)));
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
        QVERIFY(!QFileInfo::exists(f.appFolder() + QStringLiteral("temp/undo.bmp")));
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

    void entriesFollowTheRules()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        const QList<std::pair<MenuId, int>> entries = {
            {MenuId::ImageSize, -1},    {MenuId::FlipHorizontal, -1}, {MenuId::FlipVertical, -1},
            {MenuId::InvertImage, -1},  {MenuId::mnurotates, 0},      {MenuId::mnurotates, 1},
            {MenuId::mnurotates, 2},    {MenuId::mnurotates, 4},      {MenuId::EraseImage, 0},
            {MenuId::EraseImage, 1},    {MenuId::EraseImage, 2},      {MenuId::mnuImgeffects, 0},
            {MenuId::mnuImgeffects, 1}, {MenuId::mnuBright, -1},      {MenuId::mnuDark, -1}};
        const QList<int> buttons = {11, 12, 13, 16};
        auto check = [&](bool on) {
            for (const auto& [id, index] : entries)
                QCOMPARE(m.action(id, index)->isEnabled(), on);
            for (int i : buttons)
                QCOMPARE(m.CmdCommands(i)->isEnabled(), on);
        };
        check(false);
        frmPaint* form = f.newDocument(20, 20);
        check(true);
        ShowFloat(form->doc, QRect(1, 1, 4, 4), 0);
        m.ValidateMenus();
        check(true);
        form->closeWithoutQuestion();
        MainWindowFixture::settle();
        check(false);
    }
};

QTEST_MAIN(tst_Canvas)
#include "tst_canvas.moc"
