#pragma once
// The three pointer events of a document's view and its keyboard handling. Every
// drawing action enters here: view coordinates become image coordinates, the
// stroke's state and undo step are kept, and ToolDispatch runs the tool.

#include "core/InputCodes.h"

namespace velunta {

class Document;
struct ToolContext;

// image = (view - zoom / 200) / zoom * 100: half a percent of the zoom comes off first,
// so at 100 view pixel 10 reads 9.5 and view pixel 11 reads 10.5, and both round to 10.
double ViewToImage(double view, double zoom);

// Snaps a view position to the grid: round(v / step) * step, halves to even, in
// single precision. A step below 1 counts as 10.
void SnapPoint(float& x, float& y, int gridX, int gridY);

void PaintArea_MouseDown(ToolContext& ctx, Document& doc, int button, int shift, float x, float y);
void PaintArea_MouseMove(ToolContext& ctx, Document& doc, int button, int shift, float x, float y);
void PaintArea_MouseUp(ToolContext& ctx, Document& doc, int button, int shift, float x, float y);

// One step of the zoom tool: in (the left button) by 10 below 100 and by 100 from
// there up to the document's limit, out by the same steps down to 10. The point x, y
// of the view keeps its share of the scroll bars.
void ZoomToolStep(ToolContext& ctx, Document& doc, bool in, float x, float y);

void Form_KeyDown(ToolContext& ctx, Document& doc, int keyCode, int shift);
void Form_KeyUp(ToolContext& ctx, Document& doc, int keyCode, int shift);

} // namespace velunta
