#pragma once
// The picture loader: BMP (also DIB and RLE, and a packed DIB without the file
// header), JPEG, GIF (first picture), ICO and CUR (largest picture) and PNG, told
// apart by the file's first bytes, never by its name. Documents have no alpha, so
// transparent pixels come out over white.
//
// Failures carry the program's error numbers, which the caller shows as
// "Error loading <name>. Err nr:<n>", and a sentence that says what failed.

#include <QByteArrayView>
#include <QImage>
#include <QString>

namespace velunta {

enum LoadErrorNumber : int {
    ErrOutOfMemory = 7,      // no memory, or a picture above the limits below
    ErrFileNotFound = 53,    // no such file
    ErrFileAccess = 75,      // the file exists but can't be read (a folder, no permission, ...)
    ErrInvalidPicture = 481, // not a picture file, cut short, damaged, or a kind not read here
};

// Pictures larger than this are refused from their header, before any pixel memory is taken.
inline constexpr int kMaxPictureSide = 65535;
inline constexpr qint64 kMaxPicturePixels = 400'000'000;

// What a file holds, judged from its first bytes.
enum class PictureFormat { Unknown, Bmp, Dib, Jpeg, Gif, Png, Ico, Cur, Wmf, Emf };

PictureFormat DetectPictureFormat(QByteArrayView bytes);
// Drawings rather than pictures: they open through a converter to SVG, not through the loader.
inline bool IsMetafile(PictureFormat format)
{
    return format == PictureFormat::Wmf || format == PictureFormat::Emf;
}

struct LoadedPicture {
    QImage image; // Format_RGB32; null on failure
    int errorNumber = 0;
    QString error;
    // What the picture opened with anyway, such as a JPEG whose data ends early.
    QString warning;
    PictureFormat format = PictureFormat::Unknown;
};

// Decodes a whole file already in memory; the entry point under every path that opens a picture.
LoadedPicture DecodePicture(QByteArrayView bytes);
LoadedPicture ReadPicture(const QString& path);

// ReadPicture's image. On failure returns a null image and sets the error number and text (both optional).
QImage LoadPicture(const QString& path, QString* error = nullptr, int* errorNumber = nullptr);

} // namespace velunta
