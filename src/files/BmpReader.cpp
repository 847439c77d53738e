// The BMP decoder: Windows and OS/2 headers, 1 to 32 bits, RLE4, RLE8, bit
// fields and top-down rows. Qt's reader shows a file that is cut short as if it
// were whole, so the program reads BMP itself and can tell.

#include "files/Decoders.h"

#include <array>
#include <bit>

namespace velunta {

namespace {

enum Compression : quint32 { BiRgb = 0, BiRle8 = 1, BiRle4 = 2, BiBitfields = 3, BiAlphaBitfields = 6 };

// One colour channel of a bit-field pixel, scaled from its width to 0..255.
struct Channel {
    quint32 mask = 0;
    int shift = 0;
    quint64 max = 0;

    explicit Channel(quint32 m = 0) : mask(m)
    {
        if (mask) {
            shift = std::countr_zero(mask);
            max = (quint64(1) << std::bit_width(mask >> shift)) - 1;
        }
    }
    int operator()(quint32 pixel) const
    {
        return mask ? int((quint64((pixel & mask) >> shift) * 255 + max / 2) / max) : 0;
    }
};

struct Header {
    qint64 width = 0;
    qint64 height = 0;
    bool topDown = false;
    int bpp = 0;
    quint32 compression = BiRgb;
    quint32 masks[4] = {};
    bool hasAlpha = false;
    std::array<QRgb, 256> palette{};
    qint64 pixelStart = 0;
};

class Reader : FileBytes {
public:
    using FileBytes::FileBytes;
    QImage read();

private:
    bool readHeader();
    void readUncompressed(QImage& image);
    void readBitfields(QImage& image);
    bool readRle(QImage& image);

