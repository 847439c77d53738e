#include "tools/SimplePaints.h"

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/Document.h"
#include "document/DrawState.h"
#include "document/ToolHost.h"
#include "tools/ColorPicker.h"
#include "tools/Crop.h"
#include "tools/Fill.h"
#include "tools/Gradient.h"
#include "tools/Pencil.h"
#include "tools/RetouchTools.h"
#include "tools/Selection.h"
#include "tools/Shapes.h"
#include "tools/Text.h"

namespace velunta {

void ToolDispatch(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double& zoom,
                  bool& drawing, int button, bool shift)
{
    DrawState& st = ctx.state;
    surface.ForeColor = st.ForeColor;
    doc.BufferSelected.ForeColor = st.ForeColor;
    if (st.CurrentTool > 19 || st.CurrentTool < 0)
        return;
    switch (st.CurrentTool) {
    case 0:
        MoveSelection(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case 1:
        PencilStroke(ctx, doc, surface, x, y, zoom, drawing, button);
        break;
    case 3:
        FillTool(ctx, doc, surface, x, y, zoom);
        break;
    case 4:
        GradientTool(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case 5:
        SelectAreaStroke(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case 7:
        CropStroke(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case 8:
        ColorPickerTool(ctx, doc, surface, x, y, button);
        break;
    case 9:
        RectangleTool(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case 10:
        CircleTool(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case 12:
        TextTool(ctx, doc, surface, x, y, zoom);
        break;
    case 14:
        LineTool(ctx, doc, surface, x, y, zoom, drawing, shift);
        break;
    case 16:
        Rectangle3DTool(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case 6:
    case 11:
    case 13:
    case 15:
    case 18:
    case 19:
        RetouchDab(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case 2:  // the zoom tool acts in the release pipeline
    case 17: // the colour replacer acts through its panel buttons
    default:
        break;
    }
}

bool ToolChangesPicture(int tool, bool selectionVisible)
{
    switch (tool) {
    case 0:
        return selectionVisible;
    case 2:
    case 5:
    case 8:
    case 12:
    case 17:
        return false;
    default:
        return true;
    }
}

} // namespace velunta
