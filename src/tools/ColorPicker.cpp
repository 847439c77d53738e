#include "tools/ColorPicker.h"

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DrawState.h"
#include "document/ToolHost.h"
#include "tools/SimplePaints.h"

#include <algorithm>

namespace velunta {

namespace {

bool insidePicture(const Surface& s, double x, double y)
{
    return x >= 0 && y >= 0 && x < s.ScaleWidth() && y < s.ScaleHeight();
}

} // namespace

void ColorPickerTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, int button)
{
    DrawState& st = ctx.state;
    if (!insidePicture(doc.Buffer, x, y))
        return;
    const Color c = GetPixel(doc.Buffer, x, y);
    (button == 2 || st.SelIndex == 1 ? st.BackColor : st.ForeColor) = c;
    st.TransparencyColor = st.ForeColor;
    ctx.host.ShowTransparencyColor(st.TransparencyColor);
    ctx.host.ColorsChanged();
    surface.ForeColor = st.ForeColor;
}

void PickColorAt(ToolContext& ctx, Document& doc, double x, double y, int button)
{
    DrawState& st = ctx.state;
    if (!insidePicture(doc.Buffer, x, y))
        return;
    const Color c = GetPixel(doc.Buffer, I4(x), I4(y));
    ctx.host.ShowPickedColor(c);
    if (st.TransparencyPickArmed && button >= 1 && st.CurrentTool != kToolColorReplacer) {
        st.TransparencyColor = c;
        ctx.host.ShowTransparencyColor(c);
        if (button == 2)
            ctx.host.ColorsChanged();
        st.TransparencyPickArmed = false;
        if (doc.viewWindow)
            doc.viewWindow->setPointerShape(kPointerArrow);
        st.CurrentTool = 0;
    } else if (button == 1 || button == 2) {
        st.ReplaceColors[button - 1] = c;
        ctx.host.ShowReplaceColor(button - 1, c);
    }
}

int ReplaceColor(Surface& surface, Color from, Color to)
{
    QImage& image = surface.Image();
    if (image.isNull() || from < 0 || to < 0 || from == to)
        return 0;
    // Compared without the alpha byte, which the picture doesn't use.
    const QRgb src = ToQRgb(from) & 0xFFFFFFu, dst = ToQRgb(to);
    int changed = 0;
    int x0 = image.width(), y0 = image.height(), x1 = -1, y1 = -1;
    for (int y = 0; y < image.height(); ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if ((row[x] & 0xFFFFFFu) == src) {
                row[x] = dst;
                ++changed;
                x0 = std::min(x0, x);
                x1 = std::max(x1, x);
                y0 = std::min(y0, y);
                y1 = std::max(y1, y);
            }
        }
    }
    if (changed)
        surface.touch(QRect(QPoint(x0, y0), QPoint(x1, y1)));
    return changed;
}

} // namespace velunta
