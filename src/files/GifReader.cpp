// The GIF decoder for the first picture of a file. Qt's reader shows a file that
// ends half way as if it were whole; this one refuses it.

#include "files/Decoders.h"

#include <array>
#include <vector>

namespace velunta {

namespace {

constexpr int kMaxCodes = 4096;

class Reader : FileBytes {
public:
    using FileBytes::FileBytes;
    QImage read();

private:
    bool readTable(int entries, std::array<QRgb, 256>& table);
    bool skipSubBlocks();
    bool readControlExtension();
    QImage readPicture(int screenWidth, int screenHeight);
    // Next byte of the picture's data sub-blocks; -1 at the terminator, -2 past the file's end.
    int dataByte();
    bool decode(int minCodeSize, const std::array<QRgb, 256>& palette, QImage& canvas, int left, int top,
                int width, int height, bool interlaced);

    qint64 m_at = 0;
    std::array<QRgb, 256> m_global{};
    bool m_hasGlobal = false;
    int m_transparent = -1;
    int m_blockLeft = 0;
};

bool Reader::readTable(int entries, std::array<QRgb, 256>& table)
{
    if (!need(m_at, 3 * entries))
        return false;
    table.fill(qRgb(0, 0, 0)); // indices past the table show black
    for (int i = 0; i < entries; ++i, m_at += 3)
        table[size_t(i)] = qRgb(m_d[m_at], m_d[m_at + 1], m_d[m_at + 2]);
    return true;
}

bool Reader::skipSubBlocks()
{
    for (;;) {
        if (!need(m_at, 1))
            return false;
        const int n = m_d[m_at++];
        if (n == 0)
            return true;
        if (!need(m_at, n))
            return false;
        m_at += n;
    }
}

bool Reader::readControlExtension()
{
    if (has(m_at, 5) && m_d[m_at] >= 4)
        m_transparent = (m_d[m_at + 1] & 1) ? m_d[m_at + 4] : -1;
    return skipSubBlocks();
}

int Reader::dataByte()
{
    while (m_blockLeft == 0) {
        if (!has(m_at, 1))
            return -2;
        m_blockLeft = m_d[m_at++];
        if (m_blockLeft == 0)
            return -1;
    }
    if (!has(m_at, 1))
        return -2;
    --m_blockLeft;
    return m_d[m_at++];
}

bool Reader::decode(int minCodeSize, const std::array<QRgb, 256>& palette, QImage& canvas, int left, int top,
                    int width, int height, bool interlaced)
{
    // Rows in the order the file stores them.
    std::vector<int> rows;
    rows.reserve(size_t(height));
    if (interlaced) {
        static constexpr int kStart[4] = {0, 4, 2, 1}, kStep[4] = {8, 8, 4, 2};
        for (int pass = 0; pass < 4; ++pass)
            for (int y = kStart[pass]; y < height; y += kStep[pass])
                rows.push_back(y);
    } else {
        for (int y = 0; y < height; ++y)
            rows.push_back(y);
    }

    std::vector<quint16> prefix(kMaxCodes);
    std::vector<uchar> suffix(kMaxCodes), first(kMaxCodes);
    std::vector<uchar> stack(kMaxCodes);
    const int clearCode = 1 << minCodeSize;
    const int endCode = clearCode + 1;
    for (int i = 0; i < clearCode; ++i)
        suffix[size_t(i)] = first[size_t(i)] = uchar(i);
    int codeSize = minCodeSize + 1;
    int next = clearCode + 2;
    int old = -1;

    qint64 placed = 0;
    const qint64 total = qint64(width) * height;
    int x = 0, row = 0;
    QRgb* line = reinterpret_cast<QRgb*>(canvas.scanLine(top + rows[0])) + left;
    quint32 bits = 0;
    int bitCount = 0;

    while (placed < total) {
        while (bitCount < codeSize) {
            const int b = dataByte();
            if (b == -2) {
                m_failure.cutShort();
                return false;
            }
            if (b == -1)
                return true; // data ended early: the rest stays background
            bits |= quint32(b) << bitCount;
            bitCount += 8;
        }
        const int code = int(bits & ((1u << codeSize) - 1));
        bits >>= codeSize;
        bitCount -= codeSize;

        if (code == clearCode) {
            codeSize = minCodeSize + 1;
            next = clearCode + 2;
            old = -1;
            continue;
        }
        if (code == endCode)
            break;
        int depth = 0;
        if (old < 0) {
            if (code > clearCode) {
                m_failure.invalid(QStringLiteral("damaged GIF data"));
                return false;
            }
            stack[size_t(depth++)] = uchar(code);
        } else {
            if (code > next) {
                m_failure.invalid(QStringLiteral("damaged GIF data"));
                return false;
            }
            // The code just being defined is the previous string and its own first pixel.
            int walk = code;
            if (code == next) {
                stack[size_t(depth++)] = first[size_t(old)];
                walk = old;
            }
            while (walk >= clearCode) {
                stack[size_t(depth++)] = suffix[size_t(walk)];
                walk = prefix[size_t(walk)];
            }
            stack[size_t(depth++)] = uchar(walk);
            if (next < kMaxCodes) {
                prefix[size_t(next)] = quint16(old);
                suffix[size_t(next)] = uchar(walk);
                first[size_t(next)] = first[size_t(old)];
                ++next;
                if (next == (1 << codeSize) && codeSize < 12)
                    ++codeSize;
            }
        }
        old = code;
        // The stack holds the string backwards.
        while (depth > 0 && placed < total) {
            line[x] = palette[stack[size_t(--depth)]];
            ++placed;
            if (++x == width && placed < total) {
                x = 0;
                line = reinterpret_cast<QRgb*>(canvas.scanLine(top + rows[size_t(++row)])) + left;
            }
        }
    }
    return true;
}

QImage Reader::readPicture(int screenWidth, int screenHeight)
{
    if (!need(m_at, 9))
        return {};
    const int left = u16(m_at), top = u16(m_at + 2), width = u16(m_at + 4), height = u16(m_at + 6);
    const int packed = m_d[m_at + 8];
    m_at += 9;
    std::array<QRgb, 256> palette = m_global;
    if (packed & 0x80) {
        if (!readTable(2 << (packed & 7), palette))
            return {};
    } else if (!m_hasGlobal) {
        m_failure.invalid(QStringLiteral("the GIF has no colours"));
        return {};
    }
    if (width == 0 || height == 0) {
        m_failure.invalid(QStringLiteral("the GIF picture has no pixels"));
        return {};
    }
    if (!need(m_at, 1))
        return {};
    const int minCodeSize = m_d[m_at++];
    if (minCodeSize < 1 || minCodeSize > 8) {
        m_failure.invalid(QStringLiteral("damaged GIF data"));
        return {};
    }

    // The picture is the logical screen, grown where the first picture lies outside it.
    const int canvasWidth = qMax(screenWidth, left + width);
    const int canvasHeight = qMax(screenHeight, top + height);
    const bool covers = left == 0 && top == 0 && width == canvasWidth && height == canvasHeight;
    const bool alpha = m_transparent >= 0 || !covers;
    if (m_transparent >= 0)
        palette[size_t(m_transparent)] &= 0x00FFFFFFu;
    QImage canvas = NewPicture(canvasWidth, canvasHeight,
                               alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32, m_failure);
    if (canvas.isNull())
        return {};
    canvas.fill(alpha ? Qt::transparent : Qt::black);
    if (!decode(minCodeSize, palette, canvas, left, top, width, height, packed & 0x40))
        return {};
    return canvas;
}

QImage Reader::read()
{
    if (!need(m_at, 13))
        return {};
    const int screenWidth = u16(6), screenHeight = u16(8);
    const int packed = m_d[10];
    m_at = 13;
    if (packed & 0x80) {
        if (!readTable(2 << (packed & 7), m_global))
            return {};
        m_hasGlobal = true;
    }
    for (;;) {
        if (!need(m_at, 1))
            return {};
        const int introducer = m_d[m_at++];
        if (introducer == 0x2C)
            return readPicture(screenWidth, screenHeight);
        if (introducer != 0x21) {
            m_failure.invalid(QStringLiteral("the GIF holds no picture"));
            return {};
        }
        if (!need(m_at, 1))
            return {};
        const int label = m_d[m_at++];
        if (!(label == 0xF9 ? readControlExtension() : skipSubBlocks()))
            return {};
    }
}

} // namespace

QImage DecodeGIF(QByteArrayView data, LoadFailure& failure)
{
    return Reader(data, failure).read();
}

} // namespace velunta
