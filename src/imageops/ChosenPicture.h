#pragma once
// A picture file the user picked for a brush or a blend, read with the program's own
// loader. What can go wrong is told in the words of the dialogs that ask for one.

#include <QImage>
#include <QString>

namespace velunta {

class Prompt;

// The picture, or a null image after a message: "Could not open/read the selected
// picture." titled "Unable to open picture" for a file that can't be read,
// "Incompatible picture format" for one that is no picture the program knows, and
// "Image to big" for one above the loader's limits.
QImage LoadChosenPicture(const QString& path, Prompt& prompt);

} // namespace velunta
