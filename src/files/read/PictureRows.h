#pragma once
// A 32-bit picture taken row by row from the top, for decoders that prove their
// rows in order: its memory grows with the rows asked for, unless the whole
// picture fits the file's allowance anyway and is taken at once.

#include <QImage>

namespace velunta {

class PictureRows {
public:
    PictureRows(int width, int height, qint64 fileBytes);
    ~PictureRows();
    PictureRows(const PictureRows&) = delete;
    PictureRows& operator=(const PictureRows&) = delete;

    // Row y, growing the memory when y lies past the rows held; null when memory
    // can't be had.
    uchar* row(int y);
    qsizetype bytesPerLine() const { return qsizetype(m_width) * 4; }
    // The picture, once every row is held; null otherwise.
    QImage take(QImage::Format format);

private:
    int m_width;
    int m_height;
    int m_rows = 0; // rows the memory holds
    uchar* m_bits = nullptr;
};

} // namespace velunta
