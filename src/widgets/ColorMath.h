#pragma once
// The arithmetic behind the colour strip, free of widgets so it can be tested on its
// own: the fixed swatches and where they stand, the slider mapping in both
// directions, the rules of the R/G/B text boxes, the gradient preview, the user
// colours file, and the reduction of a picture to a palette.

#include "core/Color.h"

#include <QImage>
#include <QPoint>
#include <QString>
#include <QVector>

#include <array>

namespace velunta {

inline constexpr int kMSColorCount = 42;
inline constexpr int kUserColorCount = 12;

// MSColors(0..41): six named groups of six, index 7 * group + column, and the
// nameless seventh row made of the indexes 6, 13, .., 41.
Color MSColorValue(int index);
// The group name that is the swatch's tooltip; empty for the seventh row.
QString MSColorGroup(int index);
// Row and column of a swatch in the grid (x = column, y = row). The seventh row runs
// right to left: index 41 stands leftmost and index 6 rightmost.
QPoint MSColorPlace(int index);
// The index shown at a row and column, -1 outside the grid.
int MSColorAt(int row, int column);

// The colours of PicUserColors before the user changes any.
std::array<Color, kUserColorCount> DefaultUserColors();

// Colour to slider: the thumb's left edge for a channel value, value / 255 of the
// track's width from the track's left, centred on that point.
int ThumbLeftForValue(int value, int barLeft, int barWidth, int thumbWidth);
// Slider to colour while dragging: d / barWidth * 256 rounded half to even, where d is
// the thumb's distance from its leftmost place. The factor 256 (against 255 the other
// way) and the missing upper clamp are deliberate: the far right gives 256, which the
// text box's change rule then cuts to 255.
int SliderValue(int thumbLeft, int barLeft, int barWidth, int thumbWidth);

// The change rule of an R/G/B text box: a number above 255 reads "255", below 0 "0";
// any other text is left as it is (an empty box stays empty until the key is released).
QString ClampedBoxText(const QString& text);
// The channel a box stands for: its leading number, 0 when it has none, within 0..255.
int BoxValue(const QString& text);

// The columns 0..width (inclusive) of the gradient preview between the two working
// colours. Each channel steps by (colour 0 - colour 1) / width, the step taken before
// the first column is drawn, so column 0 is already one step away from colour 0.
QVector<Color> SelectedGradient(Color color0, Color color1, int width);

// UserColors.ini: a header line, then twelve decimal numbers. Reading stops at the
// first missing or unreadable number; the cells after it keep what `cells` held.
// Returns how many cells were read; a missing file reads none.
int ReadUserColors(const QString& path, std::array<Color, kUserColorCount>& cells);
// Rewrites the file whole: the header, then each colour with one blank before and
// after it, CR LF line ends. Returns false with the reason when it could not be
// written; the old file then stays as it was.
bool WriteUserColors(const QString& path, const std::array<Color, kUserColorCount>& cells,
                     QString* reason = nullptr);

// The palette entry nearest to a colour in RGB space (the first of equals).
Color NearestColor(Color c, const QVector<Color>& palette);
// Replaces every pixel of an RGB32 image by its nearest palette entry.
void ReduceToPalette(QImage& image, const QVector<Color>& palette);

// "#RRGGBB" or "RRGGBB" (any case, blanks around allowed) to a colour; -1 when the
// text is not six hexadecimal digits.
Color ParseHTMLColor(const QString& text);

// A picture to choose a colour from: the hues from left to right, each from white at
// the top through the full colour to black at the bottom, and, in the last
// `greyColumns` columns, the greys from white to black.
QImage HueChart(int width, int height, int greyColumns = 0);

} // namespace velunta
