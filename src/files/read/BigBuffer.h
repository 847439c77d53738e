#pragma once
// Memory for whole pictures and whole files. Touching tens of megabytes of fresh
// memory costs one page fault per 4 KB, which for a 4000 x 3000 picture takes
// longer than converting its pixels; buffers of this size therefore ask the
// kernel for huge pages, 512 times fewer faults where the system allows them.

#include <QImage>

#include <cstdlib>
#include <memory>

namespace velunta {

struct FreeBigBuffer {
    void operator()(uchar* p) const { std::free(p); }
};
using BigBuffer = std::unique_ptr<uchar[], FreeBigBuffer>;

// `bytes` of uninitialised memory, or null when it can't be had.
BigBuffer AllocateBig(size_t bytes);

// Memory for a picture's pixels, released with ReleasePictureMemory(). Pixels of a
// picture that was let go are kept for the next picture of about their size (opening
// one file after another, reverting to the saved file): memory the process already
// holds costs no page faults, which for 12 MP cost more than decoding the file.
uchar* AllocatePictureMemory(size_t bytes);
void ReleasePictureMemory(void* pixels);

// A picture whose pixels live in such memory; null when the memory can't be had.
// The formats are the 32-bit ones.
QImage AllocateBigImage(int width, int height, QImage::Format format);

} // namespace velunta
