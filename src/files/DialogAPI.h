#pragma once
// The file dialogs of the program with their filter tables. The save dialog's filter
// index doubles as the format choice of Save and Save As.

#include <QString>

namespace velunta {

class FileDialogs;

// The filter for a selector word: empty gives the standard picture list; "GIF", "JPG"
// and "BMP" give that format and All Files. Any other word stands as it is, so that
// dialog shows no usable filter.
QString SaveFilter(const QString& selector);
// The open dialog's standard list, or `filter` as given.
QString OpenFilter(const QString& filter);

// The chosen path, or an empty string on cancel. filterIndex (1-based) is raised to 1
// when below and takes the index the user ended on only when the dialog is confirmed.
// A confirmed dialog makes the chosen file's folder the one the next dialog opens in.
QString ShowSaveDialog(FileDialogs& dialogs, const QString& title, const QString& selector,
                       const QString& defaultName, int& filterIndex);
QString ShowOpenDialog(FileDialogs& dialogs, const QString& title, const QString& filter = QString(),
                       const QString& defaultName = QString());

// True when the path names an existing file (a folder is none).
bool FileExists(const QString& path);

} // namespace velunta
