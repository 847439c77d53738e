#pragma once
// Tool 1: the freehand pencil and its colour mixes. The right button draws in the
// background colour, which makes it an eraser on a picture of that colour.

namespace velunta {

class Document;
class Surface;
struct ToolContext;

void PencilStroke(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing,
                  int button);

} // namespace velunta
