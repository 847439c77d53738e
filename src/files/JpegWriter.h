#pragma once
// The JPEG writer over libjpeg: it reads the rows of a picture, or the bottom-up
// B G R rows of a cDIBSection, in place and writes baseline JPEG with the library's
// defaults.

#include "files/WriteError.h"
#include "files/cDIBSection.h"

#include <QString>

namespace velunta {

// Writes the section to `fileName` at `quality` 1..100 (0 or less means 90, above
// 100 means 100). Returns false with the failure when nothing could be written; an
// existing file then stays as it was.
bool SaveJPG(const cDIBSection& dib, const QString& fileName, int quality, WriteFailure* failure = nullptr);
// The same from a picture's own rows (any format; RGB32 is read in place), with no
// section in between: the bytes written are those of the section route.
bool SaveJPG(const QImage& picture, const QString& fileName, int quality, WriteFailure* failure = nullptr);

} // namespace velunta
