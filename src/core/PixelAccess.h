#pragma once
// Direct pixel access for the brushes that work pixel by pixel: the rows of the
// surface's drawing layer taken once, reads that give -1 outside (as GetPixel does)
// and writes that do nothing outside (as SetPixelV does). The touched rectangle is
// reported to the surface when the access ends.

#include "core/Color.h"
#include "core/Surface.h"

#include <algorithm>

namespace velunta {

class PixelAccess {
public:
    explicit PixelAccess(Surface& s)
        : m_surface(s), m_bits(s.Image().isNull() ? nullptr : reinterpret_cast<QRgb*>(s.Image().bits())),
          m_width(s.ScaleWidth()), m_height(s.ScaleHeight()),
          m_stride(s.Image().isNull() ? 0 : int(s.Image().bytesPerLine() / 4))
    {
    }
    ~PixelAccess()
    {
        if (m_x0 <= m_x1)
            m_surface.touch(QRect(QPoint(m_x0, m_y0), QPoint(m_x1, m_y1)));
    }
    PixelAccess(const PixelAccess&) = delete;
    PixelAccess& operator=(const PixelAccess&) = delete;

    bool inside(int x, int y) const { return x >= 0 && y >= 0 && x < m_width && y < m_height; }
    Color get(int x, int y) const { return inside(x, y) ? FromQRgb(m_bits[y * m_stride + x]) : kNoColor; }
    bool set(int x, int y, Color c)
    {
        if (!inside(x, y))
            return false;
        m_bits[y * m_stride + x] = ToQRgb(c);
        m_x0 = std::min(m_x0, x);
        m_x1 = std::max(m_x1, x);
        m_y0 = std::min(m_y0, y);
        m_y1 = std::max(m_y1, y);
        return true;
    }
    int width() const { return m_width; }
    int height() const { return m_height; }

private:
    Surface& m_surface;
    QRgb* m_bits;
    int m_width;
    int m_height;
    int m_stride;
    int m_x0 = 1 << 30, m_y0 = 1 << 30, m_x1 = -1, m_y1 = -1;
};

} // namespace velunta
