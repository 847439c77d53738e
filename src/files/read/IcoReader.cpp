// Icons (ICO) and cursors (CUR): a directory of pictures, each a PNG file or a
// DIB with a transparency mask. The one with the most pixels is shown, the
// deepest on a tie, as a viewer of icons would.

#include "files/read/Decoders.h"

#include <QCoreApplication>

namespace velunta {

namespace {

class Reader : FileBytes {
public:
    using FileBytes::FileBytes;
    QImage read();

private:
    // The picture's bits a pixel as its own header gives them; 0 when unknown.
    int depthOf(qint64 at) const;
};

int Reader::depthOf(qint64 at) const
{
    if (has(at, 26) && QByteArrayView(m_d + at, 8) == QByteArrayView("\x89PNG\r\n\x1A\n")) {
        static constexpr int kChannels[7] = {1, 0, 3, 1, 2, 0, 4};
        const int colorType = m_d[at + 25];
        return colorType <= 6 ? m_d[at + 24] * kChannels[colorType] : 0;
    }
    return has(at, 16) ? u16(at + 14) : 0;
}

QImage Reader::read()
{
    if (!need(0, 6))
        return {};
    const bool cursor = u16(2) == 2;
    const int count = u16(4);
    if (count == 0) {
        m_failure.invalid(QCoreApplication::translate("PictureFiles", "The icon file holds no pictures."));
        return {};
    }
    if (!need(6, 16 * qint64(count)))
        return {};
    qint64 bestAt = -1, bestEnd = 0, bestArea = -1;
    int bestDepth = -1;
    for (int i = 0; i < count; ++i) {
        const qint64 e = 6 + 16 * qint64(i);
        const qint64 offset = u32(e + 12);
        // A directory that points past the end belongs to a file that was cut short.
        if (offset + qint64(u32(e + 8)) > m_size) {
            m_failure.cutShort();
            return {};
        }
        const qint64 area = qint64(m_d[e] ? m_d[e] : 256) * (m_d[e + 1] ? m_d[e + 1] : 256);
        // A cursor's directory holds its hot spot where an icon's holds the depth.
        const int stated = cursor ? 0 : u16(e + 6);
        const int depth = stated ? stated : depthOf(offset);
        if (area > bestArea || (area == bestArea && depth > bestDepth)) {
            bestAt = offset;
            bestEnd = offset + qint64(u32(e + 8));
            bestArea = area;
            bestDepth = depth;
        }
    }
    const auto picture = QByteArrayView(m_d + bestAt, bestEnd - bestAt);
    return picture.startsWith("\x89PNG\r\n\x1A\n") ? DecodePNG(picture, m_failure)
                                                   : DecodeIconDIB(picture, m_failure);
}

} // namespace

QImage DecodeICO(QByteArrayView data, LoadFailure& failure)
{
    return Reader(data, failure).read();
}

} // namespace velunta
