// Rotate, zoom and render: each destination pixel looks up the source pixel under its
// centre through the inverse of the turn and scale (nearest sample). Along a row the
// source position moves by a constant step, kept in 32.32 fixed point so that every
// pixel's position depends only on where it is, never on where a band started.

#include "effects/fx/FxSupport.h"

#include "core/Surface.h"

#include <climits>
#include <cmath>

namespace velunta {

using namespace fxi;

namespace {

// Smaller than this a picture shrinks to a dot, and nothing is drawn.
constexpr double kMinZoom = 1.0 / 1024;
constexpr double kMaxZoom = 64;
// Pivots and corners are kept within this; anything farther lies off every picture.
constexpr double kFar = 1 << 24;
constexpr double kFixed = 4294967296.0; // 2^32
// Source rows one destination row may cross in a strip: their pages stay in the
// processor's address cache (a turned row that crosses thousands of rows is three
// times slower).
constexpr double kRowsPerStrip = 1024;

// cos and sin of an angle in degrees, exact at the quarter turns so that turning by
// 90, 180 or 270 degrees moves whole pixels.
void turn(double degrees, double& c, double& s)
{
    double a = std::fmod(degrees, 360.0);
    if (a < 0)
        a += 360;
    if (a == 0) {
        c = 1, s = 0;
    } else if (a == 90) {
        c = 0, s = 1;
    } else if (a == 180) {
        c = -1, s = 0;
    } else if (a == 270) {
        c = 0, s = -1;
    } else {
        c = std::cos(a * M_PI / 180), s = std::sin(a * M_PI / 180);
    }
}

// Narrows xa..xb-1 to the columns x where the whole part of (f0 + x * step) / 2^32 lies
// in lo..hi-1. Worked in 128 bits, so no position can overflow.
void inside(std::int64_t f0, std::int64_t step, std::int64_t lo, std::int64_t hi, int& xa, int& xb)
{
    using Wide = __int128;
    const Wide low = (Wide(lo) << 32) - f0, high = (Wide(hi) << 32) - f0; // low <= x * step < high
    const auto floorDiv = [](Wide a, Wide b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0))); };
    Wide first = xa, end = xb;
    if (step == 0) {
        if (low > 0 || high <= 0)
            end = first;
    } else if (step > 0) {
        first = std::max(first, -floorDiv(-low, step)); // ceil(low / step)
        end = std::min(end, -floorDiv(-high, step));
    } else {
        end = std::min(end, floorDiv(low, step) + 1);
        first = std::max(first, floorDiv(high, step) + 1);
    }
    xa = int(first);
    xb = int(std::max(first, end));
}

// Source pixels along a row: the pixel under position (fu, fv) in 32.32 fixed point,
// stepping by (su, sv). Every position lies inside the source.
FX_VECTORISED void sampleRow(const uchar* base, qsizetype stride, std::int64_t fu, std::int64_t fv,
                             std::int64_t su, std::int64_t sv, QRgb* out, int n)
{
    for (int i = 0; i < n; ++i) {
        out[i] = reinterpret_cast<const QRgb*>(base + qsizetype(fv >> 32) * stride)[fu >> 32] | kOpaque;
        fu += su;
        fv += sv;
    }
}

// The samples laid over a row: the key colour left out, the rest mixed by alpha / 255.
FX_VECTORISED void layRow(const QRgb* samples, QRgb* out, int n, QRgb key, std::uint32_t alpha)
{
    for (int i = 0; i < n; ++i) {
        const QRgb q = samples[i];
        out[i] = (q & 0x00FFFFFFu) == key ? out[i] : mixPixels(q, out[i], alpha);
    }
}

struct Placement {
    double pivotX, pivotY;       // in the destination
    double cornerX, cornerY;     // the source point that pairs with destination 0, 0
    std::int64_t x0, y0, x1, y1; // source pixels that may be drawn: x0..x1-1, y0..y1-1
    double angle = 0;
    double zoom = 1;
    int blending = 255;
    Color transparentColor = kNoColor;
};

