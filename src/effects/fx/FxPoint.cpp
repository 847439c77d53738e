// Point operations: every destination pixel from its own source pixel, through
// lookup tables where the channels stay apart.

#include "effects/fx/FxSupport.h"

#include <cmath>

namespace velunta {

using namespace fxi;

// ---- Colour helpers --------------------------------------------------------------

Color fxRGB(int red, int green, int blue)
{
    return RGB(clampArg(red, 0, 255), clampArg(green, 0, 255), clampArg(blue, 0, 255));
}

int fxGetRed(Color c)
{
    return c < 0 ? 0 : c & 0xFF;
}
int fxGetGreen(Color c)
{
    return c < 0 ? 0 : (c >> 8) & 0xFF;
}
int fxGetBlue(Color c)
{
    return c < 0 ? 0 : (c >> 16) & 0xFF;
}

Color fxShadeColors(Color colorA, Color colorB, int amount)
{
    if (colorA < 0)
        return colorB;
    if (colorB < 0)
        return colorA;
    const int w = clampArg(amount, 0, 255);
    return RGB(mix255(fxGetRed(colorB), fxGetRed(colorA), w),
               mix255(fxGetGreen(colorB), fxGetGreen(colorA), w),
               mix255(fxGetBlue(colorB), fxGetBlue(colorA), w));
}

// ---- Tables over one channel -----------------------------------------------------------

// Adds the level to each channel and clamps, so +255 is white and -255 black.
bool fxBrightness(Surface& dst, FxRect d, const Surface& src, FxRect s, int level, const ProgressFn& progress)
{
    const int add = clampArg(level, -255, 255);
    ChannelLut lut;
    lut.fill([add](int, int v) { return Clamp255(v + add); });
    return runLut(dst, d, src, s, progress, lut);
}

// The usual display gamma: out = 255 * (in / 255) ^ (1 / gamma), so a gamma above 1
// brightens the mid-tones and leaves black and white where they are. Gamma runs from
// 0.01 (nearly all black) to 10.
bool fxGamma(Surface& dst, FxRect d, const Surface& src, FxRect s, double gamma, const ProgressFn& progress)
{
    const double g = clampArg(gamma, 0.01, 10.0, 1.0);
    ChannelLut lut;
    lut.fill([g](int, int v) { return int(std::lround(255.0 * std::pow(v / 255.0, 1.0 / g))); });
    return runLut(dst, d, src, s, progress, lut);
}

// Partial inversion: each channel moves towards its negative by level / 255, so 0
// changes nothing, 128 gives a flat mid-grey and 255 the full negative.
bool fxInversion(Surface& dst, FxRect d, const Surface& src, FxRect s, int level, const ProgressFn& progress)
{
    const int w = clampArg(level, 0, 255);
    ChannelLut lut;
    lut.fill([w](int, int v) { return mix255(255 - v, v, w); });
    return runLut(dst, d, src, s, progress, lut);
}

// Coloured ambient light: intensity 0 is the light's colour multiplied into the
// picture (a dim coloured room: the picture darkens towards the colour), 255 the
// colour screened over it (a bright coloured light: it lightens), and the levels in
// between mix the two. White light at 0 and black light at 255 change nothing.
bool fxAmbientLight(Surface& dst, FxRect d, const Surface& src, FxRect s, Color color, int intensity,
                    const ProgressFn& progress)
{
    const int k[3] = {fxGetRed(color), fxGetGreen(color), fxGetBlue(color)};
    const int w = clampArg(intensity, 0, 255);
    ChannelLut lut;
    lut.fill([&](int channel, int v) {
        const int multiplied = div255(v * k[channel]);
        const int screened = v + k[channel] - multiplied;
        return mix255(screened, multiplied, w);
    });
    return runLut(dst, d, src, s, progress, lut);
}

// Posterize: each channel keeps n evenly spaced levels, n = 2 ^ (8 * (1 - level / 255))
// rounded, so level 0 keeps all 256 (nothing changes), 128 keeps 16 and the top of the
// slider 2 (eight colours). The halving per step is what the eye sees as even steps.
bool fxReduceColors(Surface& dst, FxRect d, const Surface& src, FxRect s, int level,
                    const ProgressFn& progress)
{
    const int l = clampArg(level, 0, 255);
    const int n = std::max(2, int(std::lround(std::pow(2.0, 8.0 * (1.0 - l / 255.0)))));
    ChannelLut lut;
    lut.fill([n](int, int v) {
        const int step = int(std::lround(v * (n - 1) / 255.0));
        return int(std::lround(step * 255.0 / (n - 1)));
    });
    return runLut(dst, d, src, s, progress, lut);
}

// ---- Whole-pixel arithmetic ------------------------------------------------------------

namespace {

FX_VECTORISED void greyRow(const QRgb* in, QRgb* out, int n)
{
    for (int i = 0; i < n; ++i)
        out[i] = kOpaque | (QRgb(luma(in[i])) * 0x010101u);
}

FX_VECTORISED void saturationRow(const QRgb* in, QRgb* out, int n, std::uint32_t w)
{
    for (int i = 0; i < n; ++i)
        out[i] = mixPixels(in[i], QRgb(luma(in[i])) * 0x010101u, w);
}

// The duotone of a grey level: black to the colour over the dark half, the colour to
// white over the light half (the division by 127 as a multiply by 517 / 65536).
FX_VECTORISED void toneRow(const QRgb* in, QRgb* out, int n, const int k[3], std::uint32_t w)
{
    const int r = k[0], g = k[1], b = k[2];
    for (int i = 0; i < n; ++i) {
        const int y = luma(in[i]);
        const bool dark = y < 128;
        const int up = (y - 128) * 517;
        const int tr = dark ? (r * y + 64) >> 7 : r + (((255 - r) * up + 32768) >> 16);
        const int tg = dark ? (g * y + 64) >> 7 : g + (((255 - g) * up + 32768) >> 16);
        const int tb = dark ? (b * y + 64) >> 7 : b + (((255 - b) * up + 32768) >> 16);
        out[i] = mixPixels(pack(tr, tg, tb), in[i], w);
    }
}

FX_VECTORISED void replaceRow(const QRgb* in, QRgb* out, int n, QRgb old, int tolerance, QRgb replacement)
{
    const int r0 = red(old), g0 = green(old), b0 = blue(old);
    for (int i = 0; i < n; ++i) {
        const QRgb p = in[i];
        const int dr = std::abs(red(p) - r0), dg = std::abs(green(p) - g0), db = std::abs(blue(p) - b0);
        out[i] = std::max(dr, std::max(dg, db)) <= tolerance ? replacement : p;
    }
}

} // namespace

bool fxInvert(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress)
{
    return runRows(dst, d, src, s, progress, [](const QRgb* in, QRgb* out, int n, int, int) {
        for (int i = 0; i < n; ++i)
            out[i] = in[i] ^ 0x00FFFFFFu;
    });
}

// Grey by Rec. 601 luma (0.299 R + 0.587 G + 0.114 B), the weights of television and
// of most paint programs' "greyscale".
bool fxGreyscale(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress)
{
    return runRows(dst, d, src, s, progress,
                   [](const QRgb* in, QRgb* out, int n, int, int) { greyRow(in, out, n); });
}

// Saturation as a mix between the pixel and its grey (Rec. 601 luma): level 255 keeps
// the colours, 0 leaves only the grey.
bool fxSaturation(Surface& dst, FxRect d, const Surface& src, FxRect s, int level, const ProgressFn& progress)
{
    const std::uint32_t w = std::uint32_t(clampArg(level, 0, 255));
    return runRows(dst, d, src, s, progress,
                   [w](const QRgb* in, QRgb* out, int n, int, int) { saturationRow(in, out, n, w); });
}

// Toning like a photographic duotone: the pixel's grey (Rec. 601 luma) runs from black
// through the colour (at mid-grey) to white, and tone / 255 mixes that toned picture
// over the original: 0 changes nothing, 255 is the full duotone.
bool fxTone(Surface& dst, FxRect d, const Surface& src, FxRect s, Color color, int tone,
            const ProgressFn& progress)
{
    const int k[3] = {fxGetRed(color), fxGetGreen(color), fxGetBlue(color)};
    const std::uint32_t w = std::uint32_t(clampArg(tone, 0, 255));
    return runRows(dst, d, src, s, progress,
                   [&k, w](const QRgb* in, QRgb* out, int n, int, int) { toneRow(in, out, n, k, w); });
}

// A pixel is replaced when none of its channels differs from oldColor's by more than
// the similarity: 0 takes the exact colour only, 255 every pixel.
bool fxReplaceColors(Surface& dst, FxRect d, const Surface& src, FxRect s, Color oldColor, Color newColor,
                     int similarity, const ProgressFn& progress)
{
    if (oldColor < 0 || newColor < 0)
        return runRows(dst, d, src, s, progress,
                       [](const QRgb* in, QRgb* out, int n, int, int) { copyRow(in, out, n); });
    const int tolerance = clampArg(similarity, 0, 255);
    return runRows(dst, d, src, s, progress, [&](const QRgb* in, QRgb* out, int n, int, int) {
        replaceRow(in, out, n, ToQRgb(oldColor), tolerance, ToQRgb(newColor));
    });
}

} // namespace velunta
