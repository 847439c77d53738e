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
    // The slot takes the picture's size; it keeps only the tiles written since the
    // previous step and shares the rest.
    doc.UndoSlots[undo.UndoWriteSlot - 1] = doc.UndoKeep.record(doc.Buffer);
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
    doc.UndoKeep.restore(doc.Buffer, doc.UndoSlots[undo.UndoCursor - 1]);
    return undo.UndoCursor;
}

int FilledUndoSlots(const Document& doc)
{
    int n = 0;
    // A slot counts when it holds a picture: the frame alone is no picture.
    for (int i = 3; i >= 0; --i)
        if (doc.UndoSlots[i] && !doc.UndoSlots[i]->empty())
            ++n;
    return n;
}

} // namespace velunta
