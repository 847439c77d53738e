#pragma once
// Pictures the benchmarks work on.

#include <QImage>

namespace velunta::bench {

// Something like a photograph: smooth shades with grain on them.
inline QImage Photo(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    quint32 seed = 12345;
    for (int y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            seed = seed * 1664525u + 1013904223u;
            const int grain = int(seed >> 28) - 8;
            line[x] = qRgb(qBound(0, x * 255 / width + grain, 255), qBound(0, y * 255 / height + grain, 255),
                           qBound(0, ((x + y) / 30) % 256 + grain, 255));
        }
    }
    return image;
}

} // namespace velunta::bench
