// The JPEG decoder over libjpeg: baseline, progressive, greyscale, CMYK and YCCK,
// straight into the rows of the picture. Data that ends early or is damaged is
// refused rather than shown with grey blocks.

#include "files/Decoders.h"
#include "files/JpegErrors.h"

#include <vector>

namespace velunta {

namespace {

// A progressive file may hold any number of scans; no real one needs this many,
// and a file with more would keep the decoder busy without end.
constexpr int kMaxScans = 1000;
// Progressive files keep every coefficient in memory: at most about eight bytes a
// pixel for a picture at the pixel limit.
constexpr long kMaxDecoderMemory = 3600L * 1024 * 1024;

struct Progress {
    jpeg_progress_mgr pub;
};

void watchScans(j_common_ptr common)
{
    auto* cinfo = reinterpret_cast<j_decompress_ptr>(common);
    if (cinfo->input_scan_number > kMaxScans) {
        cinfo->err->msg_code = JERR_NOTIMPL;
        auto* errors = reinterpret_cast<JpegErrors*>(cinfo->err);
        qstrncpy(errors->message, "too many scans", sizeof errors->message);
        (*cinfo->err->error_exit)(common);
    }
}

// Each stage between a setjmp and the library only; no C++ objects here.
bool readHeader(jpeg_decompress_struct& cinfo, JpegErrors& errors, const uchar* data, size_t size,
                Progress& progress)
{
    if (setjmp(errors.jump))
        return false;
    jpeg_create_decompress(&cinfo);
    cinfo.mem->max_memory_to_use = kMaxDecoderMemory;
    progress.pub.progress_monitor = watchScans;
    cinfo.progress = &progress.pub;
    jpeg_mem_src(&cinfo, data, static_cast<unsigned long>(size));
    jpeg_read_header(&cinfo, TRUE);
    // CMYK and YCCK come out as CMYK and are turned into RGB below; the rest
    // comes out in the byte order of Format_RGB32.
    const bool cmyk = cinfo.jpeg_color_space == JCS_CMYK || cinfo.jpeg_color_space == JCS_YCCK;
    cinfo.out_color_space = cmyk ? JCS_CMYK : JCS_EXT_BGRX;
    return true;
}

bool readPixels(jpeg_decompress_struct& cinfo, JpegErrors& errors, uchar* bits, qsizetype bytesPerLine,
                uchar* cmykRow)
{
    if (setjmp(errors.jump))
        return false;
    jpeg_start_decompress(&cinfo);
    // Adobe's CMYK files store the inks inverted: 255 is no ink.
    const bool inverted = cinfo.saw_Adobe_marker;
    while (cinfo.output_scanline < cinfo.output_height) {
        uchar* line = bits + qsizetype(cinfo.output_scanline) * bytesPerLine;
        JSAMPROW row = cmykRow ? cmykRow : line;
        jpeg_read_scanlines(&cinfo, &row, 1);
        if (!cmykRow)
            continue;
        auto* out = reinterpret_cast<QRgb*>(line);
        for (JDIMENSION x = 0; x < cinfo.output_width; ++x) {
            const uchar* p = cmykRow + 4 * x;
            int c = p[0], m = p[1], y = p[2], k = p[3];
            if (!inverted) {
                c = 255 - c;
                m = 255 - m;
                y = 255 - y;
                k = 255 - k;
            }
            out[x] = qRgb((c * k + 127) / 255, (m * k + 127) / 255, (y * k + 127) / 255);
        }
    }
    jpeg_finish_decompress(&cinfo);
    return true;
}

QString failureText(const JpegErrors& errors)
{
    return errors.damaged ? QStringLiteral("the file is cut short or damaged (%1)").arg(errors.text())
                          : QStringLiteral("damaged JPEG data (%1)").arg(errors.text());
}

} // namespace

QImage DecodeJPEG(QByteArrayView data, LoadFailure& failure)
{
    jpeg_decompress_struct cinfo{};
    JpegErrors errors;
    errors.attach(reinterpret_cast<j_common_ptr>(&cinfo));
    Progress progress{};
    QImage image;
    std::vector<uchar> cmykRow;
    if (!readHeader(cinfo, errors, reinterpret_cast<const uchar*>(data.data()), size_t(data.size()),
                    progress)) {
        failure.invalid(failureText(errors));
    } else {
        image = NewPicture(cinfo.image_width, cinfo.image_height, QImage::Format_RGB32, failure);
        if (!image.isNull() && cinfo.out_color_space == JCS_CMYK)
            cmykRow.resize(size_t(cinfo.image_width) * 4);
        if (!image.isNull() && !readPixels(cinfo, errors, image.bits(), image.bytesPerLine(),
                                           cmykRow.empty() ? nullptr : cmykRow.data())) {
            failure.invalid(failureText(errors));
            image = QImage();
        }
    }
    jpeg_destroy_decompress(&cinfo);
    return image;
}

} // namespace velunta
