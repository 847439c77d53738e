#include "support/PictureBytes.h"

#include <QtEndian>

namespace velunta::test {

namespace {

void put16(QByteArray& b, quint16 v)
{
    b.append(char(v & 0xFF)).append(char(v >> 8));
}

void put32(QByteArray& b, quint32 v)
{
    put16(b, quint16(v & 0xFFFF));
    put16(b, quint16(v >> 16));
}

void putBE32(QByteArray& b, quint32 v)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        b.append(char((v >> shift) & 0xFF));
}

quint32 crc32(const QByteArray& data)
{
    quint32 c = 0xFFFFFFFFu;
    for (const char ch : data) {
        c ^= uchar(ch);
        for (int k = 0; k < 8; ++k)
            c = (c >> 1) ^ (0xEDB88320u & (0u - (c & 1)));
    }
    return c ^ 0xFFFFFFFFu;
}

// Codes of varying width, least significant bit first, in sub-blocks of 255.
class CodeWriter {
public:
    void put(int code, int size)
    {
        m_bits |= quint64(code) << m_count;
        m_count += size;
        while (m_count >= 8) {
            m_bytes.append(char(m_bits & 0xFF));
            m_bits >>= 8;
            m_count -= 8;
        }
    }
    QByteArray blocks()
    {
        if (m_count > 0)
            m_bytes.append(char(m_bits & 0xFF));
        QByteArray out;
        for (qsizetype at = 0; at < m_bytes.size(); at += 255) {
            const QByteArray block = m_bytes.mid(at, 255);
            out.append(char(block.size())).append(block);
        }
        return out.append(char(0));
    }

private:
    QByteArray m_bytes;
    quint64 m_bits = 0;
    int m_count = 0;
};

} // namespace

QByteArray BmpFile(qint32 width, qint32 height, int headerSize, int bpp, int compression,
                   const QByteArray& palette, const QByteArray& pixels, qint64 offset, quint32 colorsUsed)
{
    QByteArray info;
    put32(info, quint32(headerSize));
    if (headerSize == 12) {
        put16(info, quint16(width));
        put16(info, quint16(height));
        put16(info, 1);
        put16(info, quint16(bpp));
    } else {
        put32(info, quint32(width));
        put32(info, quint32(height));
        put16(info, 1);
        put16(info, quint16(bpp));
        put32(info, quint32(compression));
        put32(info, quint32(pixels.size()));
        put32(info, 2835);
        put32(info, 2835);
        put32(info, colorsUsed);
        put32(info, 0);
        info.resize(headerSize, 0);
    }
    QByteArray file("BM");
    put32(file, quint32(14 + info.size() + palette.size() + pixels.size()));
    put32(file, 0);
    put32(file, quint32(offset >= 0 ? offset : 14 + info.size() + palette.size()));
    return file + info + palette + pixels;
}

QByteArray GifFile(const GifLayout& gif)
{
    QByteArray file("GIF89a");
    put16(file, quint16(gif.screenWidth));
    put16(file, quint16(gif.screenHeight));
    int bits = 0;
    while ((2 << bits) * 3 < gif.palette.size())
        ++bits;
    file.append(char(0x80 | bits)).append(char(0)).append(char(0));
    file.append(gif.palette).append(QByteArray((2 << bits) * 3 - gif.palette.size(), 0));
    file.append(char(0x2C));
    put16(file, quint16(gif.left));
    put16(file, quint16(gif.top));
    put16(file, quint16(gif.width));
    put16(file, quint16(gif.height));
    file.append(char(0)).append(char(gif.minCodeSize));

    const int clear = 1 << gif.minCodeSize;
    CodeWriter codes;
    int size = gif.minCodeSize + 1;
    int next = clear + 2;
    bool fresh = true;
    codes.put(clear, size);
    for (qsizetype i = 0; i < gif.pixels.size(); ++i) {
        if (i % 300 == 299) {
            codes.put(clear, size);
            size = gif.minCodeSize + 1;
            next = clear + 2;
            fresh = true;
        }
        codes.put(uchar(gif.pixels[i]), size);
        // The decoder defines a code after every literal but the first after a clear.
        if (!fresh && next < 4096 && ++next == (1 << size) && size < 12)
            ++size;
        fresh = false;
    }
    codes.put(clear + 1, size);
    return file + codes.blocks() + ';';
}

QByteArray PngChunk(const char* type, const QByteArray& data)
{
    QByteArray chunk;
    putBE32(chunk, quint32(data.size()));
    const QByteArray body = QByteArray(type) + data;
    chunk.append(body);
    putBE32(chunk, crc32(body));
    return chunk;
}

QByteArray PngFile(int width, int height, int depth, int colorType, const QList<QByteArray>& rows,
                   const QByteArray& chunksBeforeData, bool interlaced)
{
    QByteArray header;
    putBE32(header, quint32(width));
    putBE32(header, quint32(height));
    header.append(char(depth))
        .append(char(colorType))
        .append(char(0))
        .append(char(0))
        .append(char(interlaced));
    QByteArray raw;
    for (const QByteArray& row : rows)
        raw.append(char(0)).append(row);
    const QByteArray zlib = qCompress(raw).mid(4); // qCompress puts the length before the zlib stream
    return QByteArray("\x89PNG\r\n\x1A\n") + PngChunk("IHDR", header) + chunksBeforeData +
           PngChunk("IDAT", zlib) + PngChunk("IEND", {});
}

QByteArray IconFile(int type, const QList<IconEntry>& entries)
{
    QByteArray file;
    put16(file, 0);
    put16(file, quint16(type));
    put16(file, quint16(entries.size()));
    quint32 offset = quint32(6 + 16 * entries.size());
    QByteArray data;
    for (const IconEntry& e : entries) {
        file.append(char(e.width & 0xFF)).append(char(e.height & 0xFF)).append(char(0)).append(char(0));
        put16(file, 1);
        put16(file, quint16(e.depth));
        put32(file, quint32(e.data.size()));
        put32(file, offset);
        offset += quint32(e.data.size());
        data.append(e.data);
    }
    return file + data;
}

} // namespace velunta::test
