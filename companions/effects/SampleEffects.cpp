#include "effects/SampleEffects.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace velunta {

namespace {

inline QRgb pixel(int r, int g, int b)
{
    return 0xFF000000u | (QRgb(std::clamp(r, 0, 255)) << 16) | (QRgb(std::clamp(g, 0, 255)) << 8) |
           QRgb(std::clamp(b, 0, 255));
}
// Luma in 0..255, weights in thousandths.
inline int luma(QRgb p)
{
    return (qRed(p) * 299 + qGreen(p) * 587 + qBlue(p) * 114 + 500) / 1000;
}

QRgb* row(QImage& picture, int y)
{
    return reinterpret_cast<QRgb*>(picture.scanLine(y));
}

void prepare(QImage& picture)
{
    if (picture.format() != QImage::Format_RGB32)
        picture = picture.convertToFormat(QImage::Format_RGB32);
}

// The classic sepia matrix in 1/1024ths.
inline QRgb sepiaOf(QRgb p)
{
    const int r = qRed(p), g = qGreen(p), b = qBlue(p);
    return pixel((r * 403 + g * 787 + b * 194) >> 10, (r * 357 + g * 702 + b * 172) >> 10,
                 (r * 279 + g * 547 + b * 134) >> 10);
}

// Box blur of a single channel plane, radius r, in place: rows, then columns.
void boxBlur(std::vector<int>& plane, int w, int h, int r)
{
    std::vector<int> line(static_cast<size_t>(std::max(w, h)));
    const int span = 2 * r + 1;
    for (int y = 0; y < h; ++y) {
        int* p = plane.data() + size_t(y) * w;
        int sum = 0;
        for (int i = -r; i <= r; ++i)
            sum += p[std::clamp(i, 0, w - 1)];
        for (int x = 0; x < w; ++x) {
            line[size_t(x)] = sum / span;
            sum += p[std::min(x + r + 1, w - 1)] - p[std::max(x - r, 0)];
        }
        std::copy(line.begin(), line.begin() + w, p);
    }
    // The columns all at once, a row at a time, so the reads stay in order.
    std::vector<int> sums(static_cast<size_t>(w), 0);
    std::vector<int> out(plane.size());
    for (int i = -r; i <= r; ++i) {
        const int* p = plane.data() + size_t(std::clamp(i, 0, h - 1)) * w;
        for (int x = 0; x < w; ++x)
            sums[size_t(x)] += p[x];
    }
    for (int y = 0; y < h; ++y) {
        int* o = out.data() + size_t(y) * w;
        const int* add = plane.data() + size_t(std::min(y + r + 1, h - 1)) * w;
        const int* sub = plane.data() + size_t(std::max(y - r, 0)) * w;
        for (int x = 0; x < w; ++x) {
            o[x] = sums[size_t(x)] / span;
            sums[size_t(x)] += add[x] - sub[x];
        }
    }
    plane.swap(out);
}

// 0 at the middle, 1 at the middle of each edge, about 1.41 in the corners.
template <class Fn> void radial(QImage& picture, Fn&& fn)
{
    const int w = picture.width(), h = picture.height();
    const double cx = (w - 1) / 2.0, cy = (h - 1) / 2.0;
    std::vector<double> dx2(static_cast<size_t>(w));
    for (int x = 0; x < w; ++x) {
        const double d = cx > 0 ? (x - cx) / cx : 0;
        dx2[size_t(x)] = d * d;
    }
    for (int y = 0; y < h; ++y) {
        const double dy = cy > 0 ? (y - cy) / cy : 0;
        QRgb* p = row(picture, y);
        for (int x = 0; x < w; ++x)
            p[x] = fn(p[x], std::sqrt(dx2[size_t(x)] + dy * dy), x, y);
    }
}

double smoothstep(double a, double b, double v)
{
    const double t = std::clamp((v - a) / (b - a), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

} // namespace

void Sepia(QImage& picture)
{
    prepare(picture);
    for (int y = 0; y < picture.height(); ++y) {
        QRgb* p = row(picture, y);
        for (int x = 0; x < picture.width(); ++x)
            p[x] = sepiaOf(p[x]);
    }
}

void Posterize(QImage& picture, int levels)
{
    prepare(picture);
    levels = std::clamp(levels, 2, 255);
    std::array<int, 256> lut{};
    for (int v = 0; v < 256; ++v)
        lut[size_t(v)] = (v * levels / 256) * 255 / (levels - 1);
    for (int y = 0; y < picture.height(); ++y) {
        QRgb* p = row(picture, y);
        for (int x = 0; x < picture.width(); ++x)
            p[x] = pixel(lut[size_t(qRed(p[x]))], lut[size_t(qGreen(p[x]))], lut[size_t(qBlue(p[x]))]);
    }
}

void Vignette(QImage& picture, double strength)
{
    prepare(picture);
    radial(picture, [strength](QRgb p, double d, int, int) {
        const int f = int(std::lround(1024 * (1 - strength * smoothstep(0.45, 1.45, d))));
        return pixel(qRed(p) * f >> 10, qGreen(p) * f >> 10, qBlue(p) * f >> 10);
    });
}

void OldPhoto(QImage& picture)
{
    prepare(picture);
    // Film grain from a fixed seed: the same picture ages the same way every time.
    std::uint32_t seed = 0x9E3779B9u;
    auto grain = [&seed] {
        seed ^= seed << 13;
        seed ^= seed >> 17;
        seed ^= seed << 5;
        return int(seed % 25) - 12;
    };
    radial(picture, [&](QRgb p, double d, int, int) {
        // Faded: the blacks lift and the whites dim before the toning.
        const int faded = 40 + luma(p) * 170 / 255 + grain();
        const QRgb toned = sepiaOf(pixel(faded, faded, faded));
        const int f = int(std::lround(1024 * (1 - 0.55 * smoothstep(0.35, 1.45, d))));
        return pixel(qRed(toned) * f >> 10, qGreen(toned) * f >> 10, qBlue(toned) * f >> 10);
    });
}

void PencilSketch(QImage& picture)
{
    prepare(picture);
    const int w = picture.width(), h = picture.height();
    if (w == 0 || h == 0)
        return;
    std::vector<int> grey(size_t(w) * h), inverted(size_t(w) * h);
    for (int y = 0; y < h; ++y) {
        const QRgb* p = row(picture, y);
        for (int x = 0; x < w; ++x) {
            const size_t i = size_t(y) * w + x;
            grey[i] = luma(p[x]);
            inverted[i] = 255 - grey[i];
        }
    }
    // Three box blurs come close to a Gaussian; the stroke widens with the picture.
    const int radius = std::max(2, std::min(w, h) / 150);
    for (int pass = 0; pass < 3; ++pass)
        boxBlur(inverted, w, h, radius);
    for (int y = 0; y < h; ++y) {
        QRgb* p = row(picture, y);
        for (int x = 0; x < w; ++x) {
            const size_t i = size_t(y) * w + x;
            // Colour dodge of the grey by its blurred negative: flat areas go white,
            // edges stay as dark as they were.
            const int b = inverted[i];
            int v = b >= 255 ? 255 : std::min(255, grey[i] * 255 / (255 - b));
            // A softer pencil: the lines darken a little more, the paper stays white.
            v = 255 - (255 - v) * 5 / 4;
            p[x] = pixel(v, v, v);
        }
    }
}

void OilPaint(QImage& picture)
{
    prepare(picture);
    const int w = picture.width(), h = picture.height();
    if (w == 0 || h == 0)
        return;
    constexpr int kLevels = 20;
    const int r = std::clamp(std::min(w, h) / 160, 2, 5);
    const QImage source = picture.copy();
    // The brightness level of each pixel, once.
    std::vector<std::uint8_t> level(size_t(w) * h);
    for (int y = 0; y < h; ++y) {
        const QRgb* p = reinterpret_cast<const QRgb*>(source.constScanLine(y));
        for (int x = 0; x < w; ++x)
            level[size_t(y) * w + x] =
                std::uint8_t((qRed(p[x]) + qGreen(p[x]) + qBlue(p[x])) * kLevels / 766);
    }
    struct Bin {
        int count, r, g, b;
    };
    std::vector<const QRgb*> rows(static_cast<size_t>(2 * r + 1));
    std::vector<const std::uint8_t*> levels(static_cast<size_t>(2 * r + 1));
    for (int y = 0; y < h; ++y) {
        for (int k = -r; k <= r; ++k) {
            const int yy = std::clamp(y + k, 0, h - 1);
            rows[size_t(k + r)] = reinterpret_cast<const QRgb*>(source.constScanLine(yy));
            levels[size_t(k + r)] = level.data() + size_t(yy) * w;
        }
        // The window slides along the row: a column of 2r + 1 pixels comes in at the
        // right and one goes at the left.
        std::array<Bin, kLevels + 1> bins{};
        auto column = [&](int x, int sign) {
            x = std::clamp(x, 0, w - 1);
            for (size_t k = 0; k < rows.size(); ++k) {
                const QRgb p = rows[k][x];
                Bin& bin = bins[levels[k][x]];
                bin.count += sign;
                bin.r += sign * qRed(p);
                bin.g += sign * qGreen(p);
                bin.b += sign * qBlue(p);
            }
        };
        for (int x = -r; x <= r; ++x)
            column(x, 1);
        QRgb* out = row(picture, y);
        for (int x = 0; x < w; ++x) {
            const Bin* best = &bins[0];
            for (const Bin& bin : bins)
                if (bin.count > best->count)
                    best = &bin;
            out[x] = pixel(best->r / best->count, best->g / best->count, best->b / best->count);
            column(x - r, -1);
            column(x + r + 1, 1);
        }
    }
}

} // namespace velunta
