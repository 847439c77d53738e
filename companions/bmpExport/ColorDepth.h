#pragma once
// Fewer colours for a picture, and the BMP files that hold them: 2 colours (1 bit, black
// and white), the picture's own 16 or 256 colours (4 and 8 bits, a palette found by
// median cut) or true colour (24 bits); with no dithering, Floyd-Steinberg error
// diffusion or an ordered 8 x 8 pattern. The files are plain Windows bitmaps with a
// palette, which every program reads.

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QVector>

namespace velunta {

enum class Dither { None = 0, FloydSteinberg = 1, Ordered = 2 };

struct DepthChoice {
    int bits = 24; // 1, 4, 8 or 24
    Dither dither = Dither::None;
    bool operator==(const DepthChoice&) const = default;
};

// Up to `colours` colours that stand for the picture: its own colours when it has no
// more than that, else the averages of a median cut of its colour space.
QVector<QRgb> MakePalette(const QImage& picture, int colours);

// The picture with the colours of `choice`: Format_Indexed8 with the palette as its
// colour table for 1, 4 and 8 bits, Format_RGB32 for 24.
QImage ReduceColors(const QImage& picture, const DepthChoice& choice);

// A reduced picture (ReduceColors) as the bytes of a BMP file of `bits` per pixel.
QByteArray EncodeBMP(const QImage& reduced, int bits);

// Reduces the picture and replaces the file at `path` with it, whole or not at all.
bool WriteBMPVariant(const QImage& picture, const DepthChoice& choice, const QString& path,
                     QString* error = nullptr);

// The choice last made in the converter's window, from Velunta's settings store, and
// keeping a new one there.
DepthChoice RememberedChoice();
void RememberChoice(const DepthChoice& choice);

} // namespace velunta
