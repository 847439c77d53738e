#pragma once
// The rectangular selection: the marquee of tool 5 and its lift into a floating
// picture, the drag of tool 0, and the operations the Edit commands and the float's
// options are made of. A visible marquee is what "a selection exists" means; the
// float lands in the picture at every refresh of the view.

#include "core/Color.h"
#include "core/Progress.h"

#include <QImage>

namespace velunta {

class Document;
class Surface;
struct ToolContext;

// Tool 5: the marquee follows the drag, clipped to the view; the release lifts the area.
void SelectAreaStroke(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom,
                      bool drawing);
// Tool 0: drags a shown selection, restoring what it uncovers and saving what it covers.
void MoveSelection(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom,
                   bool drawing);

// Before the float's pixels change: SelectedBack takes them, once per lift.
void SetSelBak(Document& doc);
// Ends the selection: the marquee goes, its pixels stay where the last refresh put them.
void DropSelection(Document& doc);
// Fills the float with a colour (Cut and Clear Selection) and stamps it.
void FillSelection(Document& doc, Color colour);
// Select All: the whole picture floats, the marquee covers the view.
void SelectAll(Document& doc);
// A picture as a float at the view's visible top left (Paste).
void PlaceFloat(Document& doc, const QImage& picture);
// The float just placed is `stamp` laid on a plain ground: the stamp, with its own
// transparency, takes its place, so the picture shows round it here and wherever it
// is dragged, until its pixels are changed otherwise. A float of another size is left
// as it is.
void LetStampShowThrough(Document& doc, const QImage& stamp);

// The float's options, previewed over its own pixels: the key colour shows what lies
// under it, and the blend mixes the float over what lies under it with the ratio
// 0..255 (255 the float alone). `progress` may stop the work; returns false then.
bool PreviewFloat(Document& doc, bool transparent, Color key, bool blend, int ratio,
                  const ProgressFn& progress);
// "Apply to Selection": the preview becomes the float's own pixels.
void KeepFloatPreview(Document& doc);
// "Cancel": the float's own pixels come back.
void CancelFloatPreview(Document& doc);

// One channel of the blend: k / 255 of the way from under to over, rounded half to even.
int MixChannel(int over, int under, int ratio);

} // namespace velunta
