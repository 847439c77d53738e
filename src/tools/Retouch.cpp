#include "tools/Retouch.h"

#include "core/Numbers.h"
#include "core/PixelAccess.h"

#include <vector>

namespace velunta {

void RingWalk(double x, double y, int size, int rings, int step,
              const std::function<void(int, int, int)>& visit)
{
    if (rings <= 0 || size < 0)
        return;
    const int side = 2 * size + 1;
    std::vector<char> mask(size_t(side) * size_t(side), 0);
    for (int i = 1; i <= rings; ++i) {
        const int r = I2(double(size) / rings * i);
        const int rr = I2(double(r) * r); // 16-bit, as the brushes always counted
        for (int dx = -r; dx <= r; dx += step) {
            for (int dy = -r; dy <= r; dy += step) {
                if (dx < -size || dx > size || dy < -size || dy > size)
                    continue;
                char& seen = mask[size_t(dx + size) * side + size_t(dy + size)];
                if (!seen && dx * dx + dy * dy <= rr) {
                    visit(I4(x + dx), I4(y + dy), i);
                    seen = 1;
                }
            }
        }
    }
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

} // namespace velunta
