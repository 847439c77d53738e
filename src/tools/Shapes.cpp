#include "tools/Shapes.h"

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/Document.h"
#include "document/DrawState.h"
#include "tools/SimplePaints.h"

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

// The rubber box of tools 9, 10 and 16: while the button is down it follows from the
// press point to the pointer, in view pixels. True at the release, with the box hidden.
bool released(Document& doc, RectOverlay& box, const Surface& pen, int x, int y, double zoom, bool drawing)
{
    const double f = zoom / 100;
    const QRect before = box.viewRect();
    if (drawing) {
        box.Left = std::min(pen.CurrentX, double(x)) * f;
        box.Width = std::abs(x - pen.CurrentX) * f;
        box.Top = std::min(pen.CurrentY, double(y)) * f;
        box.Height = std::abs(y - pen.CurrentY) * f;
    }
    box.Visible = drawing;
    doc.invalidateViewRect(before | box.viewRect());
    return !drawing;
}

// The pen and brush of a rectangle or ellipse style, on the picture and the floating
// selection alike: border only, border and fill (the fill in the background colour),
// fill only; the round styles 3 to 5 the same.
void shapePens(Surface& picture, Surface& selection, int style, double border, const DrawState& st)
{
    for (Surface* s : {&picture, &selection}) {
        switch (style % 3) {
        case 0:
            s->FillStyle = 1;
            s->DrawWidth = I2(border);
            break;
        case 1:
            s->FillStyle = 0;
            s->DrawWidth = I2(border);
            s->FillColor = st.BackColor;
            break;
        default:
            s->FillStyle = 0;
            s->DrawWidth = 1;
            s->FillColor = st.ForeColor;
            break;
        }
        s->ForeColor = st.ForeColor;
    }
}

// The box of the square styles: the Line box goes through both corners, so the far
// edges come one pixel short, which edges depending on the quadrant of the release
// from the press. Equal coordinates on an axis are none of the four: nothing.
void quadrantBox(Surface& s, double cx, double cy, int x, int y, Color c)
{
    if (cx < x && cy < y)
        LineBox(s, cx, cy, x - 1, y - 1, c);
    else if (cx > x && cy > y)
        LineBox(s, x, y, cx - 1, cy - 1, c);
    else if (cx < x && cy > y)
        LineBox(s, cx, cy - 1, x - 1, y, c);
    else if (cx > x && cy < y)
        LineBox(s, x, cy, cx - 1, y - 1, c);
}

} // namespace

void DrawArrowHead(Surface& surface, int x1, int y1, int x2, int y2, double size, bool tipAtEnd,
                   int extraHeads, double spacing)
{
    double dx = x2 - x1, dy = y2 - y1;
    const double length = std::sqrt(dx * dx + dy * dy);
    if (length == 0)
        throw DivisionByZero("an arrow of no length has no direction");
    dx /= length;
    dy /= length;
    const Color c = surface.ForeColor;
    Line(surface, x1, y1, x2, y2, c);
    const auto barb = [&](double vx, double vy) {
        if (tipAtEnd)
            Line(surface, x2, y2, x2 + vx, y2 + vy, c);
        for (int i = 1; i <= extraHeads - 1; ++i) {
            const double bx = x1 + i * dx * spacing, by = y1 + i * dy * spacing;
            Line(surface, bx, by, bx + vx, by + vy, c);
        }
    };
    barb((-dy - dx) * size, (dx - dy) * size);
    barb((dy - dx) * size, (-dx - dy) * size);
}

void LineTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing,
              bool shift)
{
    const DrawState& st = ctx.state;
    Surface& sel = doc.BufferSelected;
    const double width = st.SelectorValues[9].Value;
    surface.DrawWidth = I2(width);
    sel.DrawWidth = I2(width);

    // The band is placed at the integer zoom: below 100 it collapses at the origin.
    const int z = IntDiv(zoom, 100);
    // When the pen's rounding lands one or two pixels past the pointer, the band starts
    // by that gap; y is asked last and wins.
    double g = 0;
    if (const int gap = I2(surface.CurrentX * z) - I2(double(x) * z); gap == 1 || gap == 2)
        g = I2(double(x) * z) - surface.CurrentX * z;
    if (const int gap = I2(surface.CurrentY * z) - I2(double(y) * z); gap == 1 || gap == 2)
        g = I2(double(y) * z) - surface.CurrentY * z;

    LineOverlay& band = doc.FollowLine;
    const QRect before = band.viewRect();
    const auto place = [&] {
        band.X1 = I2(surface.CurrentX * z + g);
        band.X2 = I2(double(x) * z);
        band.Y1 = I2(surface.CurrentY * z + g);
        band.Y2 = I2(double(y) * z);
    };
    if (drawing) {
        // Shift locks the line upright or level once the band is within 2 view pixels of
        // it, by moving the press point under the pointer on that axis.
        if (shift) {
            if (std::abs(band.X1 - band.X2) < 2) {
                surface.CurrentX = x;
                place();
            }
            if (std::abs(band.Y1 - band.Y2) < 2) {
                surface.CurrentY = y;
                place();
            }
        }
        place();
        band.Visible = true;
        doc.invalidateViewRect(before | band.viewRect());
        return;
    }

    band.Visible = false;
    doc.invalidateViewRect(before);
    const double cx = surface.CurrentX, cy = surface.CurrentY;
    const bool selection = doc.SelectArea.Visible;
    // A click is one point in the line's width. The press lies half a pixel off at 100 %,
    // so ends that meet once rounded count as a click too: a line of no length would
    // show nothing, and an arrow of no length has no direction.
    const bool sameEnds =
        selection ? I2(sel.CurrentX + g) == I2(x - sel.Left) && I2(sel.CurrentY + g) == I2(y - sel.Top)
                  : I2(cx) == x && I2(cy) == y;
    const bool onePoint = sameEnds || !(x + g < cx || x - g > cx || y + g < cy || y - g > cy);
    if (onePoint) {
        if (!selection)
            PSet(surface, cx, cy, surface.ForeColor);
        else
            PSet(sel, cx - sel.Left, cy - sel.Top, sel.ForeColor);
    } else if (!selection) {
        if (st.ArrowStyle == 1)
            DrawArrowHead(surface, I2(cx), I2(cy), x, y, Val(st.ArrowSizeText), true, 0, 60.0);
        else
            Line(surface, I2(cx), I2(cy), x, y, surface.ForeColor);
    } else {
        const double ex = x - sel.Left, ey = y - sel.Top;
        if (st.ArrowStyle == 1)
            DrawArrowHead(sel, I2(sel.CurrentX), I2(sel.CurrentY), I2(ex), I2(ey), Val(st.ArrowSizeText),
                          true, 0, 60.0);
        else
            Line(sel, I2(sel.CurrentX + g), I2(sel.CurrentY + g), ex, ey, sel.ForeColor);
    }
    UpdateView(doc, surface, x, y, zoom);
}

void RectangleTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing)
{
    if (!released(doc, doc.DrawBox, surface, x, y, zoom, drawing))
        return;
    const DrawState& st = ctx.state;
    Surface& sel = doc.BufferSelected;
    const int style = st.ShapeStyle;
    shapePens(surface, sel, style, st.SelectorValues[5].Value, st);
    const double cx = surface.CurrentX, cy = surface.CurrentY;
    // The text of "Round:" is the corner's diameter in pixels.
    const int corner = I4(Val(st.RoundCornersText));
    if (!doc.SelectArea.Visible) {
        if (style > 2)
            RoundRect(surface, I4(cx), I4(cy), x, y, corner, corner);
        else
            quadrantBox(surface, cx, cy, x, y, st.ForeColor);
    } else {
        const double l = sel.Left, t = sel.Top;
        if (style > 2)
            RoundRect(sel, I4(cx - l), I4(cy - t), I4(x - l), I4(y - t), corner, corner);
        else // inside a selection, without the one-pixel correction
            LineBox(sel, cx - l, cy - t, x - l, y - t, st.ForeColor);
    }
    UpdateView(doc, surface, x, y, zoom);
}

void CircleTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing)
{
    if (!released(doc, doc.DrawCircle, surface, x, y, zoom, drawing))
        return;
    const DrawState& st = ctx.state;
    Surface& sel = doc.BufferSelected;
    // The round styles have no ellipse of their own: the last pen set-up stays.
    if (st.ShapeStyle >= 0 && st.ShapeStyle <= 2)
        shapePens(surface, sel, st.ShapeStyle, st.SelectorValues[6].Value, st);
    // The figure comes from the rubber ellipse, not from the pen: a rounded rectangle
    // whose corner diameters are its right and bottom coordinates, large enough to make
    // it an ellipse while the box lies in the picture.
    const RectOverlay& box = doc.DrawCircle;
    const double k = 100 / zoom;
    const int left = I4(box.Left * k), top = I4(box.Top * k);
    const int right = I4(box.Left * k + box.Width * k), bottom = I4(box.Top * k + box.Height * k);
    if (!doc.SelectArea.Visible)
        RoundRect(surface, left, top, right, bottom, right, bottom);
    else
        RoundRect(sel, I4(left - sel.Left), I4(top - sel.Top), I4(right - sel.Left), I4(bottom - sel.Top),
                  right, bottom);
    UpdateView(doc, surface, x, y, zoom);
}

unsigned Edge3DOf(int shapeStyle)
{
    switch (shapeStyle) {
    case 0:
        return EDGE_RAISED;
    case 1:
        return EDGE_SUNKEN;
    case 2:
        return EDGE_BUMP;
    case 3:
        return EDGE_ETCHED;
    default:
        return 0;
    }
}

void Rectangle3DTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom,
                     bool drawing)
{
    if (!released(doc, doc.DrawBox, surface, x, y, zoom, drawing))
        return;
    const DrawState& st = ctx.state;
    const unsigned edge = Edge3DOf(st.ShapeStyle);
    const int step = st.ShapeStyle == 2 ? 2 : 1;
    const int thickness = I2(Val(st.Size3DText));
    // Each pass steps one pixel in from every side. The corners go in order first, so a
    // frame dragged up or to the left is the same frame.
    const double cx = surface.CurrentX, cy = surface.CurrentY;
    const double l = std::min(cx, double(x)), t = std::min(cy, double(y));
    const double r = std::max(cx, double(x)), b = std::max(cy, double(y));
    const bool selection = doc.SelectArea.Visible;
    Surface& target = selection ? doc.BufferSelected : surface;
    const double ox = selection ? target.Left : 0, oy = selection ? target.Top : 0;
    for (int i = 0; edge != 0 && i <= thickness; i += step)
        DrawEdge(target, I4(I4(l + i) - ox), I4(I4(t + i) - oy), I4(I4(r - i) - ox), I4(I4(b - i) - oy), edge,
                 BF_RECT);
    UpdateView(doc, surface, x, y, zoom);
}

} // namespace velunta
