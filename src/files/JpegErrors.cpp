#include "files/JpegErrors.h"

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

// Warnings that mean the data ran out or is broken: the picture would come out
// partly grey, so reading stops there instead of showing it.
bool isDamage(int code)
{
    switch (code) {
    case JWRN_JPEG_EOF:
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_MUST_RESYNC:
    case JWRN_NOT_SEQUENTIAL:
    case JWRN_BOGUS_PROGRESSION:
        return true;
    default:
        return false;
    }
}

void onMessage(j_common_ptr common, int level)
{
    auto* errors = reinterpret_cast<JpegErrors*>(common->err);
    if (level >= 0)
        return; // trace messages
    if (isDamage(common->err->msg_code)) {
        errors->damaged = true;
        jumpBack(common);
    }
}

} // namespace

void JpegErrors::attach(jpeg_common_struct* common)
{
    common->err = jpeg_std_error(&pub);
    pub.error_exit = jumpBack;
    pub.emit_message = onMessage;
    pub.output_message = keepMessage;
    message[0] = 0;
    damaged = false;
}

} // namespace velunta
