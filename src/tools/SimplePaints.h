#pragma once
// The tool engine: one dispatch on the current tool for both phases of a stroke
// (drawing = true on the press and each move, false on the release), and the one
// path from the picture to the view.

#include <QRect>

namespace velunta {

class Document;
class Surface;
class ToolHost;
struct DrawState;

// What a tool routine may use besides the document.
struct ToolContext {
    DrawState& state;
    ToolHost& host;
};

// Runs the current tool at image position x, y. `surface` is the document's Buffer.
// `button` is the button of the event (the release passes 0).
void ToolDispatch(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double& zoom,
                  bool& drawing, int button, bool shift);

// Stamps a showing selection into `surface` (the one commit step of a floating
// selection) and repaints the part of the view that changed.
void UpdateView(Document& doc, Surface& surface, double x, double y, double zoom);

// The tools that change the picture during a stroke (the zoom, the colour picker, the
// selection marquee, the text box and the colour replacer don't).
bool ToolChangesPicture(int tool, bool selectionVisible);

} // namespace velunta
