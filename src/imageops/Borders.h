#pragma once
// Borders: a small picture, the brush, repeated along the edges of a picture and put
// down through a raster operation, so it can cover the picture, darken it or paint
// it inverted.

#include "core/Color.h"

#include <QImage>
#include <QSize>
#include <QString>

#include <cstdint>

namespace velunta {

class Surface;

// BorderStyle, the layout of the tiles.
enum BorderLayout : int {
    kBorderAllSides = 0,  // along all four edges
    kBorderTopBottom = 1, // along the top and the bottom
    kBorderLeftRight = 2, // along the left and the right
    kBorderCorners = 3,   // one tile in each corner
};
inline constexpr int kBorderLayoutCount = 4;

// BorderEffect, the dialog's optEffect.
enum BorderEffectIndex : int {
    kBorderNormal = 0,  // the brush covers the picture
    kBorderCombine = 1, // picture AND brush: a white brush background lets the picture through
    kBorderMerge = 2,   // picture AND brush AND the drawing colour
    kBorderPaint = 3,   // NOT (picture OR brush)
    kBorderInverse = 4, // the brush inverted (no option in the dialog)
};
inline constexpr int kBorderEffectCount = 4;

// The Borders dialog's choices; they last while the program runs.
struct BorderSettings {
    int brushIndex = 0; // a built-in brush, or -1 for the file brush
    QString brushFile;  // the file brush's path
    QSize size{48, 48}; // TxtWidth, TxtHeight
    Color background = RGB(255, 255, 255);
    int style = kBorderAllSides; // BorderStyle
    int effect = kBorderNormal;  // BorderEffect
};

// The raster operation of an effect; SRCCOPY outside the table.
std::uint32_t BorderRasterOp(int effect);

// The largest brush side; a larger picture is cut to it.
inline constexpr int kMaxBrushSide = 256;

// The brush as it is drawn: the art (its clear parts showing `background`) scaled
// smoothly to `size`. An empty size or art gives a null image.
QImage BorderBrush(const QImage& art, Color background, QSize size);

// Copies the whole brush along the edges of the target as the layout says, in steps
// of the brush's width along the top and the bottom and of its height along the
// sides, each pixel of the target at most once; tiles at the far edges are cut by
// the target. `drawingColor` is the pattern the Merge effect takes in.
void DrawBorder(Surface& target, const Surface& brush, int style, int effect, Color drawingColor);

} // namespace velunta
