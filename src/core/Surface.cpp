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
    touchAll();
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

void Surface::trackChanges(int tileSize)
{
    m_tile = std::max(0, tileSize);
    m_changedAll = true;
    m_changed.clear();
    m_changedList.clear();
}

void Surface::markChanged(const QRect& r)
{
    const QRect box = r.intersected(m_image.rect());
    m_reportedKey = m_image.cacheKey();
    if (box.isEmpty() || m_changedAll)
        return;
    const int columns = (m_image.width() + m_tile - 1) / m_tile;
    const int rows = (m_image.height() + m_tile - 1) / m_tile;
    if (columns != m_columns || rows != m_rows || m_changed.size() != std::size_t(columns) * rows) {
        m_changedAll = true;
        return;
    }
    for (int ty = box.top() / m_tile; ty <= box.bottom() / m_tile; ++ty)
        for (int tx = box.left() / m_tile; tx <= box.right() / m_tile; ++tx) {
            const int index = ty * columns + tx;
            if (!m_changed[std::size_t(index)]) {
                m_changed[std::size_t(index)] = 1;
                m_changedList.push_back(index);
            }
        }
}

Surface::Changes Surface::takeChanges()
{
    Changes out;
    const int tile = std::max(1, m_tile);
    out.columns = (m_image.width() + tile - 1) / tile;
    out.rows = (m_image.height() + tile - 1) / tile;
    // Any write bumps the image's cache key; one that did not go through touch()
    // leaves it different from the key seen at the last report, and then nobody
    // knows which pixels changed.
    out.all = m_tile <= 0 || m_changedAll || m_image.cacheKey() != m_reportedKey ||
              out.columns != m_columns || out.rows != m_rows;
    const std::size_t count = std::size_t(out.columns) * out.rows;
    if (out.all || m_changed.size() != count)
        m_changed.assign(count, 0);
    else
        for (int index : m_changedList)
            m_changed[std::size_t(index)] = 0;
    if (!out.all)
        out.tiles.swap(m_changedList);
    m_changedList.clear();
    m_columns = out.columns;
    m_rows = out.rows;
    m_changedAll = false;
    m_reportedKey = m_image.cacheKey();
    return out;
}

bool Surface::adoptCopy(QImage copy, qint64 key)
{
    if (m_image.cacheKey() != key || copy.size() != m_image.size() || copy.format() != m_image.format())
        return false;
    // The copy's key is new; a layer whose writes were all reported stays so.
    const bool reported = m_reportedKey == key;
    m_image = std::move(copy);
    if (reported)
        m_reportedKey = m_image.cacheKey();
    return true;
}

void Surface::setImage(const QImage& image)
{
    QImage converted = image.convertToFormat(QImage::Format_RGB32);
    if (converted.isNull() && !image.isNull())
        throw AllocationError("not enough memory to convert a picture");
    m_image = converted;
    touchAll();
}

void Surface::Cls()
{
    if (m_image.isNull())
        return;
    if (m_picture.size() == m_image.size()) {
        // The picture covers everything: both layers share its pixels until one is written.
        m_image = m_picture;
    } else
        m_image.fill(ToQRgb(BackColor));
    if (!m_picture.isNull() && m_picture.size() != m_image.size()) {
        const int cw = std::min(m_picture.width(), m_image.width());
        const int ch = std::min(m_picture.height(), m_image.height());
        for (int y = 0; y < ch; ++y)
            std::copy_n(reinterpret_cast<const QRgb*>(m_picture.constScanLine(y)), cw,
                        reinterpret_cast<QRgb*>(m_image.scanLine(y)));
    }
    CurrentX = 0;
    CurrentY = 0;
    touchAll();
}

} // namespace velunta
