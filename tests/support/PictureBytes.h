#pragma once
// Picture files built byte by byte, for the variants no tool writes: odd BMP
// headers and run-length streams, GIF data of any minimum code size, PNG of any
// colour type with a transparent colour, icon and cursor directories.

#include <QByteArray>
#include <QList>

namespace velunta::test {

// A BMP: file header, a `headerSize`-byte info header, the palette (or masks) and
// the pixels. `offset` is the stated pixel offset; -1 puts the pixels right after
// the palette.
QByteArray BmpFile(qint32 width, qint32 height, int headerSize, int bpp, int compression,
                   const QByteArray& palette, const QByteArray& pixels, qint64 offset = -1,
                   quint32 colorsUsed = 0);

struct GifLayout {
    int screenWidth = 0;
    int screenHeight = 0;
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    int minCodeSize = 8;
    QByteArray palette; // R G B triples, a power of two of them
    QByteArray pixels;  // indices, rows top to bottom
};
// A GIF89a whose image data is a stream of literal codes with a clear code every
// few hundred, decodable at any minimum code size from 2 to 11.
QByteArray GifFile(const GifLayout& gif);

// A PNG chunk with its CRC.
QByteArray PngChunk(const char* type, const QByteArray& data);
// A PNG of unfiltered rows (each without its filter byte) and extra chunks before the data;
// `interlaced` only marks the header, the rows are stored as given.
QByteArray PngFile(int width, int height, int depth, int colorType, const QList<QByteArray>& rows,
                   const QByteArray& chunksBeforeData = {}, bool interlaced = false);

// An icon (type 1) or cursor (type 2) holding the given pictures, each a PNG or an icon DIB.
struct IconEntry {
    int width = 0;
    int height = 0;
    int depth = 0; // for icons; cursors store their hot spot there
    QByteArray data;
};
QByteArray IconFile(int type, const QList<IconEntry>& entries);

} // namespace velunta::test
