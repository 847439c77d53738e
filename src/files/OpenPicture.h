#pragma once
// Every way a file becomes a picture (Open, the command line, a dropped file, Import,
// Paste From) comes through here: Windows metafiles, known by their content, through
// their converters; everything else through the picture loader.

#include <QImage>
#include <QString>

#include <functional>

namespace velunta {

// The picture in `path` as Format_RGB32, or a null image with the error number and a
// sentence (both optional), as LoadPicture gives them. `keepWaiting` is asked while a
// converter runs, with the part of its time limit gone; false stops it.
QImage OpenPicture(const QString& path, QString* error = nullptr, int* errorNumber = nullptr,
                   const std::function<bool(double)>& keepWaiting = {});

} // namespace velunta
