#include "files/read/JpegErrors.h"

namespace velunta {

namespace {

void keepMessage(j_common_ptr common)
{
    auto* errors = reinterpret_cast<JpegErrors*>(common->err);
    if (!errors->message[0])
        (*common->err->format_message)(common, errors->message);
}

[[noreturn]] void jumpBack(j_common_ptr common)
{
    keepMessage(common);
    std::longjmp(reinterpret_cast<JpegErrors*>(common->err)->jump, 1);
}

void onMessage(j_common_ptr common, int level)
{
    if (level >= 0)
        return; // trace messages
    auto* errors = reinterpret_cast<JpegErrors*>(common->err);
    if (errors->warnings++ == 0)
        (*common->err->format_message)(common, errors->warning);
    // The data ran out, or a marker stands where data should be (most often the
    // end of the file): the rest comes out grey.
    const int code = common->err->msg_code;
    if ((code == JWRN_JPEG_EOF || code == JWRN_HIT_MARKER) && common->is_decompressor &&
        errors->dataEndRow < 0)
        errors->dataEndRow = reinterpret_cast<j_decompress_ptr>(common)->output_scanline;
}

} // namespace

void JpegErrors::attach(jpeg_common_struct* common)
{
    common->err = jpeg_std_error(&pub);
    pub.error_exit = jumpBack;
    pub.emit_message = onMessage;
    pub.output_message = keepMessage;
    message[0] = 0;
    warning[0] = 0;
    warnings = 0;
    dataEndRow = -1;
}

} // namespace velunta
