#pragma once
// What a document window passes on to the main window: its pointer and key events,
// the questions of closing, and the pointer pictures it shows.

#include <QCursor>
#include <QString>

namespace velunta {

class frmPaint;

class DocumentHost {
public:
    virtual ~DocumentHost() = default;
    virtual void PaintAreaMouseDown(frmPaint& form, int button, int shift, float x, float y) = 0;
    virtual void PaintAreaMouseMove(frmPaint& form, int button, int shift, float x, float y) = 0;
    virtual void PaintAreaMouseUp(frmPaint& form, int button, int shift, float x, float y) = 0;
    // Ctrl and the wheel: one zoom step in or out around the view position x, y.
    virtual void PaintAreaWheelZoom(frmPaint& form, bool in, float x, float y) = 0;
    virtual void FormKeyDown(frmPaint& form, int keyCode, int shift) = 0;
    virtual void FormKeyUp(frmPaint& form, int keyCode, int shift) = 0;
    // Form_Unload: false keeps the window open.
    virtual bool FormQueryUnload(frmPaint& form) = 0;
    // The window has gone (Form_Terminate).
    virtual void FormTerminated(frmPaint& form) = 0;
    // lblImgSize of the main window.
    virtual void SetImageSizeText(const QString& text) = 0;
    // The zoom read-out of the tool panel strip.
    virtual void ZoomChanged(frmPaint& form) = 0;
    // The pointer picture for a PointerShape or a tool's number.
    virtual QCursor PointerCursor(int shape) = 0;
};

} // namespace velunta
