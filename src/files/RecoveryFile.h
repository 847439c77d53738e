#pragma once
// A recovery file keeps one unsaved picture of a running Velunta: a small header with
// the document's names and the time it was written, then the pixels as they lie in
// memory (32-bit rows, top row first). Writing costs no encoding, and reading gives
// back the very bytes that were written. The file is only ever read back on the
// machine that wrote it, so the rows keep the machine's byte order.

#include <QDateTime>
#include <QImage>
#include <QSize>
#include <QString>

namespace velunta {

struct RecoveryHeader {
    QString name;      // the document's name, as its window showed it
    QString path;      // the file it was opened from or saved to; empty when never saved
    QDateTime written; // when the pixels were taken
    QSize size;
};

// The extension of recovery files; other files in a recovery folder are leftovers.
inline constexpr char kRecoveryExtension[] = ".vrec";

// Writes the picture through a temporary file that replaces `file` only when complete.
// `pixels` is Format_RGB32. False with the system's reason when it could not be written.
bool WriteRecoveryFile(const QString& file, const RecoveryHeader& header, const QImage& pixels,
                       QString* reason = nullptr);

// The header of a complete recovery file; false for anything else (a cut-short file, a
// stranger's file).
bool ReadRecoveryHeader(const QString& file, RecoveryHeader* header);

// The whole picture, or a null image when the file is not a complete recovery file.
QImage ReadRecoveryPicture(const QString& file, RecoveryHeader* header = nullptr);

// The picture scaled to fit a square of `side` pixels, for the offer at start.
QImage RecoveryThumbnail(const QString& file, int side);

} // namespace velunta
