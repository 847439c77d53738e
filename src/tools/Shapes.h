#pragma once
// Tools 14 (lines and arrow lines), 9 (rectangles), 10 (ellipses) and 16 (3D
// rectangles). While the button is down only an overlay follows the pointer; the
// release draws the figure once, on Buffer, or on a showing floating selection with
// its place subtracted.

namespace velunta {

class Document;
class Surface;
struct ToolContext;

// The shaft from (x1, y1) to (x2, y2) and two barbs of `size` at the tip, with the
// surface's pen. The barbs are ((-dy - dx) size, (dx - dy) size) and ((dy - dx) size,
// (-dx - dy) size) for the unit direction (dx, dy): not normalised, so a size of 10
// gives barbs of about 14 pixels at 135 degrees to the shaft. `extraHeads - 1` more
// heads stand along the shaft from (x1, y1), `spacing` apart. A shaft of no length
// has no direction: DivisionByZero.
void DrawArrowHead(Surface& surface, int x1, int y1, int x2, int y2, double size, bool tipAtEnd,
                   int extraHeads, double spacing);

void LineTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing,
              bool shift);
void RectangleTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom,
                   bool drawing);
void CircleTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing);
void Rectangle3DTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom,
                     bool drawing);

// The edge DrawEdge gets for a ShapeStyle of tool 16: raised, sunken, bump, etched;
// 0 (no edge) for the two round styles, which the 3D tool doesn't have.
unsigned Edge3DOf(int shapeStyle);

} // namespace velunta
