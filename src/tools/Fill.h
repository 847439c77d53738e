#pragma once
// Tool 3: the flood fill with the eight brush patterns, on the press, at every move
// of a drag and on the release alike.

namespace velunta {

class Document;
class Surface;
struct ToolContext;

// With "floodfill (Stop at a closed color boundery)" on, the fill runs until the
// foreground colour; off, it covers the connected area of the clicked pixel's colour.
// A sample of a drag inside what this stroke has filled already does no work.
void FillTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom);

} // namespace velunta
