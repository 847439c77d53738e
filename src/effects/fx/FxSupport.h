#pragma once
// What the operations of the effects library share: the plan of a run (which pixels
// are written, where their source lies, a copy of the source when it is the
// destination itself), row bands worked on two threads with progress between them,
// and the rounding helpers of the colour arithmetic.

#include "effects/fx/Fx.h"

#include <QImage>
#include <QRect>
#include <QRgb>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <vector>

// The pixel loops that gain most from wide vectors are built twice, plain and for AVX2,
// and the processor picks one when the program starts.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__SANITIZE_ADDRESS__)
#define FX_VECTORISED __attribute__((target_clones("avx2", "default")))
#else
#define FX_VECTORISED
#endif

namespace velunta::fxi {

inline constexpr QRgb kOpaque = 0xFF000000u;

constexpr int red(QRgb p)
{
    return int((p >> 16) & 0xFF);
}
constexpr int green(QRgb p)
{
    return int((p >> 8) & 0xFF);
}
constexpr int blue(QRgb p)
{
    return int(p & 0xFF);
}
constexpr QRgb pack(int r, int g, int b)
{
    return kOpaque | (QRgb(r) << 16) | (QRgb(g) << 8) | QRgb(b);
}

// round(x / 255) for 0 <= x <= 255 * 255, without a division.
constexpr int div255(int x)
{
    x += 128;
    return (x + (x >> 8)) >> 8;
}

// a over b with weight w / 255 on a, rounded: w = 0 gives b, w = 255 gives a exactly.
constexpr int mix255(int a, int b, int w)
{
    return div255(a * w + b * (255 - w));
}

// Rec. 601 luma in 16-bit fixed point; the weights add up to 65536 so white stays 255.
constexpr int luma(int r, int g, int b)
{
    return (19595 * r + 38470 * g + 7471 * b + 32768) >> 16;
}
constexpr int luma(QRgb p)
{
    return luma(red(p), green(p), blue(p));
}

// A row passed on unchanged (the source may be the row itself).
inline void copyRow(const QRgb* in, QRgb* out, int n)
{
    if (in != out)
        std::copy(in, in + n, out);
}

// An integer argument clamped to lo..hi.
constexpr int clampArg(int v, int lo, int hi)
{
    return v < lo ? lo : (v > hi ? hi : v);
}
// A float argument clamped to lo..hi; NaN gives `neutral`.
double clampArg(double v, double lo, double hi, double neutral);

// Read access to a source picture whose rows and columns outside it take the nearest
// edge pixel.
struct Pixels {
    const uchar* base = nullptr;
    qsizetype stride = 0;
    int width = 0;
    int height = 0;
    int firstRow = 0; // the row `base` points at (a copy may hold only some rows)

    const QRgb* row(int y) const
    {
        y = std::clamp(y, 0, height - 1);
        return reinterpret_cast<const QRgb*>(base + qsizetype(y - firstRow) * stride);
    }
    // Columns x0 - pad .. x0 + n - 1 + pad of row y. The result points at column x0;
    // when the span stays inside the picture it points into the picture, otherwise
    // into `scratch`, filled with the clamped columns.
    const QRgb* span(int y, int x0, int n, int pad, std::vector<QRgb>& scratch) const
    {
        return spanOf(row(y), width, x0, n, pad, scratch);
    }
    // The same for a row of `width` pixels given by itself.
    static const QRgb* spanOf(const QRgb* line, int width, int x0, int n, int pad,
                              std::vector<QRgb>& scratch);
};

// One run of an operation: the destination pixels `area` (already clipped, not
// empty), their rows in `out`, and the source pixel of destination x, y at x + dx, y + dy.
struct Plan {
    QRect area;
    int dx = 0;
    int dy = 0;
    uchar* outBase = nullptr;
    qsizetype outStride = 0;
    Pixels in;
    QImage copy;        // holds the source rows when the source is the destination itself
    bool sweep = false; // in place with no copy: rows are read before they are written

