#include "tools/Pencil.h"

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/Document.h"
#include "document/DrawState.h"
#include "tools/Retouch.h"
#include "tools/SimplePaints.h"

#include <algorithm>

namespace velunta {

namespace {

// Components are 16-bit values; anything above 255 counts as 255 (styles 1 to 3 reach 282).
Color compose(double r, double g, double b)
{
    auto channel = [](double v) { return std::clamp(int(I2(v)), 0, 255); };
    return RGB(channel(r), channel(g), channel(b));
}

int randomLevel(DrawState& st)
{
    return I4(st.random.Rnd() * 255);
}

} // namespace

void PencilStroke(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing,
                  int button)
{
    DrawState& st = ctx.state;
    Surface& sel = doc.BufferSelected;
    const double size = st.SelectorValues[4].Value;
    surface.DrawWidth = I2(size);
    sel.DrawWidth = I2(size);

    // The right button's colour holds through the stroke: only the press and moves carry 2.
    Color colour = button == 2 ? st.BackColor : st.ForeColor;

    // The running level, for all styles alike. Counter 1 is its step, and also the
    // rainbow's second counter: after a rainbow stroke the step is whatever it left.
    auto& m = st.ColorMixState;
    if (st.ScatterColors) {
        m[0] = randomLevel(st);
    } else {
        if (m[0] < 2)
            m[1] = 2;
        if (m[0] > 255)
            m[1] = -2;
        m[0] = m[0] + m[1];
    }
    const int level = m[0];
    const int style = st.PencilStyle;
    switch (style) {
    case 1:
        colour = compose(level + 25, 0, 0);
        break;
    case 2:
        colour = compose(0, level + 25, 0);
        break;
    case 3:
        colour = compose(0, 0, level + 25);
        break;
    case 4:
        if (st.ScatterColors) {
            for (int k = 0; k < 3; ++k)
                m[k] = randomLevel(st);
        } else {
            for (int k = 0; k < 3; ++k)
                m[k] = (m[k] + 2) % 255;
        }
        colour = compose(m[0], m[1], m[2]);
        break;
    case 5:
        colour = compose(level, 255, 255);
        break;
    case 6:
        colour = compose(255, level, 255);
        break;
    case 7:
        colour = compose(255, 255, level);
        break;
    case 8:
        colour = compose(level, level, level);
        break;
    case 9: {
        const Color a = st.ForeColor, b = st.BackColor;
        colour = compose((ColorRed(a) + ColorRed(b)) * double(level) / 255,
                         (ColorGreen(a) + ColorGreen(b)) * double(level) / 255,
                         (ColorBlue(a) + ColorBlue(b)) * double(level) / 255);
        break;
    }
    case 10:
        surface.DrawWidth = I2(2 * size);
        sel.DrawWidth = I2(2 * size);
        break;
    default:
        break;
    }

    const bool moved = x + 0.5 < surface.CurrentX || x - 0.5 > surface.CurrentX ||
                       y + 0.5 < surface.CurrentY || y - 0.5 > surface.CurrentY;
    const bool selection = doc.SelectArea.Visible;
    const int whole = I4(size);

    if (!moved && !selection) {
        if (drawing) {
            SetPixelV(surface, x, y, colour);
            if (style == 10) {
                surface.DrawWidth = I2(size);
                SetPixelV(surface, x, y, st.BackColor);
            }
        }
    } else if (!moved && selection) {
        if (drawing) {
            SetPixelV(sel, I4(x - sel.Left), I4(y - sel.Top), colour);
        }
    } else if (!selection && style != 10) {
        LineTo(surface, x, y, colour);
        if (whole <= 2)
            SetPixelV(surface, x, y - 1, colour); // a thin line gets one more pixel above each end
        if (st.SmoothEdge) {
            if (whole <= 2) {
                BlurBrush(surface, x, y - 1, 0, 2, &st.LastBlurX, &st.LastBlurY);
                BlurBrush(surface, x + 1, y, 0, 2, &st.LastBlurX, &st.LastBlurY);
                BlurBrush(surface, x, y + 1, 0, 2, &st.LastBlurX, &st.LastBlurY);
                BlurBrush(surface, x - 1, y, 0, 2, &st.LastBlurX, &st.LastBlurY);
            } else {
                BlurBrush(surface, x, y, whole, 2, &st.LastBlurX, &st.LastBlurY);
            }
        }
    } else if (!selection) {
        // The dots: the pen width steps stand, but SetPixelV takes no notice of them, so what
        // shows is one pixel of the background colour at each sample.
        surface.DrawWidth = I2(2 * size);
        SetPixelV(surface, x, y, colour);
        surface.DrawWidth = I2(size);
        SetPixelV(surface, x, y, st.BackColor);
    } else if (style != 10) {
        const double sx = x - sel.Left, sy = y - sel.Top;
        LineTo(sel, sx, sy, colour);
        if (whole <= 2)
            SetPixelV(sel, I4(sx), I4(sy - 1), colour);
        // Inside a selection the smoothing dab is set up differently on purpose.
        if (st.SmoothEdge) {
            if (whole <= 2)
                BlurBrush(sel, sx, sy, I4(size / 3), 20, &st.LastBlurX, &st.LastBlurY);
            else
                BlurBrush(sel, sx, sy, I4(size / 2), 2, &st.LastBlurX, &st.LastBlurY);
        }
    } else {
        const double sx = x - sel.Left, sy = y - sel.Top;
        sel.DrawWidth = I2(2 * size);
        SetPixelV(sel, I4(sx), I4(sy), colour);
        sel.DrawWidth = I2(size);
        SetPixelV(sel, I4(sx), I4(sy), st.BackColor);
    }
    UpdateView(doc, surface, x, y, zoom);
}

} // namespace velunta
