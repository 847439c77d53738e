#pragma once
// Scan-line helpers shared by the drawing services (Gdi.cpp, GdiShapes.cpp): row
// access, clipping that cannot wrap, and spans painted with the pen colour or with
// the surface's brush.

#include "core/Color.h"
#include "core/Surface.h"

#include <QImage>
#include <QRect>

#include <cstdint>

namespace velunta::raster {

// Pixels of a Format_RGB32 image keep alpha 0xFF; the colour operations work on the
// 24 bits below it.
inline constexpr QRgb kOpaque = 0xFF000000u;
inline constexpr QRgb kRgbBits = 0x00FFFFFFu;

inline QRgb* rowOf(QImage& image, int y)
{
    return reinterpret_cast<QRgb*>(image.scanLine(y));
}
inline const QRgb* rowOf(const QImage& image, int y)
{
    return reinterpret_cast<const QRgb*>(image.constScanLine(y));
}

// left..right-1 by top..bottom-1 clipped to the image, or an empty rectangle. The
// arithmetic is 64-bit so that coordinates near the ends of the int range can't wrap.
QRect clippedBox(const QImage& image, std::int64_t left, std::int64_t top, std::int64_t right,
                 std::int64_t bottom);

// The surface's brush: FillColor with FillStyle. The hatches repeat every 8 x 8
// pixels from the surface's origin; inside each cell the lines are
//   2 horizontal   row 3             (y & 7) == 3
//   3 vertical     column 4          (x & 7) == 4
//   4 upward "/"   anti-diagonal     ((x + y) & 7) == 7
//   5 downward "\" diagonal          (x & 7) == (y & 7)
//   6 cross        2 and 3 together
//   7 diagonal cross 4 and 5 together
// Style 1 (hollow) and values outside 0..7 paint nothing.
struct Brush {
    QRgb colour = kOpaque;
    int style = 1;

    static Brush of(const Surface& s) { return {ToQRgb(s.FillColor), s.FillStyle}; }
    bool paints() const { return style == 0 || (style >= 2 && style <= 7); }
    // Bit (x & 7) is set for the columns the brush paints on row y.
    std::uint8_t rowMask(int y) const;
};

// Paints x0..x1 (inclusive, inside the image) of row y.
void paintSpan(QImage& image, int y, int x0, int x1, QRgb colour);
void paintSpan(QImage& image, int y, int x0, int x1, const Brush& brush);
// Fills a rectangle that is already clipped to the image.
void fillBox(QImage& image, const QRect& box, QRgb colour);
void fillBox(QImage& image, const QRect& box, const Brush& brush);

} // namespace velunta::raster
