#pragma once
// The tool engine: one dispatch on the current tool for both phases of a stroke
// (drawing = true on the press and each move, false on the release).

#include "document/ToolContext.h"
#include "document/UpdateView.h"

namespace velunta {

class Document;
class Surface;

// Runs the current tool at image position x, y. `surface` is the document's Buffer.
// `button` is the button of the event (the release passes 0).
void ToolDispatch(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double& zoom,
                  bool& drawing, int button, bool shift);

// The tools that change the picture during a stroke (the zoom, the colour picker, the
// selection marquee, the text box and the colour replacer don't).
bool ToolChangesPicture(int tool, bool selectionVisible);

} // namespace velunta
