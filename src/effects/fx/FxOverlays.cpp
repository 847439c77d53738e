// Operations that lay something over the picture (another picture, lines, a light) or
// work on blocks of it (mosaic), and the block transfer.

#include "effects/fx/FxSupport.h"

#include "core/Gdi.h"
#include "core/Surface.h"

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
    int r, g, b, t;
    Veil(Color color, int transparency)
        : r(fxGetRed(color)), g(fxGetGreen(color)), b(fxGetBlue(color)), t(clampArg(transparency, 0, 255))
    {
    }
    QRgb over(QRgb p) const
    {
        return pack(mix255(red(p), r, t), mix255(green(p), g, t), mix255(blue(p), b, t));
    }
};

} // namespace

bool fxAlphaBlend(Surface& dst, FxRect d, const Surface& src, FxRect s, int alpha, Color transparentColor,
                  const ProgressFn& progress)
{
    const int a = clampArg(alpha, 0, 255);
    const QRgb key = keyOf(transparentColor);
    return runRows(dst, d, src, s, progress, [a, key](const QRgb* in, QRgb* out, int n, int, int) {
        for (int i = 0; i < n; ++i) {
            const QRgb p = in[i], q = out[i];
            if ((p & 0x00FFFFFFu) != key)
                out[i] = pack(mix255(red(p), red(q), a), mix255(green(p), green(q), a),
                              mix255(blue(p), blue(q), a));
        }
    });
}

// One-pixel lines every size + 1 pixels from the rectangle's corner, so `size` pixels
// of picture lie between two lines; at size 0 the colour covers the whole rectangle.
bool fxGridelines(Surface& dst, FxRect d, const Surface& src, FxRect s, Color color, int transparency,
                  int size, const ProgressFn& progress)
{
    const Veil veil(color, transparency);
    const int period = clampArg(size, 0, 24) + 1;
    return runRows(dst, d, src, s, progress, [&](const QRgb* in, QRgb* out, int n, int x, int y) {
        if (phase(y, d.y, period) == 0) {
            for (int i = 0; i < n; ++i)
                out[i] = veil.over(in[i]);
            return;
        }
        for (int i = 0; i < n; ++i)
            out[i] = phase(std::int64_t(x) + i, d.x, period) == 0 ? veil.over(in[i]) : in[i];
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
        if (band == 0 || (rows && phase(y, d.y, 2 * band) >= band)) {
            copyRow(in, out, n);
            return;
        }
        for (int i = 0; i < n; ++i)
            out[i] = rows || phase(std::int64_t(x) + i, d.x, 2 * band) < band ? veil.over(in[i]) : in[i];
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

    const int firstTop = a.top() - phase(a.top(), d.y, cell);
    const int firstLeft = a.left() - phase(a.left(), d.x, cell);
    const int columns = (a.right() + 1 - firstLeft + cell - 1) / cell;
    const bool done = forRows(
        firstTop, a.bottom() + 1, std::int64_t(a.width()), progress,
        [&](int y0, int y1) {
            std::vector<std::uint32_t> sums(std::size_t(columns) * 4);
            std::vector<QRgb> scratch;
            for (int top = y0; top < y1; top += cell) {
                const int r0 = std::max(top, a.top()), r1 = std::min(top + cell, a.bottom() + 1);
                std::fill(sums.begin(), sums.end(), 0u);
                for (int y = r0; y < r1; ++y) {
                    const QRgb* in = plan.in.span(y + plan.dy, a.left() + plan.dx, a.width(), 0, scratch);
                    for (int c = 0; c < columns; ++c) {
                        const int x0 = std::max(firstLeft + c * cell, a.left()) - a.left();
                        const int x1 = std::min(firstLeft + (c + 1) * cell, a.right() + 1) - a.left();
                        std::uint32_t r = 0, g = 0, b = 0;
                        for (int i = x0; i < x1; ++i) {
                            r += red(in[i]);
                            g += green(in[i]);
                            b += blue(in[i]);
                        }
                        std::uint32_t* sum = &sums[std::size_t(c) * 4];
                        sum[0] += r;
                        sum[1] += g;
                        sum[2] += b;
                        sum[3] += std::uint32_t(x1 - x0);
                    }
                }
                for (int c = 0; c < columns; ++c) {
                    const std::uint32_t* sum = &sums[std::size_t(c) * 4];
                    const std::uint32_t count = sum[3], half = count / 2;
                    const QRgb average = pack(int((sum[0] + half) / count), int((sum[1] + half) / count),
                                              int((sum[2] + half) / count));
                    const int x0 = std::max(firstLeft + c * cell, a.left());
                    const int x1 = std::min(firstLeft + (c + 1) * cell, a.right() + 1);
                    for (int y = r0; y < r1; ++y)
                        std::fill(plan.outRow(y) + x0, plan.outRow(y) + x1, average);
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
    const int w = dst.ScaleWidth(), h = dst.ScaleHeight();
    if (area.width <= 0 || area.height <= 0)
        area = WholeOf(dst);
    const double reach = clampArg(aperture, 0, 255) / 255.0 * std::hypot(double(w), double(h)) / 2.0;
    const double full = reach * clampArg(definition, 0, 255) / 255.0;
    const double strength = clampArg(intensity, 0, 255) / 255.0;
    const int k[3] = {fxGetRed(color), fxGetGreen(color), fxGetBlue(color)};
    const bool dims = mode != 0;
    const double cx = x, cy = y;
    return runRows(dst, area, dst, area, progress, [&](const QRgb* in, QRgb* out, int n, int x0, int row) {
        const double dy = row - cy;
        for (int i = 0; i < n; ++i) {
            const double dx = x0 + i - cx;
            const double dist = std::sqrt(dx * dx + dy * dy);
            double f = 0;
            if (dist <= full)
                f = 1;
            else if (dist < reach) {
                const double t = (reach - dist) / (reach - full);
                f = t * t * (3 - 2 * t);
            }
            const int light = int(std::lround(f * strength * 256));
            const int keep = 256 - (dims ? int(std::lround((1 - f) * strength * 128)) : 0);
            const QRgb p = in[i];
            out[i] = pack(Clamp255(((red(p) * keep + 128) >> 8) + ((k[0] * light + 128) >> 8)),
                          Clamp255(((green(p) * keep + 128) >> 8) + ((k[1] * light + 128) >> 8)),
                          Clamp255(((blue(p) * keep + 128) >> 8) + ((k[2] * light + 128) >> 8)));
        }
    });
}

bool fxBitBlt(Surface& dst, int x, int y, int width, int height, const Surface& src, int srcX, int srcY,
              std::uint32_t rop)
{
    return BitBlt(dst, x, y, width, height, src, srcX, srcY, rop);
}

} // namespace velunta
