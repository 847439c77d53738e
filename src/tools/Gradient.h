#pragma once
// Tool 4: a linear gradient from the foreground to the background colour at the angle
// of a dragged line, laid in strips three pixels wide.

#include "core/Color.h"

namespace velunta {

class Document;
class Surface;
struct ToolContext;

inline constexpr double kPi = 3.14159265358979;

// The direction from (x1, y1) to (x2, y2) in degrees, 0 to 360, clockwise on the
// screen (y grows downward): right 0, down 90, left 180, up 270. Equal points read 90.
double LineAngle(double x1, double y1, double x2, double y2);

// The snaps of the gradient's angle: a 16-bit rounding outside 1..359 reads 0, and
// angles strictly within one degree of 90, 180 or 270 read those.
double SnapAngle(double a);

// The colour of strip `index` of `steps` between the two colours, channel by channel
// from `from` towards `to`, limited to 0..255 and rounded half to even. Indexes beyond
// `steps` go on past `to` until a channel meets its limit. No steps: `from`.
Color GradientColor(Color from, Color to, int steps, int index);

void GradientTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing);

} // namespace velunta
