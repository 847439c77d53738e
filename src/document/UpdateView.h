#pragma once
// The one path from the picture to the screen. Every routine that changes Buffer ends
// with it, tools, commands and dialogs alike.

namespace velunta {

class Document;
class Surface;

// Stamps a showing selection into `surface` (the one commit step of a floating
// selection) and repaints the part of the view that changed. `x`, `y` and `zoom` are
// the caller's position and zoom; the view reads both from the document itself.
void UpdateView(Document& doc, Surface& surface, double x, double y, double zoom);

} // namespace velunta
