// Writing pictures from the running window: Save As through the dialog, Save by the
// name's extension, the close question's branches, a refused folder, the Properties
// box and the recent files.

#include "core/Gdi.h"
#include "document/frmPaint.h"
#include "files/DialogAPI.h"
#include "files/FileNames.h"
#include "files/FrmSaveJPGs.h"
#include "files/frmSaveGifs.h"
#include "shell/ProgressStrip.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

class tst_Save : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void saveAsWritesTheFilterFormat_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("filter");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("magic");
        QTest::newRow("BMP") << "one" << 1 << "one.bmp" << QByteArray("BM");
        QTest::newRow("JPEG") << "two.png" << 3 << "two.jpg" << QByteArray("\xFF\xD8");
        QTest::newRow("GIF") << "three" << 4 << "three.gif" << QByteArray("GIF87a");
    }
    void saveAsWritesTheFilterFormat()
    {
        QFETCH(QString, typed);
        QFETCH(int, filter);
        QFETCH(QString, file);
        QFETCH(QByteArray, magic);
        QTemporaryDir dir;
        MainWindowFixture f;
        frmPaint* form = f.newDocument(20, 10, RGB(255, 0, 0));
        form->doc.Dirty = true;
        f.dialogs.paths.enqueue(dir.filePath(typed));
        f.dialogs.filterIndexes.enqueue(filter);
        f.main().action(QStringLiteral("SaveAs"))->trigger();
        const QString path = dir.filePath(file);
        QVERIFY(ReadFile(path).startsWith(magic));
        QCOMPARE(form->doc.Buffer.Tag, path);
        QVERIFY(!form->doc.Dirty);
        QCOMPARE(form->doc.Caption, path + QStringLiteral(" - 100%"));
        QCOMPARE(f.main().recentFile(0), path);
    }

    void saveKeepsTheLastFormatForJpeg()
    {
        QTemporaryDir dir;
        MainWindowFixture f;
        frmPaint* form = f.newDocument(8, 8);
        f.main().SaveFilterIndex = 4; // a GIF was written last
        form->doc.Buffer.Tag = dir.filePath(QStringLiteral("photo.jpeg"));
        f.main().Save_Click();
        QVERIFY(ReadFile(form->doc.Buffer.Tag).startsWith("GIF87a"));
    }

    void refusedFolderKeepsTheDocumentDirty()
    {
        QTemporaryDir dir;
        QVERIFY(WriteFile(dir.filePath(QStringLiteral("file")), {}));
        MainWindowFixture f;
        frmPaint* form = f.newDocument(8, 8);
        form->doc.Dirty = true;
        form->doc.Buffer.Tag = dir.filePath(QStringLiteral("file/inside.bmp")); // its folder is a file
        f.main().Save_Click();
        QCOMPARE(f.prompt.shown.size(), 1);
        QVERIFY(f.prompt.shown.first().text.startsWith(QStringLiteral("Error saving file: 75 - ")));
        QVERIFY(form->doc.Dirty);
    }

    // Esc while a GIF is written is no error: the box says only that the save stopped.
    void gifStoppedByEscShowsAnError()
    {
        QTemporaryDir dir;
        MainWindowFixture f;
        frmPaint* form = f.newDocument(60, 200);
        form->doc.Dirty = true;
        const QString path = dir.filePath(QStringLiteral("stopped.gif"));
        form->doc.Buffer.Tag = path;
        // Esc arrives once the progress strip shows.
        QCoreApplication::postEvent(f.main().progress(), new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, {}));
        f.main().Save_Click();
        QCOMPARE(f.prompt.shown.size(), 1);
        QCOMPARE(f.prompt.shown.first().text,
                 QStringLiteral("Saving cancelled. The file was left as it was."));
        QVERIFY(!QFile::exists(path));
        QVERIFY(form->doc.Dirty);
        QVERIFY(!QApplication::overrideCursor() && !f.main().progress()->isVisible());
    }

    void closeQuestion_data()
    {
        QTest::addColumn<bool>("named");
        QTest::addColumn<QList<int>>("answers");
        QTest::addColumn<QString>("dialogPath");
        QTest::addColumn<bool>("closes");
        QTest::addColumn<bool>("written");
        QTest::newRow("No: closes unsaved") << true << QList<int>{vbNo} << QString() << true << false;
        QTest::newRow("Yes with a name: saved there")
            << true << QList<int>{vbYes} << QString() << true << true;
        QTest::newRow("Yes, new, a name given: saved")
            << false << QList<int>{vbYes} << "new.bmp" << true << true;
        QTest::newRow("Yes, new, cancelled, close anyway")
            << false << QList<int>{vbYes, vbYes} << QString() << true << false;
        QTest::newRow("Yes, new, cancelled, keep it")
            << false << QList<int>{vbYes, vbNo} << QString() << false << false;
    }
    void closeQuestion()
    {
        QFETCH(bool, named);
        QFETCH(QList<int>, answers);
        QFETCH(QString, dialogPath);
        QFETCH(bool, closes);
        QFETCH(bool, written);
        QTemporaryDir dir;
        MainWindowFixture f;
        frmPaint* form = f.newDocument(8, 8);
        form->doc.Dirty = true;
        const QString target =
            named ? dir.filePath(QStringLiteral("named.bmp")) : dir.filePath(QStringLiteral("new.bmp"));
        if (named)
            form->doc.Buffer.Tag = target;
        if (!dialogPath.isEmpty())
            f.dialogs.paths.enqueue(dir.filePath(dialogPath));
        for (int a : answers)
            f.prompt.answers.enqueue(a);
        QPointer<frmPaint> watch(form);
        const bool mayClose = f.main().FormQueryUnload(*form);
        QCOMPARE(mayClose, closes);
        QCOMPARE(f.prompt.shown.first().text,
                 QStringLiteral("The image has been changed.\n\nDo you wish to save the changes?"));
        if (answers.size() > 1)
            QCOMPARE(f.prompt.shown.last().text,
                     QStringLiteral("File not saved.\n\nClose the image anyway?"));
        QCOMPARE(QFile::exists(target), written);
        QCOMPARE(form->doc.Dirty, !written);
    }

    void propertiesOfANewPicture()
    {
        MainWindowFixture f;
        f.newDocument(30, 20);
        f.main().mnuProperties_Click();
        const QString text = f.prompt.shown.last().text;
        QVERIFY(text.startsWith(QStringLiteral("Filename = Untitled.bmp\r\n\r\nFilesize = -  N/A\r\n")));
        QVERIFY(text.contains(QStringLiteral("Width = 30\r\nHeight = 20\r\nImage type = BMP\r\n")));
        QCOMPARE(f.prompt.shown.last().title, QStringLiteral("Properties: "));
    }

    void recentFiles()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        const QString longPath = QStringLiteral("/a/rather/long/folder/name/for/pictures/first.bmp");
        m.MRUDlist(2, longPath);
        m.MRUDlist(2, QStringLiteral("/p/second.bmp"));
        m.MRUDlist(2, QStringLiteral("/P/SECOND.BMP")); // one entry, whatever the case
        m.MRUDlist(2, QStringLiteral("/p/third.bmp"));
        m.MRUDlist(2, QStringLiteral("/p/fourth.bmp"));
        QCOMPARE(m.action(QStringLiteral("mnuMrud(0)"))->text(), QStringLiteral("..") + longPath.right(30));
        m.MRUDlist(2, QStringLiteral("/p/fifth.bmp")); // the oldest written entry goes
        QCOMPARE(m.recentFile(0), QStringLiteral("/p/fifth.bmp"));
        QCOMPARE(m.recentFile(1), QStringLiteral("/p/second.bmp"));
        m.MRUDlist(2, QStringLiteral("/p/sixth.bmp"));
        QCOMPARE(m.recentFile(1), QStringLiteral("/p/sixth.bmp"));
        // Saved and read back; a file that has gone says so.
        m.SaveRecentFiles();
        m.MRUDlist(1);
        QCOMPARE(m.recentFile(3), QStringLiteral("/p/fourth.bmp"));
        QVERIFY(m.action(QStringLiteral("mnuMrud(3)"))->isVisible());
        m.mnuMrud_Click(3);
        QCOMPARE(f.prompt.shown.last().text,
                 QStringLiteral("/p/fourth.bmp- doesn't exist anymore, or has been renamed."));
        QCOMPARE(f.prompt.shown.last().title, QStringLiteral("Open file"));
    }

    // Close with Yes on a picture opened from a format we don't write goes through Save
    // As, so the file keeps its own bytes.
    void closeWritesBmpIntoPng()
    {
        QTemporaryDir dir;
        const QString png = dir.filePath(QStringLiteral("photo.png"));
        QVERIFY(MakeImage(8, 8, [](int, int) { return RGB(0, 0, 255); }).save(png, "PNG"));
        const QByteArray before = ReadFile(png);
        MainWindowFixture f;
        frmPaint* form = f.newDocument(8, 8);
        form->doc.Buffer.Tag = png;
        form->doc.Dirty = true;
        f.prompt.answers.enqueue(vbYes);
        f.dialogs.paths.enqueue(dir.filePath(QStringLiteral("photo")));
        f.dialogs.filterIndexes.enqueue(1);
        QVERIFY(f.main().FormQueryUnload(*form));
        QCOMPARE(ReadFile(png), before);
        QVERIFY(ReadFile(dir.filePath(QStringLiteral("photo.bmp"))).startsWith("BM"));
        QVERIFY(f.dialogs.paths.isEmpty()); // the dialog was asked
    }

    // The dialog asks about the name it was given; a name the extension rules made of it
    // is asked about before it is replaced.
    void saveAsOverwritesUnnamedFile_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("replaced");
        QTest::newRow("No keeps the file") << int(vbNo) << false;
        QTest::newRow("Yes replaces it") << int(vbYes) << true;
    }
    void saveAsOverwritesUnnamedFile()
    {
        QFETCH(int, answer);
        QFETCH(bool, replaced);
        QTemporaryDir dir;
        const QString existing = dir.filePath(QStringLiteral("cat.bmp"));
        QVERIFY(WriteFile(existing, "keep me"));
        MainWindowFixture f;
        f.newDocument(8, 8);
        f.dialogs.paths.enqueue(dir.filePath(QStringLiteral("cat.jpg"))); // with the BMP filter
        f.dialogs.filterIndexes.enqueue(1);
        f.prompt.answers.enqueue(answer);
        f.main().SaveAs_Click();
        QCOMPARE(f.prompt.shown.size(), 1);
        QCOMPARE(f.prompt.shown.first().style, int(vbWarningYesNo));
        QVERIFY(f.prompt.shown.first().text.contains(QStringLiteral("cat.bmp")));
        QCOMPARE(ReadFile(existing) != "keep me", replaced);
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("cat.jpg"))));
    }

    void jpegRefusalLosesTheName()
    {
        QTemporaryDir dir;
        QVERIFY(WriteFile(dir.filePath(QStringLiteral("file")), {}));
        MainWindowFixture f;
        frmPaint* form = f.newDocument(8, 8);
        form->doc.Dirty = true;
        const QString path = dir.filePath(QStringLiteral("file/photo.jpg")); // its folder is a file
        int quality = 0;
        QVERIFY(!f.main().FileSaveAs(path, SaveFormat::Jpeg, kNoColor, quality));
        QCOMPARE(quality, 90);
        QCOMPARE(f.prompt.shown.size(), 1);
        QCOMPARE(f.prompt.shown.first().style, int(vbExclamation));
        QVERIFY(f.prompt.shown.first().text.startsWith(
            QStringLiteral("Failed to save the picture to the file: '") + path + QStringLiteral("'")));
        QCOMPARE(form->doc.Buffer.Tag, QString());
        QCOMPARE(form->doc.Caption, QStringLiteral("Untitled - 100%"));
        QVERIFY(form->doc.Dirty);
        QVERIFY(!QApplication::overrideCursor());
    }

    void gifExportDialog()
    {
        QTemporaryDir dir;
        MainWindowFixture f;
        frmPaint* form = f.newDocument(6, 4, RGB(255, 0, 0));
        f.main().mnuExportGif_Click();
        QPointer<frmSaveGifs> dialog = f.main().findChild<frmSaveGifs*>();
        QVERIFY(dialog && dialog->isVisible());
        dialog->ChkSaveOptions(1)->setChecked(true);
        for (int i = 0; i < 3; ++i)
            dialog->txtrgbgifcolor(i)->setText(i == 0 ? QStringLiteral("300") : QStringLiteral("0"));
        QCOMPARE(dialog->txtrgbgifcolor(0)->text(), QStringLiteral("255")); // above 255 is 255
        f.dialogs.paths.enqueue(dir.filePath(QStringLiteral("Export")));
        dialog->Command1_Click();
        MainWindowFixture::settle();
        const QString path = dir.filePath(QStringLiteral("Export.gif"));
        QVERIFY(ReadFile(path).startsWith("GIF89a")); // with a transparent colour
        QCOMPARE(form->doc.Buffer.Tag, path);
        QVERIFY(!dialog || !dialog->isVisible()); // the dialog closes
    }

    // Open and Save As start where the user last chose a file, in this run and the next.
    void dialogsStartInProgramFolder()
    {
        QTemporaryDir dir;
        {
            MainWindowFixture f;
            f.newDocument(8, 8);
            f.dialogs.paths.enqueue(dir.filePath(QStringLiteral("kept.bmp")));
            f.main().SaveAs_Click();
            QCOMPARE(f.dialogs.StartFolder, dir.path());
            f.main().SaveSettings(false);
        }
        MainWindowFixture next(false);
        QCOMPARE(next.dialogs.StartFolder, dir.path());
    }

    void firstOpenFilterShowsEveryPictureKind()
    {
        const QString first = OpenFilter(QString()).section(QStringLiteral(";;"), 0, 0);
        for (const char* pattern : {"*.bmp", "*.jpg", "*.gif", "*.png", "*.ico", "*.cur", "*.dib", "*.rle"})
            QVERIFY2(first.contains(QLatin1String(pattern)), pattern);
    }

    void jpegQualityDialog_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<int>("quality");
        QTest::newRow("0 passes, meaning 90") << "0" << true << 0;
        QTest::newRow("75") << " 75 " << true << 75;
        QTest::newRow("101 refused") << "101" << false << 0;
    }
    void jpegQualityDialog()
    {
        QFETCH(QString, text);
        QFETCH(bool, accepted);
        QFETCH(int, quality);
        ScriptedPrompt prompt;
        FrmSaveJPGs dialog(0, prompt);
        QCOMPARE(dialog.TxtJPGQuality()->text(), QStringLiteral("90"));
        dialog.TxtJPGQuality()->setText(text);
        dialog.CmdOK_Click();
        QCOMPARE(dialog.result() == QDialog::Accepted, accepted);
        if (accepted)
            QCOMPARE(dialog.quality(), quality);
        else
            QCOMPARE(prompt.shown.first().text,
                     QStringLiteral("Invalid JPG Quality factor (valid are 1...100)."));
    }
};

QTEST_MAIN(tst_Save)
#include "tst_save.moc"
