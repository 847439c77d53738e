// The 3 x 3 neighbourhood filters. Every filter here splits into a part along a row
// (prepared once for each source row: horizontal sums, differences, extremes) and a
// part across the three rows around a destination row, so each source row is read
// once and the loops are plain arithmetic on short integers that the compiler
// vectorises.

#include "effects/fx/FxSupport.h"

#include "core/Surface.h"

#include <cmath>

namespace velunta {

using namespace fxi;

namespace {

using Plane = std::int16_t*;
using ConstPlane = const std::int16_t*;

// Runs `kernel` over the destination rows. Kernel::kPlanes planes of n values are kept
// for each of the three source rows around the current destination row;
// kernel.prepare(px, planes, n, scratch) fills them from source pixels px[-1..n] (with
// `scratch` room for n + 2 values), kernel.combine(above, at, below, out, n) writes a
// destination row.
template <class Kernel>
bool runKernel(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress,
               const Kernel& kernel)
{
    Plan plan;
    if (!makePlan(plan, dst, d, src, s, 1, true))
        return true;
    const QRect a = plan.area;
    const int n = a.width();
    constexpr int planes = Kernel::kPlanes;
    const Bands bands = planBands(a.top(), a.bottom() + 1, std::int64_t(n) * 4, bool(progress));

    // Swept in place, a band reads rows y0 + dy - 1 .. y1 + dy and writes y0 .. y1 - 1;
    // the rows it reads outside its own are its neighbours', so they are kept first.
    std::vector<std::vector<std::pair<int, std::vector<QRgb>>>> kept;
    if (plan.sweep)
        for (const auto& group : bands.groups)
            for (const auto& [y0, y1] : group) {
                auto& rows = kept.emplace_back();
                for (int r = y0 + plan.dy - 1; r <= y1 + plan.dy; ++r) {
                    const int row = std::clamp(r, 0, plan.in.height - 1);
                    if ((row < y0 || row >= y1) && (rows.empty() || rows.back().first != row))
                        rows.emplace_back(
                            row, std::vector<QRgb>(plan.in.row(row), plan.in.row(row) + plan.in.width));
                }
            }

    const bool done = runBands(bands, progress, [&](int band, int y0, int y1) {
        std::vector<std::int16_t> store(std::size_t(3 * planes) * n + n + 2);
        std::vector<QRgb> pixels;
        Plane rows[3][planes];
        for (int k = 0; k < 3; ++k)
            for (int p = 0; p < planes; ++p)
                rows[k][p] = store.data() + std::size_t(k * planes + p) * n;
        Plane scratch = store.data() + std::size_t(3 * planes) * n;
        const auto prepare = [&](Plane* slot, int sourceRow) {
            const int row = std::clamp(sourceRow, 0, plan.in.height - 1);
            const QRgb* line = plan.in.row(row);
            if (plan.sweep)
                for (const auto& [keptRow, pixelsOfRow] : kept[std::size_t(band)])
                    if (keptRow == row)
                        line = pixelsOfRow.data();
            kernel.prepare(Pixels::spanOf(line, plan.in.width, a.left() + plan.dx, n, 1, pixels), slot, n,
                           scratch);
        };
        int order[3] = {0, 1, 2}; // slots of the rows above, at and below
        for (int k = 0; k < 3; ++k)
            prepare(rows[order[k]], y0 + plan.dy - 1 + k);
        for (int y = y0; y < y1; ++y) {
            if (y > y0) {
                std::rotate(order, order + 1, order + 3);
                prepare(rows[order[2]], y + plan.dy + 1);
            }
            kernel.combine(rows[order[0]], rows[order[1]], rows[order[2]], plan.outRow(y) + a.left(), n);
        }
    });
    dst.touch(a);
    return done;
}

// Grey levels (Rec. 601 luma) of px[-1..n] into y[0..n+1].
FX_VECTORISED void lumaRow(const QRgb* px, std::int16_t* y, int n)
{
    for (int i = 0; i < n + 2; ++i)
        y[i] = std::int16_t(luma(px[i - 1]));
}

// Horizontal binomial sums X[i-1] + 2 X[i] + X[i+1] of the three channels.
FX_VECTORISED void binomialRow(const QRgb* px, Plane r, Plane g, Plane b, int n)
{
    for (int i = 0; i < n; ++i) {
        r[i] = std::int16_t(red(px[i - 1]) + 2 * red(px[i]) + red(px[i + 1]));
        g[i] = std::int16_t(green(px[i - 1]) + 2 * green(px[i]) + green(px[i + 1]));
        b[i] = std::int16_t(blue(px[i - 1]) + 2 * blue(px[i]) + blue(px[i + 1]));
    }
}

// The binomial 1-2-1 weights in both directions: a 3 x 3 Gaussian, sum 16.
inline int binomial(ConstPlane above, ConstPlane at, ConstPlane below, int i)
{
    return (above[i] + 2 * at[i] + below[i] + 8) >> 4;
}

struct Blur {
    static constexpr int kPlanes = 3;
    void prepare(const QRgb* px, Plane* p, int n, Plane) const { binomialRow(px, p[0], p[1], p[2], n); }
    FX_VECTORISED static void combineRow(Plane const* a, Plane const* m, Plane const* b, QRgb* out, int n)
    {
        for (int i = 0; i < n; ++i)
            out[i] = pack(binomial(a[0], m[0], b[0], i), binomial(a[1], m[1], b[1], i),
                          binomial(a[2], m[2], b[2], i));
    }
    void combine(Plane const* a, Plane const* m, Plane const* b, QRgb* out, int n) const
    {
        combineRow(a, m, b, out, n);
    }
};

// The slope from the upper left to the lower right of the grey picture:
//   -1 -1  0
//   -1  0  1
//    0  1  1
// split into what each row gives: the row above -(Y[i-1] + Y[i]), the row itself
// Y[i+1] - Y[i-1], the row below Y[i] + Y[i+1]. Mid-grey plus the slope times the
// depth; a negative depth lights it from the other side.
struct Grey3d {
    static constexpr int kPlanes = 3;
    int depth; // 8-bit fixed point, signed