bool draw(Surface& dst, const Surface& src, Placement p, const ProgressFn& progress)
{
    QImage& out = dst.Image();
    const QImage& in = src.Image();
    p.x0 = std::max<std::int64_t>(p.x0, 0);
    p.y0 = std::max<std::int64_t>(p.y0, 0);
    p.x1 = std::min<std::int64_t>(p.x1, in.width());
    p.y1 = std::min<std::int64_t>(p.y1, in.height());
    const double zoom = clampArg(p.zoom, 0.0, kMaxZoom, 1.0);
    if (out.width() <= 0 || out.height() <= 0 || p.x0 >= p.x1 || p.y0 >= p.y1 || zoom < kMinZoom ||
        p.blending <= 0)
        return true;
    double c, s;
    turn(std::isfinite(p.angle) ? p.angle : 0.0, c, s);
    const double px = std::clamp(p.pivotX, -kFar, kFar), py = std::clamp(p.pivotY, -kFar, kFar);
    const double ox = std::clamp(p.cornerX, -kFar, kFar) + px, oy = std::clamp(p.cornerY, -kFar, kFar) + py;
    // Source position of destination point X, Y (a pixel's centre is at x + 0.5):
    //   u = ox + ( c (X - px) - s (Y - py)) / zoom
    //   v = oy + ( s (X - px) + c (Y - py)) / zoom
    const double du = c / zoom, dv = s / zoom;
    const std::int64_t stepU = std::llround(du * kFixed), stepV = std::llround(dv * kFixed);

    uchar* outBase = out.bits();
    const qsizetype outStride = out.bytesPerLine();
    QImage copy;
    const QImage* source = &in;
    if (in.constBits() == outBase) { // drawing a picture onto itself: read from a copy
        copy = in.copy();
        if (copy.isNull())
            throw std::bad_alloc();
        source = &copy;
    }
    const uchar* inBase = source->constBits();
    const qsizetype inStride = source->bytesPerLine();
    const QRgb key = p.transparentColor < 0 ? 0xFFFFFFFFu : (ToQRgb(p.transparentColor) & 0x00FFFFFFu);
    const int alpha = std::min(p.blending, 255);
    const int width = out.width();

    const bool plain = key == 0xFFFFFFFFu && alpha == 255;
    const int strip =
        int(std::clamp(kRowsPerStrip / std::max(std::abs(dv), 1e-9), 256.0, double(std::max(width, 256))));
    const bool done = forRows(0, out.height(), width, progress, [&](int y0, int y1) {
        std::vector<QRgb> samples;
        for (int left = 0; left < width; left += strip)
            for (int y = y0; y < y1; ++y) {
                const double yy = y + 0.5 - py;
                const double u0 = ox + (c * (0.5 - px) - s * yy) / zoom; // at x = 0
                const double v0 = oy + (s * (0.5 - px) + c * yy) / zoom;
                const std::int64_t fu0 = std::llround(u0 * kFixed), fv0 = std::llround(v0 * kFixed);
                int xa = left, xb = std::min(width, left + strip);
                inside(fu0, stepU, p.x0, p.x1, xa, xb);
                inside(fv0, stepV, p.y0, p.y1, xa, xb);
                if (xa >= xb)
                    continue;
                QRgb* line = reinterpret_cast<QRgb*>(outBase + qsizetype(y) * outStride) + xa;
                const std::int64_t fu = fu0 + std::int64_t(xa) * stepU, fv = fv0 + std::int64_t(xa) * stepV;
                if (plain) {
                    sampleRow(inBase, inStride, fu, fv, stepU, stepV, line, xb - xa);
                } else {
                    samples.resize(std::size_t(xb - xa));
                    sampleRow(inBase, inStride, fu, fv, stepU, stepV, samples.data(), xb - xa);
                    layRow(samples.data(), line, xb - xa, key, alpha);
                }
            }
    });
    dst.touchAll();
    return done;
}

// The end of a span that starts at x, saturated; an empty span ends where it starts.
int endOf(int x, int length)
{
    return int(std::min<std::int64_t>(std::int64_t(x) + std::max(length, 0), INT_MAX));
}

} // namespace

bool fxRotate(Surface& dst, int pivotX, int pivotY, const Surface& src, FxRect s, double angle,
              Color transparentColor, const ProgressFn& progress)
{
    return fxRender(dst, pivotX, pivotY, src, s.x, s.y, endOf(s.x, s.width), endOf(s.y, s.height), 255, angle,
                    1.0, transparentColor, progress);
}

bool fxZoom(Surface& dst, int pivotX, int pivotY, const Surface& src, FxRect s, double zoom,
            Color transparentColor, const ProgressFn& progress)
{
    return fxRender(dst, pivotX, pivotY, src, s.x, s.y, endOf(s.x, s.width), endOf(s.y, s.height), 255, 0.0,
                    zoom, transparentColor, progress);
}

bool fxRender(Surface& dst, int pivotX, int pivotY, const Surface& src, int srcX, int srcY, int srcRight,
              int srcBottom, int blending, double angle, double zoom, Color transparentColor,
              const ProgressFn& progress)
{
    return draw(dst, src,
                {double(pivotX), double(pivotY), double(srcX), double(srcY), srcX, srcY, srcRight, srcBottom,
                 angle, zoom, clampArg(blending, 0, 255), transparentColor},
                progress);
}

} // namespace velunta
