#pragma once
// Where the program's own files live: the data files it ships (brushes, textures,
// effects), UserColors.ini, VeluntaPrint.ini and the temp folder.

#include <QString>

namespace velunta {

// The program's folder with a trailing "/" when it is writable. When it isn't (a
// system install) the per-user data folder $XDG_DATA_HOME/Zolvane/Velunta/, created
// on first use with the program's data files copied there. VELUNTA_HOME overrides
// both. The temp folder under it is created when missing.
QString ResolveAppFolder(const QString& programFolder);

// Copies the data files that aren't there yet from `from` into `to` (recursively).
void CopyMissingDataFiles(const QString& from, const QString& to);

} // namespace velunta
