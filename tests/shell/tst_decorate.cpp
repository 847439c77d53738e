// Blending, frames and borders in the running window: the dialogs answered as a user
// would, what the picture gets, the messages for bad files, and undo of each. (When the
// entries can be chosen, and the reverse blends: tst_Commands.)

#include "core/AppFolder.h"
#include "core/Gdi.h"
#include "document/frmPaint.h"
#include "imageops/Blend.h"
#include "imageops/Frmblend.h"
#include "imageops/Pictures.h"
#include "imageops/frmBorders.h"
#include "imageops/frmPictureFrames.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
#include "tools/frmControls.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QListWidgetItem>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <functional>

using namespace velunta;
using namespace velunta::test;

namespace {

// A selection of x, y, w, h drawn with the selection tool at 100 %.
void select(MainWindowFixture& f, frmPaint& form, int x, int y, int w, int h)
{
    f.main().Cmd_Click(kToolSelectArea);
    f.drag(form, QPointF(x, y), QPointF(x + w, y + h), 3);
    QVERIFY(form.doc.SelectArea.Visible);
}

QImage mirrored(const QImage& image, bool horizontal)
{
    return image.mirrored(horizontal, !horizontal).convertToFormat(QImage::Format_RGB32);
}

// A sunny landscape for the pictures of the dialogs.
QImage landscape(int w, int h)
{
    return MakeImage(w, h, [w, h](int x, int y) {
        const double dx = x - w * 0.72, dy = y - h * 0.25;
        if (dx * dx + dy * dy < h * h * 0.012)
            return RGB(255, 214, 40);
        const double hill = h * (0.62 + 0.08 * std::sin(x * 6.0 / w) + 0.05 * std::sin(x * 17.0 / w));
        if (y > hill)
            return RGB(60 + (x * 40) / w, 150 + (y * 60) / h % 60, 60);
        return RGB(120 + (y * 100) / h, 180 + (y * 60) / h, 255);
    });
}

} // namespace

