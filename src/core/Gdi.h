#pragma once
// The drawing services of the platform the program was written for, implemented
// once over Surface with the same pixel results: block transfers with raster
// operations, stretched copies, single pixels, flood fill with hatch brushes, lines,
// boxes, rounded rectangles, 3D edges, inversion and text.
//
// Conventions shared by all of them:
// - Coordinates are in the surface's drawable area (0, 0 is the top left of Image).
// - Everything clips to the surface; nothing outside is read or written, and an
//   operation wholly outside does nothing.
// - The pen is the surface's ForeColor or the colour argument, DrawWidth wide, round
//   and aliased. The brush is FillColor with FillStyle: 0 solid, 1 hollow (paints
//   nothing), 2 horizontal, 3 vertical, 4 upward diagonal "/", 5 downward diagonal
//   "\", 6 cross, 7 diagonal cross. Hatch brushes paint only their lines and leave
//   the pixels between them as they were; the 8 x 8 pattern is aligned to the
//   surface's origin (pixel x, y uses pattern cell x & 7, y & 7). Within the cell:
//   horizontal is row 3, vertical column 4, "/" the cells with (x + y) & 7 = 7, "\"
//   those with x & 7 = y & 7; the crosses are the unions. FillStyle values outside
//   0..7 paint nothing.
// - The round pen of width w > 1 is centred on the pixel's centre when w is odd and
//   on its top-left corner when w is even, so a dot is exactly w pixels across: width
//   2 at x, y covers x - 1..x, y - 1..y; width 3 covers x - 1..x + 1.
// - Every write reports the rectangle it touched through Surface::touch.
// - The functions returning bool give false when their rectangle is empty or the
//   point lies outside, true otherwise, even when clipping leaves nothing to draw.

#include "core/Color.h"

#include <QSize>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <utility>
#include <vector>

