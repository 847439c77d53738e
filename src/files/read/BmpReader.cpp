// The BMP decoder: Windows and OS/2 headers, 1 to 32 bits, RLE4, RLE8, bit
// fields, top-down rows, JPEG or PNG inside, and the same pixels without the file
// header (a packed DIB, as the clipboard holds one) or with a transparency mask
// after them (the pictures of icons and cursors). Qt's reader shows a file that is
// cut short as if it were whole, so the program reads BMP itself and can tell.

#include "files/read/Decoders.h"

#include <QCoreApplication>

#include <array>
#include <bit>

namespace velunta {

namespace {

enum Compression : quint32 {
    BiRgb = 0,
    BiRle8 = 1,
    BiRle4 = 2,
    BiBitfields = 3,
    BiJpeg = 4,
    BiPng = 5,
    BiAlphaBitfields = 6,
};

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

// Where the parts of the bitmap lie in the data.
struct Layout {
    qint64 infoAt = 14;
    qint64 statedOffset = -1; // the file header's pixel offset; -1 without a file header
    bool icon = false;
};

struct Header {
    qint64 width = 0;
    qint64 height = 0;
    bool topDown = false;
    int bpp = 0;
    quint32 compression = BiRgb;
    qint64 sizeImage = 0;
    quint32 masks[4] = {};
    bool hasAlpha = false;
    std::array<QRgb, 256> palette{};
    qint64 pixelStart = 0;
};

class Reader : FileBytes {
public:
    Reader(QByteArrayView data, LoadFailure& failure, Layout layout)
        : FileBytes(data, failure), m_layout(layout)
    {
    }
    QImage read();

private:
    bool readHeader();
    bool readPalette(qint64 headersEnd, quint32 colorsUsed, int entrySize);
    qint64 stride() const { return (m_h.width * m_h.bpp + 31) / 32 * 4; }
    QRgb* outputRow(QImage& image, qint64 row) const
    {
        return reinterpret_cast<QRgb*>(image.scanLine(int(m_h.topDown ? row : m_h.height - 1 - row)));
    }
    void readUncompressed(QImage& image);
    void readBitfields(QImage& image);
    template <class Put> bool walkRle(Put put);
    QImage readRle();
    QImage readEmbedded();
    void applyMask(QImage& image);

