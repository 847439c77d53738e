// Undo in the running window: the stroke after an undo, the wrap to the saved file,
// a resize undo file too small to count, and "Undo to last saved image".

#include "core/Gdi.h"
#include "document/frmPaint.h"
#include "shell/Services.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QToolButton>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

class tst_Undo : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void strokeAfterUndoRecordsNothing()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(40, 30);
        m.Cmd(1)->click();
        f.drag(*form, {2, 2}, {20, 2});
        QCOMPARE(m.undo().UndoWriteSlot, 2);
        m.Undo_Click();
        QCOMPARE(GetPixel(form->doc.Buffer, 10, 2), Color(0xFFFFFF)); // slot 1: before the stroke
        f.drag(*form, {2, 10}, {20, 10});
        QCOMPARE(m.undo().UndoWriteSlot, 2); // recorded nothing
        QVERIFY(!m.undo().UndoSuppressed);
        f.drag(*form, {2, 20}, {20, 20});
        QCOMPARE(m.undo().UndoWriteSlot, 4); // records again
    }

    void wrapReloadsTheSavedFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("saved.bmp"));
        QVERIFY(MakeImage(8, 6, [](int, int) { return RGB(200, 0, 0); }).save(path, "BMP"));
        MainWindowFixture f;
        frmMain& m = f.main();
        m.FileToOpen = path;
        m.Open_Click();
        frmPaint* form = m.activeDocument();
        QVERIFY(form);
        QCOMPARE(m.undo().UndoWriteSlot, 0); // the load is no step to undo to
        QVERIFY(MakeImage(8, 6, [](int, int) { return RGB(0, 0, 200); }).save(path, "BMP"));
        // No slot holds a picture: Undo goes round to the file at once.
        m.Undo_Click();
        QCOMPARE(GetPixel(form->doc.Buffer, 3, 3), RGB(0, 0, 200));
        QCOMPARE(m.undo().UndoCursor, 1);
    }

    void smallUndoFileCountsAsNone()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(10, 10);
        QVERIFY(WriteFile(f.appFolder() + QStringLiteral("temp/undo.bmp"), QByteArray(1999, 'x')));
        m.ValidateMenus();
        QVERIFY(m.action(QStringLiteral("UndoResize"))->isEnabled());
        m.Undo_Click();
        QVERIFY(!m.action(QStringLiteral("UndoResize"))->isEnabled());
        QCOMPARE(form->doc.Buffer.ScaleWidth(), 10);
    }

    void revertOfANeverSavedPageKeepsIt()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(12, 12, RGB(1, 2, 3));
        form->doc.Name = QStringLiteral("Untitled.bmp");
        m.CmdCommands(17)->click();
        QCOMPARE(GetPixel(form->doc.Buffer, 5, 5), RGB(1, 2, 3));
        QVERIFY(form->doc.Buffer.Tag.isEmpty());
        QCOMPARE(form->doc.Caption, QStringLiteral("Untitled.bmp - 100%"));
        QCOMPARE(m.undo().UndoWriteSlot, 1); // the button records after reverting
    }
};

QTEST_MAIN(tst_Undo)
#include "tst_undo.moc"
