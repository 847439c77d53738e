// The JPEG decoder over libjpeg: baseline, progressive, arithmetic, greyscale,
// CMYK and YCCK, straight into the rows of the picture. Data that is damaged or
// ends early is decoded as far as it goes, as libjpeg's own tools do: a photo cut
// short by a failed copy still shows what arrived.

#include "files/read/Decoders.h"
#include "files/read/JpegErrors.h"
#include "files/read/PictureRows.h"

#include <QCoreApplication>

#include <algorithm>
#include <vector>

namespace velunta {

namespace {

// A progressive file may hold any number of scans; no real one needs this many,
// and a file with more would keep the decoder busy without end.
constexpr int kMaxScans = 1000;
constexpr int kLosslessMarker = 0xC3;

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
                Progress& progress, int side)
{
    if (setjmp(errors.jump))
        return false;
    jpeg_create_decompress(&cinfo);
    // Files of several scans keep every coefficient in memory, taken before the
    // scans are read: no more than the file's data could fill.
    cinfo.mem->max_memory_to_use = long(UnprovenAllowance(qint64(size)));
    progress.pub.progress_monitor = watchScans;
    cinfo.progress = &progress.pub;
    jpeg_mem_src(&cinfo, data, static_cast<unsigned long>(size));
    jpeg_read_header(&cinfo, TRUE);
    // CMYK and YCCK come out as CMYK and are turned into RGB below; the rest
    // comes out in the byte order of Format_RGB32.
    const bool cmyk = cinfo.jpeg_color_space == JCS_CMYK || cinfo.jpeg_color_space == JCS_YCCK;
    cinfo.out_color_space = cmyk ? JCS_CMYK : JCS_EXT_BGRX;
    // A preview decodes at 1/2, 1/4 or 1/8 straight from the coefficients: the largest
    // step that still leaves the longer side at least `side` pixels.
    if (side > 0) {
        const JDIMENSION longer = std::max(cinfo.image_width, cinfo.image_height);
        cinfo.scale_num = 1;
        cinfo.scale_denom = 1;
        while (cinfo.scale_denom < 8 && longer / (cinfo.scale_denom * 2) >= JDIMENSION(side))
            cinfo.scale_denom *= 2;
        cinfo.dct_method = JDCT_IFAST;
    }
    jpeg_calc_output_dimensions(&cinfo);
    return true;
}

enum class Stop { None, Memory, TooLittleData };

bool readPixels(jpeg_decompress_struct& cinfo, JpegErrors& errors, PictureRows& rows, uchar* cmykRow,
                qint64 fileBytes, LoadFailure& failure, Stop& stop)
{
    if (setjmp(errors.jump))
        return false;
    jpeg_start_decompress(&cinfo);
    // Files of one scan prove their rows as they go; when their data runs out the
    // rest comes out grey, which is only taken while it fits the file's allowance.
    const bool sequential = !jpeg_has_multiple_scans(&cinfo);
    // Adobe's CMYK files store the inks inverted: 255 is no ink.
    const bool inverted = cinfo.saw_Adobe_marker;
    while (cinfo.output_scanline < cinfo.output_height) {
        if (sequential && errors.dataEndRow >= 0 &&
            !WithinAllowance(cinfo.output_width, cinfo.output_height,
                             qint64(errors.dataEndRow) * cinfo.output_width, fileBytes)) {
            failure.invalid(
                QCoreApplication::translate("PictureFiles",
                                            "The file is cut short or damaged: its picture data ends at row "
                                            "%1 of %2, too early for a picture this large.")
                    .arg(errors.dataEndRow)
                    .arg(cinfo.output_height));
            stop = Stop::TooLittleData;
            return false;
        }
        uchar* line = rows.row(int(cinfo.output_scanline));
        if (!line) {
            stop = Stop::Memory;
            return false;
        }
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

// The reason for a fatal error of the library, in the user's words.
void refuse(const jpeg_decompress_struct& cinfo, const JpegErrors& errors, qint64 fileBytes,
            LoadFailure& failure)
{
    switch (cinfo.err->msg_code) {
    case JERR_SOF_UNSUPPORTED:
        failure.invalid(
            cinfo.err->msg_parm.i[0] == kLosslessMarker
                ? QCoreApplication::translate("PictureFiles",
                                              "This is a lossless JPEG file; lossless JPEG is not supported.")
                : QCoreApplication::translate("PictureFiles",
                                              "This JPEG file is of a kind Velunta doesn't read "
                                              "(hierarchical or lossless)."));
        return;
    case JERR_NO_BACKING_STORE: // the coefficients would take more than the allowance
        DataCanFill(cinfo.image_width, cinfo.image_height, 0, fileBytes, failure);
        failure.invalid(
            QCoreApplication::translate("PictureFiles", "The JPEG file is too small for its picture."));
        return;
    case JERR_OUT_OF_MEMORY:
        failure.outOfMemory();
        return;
    case JERR_IMAGE_TOO_BIG:
        WithinLimits(cinfo.image_width, cinfo.image_height, failure);
        break;
    default:
        break;
    }
    if (errors.dataEndRow >= 0)
        failure.cutShort();
    else
        failure.invalid(
            QCoreApplication::translate("PictureFiles", "The JPEG file is damaged (%1).").arg(errors.text()));
}

} // namespace

QImage DecodeJPEGScaled(QByteArrayView data, int side, LoadFailure& failure, QSize* fullSize)
{
    jpeg_decompress_struct cinfo{};
    JpegErrors errors;
    errors.attach(reinterpret_cast<j_common_ptr>(&cinfo));
    Progress progress{};
    QImage image;
    if (!readHeader(cinfo, errors, reinterpret_cast<const uchar*>(data.data()), size_t(data.size()), progress,
                    side)) {
        refuse(cinfo, errors, data.size(), failure);
    } else if (WithinLimits(cinfo.image_width, cinfo.image_height, failure)) {
        if (fullSize)
            *fullSize = QSize(int(cinfo.image_width), int(cinfo.image_height));
        PictureRows rows(int(cinfo.output_width), int(cinfo.output_height), data.size());
        const bool cmyk = cinfo.out_color_space == JCS_CMYK;
        std::vector<uchar> cmykRow(cmyk ? size_t(cinfo.output_width) * 4 : 0);
        Stop stop = Stop::None;
        if (readPixels(cinfo, errors, rows, cmyk ? cmykRow.data() : nullptr, data.size(), failure, stop))
            image = rows.take(QImage::Format_RGB32);
        else if (stop == Stop::Memory)
            failure.outOfMemory();
        else if (stop == Stop::None)
            refuse(cinfo, errors, data.size(), failure);
    }
    if (!image.isNull() && errors.warnings > 0)
        failure.warning = QStringLiteral("the JPEG data is damaged or cut short (%1); the picture shows what "
                                         "could be read")
                              .arg(errors.warningText());
    jpeg_destroy_decompress(&cinfo);
    return image;
}

} // namespace velunta

namespace velunta {

QImage DecodeJPEG(QByteArrayView data, LoadFailure& failure)
{
    return DecodeJPEGScaled(data, 0, failure, nullptr);
}

} // namespace velunta
