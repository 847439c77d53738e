#pragma once
// The JPEG writer over libjpeg: it reads the bottom-up B G R rows of a
// cDIBSection in place and writes baseline JPEG with the library's defaults.

#include "files/WriteError.h"
#include "files/cDIBSection.h"

#include <QString>

namespace velunta {

// Writes the section to `fileName` at `quality` 1..100 (0 or less means 90, above
// 100 means 100). Returns false with the failure when nothing could be written; an
// existing file then stays as it was.
bool SaveJPG(const cDIBSection& dib, const QString& fileName, int quality, WriteFailure* failure = nullptr);

} // namespace velunta
