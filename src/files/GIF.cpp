#include "files/GIF.h"

#include "files/PixelRows.h"
#include "files/SaveTarget.h"

#include <QCoreApplication>
#include <QtEndian>

namespace velunta {

namespace {

constexpr int kClearCode = 256;
constexpr int kEndCode = 257;
constexpr int kFirstFreeCode = 258;
constexpr int kCodeBits = 9;
// A row's dictionary is emptied when it holds this many entries. By then the
// decoder has taken codes up to 509; one more code makes it add 510, and the
// clear code that follows arrives before it would need code 512 and widen to
// 10 bits, which this writer never does.
constexpr int kEntriesBeforeReset = 253;
constexpr int kMaxSide = 65535;

constexpr int kLevels[5] = {0, 64, 128, 192, 255};

// Index of the nearest cube level of a channel value, times the channel's step.
struct ChannelTable {
    std::array<uchar, 256> index{};
    constexpr explicit ChannelTable(int step)
    {
        for (int v = 0; v < 256; ++v)
            index[v] = uchar(((v + 32) >> 6 < 4 ? (v + 32) >> 6 : 4) * step);
    }
};
constexpr ChannelTable kRed(1), kGreen(5), kBlue(25);

} // namespace

int GIF::CubeIndex(QRgb rgb)
{
    return kRed.index[qRed(rgb)] + kGreen.index[qGreen(rgb)] + kBlue.index[qBlue(rgb)];
}

Color GIF::CubeColor(int index)
{
    if (index < 0 || index >= 125)
        return 0;
    return RGB(kLevels[index % 5], kLevels[index / 5 % 5], kLevels[index / 25]);
}

bool GIF::SaveGIF(const QImage& image, const QString& fileName, bool useTransparency, Color transparentColor,
                  WriteFailure* failure, const ProgressFn& progress)
{
    SaveTarget target(fileName);
    if (Busy) {
        target.fail(QCoreApplication::translate("PictureFiles", "A GIF is being written already"));
        return target.report(failure);
    }
    if (image.isNull()) {
        target.fail(QCoreApplication::translate("PictureFiles", "The picture is empty"));
        return target.report(failure);
    }
    if (image.width() > kMaxSide || image.height() > kMaxSide) {
        target.fail(QCoreApplication::translate("PictureFiles",
                                                "A GIF picture can't be larger than 65535 x 65535 pixels"));
        return target.report(failure);
    }
    Busy = true;
    m_target = &target;

    // An 8-bit indexed picture keeps its own colours; anything else is matched to the cube.
    const bool indexed = image.format() == QImage::Format_Indexed8;
    const QImage pixels = indexed ? image : Rgb32Pixels(image);
    for (int i = 0; i < 256; ++i) {
        Color c = 0;
        if (!indexed)
            c = CubeColor(i);
        else if (i < image.colorCount())
            c = FromQRgb(image.color(i));
        Palette[3 * i] = uchar(ColorRed(c));
        Palette[3 * i + 1] = uchar(ColorGreen(c));
        Palette[3 * i + 2] = uchar(ColorBlue(c));
    }
    // Only an exact match makes an entry transparent; with none, entry 0 is.
    int transparentIndex = 0;
    for (int i = 0; i < 256; ++i) {
        if (RGB(Palette[3 * i], Palette[3 * i + 1], Palette[3 * i + 2]) == transparentColor) {
            transparentIndex = i;
            break;
        }
    }

    const bool encoded = target.open() &&
                         writeHeader(image.width(), image.height(), useTransparency, transparentIndex) &&
                         encodeRows(pixels, indexed, progress);
    if (encoded) {
        WriteBits(kEndCode, kCodeBits);
        if (m_bitCount > 0)
            putDataByte(uchar(m_bitBuffer));
        // The last block goes out with its count byte, then the block terminator and the trailer.
        static const uchar kTail[2] = {0x00, 0x3B};
        target.write(Block.data(), Block[0] + 1);
        target.write(kTail, 2);
        target.commit();
    }
    target.cancel();
    m_target = nullptr;
    Busy = false;
    return target.report(failure);
}

bool GIF::writeHeader(int width, int height, bool useTransparency, int transparentIndex)
{
    uchar head[13 + 768 + 8 + 11];
    uchar* at = head;
    const char* signature = useTransparency ? "GIF89a" : "GIF87a";
    at = std::copy(signature, signature + 6, at);
    qToLittleEndian<quint16>(quint16(width), at);
    qToLittleEndian<quint16>(quint16(height), at + 2);
    at += 4;
    *at++ = 0xF7; // global table of 256 entries, colour resolution 7, not sorted
    *at++ = 0;    // background index
    *at++ = 0;    // aspect ratio
    at = std::copy(Palette.begin(), Palette.end(), at);
    if (useTransparency) {
        // Graphic control extension: disposal 2, transparent flag, delay 0.
        const uchar gce[8] = {0x21, 0xF9, 0x04, 0x09, 0x00, 0x00, uchar(transparentIndex), 0x00};
        at = std::copy(gce, gce + 8, at);
    }
    *at++ = 0x2C;
    qToLittleEndian<quint16>(0, at);
    qToLittleEndian<quint16>(0, at + 2);
    qToLittleEndian<quint16>(quint16(width), at + 4);
    qToLittleEndian<quint16>(quint16(height), at + 6);
    at += 8;
    // Image packed field: no local table, not interlaced; the low bits say 7 all the same.
    *at++ = 0x07;
    *at++ = 8; // LZW minimum code size
    return m_target->write(head, at - head);
}

void GIF::putDataByte(uchar byte)
{
    // A full sub-block goes out only when the next byte needs room, so the last
    // block of the picture is written by the caller, whatever its count.
    if (Block[0] == 255) {
        m_target->write(Block.data(), 256);
        Block[0] = 0;
    }
    Block[++Block[0]] = byte;
}

void GIF::WriteBits(quint32 value, int bitCount)
{
    // Bits fill each byte from the lowest upwards.
    m_bitBuffer |= quint64(value) << m_bitCount;
    m_bitCount += bitCount;
    while (m_bitCount >= 8) {
        putDataByte(uchar(m_bitBuffer));
        m_bitBuffer >>= 8;
        m_bitCount -= 8;
    }
}

void GIF::ResetTable()
{
    for (int key : m_usedKeys)
        Codes[size_t(key)] = 0;
    m_usedKeys.clear();
    m_entries = 0;
    WriteBits(kClearCode, kCodeBits);
}

bool GIF::encodeRows(const QImage& image, bool indexed, const ProgressFn& progress)
{
    const int width = image.width();
    const int height = image.height();
    Codes.assign(512 * 256, 0);
    m_usedKeys.clear();
    m_usedKeys.reserve(kEntriesBeforeReset);
    Block[0] = 0;
    m_bitBuffer = 0;
    m_bitCount = 0;
    std::vector<uchar> cubeRow(indexed ? 0 : size_t(width));

    for (int y = 0; y < height; ++y) {
        const uchar* px = image.constScanLine(y);
        if (!indexed) {
            const auto* rgb = reinterpret_cast<const QRgb*>(px);
            for (int x = 0; x < width; ++x)
                cubeRow[size_t(x)] = uchar(CubeIndex(rgb[x]));
            px = cubeRow.data();
        }

        ResetTable();
        int prefixCode = px[0];
        if (width > 1) {
            // The row's first entry is keyed by the second pixel alone. No string
            // can ever match it, yet it takes code 258, which keeps the numbering
            // in step with a decoder (whose 258 is pixel 0 followed by pixel 1).
            m_entries = 1;
            WriteBits(quint32(prefixCode), kCodeBits);
            prefixCode = px[1];
        }
        for (int x = 2; x < width; ++x) {
            const int pixel = px[x];
            const int key = (prefixCode << 8) | pixel;
            if (const int code = Codes[size_t(key)]) {
                prefixCode = code;
                continue;
            }
            if (m_entries == kEntriesBeforeReset) {
                // The pending string goes out before the clear code, and the new
                // string starts at this pixel with no entry for it: a decoder adds
                // nothing for the first code after a clear, so the next entry here
                // is 258 on both sides.
                WriteBits(quint32(prefixCode), kCodeBits);
                ResetTable();
                prefixCode = pixel;
                continue;
            }
            Codes[size_t(key)] = quint16(kFirstFreeCode + m_entries);
            m_usedKeys.push_back(key);
            ++m_entries;
            WriteBits(quint32(prefixCode), kCodeBits);
            prefixCode = pixel;
        }
        WriteBits(quint32(prefixCode), kCodeBits);

        if ((y + 1) % 10 == 0 && progress && progress(double(y + 1) / height)) {
            m_target->fail(QStringLiteral("Cancelled"), WriteError::Cancelled);
            return false;
        }
        if (m_target->failed())
            return false;
    }
    return !m_target->failed();
}

} // namespace velunta
