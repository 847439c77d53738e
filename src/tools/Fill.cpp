#include "tools/Fill.h"

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/Document.h"
#include "document/DrawState.h"
#include "tools/SimplePaints.h"

namespace velunta {

void FillTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom)
{
    const DrawState& st = ctx.state;
    Surface& sel = doc.BufferSelected;
    // The selection gets the pattern too: without it a fill inside a floating selection
    // would paint with whatever brush the selection last had.
    surface.FillStyle = st.FillPattern;
    sel.FillStyle = st.FillPattern;
    surface.FillColor = st.ForeColor;
    sel.FillColor = st.ForeColor;

    const bool selection = doc.SelectArea.Visible;
    Surface& target = selection ? sel : surface;
    const int px = selection ? I4(x - sel.Left) : x;
    const int py = selection ? I4(y - sel.Top) : y;

    // Filling again from inside a region this stroke filled with the same brush changes
    // nothing: the region's pixels now have either the brush or a colour the fill passed
    // over before, and nothing else has drawn since. So a drag only works where it
    // reaches new ground.
    Document::FillMemo& memo = doc.FillDrag;
    if (memo.stroke != doc.StrokeSerial || memo.selection != selection || memo.color != st.ForeColor ||
        memo.pattern != st.FillPattern || memo.border != st.FloodFillBorder) {
        memo.stroke = doc.StrokeSerial;
        memo.selection = selection;
        memo.color = st.ForeColor;
        memo.pattern = st.FillPattern;
        memo.border = st.FloodFillBorder;
        memo.region.clear();
    } else if (memo.region.contains(px, py)) {
        return;
    }

    if (st.FloodFillBorder)
        ExtFloodFill(target, px, py, st.ForeColor, FLOODFILLBORDER, memo.region);
    else
        ExtFloodFill(target, px, py, GetPixel(target, px, py), FLOODFILLSURFACE, memo.region);
    UpdateView(doc, surface, x, y, zoom);
}

} // namespace velunta
