#include "core/Surface.h"

#include <QPainter>

#include <algorithm>

namespace velunta {

Surface::Surface(int border) : m_border(border), m_image(0, 0, QImage::Format_RGB32) {}

QImage Surface::allocate(int w, int h)
{
    if (w <= 0 || h <= 0)
        return QImage(0, 0, QImage::Format_RGB32);
    QImage image(w, h, QImage::Format_RGB32);
    if (image.isNull())
        throw AllocationError("not enough memory for a picture of " + std::to_string(w) + " x " +
                              std::to_string(h) + " pixels");
    return image;
}

void Surface::setScaleSize(int width, int height)
{
    width = std::max(0, width);
    height = std::max(0, height);
    if (width == m_image.width() && height == m_image.height())
        return;
    QImage next = allocate(width, height);
    if (!next.isNull() && width > 0 && height > 0) {
        next.fill(ToQRgb(BackColor));
        const int cw = std::min(width, m_image.width());
        const int ch = std::min(height, m_image.height());
        for (int y = 0; y < ch; ++y)
            std::copy_n(reinterpret_cast<const QRgb*>(m_image.constScanLine(y)), cw,
                        reinterpret_cast<QRgb*>(next.scanLine(y)));
    }
    m_image = next;
    m_touched = m_image.rect();
}

void Surface::setSize(int width, int height)
{
    setScaleSize(width - 2 * m_border, height - 2 * m_border);
}

void Surface::Move(double left, double top)
{
    Left = left;
    Top = top;
}

void Surface::Move(double left, double top, int width, int height)
{
    Move(left, top);
    setSize(width, height);
}

void Surface::setPicture(const QImage& picture)
{
    m_picture = picture.isNull() ? QImage() : picture.convertToFormat(QImage::Format_RGB32);
    Cls();
}

void Surface::setImage(const QImage& image)
{
    QImage converted = image.convertToFormat(QImage::Format_RGB32);
    if (converted.isNull() && !image.isNull())
        throw AllocationError("not enough memory to convert a picture");
    m_image = converted;
    m_touched = m_image.rect();
}

void Surface::Cls()
{
    if (m_image.isNull())
        return;
    m_image.fill(ToQRgb(BackColor));
    if (!m_picture.isNull()) {
        const int cw = std::min(m_picture.width(), m_image.width());
        const int ch = std::min(m_picture.height(), m_image.height());
        for (int y = 0; y < ch; ++y)
            std::copy_n(reinterpret_cast<const QRgb*>(m_picture.constScanLine(y)), cw,
                        reinterpret_cast<QRgb*>(m_image.scanLine(y)));
    }
    CurrentX = 0;
    CurrentY = 0;
    m_touched = m_image.rect();
}

} // namespace velunta
