// The undo ring (round-robin writes, the fixed 1, 2, 3, 4 order of Undo, the flags that
// skip a recording), and steps that keep only what changed yet give back the exact bytes.

#include "document/ImageCommand.h"
#include "document/PaintArea.h"
#include "document/StepHistory.h"
#include "document/UndoRing.h"
#include "document/frmPaint.h"
#include "shell/frmMain.h"
#include "support/FakeHost.h"
#include "support/MainWindowFixture.h"

#include <QtTest>

#include <map>

using namespace velunta;
using namespace velunta::test;

namespace {

// Inverts the destination (the ROP3 that reads neither source nor brush).
constexpr std::uint32_t kInvert = 0x00550009;

// Line art: flat cells of several colours between black lines, so that fills find
// bounded regions and the retouch brushes find edges.
Color lineArt(int x, int y)
{
    if (x % 37 == 0 || y % 29 == 0)
        return 0;
    return RGB(40 + (x / 37) * 23 % 200, 60 + (y / 29) * 41 % 180, ((x / 37) ^ (y / 29)) * 31 % 256);
}

// Four strokes: inside one tile, across tile borders, along a border, and a long one.
const QList<QList<QPointF>> kStrokes = {{{10, 10}, {20, 15}},
                                        {{50, 50}, {100, 90}, {140, 130}},
                                        {{64, 5}, {64, 190}},
                                        {{5, 195}, {150, 100}, {295, 3}}};

// Runs the undo ring through all its slots and checks each against the picture that
// stood when the slot was written.
void walkRing(UndoState& undo, Document& doc, const std::map<int, QImage>& expected)
{
    QCOMPARE(int(expected.size()), 4);
    for (const auto& [slot, image] : expected)
        QCOMPARE(DifferingPixels(doc.UndoSlots[slot - 1]->toImage(), image), 0);
    for (int step = 1; step <= 5; ++step) {
        const int slot = UndoStep(undo, doc, {});
        QCOMPARE(DifferingPixels(doc.Buffer.Image(), expected.at(slot)), 0);
    }
}

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

class tst_UndoStore : public QObject {
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
        PrepUndo(undo, doc);
        QCOMPARE(undo.UndoWriteSlot, 1);
    }

