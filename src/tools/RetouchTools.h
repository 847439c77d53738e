#pragma once
// The retouch tools as the pointer drives them: Airbrush (6), Brighten (11),
// Blur/Soften (13), Darken (15), Dissolve Colors (18) and Enhance Colors (19). Each
// pointer sample while the button is held is one dab, sized and weighted by the tool's
// selectors; the release leaves the picture alone.

namespace velunta {

class Document;
class Surface;
struct ToolContext;

// One dab of the current retouch tool at image position x, y. With a floating
// selection showing the dab goes onto the selection's own pixels.
void RetouchDab(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing);

} // namespace velunta
