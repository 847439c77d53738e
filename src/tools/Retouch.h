#pragma once
// The round retouch brushes. A dab walks rings from the centre outward, each pixel
// once, by the innermost ring that reaches it; each brush decides what happens to
// the pixel. The arithmetic of every brush is the program's own, roundings and odd
// constants included, so that a dab gives the same pixels it always gave.

#include "core/Color.h"
#include "core/Numbers.h"

#include <vector>

namespace velunta {

class Surface;

// The largest ring radius of a dab, checked against the 16-bit square the walk
// compares with. The radius grows with the ring, so the last ring is the widest: a
// size above 181 makes r * r overflow and throws OverflowError here, before any pixel
// of the dab has changed.
int OutermostRing(int size, int rings);

// Walks the rings of a dab of `size` and `rings` around (x, y), calling visit(px, py,
// ring) for each pixel once, innermost ring first; dx outer, dy inner, -r..r, with
// `step` between samples (2 makes a sieve). Ring i reaches the radius
// I2(size / rings * i). Pixel positions go through I4, since a centre inside a
// floating selection may be fractional. rings <= 0 walks nothing.
template <class Visit> void RingWalk(double x, double y, int size, int rings, int step, Visit&& visit)
{
    if (rings <= 0 || size < 0)
        return;
    OutermostRing(size, rings);
    const int side = 2 * size + 1;
    std::vector<char> mask(size_t(side) * size_t(side), 0);
    for (int i = 1; i <= rings; ++i) {
        const int r = I2(double(size) / rings * i);
        const int rr = r * r;
        for (int dx = -r; dx <= r; dx += step) {
            char* column = mask.data() + size_t(dx + size) * side + size;
            const int px = I4(x + dx);
            for (int dy = -r; dy <= r; dy += step) {
                char& seen = column[dy];
                if (!seen && dx * dx + dy * dy <= rr) {
                    visit(px, I4(y + dy), i);
                    seen = 1;
                }
            }
        }
    }
}

// The colour a soft spray gives: each channel moves from the foreground f toward the
// pixel p by step / steps of the way, f - step * ((f - p) / steps). step = steps leaves
// the pixel as it is; steps <= 0 gives the foreground.
Color MixToForeground(Color c, int steps, int step, Color fore);

// The same toward white (darken = false) or black (darken = true); steps <= 0 keeps c.
Color MixToLimit(Color c, int steps, int step, bool darken);

// Airbrush. The soft spray mixes the foreground in, fully where the pressure is 100
// at the centre, not at all on the outermost ring.
void SoftSpray(Surface& surface, double x, double y, int size, int rings, double pressure, Color fore);
// The hard spray sets single pixels to the foreground at random, within two thirds
// of the radius: one uniform number per pixel, a hit when I4(u * (101 - P)) < 2.
void HardSpray(Surface& surface, double x, double y, int size, int rings, double pressure, Color fore,
               Random& random);

// Brighten (darken = false) and Darken (darken = true).
void BrightDarkBrush(Surface& surface, double x, double y, int size, int rings, double pressure, bool darken);

// Soften: each pixel averages the 2 x 2 block to its upper left and writes the average
// back to all four. The blocks of neighbouring pixels overlap, so the walk order shapes
// the result. Returns the centre as the last blurred position (LastBlurX, LastBlurY).
void BlurBrush(Surface& surface, double x, double y, int size, int rings, int* lastX = nullptr,
               int* lastY = nullptr);

// Dissolve Colors: mode 0, 1, 2 take `intensity` off red, green or blue (not below 0);
// mode 3 turns the area grey, (R + G + B) / 3 + intensity / 10. With noise each pixel
// takes I2(Rnd * 100 + intensity) instead.
void DissolveBrush(Surface& surface, double x, double y, int size, int rings, int mode, int intensity,
                   bool noise, Random& random);

// Enhance Colors: with `filterBase` the two channels other than the mode's (0 red,
// 1 green, 2 blue) are divided by intensity + 1; without it the mode's channel gains
// the intensity. `doubleStep` walks every second pixel.
void EnhanceBrush(Surface& surface, double x, double y, int size, int rings, int mode, int intensity,
                  bool doubleStep, bool filterBase);

} // namespace velunta