    QRgb* outRow(int y) const { return reinterpret_cast<QRgb*>(outBase + qsizetype(y) * outStride); }
};

// Sets up a run; false when there is nothing to do. `reach` is how far around its
// source pixel an operation reads (0 for a point operation, 1 for a 3 x 3 filter).
// The destination is written in place; the source is copied first only when it is
// the same picture and a pixel could read what another has already written. With
// `canSweep`, an operation that reads every source row before it writes the rows above
// it (a top-down sweep) gets no copy when the source lies at or below the destination
// (plan.sweep), and must keep the rows its neighbouring bands write itself.
bool makePlan(Plan& plan, Surface& dst, FxRect d, const Surface& src, FxRect s, int reach,
              bool canSweep = false);

// Rows top..bottom-1 cut into bands: the groups run one after the other, the (one or
// two) bands of a group at the same time. Band edges fall on multiples of `align` from
// `top`. With progress to report there are up to 16 groups, otherwise one; two bands
// per group when the picture is large enough for a second thread to pay.
struct Bands {
    std::vector<std::vector<std::pair<int, int>>> groups; // y0, y1 of each band
    int top = 0;
    int rows = 0;
};
Bands planBands(int top, int bottom, std::int64_t pixelsPerRow, bool reportsProgress, int align = 1);
// Calls work(band, y0, y1) for every band, the bands numbered in order from 0. Between
// groups, on the calling thread and with no band running, progress is told the done
// fraction; a true answer stops the run (false returned). A fault thrown inside a band
// ends the run and is thrown again here.
bool runBands(const Bands& bands, const ProgressFn& progress, const std::function<void(int, int, int)>& work);

// Works rows top..bottom-1 by calling work(y0, y1) on bands of rows, on two threads
// when the picture is large enough. Band edges fall on multiples of `align` from
// `top`. Between groups of bands, on the calling thread and with no band running,
// progress is told the done fraction; a true answer stops the run (false returned).
// A fault thrown inside a band ends the run and is thrown again here.
bool forRows(int top, int bottom, std::int64_t pixelsPerRow, const ProgressFn& progress,
             const std::function<void(int y0, int y1)>& work, int align = 1);

// The common shape of an operation that maps each row of source pixels to a row of
// destination pixels: rowFn(in, out, n, x, y) where out[0] is destination pixel x, y
// and in[0] its source pixel.
using RowFn = std::function<void(const QRgb* in, QRgb* out, int n, int x, int y)>;
bool runRows(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress,
             const RowFn& rowFn);

// A per-channel lookup: out = lr[r] | lg[g] | lb[b], each table holding its channel
// already in place with the opaque alpha.
struct ChannelLut {
    QRgb r[256];
    QRgb g[256];
    QRgb b[256];

    // Fills all three channels with f(channel, value), channel 0 red, 1 green, 2 blue.
    template <class F> void fill(F&& f)
    {
        for (int v = 0; v < 256; ++v) {
            r[v] = kOpaque | (QRgb(f(0, v)) << 16);
            g[v] = QRgb(f(1, v)) << 8;
            b[v] = QRgb(f(2, v));
        }
    }
    FX_VECTORISED void apply(const QRgb* in, QRgb* out, int n) const;
};
bool runLut(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress,
            const ChannelLut& lut);

// The pixel with weight w / 255 over `base` with the rest, channel by channel and
// rounded, two channels at a time in 16-bit lanes: w = 0 gives base, 255 gives p.
inline QRgb mixPixels(QRgb p, QRgb base, std::uint32_t w)
{
    const auto lanes = [](std::uint32_t a, std::uint32_t b, std::uint32_t w) {
        std::uint32_t x = a * w + b * (255 - w) + 0x00800080u;
        return ((x + ((x >> 8) & 0x00FF00FFu)) >> 8) & 0x00FF00FFu;
    };
    return kOpaque | lanes(p & 0x00FF00FFu, base & 0x00FF00FFu, w) |
           (lanes((p >> 8) & 0x00FF00FFu, (base >> 8) & 0x00FF00FFu, w) << 8);
}

} // namespace velunta::fxi
