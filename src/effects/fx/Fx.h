#pragma once
// The effects library: the pixel operations of the Effects Browser, the one-click
// filters and the image menu, as pure functions over surfaces.
//
// Conventions shared by every operation with a destination and a source rectangle
// (`d` on `dst`, `s` on `src`):
// - `d` says which pixels are written, clipped to `dst`; nothing outside is touched.
// - The corner of `s` pairs with the corner of `d`: destination pixel (d.x + i, d.y + j)
//   is computed from source pixel (s.x + i, s.y + j) and, for the 3 x 3 filters, its
//   neighbours. Reads that fall outside the source surface take its nearest edge pixel,
//   so a rectangle that reaches past the picture still gets a whole result.
// - An empty `d` or `s`, or an empty surface, does nothing.
// - `dst` and `src` may be the same surface; the result is then as if the source had
//   been copied first.
// - Arguments outside their range are clamped to it; a NaN counts as the neutral value.
// - Long runs report their progress through `progress` and stop when it answers true;
//   the operation then returns false and the rectangle is partly done. Rows may be
//   worked on two threads; the result never depends on how they were split.
// - Colours are packed R + 256 G + 65536 B; -1 is no colour.

#include "core/Color.h"
#include "core/Progress.h"

#include <QString>

#include <cstdint>

namespace velunta {

class Surface;

// x, y, width, height of a rectangle on a surface.
struct FxRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};
// The whole drawing layer of a surface.
FxRect WholeOf(const Surface& s);

// ---- Colour helpers --------------------------------------------------------------

// The packed colour of three channels, each clamped to 0..255.
Color fxRGB(int red, int green, int blue);
// A channel of a packed colour, 0 to 255 (0 for no colour).
int fxGetRed(Color c);
int fxGetGreen(Color c);
int fxGetBlue(Color c);
// colorA mixed towards colorB by amount / 255 on each channel (0 gives A, 255 gives B).
// No colour on either side gives the other one.
Color fxShadeColors(Color colorA, Color colorB, int amount);

// ---- Point operations: each pixel from its own source pixel ---------------------------

bool fxBrightness(Surface& dst, FxRect d, const Surface& src, FxRect s, int level,
                  const ProgressFn& progress = {});
bool fxGamma(Surface& dst, FxRect d, const Surface& src, FxRect s, double gamma,
             const ProgressFn& progress = {});
bool fxGreyscale(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress = {});
bool fxInvert(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress = {});
bool fxInversion(Surface& dst, FxRect d, const Surface& src, FxRect s, int level,
                 const ProgressFn& progress = {});
bool fxSaturation(Surface& dst, FxRect d, const Surface& src, FxRect s, int level,
                  const ProgressFn& progress = {});
bool fxHue(Surface& dst, FxRect d, const Surface& src, FxRect s, double hue, const ProgressFn& progress = {});
bool fxTone(Surface& dst, FxRect d, const Surface& src, FxRect s, Color color, int tone,
            const ProgressFn& progress = {});
bool fxAmbientLight(Surface& dst, FxRect d, const Surface& src, FxRect s, Color color, int intensity,
                    const ProgressFn& progress = {});
bool fxReduceColors(Surface& dst, FxRect d, const Surface& src, FxRect s, int level,
                    const ProgressFn& progress = {});
bool fxReplaceColors(Surface& dst, FxRect d, const Surface& src, FxRect s, Color oldColor, Color newColor,
                     int similarity, const ProgressFn& progress = {});

// ---- 3 x 3 neighbourhood filters --------------------------------------------------

bool fxBlur(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress = {});
bool fxEmboss(Surface& dst, FxRect d, const Surface& src, FxRect s, double depth,
              const ProgressFn& progress = {});
bool fxEngrave(Surface& dst, FxRect d, const Surface& src, FxRect s, double height,
               const ProgressFn& progress = {});
