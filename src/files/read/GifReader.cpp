// The GIF decoder for the first picture of a file: the logical screen with the
// first image drawn on it. Qt's reader shows a file that ends half way as if it
// were whole; this one refuses it.

#include "files/read/Decoders.h"

#include <QCoreApplication>

#include <array>
#include <vector>

namespace velunta {

namespace {

constexpr int kMaxCodes = 4096;
// Pixel values reach 2047 with the largest minimum code size; those past the
// colour table show black.
using Palette = std::array<QRgb, 2048>;

enum class Lzw { Done, EndedEarly, CutShort, Damaged };

// Places decoded pixels on the canvas in the file's row order, dropping what
// lies outside it.
class Placer {
public:
    Placer(QImage& canvas, const Palette& palette, int left, int top, int width, int height, bool interlaced)
        : m_canvas(canvas), m_palette(palette), m_left(left), m_top(top), m_width(width), m_height(height),
          m_interlaced(interlaced)
    {
        m_visible = qBound(0, canvas.width() - left, width);
        startRow();
    }
    void operator()(int index)
    {
        if (m_x < m_visible && m_line)
            m_line[m_x] = m_palette[size_t(index)];
        if (++m_x == m_width) {
            m_x = 0;
            nextRow();
        }
    }

private:
    static constexpr int kStart[4] = {0, 4, 2, 1}, kStep[4] = {8, 8, 4, 2};

    void startRow()
    {
        const int y = m_top + m_row;
        m_line = m_row < m_height && y < m_canvas.height()
                     ? reinterpret_cast<QRgb*>(m_canvas.scanLine(y)) + m_left
                     : nullptr;
    }
    void nextRow()
    {
        if (!m_interlaced) {
            ++m_row;
        } else {
            m_row += kStep[m_pass];
            while (m_row >= m_height && m_pass < 3)
                m_row = kStart[++m_pass];
        }
        startRow();
    }

    QImage& m_canvas;
    const Palette& m_palette;
    int m_left, m_top, m_width, m_height;
    bool m_interlaced;
    int m_visible = 0;
    int m_x = 0;
    int m_row = 0;
    int m_pass = 0;
    QRgb* m_line = nullptr;
};

class Reader : FileBytes {
public:
    using FileBytes::FileBytes;
    QImage read();

private:
    bool readTable(int entries, Palette& table);
    bool skipSubBlocks();
    bool readControlExtension();
    QImage readPicture(int screenWidth, int screenHeight);
    // Next byte of the picture's data sub-blocks; -1 at the terminator, -2 past the file's end.
    int dataByte();
    // Decodes up to `total` pixels, handing each to `emit`; `placed` counts them.
    template <class Emit> Lzw decode(int minCodeSize, qint64 total, qint64& placed, Emit emit);

    qint64 m_at = 0;
    Palette m_global{};
    bool m_hasGlobal = false;
    int m_transparent = -1;
    int m_blockLeft = 0;
};

bool Reader::readTable(int entries, Palette& table)
{
    if (!need(m_at, 3 * entries))
        return false;
    table.fill(qRgb(0, 0, 0));
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

template <class Emit> Lzw Reader::decode(int minCodeSize, qint64 total, qint64& placed, Emit emit)
{
    std::array<quint16, kMaxCodes> prefix{}, suffix{}, first{};
    std::array<quint16, kMaxCodes + 1> stack{};
    const int clearCode = 1 << minCodeSize;
    const int endCode = clearCode + 1;
    for (int i = 0; i < clearCode; ++i)
        suffix[size_t(i)] = first[size_t(i)] = quint16(i);
    int codeSize = minCodeSize + 1;
    int next = clearCode + 2;
    int old = -1;
    quint32 bits = 0;
    int bitCount = 0;
    placed = 0;

    while (placed < total) {
        while (bitCount < codeSize) {
            const int b = dataByte();
            if (b == -2)
                return Lzw::CutShort;
            if (b == -1)
                return Lzw::EndedEarly;
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
            return Lzw::EndedEarly;
        int depth = 0;
        if (old < 0) {
            if (code > clearCode)
                return Lzw::Damaged;
            stack[size_t(depth++)] = quint16(code);
        } else {
            if (code > next)
                return Lzw::Damaged;
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
            stack[size_t(depth++)] = quint16(walk);
            if (next < kMaxCodes) {
                prefix[size_t(next)] = quint16(old);
                suffix[size_t(next)] = quint16(walk);
                first[size_t(next)] = first[size_t(old)];
                ++next;
                if (next == (1 << codeSize) && codeSize < 12)
                    ++codeSize;
            }
        }
        old = code;
        // The stack holds the string backwards.
        while (depth > 0 && placed < total) {
            emit(stack[size_t(--depth)]);
            ++placed;
        }
    }
    return Lzw::Done;
}

QImage Reader::readPicture(int screenWidth, int screenHeight)
{
    if (!need(m_at, 9))
        return {};
    const int left = u16(m_at), top = u16(m_at + 2), width = u16(m_at + 4), height = u16(m_at + 6);
    const int packed = m_d[m_at + 8];
    m_at += 9;
    Palette palette = m_global;
    if (packed & 0x80) {
        if (!readTable(2 << (packed & 7), palette))
            return {};
    } else if (!m_hasGlobal) {
        m_failure.invalid(QCoreApplication::translate("PictureFiles", "The GIF file has no colours."));
        return {};
    }
    if (!need(m_at, 1))
        return {};
    const int minCodeSize = m_d[m_at++];
    if (minCodeSize < 1 || minCodeSize > 11) {
        m_failure.invalid(
            QCoreApplication::translate("PictureFiles", "The GIF file's picture data is damaged."));
        return {};
    }

    // The picture is the logical screen, clipped to which the first image is
    // drawn; a file that states no screen is as large as its image reaches.
    const int canvasWidth = screenWidth ? screenWidth : left + width;
    const int canvasHeight = screenHeight ? screenHeight : top + height;
    const qint64 total = qint64(width) * height;
    const qint64 visible =
        qint64(qBound(0, canvasWidth - left, width)) * qBound(0, canvasHeight - top, height);

    // Decode once without pixels to prove the data before the canvas's memory is taken.
    const qint64 dataStart = m_at;
    qint64 placed = 0;
    const Lzw proof = decode(minCodeSize, total, placed, [](int) {});
    if (proof == Lzw::CutShort)
        m_failure.cutShort();
    else if (proof == Lzw::Damaged)
        m_failure.invalid(
            QCoreApplication::translate("PictureFiles", "The GIF file's picture data is damaged."));
    if (m_failure.failed() ||
        !DataCanFill(canvasWidth, canvasHeight, qMin(placed, visible), m_size, m_failure))
        return {};

    const bool covers = left == 0 && top == 0 && width >= canvasWidth && height >= canvasHeight;
    const bool alpha = m_transparent >= 0 || !covers;
    if (m_transparent >= 0)
        palette[size_t(m_transparent)] &= 0x00FFFFFFu;
    QImage canvas = NewPicture(canvasWidth, canvasHeight,
                               alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32, m_failure);
    if (canvas.isNull())
        return {};
    canvas.fill(alpha ? Qt::transparent : Qt::black);
    if (total > 0) {
        m_at = dataStart;
        m_blockLeft = 0;
        decode(minCodeSize, total, placed, Placer(canvas, palette, left, top, width, height, packed & 0x40));
    }
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
            m_failure.invalid(QCoreApplication::translate("PictureFiles", "The GIF file holds no picture."));
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