    Layout m_layout;
    Header m_h;
};

bool Reader::readHeader()
{
    const qint64 info = m_layout.infoAt;
    if (!need(info, 16))
        return false;
    const quint32 infoSize = u32(info);
    if (infoSize < 12 || infoSize > 1024) {
        m_failure.invalid(
            QCoreApplication::translate("PictureFiles", "This BMP file's header is of an unknown kind."));
        return false;
    }
    if (!need(info, infoSize))
        return false;
    int entrySize = 4;
    quint32 colorsUsed = 0;
    // OS/2 2.x headers run from 16 to 64 bytes; their compression 3 is Huffman and 4 is RLE24.
    const bool os2 = infoSize < 40 || infoSize == 64;
    if (infoSize == 12) {
        m_h.width = u16(info + 4);
        m_h.height = u16(info + 6);
        m_h.bpp = u16(info + 10);
        entrySize = 3;
    } else {
        m_h.width = qint32(u32(info + 4));
        m_h.height = qint32(u32(info + 8));
        m_h.bpp = u16(info + 14);
        m_h.compression = infoSize >= 20 ? u32(info + 16) : BiRgb;
        m_h.sizeImage = infoSize >= 24 ? u32(info + 20) : 0;
        colorsUsed = infoSize >= 36 ? u32(info + 32) : 0;
    }
    if (m_h.height < 0) {
        m_h.topDown = true;
        m_h.height = -m_h.height;
    }
    if (m_layout.icon)
        m_h.height /= 2; // the colour rows and the mask rows

    const int bpp = m_h.bpp;
    const quint32 c = m_h.compression;
    if (os2 && c != BiRgb && c != BiRle8 && c != BiRle4) {
        m_failure.invalid(QCoreApplication::translate(
            "PictureFiles", "This BMP file uses OS/2 compression, which Velunta doesn't read."));
        return false;
    }
    const bool valid = (c == BiRgb && (bpp == 1 || bpp == 2 || bpp == 4 || bpp == 8 || bpp == 16 ||
                                       bpp == 24 || bpp == 32)) ||
                       (c == BiRle8 && bpp == 8) || (c == BiRle4 && bpp == 4) ||
                       ((c == BiBitfields || c == BiAlphaBitfields) && (bpp == 16 || bpp == 32)) ||
                       ((c == BiJpeg || c == BiPng) && !m_layout.icon);
    if (!valid) {
        m_failure.invalid(QCoreApplication::translate(
                              "PictureFiles", "This BMP file stores its pixels in a way Velunta doesn't read "
                                              "(%1 bits a pixel, compression %2).")
                              .arg(bpp)
                              .arg(c));
        return false;
    }
    if (m_h.width <= 0 || m_h.height <= 0) {
        m_failure.invalid(QCoreApplication::translate("PictureFiles", "The picture has no pixels."));
        return false;
    }
    if (!WithinLimits(m_h.width, m_h.height, m_failure))
        return false;

    qint64 headersEnd = info + infoSize;
    if (c == BiBitfields || c == BiAlphaBitfields) {
        // Headers of 52 bytes and more hold the masks (from 56 bytes the alpha mask
        // too); a 40-byte header is followed by them.
        const int count = c == BiAlphaBitfields || infoSize >= 56 ? 4 : 3;
        const qint64 at = info + 40;
        if (infoSize == 40)
            headersEnd += 4 * count;
        if (!need(at, 4 * count))
            return false;
        for (int i = 0; i < count; ++i)
            m_h.masks[i] = u32(at + 4 * i);
    } else if (bpp == 16) {
        m_h.masks[0] = 0x7C00;
        m_h.masks[1] = 0x03E0;
        m_h.masks[2] = 0x001F;
    } else if (bpp == 32) {
        // The fourth byte of a plain 32-bit pixel is reserved, except in icons, where it is alpha.
        m_h.masks[0] = 0xFF0000;
        m_h.masks[1] = 0x00FF00;
        m_h.masks[2] = 0x0000FF;
        m_h.masks[3] = m_layout.icon ? 0xFF000000 : 0;
    }
    m_h.hasAlpha = m_h.masks[3] != 0;
    return readPalette(headersEnd, colorsUsed, entrySize);
}

// The colour table and, from its end, where the pixels start.
bool Reader::readPalette(qint64 headersEnd, quint32 colorsUsed, int entrySize)
{
    const int bpp = m_h.bpp;
    // A count above what the depth can index says nothing, like a count of 0: the
    // table then holds as many entries as the depth can index, or as many as fit
    // before the stated pixel offset. Pictures of more bits may carry a table too,
    // which only moves their pixels.
    const bool indexed = bpp >= 1 && bpp <= 8;
    const qint64 most = indexed ? qint64(1) << bpp : bpp > 8 ? 256 : 0;
    const bool counted = colorsUsed > 0 && colorsUsed <= most;
    qint64 entries = counted ? qint64(colorsUsed) : indexed ? most : 0;
    const qint64 stated = m_layout.statedOffset;
    if (!counted && stated >= headersEnd && stated < headersEnd + entries * entrySize) {
        // Some writers store fewer entries than the depth allows and let the pixels
        // start right after them.
        entries = (stated - headersEnd) / entrySize;
    }
    if (indexed) {
        if (!need(headersEnd, entries * entrySize))
            return false;
        m_h.palette.fill(qRgb(0, 0, 0)); // indices past the table show black
        for (qint64 i = 0; i < entries; ++i) {
            const uchar* e = m_d + headersEnd + i * entrySize;
            m_h.palette[size_t(i)] = qRgb(e[2], e[1], e[0]);
        }
    }
    // An offset into the headers or into a table of stated size is impossible:
    // the pixels then follow the table, as in every file whose offset is right.
    const qint64 computed = headersEnd + entries * entrySize;
    m_h.pixelStart = stated >= computed ? stated : computed;
    return true;
}

void Reader::readUncompressed(QImage& image)
{
    const int width = int(m_h.width);
    const int bpp = m_h.bpp;
    for (qint64 row = 0; row < m_h.height; ++row) {
        const uchar* in = m_d + m_h.pixelStart + row * stride();
        QRgb* out = outputRow(image, row);
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
    const Channel red(m_h.masks[0]), green(m_h.masks[1]), blue(m_h.masks[2]), alpha(m_h.masks[3]);
    const bool plain =
        m_h.masks[0] == 0xFF0000 && m_h.masks[1] == 0xFF00 && m_h.masks[2] == 0xFF && bytes == 4;
    bool anyAlpha = false;
    for (qint64 row = 0; row < m_h.height; ++row) {
        const uchar* in = m_d + m_h.pixelStart + row * stride();
        QRgb* out = outputRow(image, row);
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
        m_h.hasAlpha = false;
    }
}

// The run-length stream: runs, absolute runs, line ends, jumps and the end of the
// picture. `put(x, row, index)` hears every pixel that lands inside the picture;
// pixels of a run or a jump past the end of a row are dropped up to the next line
// end, and a jump past the last row ends the picture. What nothing is written to
// stays background. False when the data ends before the picture does.
template <class Put> bool Reader::walkRle(Put put)
{
    const bool four = m_h.compression == BiRle4;
    const qint64 width = m_h.width;
    const qint64 height = m_h.height;
    qint64 at = m_h.pixelStart;
    qint64 x = 0;
    qint64 row = 0; // in the order the rows are stored
    const auto emit = [&](int index) {
        if (x < width)
            put(x, row, index);
        ++x;
    };
    while (row < height) {
        if (!has(at, 2)) // a last row that is complete needs no end code
            return row == height - 1 && x >= width;
        const int count = m_d[at];
        const int value = m_d[at + 1];
        at += 2;
        if (count > 0) {
            const int n = int(qBound(qint64(0), width - x, qint64(count)));
            for (int i = 0; i < n; ++i)
                emit(four ? (i % 2 ? value & 15 : value >> 4) : value);
            x += count - n;
        } else if (value == 0) {
            x = 0;
            ++row;
        } else if (value == 1) {
            return true;
        } else if (value == 2) {
            if (!has(at, 2))
                return false;
            x += m_d[at];
            row += m_d[at + 1];
            at += 2;
        } else {
            const qint64 bytes = four ? (value + 1) / 2 : value;
            if (!has(at, bytes))
                return false;
            const int n = int(qBound(qint64(0), width - x, qint64(value)));
            for (int i = 0; i < n; ++i)
                emit(four ? (i % 2 ? m_d[at + i / 2] & 15 : m_d[at + i / 2] >> 4) : m_d[at + i]);
            x += value - n;
            at += bytes + (bytes & 1); // absolute runs end on a 16-bit boundary
        }
    }
    return true;
}

// The stream is walked once to prove it before the picture's memory is taken.
QImage Reader::readRle()
{
    qint64 written = 0;
    if (!walkRle([&](qint64, qint64, int) { ++written; })) {
        m_failure.cutShort();
        return {};
    }
    if (!DataCanFill(m_h.width, m_h.height, written, m_size, m_failure))
        return {};
    QImage image = NewPicture(m_h.width, m_h.height, QImage::Format_RGB32, m_failure);
    if (image.isNull())
        return {};
    image.fill(qRgb(0, 0, 0));
    walkRle([&](qint64 x, qint64 row, int index) { outputRow(image, row)[x] = m_h.palette[size_t(index)]; });
    return image;
}

// A JPEG or PNG file in place of the pixels, as printers take them.
QImage Reader::readEmbedded()
{
    const qint64 end = m_h.sizeImage > 0 ? qMin(m_size, m_h.pixelStart + m_h.sizeImage) : m_size;
    if (!need(m_h.pixelStart, 1))
        return {};
    const auto inner = QByteArrayView(m_d + m_h.pixelStart, end - m_h.pixelStart);
    return m_h.compression == BiJpeg ? DecodeJPEG(inner, m_failure) : DecodePNG(inner, m_failure);
}

// An icon's mask: one bit a pixel, set where the picture is transparent. A
// picture with an alpha channel of its own keeps it; a mask missing from the end
// of the file leaves the picture opaque.
void Reader::applyMask(QImage& image)
{
    const qint64 maskStart = m_h.pixelStart + stride() * m_h.height;
    const qint64 maskStride = (m_h.width + 31) / 32 * 4;
    if (m_h.hasAlpha || !has(maskStart, maskStride * m_h.height))
        return;
    image = image.convertToFormat(QImage::Format_ARGB32);
    for (qint64 row = 0; row < m_h.height; ++row) {
        const uchar* in = m_d + maskStart + row * maskStride;
        QRgb* out = outputRow(image, row);
        for (qint64 x = 0; x < m_h.width; ++x)
            if (in[x / 8] & (0x80 >> (x % 8)))
                out[x] &= 0x00FFFFFFu;
    }
}

QImage Reader::read()
{
    if (!readHeader())
        return {};
    if (m_h.compression == BiJpeg || m_h.compression == BiPng)
        return readEmbedded();
    if (m_h.compression == BiRle8 || m_h.compression == BiRle4)
        return readRle();
    // Every row must be there; the last one may do without its padding.
    const qint64 needed = stride() * (m_h.height - 1) + (m_h.width * m_h.bpp + 7) / 8;
    if (!need(m_h.pixelStart, needed))
        return {};
    QImage image = NewPicture(m_h.width, m_h.height,
                              m_h.hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32, m_failure);
    if (image.isNull())
        return {};
    if (m_h.bpp == 16 || m_h.bpp == 32)
        readBitfields(image);
    else
        readUncompressed(image);
    if (!m_h.hasAlpha && image.format() == QImage::Format_ARGB32)
        image.reinterpretAsFormat(QImage::Format_RGB32);
    if (m_layout.icon)
        applyMask(image);
    return image;
}

} // namespace

QImage DecodeBMP(QByteArrayView data, LoadFailure& failure)
{
    const qint64 stated = data.size() >= 14 ? qFromLittleEndian<quint32>(data.data() + 10) : 0;
    return Reader(data, failure, Layout{14, stated, false}).read();
}

QImage DecodeDIB(QByteArrayView data, LoadFailure& failure)
{
    return Reader(data, failure, Layout{0, -1, false}).read();
}

QImage DecodeIconDIB(QByteArrayView data, LoadFailure& failure)
{
    return Reader(data, failure, Layout{0, -1, true}).read();
}

} // namespace velunta
