#include "core/GdiRaster.h"

#include <algorithm>

namespace velunta::raster {

QRect clippedBox(const QImage& image, std::int64_t left, std::int64_t top, std::int64_t right,
                 std::int64_t bottom)
{
    left = std::max<std::int64_t>(left, 0);
    top = std::max<std::int64_t>(top, 0);
    right = std::min<std::int64_t>(right, image.width());
    bottom = std::min<std::int64_t>(bottom, image.height());
    if (left >= right || top >= bottom)
        return {};
    return QRect(int(left), int(top), int(right - left), int(bottom - top));
}

std::uint8_t Brush::rowMask(int y) const
{
    const int row = y & 7;
    const std::uint8_t horizontal = row == 3 ? 0xFF : 0;
    const std::uint8_t vertical = 1u << 4;
    const std::uint8_t upward = 1u << (7 - row);
    const std::uint8_t downward = 1u << row;
    switch (style) {
    case 0:
        return 0xFF;
    case 2:
        return horizontal;
    case 3:
        return vertical;
    case 4:
        return upward;
    case 5:
        return downward;
    case 6:
        return horizontal | vertical;
    case 7:
        return upward | downward;
    default:
        return 0;
    }
}

void paintSpan(QImage& image, int y, int x0, int x1, QRgb colour)
{
    if (x0 > x1)
        return;
    QRgb* line = rowOf(image, y);
    std::fill(line + x0, line + x1 + 1, colour);
}

void paintSpan(QImage& image, int y, int x0, int x1, const Brush& brush)
{
    const std::uint8_t mask = brush.rowMask(y);
    if (mask == 0xFF) {
        paintSpan(image, y, x0, x1, brush.colour);
        return;
    }
    if (mask == 0 || x0 > x1)
        return;
    QRgb* line = rowOf(image, y);
    for (int x = x0; x <= x1; ++x)
        if ((mask >> (x & 7)) & 1u)
            line[x] = brush.colour;
}

void fillBox(QImage& image, const QRect& box, QRgb colour)
{
    for (int y = box.top(); y <= box.bottom(); ++y)
        paintSpan(image, y, box.left(), box.right(), colour);
}

void fillBox(QImage& image, const QRect& box, const Brush& brush)
{
    for (int y = box.top(); y <= box.bottom(); ++y)
        paintSpan(image, y, box.left(), box.right(), brush);
}

} // namespace velunta::raster