    void emptyRingOfAPictureNeverSavedChangesNothing()
    {
        Document doc = pictureOf(4, 3, RGB(9, 9, 9));
        UndoState undo;
        int reverts = 0;
        UndoStep(undo, doc, [&] { ++reverts; });
        QCOMPARE(reverts, 0); // never saved: nothing to reload
        QCOMPARE(undo.UndoCursor, 1);
        QCOMPARE(GetPixel(doc.Buffer, 0, 0), RGB(9, 9, 9)); // the empty slot copies nothing
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

    void undoAfterEveryToolGivesBackExactBytes_data()
    {
        QTest::addColumn<int>("tool");
        for (int tool : {kToolPencil, kToolFill, kToolGradient, kToolAirbrush, kToolRectangle, kToolCircle,
                         kToolBrighten, kToolBlur, kToolLine, kToolDarken, kToolRectangle3D, kToolDissolve,
                         kToolEnhance})
            QTest::newRow(qPrintable(QString::number(tool))) << tool;
    }
    void undoAfterEveryToolGivesBackExactBytes()
    {
        QFETCH(int, tool);
        ToolBench b(300, 200);
        b.paint(lineArt);
        UndoState undo;
        b.host.undo = &undo;
        std::map<int, QImage> expected;
        int lastSlot = 0;
        b.host.onPrepUndo = [&] {
            if (undo.UndoWriteSlot != lastSlot)
                expected[lastSlot = undo.UndoWriteSlot] = b.doc.Buffer.Image().copy();
        };
        b.state.CurrentTool = tool;
        b.state.ForeColor = RGB(250, 20, 90);
        for (const QList<QPointF>& stroke : kStrokes)
            b.mouse(stroke);
        walkRing(undo, b.doc, expected);
        // After an undo the next stroke records nothing, the one after records again.
        b.mouse(kStrokes[1]);
        b.mouse(kStrokes[0]);
        walkRing(undo, b.doc, expected);
    }

    void oneTileAndAllTilesSteps()
    {
        Document doc;
        doc.Buffer.setImage(Pattern(200, 130));
        UndoState undo;
        std::map<int, QImage> expected;
        auto record = [&] {
            PrepUndo(undo, doc);
            expected[undo.UndoWriteSlot] = doc.Buffer.Image().copy();
        };
        record();
        SetPixelV(doc.Buffer, 70, 70, RGB(1, 2, 3)); // one tile
        record();
        QCOMPARE(int(doc.UndoSlots[1]->tiles.size()), 1);
        BitBlt(doc.Buffer, 0, 0, 200, 130, doc.Buffer, 0, 0, kInvert); // every tile
        record();
        SetPixelV(doc.Buffer, 199, 129, RGB(9, 9, 9)); // the clipped corner tile
        record();
        walkRing(undo, doc, expected);
    }

    void wholePictureCommandsGiveBackExactBytes_data()
    {
        QTest::addColumn<int>("command");
        int i = 0;
        for (const char* name :
             {"greyscale", "brighter", "darker", "inverted by the runner", "half the picture"})
            QTest::newRow(name) << i++;
    }
    void wholePictureCommandsGiveBackExactBytes()
    {
        QFETCH(int, command);
        MainWindowFixture f;
        frmMain& m = f.main();
        Document& doc = f.newDocument(300, 200)->doc;
        doc.Buffer.setImage(MakeImage(300, 200, lineArt));
        const auto invert = [&](int w) {
            RunImageCommand(m, {.name = "invert"}, [w](ImageCommand& c) {
                BitBlt(c.target(), 0, 0, w, 200, c.target(), 0, 0, kInvert);
                return true;
            });
        };
        const std::function<void()> commands[] = {
            [&] { m.mnugrayscale_Click(); }, [&] { m.mnuDoBright_Click(); }, [&] { m.mnuDoDark_Click(); },
            [&] { invert(300); }, [&] { invert(150); }};
        std::map<int, QImage> expected;
        for (int i = 0; i < 4; ++i) {
            const QImage before = doc.Buffer.Image().copy();
            const int slot = m.undo().UndoWriteSlot;
            commands[command]();
            if (m.undo().UndoWriteSlot != slot)
                expected[m.undo().UndoWriteSlot] = before;
        }
        for (int i = 1; i <= 4; ++i) {
            m.Undo_Click();
            QCOMPARE(DifferingPixels(doc.Buffer.Image(), expected.at(i)), 0);
        }
    }

    void stepHistoryWalksBackAndForthOverChangesOfSize()
    {
        Document doc;
        doc.Buffer.setImage(Pattern(150, 100));
        StepHistory history;
        std::vector<QImage> states{doc.Buffer.Image().copy()};
        history.record(doc);
        for (int i = 0; i < 5; ++i) {
            if (i == 2)
                doc.Buffer.setScaleSize(90, 120); // a crop or resize between two steps
            BitBlt(doc.Buffer, 10 * i, 7 * i, 70, 20, doc.Buffer, 0, 0, kInvert);
            if (i != 4) // the last change is kept by the first undo itself
                history.record(doc);
            history.record(doc); // a second record of the same picture adds nothing
            states.push_back(doc.Buffer.Image().copy());
        }
        for (int i = 4; i >= 0; --i) {
            QVERIFY(history.undo(doc));
            QCOMPARE(doc.Buffer.Image().size(), states[std::size_t(i)].size());
            QCOMPARE(DifferingPixels(doc.Buffer.Image(), states[std::size_t(i)]), 0);
        }
        QVERIFY(!history.undo(doc));
        for (int i = 1; i <= 5; ++i) {
            QVERIFY(history.redo(doc));
            QCOMPARE(DifferingPixels(doc.Buffer.Image(), states[std::size_t(i)]), 0);
        }
        QVERIFY(!history.redo(doc));
        // A change after an undo ends the way forward.
        QVERIFY(history.undo(doc));
        SetPixelV(doc.Buffer, 1, 1, RGB(1, 2, 3));
        QVERIFY(!history.redo(doc));
        QCOMPARE(history.position(), history.states() - 1);
    }

    void stepHistoryKeepsAHundredStepsWithinItsBudget()
    {
        Document doc;
        doc.Buffer.setImage(Pattern(640, 640));
        StepHistory history(std::size_t(64) * 16384); // 64 tiles
        for (int i = 0; i < 130; ++i) {
            SetPixelV(doc.Buffer, (i * 64) % 640, (i / 10) * 64, RGB(i, 0, 0));
            history.record(doc);
            QVERIFY(history.states() <= StepHistory::kMaxSteps + 1);
        }
        QVERIFY(history.heldBytes() <= std::size_t(64) * 16384 + std::size_t(640 * 640 * 4));
        history = StepHistory();
        for (int i = 0; i < 130; ++i) {
            SetPixelV(doc.Buffer, 5, 5, RGB(i, 0, 0));
            history.record(doc);
        }
        QCOMPARE(history.states(), StepHistory::kMaxSteps + 1);
    }

    void stepByStepUndoSettingUndoesAndRedoesThroughTheMenu()
    {
        QImage first, second;
        {
            MainWindowFixture f;
            frmMain& m = f.main();
            QVERIFY(!m.StepUndoOn());
            QVERIFY(!m.action(MenuId::Redo)->isVisible());
            m.action(MenuId::mnuStepUndo)->trigger();
            QVERIFY(m.StepUndoOn());
            frmPaint* form = f.newDocument(120, 90);
            Document& doc = form->doc;
            const QImage blank = doc.Buffer.Image().copy();
            m.Cmd_Click(kToolLine);
            f.drag(*form, {10, 10}, {100, 80});
            first = doc.Buffer.Image().copy();
            f.drag(*form, {10, 80}, {100, 10});
            second = doc.Buffer.Image().copy();
            QVERIFY(DifferingPixels(first, second) > 0);
            m.action(MenuId::Undo)->trigger();
            QCOMPARE(DifferingPixels(doc.Buffer.Image(), first), 0);
            m.Undo_Click();
            QCOMPARE(DifferingPixels(doc.Buffer.Image(), blank), 0);
            m.Redo_Click();
            QCOMPARE(DifferingPixels(doc.Buffer.Image(), first), 0);
            m.action(MenuId::Redo)->trigger();
            QCOMPARE(DifferingPixels(doc.Buffer.Image(), second), 0);
            m.close();
        }
        MainWindowFixture again(false);
        QVERIFY(again.main().StepUndoOn()); // remembered
    }

    // While the pointer comes over the picture, the copy that its first write would make
    // is taken ahead; the press then writes without copying the picture, and every step
    // still gives back its bytes.
    void pressAfterThePointerCameCopiesNothing_data()
    {
        QTest::addColumn<bool>("opened"); // else after a change of every pixel
        QTest::addColumn<bool>("writeWhileCopying");
        QTest::newRow("opened picture") << true << false;
        QTest::newRow("after a whole-picture change") << false << false;
        QTest::newRow("written while copying") << true << true;
    }
    void pressAfterThePointerCameCopiesNothing()
    {
        QFETCH(bool, opened);
        QFETCH(bool, writeWhileCopying);
        Document doc;
        UndoState undo;
        const QImage start = Pattern(700, 500);
        std::map<int, QImage> expected;
        doc.Buffer.setScaleSize(700, 500);
        if (opened) {
            doc.Buffer.setPicture(start);
        } else {
            doc.Buffer.setImage(start);
            PrepUndo(undo, doc);
            expected[undo.UndoWriteSlot] = start;
            BitBlt(doc.Buffer, 0, 0, 700, 500, doc.Buffer, 0, 0, kInvert);
        }
        doc.UndoKeep.prepare(doc.Buffer);
        if (writeWhileCopying)
            SetPixelV(doc.Buffer, 3, 3, RGB(1, 2, 3));
        doc.UndoKeep.settle(doc.Buffer);
        QVERIFY(doc.Buffer.Image().isDetached());
        const uchar* own = doc.Buffer.Image().constBits();
        for (int stroke = 0; stroke < 2; ++stroke) {
            PrepUndo(undo, doc); // the press
            expected[undo.UndoWriteSlot] = doc.Buffer.Image().copy();
            BitBlt(doc.Buffer, 100 + 70 * stroke, 90, 40, 30, doc.Buffer, 0, 0, kInvert);
            QCOMPARE(doc.Buffer.Image().constBits(), own);
        }
        if (opened)
            QVERIFY(doc.Buffer.Picture().constBits() != own);
        for (const auto& [slot, image] : expected)
            QCOMPARE(DifferingPixels(doc.UndoSlots[slot - 1]->toImage(), image), 0);
        const int slot = UndoStep(undo, doc, {});
        QCOMPARE(DifferingPixels(doc.Buffer.Image(), expected.at(slot)), 0);
    }

    // A command from the keyboard leaves the pointer resting over the picture: the copy
    // for the next stroke begins with the command's end.
    void strokeAfterAKeyboardCommandCopiesNothing()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(700, 500);
        Document& doc = form->doc;
        form->paintArea()->setAttribute(Qt::WA_UnderMouse, true);
        m.InvertImage_Click();
        doc.UndoKeep.settle(doc.Buffer);
        const QImage inverted = doc.Buffer.Image().copy();
        const uchar* own = doc.Buffer.Image().constBits();
        m.PrepUndo();
        BitBlt(doc.Buffer, 10, 10, 30, 30, doc.Buffer, 0, 0, kInvert);
        QCOMPARE(doc.Buffer.Image().constBits(), own);
        QCOMPARE(DifferingPixels(doc.UndoSlots[m.undo().UndoWriteSlot - 1]->toImage(), inverted), 0);
    }