    FX_VECTORISED static void prepareRow(const QRgb* px, Plane const* p, int n, Plane y)
    {
        lumaRow(px, y, n);
        for (int i = 0; i < n; ++i) {
            p[0][i] = std::int16_t(y[i] + y[i + 1]);
            p[1][i] = std::int16_t(y[i + 2] - y[i]);
            p[2][i] = std::int16_t(y[i + 1] + y[i + 2]);
        }
    }
    FX_VECTORISED static void combineRow(Plane const* a, Plane const* m, Plane const* b, QRgb* out, int n,
                                         int k)
    {
        for (int i = 0; i < n; ++i) {
            const int slope = b[2][i] + m[1][i] - a[0][i];
            const int v = std::clamp(128 + ((slope * k + 128) >> 8), 0, 255);
            out[i] = kOpaque | (QRgb(v) * 0x010101u);
        }
    }
    void prepare(const QRgb* px, Plane* p, int n, Plane scratch) const { prepareRow(px, p, n, scratch); }
    void combine(Plane const* a, Plane const* m, Plane const* b, QRgb* out, int n) const
    {
        combineRow(a, m, b, out, n, depth);
    }
};

// The colour-keeping relief kernel, on each channel:
//   -2 -1  0
//   -1  1  1
//    0  1  2
// split by rows as above: -(2 X[i-1] + X[i]), X[i] + X[i+1] - X[i-1], X[i] + 2 X[i+1].
struct Relief {
    static constexpr int kPlanes = 9;
    // One channel (at bit `shift`) at a time keeps the vectoriser's overlap checks few.
    FX_VECTORISED static void prepareChannel(const QRgb* px, Plane above, Plane at, Plane below, int n,
                                             int shift)
    {
        for (int i = 0; i < n; ++i) {
            const int l = int(px[i - 1] >> shift) & 0xFF, c = int(px[i] >> shift) & 0xFF;
            const int r = int(px[i + 1] >> shift) & 0xFF;
            above[i] = std::int16_t(2 * l + c);
            at[i] = std::int16_t(c + r - l);
            below[i] = std::int16_t(c + 2 * r);
        }
    }
    static void prepareRow(const QRgb* px, Plane const* p, int n)
    {
        for (int c = 0; c < 3; ++c)
            prepareChannel(px, p[3 * c], p[3 * c + 1], p[3 * c + 2], n, 16 - 8 * c);
    }
    FX_VECTORISED static void combineRow(Plane const* a, Plane const* m, Plane const* b, QRgb* out, int n)
    {
        for (int i = 0; i < n; ++i) {
            const int r = std::clamp(m[1][i] + b[2][i] - a[0][i], 0, 255);
            const int g = std::clamp(m[4][i] + b[5][i] - a[3][i], 0, 255);
            const int bl = std::clamp(m[7][i] + b[8][i] - a[6][i], 0, 255);
            out[i] = pack(r, g, bl);
        }
    }
    void prepare(const QRgb* px, Plane* p, int n, Plane) const { prepareRow(px, p, n); }
    void combine(Plane const* a, Plane const* m, Plane const* b, QRgb* out, int n) const
    {
        combineRow(a, m, b, out, n);
    }
};

// Anti-aliasing: the pixel moves towards its 3 x 3 Gaussian blur by a weight that grows
// with the spread of grey levels around it (none below 16, all of the level's strength
// from 64), so only edges soften.
struct AntiAlias {
    static constexpr int kPlanes = 8; // binomial sums r g b, the pixel r g b, grey max, grey min
    int strength;

