#pragma once
// Row helpers shared by the writers: they read pixels as 0xAARRGGBB words, the
// layout of QImage::Format_RGB32, whatever format the caller's picture has.

#include <QImage>

namespace velunta {

// The picture itself when its rows already hold 0xAARRGGBB words, else one converted copy.
inline QImage Rgb32Pixels(const QImage& image)
{
    if (image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32)
        return image;
    return image.convertToFormat(QImage::Format_RGB32);
}

// One row of 0xAARRGGBB words as B G R bytes, the order of 24-bit DIB rows.
inline void PackBGR(const QRgb* in, int width, uchar* out)
{
    for (int x = 0; x < width; ++x, out += 3) {
        const QRgb p = in[x];
        out[0] = uchar(p);
        out[1] = uchar(p >> 8);
        out[2] = uchar(p >> 16);
    }
}

// Bytes of one 24-bit DIB row: three per pixel, rounded up to a multiple of four.
constexpr qint64 DibStride24(qint64 width)
{
    return (width * 3 + 3) & ~qint64(3);
}

} // namespace velunta
