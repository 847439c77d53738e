// Hue rotation in the HSV model, on whole numbers so that a turn of zero gives back
// every pixel exactly.

#include "effects/fx/FxSupport.h"

#include <cmath>

namespace velunta {

using namespace fxi;

namespace {

// With chroma C = max - min, the hue of a pixel is a position h in 0..6C-1 around the
// six sectors of the colour wheel (red, yellow, green, cyan, blue, magenta at 0, C,
// 2C, ...). Turning adds a shift and wraps; value (max) and chroma stay.
struct HueTurn {
    int shift[256];         // the turn for each chroma, already in 0..6C-1
    std::uint32_t inv[256]; // ceil(2^20 / C): h / C as a multiply and a shift for h < 6C

    explicit HueTurn(double turn)
    {
        shift[0] = 0;
        inv[0] = 0;
        for (int c = 1; c < 256; ++c) {
            const long whole = 6L * c;
            long s = std::lround(turn * whole) % whole;
            if (s < 0)
                s += whole;
            shift[c] = int(s);
            inv[c] = ((1u << 20) + c - 1) / c;
        }
    }

    QRgb operator()(QRgb p) const
    {
        const int r = red(p), g = green(p), b = blue(p);
        const int hi = std::max({r, g, b}), lo = std::min({r, g, b});
        const int c = hi - lo;
        if (c == 0)
            return p | kOpaque;
        int h;
        if (hi == r)
            h = g >= b ? g - b : 6 * c - (b - g);
        else if (hi == g)
            h = 2 * c + b - r;
        else
            h = 4 * c + r - g;
        h += shift[c];
        if (h >= 6 * c)
            h -= 6 * c;
        const int sector = int((std::uint32_t(h) * inv[c]) >> 20);
        const int f = h - sector * c;
        switch (sector) {
        case 0:
            return pack(hi, lo + f, lo);
        case 1:
            return pack(hi - f, hi, lo);
        case 2:
            return pack(lo, hi, lo + f);
        case 3:
            return pack(lo, hi - f, hi);
        case 4:
            return pack(lo + f, lo, hi);
        default:
            return pack(hi, lo, hi - f);
        }
    }
};

} // namespace

// hue -1 to 1 turns the colour wheel by up to half a turn either way (-180 to 180
// degrees); positive goes from red towards yellow and green. Greys have no hue and stay.
bool fxHue(Surface& dst, FxRect d, const Surface& src, FxRect s, double hue, const ProgressFn& progress)
{
    const HueTurn turn(clampArg(hue, -1.0, 1.0, 0.0) / 2.0);
    return runRows(dst, d, src, s, progress, [&turn](const QRgb* in, QRgb* out, int n, int, int) {
        for (int i = 0; i < n; ++i)
            out[i] = turn(in[i]);
    });
}

} // namespace velunta
