// The PNG decoder over libpng: every colour type and depth, with a transparent
// colour (tRNS) compared on the full 16-bit samples before they are scaled to
// eight bits, which Qt 6.4's reader gets wrong. Rows of a plain file are taken as
// they are decoded; an interlaced file is decoded once without keeping its pixels
// to prove its data before the picture's memory is taken.

#include "files/read/Decoders.h"
#include "files/read/PictureRows.h"

#include <QCoreApplication>

#include <png.h>

#include <bit>
#include <csetjmp>
#include <cstring>
#include <vector>

namespace velunta {

namespace {

struct Source {
    const uchar* data;
    size_t size;
    size_t at;
    bool ranOut;
    char message[200];
};

void readBytes(png_structp png, png_bytep out, size_t count)
{
    auto* source = static_cast<Source*>(png_get_io_ptr(png));
    if (count > source->size - source->at) {
        source->ranOut = true;
        png_error(png, "cut short");
    }
    std::memcpy(out, source->data + source->at, count);
    source->at += count;
}

void onError(png_structp png, png_const_charp message)
{
    auto* source = static_cast<Source*>(png_get_error_ptr(png));
    if (!source->message[0])
        qstrncpy(source->message, message, sizeof source->message);
    png_longjmp(png, 1);
}

void onWarning(png_structp, png_const_charp) {}

struct Picture {
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    bool alpha = false;
    int passes = 1;
};

// Each stage between a setjmp and the library only; no C++ objects here.
bool readInfo(png_structp png, png_infop info, Picture& picture)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    // The loader's own limits are checked on the size before any row memory is
    // taken, with its own message.
    png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    // The chunks of any length that never reach the picture (texts, colour profiles,
    // suggested palettes, Exif, calibrations) are skipped as they are read. Read, each
    // would be taken whole into memory first: one stating a length of a gigabyte would
    // have that much taken before the file is found to end.
    static const png_byte kSkipped[] = "tEXt\0zTXt\0iTXt\0iCCP\0sPLT\0eXIf\0pCAL\0sCAL";
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, kSkipped, int(sizeof kSkipped / 5));
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
    // Mutated files seldom keep their checksums right; the fuzzer wants what lies behind them.
    png_set_crc_action(png, PNG_CRC_QUIET_USE, PNG_CRC_QUIET_USE);
    png_set_option(png, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
#endif
    png_read_info(png, info);
    int depth = 0, colorType = 0, interlace = 0;
    png_get_IHDR(png, info, &picture.width, &picture.height, &depth, &colorType, &interlace, nullptr,
                 nullptr);
    picture.alpha = (colorType & PNG_COLOR_MASK_ALPHA) || png_get_valid(png, info, PNG_INFO_tRNS);
    return true;
}

// The row format: eight-bit B G R A (or A R G B on big-endian machines), the bytes
// of Format_ARGB32. libpng takes its row buffers here.
bool startRows(png_structp png, png_infop info, Picture& picture)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_set_expand(png);
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    if constexpr (std::endian::native == std::endian::little)
        png_set_bgr(png);
    if (!picture.alpha)
        png_set_filler(png, 0xFF, PNG_FILLER_AFTER);
    if constexpr (std::endian::native == std::endian::big)
        png_set_swap_alpha(png);
    picture.passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);
    return png_get_rowbytes(png, info) == size_t(picture.width) * 4;
}

// Reads `rows` rows of every pass into `row(y)`; `done` counts the rows read.
bool readRows(png_structp png, const Picture& picture, uchar* (*row)(void*, png_uint_32), void* context,
              png_uint_32& done)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    for (int pass = 0; pass < picture.passes; ++pass) {
        for (png_uint_32 y = 0; y < picture.height; ++y) {
            uchar* line = row(context, y);
            if (!line)
                return false;
            png_read_row(png, line, nullptr);
            ++done;
        }
    }
    return true;
}

class Decoder {
public:
    Decoder(QByteArrayView data, LoadFailure& failure) : m_failure(failure)
    {
        m_source = Source{reinterpret_cast<const uchar*>(data.data()), size_t(data.size()), 0, false, {}};
    }
    ~Decoder() { close(); }
    QImage read();

private:
    bool open()
    {
        close();
        m_source.at = 0;
        m_png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &m_source, onError, onWarning);
        m_info = m_png ? png_create_info_struct(m_png) : nullptr;
        if (!m_info)
            return false;
        png_set_read_fn(m_png, &m_source, readBytes);
        return readInfo(m_png, m_info, m_picture);
    }
    // The size within the limits, then the rows set up.
    bool start()
    {
        const qint64 width = m_picture.width, height = m_picture.height;
        if (!WithinLimits(width, height, m_failure))
            return false;
        if (width == 0 || height == 0) {
            m_failure.invalid(QCoreApplication::translate("PictureFiles", "The picture has no pixels."));
            return false;
        }
        if (!startRows(m_png, m_info, m_picture)) {
            refuse();
            return false;
        }
        return true;
    }
    void close()
    {
        if (m_png)
            png_destroy_read_struct(&m_png, &m_info, nullptr);
        m_png = nullptr;
        m_info = nullptr;
    }
    // All rows read, or the data failed once they were: a damaged end is no loss.
    bool rowsRead(png_uint_32 done) const { return done == png_uint_32(m_picture.passes) * m_picture.height; }
    void refuse();

    LoadFailure& m_failure;
    Source m_source{};
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
    Picture m_picture;
};

void Decoder::refuse()
{
    // libpng's words for image data that ends before the last row.
    if (m_source.ranOut || qstrcmp(m_source.message, "Not enough image data") == 0)
        m_failure.cutShort();
    else if (!m_png || !m_info)
        m_failure.outOfMemory();
    else
        m_failure.invalid(QCoreApplication::translate("PictureFiles", "The PNG file is damaged (%1).")
                              .arg(QString::fromLatin1(m_source.message)));
}

QImage Decoder::read()
{
    if (!open()) {
        refuse();
        return {};
    }
    if (!start())
        return {};
    const qint64 width = m_picture.width, height = m_picture.height;
    png_uint_32 done = 0;
    if (m_picture.passes > 1) {
        // Every pass into one scratch row: proves the data, keeps no pixels.
        std::vector<uchar> scratch(size_t(width) * 4);
        const auto intoScratch = [](void* context, png_uint_32) {
            return static_cast<std::vector<uchar>*>(context)->data();
        };
        if (!readRows(m_png, m_picture, intoScratch, &scratch, done) && !rowsRead(done)) {
            refuse();
            return {};
        }
        if (!open()) {
            refuse();
            return {};
        }
        if (!start())
            return {};
        done = 0;
    }
    PictureRows rows(int(width), int(height), qint64(m_source.size));
    const auto intoPicture = [](void* context, png_uint_32 y) {
        return static_cast<PictureRows*>(context)->row(int(y));
    };
    const bool whole = readRows(m_png, m_picture, intoPicture, &rows, done);
    if (!whole && !rowsRead(done)) {
        if (m_source.message[0] || m_source.ranOut)
            refuse();
        else
            m_failure.outOfMemory();
        return {};
    }
    return rows.take(m_picture.alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
}

} // namespace

QImage DecodePNG(QByteArrayView data, LoadFailure& failure)
{
    return Decoder(data, failure).read();
}

} // namespace velunta