bool fxRelief(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress = {});
bool fxAntiAlias(Surface& dst, FxRect d, const Surface& src, FxRect s, int level,
                 const ProgressFn& progress = {});

// ---- Overlays and blocks ----------------------------------------------------------

bool fxAlphaBlend(Surface& dst, FxRect d, const Surface& src, FxRect s, int alpha, Color transparentColor,
                  const ProgressFn& progress = {});
bool fxGridelines(Surface& dst, FxRect d, const Surface& src, FxRect s, Color color, int transparency,
                  int size, const ProgressFn& progress = {});
bool fxScanlines(Surface& dst, FxRect d, const Surface& src, FxRect s, Color color, int transparency,
                 int size, int direction, const ProgressFn& progress = {});
bool fxMosaic(Surface& dst, FxRect d, const Surface& src, FxRect s, int size,
              const ProgressFn& progress = {});
// A spot light centred on x, y, worked inside `area` of the surface (the whole surface
// when `area` is empty). Its reach follows the surface's size, not the area's.
bool fxLight(Surface& dst, int x, int y, Color color, int aperture, int intensity, int definition, int mode,
             FxRect area = {}, const ProgressFn& progress = {});
// The platform's block transfer with a raster operation (SRCCOPY, MERGEPAINT, ...).
bool fxBitBlt(Surface& dst, int x, int y, int width, int height, const Surface& src, int srcX, int srcY,
              std::uint32_t rop);

// ---- Geometry: the source drawn moved, turned or scaled --------------------------------
//
// The pivot is a point of the destination; the source point that lies at the same
// distance from the source rectangle's corner stays where it is, and the rest turns
// (counter-clockwise for positive degrees, as on a protractor) and scales about it. At
// angle 0 and zoom 1 the source rectangle lands with its corner at 0, 0. Destination
// pixels that no source pixel covers keep what they had, and source pixels of
// transparentColor are left out. Each destination pixel takes the nearest source pixel.

bool fxRotate(Surface& dst, int pivotX, int pivotY, const Surface& src, FxRect s, double angle,
              Color transparentColor, const ProgressFn& progress = {});
bool fxZoom(Surface& dst, int pivotX, int pivotY, const Surface& src, FxRect s, double zoom,
            Color transparentColor, const ProgressFn& progress = {});
// The source rectangle srcX..srcRight-1 by srcY..srcBottom-1 turned and scaled, then
// laid over the destination with `blending` (0 leaves the destination, 255 covers it).
bool fxRender(Surface& dst, int pivotX, int pivotY, const Surface& src, int srcX, int srcY, int srcRight,
              int srcBottom, int blending, double angle, double zoom, Color transparentColor,
              const ProgressFn& progress = {});

// ---- Text -----------------------------------------------------------------------

// A font as the platform's font maker takes it: `height` below zero is the character
// height in pixels, above zero the cell height; `width` the average character width
// (0 for the font's own); `escapement` the baseline's angle in tenths of a degree,
// counter-clockwise; `weight` 100 to 900 (400 normal, 700 bold); `quality` 4, 5 or 6
// smooths the edges, other values draw them hard.
struct FxFont {
    QString face = QStringLiteral("Verdana");
    int height = -16;
    int width = 0;
    int escapement = 0;
    int weight = 400;
    bool italic = false;
    bool underline = false;
    int quality = 2;
};

// One line of text in `font` and `color` with its top left at the box's corner, turned
// by the font's escapement about that corner, clipped to the box, laid over the
// picture with `transparency` (0 opaque, 255 invisible).
bool fxDrawText(Surface& dst, FxRect box, const QString& text, Color color, const FxFont& font,
                int transparency);
// The text in the surface's own font (FontName, FontSize, bold, italic, underline) and
// `color`, its top left at x, y, on a transparent background. The pen doesn't move.
bool fxText(Surface& dst, int x, int y, const QString& text, Color color);

} // namespace velunta