class tst_Decorate : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // The selection mixed with its reflection: typed in the dialog (100 % is the
    // reflection itself), or a quarter from the toolbar's button, and undone exactly.
    void blendSelectionGivesTheReflectionAndUndoesExactly_data()
    {
        QTest::addColumn<bool>("toolbar");
        QTest::addColumn<bool>("vertical");
        QTest::addColumn<int>("style");
        QTest::addColumn<QString>("percent");
        QTest::addColumn<int>("ratio");
        QTest::newRow("100 %") << false << false << int(kBlendNormal) << "100" << 255;
        QTest::newRow("vertical red at 50 %") << false << true << int(kBlendRed) << "50" << 127;
        QTest::newRow("the toolbar's quarter") << true << false << int(kBlendNormal) << QString() << 64;
    }
    void blendSelectionGivesTheReflectionAndUndoesExactly()
    {
        QFETCH(bool, toolbar);
        QFETCH(bool, vertical);
        QFETCH(int, style);
        QFETCH(QString, percent);
        QFETCH(int, ratio);
        MainWindowFixture f;
        frmMain& m = f.main();
        const QImage picture = Pattern(50, 30, 3);
        frmPaint* form = f.newDocument(picture);
        select(f, *form, 4, 4, 30, 20);
        const QImage under = picture.copy(4, 4, 30, 20);
        if (toolbar) {
            m.CmdCommands(19)->click();
        } else {
            WhenShown<Frmblend>([&](Frmblend& d) {
                QVERIFY(d.chkDirection()->isVisible()); // the selection tool is the current one
                d.chkDirection()->setChecked(vertical);
                d.Option1(style)->click();
                d.cmbBlend()->setEditText(percent);
                d.Command1_Click();
            });
            m.action(MenuId::mnuBlendIt)->trigger();
        }
        QCOMPARE(m.blendState.BlendRatio, ratio);
        const QImage blended = Changed(under, [&](Surface& s) {
            BlendPictures(s, SurfaceOf(mirrored(under, !vertical)), ratio, style, BlendSource::Same, {});
        });
        QCOMPARE(form->doc.BufferSelected.Image(), blended);
        QCOMPARE(form->doc.Buffer.Image().copy(4, 4, 30, 20), blended);
        QVERIFY(form->doc.Dirty);
        m.Undo_Click();
        QCOMPARE(form->doc.Buffer.Image(), picture);
    }

    void aPercentageOf101ClosesTheDialogWithNoEffect_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("101") << QStringLiteral("101");
        QTest::newRow("0") << QStringLiteral("0");
        QTest::newRow("no number") << QStringLiteral("lots");
    }
    void aPercentageOf101ClosesTheDialogWithNoEffect()
    {
        QFETCH(QString, typed);
        MainWindowFixture f;
        frmMain& m = f.main();
        const QImage picture = Pattern(40, 30);
        frmPaint* form = f.newDocument(picture);
        select(f, *form, 2, 2, 20, 20);
        form->doc.Dirty = false;
        const int steps = m.undo().UndoWriteSlot;
        WhenShown<Frmblend>([typed](Frmblend& d) {
            d.cmbBlend()->setEditText(typed);
            d.Command1_Click();
        });
        m.action(MenuId::mnuBlendIt)->trigger();
        QCOMPARE(m.blendState.BlendMode, int(kBlendCancelled));
        QCOMPARE(form->doc.Buffer.Image(), picture);
        QVERIFY(!form->doc.Dirty);
        QCOMPARE(m.undo().UndoWriteSlot, steps);
        QVERIFY(f.prompt.shown.isEmpty());
    }

    // A picture from a file comes in as a selection cut to the picture; cancelled, the
    // selection it made goes.
    void blendImageFromAFileComesInAsASelectionCutToThePicture()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        const QImage picture = Pattern(64, 48);
        frmPaint* form = f.newDocument(picture);
        QTemporaryDir dir;
        const QImage photo = Pattern(100, 20, 99);
        const QString path = dir.filePath(QStringLiteral("photo.bmp"));
        QVERIFY(photo.save(path));
        f.dialogs.paths.enqueue(path);
        WhenShown<Frmblend>([](Frmblend& d) { d.Command2_Click(); });
        m.action(MenuId::mnuPasteBlend)->trigger();
        QVERIFY(!form->doc.SelectArea.Visible);
        QCOMPARE(form->doc.Buffer.Image(), picture);
        f.dialogs.paths.enqueue(path);
        WhenShown<Frmblend>([](Frmblend& d) {
            QVERIFY(!d.chkDirection()->isEnabled() || !d.chkDirection()->isVisible());
            QCOMPARE(d.Label2()->text(), QStringLiteral("Blending image size: 100x20"));
            d.cmbBlend()->setEditText(QStringLiteral("100"));
            d.Command1_Click();
        });
        m.action(MenuId::mnuPasteBlend)->trigger();
        QCOMPARE(m.blendState.BlendMode, int(kBlendFromFile));
        QVERIFY(form->doc.SelectArea.Visible);
        QCOMPARE(form->doc.BufferSelected.Image().size(), QSize(64, 20));
        QCOMPARE(form->doc.Buffer.Image().copy(0, 0, 64, 20), photo.copy(0, 0, 64, 20));
        QCOMPARE(form->doc.Buffer.Image().copy(0, 20, 64, 28), picture.copy(0, 20, 64, 28));
        m.Undo_Click();
        QCOMPARE(form->doc.Buffer.Image(), picture);
        QVERIFY(!form->doc.SelectArea.Visible);
    }

    void aFileThatIsNoReadablePictureIsToldAndChangesNothing_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("folder");
        QTest::addColumn<QString>("title");
        QTest::newRow("not a picture")
            << QByteArray("just some words") << false << QStringLiteral("Incompatible picture format");
        QTest::newRow("cut short") << QByteArray("BM\x36\x00\x00\x00", 6) << false
                                   << QStringLiteral("Unable to open picture");
        QTest::newRow("a folder") << QByteArray() << true << QStringLiteral("Unable to open picture");
    }
    void aFileThatIsNoReadablePictureIsToldAndChangesNothing()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, folder);
        QFETCH(QString, title);
        MainWindowFixture f;
        frmMain& m = f.main();
        const QImage picture = Pattern(30, 20);
        frmPaint* form = f.newDocument(picture);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("broken.jpg"));
        if (folder)
            QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("broken.jpg")));
        else
            QVERIFY(WriteFile(path, bytes));
        f.dialogs.paths.enqueue(path);
        m.action(MenuId::mnuPasteBlend)->trigger();
        QCOMPARE(f.prompt.shown.size(), 1);
        QVERIFY(
            f.prompt.shown[0].text.startsWith(QStringLiteral("Could not open/read the selected picture.")));
        QCOMPARE(f.prompt.shown[0].title, title);
        QVERIFY(!form->doc.SelectArea.Visible);
        QCOMPARE(form->doc.Buffer.Image(), picture);
        QVERIFY(!form->doc.Dirty);
    }

    void aTransparencyFrameLightensTheEdgesAndUndoes()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        const QImage picture = Pattern(80, 60);
        frmPaint* form = f.newDocument(picture);
        WhenShown<frmPictureFrames>([](frmPictureFrames& d) {
            d.cmbTransThick()->setEditText(QStringLiteral("10"));
            QVERIFY(d.optFrame(1)->isChecked()); // changing the band chooses the transparency frame
            d.cmbTransLevel()->setEditText(QStringLiteral("40"));
            QVERIFY(!d.previewImage().isNull());
            d.Command1_Click();
        });
        m.action(MenuId::mnusymbols, 2)->trigger();
        QCOMPARE(form->doc.Buffer.Image(),
                 Changed(picture, [&](Surface& s) { DrawTransparencyFrame(s, 10, 40, kFadeNone); }));
        m.Undo_Click();
        QCOMPARE(form->doc.Buffer.Image(), picture);
    }

    void aGradientFrameOnTheSelectionOnly()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        const QImage picture = Pattern(60, 50);
        frmPaint* form = f.newDocument(picture);
        select(f, *form, 10, 10, 30, 20);
        WhenShown<frmPictureFrames>([](frmPictureFrames& d) {
            d.cmbThickness()->setEditText(QStringLiteral("4"));
            QVERIFY(d.optFrame(0)->isChecked());
            d.frameStyle(kFrameRaised)->click();
            d.Command1_Click();
        });
        m.CmdCommands(8)->click();
        QCOMPARE(form->doc.BufferSelected.Image(), Changed(picture.copy(10, 10, 30, 20), [&](Surface& s) {
                     DrawGradientFrame(s, 4, m.frameSettings.startColor, m.frameSettings.endColor,
                                       kFrameRaised);
                 }));
        QCOMPARE(form->doc.Buffer.Image().copy(0, 0, 60, 10), picture.copy(0, 0, 60, 10));
    }

    void bordersLeadsFromTheFramesDialogToTheBordersDialog()
    {
        MainWindowFixture f;
        CopyMissingDataFiles(qEnvironmentVariable("VELUNTA_DATA"), f.appFolder());
        frmMain& m = f.main();
        const QImage picture = Pattern(200, 150);
        frmPaint* form = f.newDocument(picture);
        bool bordersShown = false;
        WhenShown<frmPictureFrames>([&](frmPictureFrames& d) {
            WhenShown<frmBorders>([&](frmBorders& b) {
                bordersShown = true;
                QVERIFY(b.brushCount() >= 10); // the program's own brushes
                b.Picborderbrush_Click(1);
                b.TxtWidth()->setText(QStringLiteral("20"));
                b.TxtHeight()->setText(QStringLiteral("16"));
                b.Command4_Click();
                b.optEffect(kBorderCombine)->click();
                b.Optstyle(kBorderTopBottom)->click();
                b.Command1_Click();
            });
            d.Command3_Click();
        });
        m.action(MenuId::mnuPicFrames)->trigger();
        QVERIFY(bordersShown);
        QCOMPARE(m.borderSettings.size, QSize(20, 16));
        QCOMPARE(m.borderSettings.style, int(kBorderTopBottom));
        const QVector<QImage> brushes = BuiltInBrushes(f.appFolder());
        Surface brush;
        brush.setImage(BorderBrush(brushes[1], RGB(255, 255, 255), QSize(20, 16)));
        QCOMPARE(form->doc.Buffer.Image(), Changed(picture, [&](Surface& s) {
                     DrawBorder(s, brush, kBorderTopBottom, kBorderCombine, m.state().ForeColor);
                 }));
        QVERIFY(form->doc.Buffer.Image() != picture);
        m.Undo_Click();
        QCOMPARE(form->doc.Buffer.Image(), picture);
    }

    void fileBrushes_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QSize>("brush");
        QTest::addColumn<bool>("tooBig");
        QTest::newRow("one pixel") << QSize(1, 1) << QSize(1, 1) << false;
        QTest::newRow("too big") << QSize(300, 20) << QSize(256, 20) << true;
    }
    void fileBrushes()
    {
        QFETCH(QSize, size);
        QFETCH(QSize, brush);
        QFETCH(bool, tooBig);
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(12, 9);
        QTemporaryDir dir;
        QImage art(size, QImage::Format_RGB32);
        art.fill(qRgb(200, 0, 0));
        QVERIFY(art.save(dir.filePath(QStringLiteral("tiny.bmp"))));
        WhenShown<frmBorders>([&](frmBorders& b) {
            b.ShowFolder(dir.path());
            QList<QListWidgetItem*> items =
                b.File1()->findItems(QStringLiteral("tiny.bmp"), Qt::MatchExactly);
            QCOMPARE(items.size(), 1);
            QVERIFY(b.LoadFileBrush(items[0]->data(Qt::UserRole).toString()));
            QCOMPARE(b.brush().size(), brush);
            b.Command1_Click();
        });
        m.CmdCommands(20)->click();
        QCOMPARE(f.prompt.shown.size(), tooBig ? 1 : 0);
        if (tooBig)
            QCOMPARE(f.prompt.shown[0].title, QStringLiteral("Image to big"));
        QCOMPARE(GetPixel(form->doc.Buffer, 0, 0), RGB(200, 0, 0));
        QCOMPARE(GetPixel(form->doc.Buffer, 11, 8), RGB(200, 0, 0));
        if (!tooBig) // the one-pixel brush: only the outermost ring
            QCOMPARE(GetPixel(form->doc.Buffer, 1, 1), RGB(255, 255, 255));
    }

    void aBrushFileThatIsNoPictureKeepsTheBrush()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        f.newDocument(20, 20);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("notes.png"));
        QVERIFY(WriteFile(path, "not a picture at all"));
        WhenShown<frmBorders>([&](frmBorders& b) {
            b.Picborderbrush_Click(2);
            const QImage before = b.brush();
            QVERIFY(!b.LoadFileBrush(path));
            QCOMPARE(b.brush(), before);
            b.reject();
        });
        m.action(MenuId::mnuBorders)->trigger();
        QCOMPARE(f.prompt.shown.value(0).title, QStringLiteral("Incompatible picture format"));
    }

    // With VELUNTA_DIALOG_SHOTS set to a folder: pictures of the three dialogs and of a
    // framed, bordered and blended picture, for a look (scripts/dialog-shots).
    void dialogShots()
    {
        const QString folder = qEnvironmentVariable("VELUNTA_DIALOG_SHOTS");
        if (folder.isEmpty())
            QSKIP("pictures only on request");
        QDir().mkpath(folder);
        MainWindowFixture f;
        CopyMissingDataFiles(qEnvironmentVariable("VELUNTA_DATA"), f.appFolder());
        frmMain& m = f.main();
        m.resize(1100, 760);
        m.show();
        frmPaint* form = f.newDocument(landscape(640, 420));
        select(f, *form, 60, 60, 240, 160);
        auto shoot = [&](QWidget& w, const char* name) {
            w.show();
            w.raise();
            MainWindowFixture::settle();
            QTest::qWait(200);
            QVERIFY(
                w.grab().save(folder + QStringLiteral("/") + QLatin1String(name) + QStringLiteral(".png")));
        };
        QTemporaryDir dir;
        const QString photo = dir.filePath(QStringLiteral("photo.bmp"));
        QVERIFY(landscape(300, 200).mirrored(true, false).save(photo));
        {
            Frmblend d(m.blendState, form->doc.SelectedBack.Image(), true, f.prompt, f.dialogs, &m);
            shoot(d, "blend");
            f.dialogs.paths.enqueue(photo);
            d.cmdOpen_Click();
            d.Option1(kBlendScramble)->click();
            shoot(d, "blend-from-file");
        }
        m.RemoveSelection();
        {
            frmPictureFrames d(m.frameSettings, form->doc.Buffer.Image(), &m);
            d.cmbThickness()->setEditText(QStringLiteral("25"));
            d.frameStyle(kFrameRaised)->click();
            shoot(d, "frames-gradient");
            d.cmbTransThick()->setEditText(QStringLiteral("40"));
            d.chkTransFade()->setChecked(true);
            d.optFade(1)->setChecked(true);
            shoot(d, "frames-transparency");
        }
        {
            frmBorders d(m.borderSettings, BuiltInBrushes(f.appFolder()), form->doc.Buffer.Image(),
                         RGB(0, 0, 200), f.prompt, &m);
            d.Picborderbrush_Click(0);
            d.SetBackground(RGB(255, 240, 200));
            shoot(d, "borders");
            d.Picborderbrush_Click(2);
            d.optEffect(kBorderCombine)->click();
            d.SetBackground(RGB(255, 255, 255));
            d.Optstyle(kBorderTopBottom)->click();
            shoot(d, "borders-combine");
        }
        // A child's afternoon: a frame, a border of hearts, a photo blended in.
        m.frameSettings.thickness = 18;
        WhenShown<frmPictureFrames>([](frmPictureFrames& d) { d.Command1_Click(); });
        m.mnuPicFrames_Click();
        WhenShown<frmBorders>([](frmBorders& b) {
            b.Picborderbrush_Click(1);
            b.TxtWidth()->setText(QStringLiteral("32"));
            b.TxtHeight()->setText(QStringLiteral("32"));
            b.Command4_Click();
            b.Optstyle(kBorderCorners)->click();
            b.Command1_Click();
        });
        m.mnuBorders_Click();
        f.dialogs.paths.enqueue(photo);
        WhenShown<Frmblend>([](Frmblend& d) {
            d.cmbBlend()->setEditText(QStringLiteral("40"));
            d.Command1_Click();
        });
        m.mnuPasteBlend_Click();
        shoot(m, "main-window");
    }
};

QTEST_MAIN(tst_Decorate)
#include "tst_decorate.moc"