    FX_VECTORISED static void channelsRow(const QRgb* px, Plane r, Plane g, Plane b, int n)
    {
        for (int i = 0; i < n; ++i) {
            r[i] = std::int16_t(red(px[i]));
            g[i] = std::int16_t(green(px[i]));
            b[i] = std::int16_t(blue(px[i]));
        }
    }
    // The largest and smallest of each grey level and its two neighbours.
    FX_VECTORISED static void extremesRow(ConstPlane y, Plane hi, Plane lo, int n)
    {
        for (int i = 0; i < n; ++i) {
            hi[i] = std::max(y[i], std::max(y[i + 1], y[i + 2]));
            lo[i] = std::min(y[i], std::min(y[i + 1], y[i + 2]));
        }
    }
    static void prepareRow(const QRgb* px, Plane const* p, int n, Plane y)
    {
        binomialRow(px, p[0], p[1], p[2], n);
        channelsRow(px, p[3], p[4], p[5], n);
        lumaRow(px, y, n);
        extremesRow(y, p[6], p[7], n);
    }
    FX_VECTORISED static void combineRow(Plane const* a, Plane const* m, Plane const* b, QRgb* out, int n,
                                         int strength)
    {
        for (int i = 0; i < n; ++i) {
            const int hi = std::max<int>(m[6][i], std::max(a[6][i], b[6][i]));
            const int lo = std::min<int>(m[7][i], std::min(a[7][i], b[7][i]));
            const int edge = std::clamp((hi - lo - 16) * 16 / 3, 0, 256);
            const int w = (strength * edge + 127) / 255;
            const auto smooth = [&](int c) {
                const int v = m[3 + c][i];
                return v + (((binomial(a[c], m[c], b[c], i) - v) * w + 128) >> 8);
            };
            out[i] = pack(smooth(0), smooth(1), smooth(2));
        }
    }
    void prepare(const QRgb* px, Plane* p, int n, Plane scratch) const { prepareRow(px, p, n, scratch); }
    void combine(Plane const* a, Plane const* m, Plane const* b, QRgb* out, int n) const
    {
        combineRow(a, m, b, out, n, strength);
    }
};

bool grey3d(Surface& dst, FxRect d, const Surface& src, FxRect s, double depth, int direction,
            const ProgressFn& progress)
{
    const int k = direction * int(std::lround(clampArg(depth, 0.0, 2.55, 1.0) * 256));
    return runKernel(dst, d, src, s, progress, Grey3d{k});
}

} // namespace

bool fxBlur(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress)
{
    return runKernel(dst, d, src, s, progress, Blur{});
}

// Emboss and engrave: mid-grey plus the slope of the grey picture (Rec. 601 luma),
// scaled by the depth, lit from the upper left (emboss) or the lower right (engrave,
// which reads as cut into the surface). Depth runs from 0 (flat grey) to 2.55.
bool fxEmboss(Surface& dst, FxRect d, const Surface& src, FxRect s, double depth, const ProgressFn& progress)
{
    return grey3d(dst, d, src, s, depth, 1, progress);
}

bool fxEngrave(Surface& dst, FxRect d, const Surface& src, FxRect s, double height,
               const ProgressFn& progress)
{
    return grey3d(dst, d, src, s, height, -1, progress);
}

// Relief keeps the colours and raises their edges with the common emboss kernel (its
// weights add up to 1, so flat areas stay as they are).
bool fxRelief(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress)
{
    return runKernel(dst, d, src, s, progress, Relief{});
}

// Anti-aliasing smooths only where there is an edge to smooth: each pixel moves towards
// its 3 x 3 Gaussian blur by level / 255, scaled down where the neighbourhood's grey
// levels span less than 64 (nothing at all below 16), so flat areas and fine texture
// keep their sharpness while stair-stepped edges soften. Level 0 changes nothing.
bool fxAntiAlias(Surface& dst, FxRect d, const Surface& src, FxRect s, int level, const ProgressFn& progress)
{
    return runKernel(dst, d, src, s, progress, AntiAlias{clampArg(level, 0, 255)});
}

} // namespace velunta
