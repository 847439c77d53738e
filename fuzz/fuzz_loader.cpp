// A libFuzzer target over the loader's entry point. Each build of it keeps to
// one decoder (FUZZ_KIND): inputs of other kinds are passed over, so the fuzzer's
// time goes to that decoder. Beyond the sanitizers' findings it checks what every
// caller relies on: a picture comes out as Format_RGB32 within the limits, and a
// refusal always says why.

#include "files/read/PictureLoader.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

using namespace velunta;

namespace {

bool ours(PictureFormat format)
{
    const char* kind = FUZZ_KIND;
    switch (format) {
    case PictureFormat::Bmp:
    case PictureFormat::Dib:
        return std::strcmp(kind, "bmp") == 0;
    case PictureFormat::Gif:
        return std::strcmp(kind, "gif") == 0;
    case PictureFormat::Jpeg:
        return std::strcmp(kind, "jpeg") == 0;
    case PictureFormat::Ico:
    case PictureFormat::Cur:
        return std::strcmp(kind, "ico") == 0;
    case PictureFormat::Png:
        return std::strcmp(kind, "png") == 0;
    default:
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArrayView bytes(data, qsizetype(size));
    if (!ours(DetectPictureFormat(bytes)))
        return -1; // not added to the corpus
    const LoadedPicture loaded = DecodePicture(bytes);
    const QImage& image = loaded.image;
    const bool fine = image.isNull()
                          ? loaded.errorNumber != 0 && !loaded.error.isEmpty()
                          : loaded.errorNumber == 0 && image.format() == QImage::Format_RGB32 &&
                                image.width() <= kMaxPictureSide && image.height() <= kMaxPictureSide &&
                                qint64(image.width()) * image.height() <= kMaxPicturePixels;
    if (!fine)
        std::abort();
    return 0;
}
