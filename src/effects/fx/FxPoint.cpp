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
    const ScaledDifference toward(clampArg(level, 0, 255));
    ChannelLut lut;
    lut.fill([&toward](int, int v) { return v + toward(255 - 2 * v); });
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
    return runRows(dst, d, src, s, progress, [](const QRgb* in, QRgb* out, int n, int, int) {
        for (int i = 0; i < n; ++i)
            out[i] = kOpaque | (QRgb(luma(in[i])) * 0x010101u);
    });
}

// Saturation as a mix between the pixel and its grey (Rec. 601 luma): level 255 keeps
// the colours, 0 leaves only the grey.
bool fxSaturation(Surface& dst, FxRect d, const Surface& src, FxRect s, int level, const ProgressFn& progress)
{
    const ScaledDifference keep(clampArg(level, 0, 255));
    return runRows(dst, d, src, s, progress, [&keep](const QRgb* in, QRgb* out, int n, int, int) {
        for (int i = 0; i < n; ++i) {
            const int r = red(in[i]), g = green(in[i]), b = blue(in[i]);
            const int y = luma(r, g, b);
            out[i] = pack(y + keep(r - y), y + keep(g - y), y + keep(b - y));
        }
    });
}

// Toning like a photographic duotone: the pixel's grey (Rec. 601 luma) runs from black
// through the colour (at mid-grey) to white, and tone / 255 mixes that toned picture
// over the original: 0 changes nothing, 255 is the full duotone.
bool fxTone(Surface& dst, FxRect d, const Surface& src, FxRect s, Color color, int tone,
            const ProgressFn& progress)
{
    const int k[3] = {fxGetRed(color), fxGetGreen(color), fxGetBlue(color)};
    std::uint8_t toned[3][256];
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y < 256; ++y)
            toned[c][y] =
                std::uint8_t(y < 128 ? (k[c] * y + 64) / 128 : k[c] + ((255 - k[c]) * (y - 128) + 63) / 127);
    const ScaledDifference toward(clampArg(tone, 0, 255));
    return runRows(dst, d, src, s, progress, [&](const QRgb* in, QRgb* out, int n, int, int) {
        for (int i = 0; i < n; ++i) {
            const int r = red(in[i]), g = green(in[i]), b = blue(in[i]);
            const int y = luma(r, g, b);
            out[i] =
                pack(r + toward(toned[0][y] - r), g + toward(toned[1][y] - g), b + toward(toned[2][y] - b));
        }
    });
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
    const int r0 = fxGetRed(oldColor), g0 = fxGetGreen(oldColor), b0 = fxGetBlue(oldColor);
    const QRgb replacement = ToQRgb(newColor);
    return runRows(dst, d, src, s, progress, [=](const QRgb* in, QRgb* out, int n, int, int) {
        for (int i = 0; i < n; ++i) {
            const QRgb p = in[i];
            const int diff =
                std::max({std::abs(red(p) - r0), std::abs(green(p) - g0), std::abs(blue(p) - b0)});
            out[i] = diff <= tolerance ? replacement : p;
        }
    });
}

} // namespace velunta
