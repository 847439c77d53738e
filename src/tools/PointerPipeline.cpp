#include "tools/PointerPipeline.h"

#include "core/Numbers.h"
#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DrawState.h"
#include "document/ToolHost.h"
#include "tools/ColorPicker.h"
#include "tools/Selection.h"
#include "tools/SimplePaints.h"

#include <cmath>

namespace velunta {

namespace {

bool snapWanted(const DrawState& st, const Document& doc)
{
    return st.SnapToGrid || doc.SnapByKey;
}

QString joined(int a, int b, const char* sep)
{
    return QString::number(a) + QLatin1String(sep) + QString::number(b);
}

} // namespace

void ZoomToolStep(ToolContext& ctx, Document& doc, bool in, float x, float y)
{
    const double z = doc.ZoomFactor;
    double next = z;
    if (in) {
        if (z >= doc.ZoomLimit)
            return;
        next = z < 100 ? z + 10 : z + 100;
    } else {
        if (z <= 10)
            return;
        next = z <= 100 ? z - 10 : z - 100;
    }
    // The clicked point keeps its share of the bars: ratios of the view before the change.
    const double w = doc.view.paintWidth > 0 ? doc.view.paintWidth : 1;
    const double h = doc.view.paintHeight > 0 ? doc.view.paintHeight : 1;
    doc.ZoomFactor = next;
    if (doc.viewWindow) {
        doc.viewWindow->PreDefZoom(next);
        doc.viewWindow->RealignZoom(y / h, x / w);
        doc.viewWindow->setPointerShape(kToolZoom);
    } else {
        doc.RebuildCaption();
    }
    ctx.host.ClearZoomOptions();
}

double ViewToImage(double view, double zoom)
{
    return (view - zoom / 200.0) / zoom * 100.0;
}

void SnapPoint(float& x, float& y, int gridX, int gridY)
{
    if (gridX < 1)
        gridX = 10;
    if (gridY < 1)
        gridY = 10;
    x = float(std::nearbyint(x / float(gridX))) * float(gridX);
    y = float(std::nearbyint(y / float(gridY))) * float(gridY);
}

void PaintArea_MouseDown(ToolContext& ctx, Document& doc, int button, int shift, float x, float y)
{
    DrawState& st = ctx.state;
    doc.SnapPressed = true;
    if (snapWanted(st, doc))
        SnapPoint(x, y, st.GridX, st.GridY);
    const int keptButton = button;
    const int tool = st.CurrentTool;
    // The copy taken while the pointer came over the picture goes to the picture now,
    // before anything is drawn.
    doc.UndoKeep.settle(doc.Buffer);
    // A click that picks the area of Detailed Editing neither draws nor records; the
    // release opens the editor, once the button is up and no stroke is in the way.
    if (st.DetailPickerArmed) {
        doc.Drawing = false;
        doc.MouseReleased = true;
        return;
    }

    if (button == kRightButton && doc.ZoomFactor == 100.0 && tool != kToolZoom) {
        if (tool != kToolColorReplacer && tool != kToolColorPicker && tool != kToolPencil)
            ctx.host.ShowImageContextMenu(doc);
    }
    // The colour replacer picks its colours through the colour picker's reader.
    if (tool == kToolColorReplacer)
        PickColorAt(ctx, doc, ViewToImage(x, doc.ZoomFactor), ViewToImage(y, doc.ZoomFactor), button);
    if (button == kRightButton && tool == kToolPencil)
        button = kLeftButton; // the right pencil draws; keptButton still says 2

    if (button == kLeftButton) {
        ctx.host.SetUndoEnabled(true);
        // No undo point starts for a stroke inside a floating selection. The release records
        // the stroke's result only when the press recorded what came before it.
        if (!doc.SelectArea.Visible && st.NoUndoNextStroke == 0 &&
            (tool != kToolPointer || st.CursorPanelVisible) && !st.DetailPickerArmed && tool != kToolZoom &&
            tool != kToolColorPicker) {
            ctx.host.PrepUndo();
            doc.BuffersChanged = ToolChangesPicture(tool, false);
        }
        if (ToolChangesPicture(tool, doc.SelectArea.Visible))
            doc.SetDirtyTrue();
        doc.Drawing = true;
        ++doc.StrokeSerial;
        const double ix = ViewToImage(x, doc.ZoomFactor);
        const double iy = ViewToImage(y, doc.ZoomFactor);
        doc.Buffer.CurrentX = ix;
        doc.Buffer.CurrentY = iy;
        doc.BufferSelected.CurrentX = doc.Buffer.CurrentX - doc.BufferSelected.Left;
        doc.BufferSelected.CurrentY = doc.Buffer.CurrentY - doc.BufferSelected.Top;
        if (doc.SelectArea.Visible) {
            const Surface& sel = doc.BufferSelected;
            if (sel.CurrentX < 0 || sel.CurrentY < 0 || sel.CurrentX > sel.Width() ||
                sel.CurrentY > sel.Height()) {
                DropSelection(doc);
                ctx.host.SetAreaText(QStringLiteral("0 x 0"));
                ctx.host.ShowCursorPanel(false);
                ctx.host.ValidateMenus();
            }
        }
        doc.StartX = I4(ix);
        doc.StartY = I4(iy);
        double zoom = doc.ZoomFactor;
        ToolDispatch(ctx, doc, doc.Buffer, I2(ix), I2(iy), zoom, doc.Drawing, keptButton, doc.ShiftDown);
    } else {
        doc.Drawing = false;
    }
    if (tool == kToolColorPicker && button != 0)
        doc.Drawing = true; // the picker tracks with the right button too
    doc.MouseReleased = true;
}

void PaintArea_MouseMove(ToolContext& ctx, Document& doc, int button, int shift, float x, float y)
{
    DrawState& st = ctx.state;
    doc.LastX = int(x);
    doc.LastY = int(y);
    if (st.ShowCrossLines) {
        // Only the strips the guidelines leave and enter are painted again.
        const int oldX = int(doc.Line1.X1), oldY = int(doc.Line2.Y1);
        doc.Line1.X1 = doc.Line1.X2 = x;
        doc.Line2.Y1 = doc.Line2.Y2 = y;
        const int w = doc.view.paintWidth, h = doc.view.paintHeight;
        if (doc.Line1.Visible) {
            doc.invalidateViewRect(QRect(oldX - 1, -1, 3, h));
            doc.invalidateViewRect(QRect(int(x) - 1, -1, 3, h));
        }
        if (doc.Line2.Visible) {
            doc.invalidateViewRect(QRect(-1, oldY - 1, w, 3));
            doc.invalidateViewRect(QRect(-1, int(y) - 1, w, 3));
        }
    }
    const double z = doc.ZoomFactor;
    doc.PointerImageA = float(ViewToImage(x, z));
    doc.PointerImageB = float(ViewToImage(y, z));
    // Over the picture with no button held, the user is about to draw: the copy that the
    // first write would make (of pixels shared with the persistent layer or an undo
    // step) is taken now, while the hand still moves.
    if (!doc.Drawing && st.CurrentTool != kToolZoom && st.CurrentTool != kToolColorPicker)
        doc.UndoKeep.prepare(doc.Buffer);

    if (doc.Drawing) {
        if (snapWanted(st, doc) && doc.SnapPressed)
            SnapPoint(x, y, st.GridX, st.GridY);
        const int ix = I2(ViewToImage(x, z));
        const int iy = I2(ViewToImage(y, z));
        double zoom = z;
        ToolDispatch(ctx, doc, doc.Buffer, ix, iy, zoom, doc.Drawing, button, doc.ShiftDown);
        // Tool 16's pointer shows no size.
        if (!(doc.viewWindow && doc.viewWindow->pointerShape() == 16)) {
            if (z == 100.0) {
                ctx.host.SetAreaText(QString::number(I2(std::abs(doc.StartX - x))) + QStringLiteral(" x ") +
                                     QString::number(I2(std::abs(doc.StartY - y))));
            } else {
                // 100 \ z is 0 above 100, so the read-out is 0 there; that is how it reads.
                const int d = IntDiv(z, 200);
                const int s = IntDiv(100, z);
                ctx.host.SetAreaText(QString::number(I2(std::abs(doc.StartX - (x - d) * s))) +
                                     QStringLiteral(" x ") +
                                     QString::number(I2(std::abs(doc.StartY - (y - d) * s))));
            }
        }
    }

    // The two axes are computed differently on purpose: float division across, integer down.
    if (z == 100.0) {
        ctx.host.SetCoordsText(joined(I2(x), I2(y), ", "));
    } else {
        const int d = IntDiv(z, 200);
        ctx.host.SetCoordsText(joined(I2((x - d) / z * 100), IntDiv((y - d) * 100, z), ", "));
    }

    const int tool = st.CurrentTool;
    if (tool == kToolPointer) {
        doc.PointerX = float(ViewToImage(x, z));
        doc.PointerY = float(ViewToImage(y, z));
        if (doc.SelectArea.Visible) {
            const Surface& sel = doc.BufferSelected;
            if (doc.PointerX - sel.Left > sel.Width() || doc.PointerY - sel.Top > sel.Height() ||
                doc.PointerX < sel.Left || doc.PointerY < sel.Top) {
                if (doc.viewWindow)
                    doc.viewWindow->setPointerShape(kPointerArrow);
                return;
            }
            if (doc.viewWindow)
                doc.viewWindow->setPointerShape(kPointerMoveSelection);
            if (st.SelectionBlend >= 1 && st.SelectionBlend <= 255)
                ctx.host.SetBlendText(QString::number(qint64(Int(st.SelectionBlend / 2.55))));
            else
                ctx.host.SetBlendText(QStringLiteral("50"));
            ctx.host.ShowCursorPanel(true);
        } else {
            ctx.host.ShowCursorPanel(false);
            if (doc.viewWindow && doc.viewWindow->pointerShape() != kPointerArrow)
                doc.viewWindow->setPointerShape(kPointerArrow);
        }
    } else if (doc.viewWindow && doc.viewWindow->pointerShape() != tool) {
        doc.viewWindow->setPointerShape(tool);
    }
    if (st.DetailPickerArmed && doc.viewWindow)
        doc.viewWindow->setPointerShape(kPointerDetail);
    // While picking only the read-out follows the pointer; the swatches stay.
    if (doc.Drawing && (tool == kToolColorPicker || tool == kToolColorReplacer))
        PickColorAt(ctx, doc, doc.PointerImageA, doc.PointerImageB);
}

void PaintArea_MouseUp(ToolContext& ctx, Document& doc, int button, int shift, float x, float y)
{
    DrawState& st = ctx.state;
    const double viewWidth = std::max(1, doc.view.paintWidth - 2);
    const double viewHeight = std::max(1, doc.view.paintHeight - 2);
    doc.MouseReleased = true;
    doc.Drawing = false;
    if (snapWanted(st, doc)) {
        doc.SnapPressed = false;
        SnapPoint(x, y, st.GridX, st.GridY);
    }
    const int tool = st.CurrentTool;
    if (st.DetailPickerArmed) {
        st.DetailPickerArmed = false;
        if (doc.viewWindow)
            doc.viewWindow->setPointerShape(kPointerArrow);
        ctx.host.DetailPicked(doc, ViewToImage(x, doc.ZoomFactor), ViewToImage(y, doc.ZoomFactor));
        return;
    }
    if (button == kLeftButton) {
        double zoom = doc.ZoomFactor;
        ToolDispatch(ctx, doc, doc.Buffer, I2(ViewToImage(x, zoom)), I2(ViewToImage(y, zoom)), zoom,
                     doc.Drawing, 0, doc.ShiftDown);
        // Every stroke's end marks the document changed, whatever the tool: Esc then
        // undoes, and closing asks.
        doc.SetDirtyTrue();
        // The arguments go in x first although the routine takes y first; below 100 the
        // picture usually fits the view, so the bars stand at 0 either way.
        if (doc.ZoomFactor < 100 && doc.viewWindow)
            doc.viewWindow->RealignZoom(x / viewWidth, y / viewHeight);
        if (tool == kToolSelectArea)
            ctx.host.ValidateMenus();
    }
    if (tool == kToolZoom && button != kNoButton)
        ZoomToolStep(ctx, doc, button == kLeftButton, x, y);
    if (tool == kToolColorPicker) {
        const int last = st.LastTool;
        if (st.TransparencyPickArmed) {
            // The float's key colour was picked: back to the pointer and the float's panel.
            st.TransparencyPickArmed = false;
            ctx.host.Cmd_Click(kToolPointer);
        } else if (last != kToolPointer && last != kToolSelectArea && last != kToolCrop &&
                   last != kToolZoom && last != kToolColorReplacer) {
            ctx.host.Cmd_Click(last);
        }
    }
    ctx.host.SetZoomText(NumberText(doc.ZoomFactor) + QStringLiteral("%"));
    if (st.CursorPanelVisible || tool != kToolPointer) {
        if (!st.DetailPickerArmed && tool != kToolZoom && tool != kToolColorPicker) {
            if (doc.BuffersChanged) {
                doc.BuffersChanged = false;
                ctx.host.PrepUndo();
            }
            // The stroke after an undo recorded nothing; the one after it records again.
            ctx.host.StrokeEnded();
        }
    }
}

void Form_KeyDown(ToolContext& ctx, Document& doc, int keyCode, int shift)
{
    DrawState& st = ctx.state;
    const int tool = st.CurrentTool;
    if (keyCode >= kKeyLeft && keyCode <= kKeyDown && (tool == kToolPencil || tool == kToolAirbrush) &&
        !doc.SelectArea.Visible && doc.ZoomFactor == 100.0) {
        if (!doc.KeyPointerActive) {
            doc.KeyPointerX = doc.LastX;
            doc.KeyPointerY = doc.LastY;
            doc.KeyPointerActive = true;
        }
        if (keyCode == kKeyLeft)
            doc.KeyPointerX -= 1.0;
        else if (keyCode == kKeyUp)
            doc.KeyPointerY -= 1.0;
        else if (keyCode == kKeyRight)
            doc.KeyPointerX += 1.0;
        else
            doc.KeyPointerY += 1.0;
        const float kx = float(doc.KeyPointerX), ky = float(doc.KeyPointerY);
        PaintArea_MouseMove(ctx, doc, kNoButton, 0, kx, ky);
        PaintArea_MouseDown(ctx, doc, kLeftButton, 0, kx, ky);
        PaintArea_MouseUp(ctx, doc, kLeftButton, 0, kx, ky);
        doc.KeyShortcutsOff = true;
    }
    if (keyCode == kKeyControl)
        doc.KeyShortcutsOff = !doc.SelectArea.Visible; // with a selection the pointer tool takes over
    if (keyCode == kKeyShift)
        doc.ShiftDown = true;

    if (tool == kToolText || doc.KeyShortcutsOff)
        return;
    if (keyCode == kKeyControl && doc.SelectArea.Visible)
        doc.KeyShortcutsOff = true;
    switch (keyCode) {
    case kKeyEscape:
        if (doc.SelectArea.Visible && !doc.Dirty) {
            DropSelection(doc);
            ctx.host.ValidateMenus();
        } else if (ctx.host.UndoEnabled()) {
            ctx.host.Undo_Click();
        }
        return;
    case 'C':
        // The pointer's key. With Ctrl held the letters select no tool, so Ctrl+C stays a copy.
        if (!(shift & kCtrlKey))
            ctx.host.SelectTool(kToolPointer);
        return;
    case kKeyControl:
        if (doc.SelectArea.Visible) {
            doc.SelectionLifted = true; // the pointer tool now moves the float
            ctx.host.SelectTool(kToolPointer);
            ctx.host.Cmd_Click(kToolPointer);
        } else {
            ctx.host.SelectTool(kToolPointer);
        }
        return;
    case kKeySpace:
        doc.SnapByKey = ctx.host.ToggleSnapGrid();
        return;
    case 'H':
        if (tool == kToolPencil && !doc.SelectArea.Visible && doc.ZoomFactor == 100.0) {
            const float px = float(doc.Buffer.CurrentX), py = float(doc.Buffer.CurrentY);
            PaintArea_MouseDown(ctx, doc, kLeftButton, 0, px, py);
            PaintArea_MouseUp(ctx, doc, kLeftButton, 0, px, py);
        }
        return;
    default:
        break;
    }
    static constexpr struct {
        int key;
        int tool;
    } kToolKeys[] = {{'M', kToolSelectArea},  {'O', kToolCrop},     {'Z', kToolZoom},
                     {'A', kToolAirbrush},    {'P', kToolPencil},   {'G', kToolGradient},
                     {'F', kToolFill},        {'E', kToolCircle},   {'B', kToolRectangle},
                     {'S', kToolBlur},        {'T', kToolText},     {'+', kToolBrighten},
                     {'Y', kToolColorPicker}, {'D', kToolDissolve}, {'-', kToolDarken},
                     {'3', kToolRectangle3D}, {'L', kToolLine}};
    for (const auto& k : kToolKeys) {
        if (k.key == keyCode) {
            ctx.host.SelectTool(k.tool);
            return;
        }
    }
}

void Form_KeyUp(ToolContext& ctx, Document& doc, int keyCode, int shift)
{
    if (keyCode == kKeyControl)
        doc.KeyShortcutsOff = false;
    if (keyCode == kKeyShift)
        doc.ShiftDown = false;
}

} // namespace velunta
