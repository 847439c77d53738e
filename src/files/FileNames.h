#pragma once
// The rules by which file names become formats and formats become file names in
// Save, Save As and the exports.

#include <QString>

#include <optional>

namespace velunta {

// The formats FileSaveAs writes.
enum class SaveFormat { Jpeg = 1, Bmp = 2, Gif = 3, GifTransparent = 4 };

// The entries of the standard save dialog by their 1-based index. Save and Save As
// keep the index as the choice of format (SaveFilterIndex).
enum SaveFilter { kFilterPictures = 1, kFilterBmp = 2, kFilterJpeg = 3, kFilterGif = 4, kFilterAllFiles = 5 };

// The format a save filter writes; none for All Files (and indexes outside the list).
std::optional<SaveFormat> FormatOfFilter(int filterIndex);

// The name Save As writes to for a chosen name and the filter the user ended on.
QString SaveAsFileName(QString result, int filterIndex);
// The filter index (SaveFilter) a name's extension stands for, or `current` when it names none.
// Save doesn't know ".jpeg"; Save As does.
int FilterIndexOfName(const QString& name, int current, bool knowsJpeg);
// The export dialogs' proposal from the document's caption.
QString ExportProposal(const QString& caption, const QString& extension);
// A chosen export name made to end in the extension.
QString ExportFileName(QString path, const QString& extension);

} // namespace velunta
