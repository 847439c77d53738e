#pragma once
// The colour picker (tool 8), the shared reader of the picker and the colour replacer
// (tool 17), and the replacer's exact colour swap.

#include "core/Color.h"

namespace velunta {

class Document;
class Surface;
struct ToolContext;

// Tool 8 on the press, each move and the release: the pixel under the pointer becomes
// the background colour for the right button, otherwise the colour the sliders edit
// (SelIndex). The floating selection's transparency colour takes the foreground.
void ColorPickerTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, int button);

// Reads the pixel of Buffer at x, y into the picker's read-outs. With a button it also
// serves a pick: the armed transparency pick (any tool but the replacer), otherwise
// the replacer's source colour (left) or new colour (right). Outside the picture it
// does nothing.
void PickColorAt(ToolContext& ctx, Document& doc, double x, double y, int button = 0);

// Every pixel of exactly `from` becomes `to`; all others stay. Returns the number of
// pixels changed.
int ReplaceColor(Surface& surface, Color from, Color to);

} // namespace velunta
