#pragma once
// Pictures for the effects library's tests, made in code: a colourful test card with
// gradients, hard edges and greys, and byte comparisons.

#include "core/Color.h"
#include "core/Surface.h"

#include <QImage>
#include <QRgb>

#include <cmath>
#include <cstdlib>

namespace velunta::fxtest {

// Hues across, light to dark downwards, a black square, a white bar and a grey ramp
// along the bottom rows: every filter finds edges, flat areas and greys in it.
inline QImage TestCard(int w, int h)
{
    QImage image(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < w; ++x) {
            const double hue = 6.0 * x / std::max(1, w);
            const double v = 1.0 - 0.7 * y / std::max(1, h);
            const auto ch = [&](double offset) {
                const double d = std::fmod(hue + offset, 6.0);
                const double c = d < 1 ? d : d < 3 ? 1 : d < 4 ? 4 - d : 0;
                return int(std::lround(255 * v * (0.15 + 0.85 * c)));
            };
            int r = ch(2), g = ch(0), b = ch(4);
            if (x >= w / 4 && x < w / 2 && y >= h / 4 && y < h / 2)
                r = g = b = 0;
            if (y >= h / 2 && y < h / 2 + std::max(1, h / 10))
                r = g = b = 255;
            if (y >= h - std::max(1, h / 8))
                r = g = b = 255 * x / std::max(1, w - 1);
            line[x] = qRgb(r, g, b);
        }
    }
    return image;
}

inline Surface SurfaceOf(const QImage& image)
{
    Surface s;
    s.setImage(image);
    return s;
}

inline Surface TestSurface(int w, int h)
{
    return SurfaceOf(TestCard(w, h));
}

// The largest difference of any channel between two pictures of one size (-1 when the
// sizes differ).
inline int MaxDifference(const QImage& a, const QImage& b)
{
    if (a.size() != b.size())
        return -1;
    int most = 0;
    for (int y = 0; y < a.height(); ++y) {
        const QRgb* p = reinterpret_cast<const QRgb*>(a.constScanLine(y));
        const QRgb* q = reinterpret_cast<const QRgb*>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x)
            most = std::max({most, std::abs(qRed(p[x]) - qRed(q[x])), std::abs(qGreen(p[x]) - qGreen(q[x])),
                             std::abs(qBlue(p[x]) - qBlue(q[x]))});
    }
    return most;
}

} // namespace velunta::fxtest
