#include "files/DialogAPI.h"

#include "core/Prompt.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace velunta {

namespace {

// The labels with their patterns in Qt's form: "*.bmp;*.jpg" is written "(*.bmp *.jpg)".
const char* const kStandardFilter = "Picture Files (*.bmp *.jpg *.gif);;"
                                    "BMP Files (*.bmp);;"
                                    "JPG Files (*.jpg *.jpeg);;"
                                    "GIF Files (*.gif);;"
                                    "All Files (*)";
// The open dialog's list starts with every kind of picture the loader reads (it goes by
// the file's contents, so the names are only a guide); the save list offers what we write.
const char* const kOpenFilter =
    "Picture Files (*.bmp *.dib *.rle *.jpg *.jpeg *.jpe *.gif *.png *.ico *.cur);;"
    "BMP Files (*.bmp);;"
    "JPG Files (*.jpg *.jpeg);;"
    "GIF Files (*.gif);;"
    "PNG Files (*.png);;"
    "Icons and Cursors (*.ico *.cur);;"
    "All Files (*)";

} // namespace

QString SaveFilter(const QString& selector)
{
    if (selector.isEmpty())
        return QString::fromLatin1(kStandardFilter);
    if (selector == QLatin1String("GIF"))
        return QCoreApplication::translate("PictureFiles", "GIF Files (*.gif);;All Files (*)");
    if (selector == QLatin1String("JPG"))
        return QCoreApplication::translate("PictureFiles", "JPG Files (*.jpg *.jpeg);;All Files (*)");
    if (selector == QLatin1String("BMP"))
        return QCoreApplication::translate("PictureFiles", "BMP Files (*.bmp);;All Files (*)");
    return selector;
}

QString OpenFilter(const QString& filter)
{
    return filter.isEmpty() ? QString::fromLatin1(kOpenFilter) : filter;
}

QString ShowSaveDialog(FileDialogs& dialogs, const QString& title, const QString& selector,
                       const QString& defaultName, int& filterIndex)
{
    if (filterIndex < 1)
        filterIndex = 1;
    int chosen = filterIndex;
    const QString path =
        dialogs.getSaveFileName(title, SaveFilter(selector),
                                defaultName.isEmpty() ? QStringLiteral("Untitled") : defaultName, chosen);
    if (!path.isEmpty()) {
        filterIndex = chosen;
        dialogs.StartFolder = QFileInfo(path).absolutePath();
    }
    return path;
}

QString ShowOpenDialog(FileDialogs& dialogs, const QString& title, const QString& filter,
                       const QString& defaultName)
{
    const QString path = dialogs.getOpenFileName(title, OpenFilter(filter), defaultName);
    if (!path.isEmpty())
        dialogs.StartFolder = QFileInfo(path).absolutePath();
    return path;
}

bool FileExists(const QString& path)
{
    // A folder is no file: the listing of a folder's name finds no file of that name.
    return !path.isEmpty() && QFileInfo(path).isFile();
}

} // namespace velunta
