#pragma once
// The picture file Velunta hands a companion or an effect program: the program reads
// it, and writes its result back to the same path. Velunta takes the result when the
// file changes, so it is written whole into a file beside it and renamed over it:
// Velunta never sees half a picture.

#include <QImage>
#include <QString>

namespace velunta {

// The picture at `path` as Format_RGB32; a null image with `error` set when it can't
// be read.
QImage ReadExchangePicture(const QString& path, QString* error = nullptr);

// Replaces the file at `path` with the picture as a 24-bit BMP. False with the reason
// when it could not be written; the old file then stays as it was.
bool WriteExchangePicture(const QImage& picture, const QString& path, QString* error = nullptr);

} // namespace velunta
