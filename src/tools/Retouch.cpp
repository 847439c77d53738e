#include "tools/Retouch.h"

#include "core/PixelAccess.h"

#include <algorithm>

namespace velunta {

namespace {

// One channel of a mix, limited to 0..255 and rounded half to even.
int mixChannel(int target, int p, int steps, int step)
{
    const double quotient = target == p ? 0.0 : double(target - p) / steps;
    return I2(std::clamp(target - step * quotient, 0.0, 255.0));
}

// Dissolve and Enhance take the channels by masks. Blue's divisor is 65535, not
// 65536: the quotient comes out a hair above the byte, which the rounding hides.
struct MaskedChannels {
    int r, g, b;
};
MaskedChannels maskedChannels(Color c)
{
    return {c & 255, I2((c & 65280) / 256.0), I2((c & 16711680) / 65535.0)};
}

// A component above 255 counts as 255 when the colour is composed.
Color composeCapped(int r, int g, int b)
{
    return RGB(Clamp255(r), Clamp255(g), Clamp255(b));
}

} // namespace

int OutermostRing(int size, int rings)
{
    const int r = I2(double(size) / rings * rings);
    I2(double(r) * r); // the walk's r * r is a 16-bit product
    return r;
}

Color MixToForeground(Color c, int steps, int step, Color fore)
{
    if (steps <= 0)
        return fore;
    return RGB(mixChannel(ColorRed(fore), ColorRed(c), steps, step),
               mixChannel(ColorGreen(fore), ColorGreen(c), steps, step),
               mixChannel(ColorBlue(fore), ColorBlue(c), steps, step));
}

Color MixToLimit(Color c, int steps, int step, bool darken)
{
    if (steps <= 0)
        return c;
    const int t = darken ? 0 : 255;
    return RGB(mixChannel(t, ColorRed(c), steps, step), mixChannel(t, ColorGreen(c), steps, step),
               mixChannel(t, ColorBlue(c), steps, step));
}

void SoftSpray(Surface& surface, double x, double y, int size, int rings, double pressure, Color fore)
{
    PixelAccess px(surface);
    const int steps = I4((11 - pressure / 10) * rings);
    RingWalk(x, y, size, rings, 1, [&](int cx, int cy, int i) {
        if (!px.inside(cx, cy))
            return;
        const int step = I4((10 - pressure / 10) * rings + i);
        px.set(cx, cy, MixToForeground(px.get(cx, cy), steps, step, fore));
    });
}

void HardSpray(Surface& surface, double x, double y, int size, int rings, double pressure, Color fore,
               Random& random)
{
    PixelAccess px(surface);
    // The hard spray has two thirds of the set radius, with the same number of rings.
    RingWalk(x, y, I4(size / 1.5), rings, 1, [&](int cx, int cy, int) {
        // The number is drawn for every pixel of the dab, inside the picture or not, so
        // that the sequence does not depend on where the dab lies.
        const double u = random.Rnd();
        if (I4(u * (101 - pressure)) < 2)
            px.set(cx, cy, fore);
    });
}

void BrightDarkBrush(Surface& surface, double x, double y, int size, int rings, double pressure, bool darken)
{
    PixelAccess px(surface);
    const int steps = I4((101 - pressure) * rings);
    RingWalk(x, y, size, rings, 1, [&](int cx, int cy, int i) {
        if (!px.inside(cx, cy))
            return;
        const int step = I4((100 - pressure) * rings + i);
        px.set(cx, cy, MixToLimit(px.get(cx, cy), steps, step, darken));
    });
}

void BlurBrush(Surface& surface, double x, double y, int size, int rings, int* lastX, int* lastY)
{
    PixelAccess px(surface);
    RingWalk(x, y, size, rings, 1, [&](int cx, int cy, int) {
        // The block in its fixed order: here, above, above-left, left.
        const int bx[4] = {cx, cx, cx - 1, cx - 1};
        const int by[4] = {cy, cy - 1, cy - 1, cy};
        int r = 0, g = 0, b = 0;
        for (int k = 0; k < 4; ++k) {
            // A point outside reads -1, whose channels count as black.
            const Color c = px.get(bx[k], by[k]);
            b += Clamp255(ColorBlue(c));
            g += Clamp255(ColorGreen(c));
            r += Clamp255(ColorRed(c));
        }
        const Color average = RGB(I2(r / 4.0), I2(g / 4.0), I2(b / 4.0));
        for (int k = 0; k < 4; ++k)
            px.set(bx[k], by[k], average);
    });
    if (lastX)
        *lastX = I2(x);
    if (lastY)
        *lastY = I2(y);
}

void DissolveBrush(Surface& surface, double x, double y, int size, int rings, int mode, int intensity,
                   bool noise, Random& random)
{
    PixelAccess px(surface);
    const int base = intensity;
    RingWalk(x, y, size, rings, 1, [&](int cx, int cy, int) {
        // The noise takes its number for every pixel of the dab, as the spray does.
        const int d = noise ? I2(random.Rnd() * 100 + base) : intensity;
        if (!px.inside(cx, cy))
            return;
        auto [r, g, b] = maskedChannels(px.get(cx, cy));
        switch (mode) {
        case 0:
            r = std::max(0, r - d);
            break;
        case 1:
            g = std::max(0, g - d);
            break;
        case 2:
            b = std::max(0, b - d);
            break;
        case 3: {
            const int v = I2((r + g + b) / 3.0 + d / 10.0);
            r = g = b = v;
            break;
        }
        default:
            return;
        }
        px.set(cx, cy, composeCapped(r, g, b));
    });
}

void EnhanceBrush(Surface& surface, double x, double y, int size, int rings, int mode, int intensity,
                  bool doubleStep, bool filterBase)
{
    if (mode < 0 || mode > 2)
        return;
    PixelAccess px(surface);
    const int e = intensity;
    if (filterBase && e + 1 == 0)
        throw DivisionByZero("Enhance Colors: intensity -1 divides by zero");
    RingWalk(x, y, size, rings, doubleStep ? 2 : 1, [&](int cx, int cy, int) {
        if (!px.inside(cx, cy))
            return;
        const MaskedChannels c = maskedChannels(px.get(cx, cy));
        int ch[3] = {c.r, c.g, c.b};
        for (int k = 0; k < 3; ++k) {
            if (filterBase && k != mode)
                ch[k] = I2(ch[k] / double(e + 1));
            else if (!filterBase && k == mode)
                ch[k] += e;
        }
        px.set(cx, cy, composeCapped(ch[0], ch[1], ch[2]));
    });
}

} // namespace velunta
