#pragma once
// Why a writer could not put a picture on disk: a code the caller acts on, and the
// system's own words for the message. The codes are the numbers the error box shows
// ("Error saving file: 61 - No space left on device").

#include <QString>

namespace velunta {

enum class WriteError {
    None = 0,
    Cancelled = 18,        // the user stopped the writing (Esc)
    DiskFull = 61,         // no room left for the file
    PermissionDenied = 70, // the folder or the file may not be written
    Refused = 75,          // anything else: a damaged path, a picture too large for the format, ...
    PathNotFound = 76,     // the folder doesn't exist
};

struct WriteFailure {
    WriteError error = WriteError::None;
    QString reason;
};

} // namespace velunta
