#include "tools/Gradient.h"

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/Document.h"
#include "document/DrawState.h"
#include "document/ToolHost.h"
#include "tools/SimplePaints.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace velunta {

namespace {

// The angle of the rubber line. The line is in view pixels already and the zoom
// enters once more here; at 100 % that is the same thing.
double bandAngle(const LineOverlay& band, double f)
{
    return SnapAngle(LineAngle(Int(band.X1 * f), Int(band.Y1 * f), Int(band.X2 * f), Int(band.Y2 * f)));
}

// A line through (px, py) in view pixels at angle t, reaching d on either side.
void placeEdge(LineOverlay& edge, double px, double py, double t, double d)
{
    edge.X1 = px - std::cos(t) * d;
    edge.Y1 = py - std::sin(t) * d;
    edge.X2 = px + std::cos(t) * d;
    edge.Y2 = py + std::sin(t) * d;
}

} // namespace

double LineAngle(double x1, double y1, double x2, double y2)
{
    const double r = x1 != x2 ? std::abs(std::atan((y2 - y1) / (x2 - x1)) * (180 / kPi)) : 90;
    if (x1 > x2 && y1 < y2)
        return (90 - r) + 90;
    if (x1 > x2 && y1 > y2)
        return r + 180;
    if (x1 < x2 && y1 > y2)
        return (90 - r) + 270;
    if (x1 > x2 && y1 == y2)
        return 180;
    if (x1 < x2 && y1 == y2)
        return 0;
    if (x1 == x2 && y1 < y2)
        return 90;
    if (x1 == x2 && y1 > y2)
        return 270;
    return r;
}

double SnapAngle(double a)
{
    const int whole = I2(a);
    if (whole < 1 || whole > 359)
        return 0;
    if (a > 179 && a < 181)
        return 180;
    if (a > 89 && a < 91)
        return 90;
    if (a > 269 && a < 271)
        return 270;
    return a;
}

Color GradientColor(Color from, Color to, int steps, int index)
{
    if (steps <= 0)
        return from;
    const auto channel = [&](int c0, int c1) {
        const double step = c0 == c1 ? 0.0 : double(c0 - c1) / steps;
        return int(I2(std::clamp(c0 - index * step, 0.0, 255.0)));
    };
    return RGB(channel(ColorRed(from), ColorRed(to)), channel(ColorGreen(from), ColorGreen(to)),
               channel(ColorBlue(from), ColorBlue(to)));
}

void GradientTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing)
{
    const DrawState& st = ctx.state;
    const double f = zoom / 100;
    LineOverlay& band = doc.FollowLine;
    if (drawing) {
        band.X1 = I2(surface.CurrentX * f + 0.5);
        band.Y1 = I2(surface.CurrentY * f + 0.5);
        band.X2 = I2(f * x + 0.5);
        band.Y2 = I2(f * y + 0.5);
        band.Visible = true;
        const double a = bandAngle(band, f);
        ctx.host.SetAngleText(QString::number(I2(a)) + QStringLiteral(" °"), 1);
        // The band's two edges go through the press point and the pointer, long enough
        // from the press point to reach every corner of the picture.
        const double cx = surface.CurrentX, cy = surface.CurrentY;
        const double w = surface.ScaleWidth(), h = surface.ScaleHeight();
        const double d = std::max(
            {std::hypot(cx, cy), std::hypot(w - cx, cy), std::hypot(cx, h - cy), std::hypot(w - cx, h - cy)});
        const double t = a * (kPi / 180);
        placeEdge(doc.Temp, cx * f, cy * f, t, d);
        placeEdge(doc.Temp2, x * f, y * f, t, d);
        doc.invalidateView();
        return;
    }

    ctx.host.SetAngleText(QStringLiteral("N/A"), 2);
    Surface& sel = doc.BufferSelected;
    surface.DrawWidth = 3;
    sel.DrawWidth = 3;
    const double a = bandAngle(band, f);
    band.Visible = false;
    doc.invalidateView();

    const double k = 100 / zoom;
    const LineOverlay& from = doc.Temp;
    const LineOverlay& to = doc.Temp2;
    const double n = std::hypot(from.X1 * k - to.X1 * k, from.Y1 * k - to.Y1 * k);
    if (n >= 2) { // a shorter drag leaves the picture as it is
        const bool selection = doc.SelectArea.Visible;
        Surface& target = selection ? sel : surface;
        const double ox = selection ? sel.Left : 0, oy = selection ? sel.Top : 0;
        const double u = -a * (kPi / 180);
        const double sx = std::sin(u), sy = std::cos(u);
        const int w = surface.ScaleWidth(), h = surface.ScaleHeight();
        const int steps = I4(n);
        // The strips are drawn in this order, each one over the last; Lines paints them
        // with exactly those pixels, in one pass over the rows.
        std::vector<LineSegment> strips;
        std::optional<QPoint> lastLeft;
        for (double s = 0; s <= n; s += 0.5) {
            const int lx = I4(from.X1 * k + sx * s), ly = I4(from.Y1 * k + sy * s);
            const int rx = I4(from.X2 * k + sx * s), ry = I4(from.Y2 * k + sy * s);
            if (lastLeft == QPoint(lx, ly))
                continue;
            if ((lx < -4 && rx < -4) || (ly < -4 && ry < -4) || (lx > w + 4 && rx > w + 4) ||
                (ly > h + 4 && ry > h + 4))
                continue; // wholly off the picture
            lastLeft = QPoint(lx, ly);
            // Inside a selection the index runs twice as fast: the background colour comes
            // at mid-band, and beyond it the colours go on until they meet their limits.
            const Color c = GradientColor(st.ForeColor, st.BackColor, steps, selection ? I4(s + s) : I4(s));
            strips.push_back({I4(lx - ox), I4(ly - oy), I4(rx - ox), I4(ry - oy), c});
        }
        Lines(target, strips);
    }
    UpdateView(doc, surface, x, y, zoom);
}

} // namespace velunta
