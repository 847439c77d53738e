// The side doors from the running window: Import of each format under its ".BMP" name,
// drawings opened by their content, Export to PNG that other programs read, the BMP
// options companion, Copy To and Paste From, the desktop's viewer, scanning from SANE's
// test device and the wallpaper.

#include "core/Gdi.h"
#include "core/SettingsStore.h"
#include "document/frmPaint.h"
#include "files/BmpWriter.h"
#include "files/read/PictureLoader.h"
#include "shell/frmSelectSource.h"
#include "support/MainWindowFixture.h"
#include "support/OutsideFixtures.h"
#include "support/OutsideTools.h"
#include "support/TestImages.h"

#include <QApplication>
#include <QClipboard>
#include <QListWidget>
#include <QMimeData>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

class tst_Import : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void importNamesThePictureBmp_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QSize>("size");
        // The file's bytes, or ImageMagick's arguments that make it: "%1" is a BMP of
        // Pattern(20, 10), and the last one goes before the file's path.
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("convert");
        QTest::newRow("WMF") << 0 << "Drawing.WMF" << QSize(133, 67) << SmallWmf(2000, 1000, 1440)
                             << QStringList();
        QTest::newRow("ICO") << 1 << "icon.ico" << QSize(16, 16) << QByteArray()
                             << QStringList{"-size", "16x16", "xc:rgb(200,30,40)", ""};
        QTest::newRow("DIB") << 2 << "pic.dib" << QSize(20, 10) << QByteArray() << QStringList{"%1", "BMP3:"};
        QTest::newRow("EMF") << 3 << "drawing.emf" << QSize(200, 100)
                             << SmallEmf({0, 0, 199, 99}, {0, 0, 5292, 2646}) << QStringList();
        QTest::newRow("RLE") << 4 << "pic.rle" << QSize(20, 10) << QByteArray()
                             << QStringList{"%1", "-type", "palette", "-compress", "RLE", "BMP3:"};
        QTest::newRow("PNG") << 5 << "photo.png" << QSize(20, 10) << QByteArray() << QStringList{"%1", ""};
    }
    void importNamesThePictureBmp()
    {
        QFETCH(int, index);
        QFETCH(QString, file);
        QFETCH(QSize, size);
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, convert);
        QTemporaryDir dir;
        const QString path = dir.filePath(file);
        const QString source = dir.filePath(QStringLiteral("source.bmp"));
        QVERIFY(SaveBMP(Pattern(20, 10), source));
        if (convert.isEmpty()) {
            WriteFile(path, bytes);
        } else {
            convert.replaceInStrings(QStringLiteral("%1"), source).last() += path;
            RunTool(QStringLiteral("convert"), convert);
        }
        QVERIFY(QFileInfo::exists(path));
        // A file of the user's where the companion might put its exchange file.
        const QString tmp = dir.filePath(QFileInfo(file).completeBaseName() + QStringLiteral(".tmp"));
        WriteFile(tmp, "the user's own file");
        MainWindowFixture f;
        f.dialogs.paths.enqueue(path);
        f.main().action(MenuId::Imports, index)->trigger();
        frmPaint* form = f.main().activeDocument();
        QVERIFY(form);
        QVERIFY2(f.prompt.shown.isEmpty(), qPrintable(f.prompt.shown.value(0).text));
        const QString name = path.left(path.lastIndexOf(u'.') + 1) + QStringLiteral("BMP");
        QCOMPARE(form->doc.Buffer.Tag, name);
        QCOMPARE(form->doc.Caption, name + QStringLiteral(" - 100%"));
        QCOMPARE(form->doc.Buffer.Image().size(), size);
        QVERIFY(!form->doc.Dirty);
        if (index == 2 || index == 4 || index == 5)
            QCOMPARE(DifferingPixels(form->doc.Buffer.Image(), Pattern(20, 10)), 0);
        if (index == 1)
            QCOMPARE(GetPixel(form->doc.Buffer, 5, 5), RGB(200, 30, 40));
        // The companion's exchange file is gone, and the user's is as it was.
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 3);
        QCOMPARE(ReadFile(tmp), QByteArray("the user's own file"));
    }

    // Drawings open by their content, whatever their name, and dropped on the window.
    void drawingsOpenByTheirContent()
    {
        QTemporaryDir dir;
        const QString wmf = dir.filePath(QStringLiteral("drawing.dat"));
        WriteFile(wmf, SmallWmf(2000, 1000, 1440));
        MainWindowFixture f;
        frmMain& m = f.main();
        m.FileToOpen = wmf;
        m.Open_Click();
        QVERIFY2(f.prompt.shown.isEmpty(), qPrintable(f.prompt.shown.value(0).text));
        QCOMPARE(m.activeDocument()->doc.Buffer.Image().size(), QSize(133, 67));
        QCOMPARE(m.activeDocument()->doc.Buffer.Tag, wmf);
        QCOMPARE(m.recentFile(0), wmf);
        const QString emf = dir.filePath(QStringLiteral("picture.emf"));
        WriteFile(emf, SmallEmf({0, 0, 199, 99}, {0, 0, 5292, 2646}));
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(emf)});
        QVERIFY(m.MDIForm_OLEDragDrop(data));
        QCOMPARE(m.activeDocument()->doc.Buffer.Image().size(), QSize(200, 100));
        QCOMPARE(GetPixel(m.activeDocument()->doc.Buffer, 150, 75), RGB(0, 255, 0));
        // One cut short: the message names the format.
        const QString broken = dir.filePath(QStringLiteral("broken.wmf"));
        WriteFile(broken, SmallWmf(2000, 1000, 1440).left(30));
        m.FileToOpen = broken;
        m.Open_Click();
        QCOMPARE(f.prompt.shown.size(), 1);
        QVERIFY(f.prompt.shown[0].text.startsWith(u"Error loading " + broken + u". Err nr:481\n\n"));
        QVERIFY(f.prompt.shown[0].text.contains(QStringLiteral("Windows Metafile (WMF)")));
    }

    void exportPngWritesWhatOtherProgramsRead()
    {
        QTemporaryDir dir;
        MainWindowFixture f;
        frmPaint* form = f.newDocument(Pattern(30, 20));
        form->doc.Buffer.Tag = dir.filePath(QStringLiteral("mine.bmp"));
        f.dialogs.paths.enqueue(dir.filePath(QStringLiteral("exported")));
        f.main().action(MenuId::mnuExportPNG)->trigger();
        QVERIFY2(f.prompt.shown.isEmpty(), qPrintable(f.prompt.shown.value(0).text));
        const QString png = dir.filePath(QStringLiteral("exported.png"));
        QVERIFY(RunTool(QStringLiteral("identify"), {png}).contains("PNG 30x20"));
        QCOMPARE(DifferingPixels(DecodeWithMagick(png), Pattern(30, 20)), 0);
        // An export is no save: the document keeps its name; no exchange file stays behind.
        QCOMPARE(form->doc.Buffer.Tag, dir.filePath(QStringLiteral("mine.bmp")));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("exported.png")});
    }

    void failedPngExportKeepsTheOldFile()
    {
        QTemporaryDir dir;
        MainWindowFixture f;
        f.newDocument(30, 20);
        // A companion that fails, in the program's folder where the user's own are looked for first.
        FakePrograms fakes;
        QFile::copy(fakes.add(QStringLiteral("png"), QStringLiteral("echo 'out of ink' >&2; exit 2")),
                    f.appFolder() + QStringLiteral("png"));
        const QString png = dir.filePath(QStringLiteral("old.png"));
        WriteFile(png, "older picture");
        f.dialogs.paths.enqueue(png);
        f.main().mnuExportPNG_Click();
        QCOMPARE(ReadFile(png), QByteArray("older picture"));
        QCOMPARE(f.prompt.shown.size(), 1);
        QVERIFY(f.prompt.shown.first().text.contains(QStringLiteral("out of ink")));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("old.png")});
    }

    void bmpOptionsHandsTheDocumentsBmpToTheCompanion()
    {
        QTemporaryDir dir;
        MainWindowFixture f;
        frmPaint* form = f.newDocument(30, 20, RGB(0, 0, 255));
        FakePrograms fakes;
        QFile::copy(fakes.add(QStringLiteral("bmpExport")), f.appFolder() + QStringLiteral("bmpExport"));
        // A picture opened from a JPEG at 50%: the companion gets "photo.bmp", made for it.
        const QString bmp = dir.filePath(QStringLiteral("photo.bmp"));
        form->doc.ZoomFactor = 50;
        form->doc.SetCaption(dir.filePath(QStringLiteral("photo.jpg")));
        f.main().action(MenuId::mnuExportBMPOptions)->trigger();
        QTRY_COMPARE(fakes.arguments(QStringLiteral("bmpExport")),
                     QStringList({bmp, QStringLiteral("/dialog")}));
        QCOMPARE(LoadPicture(bmp).pixel(3, 3), qRgb(0, 0, 255));
        // A BMP already there is the companion's to work on, never replaced here.
        WriteFile(bmp, "BM existing");
        f.main().mnuExportBMPOptions_Click();
        QTRY_COMPARE(fakes.arguments(QStringLiteral("bmpExport")).size(), 4);
        QCOMPARE(ReadFile(bmp), QByteArray("BM existing"));
    }

    void copyToWritesTheSelectionAndPasteFromBringsItBack()
    {
        QTemporaryDir dir;
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(60, 40);
        m.PastePicture(Pattern(13, 9));
        form->doc.Dirty = true;
        m.ValidateMenus();
        QVERIFY(m.action(MenuId::mnuCopyTo)->isEnabled());
        f.dialogs.paths.enqueue(dir.filePath(QStringLiteral("piece")));
        m.action(MenuId::mnuCopyTo)->trigger();
        const QString piece = dir.filePath(QStringLiteral("piece.bmp"));
        QCOMPARE(DifferingPixels(LoadPicture(piece), Pattern(13, 9)), 0);
        QCOMPARE(m.CopyToName, piece);
        // The picture itself is still unsaved: closing it must still ask.
        QVERIFY(form->doc.Dirty);

        frmPaint* other = f.newDocument(40, 40);
        QApplication::clipboard()->setText(QStringLiteral("the user's clipboard"));
        f.dialogs.paths.enqueue(piece);
        m.action(MenuId::mnuPasteFrom)->trigger();
        QVERIFY(other->doc.SelectArea.Visible);
        QCOMPARE(DifferingPixels(other->doc.BufferSelected.Image(), Pattern(13, 9)), 0);
        QVERIFY(m.undo().UndoDisabled);
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("the user's clipboard"));

        const QString junk = dir.filePath(QStringLiteral("junk.bmp"));
        WriteFile(junk, "BM junk");
        f.dialogs.paths.enqueue(junk);
        m.mnuPasteFrom_Click();
        QVERIFY(f.prompt.shown.value(0).text.startsWith(u"Error loading " + junk + u". Err nr:481"));
    }

    void desktopViewerGetsThePicture()
    {
        QTemporaryDir data;
        EnvScope home("XDG_DATA_HOME", data.path().toLocal8Bit());
        FakePrograms fakes;
        fakes.add(QStringLiteral("xdg-mime"), QStringLiteral("echo viewer.desktop"));
        const QString viewer = fakes.add(QStringLiteral("viewer"));
        QDir().mkpath(data.filePath(QStringLiteral("applications")));
        WriteFile(data.filePath(QStringLiteral("applications/viewer.desktop")),
                  "[Desktop Entry]\nType=Application\nName=Fake Viewer\nExec=" + viewer.toLocal8Bit() +
                      " %f\n");
        MainWindowFixture f;
        frmMain& m = f.main();
        QAction* entry = m.action(MenuId::mnucopyIrfanview);
        QTRY_VERIFY(m.IrfanViewPath.size() > 5);
        QCOMPARE(entry->text(), QStringLiteral("Copy To Fake Viewer"));
        frmPaint* form = f.newDocument(Pattern(24, 16));
        form->doc.SetCaption(QStringLiteral("/somewhere/holiday.jpg"));
        QVERIFY(entry->isVisible() && entry->isEnabled());
        entry->trigger();
        const QString file = f.appFolder() + QStringLiteral("temp/view/holiday.bmp");
        QTRY_COMPARE(fakes.arguments(QStringLiteral("viewer")), QStringList{file});
        QCOMPARE(DifferingPixels(LoadPicture(file), Pattern(24, 16)), 0);

        // No viewer for BMP pictures: no entry.
        fakes.add(QStringLiteral("xdg-mime"), QStringLiteral("exit 0"));
        m.FindIrfanView();
        QTest::qWait(200);
        m.ValidateMenus();
        QVERIFY(!entry->isVisible());
    }

    // Select Source remembers the device chosen, and Acquire opens its scan as a new,
    // unsaved picture.
    void selectSourceRemembersTheScannerAndAcquireOpensTheScan()
    {
        SaneTestSetup sane;
        MainWindowFixture f;
        frmMain& m = f.main();
        QVERIFY(m.action(MenuId::mnuSelTwain)->isEnabled());
        // The dialog comes once the devices are listed.
        QTimer answer;
        QObject::connect(&answer, &QTimer::timeout, [&] {
            for (QWidget* w : QApplication::topLevelWidgets())
                if (auto* dialog = qobject_cast<frmSelectSource*>(w); dialog && dialog->isVisible()) {
                    answer.stop();
                    dialog->findChild<QListWidget*>()->setCurrentRow(1);
                    dialog->accept();
                }
        });
        answer.start(20);
        m.mnuSelTwain_Click();
        QCOMPARE(m.services().settings.GetSetting(QStringLiteral("ScannerDevice")), QStringLiteral("test:1"));
        m.action(MenuId::mnuAcquire)->trigger();
        QVERIFY2(f.prompt.shown.isEmpty(), qPrintable(f.prompt.shown.value(0).text));
        QVERIFY(m.activeDocument());
        const Document& doc = m.activeDocument()->doc;
        QCOMPARE(doc.Caption, QStringLiteral("scan.bmp - 100%"));
        QCOMPARE(doc.Buffer.Image().size(), QSize(157, 196));
        // Not saved anywhere yet: Save asks where, and closing asks first.
        QVERIFY(doc.Buffer.Tag.isEmpty() && doc.Dirty);
        QVERIFY(!QFileInfo::exists(f.appFolder() + QStringLiteral("temp/scan.bmp")));
    }

    void acquireFailuresSayWhy_data()
    {
        QTest::addColumn<QByteArray>("conf");
        QTest::addColumn<QString>("device");
        QTest::addColumn<QString>("text");
        QTest::newRow("jammed")
            << QByteArray("read-status-code \"SANE_STATUS_JAMMED\"\n") << "test:0"
            << "Scan has been aborted.\n\nNote: Please be patient, because some devices needs "
               "up to minute to prepare a scan.";
        QTest::newRow("no device") << QByteArray() << "test:7"
                                   << "Scan has been aborted because of device not powered ON, or user "
                                      "interuption.";
    }
    void acquireFailuresSayWhy()
    {
        QFETCH(QByteArray, conf);
        QFETCH(QString, device);
        QFETCH(QString, text);
        SaneTestSetup sane(conf);
        MainWindowFixture f;
        f.main().services().settings.SaveSetting(QStringLiteral("ScannerDevice"), device);
        f.main().mnuAcquire_Click();
        QCOMPARE(f.prompt.shown.size(), 1);
        QCOMPARE(f.prompt.shown.first().title, QStringLiteral("Acquire Image from Twain device"));
        QCOMPARE(f.prompt.shown.first().text, text);
        QVERIFY(f.main().documents().isEmpty());
    }

    void wallpaperSetByTheDesktopsSetter_data()
    {
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QString>("setter");
        QTest::addColumn<bool>("set");
        QTest::newRow("GNOME") << "GNOME"
                               << "gsettings" << true;
        QTest::newRow("none works") << "openbox" << QString() << false;
    }
    void wallpaperSetByTheDesktopsSetter()
    {
        QFETCH(QString, desktop);
        QFETCH(QString, setter);
        QFETCH(bool, set);
        EnvScope current("XDG_CURRENT_DESKTOP", desktop.toLocal8Bit());
        MainWindowFixture f;
        f.newDocument(30, 20, RGB(10, 120, 230));
        FakePrograms fakes;
        if (!setter.isEmpty())
            fakes.add(setter);
        fakes.onlyFakes();
        f.main().action(MenuId::mnuwallpaper)->trigger();
        const QString file = f.appFolder() + QStringLiteral("VeluntaWallPaper.bmp");
        // The desktop reads the file again later: it stays.
        QCOMPARE(LoadPicture(file).pixel(5, 5), qRgb(10, 120, 230));
        QCOMPARE(f.prompt.shown.size(), 1);
        if (set) {
            QCOMPARE(f.prompt.shown.first().text,
                     QStringLiteral("Wallpaper has been set (VeluntaWallPaper.bmp)"));
            QVERIFY(fakes.arguments(setter).join(u' ').contains(QFileInfo(file).fileName()));
        } else {
            QCOMPARE(f.prompt.shown.first().title, QStringLiteral("Wallpaper not set"));
            QVERIFY(f.prompt.shown.first().text.contains(QStringLiteral("feh --bg-fill ") + file));
        }
    }
};

QTEST_MAIN(tst_Import)
#include "tst_import.moc"
