#pragma once
// The program's art: tool, toolbar and style icons and the drawing pointers.
// Every picture is an SVG compiled into the program under ":/icons/<name>.svg"
// and rendered on demand at the exact pixel size, so it stays crisp at any
// device pixel ratio.

#include <QCursor>
#include <QIcon>
#include <QPixmap>
#include <QSize>
#include <QString>

namespace velunta {

// "tool-00" .. "tool-19", by tool number.
QIcon ToolIcon(int tool);
// "cmd-00" .. "cmd-22", by toolbar button index.
QIcon CommandIcon(int index);
// "<group>-NN", e.g. StyleIcon("pencil-style", 4) or StyleIcon("dissolve", 3).
QIcon StyleIcon(const QString& group, int index);
// Any picture by its file name without ".svg": "app", "dropdown", "swap-colors", ...
// A name that does not exist gives a null icon.
QIcon NamedIcon(const QString& name);

// The picture fitted into a logicalSize square (aspect ratio kept), rendered
// at logicalSize * devicePixelRatio device pixels and tagged with that ratio.
QPixmap IconPixmap(const QString& name, int logicalSize, qreal devicePixelRatio);
// The same into a box of any shape, e.g. the 128 x 40 logo.
QPixmap IconPixmap(const QString& name, QSize logicalSize, qreal devicePixelRatio);

// The drawing pointer of a tool (0..19), of moving a selection (20) or of
// picking a detail (21): 32 x 32 logical pixels, sharp at the primary screen's
// device pixel ratio, with its hot spot. Other indexes give the arrow pointer.
QCursor ToolCursor(int index);
// The hot spot of cursor-NN in its 32 x 32 grid; (-1, -1) when it has none.
QPoint CursorHotspot(int index);

} // namespace velunta
