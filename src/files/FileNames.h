#pragma once
// The rules by which file names become formats and formats become file names in
// Save, Save As and the exports.

#include <QString>

namespace velunta {

// The name Save As writes to for a chosen name and the filter the user ended on.
QString SaveAsFileName(QString result, int filterIndex);
// The filter index a name's extension stands for, or `current` when it names none.
// Save doesn't know ".jpeg"; Save As does.
int FilterIndexOfName(const QString& name, int current, bool knowsJpeg);
// The export dialogs' proposal from the document's caption.
QString ExportProposal(const QString& caption, const QString& extension);
// A chosen export name made to end in the extension.
QString ExportFileName(QString name, const QString& extension);

} // namespace velunta
