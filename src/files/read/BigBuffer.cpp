#include "files/read/BigBuffer.h"

#include <sys/mman.h>

namespace velunta {

namespace {

constexpr size_t kHugePage = size_t(2) << 20;

} // namespace

BigBuffer AllocateBig(size_t bytes)
{
    if (bytes < kHugePage)
        return BigBuffer(static_cast<uchar*>(std::malloc(bytes ? bytes : 1)));
    const size_t rounded = (bytes + kHugePage - 1) / kHugePage * kHugePage;
    auto* p = static_cast<uchar*>(std::aligned_alloc(kHugePage, rounded));
    if (p)
        madvise(p, rounded, MADV_HUGEPAGE); // only advice: without it the memory works all the same
    return BigBuffer(p);
}

QImage AllocateBigImage(int width, int height, QImage::Format format)
{
    if (width <= 0 || height <= 0)
        return {};
    const qsizetype bytesPerLine = qsizetype(width) * 4;
    BigBuffer pixels = AllocateBig(size_t(bytesPerLine) * size_t(height));
    if (!pixels)
        return {};
    uchar* data = pixels.get();
    QImage image(
        data, width, height, bytesPerLine, format, [](void* p) { std::free(p); }, data);
    if (!image.isNull())
        pixels.release(); // the image frees it now
    return image;
}

} // namespace velunta
