#pragma once
// Helpers shared by the tests: small synthetic pictures and pixel comparisons.

#include "core/Color.h"
#include "core/Surface.h"

#include <QHash>
#include <QImage>
#include <QString>
#include <QStringList>

#include <functional>

namespace velunta::test {

// A w x h surface (no frame) filled with one colour.
Surface MakeSurface(int w, int h, Color fill = 0xFFFFFF, int border = 0);
// A picture whose pixel x, y is f(x, y).
QImage MakeImage(int w, int h, const std::function<Color(int, int)>& f);
// A busy picture with no two neighbours alike, so that a pixel out of place shows;
// another seed gives another picture of the same kind.
QImage Pattern(int w, int h, int seed = 0);
// Rows of characters, one per pixel, mapped through `palette` ('.' -> white, '#' -> black by default).
QImage ImageFromRows(const QStringList& rows, const QHash<QChar, Color>& palette = {});
// The surface's pixels as rows of characters: `on` where the pixel equals `c`, '.' elsewhere.
QStringList RowsOf(const Surface& s, Color c, QChar on = u'#');
// Number of pixels that differ between two pictures of the same size (-1 when the sizes differ).
int DifferingPixels(const QImage& a, const QImage& b);
// Peak signal-to-noise ratio in dB between two pictures of the same size.
double Psnr(const QImage& a, const QImage& b);
// Writes the bytes to the file, making its folder; false when it can't.
bool WriteFile(const QString& path, const QByteArray& bytes);
// An executable shell script at `path` (its folder made) that runs `body`; its path.
QString WriteScript(const QString& path, const QString& body);
// The file's bytes; empty when it can't be read.
QByteArray ReadFile(const QString& path);
// Runs fn while a file can't grow past `bytes`, as on a full disk: the write that
// crosses the limit is cut short and the next one fails with "File too large".
void WithFullDisk(qint64 bytes, const std::function<void()>& fn);
// True when the program can be found on PATH.
bool HaveTool(const QString& program);

} // namespace velunta::test