    void ringAfterFourSmallStrokesOnALargePictureIsASmallFraction()
    {
        ToolBench b(3000, 2000);
        UndoState undo;
        b.host.undo = &undo;
        b.state.CurrentTool = kToolPencil;
        for (int i = 0; i < 4; ++i)
            b.mouse({{100.0 + 700 * i, 300}, {180.0 + 700 * i, 420}});
        std::vector<UndoSnapshotPtr> held(b.doc.UndoSlots.begin(), b.doc.UndoSlots.end());
        const double picture = double(b.doc.Buffer.Image().sizeInBytes());
        for (const UndoSnapshotPtr& s : held)
            QVERIFY(s && s->base.size() == b.doc.Buffer.Image().size());
        // What the ring keeps beyond the picture and the picture as it was before the
        // first stroke, which it shares with the file's layer.
        held.push_back(std::make_shared<UndoSnapshot>(UndoSnapshot{held[0]->base, 0, 0, {}}));
        const std::size_t beyondBase =
            UndoStore::heldBytes(held, b.doc.Buffer) - std::size_t(held[0]->base.sizeInBytes());
        QVERIFY2(beyondBase < picture / 20, qPrintable(QString::number(beyondBase / picture)));
    }
};

QTEST_MAIN(tst_UndoStore)
#include "tst_undostore.moc"
