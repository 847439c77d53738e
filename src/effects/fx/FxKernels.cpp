// The 3 x 3 neighbourhood filters. Each band of rows keeps its three source rows
// unpacked into separate channel rows (with one pixel of edge on either side), so the
// filters themselves are plain loops over short integers that the compiler vectorises.

#include "effects/fx/FxSupport.h"

#include "core/Surface.h"

#include <cmath>

namespace velunta {

using namespace fxi;

namespace {

// Channel rows above, at and below the source row of a destination row; index -1 to n
// is valid in each.
struct KernelRows {
    const std::int16_t* r[3];
    const std::int16_t* g[3];
    const std::int16_t* b[3];
    const std::int16_t* y[3];
};

enum Planes { Colours = 1, Lumas = 2 };

template <class Fn>
bool runKernel(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress, int planes,
               const Fn& fn)
{
    Plan plan;
    if (!makePlan(plan, dst, d, src, s, 1))
        return true;
    const QRect a = plan.area;
    const int n = a.width();
    const int w = n + 2;
    const bool done = forRows(a.top(), a.bottom() + 1, std::int64_t(n) * 4, progress, [&](int y0, int y1) {
        std::vector<std::int16_t> store(std::size_t(12) * w);
        std::vector<QRgb> scratch;
        const auto plane = [&](int slot, int p) { return store.data() + std::size_t(slot * 4 + p) * w; };
        const auto unpack = [&](int slot, int sourceRow) {
            const QRgb* px = plan.in.span(sourceRow, a.left() + plan.dx, n, 1, scratch) - 1;
            if (planes & Colours) {
                std::int16_t *r = plane(slot, 0), *g = plane(slot, 1), *b = plane(slot, 2);
                for (int i = 0; i < w; ++i) {
                    r[i] = std::int16_t(red(px[i]));
                    g[i] = std::int16_t(green(px[i]));
                    b[i] = std::int16_t(blue(px[i]));
                }
            }
            if (planes & Lumas) {
                std::int16_t* y = plane(slot, 3);
                for (int i = 0; i < w; ++i)
                    y[i] = std::int16_t(luma(px[i]));
            }
        };
        int order[3] = {0, 1, 2}; // slots of the rows above, at and below
        for (int k = 0; k < 3; ++k)
            unpack(order[k], y0 + plan.dy - 1 + k);
        for (int y = y0; y < y1; ++y) {
            if (y > y0) {
                std::rotate(order, order + 1, order + 3);
                unpack(order[2], y + plan.dy + 1);
            }
            KernelRows rows;
            for (int k = 0; k < 3; ++k) {
                rows.r[k] = plane(order[k], 0) + 1;
                rows.g[k] = plane(order[k], 1) + 1;
                rows.b[k] = plane(order[k], 2) + 1;
                rows.y[k] = plane(order[k], 3) + 1;
            }
            fn(rows, plan.outRow(y) + a.left(), n);
        }
    });
    dst.touch(a);
    return done;
}

// The binomial 1-2-1 weights in both directions (a 3 x 3 Gaussian, sum 16).
inline int gauss(const std::int16_t* const c[3], int i)
{
    const auto h = [i](const std::int16_t* row) { return row[i - 1] + 2 * row[i] + row[i + 1]; };
    return (h(c[0]) + 2 * h(c[1]) + h(c[2]) + 8) >> 4;
}

// Bottom-right minus top-left: positive where the picture rises towards the lower
// right, which a light from the upper left catches.
inline int slope(const std::int16_t* const c[3], int i)
{
    return c[2][i] + c[2][i + 1] + c[1][i + 1] - c[0][i - 1] - c[0][i] - c[1][i - 1];
}

// Emboss and engrave: mid-grey plus the slope of the grey picture (Rec. 601 luma),
// scaled by the depth, lit from the upper left (emboss) or the lower right (engrave,
// which reads as cut into the surface).
bool grey3d(Surface& dst, FxRect d, const Surface& src, FxRect s, double depth, int direction,
            const ProgressFn& progress)
{
    const int k = direction * int(std::lround(clampArg(depth, 0.0, 2.55, 1.0) * 256));
    return runKernel(dst, d, src, s, progress, Lumas, [k](const KernelRows& rows, QRgb* out, int n) {
        for (int i = 0; i < n; ++i) {
            const int v = Clamp255(128 + ((slope(rows.y, i) * k + 128) >> 8));
            out[i] = kOpaque | (QRgb(v) * 0x010101u);
        }
    });
}

} // namespace

bool fxBlur(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress)
{
    return runKernel(dst, d, src, s, progress, Colours, [](const KernelRows& rows, QRgb* out, int n) {
        for (int i = 0; i < n; ++i)
            out[i] = pack(gauss(rows.r, i), gauss(rows.g, i), gauss(rows.b, i));
    });
}

bool fxEmboss(Surface& dst, FxRect d, const Surface& src, FxRect s, double depth, const ProgressFn& progress)
{
    return grey3d(dst, d, src, s, depth, 1, progress);
}

bool fxEngrave(Surface& dst, FxRect d, const Surface& src, FxRect s, double height,
               const ProgressFn& progress)
{
    return grey3d(dst, d, src, s, height, -1, progress);
}

// Relief keeps the colours and raises their edges: the common emboss kernel
//   -2 -1  0
//   -1  1  1
//    0  1  2
// on each channel (its weights add up to 1, so flat areas stay as they are).
bool fxRelief(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress)
{
    const auto relief = [](const std::int16_t* const c[3], int i) {
        return Clamp255(c[1][i] + slope(c, i) + c[2][i + 1] - c[0][i - 1]);
    };
    return runKernel(dst, d, src, s, progress, Colours, [&relief](const KernelRows& rows, QRgb* out, int n) {
        for (int i = 0; i < n; ++i)
            out[i] = pack(relief(rows.r, i), relief(rows.g, i), relief(rows.b, i));
    });
}

// Anti-aliasing smooths only where there is an edge to smooth: each pixel moves towards
// its 3 x 3 Gaussian blur by level / 255, scaled down where the neighbourhood's grey
// levels span less than 64 (nothing at all below 16), so flat areas and fine texture
// keep their sharpness while stair-stepped edges soften. Level 0 changes nothing.
bool fxAntiAlias(Surface& dst, FxRect d, const Surface& src, FxRect s, int level, const ProgressFn& progress)
{
    const int strength = clampArg(level, 0, 255);
    return runKernel(dst, d, src, s, progress, Colours | Lumas,
                     [strength](const KernelRows& rows, QRgb* out, int n) {
                         for (int i = 0; i < n; ++i) {
                             int hi = 0, lo = 255;
                             for (int k = 0; k < 3; ++k)
                                 for (int j = -1; j <= 1; ++j) {
                                     hi = std::max<int>(hi, rows.y[k][i + j]);
                                     lo = std::min<int>(lo, rows.y[k][i + j]);
                                 }
                             const int edge = std::clamp((hi - lo - 16) * 256 / 48, 0, 256);
                             const int w = (strength * edge + 127) / 255;
                             const auto smooth = [w, i](const std::int16_t* const c[3]) {
                                 const int v = c[1][i];
                                 return v + (((gauss(c, i) - v) * w + 128) >> 8);
                             };
                             out[i] = pack(smooth(rows.r), smooth(rows.g), smooth(rows.b));
                         }
                     });
}

} // namespace velunta
