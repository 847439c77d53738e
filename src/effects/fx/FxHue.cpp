// Hue rotation in the HSV model, on whole numbers so that a turn of zero gives back
// every pixel exactly.

#include "effects/fx/FxSupport.h"

#include <cmath>

namespace velunta {

using namespace fxi;

namespace {

// a when c holds, else b, without a branch.
inline int pick(bool c, int a, int b)
{
    return b ^ ((a ^ b) & -int(c));
}

// With chroma C = max - min, the hue of a pixel is a position h in 0..6C-1 around the
// six sectors of the colour wheel (red, yellow, green, cyan, blue, magenta at 0, C,
// 2C, ...). Turning adds round(turn * 6C) and wraps; value (max) and chroma stay.
struct HueTurn {
    int shift[256]; // the turn for each chroma, already in 0..6C-1
    int inv[256];   // ceil(2^20 / C): h / C as a multiply and a shift, exact for h < 12C

    explicit HueTurn(double turn)
    {
        shift[0] = inv[0] = 0;
        for (int c = 1; c < 256; ++c) {
            const long whole = 6L * c;
            const long s = std::lround(turn * double(whole)) % whole;
            shift[c] = int(s < 0 ? s + whole : s);
            inv[c] = ((1 << 20) + c - 1) / c;
        }
    }
};

// No branches, so the loop runs on whole vectors of pixels.
FX_VECTORISED void hueRow(const QRgb* in, QRgb* out, int n, const int* __restrict shift,
                          const int* __restrict inv)
{
    for (int i = 0; i < n; ++i) {
        const QRgb p = in[i];
        const int r = red(p), g = green(p), b = blue(p);
        const int hi = std::max(r, std::max(g, b)), lo = std::min(r, std::min(g, b));
        const int c = hi - lo, whole = 6 * c;
        const int fromRed = pick(g >= b, g - b, whole - (b - g));
        const int fromOther = pick(hi == g, 2 * c + b - r, 4 * c + r - g);
        int h = pick(hi == r, fromRed, fromOther) + shift[c];
        h -= pick(h >= whole, whole, 0);
        const int k = (h * inv[c]) >> 20;
        const int f = h - k * c;
        const int up = lo + f, down = hi - f;
        const int nr = pick((k == 0) | (k == 5), hi, pick(k == 1, down, pick(k == 4, up, lo)));
        const int ng = pick((k == 1) | (k == 2), hi, pick(k == 0, up, pick(k == 3, down, lo)));
        const int nb = pick((k == 3) | (k == 4), hi, pick(k == 2, up, pick(k == 5, down, lo)));
        out[i] = c == 0 ? p : pack(nr, ng, nb);
    }
}

} // namespace

// hue -1 to 1 turns the colour wheel by up to half a turn either way (-180 to 180
// degrees); positive goes from red towards yellow and green. Greys have no hue and stay.
bool fxHue(Surface& dst, FxRect d, const Surface& src, FxRect s, double hue, const ProgressFn& progress)
{
    const HueTurn turn(clampArg(hue, -1.0, 1.0, 0.0) / 2.0);
    return runRows(dst, d, src, s, progress, [&turn](const QRgb* in, QRgb* out, int n, int, int) {
        hueRow(in, out, n, turn.shift, turn.inv);
    });
}

} // namespace velunta
