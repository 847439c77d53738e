#include "tools/RetouchTools.h"

#include "core/Numbers.h"
#include "document/Document.h"
#include "document/DrawState.h"
#include "tools/Retouch.h"
#include "tools/SimplePaints.h"

namespace velunta {

namespace {

// Size and rings of a dab from one selector: the rings are half the size, both
// rounded half to even, so size 1 has no ring at all and a dab of it does nothing.
struct DabSize {
    int size;
    int rings;
};
DabSize dabSize(const DrawState& st, int selector)
{
    const double v = st.SelectorValues[selector].Value;
    return {I4(v), I4(v / 2)};
}

// Dissolve and Enhance read their intensity from the text their selector shows
// ("50 " reads 50), not from its value.
int captionIntensity(const DrawState& st, int selector)
{
    return I2(Val(Trim(st.SelectorValues[selector].Caption)));
}

} // namespace

void RetouchDab(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing)
{
    if (!drawing)
        return;
    DrawState& st = ctx.state;
    const bool selection = doc.SelectArea.Visible;
    Surface& target = selection ? doc.BufferSelected : surface;
    const double cx = selection ? x - doc.BufferSelected.Left : x;
    const double cy = selection ? y - doc.BufferSelected.Top : y;
    switch (st.CurrentTool) {
    case kToolAirbrush: {
        const DabSize d = dabSize(st, 2);
        const double pressure = st.SelectorValues[0].Value;
        if (st.HardSpray)
            HardSpray(target, cx, cy, d.size, d.rings, pressure, st.ForeColor, st.random);
        else
            SoftSpray(target, cx, cy, d.size, d.rings, pressure, st.ForeColor);
        break;
    }
    case kToolBrighten: {
        const DabSize d = dabSize(st, 3);
        BrightDarkBrush(target, cx, cy, d.size, d.rings, st.SelectorValues[1].Value, false);
        break;
    }
    case kToolDarken: {
        const DabSize d = dabSize(st, 10);
        BrightDarkBrush(target, cx, cy, d.size, d.rings, st.SelectorValues[11].Value, true);
        break;
    }
    case kToolBlur: {
        const DabSize d = dabSize(st, 8);
        BlurBrush(target, cx, cy, d.size, d.rings, &st.LastBlurX, &st.LastBlurY);
        break;
    }
    case kToolDissolve: {
        const DabSize d = dabSize(st, 12);
        DissolveBrush(target, cx, cy, d.size, d.rings, st.DissolveMode, captionIntensity(st, 13), st.AddNoise,
                      st.random);
        break;
    }
    case kToolEnhance: {
        const DabSize d = dabSize(st, 15);
        EnhanceBrush(target, cx, cy, d.size, d.rings, st.EnhanceMode, captionIntensity(st, 14), st.DoubleStep,
                     st.FilterBaseColor);
        break;
    }
    default:
        return;
    }
    UpdateView(doc, surface, x, y, zoom);
}

} // namespace velunta
