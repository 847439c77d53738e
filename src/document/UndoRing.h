#pragma once
// The undo ring: four picture slots per document, written round-robin, and the
// counters that all documents share.

#include <functional>

namespace velunta {

class Document;

struct UndoState {
    int UndoWriteSlot = 0;       // last slot written, 1..4; 0 with no document
    int UndoCursor = 0;          // the slot Undo last restored, 0 = none
    bool UndoDisabled = false;   // while a pasted picture floats
    bool UndoSuppressed = false; // after an undo (or an open) the next stroke records nothing
    bool SkipNextPrepUndo = false;
    bool CancelRequested = false;

    void reset()
    {
        UndoWriteSlot = 0;
        UndoCursor = 0;
        UndoDisabled = false;
    }
};

// Copies the document's Buffer into the next ring slot, unless undo is disabled or
// suppressed. Clears CancelRequested.
void PrepUndo(UndoState& undo, Document& doc);

// One step of Undo through the ring: slots come back in the fixed order 1, 2, 3, 4
// and round, whatever slot was written last; past the last filled slot the cursor
// wraps, and `revertToFile` reloads the saved picture (when the picture has a file)
// before slot 1 is copied. The copy has Buffer's size: a slot of another size shows
// clipped, or old pixels at the rim. Returns the slot restored.
int UndoStep(UndoState& undo, Document& doc, const std::function<void()>& revertToFile);

// The number of slots that hold a picture (more than 1 pixel in each direction).
int FilledUndoSlots(const Document& doc);

} // namespace velunta