namespace velunta {

class Surface;

// Raster operations used by the program. The code's bits 16..23 hold the ternary
// operation index; any other code is evaluated as that generic ROP3 over brush (P),
// source (S) and destination (D).
enum RasterOp : std::uint32_t {
    SRCCOPY = 0x00CC0020,
    SRCPAINT = 0x00EE0086,
    SRCAND = 0x008800C6,
    SRCINVERT = 0x00660046,
    NOTSRCCOPY = 0x00330008,
    NOTSRCERASE = 0x001100A6,
    MERGEPAINT = 0x00BB0226,
    PATCOPY = 0x00F00021,
    BLACKNESS = 0x00000042,
    WHITENESS = 0x00FF0062,
};

// The ROP3 the colour replacer uses, 8388610: index 0x80, D and S and P.
inline constexpr std::uint32_t kRopMaskedBrush = 8388610;

// Copies a w x h block from src at (sx, sy) to dst at (x, y) through the raster
// operation, per colour bit. The brush (P) is dst's FillColor. Source and
// destination may be the same surface, overlapping. w or h <= 0 does nothing.
bool BitBlt(Surface& dst, int x, int y, int w, int h, const Surface& src, int sx, int sy,
            std::uint32_t rop = SRCCOPY);

// Stretched copy in COLORONCOLOR mode: each destination pixel takes the nearest
// source sample, no blending. A negative w or sw mirrors that axis (a negative
// width counts from x leftwards, as the platform does). Destination pixel i of the
// row takes source column sx + floor((i + 0.5) * sw / w) for positive extents.
bool StretchBlt(Surface& dst, int x, int y, int w, int h, const Surface& src, int sx, int sy, int sw, int sh,
                std::uint32_t rop = SRCCOPY);

// The packed colour at x, y, or -1 when the point lies outside the surface.
Color GetPixel(const Surface& s, int x, int y);
// Writes one pixel; false (and nothing written) outside. The pen width doesn't matter.
bool SetPixelV(Surface& s, int x, int y, Color c);

enum FloodFillType { FLOODFILLBORDER = 0, FLOODFILLSURFACE = 1 };

// Scan-line flood fill from x, y with the surface's brush, 4-connected, exact colour
// compare. FLOODFILLBORDER fills every connected pixel that is not `color` and
// returns false when the start pixel is `color`. FLOODFILLSURFACE fills the connected
// pixels that equal `color` and returns false when the start pixel differs. The
// region is found first and painted after, so a hatch brush never feeds back into
// the search. Outside the surface: false.
bool ExtFloodFill(Surface& s, int x, int y, Color color, FloodFillType type);

// The pixels a fill found, as runs per row.
class FillRegion {
public:
    void clear() { m_rows.clear(); }
    bool empty() const { return m_rows.empty(); }
    void add(int y, int x0, int x1);
    // After the runs are in: sorts each row's runs so that contains() can search them.
    void seal();
    bool contains(int x, int y) const;

private:
    std::vector<std::vector<std::pair<int, int>>> m_rows; // by row, runs x0..x1
};

// The same, adding the region it found (before painting) to `region`. A fill that
// stops at once (the start pixel says there is nothing to fill) adds nothing.
bool ExtFloodFill(Surface& s, int x, int y, Color color, FloodFillType type, FillRegion& region);

// The Line statement: a line from (x1, y1) to (x2, y2) in `color`, DrawWidth wide;
// the pen (CurrentX, CurrentY) moves to (x2, y2). Coordinates round half to even.
// Width 1: the platform's cosmetic line, all pixels from the first point up to but
// not including the last; along the longer axis one pixel per step, the other axis
// rounded to the nearest pixel with halves going to the first point's side.
// Width w > 1: a round pen, every pixel whose centre lies within w / 2 of the
// segment, both ends included (round caps). A line of zero length draws nothing.
void Line(Surface& s, double x1, double y1, double x2, double y2, Color color);
// The same from the pen position.
void LineTo(Surface& s, double x2, double y2, Color color);

// One segment of Lines, its corners already whole pixels.
struct LineSegment {
    int x1, y1, x2, y2;
    Color color;
};
// Draws the segments in order, each exactly as Line would (the last segment over a
// pixel gives its colour); the pen moves to the last segment's second point. Many
// long segments in a few directions, such as the strips of a gradient, cost about
// one pass over the rows they cross instead of one per segment.
void Lines(Surface& s, const std::vector<LineSegment>& segments);

// The Line statement's box forms. Box: an outline in `color` (DrawWidth wide) through
// both corners, the interior painted with the surface's brush; a wide outline is the
// round pen run along the four sides, centred on them. BF: the whole box, corners
// included, filled with `color`. The pen moves to (x2, y2).
void LineBox(Surface& s, double x1, double y1, double x2, double y2, Color color);
void LineBoxFilled(Surface& s, double x1, double y1, double x2, double y2, Color color);

// PSet: one pixel at width 1, otherwise a round dot of diameter DrawWidth centred on
// the point. The pen moves to the point.
void PSet(Surface& s, double x, double y, Color color);

// Rounded rectangle over left..right-1, top..bottom-1 (the corners may come in
// either order) with corner ellipses w x h (clamped to the box; large enough they
// make an ellipse; 0 gives square corners). A pixel is in the shape when its centre
// is, and the shape always reaches all four sides of the box. Outline with the pen
// (ForeColor) centred on the shape's edge, as on the sides of a Line box: DrawWidth / 2
// pixels beyond the box and the rest within it; interior with the brush.
bool RoundRect(Surface& s, int left, int top, int right, int bottom, int w, int h);

// Edge kinds and side flags of DrawEdge.
enum EdgeFlags : unsigned {
    BDR_RAISEDOUTER = 0x1,
    BDR_SUNKENOUTER = 0x2,
    BDR_RAISEDINNER = 0x4,
    BDR_SUNKENINNER = 0x8,
    EDGE_RAISED = 5,
    EDGE_ETCHED = 6,
    EDGE_BUMP = 9,
    EDGE_SUNKEN = 10,
    BF_LEFT = 0x1,
    BF_TOP = 0x2,
    BF_RIGHT = 0x4,
    BF_BOTTOM = 0x8,
    BF_RECT = 15,
};

// The system's 3D colours used by DrawEdge.
inline constexpr Color kColor3DHighlight = RGB(255, 255, 255);
inline constexpr Color kColor3DLight = RGB(227, 227, 227);
inline constexpr Color kColor3DShadow = RGB(160, 160, 160);
inline constexpr Color kColor3DDarkShadow = RGB(105, 105, 105);

// A two-pixel 3D edge inside left..right-1, top..bottom-1: the outer border on the
// outermost pixels, the inner border one pixel in. Raised outer: light top-left,
// dark shadow bottom-right; sunken outer: shadow top-left, highlight bottom-right;
// raised inner: highlight top-left, shadow bottom-right; sunken inner: dark shadow
// top-left, light bottom-right. Top and left are drawn first, bottom and right over
// them. Does nothing for an empty rectangle.
bool DrawEdge(Surface& s, int left, int top, int right, int bottom, unsigned edge, unsigned flags);

// Inverts every colour bit of left..right-1, top..bottom-1.
bool InvertRect(Surface& s, int left, int top, int right, int bottom);

// Text with the surface's font (FontName, FontSize in points at 96 dpi, bold,
// italic, underline) in ForeColor, its top left at (x, y). With `opaque` each line's
// cell (its advance width by the font height) is first filled with BackColor. Lines
// are split at "\r\n" and "\n", each line one font height below the last; with
// `centred` every line is centred on the widest.
// The pen moves below the last line (CurrentX stays x).
void DrawText(Surface& s, double x, double y, const QString& text, bool opaque, bool centred = false);
// The width and height in pixels that DrawText would cover.
QSize TextExtent(const Surface& s, const QString& text);

} // namespace velunta
