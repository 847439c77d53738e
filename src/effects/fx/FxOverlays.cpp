// Operations that lay something over the picture (another picture, lines, a light) or
// work on blocks of it (mosaic), and the block transfer.

#include "effects/fx/FxSupport.h"

#include "core/Gdi.h"
#include "core/Surface.h"

#include <algorithm>
#include <cmath>

namespace velunta {

using namespace fxi;

namespace {

// A source key: the 24 colour bits of transparentColor, or a value no pixel has.
QRgb keyOf(Color transparentColor)
{
    return transparentColor < 0 ? 0xFFFFFFFFu : (ToQRgb(transparentColor) & 0x00FFFFFFu);
}

// Position p measured from origin, wrapped into 0..period-1.
int phase(std::int64_t p, std::int64_t origin, int period)
{
    const std::int64_t m = (p - origin) % period;
    return int(m < 0 ? m + period : m);
}

// The colour laid over a pixel with `transparency`: 0 is the colour itself, 255 the
// pixel unchanged.
struct Veil {
    QRgb colour;
    std::uint32_t t;
    Veil(Color color, int transparency)
        : colour(ToQRgb(color)), t(std::uint32_t(clampArg(transparency, 0, 255)))
    {
    }
};

// The veil over the pixels whose mask is set (all of them without a mask).
FX_VECTORISED void veilRow(const QRgb* in, QRgb* out, int n, const std::uint8_t* mask, QRgb colour,
                           std::uint32_t t)
{
    if (!mask) {
        for (int i = 0; i < n; ++i)
            out[i] = mixPixels(in[i], colour, t);
        return;
    }
    for (int i = 0; i < n; ++i)
        out[i] = mask[i] ? mixPixels(in[i], colour, t) : in[i];
}

// Which of n columns from x fall on a line: on(phase) for the column's position from
// origin, wrapped into 0..period-1.
template <class On>
void columnMask(std::vector<std::uint8_t>& mask, int n, int x, int origin, int period, On on)
{
    mask.resize(std::size_t(n));
    int ph = phase(x, origin, period);
    for (int i = 0; i < n; ++i) {
        mask[std::size_t(i)] = on(ph);
        ph = ph + 1 == period ? 0 : ph + 1;
    }
}

FX_VECTORISED void blendRow(const QRgb* in, QRgb* out, int n, QRgb key, std::uint32_t alpha)
{
    for (int i = 0; i < n; ++i)
        out[i] = (in[i] & 0x00FFFFFFu) == key ? out[i] : mixPixels(in[i], out[i], alpha);
}

// Adds the channels of a row to the column sums of its cell row.
FX_VECTORISED void addColumns(const QRgb* in, std::uint32_t* r, std::uint32_t* g, std::uint32_t* b, int n)
{
    for (int i = 0; i < n; ++i) {
        r[i] += red(in[i]);
        g[i] += green(in[i]);
        b[i] += blue(in[i]);
    }
}

struct Spot {
    float cx, cy;    // centre
    float reach;     // where the light ends
    float rampScale; // 1 / (reach - full) for the fade
    float strength;  // intensity / 255
    float dim;       // how much the unlit part darkens: 0, or strength / 2
    int k[3];        // the light's colour
};

FX_VECTORISED void lightRow(const QRgb* in, QRgb* out, int n, int x0, int y, const Spot& s)
{
    const float dy = float(y) - s.cy;
    for (int i = 0; i < n; ++i) {
        const float dx = float(x0 + i) - s.cx;
        const float t = std::clamp((s.reach - std::sqrt(dx * dx + dy * dy)) * s.rampScale, 0.0f, 1.0f);
        const float f = t * t * (3 - 2 * t);
        const int light = int(f * s.strength * 256 + 0.5f);
        const int keep = 256 - int((1 - f) * s.dim * 256 + 0.5f);
        const QRgb p = in[i];
        out[i] = pack(std::min(255, ((red(p) * keep + 128) >> 8) + ((s.k[0] * light + 128) >> 8)),
                      std::min(255, ((green(p) * keep + 128) >> 8) + ((s.k[1] * light + 128) >> 8)),
                      std::min(255, ((blue(p) * keep + 128) >> 8) + ((s.k[2] * light + 128) >> 8)));
    }
}

} // namespace

bool fxAlphaBlend(Surface& dst, FxRect d, const Surface& src, FxRect s, int alpha, Color transparentColor,
                  const ProgressFn& progress)
{
    const std::uint32_t a = std::uint32_t(clampArg(alpha, 0, 255));
    const QRgb key = keyOf(transparentColor);
    return runRows(dst, d, src, s, progress,
                   [a, key](const QRgb* in, QRgb* out, int n, int, int) { blendRow(in, out, n, key, a); });
}

// One-pixel lines every size + 1 pixels from the rectangle's corner, so `size` pixels
// of picture lie between two lines; at size 0 the colour covers the whole rectangle.
bool fxGridelines(Surface& dst, FxRect d, const Surface& src, FxRect s, Color color, int transparency,
                  int size, const ProgressFn& progress)
{
    const Veil veil(color, transparency);
    const int period = clampArg(size, 0, 24) + 1;
    return runRows(dst, d, src, s, progress, [&](const QRgb* in, QRgb* out, int n, int x, int y) {
        if (phase(y, d.y, period) == 0)
            return veilRow(in, out, n, nullptr, veil.colour, veil.t);
        thread_local std::vector<std::uint8_t> mask;
        columnMask(mask, n, x, d.x, period, [](int ph) { return ph == 0; });
        veilRow(in, out, n, mask.data(), veil.colour, veil.t);
    });
}

// Bands of `size` pixels of the colour alternating with `size` pixels of picture from
// the rectangle's corner: rows for any non-zero direction (a television's scan lines),
// columns for direction 0. Size 0 draws nothing.
bool fxScanlines(Surface& dst, FxRect d, const Surface& src, FxRect s, Color color, int transparency,
                 int size, int direction, const ProgressFn& progress)
{
    const Veil veil(color, transparency);
    const int band = clampArg(size, 0, 24);
    const bool rows = direction != 0;
    return runRows(dst, d, src, s, progress, [&](const QRgb* in, QRgb* out, int n, int x, int y) {
        if (band == 0 || (rows && phase(y, d.y, 2 * band) >= band))
            return copyRow(in, out, n);
        if (rows)
            return veilRow(in, out, n, nullptr, veil.colour, veil.t);
        thread_local std::vector<std::uint8_t> mask;
        columnMask(mask, n, x, d.x, 2 * band, [band](int ph) { return ph < band; });
        veilRow(in, out, n, mask.data(), veil.colour, veil.t);
    });
}

// Square cells of `size` pixels from the rectangle's corner, each the average colour of
// its pixels (cells cut by the rectangle's edge average what lies inside). Sizes 0 and
// 1 change nothing.
bool fxMosaic(Surface& dst, FxRect d, const Surface& src, FxRect s, int size, const ProgressFn& progress)
{
    const int cell = clampArg(size, 0, 128);
    if (cell <= 1)
        return runRows(dst, d, src, s, progress,
                       [](const QRgb* in, QRgb* out, int n, int, int) { copyRow(in, out, n); });
    Plan plan;
    if (!makePlan(plan, dst, d, src, s, 0))
        return true;
    const QRect a = plan.area;
    const int n = a.width();
    const int firstTop = a.top() - phase(a.top(), d.y, cell);
    // Cell c covers columns edge(c)..edge(c + 1) - 1 of the rectangle's row.
    const int firstLeft = a.left() - phase(a.left(), d.x, cell);
    const int columns = (a.right() + 1 - firstLeft + cell - 1) / cell;
    const auto edge = [&](int c) { return std::clamp(firstLeft + c * cell - a.left(), 0, n); };
    const bool done = forRows(
        firstTop, a.bottom() + 1, std::int64_t(n), progress,
        [&](int y0, int y1) {
            std::vector<std::uint32_t> sums(std::size_t(3) * n);
            std::uint32_t *r = sums.data(), *g = r + n, *b = g + n;
            std::vector<QRgb> scratch;
            for (int top = y0; top < y1; top += cell) {
                const int r0 = std::max(top, a.top()), r1 = std::min(top + cell, a.bottom() + 1);
                std::fill(sums.begin(), sums.end(), 0u);
                for (int y = r0; y < r1; ++y)
                    addColumns(plan.in.span(y + plan.dy, a.left() + plan.dx, n, 0, scratch), r, g, b, n);
                for (int c = 0; c < columns; ++c) {
                    const int x0 = edge(c), x1 = edge(c + 1);
                    std::uint32_t sr = 0, sg = 0, sb = 0;
                    for (int i = x0; i < x1; ++i) {
                        sr += r[i];
                        sg += g[i];
                        sb += b[i];
                    }
                    const std::uint32_t count = std::uint32_t((x1 - x0) * (r1 - r0)), half = count / 2;
                    const QRgb average =
                        pack(int((sr + half) / count), int((sg + half) / count), int((sb + half) / count));
                    for (int y = r0; y < r1; ++y)
                        std::fill(plan.outRow(y) + a.left() + x0, plan.outRow(y) + a.left() + x1, average);
                }
            }
        },
        cell);
    dst.touch(a);
    return done;
}

// A round spot of coloured light added to the picture. Its reach is aperture / 255 of
// half the surface's diagonal, so the same setting looks alike on any picture size;
// inside definition / 255 of the reach the light is full, and from there it fades out
// smoothly (definition 255 gives a hard edge). Mode 0 only adds the light; any other
// mode is a stage spot that also dims what the light misses, down to half at full
// intensity. Intensity 0 changes nothing.
bool fxLight(Surface& dst, int x, int y, Color color, int aperture, int intensity, int definition, int mode,
             FxRect area, const ProgressFn& progress)
{
    if (area.width <= 0 || area.height <= 0)
        area = WholeOf(dst);
    const float reach = float(clampArg(aperture, 0, 255) / 255.0 *
                              std::hypot(double(dst.ScaleWidth()), double(dst.ScaleHeight())) / 2.0);
    const float full = reach * float(clampArg(definition, 0, 255)) / 255.0f;
    const float strength = float(clampArg(intensity, 0, 255)) / 255.0f;
    // A hard edge still fades over a tenth of a pixel, so the ramp never divides by zero.
    const Spot spot{float(std::clamp(x, -(1 << 24), 1 << 24)),
                    float(std::clamp(y, -(1 << 24), 1 << 24)),
                    reach,
                    1.0f / std::max(reach - full, 0.1f),
                    strength,
                    mode != 0 ? strength / 2 : 0.0f,
                    {fxGetRed(color), fxGetGreen(color), fxGetBlue(color)}};
    return runRows(
        dst, area, dst, area, progress,
        [&spot](const QRgb* in, QRgb* out, int n, int x0, int row) { lightRow(in, out, n, x0, row, spot); });
}

bool fxBitBlt(Surface& dst, int x, int y, int width, int height, const Surface& src, int srcX, int srcY,
              std::uint32_t rop)
{
    return BitBlt(dst, x, y, width, height, src, srcX, srcY, rop);
}

} // namespace velunta
