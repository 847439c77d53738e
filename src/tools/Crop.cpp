#include "tools/Crop.h"

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/Document.h"
#include "document/ImageCommand.h"
#include "document/ToolContext.h"
#include "document/ToolHost.h"

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

// The marquee in view pixels from the press (the pen) to the pointer, kept inside the
// view: a box past the right or bottom edge is cut there, and one past the left or top
// starts at 0, shorter by the overhang.
void followPointer(Document& doc, const Surface& surface, int x, int y, double zoom)
{
    const double f = zoom / 100;
    RectOverlay& box = doc.CropArea;
    box.Left = std::min(surface.CurrentX, double(x)) * f;
    box.Width = std::abs(x - surface.CurrentX) * f;
    box.Top = std::min(surface.CurrentY, double(y)) * f;
    box.Height = std::abs(y - surface.CurrentY) * f;
    // The view's drawable size: the picture at the zoom, inside the view's frame.
    const double viewWidth = doc.view.paintWidth > 0 ? doc.view.paintWidth - 2 : surface.ScaleWidth() * f;
    const double viewHeight = doc.view.paintHeight > 0 ? doc.view.paintHeight - 2 : surface.ScaleHeight() * f;
    box.clipTo(viewWidth, viewHeight);
    box.Visible = true;
}

} // namespace

void CropStroke(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing)
{
    if (drawing) {
        const QRect before = doc.SelectArea.viewRect() | doc.CropArea.viewRect();
        doc.SelectArea.Visible = false;
        followPointer(doc, surface, x, y, zoom);
        doc.invalidateViewRect(before | doc.CropArea.viewRect());
        return;
    }
    // A click, or a drag along one axis only, crops nothing.
    const bool nearX = x < surface.CurrentX + 1 && x > surface.CurrentX - 1;
    const bool nearY = y < surface.CurrentY + 1 && y > surface.CurrentY - 1;
    if (nearX || nearY || !doc.CropArea.Visible)
        return;
    const double k = 100 / zoom;
    const RectOverlay& box = doc.CropArea;
    const int w = I4(box.Width * k), h = I4(box.Height * k);
    // A marquee pushed wholly off the view has no pixels left: the picture stays.
    if (w < 1 || h < 1)
        return;
    // The whole picture goes to temp/undo.bmp first, so Undo Resize brings it back.
    RunImageCommand(ctx.host, {.name = "Crop", .resizes = true}, [&](ImageCommand&) {
        Surface& sel = doc.BufferSelected;
        sel.clearPicture();
        sel.Move(box.Left * k, box.Top * k);
        sel.setScaleSize(w, h);
        BitBlt(sel, 0, 0, w, h, doc.Buffer, I4(box.Left * k), I4(box.Top * k));

        // The picture becomes exactly the marked block; the old picture layer would bring
        // the uncropped picture back on the next clearing, so it goes too.
        doc.Buffer.clearPicture();
        doc.Buffer.Cls();
        doc.Buffer.setScaleSize(w, h);
        BitBlt(doc.Buffer, 0, 0, w, h, sel, 0, 0);
    });
    doc.CropArea.Visible = false;
    doc.invalidateView();
}

} // namespace velunta
