#include "files/JpegWriter.h"

#include "files/JpegErrors.h"
#include "files/SaveTarget.h"

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

// The libjpeg calls, between a setjmp and the library only: no C++ objects here.
bool compress(jpeg_compress_struct& cinfo, JpegErrors& errors, Destination& dest, const cDIBSection& dib,
              int quality)
{
    if (setjmp(errors.jump))
        return false;
    jpeg_create_compress(&cinfo);
    cinfo.dest = &dest.pub;
    cinfo.image_width = JDIMENSION(dib.Width());
    cinfo.image_height = JDIMENSION(dib.Height());
    cinfo.input_components = 3;
    // libjpeg-turbo takes B G R samples as they lie in the section.
    cinfo.in_color_space = JCS_EXT_BGR;
    jpeg_set_defaults(&cinfo);
    jpeg_set_quality(&cinfo, quality, TRUE);
    jpeg_start_compress(&cinfo, TRUE);

    const JDIMENSION height = cinfo.image_height;
    const size_t stride = size_t(dib.BytesPerScanLine());
    auto* bottomRow = const_cast<JSAMPLE*>(dib.DIBSectionBitsPtr());
    JSAMPROW rows[16];
    while (cinfo.next_scanline < height) {
        // The first scan line of the file is the last row in memory.
        JDIMENSION n = 0;
        for (; n < 16 && cinfo.next_scanline + n < height; ++n)
            rows[n] = bottomRow + (height - 1 - (cinfo.next_scanline + n)) * stride;
        jpeg_write_scanlines(&cinfo, rows, n);
    }
    jpeg_finish_compress(&cinfo);
    return true;
}

} // namespace

bool SaveJPG(const cDIBSection& dib, const QString& fileName, int quality, WriteFailure* failure)
{
    SaveTarget target(fileName);
    if (!dib.DIBSectionBitsPtr() || dib.Width() <= 0 || dib.Height() <= 0) {
        target.fail(QStringLiteral("The picture is empty"));
        return target.report(failure);
    }
    if (dib.Width() > kMaxJpegSide || dib.Height() > kMaxJpegSide) {
        target.fail(QStringLiteral("A JPEG picture can't be larger than 65500 x 65500 pixels"));
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
    const bool written = compress(cinfo, errors, *dest, dib, quality);
    jpeg_destroy_compress(&cinfo);
    if (!written)
        target.fail(errors.text()); // a write failure keeps the system's reason, recorded first
    else
        target.commit();
    return target.report(failure);
}

} // namespace velunta
