#include "files/read/PictureRows.h"

#include "files/read/BigBuffer.h"
#include "files/read/Decoders.h"

#include <algorithm>
#include <cstdlib>

namespace velunta {

PictureRows::PictureRows(int width, int height, qint64 fileBytes) : m_width(width), m_height(height)
{
    if (width > 0 && height > 0 && qint64(width) * height * 4 <= UnprovenAllowance(fileBytes)) {
        m_bits = AllocatePictureMemory(size_t(bytesPerLine()) * size_t(height));
        if (m_bits)
            m_rows = height;
    }
}

PictureRows::~PictureRows()
{
    ReleasePictureMemory(m_bits);
}

uchar* PictureRows::row(int y)
{
    if (y < 0 || y >= m_height)
        return nullptr;
    if (y >= m_rows) {
        // Steps of 64 MB, or a quarter more once the picture is larger: few moves
        // (large blocks are remapped, not copied) and little memory ahead of the data.
        const qint64 step = std::max<qint64>({(qint64(64) << 20) / bytesPerLine(), m_rows / 4, 1});
        const int rows = int(std::min<qint64>(m_height, std::max<qint64>(y + 1, m_rows + step)));
        auto* grown = static_cast<uchar*>(std::realloc(m_bits, size_t(bytesPerLine()) * size_t(rows)));
        if (!grown)
            return nullptr;
        m_bits = grown;
        m_rows = rows;
    }
    return m_bits + qsizetype(y) * bytesPerLine();
}

QImage PictureRows::take(QImage::Format format)
{
    if (m_rows < m_height || !m_bits)
        return {};
    QImage image(m_bits, m_width, m_height, bytesPerLine(), format, ReleasePictureMemory, m_bits);
    if (!image.isNull())
        m_bits = nullptr; // the image frees it now
    return image;
}

} // namespace velunta
