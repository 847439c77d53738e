#pragma once
// Tool 12: a text box over the picture at the clicked point, in the panel's font,
// size, style and colours. The text reaches the picture only through ApplyText
// ("Apply Text", or leaving the tool with the pointer button); CancelText drops it.

namespace velunta {

class Document;
class Surface;
struct ToolContext;

// Every call, pressed or not, places the box at x, y (picture pixels) at the zoom and
// gives it the keyboard. The box is white (black for a white foreground) when both
// colours are equal, so the text stays legible; otherwise it has the background colour.
void TextTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom);

// Draws the box's text on Buffer where the box shows it, line by line, solid or
// transparent, centred or not, then empties and hides the box.
void ApplyText(ToolContext& ctx, Document& doc);

// Empties and hides the box without drawing.
void CancelText(Document& doc);

} // namespace velunta
