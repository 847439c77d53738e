#include "files/read/BigBuffer.h"

#include <malloc.h>
#include <sys/mman.h>

#include <mutex>

namespace velunta {

namespace {

constexpr size_t kHugePage = size_t(2) << 20;

// At most this many blocks of released pictures, none larger than this: one picture
// and the next, never a hoard.
constexpr int kKeptBlocks = 2;
constexpr size_t kMaxKeptBytes = size_t(256) << 20;

struct KeptBlock {
    void* pixels = nullptr;
    size_t bytes = 0;
};

std::mutex g_keptLock;
KeptBlock g_kept[kKeptBlocks];

// A kept block that fits `bytes` without wasting more than a quarter of itself, beyond
// the huge page of slack that the alignment of a big block leaves at its end.
uchar* takeKept(size_t bytes)
{
    const std::lock_guard lock(g_keptLock);
    for (KeptBlock& block : g_kept) {
        if (block.pixels && block.bytes >= bytes && block.bytes - bytes <= block.bytes / 4 + kHugePage) {
            auto* pixels = static_cast<uchar*>(block.pixels);
            block = KeptBlock();
            return pixels;
        }
    }
    return nullptr;
}

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

uchar* AllocatePictureMemory(size_t bytes)
{
    if (bytes >= kHugePage)
        if (uchar* kept = takeKept(bytes))
            return kept;
    return AllocateBig(bytes).release();
}

void ReleasePictureMemory(void* pixels)
{
    if (!pixels)
        return;
    const size_t bytes = malloc_usable_size(pixels);
    if (bytes >= kHugePage && bytes <= kMaxKeptBytes) {
        const std::lock_guard lock(g_keptLock);
        // The older block makes room: the newest is the likeliest to fit the next picture.
        std::free(g_kept[kKeptBlocks - 1].pixels);
        for (int i = kKeptBlocks - 1; i > 0; --i)
            g_kept[i] = g_kept[i - 1];
        g_kept[0] = {pixels, bytes};
        return;
    }
    std::free(pixels);
}

QImage AllocateBigImage(int width, int height, QImage::Format format)
{
    if (width <= 0 || height <= 0)
        return {};
    const qsizetype bytesPerLine = qsizetype(width) * 4;
    uchar* data = AllocatePictureMemory(size_t(bytesPerLine) * size_t(height));
    if (!data)
        return {};
    QImage image(data, width, height, bytesPerLine, format, ReleasePictureMemory, data);
    if (image.isNull())
        ReleasePictureMemory(data);
    return image;
}

} // namespace velunta
