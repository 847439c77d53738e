#pragma once
// What the tools ask of the main window besides what every command asks of it: tool
// selection, the status read-outs and the panels that follow a stroke.

#include "core/Color.h"
#include "document/CommandHost.h"

#include <QString>

namespace velunta {

class Document;

class ToolHost : public CommandHost {
public:
    // The end of a stroke: an undo's suppression of recording is over.
    virtual void StrokeEnded() = 0;
    // Edit > Undo and the toolbar's undo button.
    virtual void SetUndoEnabled(bool enabled) = 0;
    virtual bool UndoEnabled() const = 0;
    virtual void Undo_Click() = 0;

    virtual void SelectTool(int tool) = 0;
    virtual void Cmd_Click(int index) = 0;

    // The image context menu at the pointer.
    virtual void ShowImageContextMenu(Document& doc) = 0;

    // lblCoords, lblArea, and the zoom read-out of the zoom panel.
    virtual void SetCoordsText(const QString& text) = 0;
    virtual void SetAreaText(const QString& text) = 0;
    virtual void SetZoomText(const QString& text) = 0;
    // The zoom panel's preset options all cleared.
    virtual void ClearZoomOptions() = 0;

    // The floating selection's panel (PicCursorCMD) and its blend box.
    virtual void ShowCursorPanel(bool visible) = 0;
    virtual void SetBlendText(const QString& text) = 0;

    // chkSnapGrid toggled by the keyboard; returns the new state.
    virtual bool ToggleSnapGrid() = 0;

    // The gradient's angle read-out (lblAngle) and its alignment: 0 left, 1 right, 2 centred.
    virtual void SetAngleText(const QString& text, int alignment) = 0;

    // The colour picker's read-outs and the working colours after a pick.
    virtual void ShowPickedColor(Color c) = 0;
    virtual void ColorsChanged() = 0;
    // The floating selection's transparency colour (LblTransparencyColor) and the
    // colour replacer's two swatches (LblReplaceCol(0) the source, (1) the new colour).
    virtual void ShowTransparencyColor(Color c) = 0;
    virtual void ShowReplaceColor(int index, Color c) = 0;
    // A click on the picture while Detailed Editing's picker was armed, at this image point.
    virtual void DetailPicked(Document& doc, double x, double y) = 0;
};

} // namespace velunta
