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
    if (st.CurrentTool >= kToolCount || st.CurrentTool < 0)
        return;
    switch (st.CurrentTool) {
    case kToolPointer:
        MoveSelection(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case kToolPencil:
        PencilStroke(ctx, doc, surface, x, y, zoom, drawing, button);
        break;
    case kToolFill:
        FillTool(ctx, doc, surface, x, y, zoom);
        break;
    case kToolGradient:
        GradientTool(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case kToolSelectArea:
        SelectAreaStroke(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case kToolCrop:
        CropStroke(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case kToolColorPicker:
        ColorPickerTool(ctx, doc, surface, x, y, button);
        break;
    case kToolRectangle:
        RectangleTool(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case kToolCircle:
        CircleTool(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case kToolText:
        TextTool(ctx, doc, surface, x, y, zoom);
        break;
    case kToolLine:
        LineTool(ctx, doc, surface, x, y, zoom, drawing, shift);
        break;
    case kToolRectangle3D:
        Rectangle3DTool(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case kToolAirbrush:
    case kToolBrighten:
    case kToolBlur:
    case kToolDarken:
    case kToolDissolve:
    case kToolEnhance:
        RetouchDab(ctx, doc, surface, x, y, zoom, drawing);
        break;
    case kToolZoom:          // the zoom tool acts in the release pipeline
    case kToolColorReplacer: // the colour replacer acts through its panel buttons
    default:
        break;
    }
}

bool ToolChangesPicture(int tool, bool selectionVisible)
{
    switch (tool) {
    case kToolPointer:
        return selectionVisible;
    case kToolZoom:
    case kToolSelectArea:
    case kToolColorPicker:
    case kToolText:
    case kToolColorReplacer:
        return false;
    default:
        return true;
    }
}

} // namespace velunta
