#include "files/JpegWriter.h"

#include "files/JpegErrors.h"
#include "files/PixelRows.h"
#include "files/SaveTarget.h"

#include <QCoreApplication>

#include <memory>

namespace velunta {

namespace {

constexpr int kMaxJpegSide = 65500;

// Hands libjpeg's output to the save target a buffer at a time.
struct Destination {
    jpeg_destination_mgr pub;
    SaveTarget* target;
    JOCTET buffer[64 * 1024];
};

void startDestination(j_compress_ptr cinfo)
{
    auto* dest = reinterpret_cast<Destination*>(cinfo->dest);
    dest->pub.next_output_byte = dest->buffer;
    dest->pub.free_in_buffer = sizeof dest->buffer;
}

void putOut(j_compress_ptr cinfo, size_t bytes)
{
    auto* dest = reinterpret_cast<Destination*>(cinfo->dest);
    if (!dest->target->write(dest->buffer, qsizetype(bytes))) {
        cinfo->err->msg_code = JERR_FILE_WRITE;
        (*cinfo->err->error_exit)(reinterpret_cast<j_common_ptr>(cinfo));
    }
}

boolean emptyDestination(j_compress_ptr cinfo)
{
    auto* dest = reinterpret_cast<Destination*>(cinfo->dest);
    putOut(cinfo, sizeof dest->buffer);
    startDestination(cinfo);
    return TRUE;
}

void finishDestination(j_compress_ptr cinfo)
{
    auto* dest = reinterpret_cast<Destination*>(cinfo->dest);
    putOut(cinfo, sizeof dest->buffer - dest->pub.free_in_buffer);
}

// Where the rows of the picture lie: the first scan line of the file at `top`, each
// following one `step` bytes on (a negative step for bottom-up memory).
struct RowSource {
    const uchar* top;
    qsizetype step;
    int width;
    int height;
    J_COLOR_SPACE colorSpace;
    int components;
};

// The libjpeg calls, between a setjmp and the library only: no C++ objects here.
// libjpeg-turbo takes the rows as they lie in memory, so the picture is never copied
// or converted as a whole; the library converts each batch of rows as it asks for it.
bool compress(jpeg_compress_struct& cinfo, JpegErrors& errors, Destination& dest, const RowSource& source,
              int quality)
{
    if (setjmp(errors.jump))
        return false;
    jpeg_create_compress(&cinfo);
    cinfo.dest = &dest.pub;
    cinfo.image_width = JDIMENSION(source.width);
    cinfo.image_height = JDIMENSION(source.height);
    cinfo.input_components = source.components;
    cinfo.in_color_space = source.colorSpace;
    jpeg_set_defaults(&cinfo);
    jpeg_set_quality(&cinfo, quality, TRUE);
    jpeg_start_compress(&cinfo, TRUE);

    const JDIMENSION height = cinfo.image_height;
    JSAMPROW rows[16];
    while (cinfo.next_scanline < height) {
        JDIMENSION n = 0;
        for (; n < 16 && cinfo.next_scanline + n < height; ++n)
            rows[n] = const_cast<JSAMPLE*>(source.top + qsizetype(cinfo.next_scanline + n) * source.step);
        jpeg_write_scanlines(&cinfo, rows, n);
    }
    jpeg_finish_compress(&cinfo);
    return true;
}

bool writeJpeg(const RowSource& source, const QString& fileName, int quality, WriteFailure* failure)
{
    SaveTarget target(fileName);
    if (!source.top || source.width <= 0 || source.height <= 0) {
        target.fail(QCoreApplication::translate("PictureFiles", "The picture is empty"));
        return target.report(failure);
    }
    if (source.width > kMaxJpegSide || source.height > kMaxJpegSide) {
        target.fail(QCoreApplication::translate("PictureFiles",
                                                "A JPEG picture can't be larger than 65500 x 65500 pixels"));
        return target.report(failure);
    }
    if (quality <= 0)
        quality = 90;
    quality = qMin(quality, 100);
    if (!target.open())
        return target.report(failure);

    auto dest = std::make_unique<Destination>();
    dest->pub.init_destination = startDestination;
    dest->pub.empty_output_buffer = emptyDestination;
    dest->pub.term_destination = finishDestination;
    dest->target = &target;
    jpeg_compress_struct cinfo{};
    JpegErrors errors;
    errors.attach(reinterpret_cast<j_common_ptr>(&cinfo));
    const bool written = compress(cinfo, errors, *dest, source, quality);
    jpeg_destroy_compress(&cinfo);
    if (!written)
        target.fail(errors.text()); // a write failure keeps the system's reason, recorded first
    else
        target.commit();
    return target.report(failure);
}

} // namespace

bool SaveJPG(const cDIBSection& dib, const QString& fileName, int quality, WriteFailure* failure)
{
    // The first scan line of the file is the last row in memory; libjpeg-turbo takes
    // B G R samples as they lie in the section.
    const qsizetype stride = dib.BytesPerScanLine();
    const uchar* bits = dib.DIBSectionBitsPtr();
    const RowSource source{bits ? bits + qsizetype(dib.Height() - 1) * stride : nullptr,
                           -stride,
                           dib.Width(),
                           dib.Height(),
                           JCS_EXT_BGR,
                           3};
    return writeJpeg(source, fileName, quality, failure);
}

bool SaveJPG(const QImage& picture, const QString& fileName, int quality, WriteFailure* failure)
{
    const QImage pixels = picture.isNull() ? picture : Rgb32Pixels(picture);
    // A 0xAARRGGBB word lies in memory as B G R A on a little-endian machine.
    const RowSource source{pixels.isNull() ? nullptr : pixels.constBits(),
                           pixels.bytesPerLine(),
                           pixels.width(),
                           pixels.height(),
                           Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRX : JCS_EXT_XRGB,
                           4};
    return writeJpeg(source, fileName, quality, failure);
}

} // namespace velunta
