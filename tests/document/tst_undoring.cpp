// The undo ring: round-robin writes, the fixed 1, 2, 3, 4 order of Undo, the wrap to
// the saved file, and the flags that skip a recording.

#include "core/Gdi.h"
#include "document/Document.h"
#include "document/UndoRing.h"
#include "support/TestImages.h"

#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

Document pictureOf(int w, int h, Color c)
{
    Document doc;
    doc.CreatePicture(w + 2, h + 2, c);
    return doc;
}

void paint(Document& doc, Color c)
{
    doc.Buffer.BackColor = c;
    doc.Buffer.Cls();
}

} // namespace

class tst_UndoRing : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void fifthRecordOverwritesSlotOneAndUndoWalksInFixedOrder()
    {
        Document doc = pictureOf(4, 3, 0);
        UndoState undo;
        for (int i = 1; i <= 5; ++i) {
            paint(doc, RGB(i, 0, 0));
            PrepUndo(undo, doc);
        }
        QCOMPARE(undo.UndoWriteSlot, 1);
        QCOMPARE(FilledUndoSlots(doc), 4);
        // 1, 2, 3, 4 and round, whatever slot was written last.
        for (int expected : {1, 2, 3, 4, 1}) {
            QCOMPARE(UndoStep(undo, doc, {}), expected);
            QCOMPARE(GetPixel(doc.Buffer, 1, 1), RGB(expected == 1 ? 5 : expected, 0, 0));
            QVERIFY(undo.UndoSuppressed);
        }
    }

    void flagsSkipRecording()
    {
        Document doc = pictureOf(4, 3, 0);
        UndoState undo;
        undo.CancelRequested = true;
        undo.UndoSuppressed = true;
        PrepUndo(undo, doc);
        QCOMPARE(undo.UndoWriteSlot, 0);
        QVERIFY(!undo.CancelRequested);
        undo.UndoSuppressed = false;
        undo.UndoDisabled = true;
        PrepUndo(undo, doc);
        QCOMPARE(undo.UndoWriteSlot, 0);
        undo.UndoDisabled = false;
        undo.SkipNextPrepUndo = true; // the load of a file is no step to undo to
        PrepUndo(undo, doc);
        QCOMPARE(undo.UndoWriteSlot, 0);
        PrepUndo(undo, doc);
        QCOMPARE(undo.UndoWriteSlot, 1);
    }

    void emptyRingWrapsToTheFile()
    {
        Document doc = pictureOf(4, 3, RGB(9, 9, 9));
        UndoState undo;
        int reverts = 0;
        UndoStep(undo, doc, [&] { ++reverts; });
        QCOMPARE(reverts, 0); // never saved: nothing to reload
        QCOMPARE(undo.UndoCursor, 1);
        QCOMPARE(GetPixel(doc.Buffer, 0, 0), RGB(9, 9, 9)); // the empty slot copies nothing
        doc.Buffer.Tag = QStringLiteral("/some/picture.bmp");
        UndoStep(undo, doc, [&] { ++reverts; });
        QCOMPARE(reverts, 1);
        QCOMPARE(undo.UndoCursor, 1);
    }

    void slotOfAnotherSizeShowsClipped()
    {
        Document doc = pictureOf(4, 4, RGB(1, 1, 1));
        UndoState undo;
        PrepUndo(undo, doc);
        doc.Buffer.BackColor = RGB(2, 2, 2);
        doc.Buffer.setSize(8, 8); // a 6 x 6 picture now
        doc.Buffer.Cls();
        UndoStep(undo, doc, {});
        QCOMPARE(GetPixel(doc.Buffer, 3, 3), RGB(1, 1, 1));
        QCOMPARE(GetPixel(doc.Buffer, 5, 5), RGB(2, 2, 2)); // old pixels at the rim
    }
};

QTEST_GUILESS_MAIN(tst_UndoRing)
#include "tst_undoring.moc"
