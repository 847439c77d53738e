#pragma once
// The round retouch brushes. A dab walks rings from the centre outward, each pixel
// once, by the innermost ring that reaches it; each brush decides what happens to
// the pixel.

#include "core/Color.h"

#include <functional>

namespace velunta {

class Surface;

// Walks the rings of a dab of `size` and `rings` around (x, y), calling visit(px, py,
// ring) for each pixel once, innermost ring first; dx outer, dy inner, -r..r, with
// `step` between samples (2 makes a sieve). The ring arithmetic is 16-bit: a size above
// 181 overflows r * r and throws OverflowError.
void RingWalk(double x, double y, int size, int rings, int step,
              const std::function<void(int px, int py, int ring)>& visit);

// Soften: each pixel averages the 2 x 2 block to its upper left and writes the average
// back to all four. The blocks of neighbouring pixels overlap, so the walk order shapes
// the result. Returns the centre as the last blurred position (LastBlurX, LastBlurY).
void BlurBrush(Surface& surface, double x, double y, int size, int rings, int* lastX = nullptr,
               int* lastY = nullptr);

} // namespace velunta
