#pragma once
// Independent decoders for the file tests: what other programs make of our files.

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QStringList>

namespace velunta::test {

// Runs the program to its end; its standard output, or a null array when it failed.
QByteArray RunTool(const QString& program, const QStringList& arguments);
// The picture as ImageMagick decodes it (one frame, transparency over white), RGB32;
// null when it refuses the file.
QImage DecodeWithMagick(const QString& path, int frame = 0);
// w x h pixels from packed R G B bytes; null when the byte count doesn't fit.
QImage FromRgbBytes(const QByteArray& rgb, int w, int h);

} // namespace velunta::test
