#include "document/UndoRing.h"

#include "core/Gdi.h"
#include "document/Document.h"

namespace velunta {

void PrepUndo(UndoState& undo, Document& doc)
{
    undo.CancelRequested = false;
    if (undo.UndoDisabled || undo.UndoSuppressed)
        return;
    if (undo.SkipNextPrepUndo) {
        // The picture just loaded is not a step the user can undo to.
        undo.SkipNextPrepUndo = false;
        return;
    }
    undo.UndoWriteSlot = undo.UndoWriteSlot + 1;
    if (undo.UndoWriteSlot > 4)
        undo.UndoWriteSlot = 1;
    Surface& slot = doc.UndoSlots[undo.UndoWriteSlot - 1];
    // The slot grows and shrinks with the picture; one block copy, nothing else.
    slot.setSize(doc.Buffer.Width(), doc.Buffer.Height());
    BitBlt(slot, 0, 0, doc.Buffer.ScaleWidth(), doc.Buffer.ScaleHeight(), doc.Buffer, 0, 0, SRCCOPY);
    slot.takeTouched();
}

int UndoStep(UndoState& undo, Document& doc, const std::function<void()>& revertToFile)
{
    undo.UndoSuppressed = true;
    doc.SelectArea.Visible = false;
    doc.SelectionLifted = false;
    doc.FloatOriginal = QImage();
    const int filled = FilledUndoSlots(doc);
    undo.UndoCursor = undo.UndoCursor + 1;
    if (undo.UndoCursor > filled) {
        undo.UndoCursor = 0;
        if (!doc.Buffer.Tag.isEmpty() && revertToFile)
            revertToFile();
        undo.UndoCursor = 1;
    }
    const Surface& slot = doc.UndoSlots[undo.UndoCursor - 1];
    BitBlt(doc.Buffer, 0, 0, doc.Buffer.ScaleWidth(), doc.Buffer.ScaleHeight(), slot, 0, 0, SRCCOPY);
    return undo.UndoCursor;
}

int FilledUndoSlots(const Document& doc)
{
    int n = 0;
    // A slot counts when it holds a picture: the frame alone is no picture.
    for (int i = 3; i >= 0; --i)
        if (doc.UndoSlots[i].ScaleWidth() > 0 && doc.UndoSlots[i].ScaleHeight() > 0)
            ++n;
    return n;
}

} // namespace velunta
