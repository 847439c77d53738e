#include "files/cDIBSection.h"

#include "files/PixelRows.h"

#include <cstring>
#include <limits>

namespace velunta {

bool cDIBSection::allocate(int width, int height, bool clear)
{
    ClearUp();
    if (width <= 0 || height <= 0)
        return false;
    const qint64 bytes = DibStride24(width) * height;
    if (bytes > std::numeric_limits<qsizetype>::max() / 2)
        return false;
    m_bits = AllocateBig(size_t(bytes));
    if (!m_bits)
        return false;
    if (clear)
        std::memset(m_bits.get(), 0, size_t(bytes));
    m_width = width;
    m_height = height;
    return true;
}

bool cDIBSection::Create(int width, int height)
{
    return allocate(width, height, true);
}

bool cDIBSection::CreateFromPicture(const QImage& picture)
{
    // Every byte, the row padding included, is written by the copy below.
    if (!allocate(picture.width(), picture.height(), false))
        return false;
    const int pad = BytesPerScanLine() - m_width * 3;
    for (int y = 0; y < m_height; ++y)
        std::memset(m_bits.get() + qsizetype(y) * BytesPerScanLine() + m_width * 3, 0, size_t(pad));
    LoadPictureBlt(picture);
    return true;
}

void cDIBSection::LoadPictureBlt(const QImage& source, int srcX, int srcY, int width, int height)
{
    if (!m_bits || source.isNull() || srcX < 0 || srcY < 0)
        return;
    if (width < 0)
        width = source.width() - srcX;
    if (height < 0)
        height = source.height() - srcY;
    width = qMin(qMin(width, source.width() - srcX), m_width);
    height = qMin(qMin(height, source.height() - srcY), m_height);
    if (width <= 0 || height <= 0)
        return;
    const QImage pixels = Rgb32Pixels(source);
    const qsizetype stride = BytesPerScanLine();
    for (int y = 0; y < height; ++y) {
        const auto* in = reinterpret_cast<const QRgb*>(pixels.constScanLine(srcY + y)) + srcX;
        PackBGR(in, width, m_bits.get() + qsizetype(m_height - 1 - y) * stride);
    }
}

void cDIBSection::ClearUp()
{
    m_bits.reset();
    m_width = 0;
    m_height = 0;
}

} // namespace velunta
