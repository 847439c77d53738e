#pragma once
// The one way a whole file is replaced: written beside the old one, flushed to the
// disk, then renamed over it. A failure half way (a full disk, a read-only folder)
// leaves the old file exactly as it was; a power cut leaves the old or the new file,
// never a mix.

#include <QByteArray>
#include <QString>

namespace velunta {

// Replaces `path` with `bytes`. False with the system's reason ("Permission denied",
// "No space left on device") when the file could not be written.
bool WriteFileSafely(const QString& path, const QByteArray& bytes, QString* reason = nullptr);

// Makes the renames inside `folder` last through a power cut: the file's data is on the
// disk after its own flush, but the name that points to it only after its folder's.
void SyncFolder(const QString& folder);

} // namespace velunta
