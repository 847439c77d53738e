#pragma once
// The picture loader: BMP (also DIB and RLE), JPEG, GIF (first picture), ICO and
// CUR (largest picture) and PNG, told apart by the file's first bytes, never by its
// name. Documents have no alpha, so transparent pixels come out over white.
//
// Failures carry the program's error numbers, which the caller shows as
// "Error loading <name>. Err nr:<n>", and a text with the details.

#include <QImage>
#include <QString>

namespace velunta {

enum LoadErrorNumber : int {
    ErrOutOfMemory = 7,      // no memory, or a picture above the limits below
    ErrFileNotFound = 53,    // no such file
    ErrFileAccess = 75,      // the file exists but can't be read (a folder, no permission, ...)
    ErrInvalidPicture = 481, // unknown format, cut short or damaged
};

// Pictures larger than this are refused from their header, before any pixel memory is taken.
inline constexpr int kMaxPictureSide = 30000;
inline constexpr qint64 kMaxPicturePixels = 400'000'000;

// Loads the picture as Format_RGB32. On failure returns a null image and sets the
// error number and text (both optional).
QImage LoadPicture(const QString& path, QString* error = nullptr, int* errorNumber = nullptr);

} // namespace velunta
