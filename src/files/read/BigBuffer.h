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

// A picture whose pixels live in such a buffer; null when the memory can't be had.
// The formats are the 32-bit ones.
QImage AllocateBigImage(int width, int height, QImage::Format format);

} // namespace velunta
