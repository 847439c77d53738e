#pragma once
// Tool 7, Crop: while the button is held a marquee (CropArea) follows the pointer
// within the view; the release cuts the picture to it. The picture is written to
// temp/undo.bmp first, so Undo Resize brings the whole picture back.

namespace velunta {

class Document;
class Surface;
struct ToolContext;

void CropStroke(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing);

} // namespace velunta
