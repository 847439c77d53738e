#pragma once
// The BMP writer: every picture becomes an uncompressed 24-bit BMP with a
// BITMAPINFOHEADER and bottom-up rows, the form every program reads.

#include "files/WriteError.h"

#include <QImage>
#include <QString>

namespace velunta {

// Writes `image` (any format; alpha is dropped) to `path` through a temporary file.
// Returns false with the failure when nothing could be written; the old file then stays.
bool SaveBMP(const QImage& image, const QString& path, WriteFailure* failure = nullptr);

} // namespace velunta