    Header m_h;
};

bool Reader::readHeader()
{
    if (!need(0, 18))
        return false;
    const quint32 offBits = u32(10);
    const quint32 infoSize = u32(14);
    if (infoSize < 12 || infoSize > 1024) {
        m_failure.invalid(QStringLiteral("unknown BMP header"));
        return false;
    }
    if (!need(14, infoSize))
        return false;
    int entrySize = 4;
    quint32 colorsUsed = 0;
    // OS/2 2.x headers run from 16 to 64 bytes; their compression 3 is Huffman, not bit fields.
    const bool os2 = infoSize < 40 || infoSize == 64;
    if (infoSize == 12) {
        m_h.width = u16(18);
        m_h.height = u16(20);
        m_h.bpp = u16(24);
        entrySize = 3;
    } else {
        m_h.width = qint32(u32(18));
        m_h.height = qint32(u32(22));
        m_h.bpp = u16(28);
        m_h.compression = infoSize >= 20 ? u32(30) : BiRgb;
        colorsUsed = infoSize >= 36 ? u32(46) : 0;
    }
    if (os2 && m_h.compression != BiRgb && m_h.compression != BiRle8 && m_h.compression != BiRle4) {
        m_failure.invalid(QStringLiteral("unsupported BMP compression"));
        return false;
    }
    if (m_h.height < 0) {
        m_h.topDown = true;
        m_h.height = -m_h.height;
    }

    const int bpp = m_h.bpp;
    const quint32 c = m_h.compression;
    const bool valid =
        (c == BiRgb &&
         (bpp == 1 || bpp == 2 || bpp == 4 || bpp == 8 || bpp == 16 || bpp == 24 || bpp == 32)) ||
        (c == BiRle8 && bpp == 8 && !m_h.topDown) || (c == BiRle4 && bpp == 4 && !m_h.topDown) ||
        ((c == BiBitfields || c == BiAlphaBitfields) && (bpp == 16 || bpp == 32));
    if (!valid) {
        m_failure.invalid(QStringLiteral("unsupported BMP compression or bit depth"));
        return false;
    }
    if (m_h.width <= 0 || m_h.height <= 0) {
        m_failure.invalid(QStringLiteral("the BMP has no pixels"));
        return false;
    }
    if (!WithinLimits(m_h.width, m_h.height, m_failure))
        return false;

    qint64 paletteStart = 14 + infoSize;
    if (c == BiBitfields || c == BiAlphaBitfields) {
        // Headers of 52 bytes and more hold the masks (from 56 bytes the alpha mask
        // too); a 40-byte header is followed by them.
        const int count = c == BiAlphaBitfields || infoSize >= 56 ? 4 : 3;
        const qint64 at = 14 + 40;
        if (infoSize == 40)
            paletteStart += 4 * count;
        if (!need(at, 4 * count))
            return false;
        for (int i = 0; i < count; ++i)
            m_h.masks[i] = u32(at + 4 * i);
        m_h.hasAlpha = m_h.masks[3] != 0;
    } else if (bpp == 16) {
        m_h.masks[0] = 0x7C00;
        m_h.masks[1] = 0x03E0;
        m_h.masks[2] = 0x001F;
    } else if (bpp == 32) {
        // The fourth byte of a plain 32-bit pixel is reserved, not alpha.
        m_h.masks[0] = 0xFF0000;
        m_h.masks[1] = 0x00FF00;
        m_h.masks[2] = 0x0000FF;
    }

    if (bpp <= 8) {
        qint64 entries = qint64(1) << bpp;
        if (colorsUsed > 0 && colorsUsed < entries)
            entries = colorsUsed;
        // Some writers store fewer entries and let the pixels start right after them.
        if (offBits > paletteStart && (offBits - paletteStart) / entrySize < entries)
            entries = (offBits - paletteStart) / entrySize;
        if (!need(paletteStart, entries * entrySize))
            return false;
        // Indices past the table show black.
        m_h.palette.fill(qRgb(0, 0, 0));
        for (qint64 i = 0; i < entries; ++i) {
            const uchar* e = m_d + paletteStart + i * entrySize;
            m_h.palette[size_t(i)] = qRgb(e[2], e[1], e[0]);
        }
        paletteStart += entries * entrySize;
    }
    // A missing or impossible offset means "right after the header and the table".
    m_h.pixelStart = offBits >= 14u + infoSize ? qint64(offBits) : paletteStart;
    return true;
}

void Reader::readUncompressed(QImage& image)
{
    const int width = int(m_h.width);
    const int bpp = m_h.bpp;
    const qint64 stride = (m_h.width * bpp + 31) / 32 * 4;
    for (int row = 0; row < image.height(); ++row) {
        const uchar* in = m_d + m_h.pixelStart + row * stride;
        auto* out = reinterpret_cast<QRgb*>(image.scanLine(m_h.topDown ? row : image.height() - 1 - row));
        if (bpp == 24) {
            for (int x = 0; x < width; ++x, in += 3)
                out[x] = qRgb(in[2], in[1], in[0]);
        } else {
            const int perByte = 8 / bpp;
            const int mask = (1 << bpp) - 1;
            for (int x = 0; x < width; ++x) {
                const int shift = 8 - bpp * (x % perByte + 1);
                out[x] = m_h.palette[size_t((in[x / perByte] >> shift) & mask)];
            }
        }
    }
}

void Reader::readBitfields(QImage& image)
{
    const int width = int(m_h.width);
    const int bytes = m_h.bpp / 8;
    const qint64 stride = (m_h.width * m_h.bpp + 31) / 32 * 4;
    const Channel red(m_h.masks[0]), green(m_h.masks[1]), blue(m_h.masks[2]), alpha(m_h.masks[3]);
    const bool plain =
        m_h.masks[0] == 0xFF0000 && m_h.masks[1] == 0xFF00 && m_h.masks[2] == 0xFF && bytes == 4;
    bool anyAlpha = false;
    for (int row = 0; row < image.height(); ++row) {
        const uchar* in = m_d + m_h.pixelStart + row * stride;
        auto* out = reinterpret_cast<QRgb*>(image.scanLine(m_h.topDown ? row : image.height() - 1 - row));
        for (int x = 0; x < width; ++x, in += bytes) {
            const quint32 p = bytes == 4 ? qFromLittleEndian<quint32>(in) : qFromLittleEndian<quint16>(in);
            const int a = m_h.hasAlpha ? alpha(p) : 255;
            anyAlpha |= a != 0;
            out[x] = plain ? qRgba(int(p >> 16) & 0xFF, int(p >> 8) & 0xFF, int(p) & 0xFF, a)
                           : qRgba(red(p), green(p), blue(p), a);
        }
    }
    // A file whose alpha is zero everywhere was written by a program that
    // didn't use the channel: show its colours.
    if (m_h.hasAlpha && !anyAlpha) {
        for (int y = 0; y < image.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < width; ++x)
                line[x] |= 0xFF000000u;
        }
        image = image.convertToFormat(QImage::Format_RGB32);
    }
}

// Runs, absolute runs, line ends and jumps. Pixels that the stream jumps over stay black.
bool Reader::readRle(QImage& image)
{
    const bool four = m_h.compression == BiRle4;
    const int width = image.width();
    const int height = image.height();
    image.fill(qRgb(0, 0, 0));
    qint64 at = m_h.pixelStart;
    qint64 x = 0;
    qint64 row = 0; // counted from the bottom
    auto put = [&](int index) {
        if (x < width && row < height)
            reinterpret_cast<QRgb*>(image.scanLine(int(height - 1 - row)))[x] = m_h.palette[size_t(index)];
        ++x;
    };
    while (row < height) {
        if (!need(at, 2))
            return false;
        const int count = m_d[at];
        const int value = m_d[at + 1];
        at += 2;
        if (count > 0) {
            const int n = int(qMin<qint64>(count, qMax<qint64>(0, width - x)));
            for (int i = 0; i < n; ++i)
                put(four ? (i % 2 ? value & 15 : value >> 4) : value);
            x += count - n;
        } else if (value == 0) {
            x = 0;
            ++row;
        } else if (value == 1) {
            break;
        } else if (value == 2) {
            if (!need(at, 2))
                return false;
            x += m_d[at];
            row += m_d[at + 1];
            at += 2;
        } else {
            const qint64 bytes = four ? (value + 1) / 2 : value;
            if (!need(at, bytes))
                return false;
            for (int i = 0; i < value && x < width; ++i)
                put(four ? (i % 2 ? m_d[at + i / 2] & 15 : m_d[at + i / 2] >> 4) : m_d[at + i]);
            at += bytes + (bytes & 1); // absolute runs end on a 16-bit boundary
        }
    }
    return true;
}

QImage Reader::read()
{
    if (!readHeader())
        return {};
    const bool rle = m_h.compression == BiRle8 || m_h.compression == BiRle4;
    if (!rle) {
        // Every row must be there; the last one may do without its padding.
        const qint64 stride = (m_h.width * m_h.bpp + 31) / 32 * 4;
        const qint64 needed = stride * (m_h.height - 1) + (m_h.width * m_h.bpp + 7) / 8;
        if (!need(m_h.pixelStart, needed))
            return {};
    }
    QImage image = NewPicture(m_h.width, m_h.height,
                              m_h.hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32, m_failure);
    if (image.isNull())
        return {};
    if (rle) {
        if (!readRle(image))
            return {};
    } else if (m_h.bpp == 16 || m_h.bpp == 32) {
        readBitfields(image);
    } else {
        readUncompressed(image);
    }
    return image;
}

} // namespace

QImage DecodeBMP(QByteArrayView data, LoadFailure& failure)
{
    return Reader(data, failure).read();
}

} // namespace velunta
