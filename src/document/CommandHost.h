#pragma once
// What a picture command asks of the main window: the active document, the undo
// steps, the busy state (wait cursor, progress strip, the window's parts disabled) and
// what must follow a change. Commands use it through ImageCommand and BusyScope
// (document/ImageCommand.h), which keep the calls paired on every path.

namespace velunta {

class Document;

class CommandHost {
public:
    virtual ~CommandHost() = default;

    // The document commands work on: the active one, or none.
    virtual Document* ActiveDocument() = 0;
    // Records the active document's Buffer in the undo ring and clears CancelRequested.
    virtual void PrepUndo() = 0;
    // Before the floating selection's pixels change: SelectedBack keeps what lies under
    // them, once per lift. Clears CancelRequested.
    virtual void SetSelBak() = 0;
    // Before the picture changes its size: it is written to temp/undo.bmp, for Undo Resize.
    virtual void SaveUndoBitmap() = 0;
    virtual void ValidateMenus() = 0;
    // A command took its undo step and changed the picture: Undo is offered, as after a
    // stroke.
    virtual void UndoRecorded() {}
    // The picture changed its size: the view and the size read-out follow.
    virtual void PictureResized() = 0;

    // Busy state, nested in pairs: the wait cursor, and with `progress` the progress
    // strip at width 1 with the rest of the window disabled, so that only Esc gets
    // through (it sets CancelRequested, cleared when the strip starts).
    virtual void BeginBusy(bool progress) = 0;
    // The strip's bar at `fraction` (0..1); pending events run once. True when Esc
    // asked to stop.
    virtual bool StepProgress(double fraction) = 0;
    virtual void EndBusy() = 0;
};

} // namespace velunta
