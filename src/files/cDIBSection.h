#pragma once
// A 24-bit picture in the layout of a Windows DIB section: B G R bytes, rows
// padded to a multiple of four bytes, the bottom row of the picture first in
// memory. The JPEG writer reads its rows in place.

#include "files/read/BigBuffer.h"

#include <QImage>

namespace velunta {

class cDIBSection {
public:
    // Makes an empty (black) section of the size; false when the memory can't be had,
    // which leaves the object empty.
    bool Create(int width, int height);
    // A section of the picture's size holding its pixels.
    bool CreateFromPicture(const QImage& picture);
    // Copies the region of `source` at srcX, srcY (width and height -1 for "to the
    // edge") into the section at 0, 0, clipped to both.
    void LoadPictureBlt(const QImage& source, int srcX = 0, int srcY = 0, int width = -1, int height = -1);
    // Releases the pixels; the object can be created again.
    void ClearUp();

    // (Width * 3 + 3) with the two low bits cleared.
    int BytesPerScanLine() const { return (m_width * 3 + 3) & ~3; }
    int Width() const { return m_width; }
    int Height() const { return m_height; }
    uchar* DIBSectionBitsPtr() { return m_bits.get(); }
    const uchar* DIBSectionBitsPtr() const { return m_bits.get(); }

private:
    bool allocate(int width, int height, bool clear);

    int m_width = 0;
    int m_height = 0;
    BigBuffer m_bits;
};

} // namespace velunta
